#include "base/name_matches.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace camcfg::tests {
namespace {

using namespace tool;

// As a lookup goes through the document.
std::size_t firstThat(const std::vector<std::string>& names, const std::string& name, bool longer) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (longer ? names[i].size() > name.size() && names[i].compare(0, name.size(), name) == 0
               : names[i] == name)
      return i;
  return kNoMatch;
}

void expectMatches(const std::vector<std::string>& names) {
  const std::vector<NameMatches> matches = matchNames({names.begin(), names.end()});
  ASSERT_EQ(matches.size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(matches[i].same, firstThat(names, names[i], false)) << names[i] << " at " << i;
    EXPECT_EQ(matches[i].longer, firstThat(names, names[i], true)) << names[i] << " at " << i;
  }
}

TEST(NameMatchesTest, NothingMatchesNothing) {
  EXPECT_TRUE(matchNames({}).empty());
}

TEST(NameMatchesTest, AnswerIsTheFirstNameThatBeginsWithOne) {
  const std::vector<NameMatches> matches = matchNames({"RtspOverHttp", "Rtsp", "Web", "WebHttp"});
  EXPECT_EQ(matches[0].answer(), 0U);
  EXPECT_EQ(matches[1].answer(), 0U);
  EXPECT_EQ(matches[2].answer(), 2U);
  EXPECT_EQ(matches[3].answer(), 3U);
}

TEST(NameMatchesTest, EmptyNameBeginsEveryOther) {
  expectMatches({"b", "", "a", ""});
}

TEST(NameMatchesTest, NamesOfAnyKindMatchAsALookupDoes) {
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same names in every run
  for (int round = 0; round < 200; ++round) {
    std::vector<std::string> names(random() % 30);
    for (std::string& name : names)
      for (std::size_t length = random() % 5; length > 0; --length) name += "ab\xff"[random() % 3];
    expectMatches(names);
  }
}

}  // namespace
}  // namespace camcfg::tests
