#include "base/json.h"
#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using tool::Json;

/// The sample device, of which a section does not load.
class UnreadSectionsTest : public SampleTest {
 protected:
  UnreadSectionsTest() {
    sound_ = run({"export"}).out;
    device.write("/sound.json", sound_);
  }

  void refuseMode() const { change("mpp_cfg.xml", "Mode=\"Listener\"", "Mode=\"Rendezvous\""); }

  ToolRun import(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> words = {"import", device.hostPath() + "/sound.json"};
    words.insert(words.end(), options.begin(), options.end());
    return run(words);
  }

  void expectSound() const {
    EXPECT_EQ(run({"export"}).out, sound_);
    EXPECT_EQ(run({"status"}).status, 0);
    EXPECT_EQ(run({"lint"}).status, 0);
  }

  void expectThatImportAndResetReplace(const std::string& section) const {
    const std::string media = device.read(kMpp);
    const std::string presets = device.read(kPreset);
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"reset", "--all", "--yes"},
          {"reset", "--section", section},
          {"import", device.hostPath() + "/sound.json"}}) {
      device.write(kMpp, media);
      device.write("/cfg1/mpp_cfg.xml", media);
      device.write(kPreset, presets);
      device.write("/cfg1/preset_cfg.xml", presets);
      const ToolRun done = run(words);
      EXPECT_EQ(done.status, 0) << done.err;
      expectSound();
    }
  }

  std::string sound_;
};

TEST_F(UnreadSectionsTest, StatusIsDegradedAndNamesTheSection) {
  refuseMode();
  const ToolRun status = run({"status"});
  EXPECT_EQ(status.status, 4);
  EXPECT_THAT(status.out, HasSubstr("health: degraded\n"));
  EXPECT_THAT(
      status.err,
      AllOf(StartsWith("camcfg: status: live.srt cannot be read: " + std::string(kMpp) + ":"),
            HasSubstr("Rendezvous"), EndsWith("'camcfg help recovery' says what to do\n")));
  const Json answer = jsonIn(run({"status", "--json"}).out);
  EXPECT_EQ(answer.at("health").text(), "degraded");
  ASSERT_EQ(answer.at("findings").size(), 1U);
  EXPECT_THAT(answer.at("findings").front().text(), StartsWith("live.srt cannot be read"));
}

TEST_F(UnreadSectionsTest, BootEndsWithTheStatusOfStatus) {
  refuseMode();
  const ToolRun boot = run({"boot", "--json"});
  EXPECT_EQ(boot.status, 4);
  EXPECT_EQ(jsonIn(boot.out).at("health").text(), "degraded");
}

TEST_F(UnreadSectionsTest, ImportAndResetReplaceASectionWithAFaultyEntry) {
  refuseMode();
  expectThatImportAndResetReplace("live.srt");
}

TEST_F(UnreadSectionsTest, ImportAndResetReplaceASourceWithoutAnId) {
  change("mpp_cfg.xml", "<VENC Id=\"0\"", "<VENC");
  expectThatImportAndResetReplace("stream.sources");
}

TEST_F(UnreadSectionsTest, ImportAndResetMakeAMissingSection) {
  const std::string text = device.read(kMpp);
  const std::size_t begin = text.find("<SRT>");
  const std::size_t end = text.find("</SRT>") + 6;
  change("mpp_cfg.xml", text.substr(begin, end - begin), "");
  expectThatImportAndResetReplace("live.srt");
}

TEST_F(UnreadSectionsTest, ImportAndResetMakeAMissingGroupOfPresets) {
  device.write(kPreset, "<Presets/>\n");
  device.write("/cfg1/preset_cfg.xml", "<Presets/>\n");
  EXPECT_EQ(run({"status"}).status, 4);
  expectThatImportAndResetReplace("presets");
}

TEST_F(UnreadSectionsTest, ImportAndResetReplacePresetsOfTheSameId) {
  change("preset_cfg.xml", "preset Id=\"1\"", "preset Id=\"0\"");
  expectThatImportAndResetReplace("presets");
}

TEST_F(UnreadSectionsTest, ReportSaysWhatWasThere) {
  change("mpp_cfg.xml", "Mode=\"Listener\"",
         "Mode=\"Rendezvous\" AesMode=\"1\" Password=\"geheimnis\"");
  const ToolRun rehearsed = import({"--dry-run"});
  EXPECT_EQ(rehearsed.status, 0);
  EXPECT_THAT(rehearsed.out,
              AllOf(HasSubstr("live.srt "), HasSubstr("<Instance Id=\"0\" Mode=\"Rendezvous\""),
                    HasSubstr("live.srt[0]"), HasSubstr("nothing was written\n")));
  EXPECT_THAT(rehearsed.err, AllOf(StartsWith("camcfg: import: note: live.srt is replaced, since "),
                                   HasSubstr("Rendezvous")));
  const ToolRun done = import({"--json"});
  EXPECT_EQ(done.status, 0);
  const Json changes = jsonIn(done.out).at("changes");
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_EQ(changes.front().at("place").text(), "live.srt");
  EXPECT_THAT(changes.front().at("before").text(), StartsWith("<Instance Id=\"0\""));
  EXPECT_TRUE(changes.front().at("after").is_null());
  EXPECT_THAT(rehearsed.out + rehearsed.err + done.out + done.err, Not(HasSubstr("geheimnis")));
  EXPECT_THAT(import({"--dry-run", "--show-secrets"}).out, Not(HasSubstr("geheimnis")));
}

