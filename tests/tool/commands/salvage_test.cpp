#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <map>

#include "base/caller.h"
#include "device/journal.h"
#include "tool/json_in.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using tool::Json;

constexpr char kPresetsBackup[] = "/cfg1/preset_cfg.xml";

/// A text up to a part of it.
std::string upTo(const std::string& text, const std::string& part) {
  EXPECT_NE(text.find(part), std::string::npos) << part;
  return text.substr(0, text.find(part));
}

/// A device whose copies are those of the factory.
class SalvageTest : public ParametersTest {
 protected:
  SalvageTest() {
    for (const std::string directory : {"/app/resource/defcfg/", "/cfg0/", "/cfg1/"}) {
      device.write(directory + kFileNames[0], kParameters);
      device.write(directory + kFileNames[1], kMedia);
      device.write(directory + kFileNames[2],
                   "<PresetCfg>\n    <preset Id=\"1\" Description=\"Door\" PanPos=\"5\"/>\n"
                   "    <preset Id=\"2\" Description=\"Gate\" PanPos=\"6\"/>\n</PresetCfg>\n");
    }
  }

  Json salvaged(std::vector<std::string> words = {}) const {
    words.insert(words.begin(), {"salvage", "--json"});
    const ToolRun result = run(words);
    EXPECT_EQ(result.status, 0) << result.err;
    return jsonIn(result.out);
  }

  /// What the answer says of a place: "SOURCE VALUE", with what the backup has if that is disputed.
  static std::string said(const Json& answer, const std::string& place) {
    for (const Json& setting : answer["settings"])
      if (setting["place"] == place)
        return setting["source"].text() + " " +
               (setting["value"].is_string() ? setting["value"].text() : setting["value"].dump()) +
               (setting["backup"].is_null() ? "" : ", backup " + setting["backup"].dump());
    return "";
  }

  std::map<std::string, std::string> contents() const {
    std::map<std::string, std::string> contents;
    for (const std::string directory : {"/cfg0/", "/cfg1/"})
      for (const char* name : kFileNames)
        contents[directory + name] = device.read(directory + name);
    return contents;
  }
};

/// Both copies of the parameters are cut off, at different places, and have different settings.
class BothDamagedTest : public SalvageTest {
 protected:
  BothDamagedTest() {
    device.write(kBusiness, upTo(main_, "    <Rtsp "));
    device.write(kBusinessBackup, upTo(backup_, "    <RtspOverHttp"));
  }

  const std::string main_ = with(with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\""),
                                 "<WebHttps Cur=\"443\"", "<WebHttps Cur=\"444\"");
  const std::string backup_ = with(with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"82\""),
                                   "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
};

TEST_F(SalvageTest, ThereIsNothingToSalvageWhereEveryFileLoads) {
  EXPECT_EQ(run({"salvage"}), (ToolRun{0, "there is nothing to salvage\n", ""}));
  const Json answer = salvaged({"--apply"});
  EXPECT_EQ(answer["files"], Json::array());
  EXPECT_EQ(answer["applied"], Json(false));
}

TEST_F(BothDamagedTest, EverySettingHasItsSource) {
  const Json answer = salvaged();
  EXPECT_EQ(said(answer, "System/WebHttp"), "disputed 81, backup \"82\"");
  EXPECT_EQ(said(answer, "System/WebHttps"), "disputed 444, backup \"443\"");
  EXPECT_EQ(said(answer, "System/DeviceAttr/DeviceName"), "main North Gate");
  EXPECT_EQ(said(answer, "System/Rtsp"), "backup 8554");
  EXPECT_EQ(said(answer, "System/RtspOverHttp"), "factory 8080");
  EXPECT_EQ(said(answer, "NetWork/Hostname"), "factory gate");
  EXPECT_EQ(said(answer, "NetWork/Eth0/IpAddr"), "factory 192.0.2.7");
  EXPECT_EQ(answer["settings"].size(), 11U);
  const Json files = jsonIn(R"([{"name": "business_param.xml", "main": "damaged",
      "backup": "damaged",
      "settings": {"main": 3, "backup": 1, "disputed": 2, "factory": 5}}])");
  EXPECT_EQ(answer["files"], files) << answer["files"].dump(1);
}

