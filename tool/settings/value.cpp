#include "settings/value.h"

#include "base/decimal.h"
#include "base/plain_text.h"
#include "settings/nearest.h"

namespace camcfg::tool::settings {
namespace {

bool isChoice(const Setting& setting) {
  return setting.kind == Kind::Word || setting.kind == Kind::Switch;
}

const Word* wordIn(const Setting& setting, const std::string& text) {
  for (const Word& word : setting.words)
    if (text == word.written()) return &word;
  return nullptr;
}

Objection objectionToNumber(const std::string& text, const Range& limits) {
  const std::optional<long long> number = decimal(text);
  if (!number) return {quoted(text) + " is no decimal integer"};
  if (*number >= limits.least && *number <= limits.most) return {};
  return {outside(text, *number, limits.least, limits.most), true};
}

Objection objectionToText(const Setting& setting, const std::string& text) {
  const std::size_t room = setting.field.room;
  if (room != 0 && text.size() >= room)
    return {quoted(text) + " has " + std::to_string(text.size()) + " bytes, the limit is " +
            std::to_string(room - 1)};
  return {setting.whyNotUsable == nullptr ? "" : setting.whyNotUsable(text), true};
}

Json readWord(const Setting& setting, const Node& node) {
  const std::vector<std::string> words = wordsOf(setting);
  if (!node.value().is_string() || !isAmong(words, node.value().text()))
    node.refuse("it must be one of " + joined(words) + node.nearestOf(words));
  return node.value();
}

Json readText(const Setting& setting, const Node& node) {
  const std::size_t room = setting.field.room;
  const std::string text = room == 0 ? node.text() : node.text(room - 1);
  if (node.value().is_string() && setting.whyNotUsable != nullptr) {
    const std::string fault = setting.whyNotUsable(text);
    if (!fault.empty()) node.refuse(fault);
  }
  return text;
}

}  // namespace

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

std::string permittedInFile(const Setting& setting, const Range& limits) {
  if (setting.kind != Kind::Integer) return joined(wordsOf(setting));
  if (limits.least <= INT32_MIN && limits.most >= INT32_MAX) return "";
  return std::to_string(limits.least) + ".." + std::to_string(limits.most);
}

Objection objectionTo(const Setting& setting, const std::string& text, const Range& limits) {
  if (setting.kind == Kind::Integer) return objectionToNumber(text, limits);
  if (!isChoice(setting)) return objectionToText(setting, text);
  const std::vector<std::string> words = wordsOf(setting);
  if (isAmong(words, text)) return {};
  return {quoted(text) + " is none of " + joined(words) + nearestOf(text, words)};
}

Json valueIn(const Setting& setting, const Json& text) {
  if (text.is_null()) return text;
  const Word* word = wordIn(setting, text.text());
  if (word != nullptr) return setting.kind == Kind::Switch ? Json(word->value != 0) : word->text;
  const auto number = setting.kind == Kind::Integer ? decimal(text.text()) : std::nullopt;
  return number ? Json(*number) : text;
}

std::string inFile(const Setting& setting, const Json& value) {
  if (value.is_null()) return "";
  for (const Word& word : setting.words)
    if (value == (setting.kind == Kind::Switch ? Json(word.value != 0) : Json(word.text)))
      return word.written();
  return value.is_string() ? value.text() : value.dump();
}

Json readValue(const Setting& setting, const Node& node, const Range& limits) {
  switch (setting.kind) {
    case Kind::Switch:
      return node.flag();
    case Kind::Integer:
      return node.number(limits);
    case Kind::Word:
      return readWord(setting, node);
    default:
      return readText(setting, node);
  }
}

bool put(const Setting& setting, const std::string& text, void* record) {
  if (setting.read != nullptr) {
    Faults faults;
    const Json value = text;
    setting.read(Node(value, setting.member, faults), record);
    return faults.empty();
  }
  if (setting.kind == Kind::Text) return setting.field.setText(record, text);
  const Word* word = wordIn(setting, text);
  if (isChoice(setting) && word == nullptr) return false;
  const auto number = isChoice(setting) ? word->value : decimal32(text);
  if (number) setting.field.integer(record) = *number;
  return number.has_value();
}

std::string take(const Setting& setting, const void* record) {
  if (setting.write != nullptr) return setting.write(record).text();
  if (setting.kind == Kind::Text) return setting.field.text(record);
  const std::int32_t number = setting.field.integer(record);
  if (!isChoice(setting)) return std::to_string(number);
  for (const Word& word : setting.words)
    if (word.value == number) return word.written();
  return "";
}

}  // namespace camcfg::tool::settings
