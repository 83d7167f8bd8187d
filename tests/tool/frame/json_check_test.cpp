#include "frame/json_check.h"

#include <gmock/gmock.h>

#include "frame/status.h"

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
    checkJson(text);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "";
}

TEST(JsonCheckTest, EveryKindOfValueIsAccepted) {
  EXPECT_EQ(checkJson("{\"a\": [null, true, -1, 1, 0.5, \"\", {}, []]}"), 0U);
}

TEST(JsonCheckTest, TellsTheByteFromWhichOnItIsNoJson) {
  EXPECT_EQ(checkJson(""), 1U);
  EXPECT_EQ(checkJson("[1,\n}"), 5U);
  EXPECT_EQ(checkJson("[1e999]"), 6U);
  EXPECT_EQ(checkJson("[] x"), 4U);
}

TEST(JsonCheckTest, NestingEndsAtTheLimit) {
  EXPECT_EQ(checkJson(nested(kDeepestNesting)), 0U);
  EXPECT_EQ(refusalOf(nested(kDeepestNesting + 1)), "it is nested deeper than 32 levels");
}

TEST(JsonCheckTest, ListsAndObjectsEndAtTheLimit) {
  EXPECT_EQ(checkJson(list(kMostValues, "{}")), 0U);
  EXPECT_EQ(refusalOf(list(kMostValues + 1, "{}")), "it holds a list of more than 2000 values");
  EXPECT_EQ(checkJson(object(kMostValues)), 0U);
  EXPECT_EQ(refusalOf(object(kMostValues + 1)), "it holds an object of more than 2000 values");
}

TEST(JsonCheckTest, EachListCountsByItself) {
  EXPECT_EQ(checkJson(list(3, list(kMostValues, "1"))), 0U);
}

TEST(JsonCheckTest, WhatComesBehindALimitDoesNotCount) {
  EXPECT_EQ(refusalOf(nested(kDeepestNesting + 1) + "x"), "it is nested deeper than 32 levels");
}

}  // namespace
}  // namespace camcfg::tool
