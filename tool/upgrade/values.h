#ifndef CAMCFG_TOOL_UPGRADE_VALUES_H
#define CAMCFG_TOOL_UPGRADE_VALUES_H

#include <tinyxml2.h>

#include <string>
#include <string_view>

#include "base/plain_text.h"

namespace camcfg::tool::upgrade {

/// Calls a function with each attribute of an element that is a value, not what it permits.
template <typename Found>
void forEachValue(const tinyxml2::XMLElement& element, const Found& found) {
  constexpr const char* kFormAttributes[] = {"Def", "Min", "Max", "Step", "OptTxt"};
  for (const tinyxml2::XMLAttribute* each = element.FirstAttribute(); each != nullptr;
       each = each->Next())
    if (!isAmong(kFormAttributes, std::string_view(each->Name()))) found(*each);
}

/// The path of an element in another one; the name if there is no other one.
inline std::string pathOf(const std::string& parent, const std::string& name) {
  return parent.empty() ? name : parent + "/" + name;
}

/// The path of an attribute that is a value: its element's if it is the current value.
inline std::string pathOf(const std::string& element, const tinyxml2::XMLAttribute& attribute) {
  const bool isValue = attribute.Name() == std::string_view("Cur");
  return isValue ? element : pathOf(element, attribute.Name());
}

}  // namespace camcfg::tool::upgrade

#endif
