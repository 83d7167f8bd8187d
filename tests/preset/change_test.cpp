#include <limits>
#include <thread>

#include "preset/preset_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The line of a preset made by preset(id, description).
std::string line(int id, const std::string& description) {
  return "    <preset Id=\"" + std::to_string(id) + R"(" Description=")" + description +
         "\" PanPos=\"1\" TiltPos=\"2\" ZoomPos=\"3\" FocusPos=\"4\" FocusMode=\"5\"/>\n";
}

class SetParamTest : public PresetTest {
 protected:
  // Sets preset(id, description) and expects success, silence and an unlocked file.
  void set(int id, const std::string& description) const {
    tagPRESET_CFG_S record = preset(id, description);
    EXPECT_EQ(captureOutput([&] { EXPECT_EQ(CFG_PRESET_SetParam(&record), 0); }), "");
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(unlocked());
  }
};

TEST_F(SetParamTest, IdsFrom0To128AreAccepted) {
  givenPresets("");
  for (const int id : {0, 1, 127, 128}) set(id, "Door");
  expectBothCopies(
      group(line(0, "Door") + line(1, "Door") + line(127, "Door") + line(128, "Door")));
}

TEST_F(SetParamTest, OtherIdsAreRefusedBeforeTheFileIsOpened) {
  for (const int id : {129, 130, -1, -128, kMin, kMax}) {
    log.clear();
    tagPRESET_CFG_S record = preset(id, "Door");
    EXPECT_EQ(captureOutput([&] { EXPECT_EQ(CFG_PRESET_SetParam(&record), -1); }), "");
    EXPECT_THAT(log.records(),
                ElementsAre(Logged(3, "CFG_PRESET_SetParam",
                                   "preset id " + std::to_string(id) + " out of rang 128\n")));
    EXPECT_TRUE(neverLocked());
  }
}

TEST_F(SetParamTest, NullRecordIsReportedBeforeTheFileIsOpened) {
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_PRESET_SetParam(nullptr), -1); }), "");
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_PRESET_SetParam", "pstPresetCfg is NULL\n")));
  EXPECT_TRUE(neverLocked());
}

TEST_F(SetParamTest, NewPresetBecomesTheLastChildOfTheGroup) {
  const std::string before = "    <preset Id=\"9\"/>\n    <other/>\n    <!-- end -->\n";
  givenPresets(before);
  set(1, "Door");
  expectBothCopies(group(before + line(1, "Door")));
}

TEST_F(SetParamTest, ExistingPresetIsRewrittenInItsPlace) {
  givenPresets(line(1, "Door") +
               "    <preset Id=\"2\" Description=\"Old\" PanPos=\"9\" TiltPos=\"9\" ZoomPos=\"9\" "
               "FocusPos=\"9\" FocusMode=\"9\"/>\n" +
               line(3, "Gate"));
  set(2, "New");
  expectBothCopies(group(line(1, "Door") + line(2, "New") + line(3, "Gate")));
}

TEST_F(SetParamTest, ExistingPresetKeepsItsNameItsOtherAttributesAndItsContents) {
  givenPresets(
      "    <presetX private=\"9\" FocusMode=\"9\" Id=\"002\" Lens=\"wide\">\n"
      "        <note>kept</note>\n"
      "    </presetX>\n");
  set(2, "New");
  expectBothCopies(
      group("    <presetX private=\"9\" FocusMode=\"5\" Id=\"2\" Lens=\"wide\" "
            "Description=\"New\" PanPos=\"1\" TiltPos=\"2\" ZoomPos=\"3\" FocusPos=\"4\">\n"
            "        <note>kept</note>\n"
            "    </presetX>\n"));
}

TEST_F(SetParamTest, FirstOfSeveralPresetsOfOneIdIsRewritten) {
  givenPresets(line(2, "First") + line(2, "Second"));
  set(2, "New");
  expectBothCopies(group(line(2, "New") + line(2, "Second")));
}

TEST_F(SetParamTest, PresetWithoutAReadableIdIsComparedByTheIdBeforeIt) {
  const std::string unreadable = "    <preset/>\n    <preset Id=\"none\"/>\n";
  givenPresets(unreadable + line(2, "Door") + unreadable + line(3, "Gate"));
  set(3, "New");
  expectBothCopies(group(unreadable + line(2, "Door") + unreadable + line(3, "New")));
}

TEST_F(SetParamTest, LeadingPresetWithoutAnIdIsNoPresetOfId0) {
  givenPresets("    <preset/>\n");
  set(0, "Door");
  expectBothCopies(group("    <preset/>\n" + line(0, "Door")));
}

