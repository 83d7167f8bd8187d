#include "base/json.h"

#include <gmock/gmock.h>

#include "base/outcome.h"

namespace camcfg::tool {
namespace {

std::string list(std::size_t values, const std::string& value) {
  std::string text = "[" + value;
  for (std::size_t i = 1; i < values; ++i) text += "," + value;
  return text + "]";
}

std::string object(std::size_t members) {
  std::string text = "{\"m\": 0";
  for (std::size_t i = 1; i < members; ++i) text += ", \"m" + std::to_string(i) + "\": 0";
  return text + "}";
}

std::string nested(std::size_t levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

std::string refusalOf(const std::string& text) {
  try {
    readJson(text);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(JsonReaderTest, EveryKindOfValueIsAccepted) {
  EXPECT_EQ(readJson("{\"a\": [null, true, -1, 1, 0.5, \"\", {}, []]}").fault, 0U);
}

TEST(JsonReaderTest, ReportsTheByteWhereItStopsBeingJson) {
  EXPECT_EQ(readJson("").fault, 1U);
  EXPECT_EQ(readJson("[1,\n}").fault, 5U);
  EXPECT_EQ(readJson("[1e999]").fault, 6U);
  EXPECT_EQ(readJson("[] x").fault, 4U);
}

TEST(JsonReaderTest, ValuesAreReadAsTheyAreWritten) {
  const std::string text = "{\"a\":[null,true,-1,18446744073709551615,0.5,\"\\u00e9\"],\"b\":{}}";
  EXPECT_EQ(readJson(text).value.dump(),
            "{\"a\":[null,true,-1,18446744073709551615,0.5,\"\xc3\xa9\"],\"b\":{}}");
}

TEST(JsonReaderTest, TheFirstOfRepeatedMembersCounts) {
  const JsonText read = readJson("{\"a\": {\"b\": [{\"c\": 1, \"c\": [2]}]}, \"a\": 3}");
  EXPECT_EQ(read.value.dump(), "{\"a\":{\"b\":[{\"c\":1}]}}");
  EXPECT_THAT(read.repeated, testing::ElementsAre("a.b[0].c", "a"));
}

TEST(JsonReaderTest, AReasonRepeatsNothingOfTheText) {
  const JsonText read = readJson("{\"password\": \"secret\" secret}");
  EXPECT_EQ(read.value, Json());
  EXPECT_NE(read.reason, "");
  EXPECT_THAT(read.reason, testing::Not(testing::HasSubstr("secret")));
}

TEST(JsonReaderTest, NestingEndsAtTheLimit) {
  EXPECT_EQ(readJson(nested(kDeepestNesting)).fault, 0U);
  EXPECT_EQ(refusalOf(nested(kDeepestNesting + 1)), "it is nested deeper than 32 levels");
}

TEST(JsonReaderTest, TextsEndAtTheLimit) {
  const std::string text = std::string(kMostText - 2, ' ') + "[]";
  EXPECT_EQ(readJson(text).fault, 0U);
  EXPECT_EQ(refusalOf(text + " "), "it has 67108865 bytes, the limit is 67108864");
}

TEST(JsonReaderTest, ListsAndObjectsHaveNoLimitOfTheirOwn) {
  EXPECT_EQ(readJson(list(100000, "{}")).value.size(), 100000U);
  const Json many = readJson(object(100000)).value;
  EXPECT_EQ(many.size(), 100000U);
  EXPECT_TRUE(many.contains("m99999"));
  EXPECT_FALSE(many.contains("m100000"));
}

TEST(JsonReaderTest, AMemberThatManyHaveAlreadyIsSeen) {
  const std::string text = object(100000);
  EXPECT_THAT(readJson(text.substr(0, text.size() - 1) + ", \"m77\": 1}").repeated,
              testing::ElementsAre("m77"));
}

TEST(JsonReaderTest, WhatComesAfterALimitDoesNotCount) {
  EXPECT_EQ(refusalOf(nested(kDeepestNesting + 1) + "x"), "it is nested deeper than 32 levels");
}

}  // namespace
}  // namespace camcfg::tool
