#include "base/integer.h"

#include <gtest/gtest.h>
#include <tinyxml2.h>

#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace camcfg::tests {
namespace {

__extension__ using Wide = __int128;

constexpr std::int32_t kBefore = 1234567;

// What a reader returns and leaves in the value.
struct Read {
  bool any = false;
  std::int32_t value = kBefore;

  bool operator==(const Read& other) const { return any == other.any && value == other.value; }
};

void PrintTo(const Read& read, std::ostream* out) {
  *out << (read.any ? "read " : "none ") << read.value;
}

Read byTinyxml2(const char* text) {
  Read read;
  read.any = tinyxml2::XMLUtil::ToInt(text, &read.value);
  return read;
}

Read byLibrary(const char* text) {
  Read read;
  read.any = readInteger(text, read.value);
  return read;
}

bool agrees(const std::string& text) {
  EXPECT_EQ(byLibrary(text.c_str()), byTinyxml2(text.c_str())) << testing::PrintToString(text);
  return !testing::Test::HasFailure();
}

// Every text that begins so and has up to `more` characters of the alphabet after that.
void expectAllToAgree(std::string& text, const std::string& alphabet, int more) {
  if (!agrees(text) || more == 0) return;
  for (const char c : alphabet) {
    text.push_back(c);
    expectAllToAgree(text, alphabet, more - 1);
    text.pop_back();
    if (testing::Test::HasFailure()) return;
  }
}

TEST(ReadIntegerTest, ReadsEveryShortTextAsTinyxml2Does) {
  std::string text;
  expectAllToAgree(text, std::string("019+-xXafFgG. \t\n\v\f\r\0\x80\x85\xA0\xFF,/:@`", 30), 4);
  expectAllToAgree(text, "08+-xXaf \n", 6);
}

TEST(ReadIntegerTest, ReadsEveryPairOfBytesAsTinyxml2Does) {
  for (int first = 0; first < 256; ++first)
    for (int second = 0; second < 256; ++second)
      for (const char* start : {"", "1", " -", "0x"})
        ASSERT_TRUE(
            agrees(start + std::string{static_cast<char>(first), static_cast<char>(second)}));
}

// Around each power of two, in both bases, signed, with zeros before and other text after.
TEST(ReadIntegerTest, ReadsNumbersAroundTheLimitsAsTinyxml2Does) {
  for (int power = 28; power <= 70; ++power)
    for (int distance = -20; distance <= 20; ++distance) {
      const Wide number = (static_cast<Wide>(1) << power) + distance;
      for (const unsigned base : {10U, 16U}) {
        std::string digits;
        for (Wide rest = number; rest != 0; rest /= base)
          digits.insert(0, 1, "0123456789abcdef"[static_cast<unsigned>(rest % base)]);
        for (const char* start : {"", "-", "+", "0", "-000", "0x", "0X00", "-0x", " \t", "+ "})
          for (const char* end : {"", "0", "9", "99999999999999999999", "f", ".5", " 1", "-"})
            ASSERT_TRUE(agrees(start + digits + end));
      }
    }
}

TEST(ReadIntegerTest, ReadsRandomTextsAsTinyxml2Does) {
  std::mt19937 random(1);
  const std::string alphabet = "00123456789aFx-+ ";
  for (int round = 0; round < 300000; ++round) {
    std::string text;
    for (auto left = random() % 28; left > 0; --left)
      text.push_back(alphabet[random() % (random() % 4 != 0 ? 11 : alphabet.size())]);
    if (random() % 3 == 0) text.insert(0, "0x");
    ASSERT_TRUE(agrees(text));
  }
}

std::string printed(std::int32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "%d", value);
  return text;
}

TEST(IntegerTextTest, IsWhatPrintfMakesOfANumber) {
  using Limits = std::numeric_limits<std::int32_t>;
  for (std::int64_t value = Limits::min(); value <= Limits::max(); value += 9973) {
    const auto number = static_cast<std::int32_t>(value);
    ASSERT_EQ(IntegerText(number).begin(), printed(number));
  }
  for (std::int64_t power = 1; power <= 10000000000; power *= 10)
    for (std::int64_t value = power - 2; value <= power + 2; ++value)
      for (const std::int64_t either : {value, -value})
        if (either >= Limits::min() && either <= Limits::max()) {
          const auto number = static_cast<std::int32_t>(either);
          ASSERT_EQ(IntegerText(number).begin(), printed(number));
        }
  for (const std::int32_t limit : {Limits::min(), Limits::min() + 1, Limits::max()})
    EXPECT_EQ(IntegerText(limit).begin(), printed(limit));
}

}  // namespace
}  // namespace camcfg::tests
