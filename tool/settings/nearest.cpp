#include "settings/nearest.h"

#include <strings.h>

#include <algorithm>

#include "base/spelling.h"

namespace camcfg::tool::settings {
namespace {

std::string quoted(const std::string& text) {
  return "'" + text + "'";
}

// The last one that is meant: a number beyond it would be no multiple of the step.
std::int64_t greatestOnStep(std::int64_t least, std::int64_t most, std::int64_t step) {
  return step > 1 && least <= most ? most - (most - least) % step : most;
}

// The spelling of a shorter word says nothing: "GB" is no more like "MB" than like "B".
constexpr std::size_t kShortestTelling = 3;

bool isSameWord(const std::string& a, const std::string& b) {
  return strcasecmp(a.c_str(), b.c_str()) == 0;
}

bool isLaterByte(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

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

std::vector<std::string> textsIn(const std::string& options) {
  constexpr char kBetween[] = ",;|";
  std::vector<std::string> texts;
  for (std::size_t start = 0; start <= options.size();) {
    const std::size_t end = std::min(options.find_first_of(kBetween, start), options.size());
    const std::string text = options.substr(start, end - start);
    const std::size_t first = text.find_first_not_of(' ');
    if (first != std::string::npos)
      texts.push_back(text.substr(first, text.find_last_not_of(' ') + 1 - first));
    start = end + 1;
  }
  return texts;
}

std::string nearestOfLength(const std::string& text, std::size_t most) {
  if (text.size() <= most) return "";
  std::size_t end = most;
  while (end > 0 && isLaterByte(text[end])) --end;
  return nearestIs(quoted(text.substr(0, end)));
}

}  // namespace camcfg::tool::settings
