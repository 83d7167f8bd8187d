#include <camcfg/store.h>

#include <cstring>
#include <limits>

#include "fuzz/device.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using tinyxml2::XMLElement;

// The first child for which a condition is true.
template <typename Condition>
XMLElement* firstChild(XMLElement* parent, Condition holds) {
  XMLElement* child = parent->FirstChildElement();
  while (child != nullptr && !holds(child)) child = child->NextSiblingElement();
  return child;
}

struct Sought {
  std::string name;
  int id;
  std::string usage;

  bool isNamed(const XMLElement* element) const {
    return std::string(element->Value()).rfind(name, 0) == 0;
  }
};

void searchByNumber(XMLElement* parent, const Sought& sought) {
  int carried = 0;
  bool anyRead = false;
  const auto matches = [&](const XMLElement* child) {
    if (!sought.isNamed(child)) return false;
    if (child->QueryIntAttribute("Id", &carried) == tinyxml2::XML_SUCCESS) anyRead = true;
    return anyRead && carried == sought.id;
  };
  require(
      CFG_GetElementByNameId(parent, sought.name.c_str(), sought.id) == firstChild(parent, matches),
      "CFG_GetElementByNameId finds the first");
}

void searchIn(XMLElement* parent, Sought sought) {
  const char* name = sought.name.c_str();
  const auto named = [&](const XMLElement* child) { return sought.isNamed(child); };
  XMLElement* found = CFG_GetElementByName(parent, name);
  require(found == firstChild(parent, named), "CFG_GetElementByName finds the first");
  // Without end in every other case.
  if (found == parent->FirstChildElement())
    require(CFG_GetElementByNameRecursion(parent, name) == found, "the first child is found");
  searchByNumber(parent, sought);

  const auto used = [&](const XMLElement* child) {
    const char* usage = child->Attribute("Usage");
    return named(child) && usage != nullptr && std::string(usage).rfind(sought.usage, 0) == 0;
  };
  require(CFG_GetElementByUsage(parent, name, sought.usage.data()) == firstChild(parent, used),
          "CFG_GetElementByUsage finds the first");
  const auto called = [&](const XMLElement* child) { return child->Value() == sought.name; };
  require(
      CFG_GetBrotherElementByName(parent->FirstChildElement(), name) == firstChild(parent, called),
      "CFG_GetBrotherElementByName finds the first");
}

void searchBelow(XMLElement* parent, const Sought& sought) {
  searchIn(parent, sought);
  for (XMLElement* child = parent->FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    searchBelow(child, sought);
}

}  // namespace

// A name, a number, a usage; a document.
void searches(const Input& input) {
  tinyxml2::XMLDocument document;
  const std::string text = input.part(1);
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return;
  const Sought sought{input.line(0), input.number(1), input.line(2)};
  for (XMLElement* top = document.FirstChildElement(); top != nullptr;
       top = top->NextSiblingElement())
    searchBelow(top, sought);
}

}  // namespace camcfg::fuzz
