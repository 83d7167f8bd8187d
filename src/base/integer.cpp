#include "base/integer.h"

namespace camcfg {
namespace {

// Whatever the locale is.
bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// At least 16 for what is no digit.
unsigned valueOf(char c) {
  const unsigned digit = static_cast<unsigned char>(c) - unsigned{'0'};
  if (digit < 10) return digit;
  const unsigned letter = (static_cast<unsigned char>(c) | 0x20U) - unsigned{'a'};
  return letter < 6 ? letter + 10 : 16;
}

}  // namespace

bool readInteger(const char* text, std::int32_t& value) {
  while (isSpace(*text)) ++text;
  const bool isHexadecimal = text[0] == '0' && (text[1] | 0x20) == 'x';
  const bool isNegative = *text == '-';
  if (isHexadecimal)
    text += 2;
  else if (isNegative || *text == '+')
    ++text;
  const unsigned base = isHexadecimal ? 16 : 10;
  // "0x" on its own is 0.
  if (!isHexadecimal && valueOf(*text) >= base) return false;
  std::uint64_t magnitude = 0;
  bool isBeyond = false;
  for (unsigned digit = 0; (digit = valueOf(*text)) < base; ++text) {
    // One more digit then exceeds 64 bits, of a decimal number the 63 that it has.
    isBeyond = isBeyond || magnitude >> 60 != 0;
    magnitude = magnitude * base + digit;
  }
  isBeyond = isBeyond || (!isHexadecimal && magnitude >> 63 != 0);
  // A number stops at the limits of 64 bits, and its lower 32 are kept.
  if (isBeyond) magnitude = isNegative ? 0 : ~std::uint64_t{0};
  const std::uint64_t number = isNegative ? 0 - magnitude : magnitude;
  value = static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
  return true;
}

IntegerText::IntegerText(std::int32_t value) : begin_(room_ + sizeof room_ - 1) {
  *begin_ = '\0';
  const auto bits = static_cast<std::uint32_t>(value);
  std::uint32_t rest = value < 0 ? 0 - bits : bits;
  do *--begin_ = static_cast<char>('0' + rest % 10);
  while ((rest /= 10) != 0);
  if (value < 0) *--begin_ = '-';
}

}  // namespace camcfg
