#include "document/members.h"

#include <functional>

#include "base/outcome.h"
#include "base/plain_text.h"
#include "settings/value.h"

namespace camcfg::tool::document {
namespace {

using settings::Kind;
using settings::Setting;
using settings::Settings;

// Between the elements of a list, the members of an element, and the elements of a list in it.
constexpr char kSeparators[] = ",:+";

std::vector<std::string> parted(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    parts.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return parts;
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

// "2MiB"
Json sizeOrText(const std::string& text) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  if (digits == 0) return text;
  return {{"value", numberOrText(text.substr(0, digits))}, {"unit", text.substr(digits)}};
}

Json valueAt(const Setting& setting, const std::string& text, const char* separators);

Json listOf(const std::string& text, char separator, const std::function<Json(std::string)>& read) {
  Json list = Json::array();
  if (text.empty()) return list;
  for (const std::string& part : parted(text, separator)) list.push_back(read(part));
  return list;
}

// The members that a record in a list cannot do without, and its lists.
bool counts(const Setting& setting) {
  return setting.need == settings::Need::Required || setting.kind == Kind::List ||
         setting.kind == Kind::Ids;
}

Json recordOf(const Settings& settings, const std::string& text, const char* separators) {
  const std::vector<std::string> parts = parted(text, separators[0]);
  Json record = Json::object();
  std::size_t next = 0;
  for (const Setting& setting : settings)
    if (counts(setting) && next < parts.size())
      record[setting.member] = valueAt(setting, parts[next++], separators + 1);
  if (next < parts.size())
    throw Refusal(quoted(text) + " has more than " + std::to_string(next) + " parts");
  return record;
}

bool mayBeNull(const Setting& setting) {
  return setting.isNullWhenNone || setting.isOptional || setting.channelType != nullptr;
}

Json valueAt(const Setting& setting, const std::string& text, const char* separators) {
  if (text.empty() && mayBeNull(setting)) return nullptr;
  switch (setting.kind) {
    case Kind::Switch:
    case Kind::Flag:
      return switchOrText(text);
    case Kind::Integer:
      return setting.write == nullptr ? numberOrText(text) : sizeOrText(text);
    case Kind::Id:
      return numberOrText(text);
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

}  // namespace

Json valueFromWord(const Setting& setting, const std::string& text) {
  return valueAt(setting, text, kSeparators);
}

void assign(const Settings& settings, const std::vector<std::string>& words,
            const std::string& place, Json& record) {
  std::vector<std::string> given;
  for (const std::string& word : words) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0)
      throw Refusal(Status::Usage, quoted(word) + " is not MEMBER=VALUE");
    const std::string name = word.substr(0, sign);
    const Setting* setting = settings::settingOf(settings, name);
    if (setting == nullptr)
      throw Refusal(place + ": there is no member '" + name + "'" +
                    didYouMean(name, settings::membersOf(settings)));
    if (isAmong(given, name)) throw Refusal(memberPlace(place, name) + ": it is given twice");
    given.push_back(name);
    record[name] = valueFromWord(*setting, word.substr(sign + 1));
  }
}

}  // namespace camcfg::tool::document