TEST_F(BothDamagedTest, TheTableShowsSettingsAndSources) {
  const ToolRun result = run({"salvage"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(
      result.out,
      AllOf(HasSubstr(
                "FILE                SETTING                        SOURCE    BACKUP HAS  VALUE\n"),
            HasSubstr(
                "business_param.xml  System/WebHttp                 disputed  82          81\n"),
            HasSubstr(
                "business_param.xml  System/Rtsp                    backup    -           8554\n"),
            HasSubstr("nothing was written; '--apply' writes it\n")));
}

TEST_F(BothDamagedTest, WithoutApplyNothingIsWritten) {
  const auto before = contents();
  EXPECT_EQ(run({"salvage"}).status, 0);
  EXPECT_EQ(contents(), before);
  EXPECT_FALSE(device.exists("/cfg1/.camcfg"));
}

TEST_F(BothDamagedTest, ApplyIsAChangeOfBothCopies) {
  const Json answer = salvaged({"--apply"});
  EXPECT_EQ(answer["applied"], Json(true));
  EXPECT_EQ(device.read(kBusiness), with(main_, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\""));
  EXPECT_EQ(device.read(kBusinessBackup), device.read(kBusiness));
  EXPECT_EQ(run({"status"}).status, 0);
  EXPECT_THAT(run({"history"}).out, HasSubstr("salvage --json --apply"));
  EXPECT_THAT(run({"history", "1"}).out, HasSubstr("parameters.System.WebHttp   80      81"));
}

TEST_F(BothDamagedTest, UndoBringsWhatTheStartWouldHaveMadeOfTheFile) {
  ASSERT_EQ(run({"salvage", "--apply"}).status, 0);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(BothDamagedTest, DamagedBytesAreKept) {
  const auto before = contents();
  const Json answer = salvaged({"--apply"});
  ASSERT_EQ(answer["kept"].size(), 2U);
  for (const Json& kept : answer["kept"])
    EXPECT_EQ(device.read(kept["as"].text()), before.at(kept["copy"].text()));
  EXPECT_EQ(answer["kept"][0]["as"], Json("/cfg1/.camcfg/damaged/cfg0-business_param.xml.1"));
}

TEST_F(BothDamagedTest, OfEachCopyTheLastFewAreKept) {
  const auto name = [](int i) {
    return "/cfg1/.camcfg/damaged/cfg0-business_param.xml." + std::to_string(i);
  };
  for (int i = 1; i <= 6; ++i) {
    for (int twice = 0; twice < 2; ++twice) {
      writeBoth("<System" + std::to_string(i));
      ASSERT_EQ(run({"salvage", "--apply"}).status, 0);
    }
    EXPECT_EQ(device.read(name(i)), "<System" + std::to_string(i));
  }
  EXPECT_FALSE(device.exists(name(2)));
  EXPECT_TRUE(device.exists(name(3)));
  EXPECT_FALSE(device.exists(name(7)));
}

TEST_F(BothDamagedTest, AFileIsLookedAtByItself) {
  const Json main = salvaged({device.hostPath() + "/cfg0/business_param.xml"});
  EXPECT_EQ(said(main, "System/WebHttp"), "main 81");
  EXPECT_EQ(said(main, "System/Rtsp"), "factory 554");
  const Json backup = salvaged({"/cfg1/business_param.xml"});
  EXPECT_EQ(said(backup, "System/WebHttp"), "backup 82");
  EXPECT_EQ(said(backup, "System/Rtsp"), "backup 8554");
  EXPECT_EQ(said(backup, "System/RtspOverHttp"), "factory 8080");
}

TEST_F(BothDamagedTest, AFileMayBeApplied) {
  ASSERT_EQ(run({"salvage", "--apply", "/cfg1/business_param.xml"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), backup_);
}

TEST_F(BothDamagedTest, KeptBytesMayBeSalvagedAgain) {
  ASSERT_EQ(run({"salvage", "--apply"}).status, 0);
  writeBoth(kParameters);
  const std::string kept = device.hostPath() + "/cfg1/.camcfg/damaged/cfg1-business_param.xml.1";
  EXPECT_EQ(said(salvaged({kept}), "System/WebHttp"), "backup 82");
  ASSERT_EQ(run({"salvage", "--apply", kept}).status, 0);
  EXPECT_EQ(run({"get", "System", "WebHttp"}).out, "82\n");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(SalvageTest, WhatAFileIsIsKnownByItsNameOrByWhatIsInIt) {
  device.write("/rescued", with(upTo(kMedia, "</LiveMediaService>"), "9001", "9002"));
  EXPECT_THAT(said(salvaged({device.hostPath() + "/rescued"}), "live.srt[1]"),
              AllOf(HasSubstr("main "), HasSubstr("\"port\":9002")));
  device.write("/other", "<Own><Rtsp/>");
  EXPECT_EQ(run({"salvage", device.hostPath() + "/other"}),
            (ToolRun{1, "",
                     "camcfg: salvage: " + device.hostPath() +
                         "/other: nothing in it says what it configures\n"}));
}

TEST_F(SalvageTest, FilesThatAreNoUseAreRefused) {
  const std::string missing = device.hostPath() + "/missing.xml";
  EXPECT_EQ(run({"salvage", missing}),
            (ToolRun{1, "", "camcfg: salvage: " + missing + ": No such file or directory\n"}));
  EXPECT_EQ(run({"salvage", "/cfg0/mpp_cfg.xml", device.hostPath() + "/cfg0/mpp_cfg.xml"}),
            (ToolRun{2, "",
                     "camcfg: salvage: " + device.hostPath() +
                         "/cfg0/mpp_cfg.xml is a second main copy of /cfg0/mpp_cfg.xml\n"}));
}

TEST_F(SalvageTest, WithoutAFactoryCopyNoPlaceIsKnown) {
  writeBoth("<System");
  device.remove(kBusinessDefault);
  const ToolRun result = run({"salvage"});
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.err, HasSubstr("/cfg0/business_param.xml cannot be salvaged: "
                                    "/app/resource/defcfg/business_param.xml is missing"));
}

TEST_F(SalvageTest, ValuesMustBePermitted) {
  device.write(kBusiness, upTo(with(with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"0\""),
                                    "\"Auto\" Def", "\"Auto,\" Def"),
                               "</NetWork>"));
  device.write(kBusinessBackup,
               upTo(with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"88\""), "<NetWork"));
  const Json answer = salvaged();
  EXPECT_EQ(said(answer, "System/WebHttp"), "backup 88");
  EXPECT_EQ(said(answer, "Image/Mode"), "backup Auto");
  const Json refused = jsonIn(R"({"file": "business_param.xml", "copy": "main", "line": 4,
      "place": "System/WebHttp", "reason": "0 is outside 1..65535; the nearest permitted is 1"})");
  ASSERT_EQ(answer["notTaken"].size(), 2U) << answer["notTaken"].dump(1);
  EXPECT_EQ(answer["notTaken"][0], refused) << answer["notTaken"].dump(1);
}

TEST_F(SalvageTest, EntriesMustBePermitted) {
  device.write(kMpp, upTo(with(kMedia, "Port=\"9000\"", "Port=\"90000\""), "</LiveMediaService>"));
  device.write(kMppBackup, "<Stream");
  const Json answer = salvaged();
  EXPECT_THAT(said(answer, "live.srt[0]"), HasSubstr("factory "));
  EXPECT_THAT(said(answer, "live.srt[1]"), HasSubstr("main "));
  ASSERT_EQ(answer["notTaken"].size(), 1U);
  EXPECT_EQ(answer["notTaken"][0]["place"], Json("live.srt"));
  EXPECT_EQ(answer["notTaken"][0]["reason"],
            Json("port: 90000 is outside 1..65535; the nearest permitted is 65535"));
}

TEST_F(SalvageTest, WhatIsNoPlaceOfTheFactorysIsReportedAndLeftOut) {
  device.write(kBusiness, "<Own><Rtsp Cur=\"1\"/></Own>" + upTo(kParameters, "<Image>") + "<Im");
  device.write(kBusinessBackup, "<System");
  const Json answer = salvaged();
  EXPECT_EQ(said(answer, "System/Rtsp"), "main 554");
  ASSERT_EQ(answer["notTaken"].size(), 1U);
  EXPECT_EQ(answer["notTaken"][0]["place"], Json("Own"));
  EXPECT_EQ(answer["notTaken"][0]["reason"], Json("its place is not known"));
}

TEST_F(SalvageTest, PresetsAreKnownByTheirIds) {
  device.write(kPreset, "<PresetCfg><preset Id=\"2\" PanPos=\"7\"/><preset Id=\"9\"/><pre");
  device.write(kPresetsBackup, "<PresetCfg><preset Id=\"3\" PanPos=\"8\"/><pr");
  const Json answer = salvaged();
  const auto source = [&](const char* place) {
    const std::string text = said(answer, place);
    return text.substr(0, text.find(' '));
  };
  EXPECT_EQ(source("presets[1]"), "factory");
  EXPECT_EQ(source("presets[2]"), "main");
  EXPECT_EQ(source("presets[9]"), "main");
  EXPECT_EQ(source("presets[3]"), "backup");
  ASSERT_EQ(run({"salvage", "--apply"}).status, 0);
  EXPECT_EQ(device.read(kPreset),
            "<PresetCfg>\n    <preset Id=\"1\" Description=\"Door\" PanPos=\"5\"/>\n"
            "    <preset Id=\"3\" PanPos=\"8\"/>\n    <preset Id=\"2\" PanPos=\"7\"/>\n"
            "    <preset Id=\"9\"/>\n</PresetCfg>\n");
}

TEST_F(SalvageTest, WhatAWholeListDoesNotHaveStaysDeleted) {
  device.write(kPreset, "<PresetCfg><preset Id=\"2\" PanPos=\"7\"/></PresetCfg><");
  device.remove(kPresetsBackup);
  const Json answer = salvaged();
  EXPECT_EQ(answer["settings"].size(), 1U);
  EXPECT_EQ(answer["settings"][0]["source"], Json("main"));
}

TEST_F(SalvageTest, AHoleInAFileIsDamageEvenWhereTheLibraryLoadsTheFile) {
  const std::string hole = upTo(kParameters, "<Image>") + std::string(4, '\0') + "<Image>" +
                           with(kParameters, upTo(kParameters, "<Image>") + "<Image>", "");
  writeBoth(hole);
  ASSERT_EQ(run({"get", "System", "Rtsp"}).status, 0);
  EXPECT_EQ(said(salvaged(), "Image/Brightness"), "main 0");
  ASSERT_EQ(run({"salvage", "--apply"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(SalvageTest, PasswordsAreNotShown) {
  device.write(kMpp, upTo(kMedia, "</LiveMediaService>"));
  EXPECT_THAT(run({"salvage"}).out, AllOf(HasSubstr("********"), Not(HasSubstr("secret"))));
  EXPECT_THAT(run({"salvage", "--json"}).out, Not(HasSubstr("secret")));
}

TEST_F(BothDamagedTest, TheStartSalvages) {
  const ToolRun result = run({"boot"});
  EXPECT_EQ(result,
            (ToolRun{0,
                     "/cfg0/business_param.xml was salvaged; settings from main: 3, backup: 1, "
                     "disputed: 2, factory: 5\n"
                     "/cfg0/business_param.xml was kept as "
                     "/cfg1/.camcfg/damaged/cfg0-business_param.xml.1\n"
                     "/cfg1/business_param.xml was kept as "
                     "/cfg1/.camcfg/damaged/cfg1-business_param.xml.1\n",
                     ""}));
  EXPECT_EQ(device.read(kBusiness), with(main_, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\""));
  EXPECT_EQ(device.read(kBusinessBackup), device.read(kBusiness));
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""}));
}

TEST_F(BothDamagedTest, NoSalvageTurnsThatOff) {
  EXPECT_THAT(run({"boot", "--no-salvage"}).out,
              HasSubstr("/cfg0/business_param.xml was restored from "
                        "/app/resource/defcfg/business_param.xml\n"));
  EXPECT_EQ(device.read(kBusiness), kParameters);
  EXPECT_FALSE(device.exists("/cfg1/.camcfg/damaged"));
}

TEST_F(BothDamagedTest, AnInterruptedSalvageIsFinishedByTheStart) {
  const std::string salvaged = with(main_, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  const pid_t killed = fork();
  if (killed == 0) {
    device.enter();
    const char* words[] = {"camcfg", "salvage", "--apply"};
    tool::rememberCaller(3, words);
    tool::device::openJournal({{kBusiness, kParameters, salvaged}});
    _exit(0);
  }
  int status = 0;
  waitpid(killed, &status, 0);
  ASSERT_EQ(status, 0);
  EXPECT_THAT(run({"boot"}).out, HasSubstr("finished an interrupted change: salvage --apply ("));
  EXPECT_EQ(device.read(kBusiness), salvaged);
  EXPECT_EQ(device.read(kBusinessBackup), salvaged);
}

TEST_F(SalvageTest, TheStartTakesAGoodBackupAsItIs) {
  device.write(kBusiness, upTo(kParameters, "<Image>") + "<Im");
  EXPECT_EQ(run({"boot"}).out,
            "/cfg0/business_param.xml was restored from /cfg1/business_param.xml\n");
}

TEST_F(SalvageTest, WhereNothingIsLeftTheStartTakesTheFactoryCopy) {
  writeBoth(std::string(512, '\0'));
  EXPECT_THAT(run({"boot"}).out, HasSubstr("was restored from /app/resource/defcfg/"));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(BothDamagedTest, WhereNothingCanBeKeptTheStartSalvagesAndSaysSo) {
  const std::string expected = with(main_, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  device.write("/cfg1/.camcfg", "in the way");
  const ToolRun result = run({"boot"});
  EXPECT_THAT(result.out,
              HasSubstr("/cfg0/business_param.xml was salvaged; settings from main: 3"));
  EXPECT_THAT(result.err,
              HasSubstr("/cfg0/business_param.xml was salvaged, but its damaged "
                        "copies may not be kept: /cfg1/.camcfg is not a directory; move it away"));
  EXPECT_EQ(device.read(kBusiness), expected);
  EXPECT_EQ(device.read(kBusinessBackup), expected);
}

TEST_F(BothDamagedTest, TheStartSalvagesWithoutABackupDirectory) {
  device.remove("/cfg1");
  EXPECT_THAT(run({"boot"}).out, HasSubstr("/cfg0/business_param.xml was salvaged; "));
  EXPECT_EQ(run({"get", "System", "WebHttps"}).out, "444\n");
}

/// Main copies that load, although a part of them is missing, and damaged backups that have more.
class CutBetweenElementsTest : public SalvageTest {
 protected:
  void cut(const std::string& before) const {
    device.write(kBusiness, upTo(main_, before));
    device.write(kBusinessBackup, upTo(kParameters, "</NetWork>"));
  }

  const std::string main_ = with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
};

TEST_F(CutBetweenElementsTest, TheRestComesFromTheBackup) {
  cut("<NetWork");
  ASSERT_EQ(run({"get", "System", "WebHttp"}).out, "81\n");
  const Json answer = salvaged();
  EXPECT_EQ(said(answer, "System/WebHttp"), "disputed 81, backup \"80\"");
  EXPECT_EQ(said(answer, "NetWork/Eth0/IpAddr"), "backup 192.0.2.7");
}

TEST_F(CutBetweenElementsTest, TheStartSalvagesBeforeItReplacesTheBackup) {
  cut("<NetWork");
  EXPECT_THAT(run({"boot"}).out, HasSubstr("/cfg0/business_param.xml was salvaged; "));
  EXPECT_EQ(device.read(kBusiness), main_);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), upTo(main_, "<NetWork"));
}

TEST_F(CutBetweenElementsTest, ASectionThatNoCopyHasComesFromTheFactoryCopy) {
  writeBoth(upTo(main_, "<NetWork"));
  EXPECT_EQ(run({"status"}).status, 4);
  EXPECT_EQ(run({"salvage"}).out, "there is nothing to salvage\n");
  ASSERT_EQ(run({"salvage", "--apply", kBusiness}).status, 0);
  EXPECT_EQ(device.read(kBusiness), main_);
  EXPECT_EQ(run({"status"}).status, 0);
}

TEST_F(CutBetweenElementsTest, AMainCopyWithoutAnElementIsKept) {
  device.write(kBusiness, "<!-- parameters -->\n");
  device.write(kBusinessBackup, upTo(main_, "    <Rtsp "));
  EXPECT_EQ(said(salvaged(), "System/WebHttp"), "backup 81");
  EXPECT_THAT(run({"boot"}).out, AllOf(HasSubstr("/cfg0/business_param.xml was salvaged; "),
                                       HasSubstr("/cfg0/business_param.xml was kept as ")));
  EXPECT_EQ(run({"get", "System", "WebHttp"}).out, "81\n");
}

TEST_F(CutBetweenElementsTest, ABackupWithoutAnElementIsNotTaken) {
  device.write(kBusiness, upTo(main_, "</NetWork>"));
  device.write(kBusinessBackup, "<!-- parameters -->\n");
  EXPECT_THAT(run({"boot"}).out, HasSubstr("/cfg0/business_param.xml was salvaged; "));
  EXPECT_EQ(run({"get", "System", "WebHttp"}).out, "81\n");
}

TEST_F(CutBetweenElementsTest, AMainCopyThatLacksNothingIsLeftAsItIs) {
  device.write(kBusiness, main_ + "<Own Cur=\"1\"/>\n" + std::string(9, '\0'));
  device.write(kBusinessBackup, upTo(kParameters, "</NetWork>"));
  EXPECT_THAT(
      run({"boot"}).out,
      AllOf(HasSubstr("/cfg1/business_param.xml was brought in sync with /cfg0/business_param.xml"),
            Not(HasSubstr("salvaged"))));
}

TEST_F(SalvageTest, ADirectoryInPlaceOfTheMainCopyIsInTheWay) {
  const std::string rest = upTo(kParameters, "</NetWork>");
  device.write(kBusinessBackup, rest);
  device.remove(kBusiness);
  device.makeDirectory(kBusiness);
  EXPECT_EQ(said(salvaged(), "System/Rtsp"), "backup 554");
  EXPECT_THAT(run({"salvage", "--apply"}).err, HasSubstr("is not a regular file; move it away"));
  EXPECT_EQ(device.read(kBusinessBackup), rest);
  EXPECT_THAT(run({"boot"}).err, HasSubstr("/cfg0/business_param.xml was not salvaged: "));
  EXPECT_EQ(device.read("/cfg1/.camcfg/damaged/cfg1-business_param.xml.1"), rest);
}

TEST_F(SalvageTest, TheListOfWhatIsNotTakenHasAnEnd) {
  std::string unknown = "<Own>";
  for (int i = 0; i < 3000; ++i) unknown += "<a" + std::to_string(i) + "/>";
  device.write(kBusiness, unknown);
  device.write(kBusinessBackup, "<System");
  EXPECT_EQ(salvaged()["notTaken"].size(), 2000U);
}

}  // namespace
}  // namespace camcfg::tests
