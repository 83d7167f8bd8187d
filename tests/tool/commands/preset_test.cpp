#include <fstream>

#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kBackup[] = "/cfg1/preset_cfg.xml";

constexpr char kPresets[] =
    "<PresetCfg>\n"
    "    <preset Id=\"0\" Description=\"Home\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n"
    "    <preset Id=\"3\" Description=\"Dock west\" PanPos=\"-20\" TiltPos=\"5\" ZoomPos=\"100\" "
    "FocusPos=\"7\" FocusMode=\"1\" private=\"x\"/>\n"
    "    <preset Id=\"5\" Description=\"Dock\" PanPos=\"40\" TiltPos=\"6\" ZoomPos=\"200\" "
    "FocusPos=\"8\" FocusMode=\"0\"/>\n"
    "</PresetCfg>\n";

constexpr char kDock[] =
    "    <preset Id=\"5\" Description=\"Dock\" PanPos=\"40\" TiltPos=\"6\" ZoomPos=\"200\" "
    "FocusPos=\"8\" FocusMode=\"0\"/>\n";

constexpr char kShadowNote[] =
    "note: applications that ask for 'Dock' get preset 3 'Dock west', since a description that "
    "begins with it comes first\n";

std::string added(const std::string& preset) {
  return with(kPresets, "</PresetCfg>", "    " + preset + "\n</PresetCfg>");
}

ToolRun refusedPreset(const std::string& text) {
  return {1, "", "camcfg: preset " + text + "\n"};
}

class PresetTest : public ToolTest {
 protected:
  PresetTest() { write(kPresets); }

  void write(const std::string& presets) const {
    device.write(kPreset, presets);
    device.write(kBackup, presets);
  }

  void expect(const std::string& presets) const {
    EXPECT_EQ(device.read(kPreset), presets);
    EXPECT_EQ(device.read(kBackup), presets);
  }

  ToolRun preset(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "preset");
    return run(arguments);
  }

  // The tool reads it outside the device's root.
  ToolRun import(const std::string& contents, const std::vector<std::string>& options = {}) const {
    const std::string path = device.hostPath() + "/import";
    std::ofstream(path) << contents;
    std::vector<std::string> arguments = {"import", path};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return preset(arguments);
  }
};

TEST_F(PresetTest, ListAlignsThePresetsInTheOrderOfTheFile) {
  EXPECT_EQ(preset({"list"}), (ToolRun{0,
                                       "ID  PAN  TILT  ZOOM  FOCUS  FOCUS MODE  DESCRIPTION\n"
                                       "0   0    0     0     0      0           Home\n"
                                       "3   -20  5     100   7      1           Dock west\n"
                                       "5   40   6     200   8      0           Dock\n",
                                       ""}));
}

TEST_F(PresetTest, ListShowsNothingForWhatIsMissingOrNoInteger) {
  write("<PresetCfg><presetX PanPos=\"far\" ZoomPos=\"3\"/><other Id=\"1\"/></PresetCfg>");
  EXPECT_EQ(preset({"list"}), (ToolRun{0,
                                       "ID  PAN  TILT  ZOOM  FOCUS  FOCUS MODE  DESCRIPTION\n"
                                       "-   -    -     3     -      -           -\n",
                                       ""}));
}

TEST_F(PresetTest, GroupAfterOtherElementsIsFound) {
  write(std::string("<First/>\n") + kPresets);
  EXPECT_EQ(preset({"get", "5"}).status, 0);
}

TEST_F(PresetTest, FileWithoutAGroupIsUnusable) {
  write("<Presets/>");
  EXPECT_EQ(
      preset({"list"}),
      (ToolRun{3, "", "camcfg: preset list: /cfg0/preset_cfg.xml has no element PresetCfg\n"}));
}

TEST_F(ToolTest, MissingPresetFileIsUnusable) {
  EXPECT_EQ(run({"preset", "add"}),
            (ToolRun{3, "",
                     "camcfg: preset add: /cfg0/preset_cfg.xml is missing; run 'camcfg verify' to "
                     "repair it\n"}));
}

