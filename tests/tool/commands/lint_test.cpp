#include <unistd.h>

#include <regex>
#include <set>

#include "tool/lint/cases.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kShadowedSection[] =
    "<PresetCfg>\n"
    "<preset Id=\"0\" Description=\"Dock 2\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n"
    "<preset Id=\"1\" Description=\"Dock\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\"/>\n"
    "</PresetCfg>\n";
constexpr char kUntidy[] =
    "<Texts>\n"
    "<Menu/>\n"
    "<Live Val=\"a\"/>\n"
    "</Texts>\n";

// Files outside any device, named from the directory that they are in.
class LintFilesTest : public ToolTest {
 protected:
  LintFilesTest() {
    host.write("/shadowed.xml", kShadowedSection);
    host.write("/untidy.xml", kUntidy);
    host.write("/clean.xml", kCleanMedia);
  }

  ToolRun lint(std::vector<std::string> arguments, const std::string& input = "") const {
    host.write("/input", input);
    arguments.insert(arguments.begin(), "lint");
    return runCamcfg(arguments, [this] {
      if (chdir(host.hostPath().c_str()) != 0) _exit(99);
      if (freopen("input", "r", stdin) == nullptr) _exit(99);
    });
  }

  testkit::DeviceRoot host{testkit::DeviceRoot::StayOut};
};

TEST_F(LintFilesTest, FindingsAreLinesAndErrorsAreStatusOne) {
  EXPECT_EQ(lint({"shadowed.xml"}),
            (ToolRun{1,
                     "shadowed.xml:3: warning: preset 1 has no \"FocusMode\" "
                     "[preset-position-missing]\n"
                     "shadowed.xml:3: error: preset 1: the description 'Dock' finds preset 0 "
                     "'Dock 2' at line 2 [description-shadowed]\n",
                     ""}));
}

TEST_F(LintFilesTest, WarningsWithoutErrorsAreStatusZero) {
  EXPECT_EQ(lint({"untidy.xml"}),
            (ToolRun{0, "untidy.xml:2: warning: Menu has no \"Val\" [text-missing]\n", ""}));
}

TEST_F(LintFilesTest, NothingFoundIsNoOutput) {
  EXPECT_EQ(lint({"clean.xml"}), (ToolRun{0, "", ""}));
}

TEST_F(LintFilesTest, FilesAreReportedInTheOrderGivenWhateverTheirNames) {
  host.write("/mpp_cfg.xml", kUntidy);
  EXPECT_EQ(lint({"untidy.xml", "clean.xml", "mpp_cfg.xml"}),
            (ToolRun{0,
                     "untidy.xml:2: warning: Menu has no \"Val\" [text-missing]\n"
                     "mpp_cfg.xml:2: warning: Menu has no \"Val\" [text-missing]\n",
                     ""}));
}

TEST_F(LintFilesTest, DashIsStandardInput) {
  EXPECT_EQ(lint({"-"}, kUntidy),
            (ToolRun{0, "-:2: warning: Menu has no \"Val\" [text-missing]\n", ""}));
}

TEST_F(LintFilesTest, FileThatCannotBeReadIsReportedAmongTheOthers) {
  host.makeDirectory("/sub");
  EXPECT_EQ(lint({"none.xml", "sub", "untidy.xml"}),
            (ToolRun{1,
                     "none.xml:1: error: No such file or directory [unreadable]\n"
                     "sub:1: error: Is a directory [unreadable]\n"
                     "untidy.xml:2: warning: Menu has no \"Val\" [text-missing]\n",
                     ""}));
}

TEST_F(LintFilesTest, NothingThatCanBeReadIsStatusThree) {
  EXPECT_EQ(lint({"none.xml"}),
            (ToolRun{3, "none.xml:1: error: No such file or directory [unreadable]\n", ""}));
}

TEST_F(LintFilesTest, FilesAreOfTheHostAlsoWithARoot) {
  EXPECT_EQ(run({"lint", host.hostPath() + "/clean.xml"}), (ToolRun{0, "", ""}));
}

TEST_F(LintFilesTest, ControlCharactersInNamesAndValuesCannotSteerATerminal) {
  host.write("/a\nb.xml", "<Texts>\n<Menu Val=\"a\"/>\n</Texts>\n<More><B Val=\"\"/></More>");
  host.write("/c.xml",
             "<System><WebHttp Cur=\"\x1b[2J\" Def=\"1\" Min=\"1\" Max=\"2\" Step=\"1\"/>"
             "</System><NetWork Hostname=\"a\"/>");
  EXPECT_EQ(lint({"a\nb.xml"}).out,
            "a\\nb.xml:4: error: B is not right inside the first element, and so is not found "
            "[text-not-found]\n");
  EXPECT_THAT(lint({"c.xml"}).out,
              testing::HasSubstr("System/WebHttp: \"Cur\" '\\x1b[2J' is not an integer"));
}

