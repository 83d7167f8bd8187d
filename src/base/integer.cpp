#include "base/integer.h"

#include <limits>

namespace camcfg {
namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();

// Whatever the locale is.
bool isSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool beginsHexadecimal(const char* text) {
  return text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
}

// At least 16 for what is no digit.
unsigned valueOf(char c) {
  const unsigned digit = static_cast<unsigned char>(c) - unsigned{'0'};
  if (digit < 10) return digit;
  const unsigned letter = (static_cast<unsigned char>(c) | 0x20U) - unsigned{'a'};
  return letter < 6 ? letter + 10 : 16;
}

// The largest number if there are too many digits, 0 if there is none.
std::uint64_t magnitudeOf(const char* text, unsigned base) {
  std::uint64_t magnitude = 0;
  bool fits = true;
  for (unsigned digit = 0; (digit = valueOf(*text)) < base; ++text)
    fits = fits && !__builtin_mul_overflow(magnitude, base, &magnitude) &&
           !__builtin_add_overflow(magnitude, digit, &magnitude);
  return fits ? magnitude : std::numeric_limits<std::uint64_t>::max();
}

// Numbers are read with 64 bits, in which they stop at the limits; only the lower 32 are kept.
std::int32_t lowerHalf(std::uint64_t number) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

}  // namespace

bool readInteger(const char* text, std::int32_t& value) {
  while (isSpace(*text)) ++text;
  if (beginsHexadecimal(text)) {
    value = lowerHalf(magnitudeOf(text + 2, 16));
    return true;
  }
  const bool isNegative = *text == '-';
  if (isNegative || *text == '+') ++text;
  if (valueOf(*text) >= 10) return false;
  const std::uint64_t magnitude = magnitudeOf(text, 10);
  if (magnitude > kLargest)
    value = isNegative ? 0 : -1;
  else
    value = lowerHalf(isNegative ? 0 - magnitude : magnitude);
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