TEST_F(PresetTest, GetShowsAPresetByItsId) {
  EXPECT_EQ(preset({"get", "3"}), (ToolRun{0,
                                           "id           3\n"
                                           "description  Dock west\n"
                                           "pan          -20\n"
                                           "tilt         5\n"
                                           "zoom         100\n"
                                           "focus        7\n"
                                           "focus mode   1\n",
                                           ""}));
}

TEST_F(PresetTest, GetByDescriptionTakesTheWholeOneAndSaysThatApplicationsGetAnother) {
  EXPECT_EQ(preset({"get", "Dock", "--json"}),
            (ToolRun{0,
                     "{\n"
                     "  \"id\": 5,\n"
                     "  \"description\": \"Dock\",\n"
                     "  \"pan\": 40,\n"
                     "  \"tilt\": 6,\n"
                     "  \"zoom\": 200,\n"
                     "  \"focus\": 8,\n"
                     "  \"focusMode\": 0\n"
                     "}\n",
                     std::string("camcfg: preset get: ") + kShadowNote}));
}

TEST_F(PresetTest, GetShowsADescriptionThatAQueryByIdKeepsBack) {
  const std::string longOne(63, 'x');
  write(with(kPresets, "\"Dock\"", "\"" + longOne + "\""));
  EXPECT_THAT(preset({"get", "5"}).out, testing::HasSubstr("description  " + longOne + "\n"));
}

TEST_F(PresetTest, UnknownPresetsAreNotFound) {
  EXPECT_EQ(preset({"get", "4"}), refusedPreset("get: there is no preset 4"));
  EXPECT_EQ(preset({"get", "99999999999999999999"}),
            refusedPreset("get: there is no preset 99999999999999999999"));
  EXPECT_EQ(preset({"get", "Hone"}),
            refusedPreset("get: there is no preset called 'Hone'; did you mean 'Home'?"));
  EXPECT_EQ(
      preset({"get", "Hom"}),
      refusedPreset("get: there is no preset called 'Hom' (a lookup by the beginning finds preset "
                    "0 'Home'); did you mean 'Home'?"));
}

TEST_F(PresetTest, DescriptionOfTwoPresetsIsRefused) {
  write(with(kPresets, "\"Home\"", "\"Dock\""));
  const char* const why =
      "there are several presets called 'Dock': preset 0 'Dock' and preset 5 'Dock'; give an id";
  EXPECT_EQ(preset({"get", "Dock"}), refusedPreset(std::string("get: ") + why));
  EXPECT_EQ(preset({"delete", "Dock"}), refusedPreset(std::string("delete: ") + why));
}

TEST_F(PresetTest, SetChangesOnlyWhatIsGivenAndKeepsUnknownAttributes) {
  EXPECT_EQ(preset({"set", "3", "--pan", "-21", "--tilt=-6"}),
            (ToolRun{0, "preset 3: pan -20 -> -21\npreset 3: tilt 5 -> -6\n", ""}));
  expect(with(kPresets, "PanPos=\"-20\" TiltPos=\"5\"", "PanPos=\"-21\" TiltPos=\"-6\""));
}

struct GivenOption {
  const char* option;
  const char* name;
  const char* before;
  const char* attribute;
};

void PrintTo(const GivenOption& given, std::ostream* out) {
  *out << given.option;
}

class PresetOptionTest : public PresetTest, public testing::WithParamInterface<GivenOption> {};

TEST_P(PresetOptionTest, ChangesItsAttributeAndNothingElse) {
  const GivenOption& given = GetParam();
  const std::string name = std::string(given.attribute) + "=\"";
  EXPECT_EQ(
      preset({"set", "5", given.option, "-77"}),
      (ToolRun{0, std::string("preset 5: ") + given.name + " " + given.before + " -> -77\n", ""}));
  expect(with(kPresets, kDock, with(kDock, name + given.before, name + "-77")));
}

