#include <algorithm>
#include <cstdint>

#include "base/concat.h"
#include "base/plain_text.h"
#include "settings/value.h"

namespace camcfg::tool::settings {
namespace {

// What separates the texts of an "OptTxt": the first of these of which it has any.
std::string_view separatorsOf(std::string_view optTxt) {
  for (const std::string_view separators : {",;|", "/"})
    if (optTxt.find_first_of(separators) != std::string_view::npos) return separators;
  return " ";
}

}  // namespace

std::vector<std::string> optionsIn(std::string_view optTxt) {
  std::vector<std::string> options;
  const std::string_view separators = separatorsOf(optTxt);
  for (std::size_t start = 0; start <= optTxt.size();) {
    const std::size_t end = std::min(optTxt.find_first_of(separators, start), optTxt.size());
    const std::string_view option = optTxt.substr(start, end - start);
    const std::size_t first = option.find_first_not_of(' ');
    if (first != std::string_view::npos)
      options.emplace_back(option.substr(first, option.find_last_not_of(' ') + 1 - first));
    start = end + 1;
  }
  return options;
}

bool isWholeOption(std::string_view optTxt, std::string_view text) {
  const std::vector<std::string> options = optionsIn(optTxt);
  return text.empty() ? options.empty() : isAmong(options, text);
}

std::optional<int> integerIn(const tinyxml2::XMLElement& element, const char* attribute) {
  int number = 0;
  if (element.QueryIntAttribute(attribute, &number) != tinyxml2::XML_SUCCESS) return std::nullopt;
  return number;
}

Range limitsIn(const tinyxml2::XMLElement& element, const Range& otherwise) {
  const auto orElse = [&](const char* attribute, std::int64_t other) {
    const std::optional<int> limit = integerIn(element, attribute);
    return limit ? *limit : other;
  };
  return {orElse("Min", otherwise.least), orElse("Max", otherwise.most)};
}

bool ParameterForm::isInteger() const {
  if (text("Min") != nullptr || text("Max") != nullptr) return true;
  return text("Step") != nullptr && text("OptTxt") == nullptr;
}

std::vector<std::string> ParameterForm::options() const {
  return isInteger() ? std::vector<std::string>() : optionsIn(textOf(element_, "OptTxt"));
}

std::string ParameterForm::permitted() const {
  if (!isInteger()) return textOf(element_, "OptTxt");
  const auto shown = [this](const char* attribute) {
    return std::string(text(attribute) == nullptr ? "?" : text(attribute));
  };
  const std::string range = concat(shown("Min"), "..", shown("Max"));
  return text("Step") == nullptr ? range : concat(range, ", step ", shown("Step"));
}

Objection ParameterForm::objectionTo(const std::string& text) const {
  return isInteger() ? objectionToNumber(text) : objectionToText(text);
}

// The library reports the step and does not enforce it, but a value between two is not meant.
Objection ParameterForm::objectionToNumber(const std::string& text) const {
  for (const char* name : {"Min", "Max"}) {
    const char* limit = this->text(name);
    if (limit == nullptr) return {concat("it has no ", name, ", so no value is permitted")};
    if (!integerIn(element_, name))
      return {concat("its ", name, " ", quoted(limit), " is not an integer")};
  }
  const std::optional<long long> number = decimal(text);
  if (!number) return {quoted(text) + " is not a decimal integer"};
  const Range limits = limitsIn(element_, {});
  if (limits.has(*number)) return {};
  return {outside(text, *number, limits, integerIn(element_, "Step").value_or(1))};
}

Objection ParameterForm::objectionToText(const std::string& text) const {
  if (this->text("OptTxt") == nullptr)
    return {"it has neither Min, Max nor OptTxt, so the library permits no value"};
  const std::string options = textOf(element_, "OptTxt");
  const std::string nearest = nearestOf(text, optionsIn(options));
  if (text.empty() && !isWholeOption(options, text))
    return {"the text is empty; the texts are " + quoted(options), true};
  if (options.find(text) == std::string::npos)
    return {concat(quoted(text), " is not among ", quoted(options), nearest)};
  if (isWholeOption(options, text)) return {};
  return {concat(quoted(text), " is only a part of one of ", quoted(options), nearest), true};
}

}  // namespace camcfg::tool::settings
