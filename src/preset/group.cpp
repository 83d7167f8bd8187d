#include "preset/group.h"

#include "base/log.h"
#include "base/text.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "store/transaction.h"

using namespace camcfg;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

template <typename Document>
XMLElement* openGroup(XMLDocument** handedOut) {
  Document document(CFG_FILE_PRESET);
  XMLElement* group = findGroup(document.get());
  if (group != nullptr) *handedOut = document.release();
  return group;
}

XMLElement* presetFrom(XMLElement* element) {
  while (element != nullptr && !beginsWith(element->Value(), kPresetName))
    element = element->NextSiblingElement();
  return element;
}

}  // namespace

namespace camcfg {

XMLElement* findGroup(XMLDocument* document) {
  constexpr char kFunction[] = "cfgGetPresetCfgNode";
  if (document == nullptr) {
    logError(here(kFunction), "%s XMLDocument haven't initialize\n", CFG_FILE_PRESET);
    return nullptr;
  }
  XMLElement* root = document->FirstChildElement();
  if (root == nullptr) {
    logError(here(kFunction), "Load %s failed\n", CFG_FILE_PRESET);
    return nullptr;
  }
  XMLElement* group = CFG_GetBrotherElementByName(root, "PresetCfg");
  if (group == nullptr) logError(here(kFunction), "PresetCfg node doesn't exist\n");
  return group;
}

XMLElement* firstPreset(XMLElement* group) {
  return presetFrom(group->FirstChildElement());
}

XMLElement* nextPreset(XMLElement* preset) {
  return presetFrom(preset->NextSiblingElement());
}

XMLElement* findPreset(XMLElement* group, int id) {
  return CFG_GetElementByNameId(group, kPresetName, id);
}

XMLElement* findPreset(XMLElement* group, const char* description) {
  for (XMLElement* preset = firstPreset(group); preset != nullptr; preset = nextPreset(preset)) {
    const char* stored = preset->Attribute("Description");
    if (stored != nullptr && beginsWith(stored, description)) return preset;
  }
  return nullptr;
}

}  // namespace camcfg

XMLElement* cfgGetPresetCfgNode(XMLDocument** doc, tagBU_BOOL readOnly) {
  if (doc == nullptr) return nullptr;
  return readOnly == BU_TRUE ? openGroup<ReadDocument>(doc) : openGroup<WriteDocument>(doc);
}
