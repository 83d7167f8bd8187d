#include "base/plain_text.h"

#include <gmock/gmock.h>
#include <locale.h>
#include <wctype.h>

#include <codecvt>
#include <locale>

namespace camcfg::tests {
namespace {

using tool::didYouMean;

class SpellingTest : public testing::Test {
 protected:
  const std::vector<std::string> words = {"list", "get", "set", "describe", "system"};
};

TEST_F(SpellingTest, NearestWordIsSuggested) {
  EXPECT_EQ(didYouMean("lst", words), "; did you mean 'list'?");
  EXPECT_EQ(didYouMean("describ", words), "; did you mean 'describe'?");
  EXPECT_EQ(didYouMean("sytsem", words), "; did you mean 'system'?");
  EXPECT_EQ(didYouMean("GET", words), "; did you mean 'get'?");
  EXPECT_EQ(didYouMean("sets", words), "; did you mean 'set'?");
}

TEST_F(SpellingTest, NothingIsSuggestedForAWordThatIsFarFromAll) {
  EXPECT_EQ(didYouMean("frobnicate", words), "");
  EXPECT_EQ(didYouMean("xyz", words), "");
  EXPECT_EQ(didYouMean("", words), "");
  EXPECT_EQ(didYouMean("list", {}), "");
}

TEST_F(SpellingTest, EndlessWordsAreNotCompared) {
  EXPECT_EQ(didYouMean(std::string(1000000, 'x'), words), "");
  EXPECT_EQ(didYouMean("set", {std::string(1000000, 'x')}), "");
}

TEST(LowerCaseTest, AsciiAndWhatIsNotUtf8) {
  EXPECT_EQ(tool::inLowerCase("MiXed 42 []"), "mixed 42 []");
  EXPECT_EQ(tool::inLowerCase("\xc3 \xff\xc0\x80Z"), "\xc3 \xff\xc0\x80z");
  EXPECT_EQ(tool::inLowerCase("\U0001f4f7\u4e2d\u05d0"), "\U0001f4f7\u4e2d\u05d0");
}

TEST(LowerCaseTest, LettersAreMadeSmallAsTheCLibraryDoes) {
  const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  ASSERT_NE(utf8, nullptr);
  std::wstring_convert<std::codecvt_utf8<char32_t>, char32_t> converter;
  std::vector<char32_t> others;
  for (const auto& [first, last] : {std::pair<char32_t, char32_t>{0x80, 0x36f},
                                    {0x370, 0x3cf},
                                    {0x400, 0x58f},
                                    {0x1e00, 0x1eff}})
    for (char32_t letter = first; letter <= last; ++letter) {
      const auto small = static_cast<char32_t>(towlower_l(static_cast<wint_t>(letter), utf8));
      const std::string found = tool::inLowerCase(converter.to_bytes(letter));
      if (found == converter.to_bytes(small)) continue;
      EXPECT_EQ(found, converter.to_bytes(letter)) << std::hex << static_cast<unsigned>(letter);
      others.push_back(letter);
    }
  // Letters of old and African spellings, and capitals that have no small one of the same script.
  EXPECT_LT(others.size(), 130U);
  for (const char32_t letter : others)
    EXPECT_TRUE((letter >= 0x178 && letter <= 0x24e) || letter == 0x130 || letter >= 0x4c0 ||
                (letter >= 0x370 && letter <= 0x3cf) || letter == 0x1e9e)
        << std::hex << static_cast<unsigned>(letter);
  freelocale(utf8);
}

}  // namespace
}  // namespace camcfg::tests
