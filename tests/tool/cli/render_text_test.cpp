#include <gmock/gmock.h>

#include "cli/answer.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;

std::string shown(Json value, std::vector<Block> layout, const Look& look = {}) {
  Answer answer;
  answer.value = std::move(value);
  answer.layout = std::move(layout);
  return renderText(answer, look);
}

TEST(RenderTextTest, ColumnsAreAsWideAsTheirWidestCell) {
  const Json rows =
      Json::array({{{"a", "x"}, {"b", 1}}, {{"a", "\xc3\xbc\xc3\xbc\xc3\xbc"}, {"b", 22}}});
  EXPECT_EQ(shown(rows, {Table{"", {{"A", "{a}"}, {"B", "{b}"}}}}),
            "A    B\n"
            "x    1\n"
            "\xc3\xbc\xc3\xbc\xc3\xbc  22\n");
}

TEST(RenderTextTest, EmptyTableIsItsHeadings) {
  EXPECT_EQ(shown({{"rows", Json::array()}}, {Table{"rows", {{"ONE", "{a}"}, {"TWO", "{b}"}}}}),
            "ONE  TWO\n");
}

TEST(RenderTextTest, CellShowsWhatItBecameWhereThatDiffers) {
  const Json rows =
      Json::array({{{"was", "bad"}, {"is", "good"}}, {{"was", "good"}, {"is", "good"}}});
  EXPECT_EQ(shown(rows, {Table{"", {{"STATE", "{was}", "{is}"}}}}), "STATE\nbad -> good\ngood\n");
}

TEST(RenderTextTest, FieldsAndLinesTakeMembersOfMembers) {
  const Json value = {{"port", {{"http", 80}}}, {"name", "gate"}};
  EXPECT_EQ(shown(value, {Fields{{{"name", "{name}"}, {"HTTP port", "{port/http}!"}}},
                          Line{"{name}: {port/http}"}}),
            "name       gate\n"
            "HTTP port  80!\n"
            "gate: 80\n");
}

TEST(RenderTextTest, LinesAreFilledForEachElement) {
  const Json value = {{"rows", Json::array({{{"a", 1}}, {{"a", "x\ty"}}})},
                      {"none", Json::array()}};
  EXPECT_EQ(shown(value, {Lines{"rows", "{a}:\n  {a}"}, Lines{"none", "{a}"}}),
            "1:\n  1\nx\\ty:\n  x\\ty\n");
}

TEST(RenderTextTest, EveryKindOfValueHasAText) {
  const Json value = {
      {"none", nullptr},        {"yes", true},         {"no", false},
      {"number", -1.5},         {"text", "a\nb"},      {"list", Json::array({1, "two", nullptr})},
      {"empty", Json::array()}, {"object", {{"a", 1}}}};
  EXPECT_EQ(shown(value, {Line{"{none}|{yes}|{no}|{number}|{text}|{list}|{empty}|{object}"}}),
            "-|yes|no|-1.5|a\\nb|1, two, -|-|{\"a\":1}\n");
}

TEST(RenderTextTest, PlaceIsFilledForEachElementOfAnArray) {
  const Json value = {
      {"channels", Json::array({{{"id", 0}, {"name", "a"}}, {{"id", 8}, {"name", "b"}}})},
      {"none", Json::array()}};
  EXPECT_EQ(shown(value, {Line{"<{channels:{id} {name}}> <{none:{id}}>"}}), "<0 a, 8 b> <->\n");
}

TEST(RenderTextTest, PlaceIsFilledWhereASwitchIsOn) {
  const Json value = {{"on", true}, {"off", false}, {"id", 3}};
  EXPECT_EQ(shown(value, {Line{"[{on?, id {id}}] [{off?, id {id}}]"}}), "[, id 3] []\n");
}

TEST(RenderTextTest, VerbatimTextIsPrintedAsItIs) {
  EXPECT_EQ(shown({}, {Verbatim{"a {b}\n\tc\n"}}), "a {b}\n\tc\n");
}

constexpr Look kColoured{true, true};

TEST(RenderTextTest, StatesAreColouredByWhatTheyMean) {
  const Json rows = Json::array({{{"was", "damaged"}, {"is", "good"}, {"x", 1}},
                                 {{"was", "out-of-step"}, {"is", "out-of-step"}, {"x", 22}}});
  const std::vector<Block> layout = {Table{"", {{"STATE", "{was!}", "{is!}"}, {"X", "{x}"}}}};
  EXPECT_EQ(shown(rows, layout),
            "STATE            X\n"
            "damaged -> good  1\n"
            "out-of-step      22\n");
  EXPECT_EQ(shown(rows, layout, kColoured),
            "STATE            X\n"
            "\x1b[31mdamaged\x1b[0m -> \x1b[32mgood\x1b[0m  1\n"
            "\x1b[33mout-of-step\x1b[0m      22\n");
}

TEST(RenderTextTest, ChangesAreColoured) {
  const Json value = {{"before", 1}, {"after", 2}};
  EXPECT_EQ(shown(value, {Line{"a: {before} -> {after} (b)"}}, kColoured),
            "a: \x1b[2m1\x1b[0m -> \x1b[1m2\x1b[0m (b)\n");
  EXPECT_EQ(shown(value, {Line{"{before-} {after+} {after}"}}, kColoured),
            "\x1b[2m1\x1b[0m \x1b[1m2\x1b[0m 2\n");
  EXPECT_EQ(shown(value, {Line{"{before-} -> {after+}"}}), "1 -> 2\n");
}

TEST(RenderTextTest, ArrowsWithinValuesAreNoChanges) {
  EXPECT_EQ(shown({{"a", "x -> y"}}, {Line{"{a}"}}, kColoured), "x -> y\n");
}

TEST(RenderTextTest, ValuesCannotSteerATerminal) {
  const Json value = {{"a", "\x1b[31mred\xc2\x9b"}, {"rows", Json::array({{{"a", "\x1b[2J"}}})}};
  for (const Look look : {Look{false, false}, Look{true, true}})
    EXPECT_EQ(
        shown(value, {Line{"{a}"}, Fields{{{"a", "{a}"}}}, Table{"rows", {{"A", "{a}"}}}}, look),
        "\\x1b[31mred\\u009b\na  \\x1b[31mred\\u009b\n\nA\n\\x1b[2J\n");
}

TEST(RenderTextTest, VerbatimTextCannotSteerATerminal) {
  const std::string text = "a\x1b[2J\tb\xc2\x9b\r\nc";
  EXPECT_EQ(shown({}, {Verbatim{text}}, {true, false}), "a\\x1b[2J\tb\\u009b\\x0d\nc");
  EXPECT_EQ(shown({}, {Verbatim{text}}, {false, true}), text);
}

TEST(RenderTextTest, TableAfterSomethingElseIsSetApart) {
  const Json value = {{"rows", Json::array()}};
  EXPECT_EQ(shown(value, {Line{"first"}, Table{"rows", {{"A", "{a}"}}}}), "first\n\nA\n");
}

TEST(RenderTextTest, WholeValueIsTheAnswerInJson) {
  EXPECT_EQ(shown({{"a", 1}}, {WholeValue{}}), "{\n  \"a\": 1\n}\n");
}

}  // namespace
}  // namespace camcfg::tests
