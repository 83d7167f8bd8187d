#include "tool/media_tool_test.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using ExportSectionTest = ParametersTest;

constexpr char kImage[] = R"({
  "version": 1,
  "parameters": {
    "Image": {"Brightness": 0, "Mode": "Auto"}
  }
}
)";

TEST_F(ExportSectionTest, ExportTakesASectionOfParameters) {
  EXPECT_EQ(run({"export", "Image"}), (ToolRun{0, kImage, ""}));
}

TEST_F(ExportSectionTest, NetWorkIsTheCardsAndTheHostName) {
  const std::string network = run({"export", "network"}).out;
  EXPECT_THAT(network, testing::HasSubstr("\"hostname\": \"gate\""));
  EXPECT_EQ(run({"export", "NetWork"}), (ToolRun{0, network, ""}));
}

TEST_F(ExportSectionTest, SectionsOfParametersAndOthersMayBeMixed) {
  EXPECT_EQ(run({"export", "Image", "network"}), run({"export", "NetWork", "Image"}));
  EXPECT_EQ(run({"export", "Image", "parameters"}), run({"export", "parameters"}));
}

TEST_F(ExportSectionTest, SectionWithoutSettableParametersIsEmpty) {
  const std::string parameters = std::string(kParameters) + "\n<Bare><Box/></Bare>\n";
  writeBoth(parameters);
  EXPECT_EQ(run({"export", "Bare"}),
            (ToolRun{0, "{\n  \"version\": 1,\n  \"parameters\": {}\n}\n", ""}));
}

TEST_F(ExportSectionTest, ImportOfOneSectionLeavesTheOthersAsTheyAre) {
  device.write("/document.json", with(kImage, "Auto", "Manual"));
  EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}),
            (ToolRun{0,
                     "PLACE                  BEFORE  AFTER\n"
                     "parameters.Image.Mode  Auto    Manual\n",
                     ""}));
  EXPECT_EQ(device.read(kBusiness), with(kParameters, "Cur=\"Auto\"", "Cur=\"Manual\""));
}

TEST_F(ExportSectionTest, UnreadableFileIsNoUnknownSection) {
  device.write(kBusiness, "<System");
  EXPECT_EQ(run({"export", "System"}).status, 3);
}

class UnknownSectionTest : public SampleTest {
 protected:
  // What each command says of a section, without its own name.
  std::vector<ToolRun> said(const std::string& section, std::vector<std::string> options = {}) {
    std::vector<ToolRun> all;
    for (std::vector<std::string> words :
         {std::vector<std::string>{"list"}, {"export"}, {"reset", "--section"}}) {
      const std::string name = words.front() + ": ";
      words.push_back(section);
      words.insert(words.end(), options.begin(), options.end());
      ToolRun result = run(words);
      for (std::string* text : {&result.out, &result.err})
        if (const auto at = text->find(name); at != std::string::npos) text->erase(at, name.size());
      all.push_back(result);
    }
    return all;
  }
};

TEST_F(UnknownSectionTest, ListExportAndResetEndAlikeAndNameTheNearest) {
  EXPECT_THAT(said("Sytem"),
              testing::Each(
                  ToolRun{1, "", "camcfg: there is no section 'Sytem'; did you mean 'System'?\n"}));
  EXPECT_THAT(said("system"),
              testing::Each(ToolRun{
                  1, "", "camcfg: there is no section 'system'; did you mean 'System'?\n"}));
  EXPECT_THAT(said("Network"),
              testing::Contains(ToolRun{
                  1, "", "camcfg: there is no section 'Network'; did you mean 'NetWork'?\n"}));
  EXPECT_THAT(said("qqqq"), testing::Each(ToolRun{1, "", "camcfg: there is no section 'qqqq'\n"}));
}

TEST_F(UnknownSectionTest, TheirRefusalsInJsonAreAlike) {
  const std::vector<ToolRun> all = said("Sytem", {"--json"});
  EXPECT_THAT(all, testing::Each(testing::Field(&ToolRun::status, 1)));
  for (const ToolRun& each : all)
    EXPECT_THAT(each.out + each.err,
                testing::HasSubstr("there is no section 'Sytem'; did you mean 'System'?"));
}

TEST_F(UnknownSectionTest, SectionsOfADocumentAreNamedWhereTheyAreTaken) {
  const std::string refusal = "there is no section 'live.str'; did you mean 'live.srt'?\n";
  EXPECT_EQ(run({"export", "live.str"}), (ToolRun{1, "", "camcfg: export: " + refusal}));
  EXPECT_EQ(run({"reset", "--section", "live.str"}), (ToolRun{1, "", "camcfg: reset: " + refusal}));
}

}  // namespace
}  // namespace camcfg::tests
