#include <optional>
#include <random>

#include "preset/preset_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kNotStored = 77777;

class FreeIdTest : public PresetTest {
 protected:
  // What a successful search stores; kNotStored when it stores nothing.
  int freeId(const std::string& presets) const {
    givenPresets(presets);
    int id = kNotStored;
    EXPECT_EQ(CFG_PRESET_GetUnusedId(&id), 0) << presets;
    return id;
  }

  static std::string presetsFrom(int first, int last) {
    std::string presets;
    for (int id = first; id <= last; ++id) presets += "<preset Id='" + std::to_string(id) + "'/>\n";
    return presets;
  }
};

TEST_F(FreeIdTest, LowestIdThatNoPresetHasIsFound) {
  EXPECT_EQ(freeId("<preset Id='0'/><preset Id='1'/><preset Id='3'/>"), 2);
  EXPECT_EQ(freeId("<preset Id='3'/><preset Id='1'/><preset Id='0'/>"), 2);
  EXPECT_EQ(freeId("<preset Id='1'/>"), 0);
  EXPECT_EQ(freeId("<preset Id='0'/><preset Id='0'/>"), 1);
  EXPECT_EQ(freeId("<preset Id='-1'/><preset Id='128'/><preset Id='-2147483648'/>"), 0);
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(FreeIdTest, GroupWithoutPresetsYieldsZero) {
  EXPECT_EQ(freeId(""), 0);
  EXPECT_EQ(freeId("<!-- none yet -->"), 0);
  EXPECT_EQ(freeId("<other Id='0'/><Preset Id='0'/><prese Id='0'/>"), 0);
}

TEST_F(FreeIdTest, ElementsWhoseNamesOnlyBeginWithPresetTakeIdsToo) {
  EXPECT_EQ(freeId("<presetX Id='0'/><preset-2 Id='1'/><other Id='2'/>"), 2);
}

TEST_F(FreeIdTest, HighestProposedIdIs127) {
  EXPECT_EQ(freeId(presetsFrom(0, 126)), 127);
  EXPECT_EQ(freeId(presetsFrom(0, 126) + presetsFrom(128, 128)), 127);
}

TEST_F(FreeIdTest, AllIdsTakenIsASuccessThatStoresNothing) {
  EXPECT_EQ(freeId(presetsFrom(0, 127)), kNotStored);
  EXPECT_EQ(freeId(presetsFrom(0, 200)), kNotStored);
  EXPECT_EQ(captureOutput([this] { freeId(presetsFrom(-10, 127)); }), "");
  EXPECT_TRUE(unlocked());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(FreeIdTest, LeadingPresetWithoutAReadableIdTakesZero) {
  EXPECT_EQ(freeId("<preset/>"), 1);
  EXPECT_EQ(freeId("<preset Id=''/><preset Id='none'/>"), 1);
  EXPECT_EQ(freeId("<preset/><preset Id='1'/>"), 2);
  EXPECT_EQ(freeId("<preset/><preset Id='5'/><preset/>"), 1);
  EXPECT_EQ(freeId("<preset/>" + presetsFrom(1, 127)), kNotStored);
}

TEST_F(FreeIdTest, LaterPresetWithoutAReadableIdTakesTheIdBeforeIt) {
  EXPECT_EQ(freeId("<preset Id='1'/><preset/>"), 0);
  EXPECT_EQ(freeId("<preset Id='1'/><preset Id='none'/><preset Id='0'/>"), 2);
}

TEST_F(FreeIdTest, AttributeIdIsTakenInThisSpellingOnly) {
  EXPECT_EQ(freeId("<preset Id='1'/><preset id='0' ID='0'/>"), 0);
}

TEST_F(FreeIdTest, FileIsNotTouched) {
  EXPECT_EQ(freeId("<preset  Id = '0'/>"), 1);
  expectBothCopies(group("<preset  Id = '0'/>"));
}

TEST_F(FreeIdTest, NullOutputIsReportedBeforeTheFileIsOpened) {
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_PRESET_GetUnusedId(nullptr), -1); }), "");
  EXPECT_TRUE(neverLocked());
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_PRESET_GetUnusedId", "ps32UnusedId is NULL\n")));
}

// The search in its plain form: for each candidate a walk over all presets, with a working value
// that starts at 0 once and is never reset.
int freeIdByTrial(const std::vector<std::optional<int>>& ids) {
  int working = 0;
  for (int candidate = 0; candidate < 128; ++candidate) {
    bool taken = false;
    for (const auto& id : ids) {
      working = id.value_or(working);
      taken = taken || working == candidate;
    }
    if (!taken) return candidate;
  }
  return kNotStored;
}

class FreeIdModelTest : public FreeIdTest, public testing::WithParamInterface<unsigned> {};

TEST_P(FreeIdModelTest, ResultIsThatOfTryingEachCandidateOnAllPresets) {
  std::mt19937 random(GetParam());
  const auto below = [&random](unsigned limit) { return static_cast<int>(random() % limit); };
  for (int round = 0; round < 40; ++round) {
    const int span = 1 + below(140);
    std::vector<std::optional<int>> ids(static_cast<std::size_t>(below(400)));
    std::string presets;
    for (auto& id : ids) {
      if (below(4) != 0) id = below(static_cast<unsigned>(span)) - below(3);
      presets += id ? "<preset Id='" + std::to_string(*id) + "'/>" : "<preset/>";
    }
    ASSERT_EQ(freeId(presets), freeIdByTrial(ids)) << presets;
  }
}

INSTANTIATE_TEST_SUITE_P(, FreeIdModelTest, testing::Range(0U, 5U));

}  // namespace
}  // namespace camcfg::tests
