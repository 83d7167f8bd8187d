#include "document/members.h"

#include <algorithm>
#include <cctype>
#include <functional>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "settings/value.h"

namespace camcfg::tool::document {
namespace {

using settings::Kind;
using settings::Setting;
using settings::Settings;
using settings::Table;

// Between the elements of a list, the members of an element, and the elements of a list in it.
constexpr char kSeparators[] = ",:+";

std::string withoutBlanks(const std::string& text) {
  const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
  return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

std::string inCapitals(std::string word) {
  for (char& c : word) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return word;
}

// What is no number stays a text, for the reader to refuse.
Json numberOrText(const std::string& text) {
  const std::optional<long long> number = decimal(text);
  return number ? Json(*number) : Json(text);
}

Json switchOrText(const std::string& text) {
  for (const char* word : {"yes", "on", "true"})
    if (isSameWord(text, word)) return true;
  for (const char* word : {"no", "off", "false"})
    if (isSameWord(text, word)) return false;
  return text;
}

Json wordOrText(const Setting& setting, const std::string& text) {
  for (const settings::Word& word : setting.words)
    if (isSameWord(text, word.text)) return word.text;
  return text;
}

Json valueAt(const Setting& setting, const std::string& text, const char* separators);

Json listOf(const std::string& text, char separator, const std::function<Json(std::string)>& read) {
  Json list = Json::array();
  if (text.empty()) return list;
  for (const std::string& part : parts(text, separator)) list.push_back(read(withoutBlanks(part)));
  return list;
}

// The members of a record in a list: those that it cannot do without and its lists, then the others.
std::vector<const Setting*> typedOrder(const Settings& settings) {
  std::vector<const Setting*> order;
  order.reserve(settings.size());
  for (const Setting& setting : settings) order.push_back(&setting);
  std::stable_partition(order.begin(), order.end(), [](const Setting* setting) {
    return setting->need == settings::Need::Required || setting->kind == Kind::List ||
           setting->kind == Kind::Ids;
  });
  return order;
}

Json recordOf(const Settings& settings, const std::string& text, const char* separators) {
  const std::vector<std::string> members = parts(text, separators[0]);
  const std::vector<const Setting*> order = typedOrder(settings);
  if (members.size() > order.size())
    throw Refusal(concat(quoted(text), " has more than ", order.size(), " parts"));
  Json record = Json::object();
  for (std::size_t i = 0; i < members.size(); ++i)
    record[order[i]->member] = valueAt(*order[i], members[i], separators + 1);
  return record;
}

// @param separators  the first is between the elements
std::string formOf(const Setting& list, const char* separators) {
  if (list.kind == Kind::Ids) return concat("ID", separators[0], "...");
  std::string element;
  for (const Setting* member : typedOrder(list.inner->settings)) {
    if (!element.empty()) element += separators[1];
    element += inCapitals(member->member);
    if (member->kind == Kind::Ids) element += std::string(1, separators[2]) + "...";
  }
  return concat(element, separators[0], "...");
}

bool mayBeNull(const Setting& setting) {
  return setting.isNullWhenNone || setting.isOptional || setting.channelType != nullptr;
}

// As people type it, and as lists of changes show it.
bool isNone(const std::string& text) {
  return text == "-" || isSameWord(text, "none");
}

Json valueAt(const Setting& setting, const std::string& text, const char* separators) {
  if (text.empty() && mayBeNull(setting)) return nullptr;
  switch (setting.kind) {
    case Kind::Switch:
    case Kind::Flag:
      return switchOrText(text);
    case Kind::Integer:
      return setting.typed == nullptr ? numberOrText(text) : setting.typed(text);
    case Kind::Id:
      return mayBeNull(setting) && isNone(text) ? Json() : numberOrText(text);
    case Kind::Word:
      return wordOrText(setting, text);
    case Kind::Ids:
      return listOf(text, separators[0], numberOrText);
    case Kind::List:
      return listOf(text, separators[0], [&](const std::string& part) {
        return recordOf(setting.inner->settings, part, separators + 1);
      });
    default:
      return text;
  }
}

// Records that stay in a list, by their keys, keep what is not said of them.
Json keeping(const Table& table, const Json& former, Json list) {
  if (table.key == nullptr || !list.is_array() || !former.is_array()) return list;
  for (Json& record : list)
    for (const Json& other : former) {
      if (other.at(table.key) != memberOrNothing(record, table.key)) continue;
      for (const auto& [name, value] : other.items())
        if (!record.contains(name)) record[name] = value;
    }
  return list;
}

struct Assigned {
  std::string name;
  std::string text;
};

Assigned parted(const std::string& word) {
  const std::size_t sign = word.find('=');
  // A word may be a secret, with a sign or without.
  if (sign == 0) throw Refusal(Status::Usage, "there is no member before the '='");
  if (sign == std::string::npos)
    throw Refusal(Status::Usage, "each member is given as MEMBER=VALUE, and one has no '='");
  return {word.substr(0, sign), word.substr(sign + 1)};
}

}  // namespace

const Setting* memberOf(const Settings& settings, const std::string& word) {
  const std::size_t sign = word.find('=');
  return sign == std::string::npos ? nullptr : settings::settingOf(settings, word.substr(0, sign));
}

std::string typedForm(const Setting& list) {
  return formOf(list, kSeparators);
}

Json valueFromWord(const Setting& setting, const std::string& text) {
  return valueAt(setting, text, kSeparators);
}

void assign(const Settings& settings, const std::vector<std::string>& words,
            const std::string& place, Json& record) {
  std::vector<std::string> given;
  for (const std::string& word : words) {
    const auto [name, text] = parted(word);
    const Setting* setting = settings::settingOf(settings, name);
    if (setting == nullptr)
      throw Refusal(concat(place, ": there is no member ", quoted(name),
                           didYouMean(name, settings::membersOf(settings))));
    if (isAmong(given, name)) throw Refusal(memberPlace(place, name) + ": it is given twice");
    given.push_back(name);
    Json value = valueFromWord(*setting, text);
    if (setting->kind == Kind::List)
      value = keeping(*setting->inner, memberOrNothing(record, name), std::move(value));
    record[name] = std::move(value);
  }
}

}  // namespace camcfg::tool::document
