#include "settings/node.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>
#include <set>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool::settings {
namespace {

using Number = std::numeric_limits<std::int32_t>;

// How a value is called that is not of the kind expected.
std::string described(const Json& value) {
  if (value.is_object()) return "an object";
  if (value.is_array()) return "an array";
  return shortened(value.dump());
}

// Beyond these, a file would no longer be read as it was written.
bool isStorable(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte == '\n' || byte == '\t' || (byte >= 0x20 && byte != 0x7f);
}

// The last one that is meant: a number beyond it would be no multiple of the step.
std::int64_t greatestOnStep(const Range& limits, std::int64_t step) {
  return step > 1 ? limits.most - (limits.most - limits.least) % step : limits.most;
}

// The spelling of a shorter word says nothing: "GB" is no more like "MB" than like "B".
constexpr std::size_t kShortestTelling = 3;

// The elements of a list by a member, or by themselves; none unless each has one of its own.
std::map<Json, const Json*> byKey(const Json& list, const char* key) {
  std::map<Json, const Json*> found;
  for (const Json& element : list) {
    const auto member = key == nullptr ? list.end() : element.find(key);
    if (key != nullptr && member == element.end()) return {};
    if (!found.emplace(key == nullptr ? element : *member, &element).second) return {};
  }
  return found;
}

std::string nearestIs(const std::string& value) {
  return "; the nearest permitted is " + value;
}

}  // namespace

std::string outside(const std::string& written, std::int64_t number, const Range& limits,
                    std::int64_t step) {
  std::string text = concat(written, " is outside ", limits.text());
  if (limits.least > limits.most) return text;
  const bool isBelow = number < limits.least;
  return text + nearestIs(std::to_string(isBelow ? limits.least : greatestOnStep(limits, step)));
}

std::string nearestOf(const std::string& written, const std::vector<std::string>& texts) {
  if (written.empty()) return "";
  const auto holds = [&](const std::string& text) {
    return text.find(written) != std::string::npos;
  };
  if (std::count_if(texts.begin(), texts.end(), holds) == 1)
    return nearestIs(quoted(*std::find_if(texts.begin(), texts.end(), holds)));
  const std::string word = nearestWord(written, texts);
  const bool tells = written.size() >= kShortestTelling || isSameWord(word, written);
  return word.empty() || !tells ? "" : nearestIs(quoted(word));
}

std::string nearestOfLength(const std::string& text, std::size_t most) {
  return text.size() <= most ? "" : nearestIs(quoted(firstBytes(text, most)));
}

bool Node::holds(const std::vector<std::string>& members) const {
  const auto memberOf = [](const Json& object, const std::string& name) {
    const auto found = object.find(name);
    return found == object.end() ? Json() : *found;
  };
  return held_ != nullptr && std::all_of(members.begin(), members.end(), [&](const auto& name) {
           return memberOf(*held_, name) == memberOf(value_, name);
         });
}

Node Node::member(TextRef name) const {
  const auto held = held_ == nullptr ? value_.end() : held_->find(name);
  const bool isThere = held_ != nullptr && held != held_->end();
  return {value_.at(name), memberPlace(place_, name), faults_, isThere ? &*held : nullptr, force_};
}

Node Node::element(std::size_t index) const {
  const bool isThere = held_ != nullptr && held_->is_array() && index < held_->size();
  return {value_.at(index), elementPlace(place_, index), faults_,
          isThere ? &held_->at(index) : nullptr, force_};
}

std::vector<Node> Node::elements(const char* key) const {
  const std::map<Json, const Json*> held =
      held_ == nullptr || byKey(value_, key).empty() ? byKey({}, key) : byKey(*held_, key);
  std::vector<Node> all;
  for (std::size_t i = 0; i < value_.size(); ++i) {
    const Json& own = value_.at(i);
    const auto found = held.empty() ? held.end() : held.find(key == nullptr ? own : own.at(key));
    if (found != held.end())
      all.emplace_back(own, elementPlace(place_, i), faults_, found->second, force_);
    else
      all.push_back(held.empty() || key == nullptr ? element(i) : element(i).asNew());
  }
  return all;
}

void Node::refuseMissing(TextRef name) const {
  faults_.push_back({memberPlace(place_, name), "it is missing"});
}

bool Node::isObjectOf(const std::vector<std::string>& names) const {
  if (!is(value_.is_object(), "an object")) return false;
  const std::set<std::string> known(names.begin(), names.end());
  for (const auto& [name, ignored] : value_.items())
    if (known.count(name) == 0)
      member(name).refuse("there is no such member" + didYouMean(name, names));
  return true;
}

bool Node::is(bool fits, const char* expected) const {
  if (!fits) refuse(concat("it must be ", expected, ", not ", described(value_)));
  return fits;
}

std::int32_t Node::number(const Range& range) const {
  if (!is(value_.is_number(), "a number")) return 0;
  if (isHeld() && value_.is_number_integer()) return value_.get<std::int32_t>();
  const auto size = value_.get<double>();
  const bool fits =
      size >= static_cast<double>(range.least) && size <= static_cast<double>(range.most);
  if (!fits)
    refuse(outside(described(value_),
                   size < static_cast<double>(range.least) ? INT64_MIN : INT64_MAX, range));
  else if (!value_.is_number_integer())
    refuse(described(value_) + " is not a whole number");
  return fits ? value_.get<std::int32_t>() : 0;
}

std::int32_t Node::id() const {
  const std::int32_t id = number({Number::min(), Number::max()});
  if (id == -1 && !isHeld()) refuse("-1 is not an id; it stands for none");
  return id;
}

bool Node::flag() const {
  return is(value_.is_boolean(), "true or false") && value_.get<bool>();
}

std::string Node::nearestOf(const std::vector<std::string>& texts) const {
  return value_.is_string() ? settings::nearestOf(value_.get<std::string>(), texts) : "";
}

std::string Node::text(std::size_t most) const {
  if (!is(value_.is_string(), "a text")) return "";
  auto text = value_.get<std::string>();
  if (!std::all_of(text.begin(), text.end(), isStorable))
    refuse("it has a control character, which a file cannot hold");
  if (text.size() > most)
    refuse(concat("it has ", text.size(), " bytes; there is room for ", most,
                  nearestOfLength(text, most)));
  return text;
}

}  // namespace camcfg::tool::settings