TEST_F(SetParamTest, ElementsOfOtherNamesAreNoPresets) {
  const std::string others =
      "    <Preset Id=\"2\"/>\n    <prese Id=\"2\"/>\n    <other Id=\"2\"/>\n"
      "    <other>\n        <preset Id=\"2\"/>\n    </other>\n";
  givenPresets(others);
  set(2, "Door");
  expectBothCopies(group(others + line(2, "Door")));
}

TEST_F(SetParamTest, RestOfTheFileStaysAsItIs) {
  const std::string before = "<?xml version=\"1.0\"?>\n<!-- positions -->\n<Other Cur=\"1\"/>\n\n";
  const std::string after = "\n<PresetCfg>\n    <preset Id=\"1\"/>\n</PresetCfg>\n";
  givenFile(before + "<PresetCfg/>\n" + after);
  set(1, "Door");
  expectBothCopies(before + group(line(1, "Door")) + after);
}

TEST_F(SetParamTest, MissingBackupIsMade) {
  device.write("/cfg0/preset_cfg.xml", "<PresetCfg/>");
  set(1, "Door");
  expectBothCopies(group(line(1, "Door")));
}

TEST_F(SetParamTest, BackupThatCannotBeMadeIsNoFailure) {
  givenPresets("");
  device.remove("/cfg1");
  set(1, "Door");
  EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), group(line(1, "Door")));
}

void setAndQuery(int first, int count) {
  for (int id = first; id < first + count; ++id) {
    tagPRESET_CFG_S record = preset(id, "Door");
    EXPECT_EQ(CFG_PRESET_SetParam(&record), 0);
    EXPECT_EQ(CFG_PRESET_QueryOneById(id, &record), 0);
  }
}

TEST_F(SetParamTest, ThreadsThatSetDifferentPresetsLoseNone) {
  constexpr int kThreads = 3;
  constexpr int kPresetsEach = 4;
  givenPresets("");
  std::vector<std::thread> threads(kThreads);
  int first = 0;
  for (std::thread& thread : threads) {
    thread = std::thread(setAndQuery, first, kPresetsEach);
    first += kPresetsEach;
  }
  for (std::thread& thread : threads) thread.join();

  int free = -1;
  EXPECT_EQ(CFG_PRESET_GetUnusedId(&free), 0);
  EXPECT_EQ(free, kThreads * kPresetsEach);
  EXPECT_EQ(device.read("/cfg1/preset_cfg.xml"), device.read("/cfg0/preset_cfg.xml"));
  EXPECT_THAT(log.records(), IsEmpty());
}

class DeleteByIdTest : public PresetTest {
 protected:
  void remove(int id) const {
    EXPECT_EQ(captureOutput([id] { EXPECT_EQ(CFG_PRESET_DeleteById(id), 0); }), "");
    EXPECT_THAT(log.records(), IsEmpty());
  }
  // Deletes an id that no preset has; the file is left locked and as it was.
  void removeUnknown(int id) const {
    const std::string before = device.read("/cfg0/preset_cfg.xml");
    remove(id);
    EXPECT_FALSE(unlocked()) << id;
    expectBothCopies(before);
  }
};

TEST_F(DeleteByIdTest, PresetIsRemovedFromBothCopies) {
  givenPresets(line(1, "Door") + line(2, "Gate") + line(3, "Yard"));
  remove(2);
  expectBothCopies(group(line(1, "Door") + line(3, "Yard")));
  EXPECT_TRUE(unlocked());
}

TEST_F(DeleteByIdTest, OnlyTheFirstOfSeveralPresetsOfOneIdIsRemoved) {
  givenPresets("<other Id='2'/><presetX Id='2'><note/></presetX><preset Id='2'/>");
  remove(2);
  expectBothCopies(group("    <other Id=\"2\"/>\n    <preset Id=\"2\"/>\n"));
  EXPECT_TRUE(unlocked());
}

TEST_F(DeleteByIdTest, LastPresetLeavesAnEmptyGroup) {
  givenPresets(line(1, "Door"));
  remove(1);
  expectBothCopies("<PresetCfg/>\n");
}

TEST_F(DeleteByIdTest, IdsThatCannotBeSetCanBeDeleted) {
  givenPresets("<preset Id='-1'/><preset Id='129'/><preset Id='1'/>");
  remove(-1);
  remove(129);
  expectBothCopies(group("    <preset Id=\"1\"/>\n"));
  EXPECT_TRUE(unlocked());
}

TEST_F(DeleteByIdTest, PresetWithoutAReadableIdIsComparedByTheIdBeforeIt) {
  givenPresets("<preset/><preset Id='2'/><preset/><preset Id='3'/>");
  remove(3);
  expectBothCopies(group("    <preset/>\n    <preset Id=\"2\"/>\n    <preset/>\n"));
  remove(2);
  expectBothCopies(group("    <preset/>\n    <preset/>\n"));
}

