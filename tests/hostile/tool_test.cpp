#include "tool/tool_test.h"

#include "support/cost.h"
#include "support/random_cases.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

constexpr int kMany = sizeOf(1000000);
constexpr int kRecords = kMany / 5;

// A list of so many objects with different numbers in one member.
std::string numbered(const std::string& before, const std::string& after) {
  std::string list = "[";
  for (int i = 0; i < kRecords; ++i)
    list += (i == 0 ? "{" : ",{") + before + std::to_string(1000 + i) + after + "}";
  return list + "]";
}

std::string manyMembers() {
  std::string object = "{";
  for (int i = 0; i < kMany; ++i) object += (i == 0 ? "\"m" : ",\"m") + std::to_string(i) + "\": 0";
  return object + "}";
}

std::string nestedLists(int levels) {
  return std::string(static_cast<std::size_t>(levels), '[') +
         std::string(static_cast<std::size_t>(levels), ']');
}

class ToolHostileTest : public ToolTest {
 protected:
  ToolHostileTest() {
    for (const char* directory : {"/cfg0", "/cfg1"})
      device.copyFromHost(CAMCFG_RESOURCE_DIR "/defcfg", directory);
  }

  // Runs the tool on a file of this contents.
  ToolRun runOn(std::vector<std::string> command, const std::string& contents) {
    device.write("/document", contents);
    command.push_back(device.hostPath() + "/document");
    ToolRun outcome;
    cost = costOf([&] { outcome = run(command); }, RUSAGE_CHILDREN);
    EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
    return outcome;
  }

  Cost cost{};
};

TEST_F(ToolHostileTest, ADocumentNestedAMillionLevelsDeepIsRefused) {
  EXPECT_EQ(runOn({"import"}, nestedLists(kMany)),
            (ToolRun{1, "", "camcfg: import: it is nested deeper than 32 levels\n"}));
  EXPECT_EQ(runOn({"preset", "import"}, nestedLists(kMany)),
            (ToolRun{1, "", "camcfg: preset import: it is nested deeper than 32 levels\n"}));
}

TEST_F(ToolHostileTest, ADocumentWithHundredsOfThousandsOfRecordsIsTakenOrRefusedInFewLines) {
  const std::string channels =
      R"({"version": 1, "live": {"websocket": )" + numbered("\"id\": ", ", \"name\": \"n\"") + "}}";
  EXPECT_EQ(runOn({"import", "--dry-run"}, channels).status, 0);
  const std::string presets = R"({"version": 1, "presets": )" + numbered("\"id\": ", "") + "}";
  const ToolRun imported = runOn({"import"}, presets);
  EXPECT_EQ(imported.status, 1);
  EXPECT_THAT(imported.err, HasSubstr("there are " + std::to_string(kRecords - 100) +
                                      " more faults\ncamcfg: import: nothing was changed\n"));
  EXPECT_THAT(
      runOn({"preset", "import"}, numbered("\"id\": ", "")).err,
      HasSubstr("nothing was imported (" + std::to_string(kRecords - 20) + " more faults)\n"));
}

// Each shape of damage many times over.
TEST_F(ToolHostileTest, DamagedCopiesOfManyMegabytesAreSalvagedInBoundedTime) {
  device.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
  const std::string zero(1, '\0');
  for (const std::string& part :
       {std::string("<a>"), std::string("</a>"), std::string("<a></b>"), std::string("<!--"),
        "<!--" + zero, "<?" + zero, std::string("-->"), std::string("<a b='"),
        std::string("<Rtsp Cur=\"1\"/>"), std::string("<preset Id=\"1\"/>"),
        std::string("<Instance/>"), std::string("<Cache Id=\"x\" Name=\"y\"/>")}) {
    std::string contents;
    for (int i = 0; i < kMany / 5; ++i) contents += part;
    for (const char* name : {"business_param", "mpp_cfg", "preset_cfg"}) {
      SCOPED_TRACE(part + " in " + name);
      device.write(std::string("/") + name, contents);
      ToolRun outcome;
      cost = costOf(
          [&] {
            outcome = run({"salvage", "--json", device.hostPath() + "/" + name});
          },
          RUSAGE_CHILDREN);
      EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
      EXPECT_EQ(outcome.status, 0) << outcome.err;
    }
  }
}

