#include "base/plain_text.h"

#include <gmock/gmock.h>

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

}  // namespace
}  // namespace camcfg::tests
