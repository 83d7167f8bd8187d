#include "settings/elements.h"

#include <camcfg/livemedia.h>

#include <algorithm>
#include <cstring>

namespace camcfg::tool::settings {
namespace {

using tinyxml2::XMLElement;

constexpr char kChannel[] = "Channel";

std::string fileText(const Json& value) {
  return value.is_string() ? value.text() : value.dump();
}

void addEntry(XMLElement& section, const Table& table, const Json& record) {
  XMLElement* entry = section.InsertNewChildElement(table.elements.front());
  for (const Setting& setting : table.settings) {
    const Json& value = record.at(setting.member);
    if (value.is_null()) continue;
    const std::string text = fileText(value);
    for (const Attribute& attribute : setting.attributes)
      entry->SetAttribute(attribute.name, text.c_str());
    if (setting.channelType == nullptr) continue;
    XMLElement* channel = entry->InsertNewChildElement(kChannel);
    channel->SetAttribute("Id", text.c_str());
    channel->SetAttribute("Type", setting.channelType);
  }
}

Kind formOf(Kind kind) {
  switch (kind) {
    case Kind::Text:
    case Kind::Word:
      return Kind::Text;
    case Kind::Switch:
      return Kind::Switch;
    default:
      return Kind::Integer;
  }
}

ElementForm formOf(const Table& table, const char* element) {
  ElementForm form{element, {}, {}};
  for (const Setting& setting : table.settings) {
    for (const Attribute& attribute : setting.attributes)
      if (attribute.element == nullptr || std::strcmp(attribute.element, element) == 0)
        form.attributes.push_back(
            {attribute.name, formOf(setting.kind), setting.need, setting.isSaved});
    if (setting.inner == nullptr) continue;
    const std::vector<ElementForm> inner = formsOf(*setting.inner);
    form.children.insert(form.children.end(), inner.begin(), inner.end());
  }
  if (!channelTypesOf(table).empty())
    form.children.push_back(
        {kChannel,
         {{"Id", Kind::Integer, Need::Required, true}, {"Type", Kind::Text, Need::Required, true}},
         {}});
  return form;
}

}  // namespace

int storeElements(const Table& table, const Json& entries) {
  XMLElement* section = CFG_LM_Open(table.section, BU_FALSE);
  if (section == nullptr) return CFG_LM_ERR;
  section->DeleteChildren();
  for (const Json& entry : entries) addEntry(*section, table, entry);
  return CFG_LM_CloseWrite();
}

std::vector<ElementForm> formsOf(const Table& table) {
  std::vector<ElementForm> forms;
  for (const char* element : table.elements) forms.push_back(formOf(table, element));
  return forms;
}

std::vector<const char*> channelTypesOf(const Table& table) {
  std::vector<const char*> types;
  for (const Setting& setting : table.settings)
    if (setting.channelType != nullptr) types.push_back(setting.channelType);
  return types;
}

}  // namespace camcfg::tool::settings
