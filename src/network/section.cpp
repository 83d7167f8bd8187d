#include "network/section.h"

#include "base/log.h"
#include "camcfg/store.h"

namespace camcfg {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

XMLElement* findNetwork(const XMLDocument* document, const char* function) {
  if (document == nullptr) {
    logError(here(function), "XMLDocument haven't initialize\n");
    return nullptr;
  }
  return findListedNetwork(document, function);
}

XMLElement* findListedNetwork(const XMLDocument* document, const char* function) {
  const XMLElement* root = document == nullptr ? nullptr : document->FirstChildElement();
  if (root == nullptr) {
    logError(here(function), "Load %s failed\n", CFG_FILE_BUSINESS);
    return nullptr;
  }
  XMLElement* network = CFG_GetBrotherElementByName(const_cast<XMLElement*>(root), "NetWork");
  if (network == nullptr) logError(here(function), "NetWork node doesn't exist\n");
  return network;
}

XMLElement* findNode(XMLElement* parent, const char* name, const char* function) {
  if (parent == nullptr) return nullptr;
  XMLElement* node = CFG_GetElementByName(parent, name);
  if (node == nullptr) logError(here(function), "Network %s node doesn't exist\n", name);
  return node;
}

const char* textOrEmpty(const XMLElement& element, const char* attribute) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? "" : text;
}

void saveOrReport(WriteDocument& document, bool changed, const char* function) {
  if (!changed || !document.save()) logError(here(function), "Save %s failed\n", CFG_FILE_BUSINESS);
}

}  // namespace camcfg