TEST_F(UnreadSectionsTest, ReplacementCanBeUndone) {
  refuseMode();
  const std::string before = device.read(kMpp);
  ASSERT_EQ(import().status, 0);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(device.read(kMpp), before);
}

TEST_F(UnreadSectionsTest, ImportOfOtherSectionsLeavesItAsItIs) {
  refuseMode();
  const std::string before = device.read(kMpp);
  device.write("/sound.json", "{\"version\": 1, \"parameters\": {\"System\": {\"Rtsp\": 8554}}}");
  EXPECT_EQ(import().status, 0);
  EXPECT_EQ(device.read(kMpp), before);
}

TEST_F(UnreadSectionsTest, PasswordsThatCanBeReadAreKept) {
  device.write("/sound.json", run({"export", "--no-secrets"}).out);
  refuseMode();
  ASSERT_EQ(import().status, 0);
  EXPECT_EQ(run({"export"}).out, sound_);
}

TEST_F(UnreadSectionsTest, PartialExportLeavesOutWhatCannotBeRead) {
  refuseMode();
  EXPECT_EQ(run({"export"}).status, 3);
  const ToolRun partial = run({"export", "--partial"});
  EXPECT_EQ(partial.status, 0);
  EXPECT_THAT(partial.err,
              HasSubstr("camcfg: export: left out of live.srt: " + std::string(kMpp) + ":"));
  const Json sound = jsonIn(sound_);
  const Json document = jsonIn(partial.out);
  for (const std::string& name : sound.names()) {
    if (name == "live") continue;
    EXPECT_EQ(document.at(name), sound.at(name)) << name;
  }
  ASSERT_EQ(document.at("live").at("srt").size(), 1U);
  EXPECT_EQ(document.at("live").at("srt").front(), sound.at("live").at("srt").back());
}

TEST_F(UnreadSectionsTest, PartialExportLeavesOutFilesThatCannotBeLoaded) {
  device.write(kMpp, "<");
  device.write("/cfg1/mpp_cfg.xml", "<");
  const ToolRun partial = run({"export", "--partial"});
  EXPECT_EQ(partial.status, 0);
  EXPECT_THAT(partial.err, HasSubstr("left out: live.srt: " + std::string(kMpp)));
  const Json document = jsonIn(partial.out);
  EXPECT_EQ(document.at("presets"), jsonIn(sound_).at("presets"));
  EXPECT_FALSE(document.contains("live"));
}

TEST_F(UnreadSectionsTest, ListingsShowTheRestWithTheFaultsOfTheOther) {
  refuseMode();
  change("mpp_cfg.xml", "<VENC Id=\"0\"", "<VENC");
  const std::string sessions = run({"live", "srt"}).out;
  EXPECT_THAT(sessions, AllOf(HasSubstr("ingest.example.com"), Not(HasSubstr("9000"))));
  EXPECT_THAT(run({"stream", "sources"}).out,
              AllOf(HasSubstr("ch1-sub"), Not(HasSubstr("ch1-main"))));
  EXPECT_THAT(run({"graph"}).out, AllOf(HasSubstr("ch1-sub"), HasSubstr("caller 1: program")));
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"live", "srt"}, {"stream", "sources"}, {"graph"}}) {
    const ToolRun listed = run(words);
    EXPECT_EQ(listed.status, 4) << words.front();
    EXPECT_THAT(listed.err, HasSubstr(": left out: /cfg0/")) << words.front();
  }
  EXPECT_EQ(run({"live", "rtsp"}).status, 0);
  EXPECT_EQ(run({"list"}).status, 0);
  EXPECT_EQ(run({"stream", "caches"}).status, 0);
}

TEST_F(UnreadSectionsTest, FileThatDoesNotLoadIsStillUnusable) {
  device.write(kMpp, "<");
  device.write("/cfg1/mpp_cfg.xml", "<");
  for (const std::vector<std::string>& words : {std::vector<std::string>{"live", "srt"},
                                                {"graph"},
                                                {"export"},
                                                {"reset", "--section", "live.srt"}})
    EXPECT_EQ(run(words).status, 3) << words.front();
}

}  // namespace
}  // namespace camcfg::tests