TEST_F(LintFilesTest, JsonHasTheFindingsAndTheirCounts) {
  EXPECT_EQ(lint({"--json", "untidy.xml", "clean.xml"}),
            (ToolRun{0,
                     "{\n"
                     "  \"errors\": 0,\n"
                     "  \"warnings\": 1,\n"
                     "  \"files\": [\n"
                     "    \"untidy.xml\",\n"
                     "    \"clean.xml\"\n"
                     "  ],\n"
                     "  \"findings\": [\n"
                     "    {\n"
                     "      \"file\": \"untidy.xml\",\n"
                     "      \"line\": 2,\n"
                     "      \"severity\": \"warning\",\n"
                     "      \"rule\": \"text-missing\",\n"
                     "      \"text\": \"Menu has no \\\"Val\\\"\"\n"
                     "    }\n"
                     "  ]\n"
                     "}\n",
                     ""}));
}

TEST_F(LintFilesTest, BytesThatAreNoTextAreFoundAndShown) {
  const std::string bytes("\xff\xfe<\0a\0>\0", 8);
  host.write("/utf16.xml", bytes);
  const ToolRun result = lint({"--json", "utf16.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, testing::HasSubstr("\"rule\": \"wide-encoding\""));
}

TEST_F(LintFilesTest, SecretsAreNeverInAFinding) {
  host.write("/secret.xml", with(kCleanMedia, "Port=\"9000\"",
                                 "Port=\"x\" Hostname=\"h\" Password=\"topsecret\" AesMode=\"y\""));
  EXPECT_EQ(lint({"secret.xml"}).out.find("topsecret"), std::string::npos);
}

TEST_F(LintFilesTest, RulesAreListedWithAllThatIsSaidOfThem) {
  const ToolRun result = lint({"--rules"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(0, result.out.find("not-well-formed")),
            "unreadable (error, structure)\n"
            "  The file cannot be read, so every call that needs it fails.\n"
            "  Example: /cfg0/mpp_cfg.xml is a directory\n"
            "  Why: Programs come up without these settings, and nothing can be saved until the "
            "file can be read.\n"
            "  Fix: Move away what is in its place, or give it the right permissions; "
            "'camcfg verify' restores what is missing.\n");
}

TEST_F(LintFilesTest, RulesInJsonHaveAllTheirMembers) {
  const ToolRun result = lint({"--rules", "--json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out.substr(0, result.out.find("},")),
            "[\n"
            "  {\n"
            "    \"id\": \"unreadable\",\n"
            "    \"severity\": \"error\",\n"
            "    \"subject\": \"structure\",\n"
            "    \"explanation\": \"The file cannot be read, so every call that needs it "
            "fails.\",\n"
            "    \"example\": \"/cfg0/mpp_cfg.xml is a directory\",\n"
            "    \"why\": \"Programs come up without these settings, and nothing can be saved "
            "until the file can be read.\",\n"
            "    \"fix\": \"Move away what is in its place, or give it the right permissions; "
            "'camcfg verify' restores what is missing.\"\n"
            "  ");
}

TEST_F(LintFilesTest, RulesNameCommandsThatExist) {
  const std::string rules = lint({"--rules"}).out;
  const std::regex command("'camcfg ([a-z]+)");
  std::set<std::string> names;
  for (std::sregex_iterator i(rules.begin(), rules.end(), command), end; i != end; ++i)
    names.insert((*i)[1]);
  EXPECT_GT(names.size(), 5U);
  for (const std::string& name : names) EXPECT_EQ(runCamcfg({name, "--help"}).status, 0) << name;
}

TEST_F(LintFilesTest, RulesTakeNoFile) {
  EXPECT_EQ(lint({"--rules", "clean.xml"}),
            (ToolRun{2, "", "camcfg: lint: --rules cannot be combined with FILE\n"}));
}

TEST_F(ToolTest, LintOfADeviceWithoutAnyFileIsUnusable) {
  EXPECT_EQ(
      run({"lint"}),
      (ToolRun{3, "", "camcfg: lint: there is no file in /cfg0, /cfg1 or /app/resource/defcfg\n"}));
}

TEST_F(ToolTest, LintOfADeviceWhoseMainCopiesAreAllMissingIsUnusable) {
  device.write("/app/resource/defcfg/preset_cfg.xml", kCleanPresets);
  EXPECT_EQ(run({"lint"}),
            (ToolRun{3,
                     "/cfg0/preset_cfg.xml:1: error: the main copy is missing; another copy exists "
                     "[main-missing]\n",
                     ""}));
}

TEST_F(ToolTest, SampleSetIsAnExampleWithoutFindings) {
  device.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
  device.copyFromHost(std::string(CAMCFG_RESOURCE_DIR) + "/defcfg", "/cfg0");
  device.copyFromHost(std::string(CAMCFG_RESOURCE_DIR) + "/defcfg", "/cfg1");
  EXPECT_EQ(run({"lint"}), (ToolRun{0, "", ""}));
}

TEST_F(ToolTest, LintChangesNothing) {
  for (const char* path : {"/cfg0/x.xml", "/cfg1/y.xml", "/app/resource/defcfg/z.xml"})
    device.write(path, "<broken");
  run({"lint"});
  EXPECT_EQ(device.list("/cfg0"), std::vector<std::string>{"x.xml"});
  EXPECT_EQ(device.list("/cfg1"), std::vector<std::string>{"y.xml"});
  EXPECT_EQ(device.read("/cfg0/x.xml"), "<broken");
}

}  // namespace
}  // namespace camcfg::tests
