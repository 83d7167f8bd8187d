#include <cstddef>
#include <limits>

#include "preset/preset_test.h"

namespace camcfg::tests {
namespace {

using testing::IsEmpty;

static_assert(PRESET_ID_MAX == 128);
static_assert(offsetof(tagPRESET_CFG_S, s32Id) == 0);
static_assert(offsetof(tagPRESET_CFG_S, s32PanPos) == 4);
static_assert(offsetof(tagPRESET_CFG_S, s32TiltPos) == 8);
static_assert(offsetof(tagPRESET_CFG_S, s32ZoomPos) == 12);
static_assert(offsetof(tagPRESET_CFG_S, s32FocusPos) == 16);
static_assert(offsetof(tagPRESET_CFG_S, s32FocusMode) == 20);
static_assert(offsetof(tagPRESET_CFG_S, s8Description) == 24);
static_assert(sizeof(tagPRESET_CFG_S::s8Description) == 64);
static_assert(sizeof(tagPRESET_CFG_S) == 88);

class RecordTest : public PresetTest {
 protected:
  tagPRESET_CFG_S byId(int id) const {
    tagPRESET_CFG_S record = patterned();
    EXPECT_EQ(CFG_PRESET_QueryOneById(id, &record), 0);
    return record;
  }
  tagPRESET_CFG_S byDescription(const char* beginning) const {
    tagPRESET_CFG_S record = patterned();
    EXPECT_EQ(CFG_PRESET_QueryOneByDesc(beginning, &record), 0);
    return record;
  }

