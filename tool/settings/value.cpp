#include "settings/value.h"

#include <algorithm>
#include <cstring>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool::settings {
namespace {

constexpr std::int32_t kNone = -1;

bool isSwitch(const Setting& setting) {
  return setting.kind == Kind::Switch || setting.kind == Kind::Flag;
}

Objection objectionToNumber(const std::string& text, const Range& limits) {
  const std::optional<long long> number = decimal(text);
  if (!number) return {quoted(text) + " is not a decimal integer"};
  if (limits.has(*number)) return {};
  return {outside(text, *number, limits), true};
}

Objection objectionToText(const Setting& setting, const std::string& text) {
  const std::size_t room = setting.field.room;
  if (room != 0 && text.size() >= room)
    return {concat(quoted(text), " has ", text.size(), " bytes, the limit is ", room - 1)};
  return {setting.whyNotUsable == nullptr ? "" : setting.whyNotUsable(text), true};
}

Json readWord(const Setting& setting, const Node& node) {
  const std::vector<std::string> words = wordsOf(setting);
  if (!node.value().is_string() || !isAmong(words, node.value().text()))
    node.refuse(concat("it must be one of ", joined(words), node.nearestOf(words)));
  return node.value();
}

// What is wrong with a secret is said without it.
Json readSecret(const Setting& setting, const Node& node) {
  if (!node.value().is_string()) {
    node.refuse("it must be a text");
    return "";
  }
  if (const std::size_t room = setting.field.room; room != 0 && node.value().text().size() >= room)
    node.refuse(concat("it is too long; there is room for ", room - 1, " bytes"));
  return node.text();
}

Json readText(const Setting& setting, const Node& node) {
  if (setting.masked != nullptr) return readSecret(setting, node);
  const std::string text = node.text(setting.field.room - 1);
  if (node.value().is_string() && setting.whyNotUsable != nullptr) {
    const std::string fault = setting.whyNotUsable(text);
    if (!fault.empty()) node.refuse(fault);
  }
  return text;
}

Json orNull(const Setting& setting, bool isNone, const Json& value) {
  return setting.isNullWhenNone && isNone ? Json() : value;
}

Json wordFor(const Setting& setting, std::int32_t value) {
  for (const Word& word : setting.words)
    if (word.value == value) return word.text;
  return nullptr;
}

std::optional<std::int32_t> numberFor(const Setting& setting, const Json& value) {
  if (setting.kind == Kind::Word) {
    for (const Word& word : setting.words)
      if (value == word.text) return word.value;
    return std::nullopt;
  }
  if (isSwitch(setting))
    return value.is_boolean() ? std::optional(value.get<bool>() ? 1 : 0) : std::nullopt;
  return value.is_number_integer() ? decimal32(value.dump()) : std::nullopt;
}

}  // namespace

std::string Field::text(const void* record) const {
  if (isString) return as<std::string>(record);
  const auto* characters = &as<char>(record);
  return {characters, strnlen(characters, room)};
}

bool Field::setText(void* record, const std::string& text) const {
  if (isString) {
    as<std::string>(record) = text;
    return true;
  }
  if (text.size() >= room || text.find('\0') != std::string::npos) return false;
  char* characters = &as<char>(record);
  std::fill_n(std::copy(text.begin(), text.end(), characters), room - text.size(), '\0');
  return true;
}

const Setting* settingOf(const Settings& settings, std::string_view member) {
  for (const Setting& setting : settings)
    if (member == setting.member) return &setting;
  return nullptr;
}

std::string Objection::refusal(bool isForced) const {
  if (why.empty() || !canBeForced) return why;
  return isForced ? "" : why + "; '--force' sets it anyway";
}

std::vector<std::string> membersOf(const Settings& settings) {
  std::vector<std::string> names;
  for (const Setting& setting : settings) names.emplace_back(setting.member);
  return names;
}

std::vector<std::string> wordsOf(const Setting& setting) {
  std::vector<std::string> words;
  for (const Word& word : setting.words) words.emplace_back(word.written());
  return words;
}

std::string permittedFor(const Setting& setting) {
  if (setting.typedForm != nullptr) return setting.typedForm;
  if (setting.kind == Kind::Integer && setting.write == nullptr) return setting.limits.text();
  if (isSwitch(setting)) return "true, false";
  std::vector<std::string> words;
  for (const Word& word : setting.words) words.emplace_back(word.text);
  return joined(words);
}

std::string permittedInFile(const Setting& setting, const Range& limits) {
  if (setting.kind != Kind::Integer) return joined(wordsOf(setting));
  return limits == Range() ? "" : limits.text();
}

Objection objectionTo(const Setting& setting, const std::string& text, const Range& limits) {
  if (setting.kind == Kind::Integer) return objectionToNumber(text, limits);
  const std::vector<std::string> words = wordsOf(setting);
  if (words.empty()) return objectionToText(setting, text);
  if (isAmong(words, text)) return {};
  return {concat(quoted(text), " is none of ", joined(words), nearestOf(text, words))};
}

Json valueIn(const Setting& setting, const Json& text) {
  if (text.is_null()) return text;
  for (const Word& word : setting.words)
    if (text == word.written()) return isSwitch(setting) ? Json(word.value != 0) : word.text;
  const auto number = setting.kind == Kind::Integer ? decimal(text.text()) : std::nullopt;
  return number ? Json(*number) : text;
}

std::string inFile(const Setting& setting, const Json& value) {
  if (value.is_null()) return "";
  for (const Word& word : setting.words)
    if (value == (isSwitch(setting) ? Json(word.value != 0) : Json(word.text)))
      return word.written();
  return value.is_string() ? value.text() : value.dump();
}

Json readValue(const Setting& setting, const Node& node, const Range& limits) {
  if (node.isHeld()) return node.value();
  switch (setting.kind) {
    case Kind::Switch:
    case Kind::Flag:
      return node.flag();
    case Kind::Integer:
      return node.number(limits);
    case Kind::Id:
      return node.id();
    case Kind::Word:
      return readWord(setting, node);
    default:
      return readText(setting, node);
  }
}

Json valueOf(const Setting& setting, const void* record) {
  if (setting.write != nullptr) return setting.write(record);
  const Field& field = setting.field;
  switch (setting.kind) {
    case Kind::Text: {
      const std::string text = field.text(record);
      return orNull(setting, text.empty(), text);
    }
    case Kind::Ids:
      return field.as<std::list<int>>(record);
    case Kind::List:
      return field.toJson(&field.as<char>(record), setting.inner->settings);
    default:
      break;
  }
  const auto number = field.as<std::int32_t>(record);
  if (setting.kind == Kind::Word) return wordFor(setting, number);
  return isSwitch(setting) ? Json(number != 0) : orNull(setting, number == kNone, number);
}

bool store(const Setting& setting, const Json& value, void* record) {
  if (setting.read != nullptr) {
    Faults faults;
    setting.read(Node(value, setting.member, faults), record);
    return faults.empty();
  }
  if (setting.kind == Kind::Text)
    return value.is_string() && setting.field.setText(record, value.text());
  const std::optional<std::int32_t> number = numberFor(setting, value);
  if (number) setting.field.as<std::int32_t>(record) = *number;
  return number.has_value();
}

}  // namespace camcfg::tool::settings