INSTANTIATE_TEST_SUITE_P(Options, PresetOptionTest,
                         testing::Values(GivenOption{"--pan", "pan", "40", "PanPos"},
                                         GivenOption{"--tilt", "tilt", "6", "TiltPos"},
                                         GivenOption{"--zoom", "zoom", "200", "ZoomPos"},
                                         GivenOption{"--focus", "focus", "8", "FocusPos"},
                                         GivenOption{"--focus-mode", "focusMode", "0",
                                                     "FocusMode"}));

class LongDescriptionTest : public PresetTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(LongDescriptionTest, SurvivesAChangeOfThePosition) {
  const std::string text(GetParam(), 'x');
  const std::string presets = with(kPresets, "\"Dock\"", "\"" + text + "\"");
  write(presets);
  EXPECT_EQ(preset({"set", "5", "--pan", "41"}).status, 0);
  expect(with(presets, "PanPos=\"40\"", "PanPos=\"41\""));
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongDescriptionTest, testing::Values(31, 32, 62, 63));

TEST_F(PresetTest, SetCreatesAPresetThatIsZeroWhereNothingIsGiven) {
  EXPECT_EQ(preset({"set", "128", "--zoom", "9"}),
            (ToolRun{0, "preset 128: created\n",
                     "camcfg: preset set: warning: /cfg0/preset_cfg.xml:5: preset 128 has no "
                     "description [description-missing]\n"}));
  expect(
      added("<preset Id=\"128\" Description=\"\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"9\" "
            "FocusPos=\"0\" FocusMode=\"0\"/>"));
}

TEST_F(PresetTest, SetInJsonShowsThePresetBefore) {
  const ToolRun set = preset({"set", "5", "--description", "Pier", "--json"});
  EXPECT_EQ(set, (ToolRun{0,
                          "{\n"
                          "  \"id\": 5,\n"
                          "  \"description\": \"Pier\",\n"
                          "  \"pan\": 40,\n"
                          "  \"tilt\": 6,\n"
                          "  \"zoom\": 200,\n"
                          "  \"focus\": 8,\n"
                          "  \"focusMode\": 0,\n"
                          "  \"before\": {\n"
                          "    \"id\": 5,\n"
                          "    \"description\": \"Dock\",\n"
                          "    \"pan\": 40,\n"
                          "    \"tilt\": 6,\n"
                          "    \"zoom\": 200,\n"
                          "    \"focus\": 8,\n"
                          "    \"focusMode\": 0\n"
                          "  }\n"
                          "}\n",
                          ""}));
  EXPECT_THAT(preset({"set", "7", "--json"}).out, testing::HasSubstr("\"before\": null"));
}

TEST_F(PresetTest, SetTakesAnEmptyDescriptionAndOneThatLooksLikeAnOption) {
  EXPECT_EQ(preset({"set", "0", "--description", ""}),
            (ToolRun{0, "preset 0: description Home -> \n",
                     "camcfg: preset set: warning: /cfg0/preset_cfg.xml:2: preset 0 has no "
                     "description [description-missing]\n"}));
  EXPECT_EQ(preset({"set", "0", "--description=--x"}),
            (ToolRun{0, "preset 0: description  -> --x\n", ""}));
  expect(with(kPresets, "\"Home\"", "\"--x\""));
}

TEST_F(PresetTest, SetToWhatItIsChangesNothing) {
  EXPECT_EQ(preset({"set", "0", "--pan", "0"}),
            (ToolRun{0, "preset 0: it is so already; nothing was written\n", ""}));
  expect(kPresets);
}

TEST_F(PresetTest, SetSaysWhatLookupsMakeOfADescription) {
  EXPECT_EQ(preset({"set", "0", "--description", std::string(32, 'x')}).err,
            "camcfg: preset set: warning: /cfg0/preset_cfg.xml:2: preset 0: the description has 32 "
            "bytes and is not returned by a query by id [description-hidden-by-id]\n");
  EXPECT_THAT(preset({"set", "0", "--description", "Dock"}).err,
              testing::HasSubstr("[description-twice]"));
}