  // What a query leaves in a patterned record: the description's characters and no terminator.
  static tagPRESET_CFG_S overPattern(tagPRESET_CFG_S written, std::size_t descriptionLength) {
    const tagPRESET_CFG_S pattern = patterned();
    for (std::size_t i = descriptionLength; i < sizeof written.s8Description; ++i)
      written.s8Description[i] = pattern.s8Description[i];
    return written;
  }
};

TEST_F(RecordTest, NewPresetHasItsSevenAttributesInOrder) {
  givenPresets("");
  tagPRESET_CFG_S door = preset(7, "Front door", 10, -20, 30, -40, 50);
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  expectBothCopies(
      group("    <preset Id=\"7\" Description=\"Front door\" PanPos=\"10\" TiltPos=\"-20\" "
            "ZoomPos=\"30\" FocusPos=\"-40\" FocusMode=\"50\"/>\n"));
}

TEST_F(RecordTest, AnyIntegersComeBackAsTheyWere) {
  givenPresets("");
  tagPRESET_CFG_S door = preset(0, "Door", kMin, kMax, 0, -1, kMin);
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  EXPECT_EQ(byId(0), overPattern(door, 4));
  EXPECT_EQ(byDescription("Door"), overPattern(door, 4));
}

TEST_F(RecordTest, AttributesMayComeInAnyOrder) {
  givenPresets(
      "<preset FocusMode='5' FocusPos='4' private='9' ZoomPos='3' TiltPos='2' PanPos='1' "
      "Description='Door' Id='6'/>");
  EXPECT_EQ(byId(6), overPattern(preset(6, "Door"), 4));
  EXPECT_EQ(byDescription("Door"), overPattern(preset(6, "Door"), 4));
}

TEST_F(RecordTest, AbsentAttributesLeaveTheirFieldsAlone) {
  const auto pattern = patterned();
  givenPresets("<preset Id='6'/><preset Description='Door'/>");
  tagPRESET_CFG_S idOnly = pattern;
  idOnly.s32Id = 6;
  EXPECT_EQ(byId(6), idOnly);
  EXPECT_EQ(byDescription(""),
            overPattern(preset(pattern.s32Id, "Door", pattern.s32PanPos, pattern.s32TiltPos,
                               pattern.s32ZoomPos, pattern.s32FocusPos, pattern.s32FocusMode),
                        4));
}

struct IntegerField {
  const char* attribute;
  std::int32_t tagPRESET_CFG_S::*field;
};
const IntegerField kIntegerFields[] = {{"Id", &tagPRESET_CFG_S::s32Id},
                                       {"PanPos", &tagPRESET_CFG_S::s32PanPos},
                                       {"TiltPos", &tagPRESET_CFG_S::s32TiltPos},
                                       {"ZoomPos", &tagPRESET_CFG_S::s32ZoomPos},
                                       {"FocusPos", &tagPRESET_CFG_S::s32FocusPos},
                                       {"FocusMode", &tagPRESET_CFG_S::s32FocusMode}};

TEST_F(RecordTest, EachIntegerFieldIsFilledFromItsOwnAttribute) {
  for (const IntegerField& integer : kIntegerFields) {
    givenPresets("<preset Description='Door' " + std::string(integer.attribute) + "='11'/>");
    tagPRESET_CFG_S expected = patterned();
    std::memcpy(expected.s8Description, "Door", 4);
    expected.*integer.field = 11;
    EXPECT_EQ(byDescription("Door"), expected) << integer.attribute;
  }
}

TEST_F(RecordTest, AttributesThatAreNoIntegersLeaveTheirFieldsAlone) {
  for (const char* value : {"", " ", "abc", "-", "--1", "+-1", ".5", "x7", "one"})
    for (const IntegerField& integer : kIntegerFields) {
      givenPresets("<preset Description='Door' " + std::string(integer.attribute) + "='" + value +
                   "'/>");
      tagPRESET_CFG_S expected = patterned();
      std::memcpy(expected.s8Description, "Door", 4);
      EXPECT_EQ(byDescription("Door"), expected) << integer.attribute << "='" << value << "'";
    }
}

TEST_F(RecordTest, NumberTooLargeForItsFieldSpoilsNoOtherField) {
  givenPresets(
      "<preset Id='6' Description='Door' PanPos='99999999999999999999' TiltPos='2' ZoomPos='3' "
      "FocusPos='4' FocusMode='5'/>");
  const tagPRESET_CFG_S found = byId(6);
  EXPECT_EQ(found, overPattern(preset(6, "Door", found.s32PanPos), 4));
}

TEST_F(RecordTest, PrivateIsReadIntoNothing) {
  givenPresets("<preset Id='6' private='1'/>");
  tagPRESET_CFG_S expected = patterned();
  expected.s32Id = 6;
  EXPECT_EQ(byId(6), expected);
}

struct DescriptionLength {
  std::size_t length;
  bool answeredById;
  bool answeredByDescription;
};

void PrintTo(const DescriptionLength& row, std::ostream* out) {
  *out << row.length;
}

class DescriptionLengthTest : public RecordTest,
                              public testing::WithParamInterface<DescriptionLength> {};

TEST_P(DescriptionLengthTest, IsAnsweredByEachQueryUpToItsOwnLimitAndWithoutATerminator) {
  const auto [length, byIdToo, byDescriptionToo] = GetParam();
  const std::string description(length, 'd');
  givenPresets("<preset Id='6' Description='" + description +
               "' PanPos='1' TiltPos='2' ZoomPos='3' FocusPos='4' FocusMode='5'/>");
  const tagPRESET_CFG_S whole = overPattern(preset(6, description), length);
  const tagPRESET_CFG_S without = overPattern(preset(6, ""), 0);
  EXPECT_EQ(byId(6), byIdToo ? whole : without);
  EXPECT_EQ(byDescription(""), byDescriptionToo ? whole : without);
}

INSTANTIATE_TEST_SUITE_P(
    , DescriptionLengthTest,
    testing::Values(DescriptionLength{0, true, true}, DescriptionLength{1, true, true},
                    DescriptionLength{31, true, true}, DescriptionLength{32, false, true},
                    DescriptionLength{40, false, true}, DescriptionLength{63, false, true},
                    DescriptionLength{64, false, false}, DescriptionLength{65, false, false},
                    DescriptionLength{100000, false, false}),
    [](const auto& row) { return std::to_string(row.param.length); });

TEST_F(RecordTest, LengthOfADescriptionIsCountedInBytesOfItsText) {
  // Sixteen letters of two bytes each; an entity is one byte.
  std::string letters;
  for (int i = 0; i < 16; ++i) letters += "\xC3\xA4";
  givenPresets("<preset Id='1' Description='" + letters +
               "'/><preset Id='2' Description='&amp;&lt;&gt;&quot;&apos;&#228;'/>");
  tagPRESET_CFG_S expected = patterned();
  expected.s32Id = 1;
  EXPECT_EQ(byId(1), expected);
  expected.s32Id = 2;
  std::memcpy(expected.s8Description, "&<>\"'\xC3\xA4", 7);
  EXPECT_EQ(byId(2), expected);
}

TEST_F(RecordTest, SpecialCharactersComeBackAsTheyWere) {
  givenPresets("");
  const std::string description = "<a b=\"c\"> & 'd' \xE9\x97\xA8 %s";
  tagPRESET_CFG_S door = preset(1, description);
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  EXPECT_EQ(byId(1), overPattern(door, description.size()));
  EXPECT_EQ(byDescription("<a b=\"c\"> & "), overPattern(door, description.size()));
}

TEST_F(RecordTest, DescriptionThatFillsItsFieldIsStoredUpToTheFieldsEnd) {
  givenPresets("");
  struct {
    tagPRESET_CFG_S record = preset(1, std::string(64, 'd'));
    char after[8] = "UNUSED!";
  } memory;
  EXPECT_EQ(CFG_PRESET_SetParam(&memory.record), 0);
  expectBothCopies(group("    <preset Id=\"1\" Description=\"" + std::string(64, 'd') +
                         "\" PanPos=\"1\" TiltPos=\"2\" ZoomPos=\"3\" FocusPos=\"4\" "
                         "FocusMode=\"5\"/>\n"));
}

TEST_F(RecordTest, DescriptionIsStoredUpToItsTerminator) {
  givenPresets("");
  tagPRESET_CFG_S door = patterned();
  door.s32Id = 1;
  std::memcpy(door.s8Description, "Door", 5);
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  EXPECT_EQ(byId(1), overPattern(door, 4));
}

TEST_F(RecordTest, EmptyDescriptionIsStoredAsSuch) {
  givenPresets("");
  tagPRESET_CFG_S door = preset(1, "");
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  expectBothCopies(
      group("    <preset Id=\"1\" Description=\"\" PanPos=\"1\" TiltPos=\"2\" ZoomPos=\"3\" "
            "FocusPos=\"4\" FocusMode=\"5\"/>\n"));
}

TEST_F(RecordTest, SetParamLeavesTheRecordAlone) {
  givenPresets("");
  tagPRESET_CFG_S door = patterned();
  door.s32Id = 1;
  const tagPRESET_CFG_S before = door;
  EXPECT_EQ(CFG_PRESET_SetParam(&door), 0);
  EXPECT_EQ(door, before);
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
