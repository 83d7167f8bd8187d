#include "frame/spelling.h"

#include <gmock/gmock.h>

namespace camcfg::tests {
namespace {

using tool::didYouMean;

const std::vector<std::string> kWords = {"list", "get", "set", "describe", "system"};

TEST(SpellingTest, NearestWordIsSuggested) {
  EXPECT_EQ(didYouMean("lst", kWords), "; did you mean 'list'?");
  EXPECT_EQ(didYouMean("describ", kWords), "; did you mean 'describe'?");
  EXPECT_EQ(didYouMean("sytsem", kWords), "; did you mean 'system'?");
  EXPECT_EQ(didYouMean("GET", kWords), "; did you mean 'get'?");
  EXPECT_EQ(didYouMean("sets", kWords), "; did you mean 'set'?");
}

TEST(SpellingTest, NothingIsSuggestedForAWordThatIsFarFromAll) {
  EXPECT_EQ(didYouMean("frobnicate", kWords), "");
  EXPECT_EQ(didYouMean("xyz", kWords), "");
  EXPECT_EQ(didYouMean("", kWords), "");
  EXPECT_EQ(didYouMean("list", {}), "");
}

TEST(SpellingTest, EndlessWordsAreNotCompared) {
  EXPECT_EQ(didYouMean(std::string(1000000, 'x'), kWords), "");
  EXPECT_EQ(didYouMean("set", {std::string(1000000, 'x')}), "");
}

}  // namespace
}  // namespace camcfg::tests
