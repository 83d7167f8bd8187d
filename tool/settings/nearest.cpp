#include "settings/nearest.h"

#include "base/plain_text.h"
#include "base/spelling.h"

namespace camcfg::tool::settings {
namespace {

// The last one that is meant: a number beyond it would be no multiple of the step.
std::int64_t greatestOnStep(std::int64_t least, std::int64_t most, std::int64_t step) {
  return step > 1 && least <= most ? most - (most - least) % step : most;
}

// The spelling of a shorter word says nothing: "GB" is no more like "MB" than like "B".
constexpr std::size_t kShortestTelling = 3;

}  // namespace

std::string nearestIs(const std::string& value) {
  return value.empty() ? "" : "; the nearest permitted is " + value;
}

std::string outside(const std::string& written, std::int64_t number, std::int64_t least,
                    std::int64_t most, std::int64_t step) {
  const std::string range = std::to_string(least) + ".." + std::to_string(most);
  std::string text = written + " is outside " + range;
  if (least > most) return text;
  return text +
         nearestIs(std::to_string(number < least ? least : greatestOnStep(least, most, step)));
}

std::string nearestOf(const std::string& written, const std::vector<std::string>& texts) {
  if (written.empty()) return "";
  const std::string* only = nullptr;
  int holders = 0;
  for (const std::string& text : texts) {
    if (text.find(written) == std::string::npos) continue;
    ++holders;
    only = &text;
  }
  if (holders == 1) return nearestIs(quoted(*only));
  const std::string word = nearestWord(written, texts);
  const bool tells = written.size() >= kShortestTelling || isSameWord(word, written);
  return word.empty() || !tells ? "" : nearestIs(quoted(word));
}

std::string nearestOfLength(const std::string& text, std::size_t most) {
  return text.size() <= most ? "" : nearestIs(quoted(firstBytes(text, most)));
}

}  // namespace camcfg::tool::settings