TEST_F(PresetTest, SetRefusesToLoseWhatIsThere) {
  const std::string tooLong = with(kPresets, "\"Dock\"", "\"" + std::string(64, 'x') + "\"");
  const std::string presets = with(tooLong, "PanPos=\"0\"", "PanPos=\"far\"");
  write(presets);
  EXPECT_EQ(preset({"set", "5", "--pan", "1"}),
            refusedPreset("set: preset 5: its present description would be cut to 63 bytes; give a "
                          "description as well"));
  EXPECT_EQ(preset({"set", "0", "--tilt", "1"}),
            refusedPreset(
                "set: preset 0: its PanPos 'far' is not an integer and would become 0; give pan as "
                "well"));
  expect(presets);
  EXPECT_EQ(preset({"set", "0", "--pan", "1"}), (ToolRun{0, "preset 0: pan - -> 1\n", ""}));
}

struct RefusedPreset {
  std::vector<std::string> arguments;
  std::string why;
};

void PrintTo(const RefusedPreset& refused, std::ostream* out) {
  *out << refused.why;
}

class RefusedPresetTest : public PresetTest, public testing::WithParamInterface<RefusedPreset> {};

TEST_P(RefusedPresetTest, IsRefusedInOneLineAndChangesNothing) {
  EXPECT_EQ(preset(GetParam().arguments), refusedPreset(GetParam().why));
  expect(kPresets);
}

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedPresetTest,
    testing::Values(
        RefusedPreset{{"set", "129"},
                      "set: id 129 is outside 0..128; the nearest permitted is 128"},
        RefusedPreset{{"set", "--", "-1"},
                      "set: id -1 is outside 0..128; the nearest permitted is 0"},
        RefusedPreset{{"set", "3", "--pan", "4a"}, "set: --pan: '4a' is not a decimal integer"},
        RefusedPreset{{"set", "3", "--zoom", ""}, "set: --zoom: '' is not a decimal integer"},
        RefusedPreset{{"set", "3", "--tilt", "2147483648"},
                      "set: --tilt: 2147483648 is outside -2147483648..2147483647; the nearest "
                      "permitted is 2147483647"},
        RefusedPreset{{"set", "3", "--description", std::string(64, 'x')},
                      "set: preset 3: the description has 64 bytes, the limit is 63; the nearest "
                      "permitted is '" +
                          std::string(63, 'x') + "'"},
        RefusedPreset{{"add", "--description", std::string(64, 'x')},
                      "add: preset 1: the description has 64 bytes, the limit is 63; the nearest "
                      "permitted is '" +
                          std::string(63, 'x') + "'"},
        RefusedPreset{{"set", "3", "--description", "a\nb"},
                      "set: preset 3: the description has a control character in it"}));

TEST_F(PresetTest, BothEndsOfTheNumbersAreStored) {
  EXPECT_EQ(preset({"set", "0", "--pan", "-2147483648", "--tilt", "2147483647"}),
            (ToolRun{0, "preset 0: pan 0 -> -2147483648\npreset 0: tilt 0 -> 2147483647\n", ""}));
}

TEST_F(PresetTest, AddTakesTheLowestFreeIdAndPrintsIt) {
  EXPECT_EQ(preset({"add", "--pan", "-1", "--description", "Gate"}), (ToolRun{0, "1\n", ""}));
  expect(
      added("<preset Id=\"1\" Description=\"Gate\" PanPos=\"-1\" TiltPos=\"0\" ZoomPos=\"0\" "
            "FocusPos=\"0\" FocusMode=\"0\"/>"));
  EXPECT_EQ(preset({"add"}).out, "2\n");
  EXPECT_EQ(preset({"add"}).out, "4\n");
}

std::string presetsUpTo(int last) {
  std::string presets = "<PresetCfg>\n";
  for (int id = 0; id <= last; ++id) presets += "    <preset Id=\"" + std::to_string(id) + "\"/>\n";
  return presets + "</PresetCfg>\n";
}