TEST_F(ToolHostileTest, AnObjectWithAMillionMembersIsRefusedInFewLines) {
  const ToolRun imported = runOn({"import"}, manyMembers());
  EXPECT_EQ(imported.status, 1);
  EXPECT_THAT(imported.err, HasSubstr("camcfg: import: m0: there is no such member\n"));
  EXPECT_LT(imported.err.size(), 10'000U);
  const ToolRun preset = runOn({"preset", "import"}, "[" + manyMembers() + "]");
  EXPECT_EQ(preset.status, 1);
  EXPECT_THAT(preset.err, HasSubstr("unknown member 'm0'"));
  EXPECT_LT(preset.err.size(), 10'000U);
}

TEST_F(ToolHostileTest, ATextOfManyMegabytesIsTooLongForAPreset) {
  const std::string preset =
      "[{\"id\": 1, \"description\": \"" + std::string(std::size_t{16} << 20, 'd') + "\"}]";
  EXPECT_EQ(runOn({"preset", "import"}, preset),
            (ToolRun{1, "",
                     "camcfg: preset import: preset 1 of the array: the description has 16777216 "
                     "bytes, the limit is 63; the nearest permitted is '" +
                         std::string(63, 'd') +
                         "'\n"
                         "camcfg: preset import: nothing was imported\n"}));
}

TEST_F(ToolHostileTest, OfATableWithAMillionFaultyRowsSomeFaultsAreReported) {
  std::string table = "id,pan\n";
  for (int i = 0; i < kMany; ++i) table += std::to_string(1000 + i) + ",1\n";
  const ToolRun run = runOn({"preset", "import"}, table);
  EXPECT_EQ(run.status, 1);
  EXPECT_THAT(run.err,
              HasSubstr("line 2: id 1000 is outside 0..128; the nearest permitted is 128\n"));
  EXPECT_THAT(run.err,
              HasSubstr("nothing was imported (" + std::to_string(kMany - 20) + " more faults)\n"));
}

std::string numberedElements(const std::string& name, int count) {
  std::string elements;
  for (int i = 0; i < count; ++i)
    elements += "<" + name + " Id=\"" + std::to_string(i) + "\" Name=\"n\"/>";
  return elements;
}

TEST_F(ToolHostileTest, ADeviceWithTwoHundredThousandPresetsCanBeGivenOne) {
  device.write("/cfg0/preset_cfg.xml",
               "<PresetCfg>" + numberedElements("preset", kRecords) + "</PresetCfg>");
  EXPECT_EQ(runOn({"import"}, R"({"version": 1, "presets": [{"id": 1, "pan": 5}]})").status, 0);
  EXPECT_THAT(run({"preset", "list", "--json"}).out, HasSubstr("\"pan\": 5"));
}

TEST_F(ToolHostileTest, ADocumentThatTakesAwayTwoHundredThousandRecordsListsEach) {
  device.write("/cfg0/mpp_cfg.xml", "<Stream><StreamCache/></Stream><LiveMediaService><WEBSOCKET>" +
                                        numberedElements("Channel", kRecords) +
                                        "</WEBSOCKET></LiveMediaService>");
  const ToolRun run =
      runOn({"import", "--dry-run"}, R"({"version": 1, "live": {"websocket": []}})");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("live.websocket[" + std::to_string(kRecords - 1) + "]"));
}

TEST_F(ToolHostileTest, ANumberTooLargeForAnyTypeIsRefused) {
  EXPECT_EQ(runOn({"preset", "import"}, "[{\"id\": 1,\n\"pan\": 1e999}]"),
            (ToolRun{1, "", "camcfg: preset import: line 2: it is no JSON from here on\n"}));
}

}  // namespace
}  // namespace camcfg::tests
