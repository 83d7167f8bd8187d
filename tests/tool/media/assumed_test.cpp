#include "media/media.h"
#include "settings/table.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using tool::Json;
using tool::settings::Table;

/// An entry with nothing but what it cannot be without, as a file has it and as a document has it.
struct Bare {
  const Table& (*table)();
  const char* inFile;
  Json inDocument;
};

void PrintTo(const Bare& bare, std::ostream* stream) {
  *stream << bare.table().place;
}

const Bare kBare[] = {
    {tool::settings::streamSources,
     R"(<VENC Id="5" Name="a" ChnId="1"/>)",
     {{"id", 5}, {"kind", "VENC"}, {"name", "a"}, {"channel", 1}}},
    {tool::settings::streamCaches,
     R"(<Cache Id="5" Name="a" BufferSizeMB="2"><AllowedStreamSource Id="3"/>)"
     R"(<AllowedStreamSource Id="4"/></Cache>)",
     {{"id", 5},
      {"name", "a"},
      {"size", {{"value", 2}, {"unit", "MB"}}},
      {"allowed", Json(std::vector<int>{3, 4})}}},
    {tool::settings::websocket, R"(<Channel Id="5" Name="a"/>)", {{"id", 5}, {"name", "a"}}},
    {tool::settings::rtsp, R"(<MediaGroup Name="a"/>)", {{"name", "a"}}},
    {tool::settings::rtmp,
     R"(<Target Id="5" url="rtmp://h/a"/>)",
     {{"id", 5}, {"url", "rtmp://h/a"}}},
    {tool::settings::ndi, R"(<Instance Id="5"/>)", {{"id", 5}}},
    {tool::settings::srt,
     R"(<Instance Id="5" Mode="Listener" Port="9"><Stream Id="a"/></Instance>)",
     {{"id", 5},
      {"mode", "listener"},
      {"port", 9},
      {"streams", Json(std::vector<Json>{Json{{"id", "a"}}})}}}};

class AssumedTest : public testing::TestWithParam<Bare> {};

// What loaders make of the file is what they assume.
TEST_P(AssumedTest, WhatIsLeftOutIsWhatTheLoaderMakesOfIt) {
  const Table& table = GetParam().table();
  const testkit::DeviceRoot device;
  const std::string section = table.section;
  const std::string parent = table.parent;
  device.write(kMpp, "<" + parent + "><" + section + ">" + GetParam().inFile + "</" + section +
                         "></" + parent + ">");
  const Json loaded = tool::media::loadEntries(table);
  ASSERT_EQ(loaded.size(), 1U);

  const Json entry = withAssumed(table, GetParam().inDocument);
  tool::settings::Faults faults;
  const Json read =
      table.calls.read(table, tool::settings::Node(Json(std::vector<Json>{entry}), "", faults));
  for (const auto& fault : faults) ADD_FAILURE() << fault.place << ": " << fault.reason;
  EXPECT_EQ(read.at(0).dump(), loaded.at(0).dump());
}

TEST_P(AssumedTest, WhatIsSaidStays) {
  const Table& table = GetParam().table();
  const Json entry = withAssumed(table, GetParam().inDocument);
  EXPECT_EQ(withAssumed(table, entry).dump(), entry.dump());
  for (const auto& [name, value] : GetParam().inDocument.items())
    if (!value.is_array()) {
      EXPECT_EQ(entry.at(name), value) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Entries, AssumedTest, testing::ValuesIn(kBare));

TEST(AssumedSizeTest, IsNone) {
  const Json cache = withAssumed(tool::settings::streamCaches(), {{"id", 1}});
  EXPECT_FALSE(cache.contains("size"));
  EXPECT_FALSE(cache.contains("allowed"));
}

}  // namespace
}  // namespace camcfg::tests
