#include "base/json.h"

#include <gmock/gmock.h>

#include <list>
#include <optional>
#include <set>
#include <stdexcept>

namespace camcfg::tool {
namespace {

using testing::ElementsAre;

TEST(JsonTest, FieldsMakeAnObjectAndElementsAnArray) {
  EXPECT_EQ((Json{{"b", 1}, {"a", Json::array({1, 2})}}).dump(), "{\"b\":1,\"a\":[1,2]}");
  EXPECT_EQ((Json{{std::string("b"), Json()}}).dump(), "{\"b\":null}");
  EXPECT_EQ(Json::array({Json::array({"a", 3})}).dump(), "[[\"a\",3]]");
  EXPECT_EQ(Json::array({}).dump(), "[]");
}

TEST(JsonTest, ContainersBecomeArrays) {
  EXPECT_EQ(Json(std::list<int>{2, 1}).dump(), "[2,1]");
  EXPECT_EQ(Json(std::vector<std::string>()).dump(), "[]");
}

TEST(JsonTest, WhatIsNotThereIsNull) {
  const char* none = nullptr;
  EXPECT_EQ((Json{{"a", std::optional<int>()}, {"b", std::optional<int>(7)}}).dump(),
            R"({"a":null,"b":7})");
  EXPECT_TRUE(Json(none).is_null());
  EXPECT_EQ(Json("").dump(), "\"\"");
}

TEST(JsonTest, MembersAreAddedWhereTheyAreMissing) {
  Json value;
  value["b"] = 1;
  value.at_path("a/c") = "x";
  value["b"] = 2;
  EXPECT_EQ(value.dump(), "{\"b\":2,\"a\":{\"c\":\"x\"}}");
  EXPECT_TRUE(value.contains("a"));
  EXPECT_FALSE(value.contains("c"));
}

TEST(JsonTest, PathsGoThroughMembersAndElements) {
  const Json value = {{"list", Json::array()}, {"of", Json::array({{{"x", 7}}, nullptr})}};
  EXPECT_EQ(*value.find_path("of/0/x"), 7);
  EXPECT_EQ(value.find_path("of/2"), nullptr);
  EXPECT_EQ(value.find_path("of/x"), nullptr);
  EXPECT_EQ(value.find_path("list/0"), nullptr);
  EXPECT_EQ(value.find_path(""), &value);
}

TEST(JsonTest, AskingForWhatIsNotThereIsAFaultOfTheProgram) {
  const Json value = {{"a", 1}};
  EXPECT_THROW(value.at("b"), std::logic_error);
  EXPECT_THROW(value.at(std::size_t{1}), std::logic_error);
  EXPECT_THROW(value.get<std::string>(), std::logic_error);
  EXPECT_THROW(value.at("a").text(), std::logic_error);
  EXPECT_THROW(Json("text").push_back(1), std::logic_error);
  EXPECT_THROW(Json(1)["a"], std::logic_error);
}

TEST(JsonTest, NumbersOfOneValueAreEqualWhateverTheirKind) {
  EXPECT_EQ(Json(1), Json(1.0));
  EXPECT_EQ(Json(1U), Json(1));
  EXPECT_NE(Json(1), Json("1"));
  EXPECT_NE(Json(~std::uint64_t{0}), Json(-1));
}

TEST(JsonTest, ObjectsAreEqualWithTheirMembersInOneOrder) {
  EXPECT_EQ((Json{{"a", 1}, {"b", 2}}), (Json{{"a", 1}, {"b", 2}}));
  EXPECT_NE((Json{{"a", 1}, {"b", 2}}), (Json{{"b", 2}, {"a", 1}}));
}

TEST(JsonTest, SetsTellAllValuesApart) {
  const std::set<Json> values = {1,
                                 2,
                                 1,
                                 "a",
                                 "b",
                                 "a",
                                 true,
                                 true,
                                 Json::array(),
                                 Json::array({2, 2}),
                                 Json{{"a", 1}},
                                 0.5,
                                 0.5,
                                 nullptr,
                                 nullptr,
                                 Json{{"b", 1}}};
  EXPECT_EQ(values.size(), 11U);
}

TEST(JsonTest, ItemsAreNamesWithValues) {
  const Json value = {{"a", 1}, {"b", 2}};
  std::string shown;
  for (const auto& [name, member] : value.items()) shown += name + member.dump();
  EXPECT_EQ(shown, "a1b2");
  EXPECT_THAT(value.names(), ElementsAre("a", "b"));
}

TEST(JsonTest, RealNumbersHaveTheFewestDigitsAndNeverLookLikeIntegers) {
  EXPECT_EQ(Json::array({1.0, -2.5, 0.1, 1e14, 1e15, 1e-4, 1e-5, 123456.789, -0.0}).dump(),
            "[1.0,-2.5,0.1,100000000000000.0,1e+15,0.0001,1e-05,123456.789,-0.0]");
}

TEST(JsonTest, WhatIsNoUtf8IsReplacedInTexts) {
  EXPECT_EQ(Json("a\xff\xc3z\xed\xa0\x80\xf0\x9f").dump(),
            "\"a\xef\xbf\xbd\xef\xbf\xbdz\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\"");
  EXPECT_EQ(Json("\xf0\x9f\x98\x80\xc3\xa9").dump(), "\"\xf0\x9f\x98\x80\xc3\xa9\"");
}

TEST(JsonTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(Json("\b\f\n\r\t\"\\\x01\x7f").dump(), "\"\\b\\f\\n\\r\\t\\\"\\\\\\u0001\x7f\"");
}

TEST(JsonTest, PackedValuesComeBackByteByByte) {
  const Json value = {{"null", nullptr},
                      {"bits", Json::array({true, false})},
                      {"numbers", Json::array({-1, ~std::uint64_t{0}, 0.25})},
                      {"text", std::string("\xff\0\n", 3)},
                      {"empty", Json::array({Json::array(), Json::object()})}};
  EXPECT_EQ(unpacked(packed(value)), value);
}

TEST(JsonTest, PackedBytesThatAreCutShortAreRefused) {
  const std::string bytes = packed({{"a", Json::array({1, "text"})}});
  for (std::size_t length = 0; length < bytes.size(); ++length)
    EXPECT_THROW(unpacked(bytes.substr(0, length)), std::runtime_error) << length;
  EXPECT_THROW(unpacked("\x7f"), std::runtime_error);
}

}  // namespace
}  // namespace camcfg::tool