TEST_F(PresetTest, AddTakesId127LastAndSaysThenThatNoneIsLeft) {
  write(presetsUpTo(126));
  EXPECT_THAT(preset({"add"}).err, testing::HasSubstr("[preset-no-free-id]"));
  const std::string full = device.read(kPreset);
  EXPECT_EQ(
      preset({"add"}),
      refusedPreset("add: no id is left: all from 0 to 127 are taken; delete a preset first"));
  expect(full);
}

TEST_F(PresetTest, DeleteByIdTakesOnlyThatPreset) {
  EXPECT_EQ(preset({"delete", "3"}), (ToolRun{0, "preset 3 'Dock west': deleted\n", ""}));
  EXPECT_EQ(preset({"get", "3"}).status, 1);
  EXPECT_EQ(preset({"delete", "0"}).status, 0);
  expect(std::string("<PresetCfg>\n") + kDock + "</PresetCfg>\n");
}

TEST_F(PresetTest, DeleteByDescriptionTakesTheWholeOneAlthoughAnotherBeginsLikeIt) {
  EXPECT_EQ(preset({"delete", "Dock"}),
            (ToolRun{0, "preset 5 'Dock': deleted\n",
                     std::string("camcfg: preset delete: ") + kShadowNote}));
  expect(with(kPresets, kDock, ""));
}

TEST_F(PresetTest, DeleteOfAnUnknownPresetIsRefusedAndLeavesTheFileFree) {
  EXPECT_EQ(preset({"delete", "77"}), refusedPreset("delete: there is no preset 77"));
  EXPECT_EQ(
      preset({"delete", "Doc"}),
      refusedPreset("delete: there is no preset called 'Doc' (a lookup by the beginning finds "
                    "preset 3 'Dock west'); did you mean 'Dock'?"));
  expect(kPresets);
  EXPECT_EQ(preset({"add"}).status, 0);
}

TEST_F(PresetTest, DeleteTakesAPresetWithoutIdByItsDescription) {
  const std::string lone = "<preset Description=\"Dock w\"/>";
  const std::string presets = added(lone);
  write(presets);
  EXPECT_EQ(
      preset({"delete", "Dock w"}),
      refusedPreset("delete: a preset without id 'Dock w': the library would delete preset 3 'Dock "
                    "west', since a description that begins with it comes first"));
  expect(presets);
  write(added("<preset Description=\"Lone\"/>"));
  EXPECT_EQ(preset({"delete", "Lone"}), (ToolRun{0, "a preset without id 'Lone': deleted\n", ""}));
  expect(kPresets);
}

constexpr char kCsv[] =
    "id,description,pan,tilt,zoom,focus,focusMode\n"
    "0,Home,0,0,0,0,0\n"
    "3,Dock west,-20,5,100,7,1\n"
    "5,Dock,40,6,200,8,0\n";

TEST_F(PresetTest, ExportIsCsvUnlessJsonIsAskedFor) {
  EXPECT_EQ(preset({"export"}), (ToolRun{0, kCsv, ""}));
  EXPECT_EQ(preset({"export", "--format", "csv"}), (ToolRun{0, kCsv, ""}));
  EXPECT_EQ(preset({"export", "--format", "json"}), preset({"list", "--json"}));
  EXPECT_EQ(preset({"export", "--format", "xml"}),
            (ToolRun{2, "", "camcfg: preset export: --format: 'xml' is neither csv nor json\n"}));
}

TEST_F(PresetTest, ImportOfAnExportWritesNothing) {
  const std::string odd =
      added("<preset Id=\"9\" Description=\"a &quot;b&quot;, c\"/>") + "<!-- mine -->";
  write(odd);
  for (const char* format : {"csv", "json"})
    EXPECT_EQ(import(preset({"export", "--format", format}).out),
              (ToolRun{0, "created    -\nupdated    -\nunchanged  0, 3, 5, 9\n", ""}))
        << format;
  expect(odd);
}

