#include <unistd.h>

#include "lint/rules.h"
#include "tool/json_in.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using tool::Json;
constexpr char kSteered[] =
    "<Texts>\n"
    "    <Menu/>\n"
    "    <Live Val=\"a\"/>\n"
    "    <Video/>\n"
    "    <Live Val=\"b\"/>\n"
    "</Texts>\n";

constexpr char kMenu[] = "x.xml:2: warning: Menu has no \"Val\" [text-missing]\n";
constexpr char kVideo[] = "x.xml:4: warning: Video has no \"Val\" [text-missing]\n";
constexpr char kTwice[] = "x.xml:5: error: Live: a lookup finds the one at line 3 [text-twice]\n";

/// How users of lint steer it, by a file with one error and two warnings.
class LintSteeringTest : public ToolTest {
 protected:
  LintSteeringTest() { host_.write("/x.xml", kSteered); }

  ToolRun lint(Words words) const {
    words.insert(words.begin(), "lint");
    return runCamcfg(words, [this] {
      if (chdir(host_.hostPath().c_str()) != 0) _exit(99);
    });
  }
  void write(const std::string& name, const std::string& contents) const {
    host_.write("/" + name, contents);
  }

 private:
  testkit::DeviceRoot host_{testkit::DeviceRoot::StayOut};
};

std::string withComment(const std::string& comment, const std::string& element = "    <Menu/>\n") {
  return with(kSteered, element, "    <!-- " + comment + " -->\n" + element);
}

TEST_F(LintSteeringTest, FileHasAnErrorAndTwoWarnings) {
  EXPECT_EQ(lint({"x.xml"}), (ToolRun{1, std::string(kMenu) + kVideo + kTwice, ""}));
}

TEST_F(LintSteeringTest, RuleIsSwitchedOff) {
  EXPECT_EQ(lint({"x.xml", "--rule", "text-missing=off"}), (ToolRun{1, kTwice, ""}));
  EXPECT_EQ(lint({"--rule", "text-missing=off", "x.xml", "--rule=text-twice=off"}),
            (ToolRun{0, "", ""}));
}

TEST_F(LintSteeringTest, RuleGetsAnotherSeverity) {
  const ToolRun warned = lint({"x.xml", "--rule", "text-twice=warning"});
  EXPECT_EQ(warned,
            (ToolRun{0, kMenu + std::string(kVideo) + with(kTwice, "error", "warning"), ""}));
  EXPECT_EQ(lint({"x.xml", "--rule", "text-twice=off", "--rule", "text-missing=error"}),
            (ToolRun{1, with(kMenu, "warning", "error") + with(kVideo, "warning", "error"), ""}));
  const Json answer = jsonIn(lint({"x.xml", "--rule", "text-twice=warning", "--json"}).out);
  EXPECT_EQ(answer["errors"], 0);
  EXPECT_EQ(answer["warnings"], 3);
}

TEST_F(LintSteeringTest, WordsThatSteerNothingAreRefused) {
  EXPECT_EQ(
      lint({"x.xml", "--rule", "text-mising=off"}),
      (ToolRun{2, "",
               "camcfg: lint: there is no rule 'text-mising'; did you mean 'text-missing'?\n"}));
  for (const char* word : {"text-missing", "text-missing=", "text-missing=of"})
    EXPECT_EQ(lint({"x.xml", "--rule", word}),
              (ToolRun{2, "",
                       "camcfg: lint: '" + std::string(word) +
                           "' is not RULE=off, RULE=warning or RULE=error\n"}));
  EXPECT_EQ(lint({"x.xml", "--format", "yaml"}).status, 2);
}

TEST_F(LintSteeringTest, StrictMakesWarningsCount) {
  EXPECT_EQ(lint({"x.xml", "--rule", "text-twice=off"}).status, 0);
  EXPECT_EQ(lint({"x.xml", "--rule", "text-twice=off", "--strict"}).status, 1);
  write("clean.xml", "<Texts><Menu Val=\"a\"/></Texts>");
  EXPECT_EQ(lint({"clean.xml", "--strict"}), (ToolRun{0, "", ""}));
}

TEST_F(LintSteeringTest, CommentAllowsARuleForTheNextElement) {
  write("x.xml", withComment("lint: allow text-missing: not yet translated"));
  EXPECT_EQ(lint({"x.xml", "--rule", "text-twice=off"}),
            (ToolRun{0, with(kVideo, ":4:", ":5:"), ""}));
}

