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

TEST(JsonReaderTest, ListsAndObjectsEndAtTheLimit) {
  EXPECT_EQ(readJson(list(kMostValues, "{}")).fault, 0U);
  EXPECT_EQ(refusalOf(list(kMostValues + 1, "{}")), "it holds a list of more than 2000 values");
  EXPECT_EQ(readJson(object(kMostValues)).fault, 0U);
  EXPECT_EQ(refusalOf(object(kMostValues + 1)), "it holds an object of more than 2000 values");
}

TEST(JsonReaderTest, EachListCountsByItself) {
  EXPECT_EQ(readJson(list(3, list(kMostValues, "1"))).fault, 0U);
}

TEST(JsonReaderTest, WhatComesAfterALimitDoesNotCount) {
  EXPECT_EQ(refusalOf(nested(kDeepestNesting + 1) + "x"), "it is nested deeper than 32 levels");
}

}  // namespace
}  // namespace camcfg::tool
