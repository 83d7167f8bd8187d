#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>

#include "base/html.h"
#include "media/wiring.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using tool::Json;
using tool::media::drawingOf;

// Written so, since editors would turn the line around.
std::string encoded(const std::vector<int>& bytes) {
  return {bytes.begin(), bytes.end()};
}

Json source(int id, const std::string& name, bool enabled = true) {
  return {{"id", id}, {"name", name}, {"enabled", enabled}};
}

Json cache(int id, const std::string& name, int carries, const std::vector<int>& allowed) {
  return {
      {"id", id}, {"name", name}, {"size", "8 MiB"}, {"carries", carries}, {"allowed", allowed}};
}

Json session(const std::string& service, const Json& id, const std::string& name,
             const std::vector<int>& caches) {
  Json channels = Json::array();
  for (const int each : caches) channels.push_back({{"cache", each}, {"role", "video"}});
  return {
      {"service", service}, {"name", name}, {"id", id}, {"enabled", true}, {"channels", channels}};
}

Json wiring(const std::vector<Json>& sources, const std::vector<Json>& caches,
            const std::vector<Json>& sessions) {
  return {{"sources", sources}, {"caches", caches}, {"sessions", sessions}};
}

struct Box {
  int x;
  int y;
  std::string title;
};

std::vector<Box> boxesIn(const std::string& svg) {
  static const std::regex form(
      "<g class=\"node[^>]*><title>([^<]*)</title><rect x=\"([0-9]+)\" y=\"([0-9]+)\"");
  std::vector<Box> boxes;
  for (std::sregex_iterator match(svg.begin(), svg.end(), form), end; match != end; ++match)
    boxes.push_back({std::stoi((*match)[2]), std::stoi((*match)[3]), (*match)[1]});
  return boxes;
}

// The titles of what is drawn, column by column, from the top.
std::map<int, std::vector<std::string>> columnsIn(const std::string& svg) {
  std::map<int, std::map<int, std::string>> columns;
  for (const Box& box : boxesIn(svg)) columns[box.x][box.y] = box.title;
  std::map<int, std::vector<std::string>> titles;
  for (const auto& [x, column] : columns)
    for (const auto& [y, title] : column) titles[x].push_back(title);
  return titles;
}

TEST(WiringDrawingTest, ColumnsAreInTheOrderOfIds) {
  const Json drawn =
      wiring({source(9, "mic"), source(2, "line")},
             {cache(12, "program", 2, {2}), cache(7, "audio", 9, {9})},
             {session("SRT", 1, "caller 1", {12}), session("SRT", 0, "listener 0", {7}),
              session("RTSP", "ch1", "ch1", {12})});
  const auto columns = columnsIn(drawingOf(drawn, Json::object(), false));
  ASSERT_EQ(columns.size(), 3U);
  const std::vector<std::vector<std::string>> expected = {
      {"source 2, line", "source 9, mic"},
      {"cache 7, audio, 8 MiB", "cache 12, program, 8 MiB"},
      {"SRT listener 0  (video 7)", "SRT caller 1  (video 12)", "RTSP ch1  (video 12)"}};
  std::size_t at = 0;
  for (const auto& [x, titles] : columns) EXPECT_EQ(titles, expected[at++]) << x;
}

template <typename Make>
std::vector<Json> each(int count, Make make) {
  std::vector<Json> all;
  all.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all.push_back(make(i));
  return all;
}

int leastDistance(const std::set<int>& places) {
  int least = 1000;
  for (auto y = places.begin(); y != places.end() && std::next(y) != places.end(); ++y)
    least = std::min(least, *std::next(y) - *y);
  return least;
}

TEST(WiringDrawingTest, BoxesOfAColumnNeverTouch) {
  for (const int count : {0, 1, 4, 100, 1000}) {
    const std::vector<Json> sessions = each(count, [](int i) {
      return session("RTSP", "s" + std::to_string(i), "s", {i * 7 % 13, i * 5 % 29});
    });
    const std::vector<Json> caches = each(20, [](int i) {
      return cache(i, "c", i * 11 % 17, {i % 5, i % 7});
    });
    const std::string svg =
        drawingOf(wiring({source(0, "a"), source(3, "b")}, caches, sessions), Json::object(), true);
    std::map<int, std::set<int>> columns;
    for (const Box& box : boxesIn(svg)) columns[box.x].insert(box.y);
    for (const auto& [x, places] : columns) EXPECT_GE(leastDistance(places), 30) << count << x;
    EXPECT_LT(svg.size(), 40000U + static_cast<std::size_t>(count) * 300);
  }
}

TEST(WiringDrawingTest, CachesAreNextToWhatTheyAreConnectedTo) {
  const std::vector<Json> sessions = each(
      100, [](int i) { return session("RTSP", "s" + std::to_string(i), "s", {i < 50 ? 0 : 1}); });
  std::map<std::string, int> places;
  const std::string svg = drawingOf(
      wiring({}, {cache(0, "a", 0, {}), cache(1, "b", 0, {})}, sessions), Json::object(), true);
  for (const Box& box : boxesIn(svg)) places[box.title] = box.y;
  EXPECT_NEAR(places.at("cache 0, a, 8 MiB"), 64 + 25 * 30, 40);
  EXPECT_NEAR(places.at("cache 1, b, 8 MiB"), 64 + 75 * 30, 40);
}