TEST_F(LintSteeringTest, CommentAllowsWhatIsInTheElement) {
  write("x.xml", "<!-- lint: allow text-missing: not yet translated -->\n" + std::string(kSteered));
  EXPECT_EQ(lint({"x.xml", "--rule", "text-twice=off"}), (ToolRun{0, "", ""}));
}

TEST_F(LintSteeringTest, SeveralCommentsAllowSeveralRules) {
  write("x.xml",
        "<!-- lint: allow text-missing: not yet translated -->\n"
        "<!-- lint: allow text-twice: as delivered -->\n" +
            std::string(kSteered));
  EXPECT_EQ(lint({"x.xml", "--strict"}), (ToolRun{0, "", ""}));
}

TEST_F(LintSteeringTest, CommentWithoutAReasonAllowsNothing) {
  for (const char* comment :
       {"lint: allow text-missing", "lint: allow text-missing:", "lint: allow text-missing:  "}) {
    write("x.xml", withComment(comment));
    const ToolRun result = lint({"x.xml"});
    EXPECT_THAT(result.out, HasSubstr("x.xml:3: warning: Menu has no"));
    EXPECT_THAT(result.out,
                HasSubstr("x.xml:2: error: this comment allows nothing: it does not say "
                          "why text-missing is allowed [allow-form]"));
  }
}

TEST_F(LintSteeringTest, CommentThatIsNotNeededIsReported) {
  write("x.xml", withComment("lint: allow text-missing: not yet", "    <Live Val=\"a\"/>\n"));
  EXPECT_THAT(lint({"x.xml"}).out,
              HasSubstr("x.xml:3: warning: this comment allows nothing: text-missing finds nothing "
                        "in the next element [allow-unused]"));
}

TEST_F(LintSteeringTest, CommentsCountOnADeviceToo) {
  const std::string presets =
      "<PresetCfg>\n<!-- lint: allow carried-id: old -->\n<preset/>\n</PresetCfg>";
  device.write("/cfg0/preset_cfg.xml", presets);
  device.write("/cfg1/preset_cfg.xml", presets);
  EXPECT_THAT(run({"lint"}).out, Not(HasSubstr("carried-id")));
  EXPECT_THAT(run({"lint"}).out, HasSubstr("preset-position-missing"));
}

TEST_F(LintSteeringTest, BaselineLeavesOutWhatIsKnown) {
  write("known.json", lint({"x.xml", "--json"}).out);
  EXPECT_EQ(lint({"x.xml", "--baseline", "known.json"}),
            (ToolRun{0, "", "camcfg: lint: note: 3 findings of the baseline are left out\n"}));
  const Json answer = jsonIn(lint({"x.xml", "--baseline", "known.json", "--json"}).out);
  EXPECT_EQ(answer["known"], 3);
  EXPECT_EQ(answer["gone"], 0);
  EXPECT_TRUE(answer["findings"].empty());
}

TEST_F(LintSteeringTest, BaselineFollowsFindingsToOtherLinesAndCountsThem) {
  write("known.json", lint({"x.xml", "--json"}).out);
  write("x.xml", "\n\n" + with(kSteered, "    <Video/>\n", "    <Menu/>\n"));
  const ToolRun result = lint({"x.xml", "--baseline", "known.json"});
  EXPECT_EQ(result.out,
            "x.xml:6: error: Menu: a lookup finds the one at line 4 [text-twice]\n"
            "x.xml:6: warning: Menu has no \"Val\" [text-missing]\n");
  EXPECT_EQ(result.err,
            "camcfg: lint: note: 2 findings of the baseline are left out\n"
            "camcfg: lint: note: 1 finding of the baseline is there no longer\n");
}

