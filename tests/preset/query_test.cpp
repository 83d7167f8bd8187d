#include <limits>

#include "preset/preset_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class QueryTest : public PresetTest {
 protected:
  // The pan position tells the presets of a file apart; -1 stands for "not found".
  static int panById(int id) {
    tagPRESET_CFG_S record{};
    return CFG_PRESET_QueryOneById(id, &record) == 0 ? record.s32PanPos : -1;
  }
  static int panByDesc(const char* beginning) {
    tagPRESET_CFG_S record{};
    return CFG_PRESET_QueryOneByDesc(beginning, &record) == 0 ? record.s32PanPos : -1;
  }
  int count() const {
    int number = 77;
    EXPECT_EQ(CFG_PRESET_GetCountNum(&number), 0);
    return number;
  }
};

TEST_F(QueryTest, PresetIsFoundByItsIdWithoutTouchingTheFile) {
  const std::string file = group("<preset Id='5' PanPos='50'/><preset Id='6' PanPos='60'/>");
  givenFile(file);
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(panById(6), 60); }), "");
  expectBothCopies(file);
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(QueryTest, AnyIdCanBeAskedFor) {
  givenPresets(
      "<preset Id='-1' PanPos='10'/><preset Id='129' PanPos='20'/>"
      "<preset Id='2147483647' PanPos='30'/><preset Id='-2147483648' PanPos='40'/>");
  EXPECT_EQ(panById(-1), 10);
  EXPECT_EQ(panById(129), 20);
  EXPECT_EQ(panById(2147483647), 30);
  EXPECT_EQ(panById(kMin), 40);
}

TEST_F(QueryTest, UnknownIdIsReportedAndLeavesTheRecordAlone) {
  const std::string file = group("<preset Id='5'/><Preset Id='6'/><other Id='6'/>");
  givenFile(file);
  tagPRESET_CFG_S record = patterned();
  EXPECT_EQ(captureOutput([&] { EXPECT_EQ(CFG_PRESET_QueryOneById(6, &record), -1); }), "");
  EXPECT_EQ(record, patterned());
  EXPECT_TRUE(unlocked());
  expectBothCopies(file);
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "CFG_PRESET_QueryOneById",
                                                "pstNode is NULL, can't find preset Id 6\n")));
}

TEST_F(QueryTest, FirstOfSeveralPresetsOfOneIdIsFound) {
  givenPresets("<presetX Id='5' PanPos='1'/><preset Id='5' PanPos='2'/>");
  EXPECT_EQ(panById(5), 1);
}

TEST_F(QueryTest, PresetWithoutAReadableIdIsComparedByTheIdBeforeIt) {
  givenPresets(
      "<preset PanPos='1'/><preset Id='2' PanPos='2'/><preset PanPos='3'/>"
      "<preset Id='none' PanPos='4'/><preset Id='3' PanPos='5'/>");
  EXPECT_EQ(panById(2), 2);
  EXPECT_EQ(panById(3), 5);
}

TEST_F(QueryTest, LeadingPresetWithoutAnIdIsFoundByNoId) {
  givenPresets("<preset PanPos='1'/><preset Id='' PanPos='2'/>");
  for (const int id : {0, 1, -1, PRESET_ID_MAX, kMin, std::numeric_limits<int>::max()})
    EXPECT_EQ(panById(id), -1) << id;
}

TEST_F(QueryTest, NullRecordIsReportedBeforeTheFileIsOpened) {
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_PRESET_QueryOneById(1, nullptr), -1); }), "");
  EXPECT_TRUE(neverLocked());
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_PRESET_QueryOneById", "pstPresetCfg is NULL\n")));
}

