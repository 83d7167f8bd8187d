#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

/// Commands for one preset of the sample device, where 3 is called "Lectern".
class OnePresetTest : public SampleTest {
 protected:
  ToolRun preset(Words words) const {
    words.insert(words.begin(), "preset");
    return run(words);
  }
  std::size_t changes() const { return jsonIn(run({"history", "--json"}).out)["changes"].size(); }
};

TEST_F(OnePresetTest, IdAndDescriptionStandForTheSamePreset) {
  const auto with = [](Words words, const char* preset) {
    words.insert(words.begin() + 1, preset);
    return words;
  };
  for (const Words& words : {Words{"set", "--pan", "7"}, {"rename", "Desk"}, {"delete"}}) {
    const std::string before = device.read(kPreset);
    const ToolRun result = preset(with(words, "3"));
    const std::string after = device.read(kPreset);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(run({"undo"}).status, 0);
    EXPECT_EQ(device.read(kPreset), before);
    EXPECT_EQ(preset(with(words, "Lectern")), result);
    EXPECT_EQ(device.read(kPreset), after);
    EXPECT_EQ(run({"undo"}).status, 0);
  }
  EXPECT_EQ(preset({"get", "3"}), preset({"get", "Lectern"}));
  EXPECT_EQ(run({"explain", "preset", "3"}).status, 0);
  EXPECT_EQ(run({"explain", "preset", "Lectern"}).status, 0);
}

TEST_F(OnePresetTest, RenameChangesTheDescriptionAndNothingElse) {
  const std::string before = device.read(kPreset);
  EXPECT_EQ(preset({"rename", "Lectern", "Speaker's desk"}),
            (ToolRun{0, "preset 3: description Lectern -> Speaker's desk\n", ""}));
  EXPECT_EQ(preset({"get", "Speaker's desk"}).out,
            with(preset({"get", "3"}).out, "Speaker's desk", "Speaker's desk"));
  EXPECT_EQ(preset({"rename", "Speaker's desk", "Lectern"}).status, 0);
  EXPECT_EQ(jsonIn(preset({"get", "3", "--json"}).out)["zoom"], 9800);
  EXPECT_EQ(preset({"rename", "Lectern", "Lectern"}),
            (ToolRun{0, "preset 3: it is so already; nothing was written\n", ""}));
  EXPECT_EQ(changes(), 2U);
}

TEST_F(OnePresetTest, RenameAnswersInJsonWithWhatWas) {
  const tool::Json answer = jsonIn(preset({"rename", "3", "Desk", "--json"}).out);
  EXPECT_EQ(answer["description"], "Desk");
  EXPECT_EQ(answer["before"]["description"], "Lectern");
}

TEST_F(OnePresetTest, RenameToANameByWhichAnotherIsFoundIsRefusedUnlessForced) {
  const std::string error =
      "error: /cfg0/preset_cfg.xml:12: preset 5: the description 'Stage' finds preset 1 'Stage "
      "left' at "
      "line 8 [description-shadowed]\n";
  EXPECT_EQ(preset({"rename", "Audience", "Stage"}),
            (ToolRun{1, "",
                     "camcfg: preset rename: this would add what 'lint' calls an error, which "
                     "'--force' allows: " +
                         error}));
  EXPECT_EQ(
      preset({"rename", "Audience", "Stage", "--force"}),
      (ToolRun{0, "preset 5: description Audience -> Stage\n", "camcfg: preset rename: " + error}));
}

TEST_F(OnePresetTest, FaultyNamesAreRefusedInOneLineAndChangeNothing) {
  const std::string before = device.read(kPreset);
  const std::string kLong(64, 'x');
  const struct {
    Words words;
    int status;
    std::string text;
  } kCases[] = {
      {{"get", ""}, 2, "get: which preset? the argument is empty; give an id or a description"},
      {{"delete", ""},
       2,
       "delete: which preset? the argument is empty; give an id or a description"},
      {{"set", "", "--pan", "1"},
       2,
       "set: which preset? the argument is empty; give an id or a description"},
      {{"rename", "", "Desk"},
       2,
       "rename: which preset? the argument is empty; give an id or a description"},
      {{"rename", "Lectern", ""}, 2, "rename: which description? the argument is empty"},
      {{"rename", "Lectern", "Home"}, 1, "rename: preset 0 'Home' has this description already"},
      {{"rename", "Lectern", "4"},
       1,
       "rename: '4' would be taken for an id; give a description with something other than digits "
       "in it"},
      {{"rename", "Lecter", "Desk"},
       1,
       "rename: there is no preset called 'Lecter' (a lookup by the beginning finds preset 3 "
       "'Lectern'); did you mean 'Lectern'?"},
      {{"rename", "99", "Desk"}, 1, "rename: there is no preset 99"},
      {{"set", "Lectren", "--pan", "1"},
       1,
       "set: there is no preset called 'Lectren'; did you mean 'Lectern'?"},
  };
  for (const auto& [words, status, text] : kCases)
    EXPECT_EQ(preset(words), (ToolRun{status, "", "camcfg: preset " + text + "\n"}));
  EXPECT_EQ(preset({"rename", "Lectern", kLong}).status, 1);
  EXPECT_EQ(run({"explain", "preset", ""}).status, 2);
  EXPECT_EQ(device.read(kPreset), before);
  EXPECT_EQ(changes(), 0U);
}

TEST_F(OnePresetTest, OneThatTheLibraryWouldMissIsNotChangedByItsDescription) {
  change("preset_cfg.xml", "<preset Id=\"4\"", "<preset Id=\"3\"");
  const std::string before = device.read(kPreset);
  const std::string why =
      "preset 3 'Whiteboard': the library would change preset 3 'Lectern', which comes first with "
      "this id\n";
  EXPECT_EQ(preset({"rename", "Whiteboard", "Board"}),
            (ToolRun{1, "", "camcfg: preset rename: " + why}));
  EXPECT_EQ(preset({"set", "Whiteboard", "--pan", "1"}),
            (ToolRun{1, "", "camcfg: preset set: " + why}));
  EXPECT_EQ(device.read(kPreset), before);
}

TEST_F(OnePresetTest, RehearsalsShowTheChangeAndWriteNothing) {
  const std::string before = device.read(kPreset);
  const struct {
    Words words;
    std::string out;
  } kCases[] = {
      {{"set", "Lectern", "--pan", "7"}, "preset 3: pan -1800 -> 7\n"},
      {{"set", "9", "--description", "Desk"}, "preset 9: created\n"},
      {{"add", "--description", "Desk"}, "7\n"},
      {{"rename", "3", "Desk"}, "preset 3: description Lectern -> Desk\n"},
      {{"delete", "Lectern"}, "preset 3 'Lectern': deleted\n"},
  };
  for (const auto& [words, out] : kCases) {
    Words rehearsal = words;
    rehearsal.emplace_back("--dry-run");
    EXPECT_EQ(preset(rehearsal), (ToolRun{0, out + "nothing was written\n", ""}));
    EXPECT_EQ(device.read(kPreset), before);
  }
  EXPECT_EQ(changes(), 0U);
}

}  // namespace
}  // namespace camcfg::tests