TEST(WiringDrawingTest, WhatIsMissingIsDrawnOnce) {
  const std::string svg =
      drawingOf(wiring({}, {cache(0, "a", 9, {9})},
                       {session("RTSP", "x", "x", {4}), session("RTSP", "y", "y", {4})}),
                Json::object(), false);
  EXPECT_THAT(svg, HasSubstr("<g class=\"node missing\"><title>there is no source 9</title>"));
  EXPECT_EQ(boxesIn(svg).size(), 5U);
  EXPECT_THAT(svg, HasSubstr("<path class=\"edge missing carried\""));
  EXPECT_THAT(svg, HasSubstr("<path class=\"edge missing\""));
}

TEST(WiringDrawingTest, EdgesSayHowSomethingFlows) {
  const std::string svg = drawingOf(wiring({source(0, "a"), source(1, "b"), source(2, "c", false)},
                                           {cache(0, "x", 0, {0, 1, 2})}, {}),
                                    Json::object(), false);
  EXPECT_THAT(svg, HasSubstr("<path class=\"edge c0 carried\""));
  EXPECT_THAT(svg, HasSubstr("<path class=\"edge c0 may\""));
  EXPECT_THAT(svg, HasSubstr("<path class=\"edge off may\""));
}

TEST(WiringDrawingTest, RemarksMarkWhatTheyAreAbout) {
  Json remarks = Json::object();
  for (const char* text : {"first", "second"}) remarks["cache 0"].push_back(text);
  const std::string svg =
      drawingOf(wiring({}, {cache(0, "x", 0, {}), cache(1, "y", 0, {})}, {}), remarks, false);
  EXPECT_THAT(svg,
              HasSubstr("<g class=\"node marked\"><title>cache 0, x, 8 MiB&#10;first&#10;second<"));
  EXPECT_THAT(svg, HasSubstr(">! 0  x  8 MiB<"));
  EXPECT_THAT(svg, HasSubstr("<g class=\"node\"><title>cache 1"));
}

TEST(WiringDrawingTest, HostileNamesStayNames) {
  const std::string rightToLeft = encoded({0xe2, 0x80, 0xae});
  const std::string svg =
      drawingOf(wiring({source(0, "</title><script>&\"\x1b\xff" + std::string(10000, 'x')),
                        source(1, rightToLeft + "abc")},
                       {}, {}),
                Json::object(), false);
  EXPECT_THAT(svg, Not(HasSubstr("<script")));
  EXPECT_THAT(svg, HasSubstr("&lt;/title&gt;&lt;script&gt;&amp;&quot;\\x1b\xef\xbf\xbd"));
  EXPECT_THAT(svg, HasSubstr("source 1, \\u202eabc"));
  EXPECT_LT(svg.size(), 4000U);
}

TEST(WiringDrawingTest, SaysInWordsWhatItShows) {
  const std::string svg = drawingOf(wiring({source(0, "a")}, {}, {}), Json::object(), false);
  EXPECT_THAT(svg, HasSubstr("role=\"img\" aria-labelledby=\"wiring-title wiring-desc\""));
  EXPECT_THAT(svg, HasSubstr("1 sources, 0 caches, 0 sessions of 0 services"));
}

TEST(HtmlTextTest, KeepsTextsAsTheyRead) {
  EXPECT_EQ(tool::htmlText("Gr\xc3\xb6\xc3\x9f"
                           "e \xe4\xb8\xad"),
            "Gr\xc3\xb6\xc3\x9f"
            "e \xe4\xb8\xad");
  EXPECT_EQ(tool::htmlText("<a href=\"x\">&amp;"), "&lt;a href=&quot;x&quot;&gt;&amp;amp;");
}

TEST(HtmlTextTest, WritesOutWhatSteersTheLine) {
  EXPECT_EQ(tool::htmlText("\n\t\x01\x7f"), "\\n\\t\\x01\\x7f");
  EXPECT_EQ(tool::htmlText(encoded({0xd8, 0x9c, 0xe2, 0x80, 0x8f, 0xe2, 0x81, 0xa6, 0xe2, 0x80,
                                    0xa8, 0xef, 0xbb, 0xbf})),
            "\\u061c\\u200f\\u2066\\u2028\\ufeff");
}

TEST(WithinTest, OnlyWideTextsAreNarrowed) {
  EXPECT_EQ(tool::within(170, "ch1/main", 12), "");
  EXPECT_EQ(tool::within(170, std::string(27, 'W'), 12),
            " textLength=\"170\" lengthAdjust=\"spacingAndGlyphs\"");
}

TEST(CutToTest, CutsBetweenCharacters) {
  EXPECT_EQ(tool::cutTo("abcdef", 6), "abcdef");
  EXPECT_EQ(tool::cutTo("abcdefg", 6), "abcde\xe2\x80\xa6");
  EXPECT_EQ(tool::cutTo("\xc3\xa4\xc3\xb6\xc3\xbc", 2), "\xc3\xa4\xe2\x80\xa6");
}

}  // namespace
}  // namespace camcfg::tests
