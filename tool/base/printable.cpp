#include "base/printable.h"

#include "base/plain_text.h"

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
    const utf8::Sequence sequence = utf8::sequenceAt(text, at);
    const std::size_t length = sequence.isValid ? sequence.length : 1;
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
    const std::string_view word(text.data() + start, end - start);
    result.append(start == 0 ? "" : " ");
    if (word.size() > kLongest)
      result.append(firstBytes(word, kKept)).append("...");
    else
      result.append(word);
    start = end + 1;
  }
  return result;
}

std::size_t characters(const std::string& text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), utf8::continues));
}

}  // namespace camcfg::tool
