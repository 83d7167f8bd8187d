#include "base/printable.h"

#include <algorithm>

namespace camcfg::tool {
namespace {

std::string hexadecimal(unsigned char c) {
  constexpr char kDigits[] = "0123456789abcdef";
  return {kDigits[c >> 4], kDigits[c & 15]};
}

std::string escaped(unsigned char c) {
  if (c == '\n') return "\\n";
  if (c == '\t') return "\\t";
  return "\\x" + hexadecimal(c);
}

bool isControl(unsigned char c) {
  return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

bool continues(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

// How many bytes the UTF-8 character has that begins there; 1 for a byte that is none.
std::size_t lengthAt(const std::string& text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : lead >= 0xc2 ? 2 : 1;
  for (std::size_t i = 1; i < length; ++i)
    if (at + i >= text.size() || !continues(text[at + i])) return 1;
  return length;
}

// One character, U+0080 to U+009f and the bytes of these values included.
std::string shown(const std::string& character) {
  const auto last = static_cast<unsigned char>(character.back());
  if (character.size() == 1) return isControl(last) ? escaped(last) : character;
  const bool isBeyondAscii = character.size() == 2 && character[0] == '\xc2' && isControl(last);
  return isBeyondAscii ? "\\u00" + hexadecimal(last) : character;
}

}  // namespace

std::string printable(const std::string& text) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = lengthAt(text, at);
    result += shown(text.substr(at, length));
    at += length;
  }
  return result;
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
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues));
}

}  // namespace camcfg::tool
