#include "settings/value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace camcfg::tool::settings {
namespace {

using testing::ElementsAre;

TEST(OptionsInTest, CommasSemicolonsAndBarsPartTexts) {
  EXPECT_THAT(optionsIn("Auto,Half-Auto, Manual"), ElementsAre("Auto", "Half-Auto", "Manual"));
  EXPECT_THAT(optionsIn("a b;c|d,"), ElementsAre("a b", "c", "d"));
  EXPECT_THAT(optionsIn(""), ElementsAre());
  EXPECT_THAT(optionsIn(" , ;"), ElementsAre());
}

/// What an element says of itself.
class ParameterFormTest : public testing::Test {
 protected:
  ParameterForm form(const std::string& attributes) {
    document_.Parse(("<A " + attributes + "/>").c_str());
    return ParameterForm(*document_.FirstChildElement());
  }

  tinyxml2::XMLDocument document_;
};

TEST_F(ParameterFormTest, LimitsMakeAnInteger) {
  EXPECT_TRUE(form("Min='1'").isInteger());
  EXPECT_TRUE(form("Max='1' OptTxt='a'").isInteger());
  EXPECT_FALSE(form("Cur='1' OptTxt='1,2'").isInteger());
  EXPECT_FALSE(form("Cur='1'").isInteger());
}

TEST_F(ParameterFormTest, StepMakesAnIntegerOfWhatHasNoTexts) {
  EXPECT_TRUE(form("Cur='1' Step='1'").isInteger());
  EXPECT_FALSE(form("Cur='a' Step='1' OptTxt='a,b'").isInteger());
}

TEST_F(ParameterFormTest, PermittedIsWhatTheFileSays) {
  EXPECT_EQ(form("Min='1' Max='9' Step='2'").permitted(), "1..9, step 2");
  EXPECT_EQ(form("Min='1'").permitted(), "1..?");
  EXPECT_EQ(form("OptTxt='a, b'").permitted(), "a, b");
  EXPECT_EQ(form("Cur='a'").permitted(), "");
}

TEST_F(ParameterFormTest, LimitsAreThoseThatReadersGet) {
  const auto [least, most] =
      limitsIn(*(form("Min='12kB' Max='many'"), document_.FirstChildElement()), {-1, 99});
  EXPECT_EQ(least, 12);
  EXPECT_EQ(most, 99);
}

}  // namespace
}  // namespace camcfg::tool::settings
