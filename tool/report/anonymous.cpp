#include "report/anonymous.h"

#include <algorithm>
#include <array>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "report/facts.h"
#include "report/identity.h"
#include "report/sources.h"

namespace camcfg::tool::report {
namespace {

constexpr char kAddress[] = "address";
constexpr char kName[] = "name";
constexpr char kUrl[] = "url";
constexpr char kFile[] = "file";

template <std::size_t Size>
bool isOneOf(const std::array<const char*, Size>& words, const std::string& text) {
  return std::any_of(words.begin(), words.end(), [&](const char* word) { return text == word; });
}

// The same for all masks: commands that are remembered have shorter ones.
std::string withEqualMasks(const std::string& url) {
  std::string equal;
  for (const char c : url)
    if (c != '*' || equal.empty() || equal.back() != '*') equal += c;
  return equal;
}

// What begins as a path does, or ends as the name of a file.
bool isPath(const std::string& word) {
  constexpr std::array kEndings = {".json", ".csv", ".xml", ".html", ".tar", ".gz"};
  return beginsWith(word, "/") || beginsWith(word, "./") || beginsWith(word, "../") ||
         std::any_of(kEndings.begin(), kEndings.end(), [&](const std::string& ending) {
           return word.size() > ending.size() &&
                  word.compare(word.size() - ending.size(), ending.size(), ending) == 0;
         });
}

// What a record of a value is about: the setting that it names, or its place.
std::string settingOf(const Json& record) {
  const Json& place = document::memberOrNothing(record, "place");
  if (place.is_string()) return place.text().substr(place.text().find_last_of("./]") + 1);
  return record.contains("factory") && record.contains("permitted") ? record.at("name").text() : "";
}

bool isValue(const std::string& member) {
  constexpr std::array kMembers = {"value",  "factory", "before",  "after",
                                   "device", "other",   "majority"};
  return isOneOf(kMembers, member);
}

// Words of the tool's own, which others are looked up by.
bool isOwn(const Json& record, const std::string& member) {
  constexpr std::array kOwn = {"severity", "why", "rule",   "help",  "unit", "service",
                               "role",     "fix", "health", "state", "copy", "by"};
  constexpr std::array kNamed = {"help", "rows", "entries", "card", kFault};
  const auto has = [&](const char* other) { return record.contains(other); };
  return isOneOf(kOwn, member) ||
         (member == "name" && std::any_of(kNamed.begin(), kNamed.end(), has));
}

}  // namespace

const char* const kWhatIsHidden =
    "Addresses, urls and names of hosts, users and of the device: [address 1] is the same address "
    "everywhere";

Anonymizer::Anonymizer(const Json& facts, const std::vector<std::string>& names) {
  for (const std::string& name : names) addName(name);
  addNamesIn("", facts);
  std::sort(names_.begin(), names_.end(), [](const Name& a, const Name& b) {
    return a.lower.size() != b.lower.size() ? a.lower.size() > b.lower.size() : a.lower < b.lower;
  });
}

Json Anonymizer::hidden(const Json& value) {
  if (value.is_string()) return hidden(value.text());
  Json result = value;
  if (value.is_array())
    for (Json& element : result) element = hidden(element);
  if (value.is_object()) {
    result = Json::object();
    for (const auto& [name, member] : value.items()) {
      // Names of members have no spaces, those of what remarks are on have.
      const std::string key = name.find(' ') == std::string::npos ? name : hidden(name);
      if (member.is_string() && isOwn(value, name))
        result[key] = member;
      else
        result[key] = hidden(member);
    }
  }
  return result;
}

std::string Anonymizer::hidden(const std::string& text) {
  const std::string lower = inLowerCase(text);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const bool isStart = startsWord(text, at);
    if (const Name* name = isStart ? nameAt(lower, at) : nullptr) {
      result += name->placeholder;
      at += name->lower.size();
      continue;
    }
    const std::size_t url = isStart ? lengthOfUrl(text, at) : 0;
    const std::size_t length = url != 0 ? url : lengthOfAddress(text, at);
    if (length == 0)
      result += text[at++];
    else
      result += placeholder(url != 0 ? kUrl : kAddress, text.substr(at, length));
    at += length;
  }
  return result;
}

