#include "settings/record.h"

#include <algorithm>

#include "settings/nearest.h"

namespace camcfg::tool::settings {
namespace {

constexpr std::int32_t kNone = -1;

Json wordFor(const Setting& setting, std::int32_t value) {
  for (const Word& word : setting.words)
    if (word.value == value) return word.text;
  return nullptr;
}

Json arrayOf(const Setting& setting, const void* record) {
  struct Array {
    const Settings& settings;
    Json values;
  } array{setting.inner->settings, Json::array()};
  setting.field.forEach(
      setting.field.in(record),
      [](const void* inner, void* context) {
        Array& all = *static_cast<Array*>(context);
        all.values.push_back(toJson(all.settings, inner));
      },
      &array);
  return std::move(array.values);
}

Json valueOf(const Setting& setting, const void* record) {
  if (setting.write != nullptr) return setting.write(record);
  const Field& field = setting.field;
  switch (setting.kind) {
    case Kind::Integer:
    case Kind::Id: {
      const std::int32_t number = field.integer(record);
      return setting.isNullWhenNone && number == kNone ? Json() : Json(number);
    }
    case Kind::Text: {
      const std::string text = field.text(record);
      return setting.isNullWhenNone && text.empty() ? Json() : Json(text);
    }
    case Kind::Word:
      return wordFor(setting, field.integer(record));
    case Kind::Switch:
    case Kind::Flag:
      return field.integer(record) != 0;
    case Kind::Ids:
      return field.ids(record);
    case Kind::List:
      return arrayOf(setting, record);
  }
  return {};
}

// The first word's value if it is none of them, which is a fault.
std::int32_t readWord(const Setting& setting, const Node& node) {
  std::string list;
  std::vector<std::string> texts;
  for (const Word& word : setting.words) {
    if (node.value() == word.text) return word.value;
    list.append(list.empty() ? "" : ", ").append(Json(word.text).dump());
    texts.emplace_back(word.text);
  }
  node.refuse("it must be one of " + list + node.nearestOf(texts));
  return setting.words.front().value;
}

void readText(const Setting& setting, const Node& node, void* record) {
  const std::size_t room = setting.field.room;
  const std::string text = room == 0 ? node.text() : node.text(room - 1);
  setting.field.setText(record, text);
}

void readValue(const Setting& setting, const Node& node, void* record) {
  if (setting.read != nullptr) return setting.read(node, record);
  const Field& field = setting.field;
  switch (setting.kind) {
    case Kind::Integer:
      field.integer(record) = node.number(setting.limits);
      return;
    case Kind::Id:
      field.integer(record) = node.id();
      return;
    case Kind::Text:
      return readText(setting, node, record);
    case Kind::Word:
      field.integer(record) = readWord(setting, node);
      return;
    case Kind::Switch:
    case Kind::Flag:
      field.integer(record) = node.flag() ? 1 : 0;
      return;
    case Kind::Ids:
      field.ids(record) = readIds(node, [](const Node& id) { return id.id(); });
      return;
    case Kind::List:
      field.clear(field.at(record));
      fromJsonArray(node, *setting.inner, field.at(record), field.append);
      return;
  }
}

}  // namespace

const Setting* Table::find(std::string_view member) const {
  for (const Setting& setting : settings)
    if (member == setting.member) return &setting;
  return nullptr;
}

std::string permittedFor(const Setting& setting) {
  if (setting.kind == Kind::Integer && setting.write == nullptr)
    return std::to_string(setting.limits.least) + ".." + std::to_string(setting.limits.most);
  if (setting.kind == Kind::Switch || setting.kind == Kind::Flag) return "true, false";
  std::string list;
  for (const Word& word : setting.words) list.append(list.empty() ? "" : ", ").append(word.text);
  return list;
}

Json toJson(const Settings& settings, const void* record) {
  Json object = Json::object();
  for (const Setting& setting : settings) object[setting.member] = valueOf(setting, record);
  return object;
}

void fromJson(const Node& node, const Settings& settings, void* record) {
  std::vector<std::string> names;
  for (const Setting& setting : settings) names.emplace_back(setting.member);
  if (!node.isObjectOf(names)) return;
  for (const Setting& setting : settings) {
    const auto found = node.value().find(setting.member);
    const bool isGiven = found != node.value().end();
    if (isGiven && !(setting.isOptional && found->is_null()))
      readValue(setting, node.member(setting.member), record);
    else if (!setting.isOptional)
      node.refuseMissing(setting.member);
  }
}

void fromJsonArray(const Node& node, const Table& table, void* list, void* (*append)(void* list)) {
  if (!node.isArray()) return;
  std::vector<Json> keys;
  for (std::size_t i = 0; i < node.value().size(); ++i) {
    const Node element = node.element(i);
    const std::size_t faults = node.faults();
    fromJson(element, table.settings, append(list));
    if (table.check != nullptr && node.faults() == faults) table.check(element);
    if (table.key == nullptr || !element.value().is_object() ||
        !element.value().contains(table.key))
      continue;
    const Node key = element.member(table.key);
    if (!key.value().is_null() && std::find(keys.begin(), keys.end(), key.value()) != keys.end())
      key.refuse("there is another one with this " + std::string(table.key));
    keys.push_back(key.value());
  }
}

std::list<int> readIds(const Node& node, std::int32_t (*read)(const Node& id)) {
  std::list<int> ids;
  if (!node.isArray()) return ids;
  for (std::size_t i = 0; i < node.value().size(); ++i) {
    const std::size_t faults = node.faults();
    const int id = read(node.element(i));
    if (node.faults() != faults) continue;
    if (std::find(ids.begin(), ids.end(), id) != ids.end())
      node.element(i).refuse("it occurs here twice");
    ids.push_back(id);
  }
  return ids;
}

}  // namespace camcfg::tool::settings