TEST_F(PresetTest, ImportRestoresAnExportOnAnEmptyDevice) {
  const std::string unmarked = with(kPresets, " private=\"x\"", "");
  for (const char* format : {"csv", "json"}) {
    write(unmarked);
    const std::string exported = preset({"export", "--format", format}).out;
    write("<PresetCfg/>\n");
    EXPECT_THAT(import(exported).err, testing::HasSubstr("[description-shadowed]"));
    expect("<PresetCfg/>\n");
    EXPECT_EQ(import(exported, {"--force"}).out,
              "created    0, 3, 5\nupdated    -\nunchanged  -\n");
    expect(unmarked);
  }
}

TEST_F(PresetTest, ImportOfSeveralWritesWhatTheLibraryWritesOneByOne) {
  const std::string odd =
      "<!-- kept --><PresetCfg a=\"1\"><preset Id=\"x\" PanPos=\"1\"/><other Id=\"7\"/>"
      "<presets Id=\"7\" TiltPos=\"0x10\"/><preset PanPos=\"2\"/><preset Id=\" 3\" "
      "Description=\"a&lt;b\"/>"
      "<preset Id=\"3\"/><preset Id=\"-1\"/><preset Id=\"y\"/>text</PresetCfg><PresetCfg/>\n";
  const std::vector<std::string> rows = {"7,-5,\"say \"\"&<>'\"\"\"", "3,2147483647,",
                                         "128,-2147483648,a b", "0,4,\xc3\xa9", "9,,end"};
  const std::string header = "id,pan,description\n";
  for (const std::string& presets : {std::string(kPresets), odd, std::string("<PresetCfg/>\n")}) {
    write(presets);
    std::string all = header;
    for (const std::string& row : rows) {
      all += row + "\n";
      ASSERT_EQ(import(header + row + "\n").status, 0);
    }
    const std::string expected = device.read(kPreset);
    write(presets);
    ASSERT_EQ(import(all).status, 0);
    expect(expected);
  }
}

TEST_F(PresetTest, ImportLeavesAloneWhatItDoesNotName) {
  EXPECT_EQ(import("pan,id\r\n-9,5\r\n,3\r\n"),
            (ToolRun{0, "created    -\nupdated    5\nunchanged  3\n", ""}));
  expect(with(kPresets, "PanPos=\"40\"", "PanPos=\"-9\""));
}

TEST_F(PresetTest, ImportTakesJsonFromStandardInputAndAnswersInIt) {
  const auto feed = [&] {
    std::ofstream(device.hostPath() + "/in") << " [{\"id\": 5, \"pan\": -9, \"tilt\": null}]";
    ASSERT_NE(std::freopen((device.hostPath() + "/in").c_str(), "r", stdin), nullptr);
  };
  EXPECT_EQ(run({"preset", "import", "-", "--json"}, feed), (ToolRun{0,
                                                                     "{\n"
                                                                     "  \"created\": [],\n"
                                                                     "  \"updated\": [\n"
                                                                     "    5\n"
                                                                     "  ],\n"
                                                                     "  \"unchanged\": [],\n"
                                                                     "  \"faults\": []\n"
                                                                     "}\n",
                                                                     ""}));
  expect(with(kPresets, "PanPos=\"40\"", "PanPos=\"-9\""));
}

TEST_F(PresetTest, DryRunSaysWhatAnImportWouldDoAndChangesNothing) {
  EXPECT_EQ(import("id,pan\n5,-9\n6,1\n", {"--dry-run"}),
            (ToolRun{0, "created    6\nupdated    5\nunchanged  -\n",
                     "camcfg: preset import: warning: /cfg0/preset_cfg.xml:5: preset 6 has no "
                     "description [description-missing]\n"}));
  expect(kPresets);
}