std::string Anonymizer::hiddenCommand(const std::string& command, bool isOfFiles) {
  std::string result;
  std::string words;  // since the last path
  for (std::size_t at = 0; at < command.size();) {
    const std::size_t end = std::min(command.find(' ', at), command.size());
    const std::string word = command.substr(at, end - at);
    words += at == 0 ? "" : " ";
    if (isPath(word) || (isOfFiles && at != 0 && word[0] != '-')) {
      result += hidden(words) + placeholder(kFile, word);
      words.clear();
    } else {
      words += word;
    }
    at = end + 1;
  }
  return result + hidden(words);
}

Json Anonymizer::key() const {
  Json key = Json::object();
  for (const auto& [placeholder, original] : order_) key[placeholder] = original;
  return key;
}

void Anonymizer::addName(const std::string& text) {
  const bool isName = text.find_first_not_of("*0123456789") != std::string::npos &&
                      text.size() > 1 && lengthOfAddress(text, 0) != text.size() && !isCommon(text);
  const bool isUrl = text.find("://") != std::string::npos;
  if (!isName || (isUrl && lengthOfUrl(text, 0) == text.size())) return;
  const std::string lower = inLowerCase(text);
  const bool isKnown = std::any_of(names_.begin(), names_.end(),
                                   [&](const Name& name) { return name.lower == lower; });
  if (!isKnown) names_.push_back({lower, placeholder(isUrl ? kUrl : kName, text)});
}

void Anonymizer::addNamesIn(const std::string& setting, const Json& value) {
  if (value.is_string() && isNaming(setting, value.text())) {
    const std::string& text = value.text();
    addName(text);
    // Lists of hosts are texts, too.
    for (std::size_t at = 0; text.find("://") == std::string::npos && at < text.size();) {
      const std::size_t end = std::min(text.find_first_of(",; ", at), text.size());
      addName(text.substr(at, end - at));
      at = end + 1;
    }
  }
  if (value.is_array())
    for (const Json& element : value) addNamesIn(setting, element);
  if (!value.is_object()) return;
  const std::string own = settingOf(value);
  for (const auto& [name, member] : value.items())
    addNamesIn(isValue(name) && !own.empty() ? own : name, member);
}

const Anonymizer::Name* Anonymizer::nameAt(const std::string& lower, std::size_t at) const {
  for (const Name& name : names_) {
    const std::size_t end = at + name.lower.size();
    if (lower[at] == name.lower[0] && lower.compare(at, name.lower.size(), name.lower) == 0 &&
        (end == lower.size() || !isWordCharacter(lower[end])))
      return &name;
  }
  return nullptr;
}

std::string Anonymizer::placeholder(const char* kind, const std::string& original) {
  std::string& placeholder =
      placeholders_[kind == kUrl ? withEqualMasks(original) : inLowerCase(original)];
  if (!placeholder.empty()) return placeholder;
  placeholder = concat("[", kind, " ", ++counts_[kind], "]");
  order_.emplace_back(placeholder, original);
  return placeholder;
}

Json anonymous(const Json& facts, Json& key) {
  std::vector<std::string> names;
  const Json& name = document::memberOrNothing(facts.at("system"), "name");
  if (name.is_string()) names.push_back(name.text());
  Anonymizer anonymizer(facts, names);
  Json without = facts;
  without["services"] = nullptr;
  Json hidden = anonymizer.hidden(without);
  hidden["made"]["anonymous"] = true;
  hidden["made"]["command"] = anonymizer.hiddenCommand(facts.at("made").at("command").text(), true);
  const Json& history = facts.at("history");
  for (std::size_t i = 0; history.is_array() && i < history.size(); ++i)
    hidden["history"][i]["command"] =
        anonymizer.hiddenCommand(history[i].at("command").text(), false);
  hidden["services"] = servicesOf(hidden);
  key = anonymizer.key();
  return hidden;
}

Json anonymous(const Json& facts, const std::vector<std::string>& names, Json& key) {
  Anonymizer anonymizer(facts, names);
  Json hidden = anonymizer.hidden(facts);
  hidden["anonymous"] = true;
  key = anonymizer.key();
  return hidden;
}

}  // namespace camcfg::tool::report
