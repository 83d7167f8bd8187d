#include <filesystem>

#include "tool/json_in.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

class UndoCommandTest : public ParametersTest {
 protected:
  ToolRun set(const std::string& name, const std::string& value) const {
    const ToolRun result = run({"set", name == "Mode" ? "Image" : "System", name, value});
    EXPECT_EQ(result.status, 0) << testing::PrintToString(result);
    return result;
  }
  std::string value(const std::string& section, const std::string& name) const {
    return run({"get", section, name}).out;
  }
  tool::Json changes() const { return jsonIn(run({"history", "--json"}).out)["changes"]; }
  std::string command(std::size_t i) const { return changes()[i]["command"].text(); }

  /// As a program that knows nothing of the tool.
  void programWrites(const std::string& part, const std::string& other) const {
    writeBoth(with(device.read(kBusiness), part, other));
  }
};

TEST_F(UndoCommandTest, NoChangeIsKeptWhereNoneWasMade) {
  EXPECT_EQ(run({"history"}), (ToolRun{0, "no change is kept\n", ""}));
  EXPECT_EQ(run({"undo"}),
            (ToolRun{1, "", "camcfg: undo: there is nothing to undo: no change is kept\n"}));
  EXPECT_EQ(run({"history", "1"}),
            (ToolRun{1, "", "camcfg: history: change 1 is not kept; no change is\n"}));
  EXPECT_FALSE(device.exists("/cfg1/.camcfg"));
}

TEST_F(UndoCommandTest, ChangesAreListedWithTheirCommands) {
  set("Rtsp", "8554");
  set("Mode", "Half-Auto");
  ASSERT_THAT(changes(), SizeIs(2));
  EXPECT_EQ(command(0), "set System Rtsp 8554");
  EXPECT_EQ(command(1), "set Image Mode Half-Auto");
  EXPECT_EQ(changes()[0]["files"].dump(), "[\"/cfg0/business_param.xml\"]");
  EXPECT_THAT(run({"history"}).out, HasSubstr("set System Rtsp 8554\n"));
}

TEST_F(UndoCommandTest, AChangeIsShownSettingBySetting) {
  set("Rtsp", "8554");
  EXPECT_THAT(run({"history", "1"}).out, HasSubstr("PLACE                   BEFORE  AFTER\n"
                                                   "parameters.System.Rtsp  554     8554\n"));
  EXPECT_EQ(run({"history", "2"}),
            (ToolRun{1, "", "camcfg: history: change 2 is not kept; there are 1\n"}));
}

TEST_F(UndoCommandTest, WhatSetsTheSameValueIsNoChange) {
  set("Rtsp", "554");
  EXPECT_THAT(changes(), SizeIs(0));
}

TEST_F(UndoCommandTest, TheLastChangeIsUndoneByteForByteAndThatCanBeUndone) {
  set("Rtsp", "8554");
  EXPECT_EQ(run({"undo"}), (ToolRun{0,
                                    "PLACE                   BEFORE  AFTER\n"
                                    "parameters.System.Rtsp  8554    554\n",
                                    ""}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
  EXPECT_EQ(device.read(kBusinessBackup), kParameters);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(value("System", "Rtsp"), "8554\n");
}

TEST_F(UndoCommandTest, UndoOfAnEarlierChangeTakesTheLaterOnesBackAsWell) {
  set("Rtsp", "8554");
  set("Mode", "Manual");
  set("Rtsp", "9554");
  const tool::Json undone = jsonIn(run({"undo", "2", "--json"}).out);
  EXPECT_EQ(undone["undone"].dump(), "[3,2]");
  EXPECT_EQ(value("System", "Rtsp"), "8554\n");
  EXPECT_EQ(value("Image", "Mode"), "Auto\n");
}

TEST_F(UndoCommandTest, RehearsalShowsWhatWouldChangeAndChangesNothing) {
  set("Rtsp", "8554");
  EXPECT_EQ(run({"undo", "--dry-run"}), (ToolRun{0,
                                                 "PLACE                   BEFORE  AFTER\n"
                                                 "parameters.System.Rtsp  8554    554\n"
                                                 "nothing was written\n",
                                                 ""}));
  EXPECT_EQ(value("System", "Rtsp"), "8554\n");
  EXPECT_THAT(changes(), SizeIs(1));
}

TEST_F(UndoCommandTest, WhatAProgramHasSetSinceStays) {
  set("Rtsp", "8554");
  programWrites("Brightness Cur=\"0\"", "Brightness Cur=\"5\"");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(value("System", "Rtsp"), "554\n");
  EXPECT_EQ(value("Image", "Brightness"), "5\n");
}

TEST_F(UndoCommandTest, SettingThatAProgramHasSetSinceIsNamedAndKeptUnlessForced) {
  set("Rtsp", "8554");
  set("Mode", "Manual");
  programWrites("Rtsp Cur=\"8554\"", "Rtsp Cur=\"7000\"");
  EXPECT_EQ(run({"undo", "1"}),
            (ToolRun{1, "",
                     "camcfg: undo: set to something else since: parameters.System.Rtsp; nothing "
                     "was changed; '--force' takes them back as well\n"}));
  EXPECT_EQ(value("Image", "Mode"), "Manual\n");
  EXPECT_EQ(run({"undo", "1", "--force"}).status, 0);
  EXPECT_EQ(value("System", "Rtsp"), "554\n");
  EXPECT_EQ(value("Image", "Mode"), "Auto\n");
}

TEST_F(UndoCommandTest, SoManyChangesAreKeptAsIsAskedFor) {
  for (int port = 1; port <= 10; ++port) set("Rtsp", std::to_string(port));
  EXPECT_THAT(changes(), SizeIs(8));
  EXPECT_EQ(changes()[7]["number"].dump(), "10");
  EXPECT_EQ(run({"history", "--keep", "3"}), (ToolRun{0, "changes that are kept: 3\n", ""}));
  EXPECT_THAT(changes(), SizeIs(3));
  EXPECT_EQ(run({"history", "--keep", "0"}).status, 0);
  EXPECT_THAT(changes(), SizeIs(0));
  set("Rtsp", "11");
  EXPECT_THAT(changes(), SizeIs(0));
  EXPECT_EQ(run({"history", "--keep", "x"}).status, 2);
  EXPECT_EQ(run({"history", "--keep", "-1"}).status, 2);
}

TEST_F(UndoCommandTest, FilesAreForTheirOwnerOnly) {
  set("Rtsp", "8554");
  namespace fs = std::filesystem;
  const fs::path state = device.hostPath() + "/cfg1/.camcfg";
  EXPECT_EQ(fs::status(state).permissions(), fs::perms::owner_all);
  for (const auto& entry : fs::recursive_directory_iterator(state)) {
    if (!entry.is_regular_file()) continue;
    EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
  }
}

}  // namespace
}  // namespace camcfg::tests
