#include "settings/table.h"

#include <camcfg/livemedia.h>

#include <cstring>
#include <map>
#include <set>

#include "base/concat.h"
#include "settings/value.h"

namespace camcfg::tool::settings {
namespace {

using tinyxml2::XMLElement;

constexpr char kChannel[] = "Channel";

// The first word's value if it is none of them, which is a fault.
Json readListedWord(const Setting& setting, const Node& node) {
  std::vector<std::string> texts;
  std::vector<std::string> inJson;
  if (node.isHeld()) return node.value();
  for (const Word& word : setting.words) {
    if (node.value() == word.text) return word.text;
    texts.emplace_back(word.text);
    inJson.push_back(Json(word.text).dump());
  }
  node.refuse(concat("it must be one of ", joined(inJson), node.nearestOf(texts)));
  return texts.front();
}

void readInto(const Setting& setting, const Node& node, void* record) {
  const Field& field = setting.field;
  if (setting.read != nullptr)
    setting.read(node, record);
  else if (setting.kind == Kind::Ids)
    field.as<std::list<int>>(record) = readIds(node, [](const Node& id) { return id.id(); });
  else if (setting.kind == Kind::List)
    fromJsonArray(node, *setting.inner, field.at(record), field.append);
  else if (setting.kind == Kind::Word)
    store(setting, readListedWord(setting, node), record);
  else
    store(setting, readValue(setting, node, setting.limits), record);
}

// That no other entry has the key of this one, unless the device has both.
// @param keys  those so far, and whether they are held
void checkKey(const Node& entry, const char* name, std::map<Json, bool>& keys) {
  const Json& value = entry.value();
  if (name == nullptr || !value.is_object() || !value.contains(name)) return;
  const Node key = entry.member(name);
  if (key.value().is_null()) return;
  const auto [other, isNew] = keys.emplace(key.value(), key.isHeld());
  if (!isNew && !(other->second && key.isHeld()))
    key.refuse("there is another one with this " + std::string(name));
}

void addEntry(XMLElement& section, const Table& table, const Json& record) {
  XMLElement* entry = section.InsertNewChildElement(table.elements.front());
  for (const Setting& setting : table.settings) {
    const Json& value = record.at(setting.member);
    if (value.is_null()) continue;
    const std::string text = value.is_string() ? value.text() : value.dump();
    for (const Attribute& attribute : setting.attributes)
      entry->SetAttribute(attribute.name, text.c_str());
    if (setting.channelType == nullptr) continue;
    XMLElement* channel = entry->InsertNewChildElement(kChannel);
    channel->SetAttribute("Id", text.c_str());
    channel->SetAttribute("Type", setting.channelType);
  }
}

// Those made of several fields, size and allowed sources of a cache, are nothing in a new record.
bool mayBeMissing(const Setting& setting) {
  const bool isAssumed = setting.assumed != nullptr || setting.read == nullptr;
  return isAssumed && (setting.need == Need::Optional || setting.need == Need::Expected);
}

Json filledIn(const Settings& settings, const Json& newRecord, Json entry) {
  for (const Setting& setting : settings) {
    if (!entry.contains(setting.member)) {
      if (mayBeMissing(setting))
        entry[setting.member] =
            setting.assumed == nullptr ? newRecord.at(setting.member) : setting.assumed(entry);
    } else if (setting.kind == Kind::List && entry.at(setting.member).is_array()) {
      const Settings& inner = setting.inner->settings;
      for (Json& record : entry.at(setting.member))
        if (record.is_object())
          record = filledIn(inner, setting.field.newRecord(inner), std::move(record));
    }
  }
  return entry;
}

Kind formOf(Kind kind) {
  if (kind == Kind::Text || kind == Kind::Word) return Kind::Text;
  return kind == Kind::Switch ? kind : Kind::Integer;
}

ElementForm formOf(const Table& table, const char* element) {
  ElementForm form{element, {}, {}};
  for (const Setting& setting : table.settings) {
    for (const Attribute& attribute : setting.attributes)
      if (attribute.element == nullptr || std::strcmp(attribute.element, element) == 0)
        form.attributes.push_back(
            {attribute.name, formOf(setting.kind), setting.limits, setting.need, setting.isSaved});
    if (setting.inner == nullptr) continue;
    const std::vector<ElementForm> inner = formsOf(*setting.inner);
    form.children.insert(form.children.end(), inner.begin(), inner.end());
  }
  if (!channelTypesOf(table).empty())
    form.children.push_back({kChannel,
                             {{"Id", Kind::Integer, {}, Need::Required, true},
                              {"Type", Kind::Text, {}, Need::Required, true}},
                             {}});
  return form;
}

}  // namespace

Json toJson(const Settings& settings, const void* record) {
  Json object = Json::object();
  for (const Setting& setting : settings) object[setting.member] = valueOf(setting, record);
  return object;
}

void fromJson(const Node& node, const Settings& settings, void* record) {
  if (!node.isObjectOf(membersOf(settings))) return;
  for (const Setting& setting : settings) {
    const auto found = node.value().find(setting.member);
    const bool isGiven = found != node.value().end();
    if (isGiven && !(setting.isOptional && found->is_null()))
      readInto(setting, node.member(setting.member), record);
    else if (!setting.isOptional)
      node.refuseMissing(setting.member);
  }
}

void fromJsonArray(const Node& node, const Table& table, void* list, void* (*append)(void* list)) {
  if (!node.isArray()) return;
  std::map<Json, bool> keys;
  for (const Node& element : node.elements(table.key)) {
    const std::size_t faults = node.faults();
    fromJson(element, table.settings, append(list));
    if (table.check != nullptr && node.faults() == faults) table.check(element);
    checkKey(element, table.key, keys);
  }
}

Json withAssumed(const Table& table, const Json& entry) {
  return filledIn(table.settings, table.calls.newRecord(table.settings), entry);
}

std::list<int> readIds(const Node& node, std::int32_t (*read)(const Node& id)) {
  std::list<int> ids;
  if (!node.isArray()) return ids;
  std::set<int> different;
  for (const Node& element : node.elements(nullptr)) {
    const std::size_t faults = node.faults();
    const int id = read(element);
    if (node.faults() != faults) continue;
    if (!different.insert(id).second && !node.isHeld()) element.refuse("it occurs here twice");
    ids.push_back(id);
  }
  return ids;
}

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
