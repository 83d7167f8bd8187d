#ifndef CAMCFG_PRESET_GROUP_H
#define CAMCFG_PRESET_GROUP_H

#include <tinyxml2.h>

#include "base/log.h"

namespace camcfg {

/// What the names of presets begin with, and what new ones are called.
constexpr char kPresetName[] = "preset";

/// The preset group of the preset file's document, which is null if it was not opened. A
/// failure is logged under the name of cfgGetPresetCfgNode.
tinyxml2::XMLElement* findGroup(tinyxml2::XMLDocument* document);

/// The preset group of a document opened for a public call. Without one the document is closed, and
/// then the failure logged under the caller's place as well.
template <typename Document>
tinyxml2::XMLElement* findGroup(Document& document, Place place) {
  tinyxml2::XMLElement* group = findGroup(document.get());
  if (group == nullptr) {
    document.close();
    logError(place, "pstPresetGrp is NULL\n");
  }
  return group;
}

/// The first preset of a group and, from one preset, the next; null when there is none.
tinyxml2::XMLElement* firstPreset(tinyxml2::XMLElement* group);
tinyxml2::XMLElement* nextPreset(tinyxml2::XMLElement* preset);

/// The preset of an id, or the first whose description begins with a text; null when there is none.
tinyxml2::XMLElement* findPreset(tinyxml2::XMLElement* group, int id);
tinyxml2::XMLElement* findPreset(tinyxml2::XMLElement* group, const char* description);

}  // namespace camcfg

#endif