TEST_F(PresetTest, EveryFaultOfAnImportIsReportedWithItsLineAndNothingIsStored) {
  EXPECT_EQ(
      import("id,description,pan\n"
             "7,good,1\n"
             "8,x\n"
             "3,\"two\nlines\",99999999999\n"
             "129,y,\n"
             "-1,y,\n"
             ",z,1\n"
             "7,again,1z\n"
             "9," +
             std::string(64, 'x') + ",\n"),
      (ToolRun{
          1, "",
          "camcfg: preset import: line 3: it has 2 cells, not 3 as line 1\n"
          "camcfg: preset import: line 4: pan 99999999999 is outside -2147483648..2147483647; the "
          "nearest permitted is 2147483647\n"
          "camcfg: preset import: line 4: the description has a control character in it\n"
          "camcfg: preset import: line 6: id 129 is outside 0..128; the nearest permitted is 128\n"
          "camcfg: preset import: line 7: id -1 is outside 0..128; the nearest permitted is 0\n"
          "camcfg: preset import: line 8: it has no id\n"
          "camcfg: preset import: line 9: pan '1z' is not a decimal integer\n"
          "camcfg: preset import: line 9: id 7 is in line 2 already\n"
          "camcfg: preset import: line 10: the description has 64 bytes, the limit is "
          "63; the nearest permitted is '" +
              std::string(63, 'x') +
              "'\n"
              "camcfg: preset import: nothing was imported\n"}));
  expect(kPresets);
}

TEST_F(PresetTest, FaultsInJsonAreReportedByTheirPlaceInTheArray) {
  EXPECT_EQ(
      import("[{\"id\": 9, \"pan\": 1.5, \"tlit\": 3}, 7, {\"id\": \"1\"}, {\"pan\": 3}, "
             "{\"id\": 9, \"description\": 4}]"),
      (ToolRun{
          1, "",
          "camcfg: preset import: preset 1 of the array: pan '1.5' is not a decimal integer\n"
          "camcfg: preset import: preset 1 of the array: unknown member 'tlit'; did you mean "
          "'tilt'?\n"
          "camcfg: preset import: preset 2 of the array: it is not an object\n"
          "camcfg: preset import: preset 3 of the array: id '\"1\"' is not a decimal integer\n"
          "camcfg: preset import: preset 4 of the array: it has no id\n"
          "camcfg: preset import: preset 5 of the array: description 4 is not a text\n"
          "camcfg: preset import: preset 5 of the array: id 9 is in preset 1 of the array already\n"
          "camcfg: preset import: nothing was imported\n"}));
  expect(kPresets);
}

TEST_F(PresetTest, ManyFaultsAreCounted) {
  std::string table = "id\n";
  for (int i = 0; i < 25; ++i) table += "no\n";
  const ToolRun imported = import(table);
  EXPECT_THAT(imported.err, testing::EndsWith("line 21: id 'no' is not a decimal integer\n"
                                              "camcfg: preset import: nothing was imported (5 "
                                              "more faults)\n"));
}

TEST_F(PresetTest, ImportOfSomethingElseIsRefusedInOneLine) {
  const std::pair<const char*, const char*> cases[] = {
      {"", "there is nothing in the file"},
      {"\n\n", "there is nothing in the file"},
      {"id,pam\n", "line 1: unknown column 'pam'; did you mean 'pan'?"},
      {"pan,tilt\n", "line 1: there is no column 'id'"},
      {"id,pan,id\n", "line 1: there are two columns 'id'"},
      {"id,description\n1,\"open\n2,x\n", "line 2: a quote is not closed"},
      {"[\n{\"id\":\n]", "line 3: it is no JSON from here on"},
      {"{\"id\": 3}", "it is not an array of presets"},
  };
  for (const auto& [contents, why] : cases)
    EXPECT_EQ(import(contents), refusedPreset(std::string("import: ") + why)) << contents;
  EXPECT_EQ(preset({"import", "/no/such/file"}),
            refusedPreset("import: FILE /no/such/file: No such file or directory"));
  expect(kPresets);
}

TEST_F(PresetTest, ExportSaysWhatAnImportWillRefuse) {
  write("<PresetCfg><preset Id=\"200\"/><preset Description=\"x\"/></PresetCfg>");
  EXPECT_EQ(preset({"export"}).err,
            "camcfg: preset export: note: an import will refuse preset 200: id 200 is outside "
            "0..128; the nearest permitted is 128\n"
            "camcfg: preset export: note: an import will refuse a preset without id 'x': it has no "
            "id\n");
}

}  // namespace
}  // namespace camcfg::tests
