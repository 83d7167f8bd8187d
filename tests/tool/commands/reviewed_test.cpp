#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using tool::Json;
/// What lint says of a change before it is in force.
class ReviewedTest : public SampleTest {
 protected:
  ToolRun import(const std::string& document, Words options = {}) const {
    device.write("/document.json", document);
    options.insert(options.begin(), {"import", device.hostPath() + "/document.json"});
    return run(options);
  }

  std::string files() const {
    std::string all;
    for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
      for (const char* directory : {"/cfg0/", "/cfg1/"})
        all += device.read(std::string(directory) + name);
    return all;
  }

  void replace(const char* path, const std::string& part, const std::string& other) const {
    device.write(path, with(device.read(path), part, other));
  }
};

TEST_F(ReviewedTest, ErrorsAreRefusedWithTheirRuleAndNothingChanges) {
  const std::string before = files();
  const struct {
    Words command;
    const char* rule;
  } kCases[] = {
      {{"preset", "add", "--description", "Home"}, "description-twice"},
      {{"preset", "set", "1", "--description", "Home"}, "description-twice"},
      {{"preset", "rename", "2", "St"}, "description-shadowed"},
      {{"set", "presets[1].description=Home"}, "description-twice"},
  };
  for (const auto& [command, rule] : kCases)
    for (const bool rehearse : {false, true}) {
      Words words = command;
      if (rehearse) words.emplace_back("--dry-run");
      const ToolRun result = run(words);
      EXPECT_EQ(result.status, 1) << command[1];
      EXPECT_THAT(result.err,
                  HasSubstr("this would add what 'lint' calls an error, which '--force' "
                            "allows: error: /cfg0/"));
      EXPECT_THAT(result.err, HasSubstr(std::string("[") + rule + "]\n"));
      EXPECT_EQ(result.out, "");
      EXPECT_EQ(files(), before);
    }
}

TEST_F(ReviewedTest, ForceTakesThemAndSaysSo) {
  const ToolRun result = run({"preset", "set", "1", "--description", "Home", "--force"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("camcfg: preset set: error: /cfg0/preset_cfg.xml:"));
  EXPECT_EQ(run({"preset", "get", "1", "--json"}).status, 0);
  EXPECT_THAT(run({"lint"}).out, HasSubstr("[description-twice]"));
}

TEST_F(ReviewedTest, WarningsAreReported) {
  const ToolRun result = run({"preset", "add", "--json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("preset add: warning: /cfg0/preset_cfg.xml:"));
  const Json findings = jsonIn(result.out)["findings"];
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings.at(0).at("rule"), "description-missing");
  EXPECT_EQ(findings.at(0).at("severity"), "warning");
  const ToolRun none = run({"set", "System/Rtsp=8554", "--json"});
  EXPECT_EQ(none.err, "");
  EXPECT_FALSE(jsonIn(none.out).contains("findings"));
}

TEST_F(ReviewedTest, SourcesThatCachesCarryAreMissed) {
  const std::string before = files();
  const ToolRun result = import(R"({"version": 1, "stream": {"sources": []}})");
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("[enabled-source-missing]"));
  EXPECT_EQ(files(), before);
}

TEST_F(ReviewedTest, FaultsThatWereThereDoNotStopAnUnrelatedChange) {
  replace("/cfg0/preset_cfg.xml", "Stage right", "Stage left");
  replace("/cfg0/mpp_cfg.xml", "ingest.example.com", "");
  ASSERT_EQ(run({"lint"}).status, 1);
  for (const Words& command :
       {Words{"set", "System/Rtsp=8554"}, Words{"preset", "set", "0", "--pan", "7"},
        Words{"preset", "add", "--description", "Door"},
        Words{"live", "rtsp", "add", "ch9", "channels=0:video"}}) {
    const ToolRun result = run(command);
    EXPECT_EQ(result.status, 0) << result.err;
  }
}

// The finding says another name then, but is no other one.
TEST_F(ReviewedTest, FaultsThatWereThereMayBeMovedOrRenamed) {
  replace("/cfg0/preset_cfg.xml", "Stage right", "Stage left");
  ASSERT_EQ(run({"lint"}).status, 1);
  EXPECT_EQ(run({"preset", "delete", "0"}).status, 0);
  EXPECT_EQ(run({"preset", "set", "2", "--pan", "7"}).status, 0);
  EXPECT_EQ(run({"preset", "rename", "5", "Stage left"}).status, 1);
}

TEST_F(ReviewedTest, ResetsAndUndoBringBackWhatWasThere) {
  replace("/app/resource/defcfg/preset_cfg.xml", "Stage right", "Stage left");
  EXPECT_EQ(run({"reset", "--section", "presets"}).status, 0);
  EXPECT_EQ(run({"preset", "rename", "2", "Stage right"}).status, 0);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_THAT(run({"lint"}).out, HasSubstr("[description-twice]"));
}

TEST_F(ReviewedTest, ManyFindingsAreCounted) {
  std::string document = R"({"version": 1, "presets": [)";
  for (int id = 0; id < 100; ++id)
    document += (id == 0 ? "" : ",") + std::string(R"({"id":)") + std::to_string(id) +
                R"(,"description":"Same","pan":0,"tilt":0,"zoom":0,"focus":0,"focusMode":0})";
  const ToolRun refused = import(document + "]}");
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.err, HasSubstr("; and 79 more"));
  const ToolRun forced = import(document + "]}", {"--force"});
  EXPECT_EQ(forced.status, 0);
  EXPECT_THAT(forced.err, HasSubstr("camcfg: import: and 79 more\n"));
}

}  // namespace
}  // namespace camcfg::tests
