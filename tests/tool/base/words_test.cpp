#include <gmock/gmock.h>

#include "base/plain_text.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tool::wordsIn;

TEST(WordsTest, AreBetweenBlanksOfAnyKindAndNumber) {
  EXPECT_THAT(wordsIn("one two"), ElementsAre("one", "two"));
  EXPECT_THAT(wordsIn("  one \t\n two\r\n"), ElementsAre("one", "two"));
  EXPECT_THAT(wordsIn("one"), ElementsAre("one"));
}

TEST(WordsTest, ThereAreNoneInBlanks) {
  EXPECT_THAT(wordsIn(""), IsEmpty());
  EXPECT_THAT(wordsIn(" \n"), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