TEST_F(QueryTest, PresetIsFoundByTheBeginningOfItsDescriptionWithoutTouchingTheFile) {
  const std::string file = group(
      "<preset PanPos='1'/><preset Description='The Door' PanPos='2'/>"
      "<other Description='Door' PanPos='3'/><preset Description='D' PanPos='4'/>"
      "<presetX Description='Door 1' PanPos='5'/><preset Description='Do' PanPos='6'/>");
  givenFile(file);
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(panByDesc("Do"), 5); }), "");
  EXPECT_EQ(panByDesc("Door 1"), 5);
  EXPECT_EQ(panByDesc("D"), 4);
  EXPECT_EQ(panByDesc("The"), 2);
  expectBothCopies(file);
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(QueryTest, EmptyTextFindsTheFirstPresetThatHasADescription) {
  givenPresets(
      "<preset PanPos='1'/><other Description='' PanPos='2'/>"
      "<preset Description='' PanPos='3'/><preset Description='Door' PanPos='4'/>");
  EXPECT_EQ(panByDesc(""), 3);
  givenPresets("<preset PanPos='1'/>");
  EXPECT_EQ(panByDesc(""), -1);
}

TEST_F(QueryTest, UnknownDescriptionIsReportedAndLeavesTheRecordAlone) {
  givenPresets("<preset Id='1' Description='Door'/><Preset Description='door'/>");
  for (const std::string unknown : {"door", "Doors", "oor", " Door", "%s%n"}) {
    log.clear();
    tagPRESET_CFG_S record = patterned();
    EXPECT_EQ(
        captureOutput([&] { EXPECT_EQ(CFG_PRESET_QueryOneByDesc(unknown.c_str(), &record), -1); }),
        "");
    EXPECT_EQ(record, patterned());
    EXPECT_TRUE(unlocked());
    EXPECT_THAT(
        log.records(),
        ElementsAre(Logged(3, "CFG_PRESET_QueryOneByDesc",
                           "pstNode is NULL, can't find preset Description " + unknown + "\n")));
  }
}

TEST_F(QueryTest, NullTextAndNullRecordAreReportedAlikeBeforeTheFileIsOpened) {
  tagPRESET_CFG_S record = patterned();
  EXPECT_EQ(captureOutput([&] {
              EXPECT_EQ(CFG_PRESET_QueryOneByDesc(nullptr, &record), -1);
              EXPECT_EQ(CFG_PRESET_QueryOneByDesc("Door", nullptr), -1);
              EXPECT_EQ(CFG_PRESET_QueryOneByDesc(nullptr, nullptr), -1);
            }),
            "");
  EXPECT_EQ(record, patterned());
  EXPECT_TRUE(neverLocked());
  const auto isNull = Logged(3, "CFG_PRESET_QueryOneByDesc", "pstPresetCfg is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(isNull, isNull, isNull));
}

TEST_F(QueryTest, EveryChildWhoseNameBeginsWithPresetIsCounted) {
  const std::string file =
      group(
          "<preset Id='1'/><presetX/>text<preset Id='1'><preset/></preset><!-- <preset/> -->"
          "<Preset/><PRESET/><prese/><xpreset/><other><preset/></other><preset-2/>") +
      "<PresetCfg><preset/></PresetCfg><preset/>";
  givenFile(file);
  EXPECT_EQ(captureOutput([&] { EXPECT_EQ(count(), 4); }), "");
  expectBothCopies(file);
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(QueryTest, EmptyGroupCountsNone) {
  for (const char* file :
       {"<PresetCfg/>", "<PresetCfg></PresetCfg>", "<PresetCfg>\n</PresetCfg>",
        "<PresetCfg><!-- none yet --></PresetCfg>", "<PresetCfg><other/></PresetCfg>"}) {
    givenFile(file);
    EXPECT_EQ(count(), 0) << file;
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(QueryTest, NullCountIsReportedBeforeTheFileIsOpened) {
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_PRESET_GetCountNum(nullptr), -1); }), "");
  EXPECT_TRUE(neverLocked());
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_PRESET_GetCountNum", "ps32PresetCount is NULL\n")));
}

}  // namespace
}  // namespace camcfg::tests
