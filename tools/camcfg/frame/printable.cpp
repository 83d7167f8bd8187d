#include "frame/printable.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

std::string escaped(unsigned char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  if (c == '\n') return "\\n";
  if (c == '\t') return "\\t";
  return {'\\', 'x', kDigits[c >> 4], kDigits[c & 15]};
}

}  // namespace

std::string printable(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7f)
      shown += escaped(byte);
    else
      shown += c;
  }
  return shown;
}

std::string withShortWords(const std::string& text) {
  constexpr std::size_t kLongest = 512;
  constexpr std::size_t kKept = 64;
  std::string result;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    std::size_t kept = end - start > kLongest ? start + kKept : end;
    while (kept < end && kept > start && (static_cast<unsigned char>(text[kept]) & 0xc0) == 0x80)
      --kept;
    result.append(start == 0 ? "" : " ").append(text, start, kept - start);
    if (kept < end) result += "...";
    start = end + 1;
  }
  return result;
}

std::size_t characters(const std::string& text) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; };
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

}  // namespace camcfg::tool