TEST_F(DeleteByIdTest, UnknownIdSucceedsAndLeavesTheFileLockedUntilSomebodyUnlocksIt) {
  givenPresets("<preset Id='1'/><preset/><Preset Id='7'/><other Id='7'/>");
  for (const int id : {7, 0, 2, -1, kMin, kMax}) {
    removeUnknown(id);
    EXPECT_EQ(captureOutput([] { CFG_UnlockFile(text(CFG_FILE_PRESET)); }), "");
    EXPECT_TRUE(unlocked());
  }
  EXPECT_THAT(log.records(), IsEmpty());
  remove(1);
  EXPECT_TRUE(unlocked());
}

TEST_F(DeleteByIdTest, EveryIdIsUnknownInAnEmptyGroup) {
  givenPresets("");
  removeUnknown(0);
}

TEST_F(DeleteByIdTest, NextCallAfterAnUnknownIdWaitsForTheLockAndFails) {
  givenPresets("<preset Id='1'/>");
  removeUnknown(2);
  tagPRESET_CFG_S record = preset(1, "Door");
  EXPECT_EQ(captureOutput([&] { EXPECT_EQ(CFG_PRESET_SetParam(&record), -1); }),
            "[Warn][Cfg] Lock /cfg0/preset_cfg.xml timeout, a deadlock may exist!\n");
  EXPECT_THAT(
      log.records(),
      ElementsAre(
          Logged(4, "cfgLockFile", "Lock /cfg0/preset_cfg.xml timeout, a deadlock may exist!"),
          Logged(3, "cfgGetPresetCfgNode", "/cfg0/preset_cfg.xml XMLDocument haven't initialize\n"),
          Logged(3, "CFG_PRESET_SetParam", "pstPresetGrp is NULL\n")));
  expectBothCopies(group("<preset Id='1'/>"));
}

class DeleteByDescTest : public PresetTest {
 protected:
  void remove(const char* beginning, int result) const {
    EXPECT_EQ(captureOutput([=] { EXPECT_EQ(CFG_PRESET_DeleteByDesc(beginning), result); }), "");
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(unlocked());
  }
};

TEST_F(DeleteByDescTest, OnlyTheFirstMatchIsRemoved) {
  givenPresets(line(1, "The Door") + line(2, "Door 1") + line(3, "Door 2") + line(4, "Door"));
  remove("Door", 0);
  expectBothCopies(group(line(1, "The Door") + line(3, "Door 2") + line(4, "Door")));
  remove("Door", 0);
  expectBothCopies(group(line(1, "The Door") + line(4, "Door")));
}

TEST_F(DeleteByDescTest, DescriptionMatchesByItsBeginning) {
  givenPresets(line(1, "Do") + line(2, "Door"));
  remove("Doo", 0);
  expectBothCopies(group(line(1, "Do")));
}

TEST_F(DeleteByDescTest, ElementsWhoseNamesOnlyBeginWithPresetArePresets) {
  givenPresets("<other Description='Door'/><presetX Description='Door'/>" + line(1, "Door"));
  remove("Door", 0);
  expectBothCopies(group("    <other Description=\"Door\"/>\n" + line(1, "Door")));
}

TEST_F(DeleteByDescTest, EmptyTextRemovesTheFirstPresetThatHasADescription) {
  givenPresets("<preset Id='1'/><preset Description=''/>" + line(2, "Door"));
  remove("", 0);
  expectBothCopies(group("    <preset Id=\"1\"/>\n" + line(2, "Door")));
}

TEST_F(DeleteByDescTest, NoMatchIsASilentFailureThatLeavesTheFileUnlockedAndAsItWas) {
  const std::string file =
      group("<preset Id='1'/><preset Id='2' Description='Door'/><Preset Description='Yard'/>");
  givenFile(file);
  for (const char* unknown : {"door", "Doors", "oor", " Door", "Yard", "2"}) {
    remove(unknown, -1);
    expectBothCopies(file);
  }
}

TEST_F(DeleteByDescTest, NothingMatchesInAnEmptyGroup) {
  givenPresets("");
  remove("", -1);
}

TEST_F(DeleteByDescTest, NullTextIsReportedBeforeTheFileIsOpened) {
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_PRESET_DeleteByDesc(nullptr), -1); }), "");
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_PRESET_DeleteByDesc", "ps8Description is NULL\n")));
  EXPECT_TRUE(neverLocked());
}

}  // namespace
}  // namespace camcfg::tests
