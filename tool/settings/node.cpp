#include "settings/node.h"

#include <algorithm>
#include <cstdint>
#include <limits>

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

std::string nearestIs(const std::string& value) {
  return "; the nearest permitted is " + value;
}

}  // namespace

std::string outside(const std::string& written, std::int64_t number, const Range& limits,
                    std::int64_t step) {
  std::string text = written + " is outside " + limits.text();
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

Node Node::member(const std::string& name) const {
  return {value_.at(name), memberPlace(place_, name), faults_};
}

Node Node::element(std::size_t index) const {
  return {value_.at(index), elementPlace(place_, index), faults_};
}

void Node::refuseMissing(const std::string& name) const {
  faults_.push_back({memberPlace(place_, name), "it is missing"});
}

bool Node::isObjectOf(const std::vector<std::string>& names) const {
  if (!is(value_.is_object(), "an object")) return false;
  for (const auto& [name, ignored] : value_.items())
    if (!isAmong(names, name))
      member(name).refuse("there is no such member" + didYouMean(name, names));
  return true;
}

bool Node::is(bool fits, const char* expected) const {
  if (!fits) refuse(std::string("it must be ") + expected + ", not " + described(value_));
  return fits;
}

std::int32_t Node::number(const Range& range) const {
  if (!is(value_.is_number(), "a number")) return 0;
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
  if (id == -1) refuse("-1 is not an id; it stands for none");
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
    refuse("it has " + std::to_string(text.size()) + " bytes; there is room for " +
           std::to_string(most) + nearestOfLength(text, most));
  return text;
}

}  // namespace camcfg::tool::settings