TEST_F(LintSteeringTest, BaselineThatIsNoneIsRefused) {
  for (const char* text : {"", "[]", "{\"findings\": 1}", "{\"findings\": [{\"file\": \"x\"}]}"}) {
    write("known.json", text);
    const ToolRun result = lint({"x.xml", "--baseline", "known.json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("camcfg: lint: the baseline is no answer of 'lint --json'"));
  }
  EXPECT_EQ(lint({"x.xml", "--baseline", "none.json"}).status, 1);
}

TEST_F(LintSteeringTest, FormJsonIsTheAnswerInJson) {
  EXPECT_EQ(lint({"x.xml", "--format", "json"}), lint({"x.xml", "--json"}));
  EXPECT_EQ(lint({"x.xml", "--format", "text"}), lint({"x.xml"}));
}

TEST_F(LintSteeringTest, FormGithubIsACommandForEachFinding) {
  EXPECT_EQ(lint({"x.xml", "--format", "github"}),
            (ToolRun{1,
                     "::warning file=x.xml,line=2,title=text-missing::Menu has no \"Val\"\n"
                     "::warning file=x.xml,line=4,title=text-missing::Video has no \"Val\"\n"
                     "::error file=x.xml,line=5,title=text-twice::Live: a lookup finds the one at "
                     "line 3\n",
                     ""}));
  write("a,b:100%.xml", kSteered);
  EXPECT_THAT(lint({"a,b:100%.xml", "--format", "github"}).out,
              HasSubstr("::warning file=a%2Cb%3A100%25.xml,line=2,"));
}

TEST_F(LintSteeringTest, FormGitlabHasAFingerprintThatStaysWhereLinesMove) {
  const Json report = jsonIn(lint({"x.xml", "--format", "gitlab"}).out);
  ASSERT_EQ(report.size(), 3U);
  EXPECT_EQ(report[2]["check_name"], "text-twice");
  EXPECT_EQ(report[2]["severity"], "major");
  EXPECT_EQ(report[0]["severity"], "minor");
  EXPECT_EQ(report[2]["location"]["path"], "x.xml");
  EXPECT_EQ(report[2]["location"]["lines"]["begin"], 5);
  write("x.xml", "\n" + std::string(kSteered));
  const Json moved = jsonIn(lint({"x.xml", "--format", "gitlab"}).out);
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(moved[i]["fingerprint"], report[i]["fingerprint"]);
  EXPECT_NE(report[0]["fingerprint"], report[1]["fingerprint"]);
}

TEST_F(LintSteeringTest, FormSarifHasTheRulesAndTheFindingsWithTheirPlaces) {
  write("a b.xml", kSteered);
  const Json log = jsonIn(lint({"a b.xml", "--format", "sarif"}).out);
  EXPECT_EQ(log["version"], "2.1.0");
  const Json& run = log["runs"][0];
  EXPECT_EQ(run["tool"]["driver"]["rules"].size(), 2U);
  ASSERT_EQ(run["results"].size(), 3U);
  const Json& result = run["results"][2];
  EXPECT_EQ(result["ruleId"], "text-twice");
  EXPECT_EQ(run["tool"]["driver"]["rules"].at(result["ruleIndex"].get<std::size_t>())["id"],
            "text-twice");
  EXPECT_EQ(result["level"], "error");
  const Json& place = result["locations"][0]["physicalLocation"];
  EXPECT_EQ(place["artifactLocation"]["uri"], "a%20b.xml");
  EXPECT_EQ(place["region"]["startLine"], 5);
}

// What a log says of a rule that finds something in a file.
Json ruleIn(const std::string& log, const tool::lint::Rule& rule) {
  const Json value = jsonIn(log);
  for (const Json& each : value["runs"][0]["tool"]["driver"]["rules"])
    if (each["id"] == rule.id) return each;
  return nullptr;
}

TEST_F(LintSteeringTest, FormSarifExplainsRulesInTextAndInMarkdown) {
  const tool::lint::Rule& rule = tool::lint::kTextTwice;
  const Json explained = ruleIn(lint({"x.xml", "--format", "sarif"}).out, rule);
  EXPECT_EQ(explained["fullDescription"]["text"], rule.explanation);
  EXPECT_EQ(explained["help"]["text"],
            std::string(rule.why) + "\nFix: " + rule.fix + "\nExample: " + rule.example);
  EXPECT_EQ(explained["help"]["markdown"], std::string(rule.why) + "\n\n**Fix:** " + rule.fix +
                                               "\n\n**Example:** `" + rule.example + "`");
}

TEST_F(LintSteeringTest, FormSarifHasNoElementInMarkdownThatIsTakenForHtml) {
  write("x.xml", "<System/><NetWork><Lan0><IpAddr/><Ipaddr/></Lan0></NetWork>");
  const tool::lint::Rule& rule = tool::lint::kCardFieldUnread;
  const Json help = ruleIn(lint({"x.xml", "--format", "sarif"}).out, rule)["help"];
  EXPECT_THAT(help["text"].get<std::string>(), HasSubstr("with <Ipaddr>"));
  EXPECT_THAT(help["markdown"].get<std::string>(), HasSubstr("with &lt;Ipaddr>"));
}

}  // namespace
}  // namespace camcfg::tests
