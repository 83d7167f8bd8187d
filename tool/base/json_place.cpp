#include "base/json_place.h"

#include <algorithm>
#include <cctype>

#include "base/utf8.h"

namespace camcfg::tool {
namespace {

constexpr std::size_t kLongest = 120;

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '-';
}

}  // namespace

std::string shortened(const std::string& text) {
  if (text.size() <= kLongest) return text;
  std::size_t end = kLongest;
  while (end > 0 && utf8::continues(text[end])) --end;
  return text.substr(0, end) + "...";
}

std::string memberPlace(const std::string& place, const std::string& name) {
  if (name.empty() || !std::all_of(name.begin(), name.end(), isWordCharacter))
    return place + "[\"" + shortened(name) + "\"]";
  return place + (place.empty() ? "" : ".") + shortened(name);
}

std::string elementPlace(const std::string& place, std::size_t index) {
  return place + "[" + std::to_string(index) + "]";
}

}  // namespace camcfg::tool
