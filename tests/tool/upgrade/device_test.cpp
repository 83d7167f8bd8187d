#include <unistd.h>

#include <filesystem>

#include "base/host.h"
#include "tool/json_in.h"
#include "tool/media_tool_test.h"
#include "tool/two_presets.h"
#include "upgrade/factory_set.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kPresets[] = "/cfg0/preset_cfg.xml";
constexpr char kPresetsDefault[] = "/app/resource/defcfg/preset_cfg.xml";
constexpr char kMppDefault[] = "/app/resource/defcfg/mpp_cfg.xml";
constexpr char kRules[] = "/app/resource/upgrade.json";
constexpr char kMark[] = "/cfg1/.camcfg/factory/mark";
constexpr char kNewPreset[] =
    "    <preset Id=\"7\" Description=\"Yard\" PanPos=\"7\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n";

/// A device with the factory set that it came with, which is kept since its first start.
class UpgradeTest : public ToolTest {
 protected:
  UpgradeTest() {
    give("/app/resource/defcfg/", kParameters, kMedia, kTwoPresets);
    give("/old/", kParameters, kMedia, kTwoPresets);
    for (const char* directory : {"/cfg0/", "/cfg1/"})
      give(directory, kParameters, kMedia, kTwoPresets);
  }

  void give(const std::string& directory, const std::string& parameters, const std::string& media,
            const std::string& presets) const {
    device.write(directory + "business_param.xml", parameters);
    device.write(directory + "mpp_cfg.xml", media);
    device.write(directory + "preset_cfg.xml", presets);
  }

  void start() const { EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""})); }
  void set(const std::string& section, const std::string& name, const std::string& value) const {
    EXPECT_EQ(run({"set", section, name, value}).status, 0);
  }
  std::string get(const std::string& section, const std::string& name) const {
    return run({"get", section, name}).out;
  }

  /// A firmware whose factory set has a part of its parameters replaced.
  void install(const std::string& part, const std::string& other) const {
    device.write(kBusinessDefault, with(device.read(kBusinessDefault), part, other));
  }
  void installPreset() const {
    device.write(kPresetsDefault,
                 with(kTwoPresets, "</PresetCfg>", std::string(kNewPreset) + "</PresetCfg>"));
  }

  Words fromOldSet() const { return {"upgrade", "--from", device.hostPath() + "/old"}; }
  tool::Json upgraded(Words words = {}) const {
    words.insert(words.begin(), {"upgrade", "--json"});
    return jsonIn(run(words).out);
  }
  static std::string placesIn(const tool::Json& answer, const std::string& what) {
    std::string places;
    for (const tool::Json& entry : answer.at("changes"))
      if (entry.at("what") == what) places += entry.at("place").text() + "\n";
    return places;
  }
};

TEST_F(UpgradeTest, ValuesThatWereNotChangedBecomeTheNewOnes) {
  start();
  install("<Rtsp Cur=\"554\"", "<!-- moved --><Rtsp Cur=\"555\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(get("System", "Rtsp"), "555\n");
  EXPECT_THAT(device.read(kBusiness), HasSubstr("<!-- moved -->"));
  EXPECT_EQ(device.read(kBusiness), device.read(kBusinessBackup));
}

TEST_F(UpgradeTest, ValuesThatWereChangedStay) {
  start();
  set("System", "Rtsp", "8554");
  install("Rtsp Cur=\"554\" Def=\"554\" Min=\"1\"", "Rtsp Cur=\"554\" Def=\"554\" Min=\"2\"");
  install("</Image>", "    <Gain Cur=\"1\" Min=\"0\" Max=\"2\"/>\n</Image>");
  const tool::Json answer = upgraded();
  EXPECT_EQ(get("System", "Rtsp"), "8554\n");
  EXPECT_EQ(get("Image", "Gain"), "1\n");
  EXPECT_THAT(device.read(kBusiness), HasSubstr("Cur=\"8554\" Def=\"554\" Min=\"2\""));
  EXPECT_EQ(placesIn(answer, "added"), "parameters.Image.Gain\n");
  EXPECT_EQ(answer.at("conflicts").size(), 0U);
}

TEST_F(UpgradeTest, ConflictIsTheUsersUnlessAskedOtherwise) {
  start();
  set("System", "Rtsp", "8554");
  install("<Rtsp Cur=\"554\"", "<Rtsp Cur=\"555\"");
  const ToolRun stopped = run({"upgrade", "--on-conflict", "stop"});
  EXPECT_EQ(stopped.status, 1);
  EXPECT_THAT(stopped.err, HasSubstr("parameters.System.Rtsp; nothing was changed"));
  EXPECT_EQ(upgraded({"--dry-run"}).at("conflicts").dump(), "[\"parameters.System.Rtsp\"]");
  EXPECT_EQ(upgraded({"--dry-run", "--on-conflict", "factory"}).at("changes")[0].at("after"),
            tool::Json(555));
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(get("System", "Rtsp"), "8554\n");
  EXPECT_EQ(run({"upgrade", "--on-conflict", "whose"}).status, 2);
}

TEST_F(UpgradeTest, FactoryWinsConflictsOnRequest) {
  start();
  set("System", "Rtsp", "8554");
  install("<Rtsp Cur=\"554\"", "<Rtsp Cur=\"555\"");
  EXPECT_EQ(run({"upgrade", "--on-conflict", "factory"}).status, 0);
  EXPECT_EQ(get("System", "Rtsp"), "555\n");
}

TEST_F(UpgradeTest, ValuesThatStayArePermittedByTheNewLimits) {
  start();
  set("System", "Rtsp", "8554");
  set("Image", "Mode", "Manual");
  set("Image", "Brightness", "45");
  install("<Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\"",
          "<Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"8000\"");
  install("Auto,Half-Auto,Manual", "Auto,Half-Auto");
  install("Max=\"50\" Step=\"5\"", "Max=\"50\" Step=\"20\"");
  const tool::Json answer = upgraded();
  EXPECT_EQ(get("System", "Rtsp"), "8000\n");
  EXPECT_EQ(get("Image", "Mode"), "Auto\n");
  EXPECT_EQ(get("Image", "Brightness"), "50\n");
  EXPECT_EQ(placesIn(answer, "limit"),
            "parameters.System.Rtsp\nparameters.Image.Brightness\nparameters.Image.Mode\n");
  EXPECT_EQ(answer.at("changes")[0].at("reason"),
            tool::Json("8554 is outside 1..8000; it has the nearest permitted value"));
}

TEST_F(UpgradeTest, CardsAndNamesAreMerged) {
  start();
  EXPECT_EQ(run({"network", "hostname", "yard"}).status, 0);
  EXPECT_EQ(run({"network", "set", "Eth0", "IpAddr", "192.0.2.9"}).status, 0);
  install("<NetWork Hostname=\"gate\">", "<NetWork Hostname=\"camera\">");
  install("<IpAddr Cur=\"192.0.2.7\"", "<MTU Cur=\"1500\" Def=\"1500\"/><IpAddr Cur=\"192.0.2.1\"");
  install("DeviceName=\"North Gate\"", "DeviceName=\"Camera\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  const std::string now = device.read(kBusiness);
  EXPECT_THAT(now, AllOf(HasSubstr("Hostname=\"yard\""), HasSubstr("IpAddr Cur=\"192.0.2.9\""),
                         HasSubstr("<MTU Cur=\"1500\""), HasSubstr("DeviceName=\"Camera\"")));
}

TEST_F(UpgradeTest, CardsOfTheUserStayAndDeletedOnesStayDeleted) {
  start();
  writeBoth(with(kParameters,
                 "    <Eth0>\n        <IpAddr Cur=\"192.0.2.7\" Def=\"192.0.2.1\"/>\n"
                 "    </Eth0>\n",
                 "    <Own>\n        <IpAddr Cur=\"192.0.2.8\"/>\n    </Own>\n"));
  install("<Rtsp Cur=\"554\"", "<Rtsp Cur=\"555\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_THAT(device.read(kBusiness), AllOf(HasSubstr("<Own>"), Not(HasSubstr("<Eth0>"))));
}

TEST_F(UpgradeTest, FieldsOfCardsAreThoseOfTheNewSet) {
  start();
  writeBoth(with(kParameters, "<IpAddr Cur=\"192.0.2.7\" Def=\"192.0.2.1\"/>",
                 "<IpAddr Cur=\"192.0.2.8\"/><Vlan Cur=\"7\"/>"));
  install("<IpAddr Cur=\"192.0.2.7\" Def=\"192.0.2.1\"/>", "<MTU Cur=\"1500\" Def=\"1500\"/>");
  const tool::Json answer = upgraded();
  EXPECT_EQ(placesIn(answer, "dropped"), "network.cards.Eth0.ipAddr\nnetwork.cards.Eth0.Vlan\n");
  EXPECT_EQ(placesIn(answer, "added"), "network.cards.Eth0.mtu\n");
  EXPECT_EQ(answer.at("conflicts").size(), 0U);
  EXPECT_THAT(device.read(kBusiness),
              AllOf(HasSubstr("<MTU"), Not(HasSubstr("IpAddr")), Not(HasSubstr("Vlan"))));
}

TEST_F(UpgradeTest, PresetsAreMergedByTheirIds) {
  start();
  EXPECT_EQ(run({"preset", "set", "1", "--tilt", "5"}).status, 0);
  EXPECT_EQ(run({"preset", "delete", "2"}).status, 0);
  EXPECT_EQ(run({"preset", "set", "9", "--description", "Mine"}).status, 0);
  device.write(kPresetsDefault, with(with(kTwoPresets, "PanPos=\"1\"", "PanPos=\"11\""),
                                     "</PresetCfg>", std::string(kNewPreset) + "</PresetCfg>"));
  EXPECT_EQ(run({"upgrade"}).status, 0);
  const std::string now = device.read(kPresets);
  EXPECT_THAT(now, AllOf(HasSubstr("Description=\"Door\" PanPos=\"11\" TiltPos=\"5\""),
                         HasSubstr("Id=\"7\""), HasSubstr("Id=\"9\""), Not(HasSubstr("Id=\"2\""))));
}

TEST_F(UpgradeTest, PresetWhoseIdIsTakenStaysOutAndIsReported) {
  start();
  EXPECT_EQ(run({"preset", "set", "7", "--description", "Mine"}).status, 0);
  installPreset();
  EXPECT_EQ(upgraded().at("conflicts").dump(), "[\"presets[7]\"]");
  EXPECT_THAT(device.read(kPresets), AllOf(HasSubstr("Mine"), Not(HasSubstr("Yard"))));
}

TEST_F(UpgradeTest, WhatWouldBeAnErrorIsNotBroughtIn) {
  start();
  EXPECT_EQ(run({"preset", "set", "9", "--description", "Yard"}).status, 0);
  installPreset();
  const tool::Json answer = upgraded();
  EXPECT_EQ(placesIn(answer, "held"), "presets[7]\n");
  EXPECT_THAT(answer.at("changes")[0].at("reason").text(), HasSubstr("[description-"));
  EXPECT_EQ(device.read(kPresets).find("Id=\"7\""), std::string::npos);
}

TEST_F(UpgradeTest, MediaSectionsAreMergedAndSecretsMasked) {
  start();
  device.write("/media.json",
               R"({"version": 1, "live": {"websocket": [{"id": 0, "name": "own"}]}})");
  EXPECT_EQ(run({"import", device.hostPath() + "/media.json"}).status, 0);
  device.write(kMppDefault, with(with(kMedia, "password=\"secret\"", "password=\"Zq7\""),
                                 "BufferSizeMB=\"8\"", "BufferSizeMB=\"16\""));
  const ToolRun result = run({"upgrade"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, AllOf(HasSubstr("stream.caches[0].size"), HasSubstr("live.rtmp"),
                                Not(HasSubstr("Zq7")), Not(HasSubstr("secret"))));
  const std::string now = device.read(kMpp);
  EXPECT_THAT(now, AllOf(HasSubstr("BufferSizeMB=\"16\""), HasSubstr("password=\"Zq7\""),
                         HasSubstr("Id=\"0\" Name=\"own\""), Not(HasSubstr("listen"))));
  EXPECT_THAT(
      run({"upgrade", "--show-secrets", "--dry-run", "--from", device.hostPath() + "/old"}).out,
      Not(HasSubstr("Zq7")));
}

TEST_F(UpgradeTest, ReferencesThatLeadNowhereAreReported) {
  start();
  const std::string own = with(kMedia, "<AllowedStreamSource Id=\"2\"/>",
                               "<AllowedStreamSource Id=\"2\"/><AllowedStreamSource Id=\"1\"/>");
  device.write(kMpp, own);
  device.write(kMppBackup, own);
  device.write(kMppDefault,
               with(with(kMedia, "<AENC Id=\"1\" Name=\"mic\" AencId=\"3\" Enabled=\"0\"/>", ""),
                    "<AllowedStreamSource Id=\"1\"/>", ""));
  const tool::Json findings = upgraded({"--dry-run"}).at("findings");
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_THAT(findings[0].text(), HasSubstr("cache 0 allows source 1, which does not exist"));
  EXPECT_THAT(run({"boot"}).out, HasSubstr("; dropped: 1, found now: 1"));
}

TEST_F(UpgradeTest, SectionThatNeitherSideHasIsNotAdded) {
  const std::string media(kMedia);
  const std::size_t begin = media.find("    <NDI>");
  const std::size_t end = media.find("</NDI>\n") + 7;
  const std::string without = std::string(media).erase(begin, end - begin);
  for (const char* path : {kMpp, kMppBackup, kMppDefault}) device.write(path, without);
  start();
  device.write(kMppDefault, with(without, "BufferSizeMB=\"8\"", "BufferSizeMB=\"16\""));
  const tool::Json answer = upgraded({"--dry-run"});
  EXPECT_EQ(placesIn(answer, "factory"), "stream.caches[0].size.value\n");
  EXPECT_EQ(placesIn(answer, "added"), "");
}

TEST_F(UpgradeTest, SectionThatCannotBeReadStaysAsItIs) {
  start();
  const std::string faulty = with(kMedia, "Mode=\"Listener\"", "Mode=\"Rendezvous\"");
  device.write(kMpp, faulty);
  device.write(kMppBackup, faulty);
  device.write(kMppDefault, with(kMedia, "BufferSizeMB=\"8\"", "BufferSizeMB=\"16\""));
  EXPECT_EQ(placesIn(upgraded(), "not merged"), "live.srt\n");
  EXPECT_THAT(device.read(kMpp), AllOf(HasSubstr("Rendezvous"), HasSubstr("BufferSizeMB=\"16\"")));
}

TEST_F(UpgradeTest, WithoutAnOldSetWhatIsPermittedStays) {
  set("System", "Rtsp", "8554");
  install("<WebHttp Cur=\"80\"", "<Own Cur=\"1\" Min=\"0\" Max=\"1\"/><WebHttp Cur=\"81\"");
  const ToolRun result = run({"upgrade"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("there is no old factory set"));
  EXPECT_EQ(get("System", "Rtsp"), "8554\n");
  EXPECT_EQ(get("System", "WebHttp"), "80\n");
  EXPECT_EQ(get("System", "Own"), "1\n");
}

TEST_F(UpgradeTest, FileThatTheOldSetLacksIsReported) {
  set("System", "Rtsp", "8554");
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  device.remove("/old/business_param.xml");
  const ToolRun result = run(fromOldSet());
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("the old factory set has no business_param.xml"));
  EXPECT_EQ(get("System", "WebHttp"), "80\n");
}

TEST_F(UpgradeTest, DamagedFactoryFileDoesNotLoseTheOldOne) {
  start();
  set("System", "Rtsp", "8554");
  device.write(kBusinessDefault, "<");
  EXPECT_EQ(run({"boot"}).status, 4);
  device.write(kBusinessDefault, kParameters);
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  EXPECT_THAT(run({"boot"}).out, HasSubstr("merged with the new factory set"));
  EXPECT_EQ(get("System", "WebHttp"), "81\n");
  EXPECT_EQ(get("System", "Rtsp"), "8554\n");
}

TEST_F(UpgradeTest, RehearsalWritesNothing) {
  set("System", "Rtsp", "8554");
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  const std::string before = device.read(kBusiness);
  const tool::Json answer = upgraded({"--dry-run", "--from", device.hostPath() + "/old"});
  EXPECT_EQ(answer.at("base"), tool::Json(device.hostPath() + "/old"));
  EXPECT_EQ(answer.at("files").dump(), "[\"/cfg0/business_param.xml\"]");
  EXPECT_EQ(device.read(kBusiness), before);
  EXPECT_FALSE(device.exists("/cfg1/.camcfg/factory"));
}

TEST_F(UpgradeTest, RehearsalLeavesNotEvenLocks) {
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  device.makeDirectory("/run/camcfg");
  EXPECT_EQ(upgraded({"--dry-run", "--from", device.hostPath() + "/old"}).at("files").size(), 1U);
  EXPECT_TRUE(std::filesystem::is_empty(device.hostPath() + "/run/camcfg"));
  device.write(kBusiness, "<");
  const ToolRun damaged = run({"upgrade", "--dry-run"});
  EXPECT_EQ(damaged.status, 3);
  EXPECT_THAT(damaged.err, HasSubstr("/cfg0/business_param.xml "));
  EXPECT_TRUE(std::filesystem::is_empty(device.hostPath() + "/run/camcfg"));
}

TEST_F(UpgradeTest, OldSetMustBeOne) {
  const ToolRun missing = run({"upgrade", "--from", device.hostPath() + "/none"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_THAT(missing.err, HasSubstr("No such file or directory"));
  EXPECT_FALSE(device.exists("/none"));
  EXPECT_THAT(run({"upgrade", "--from", device.hostPath() + "/app"}).err,
              HasSubstr("is no factory set"));
}

TEST_F(UpgradeTest, RunningItAgainChangesNothing) {
  set("System", "Rtsp", "8554");
  install("Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\"",
          "Rtsp Cur=\"1\" Def=\"1\" Min=\"1\" Max=\"554\"");
  const Words again = fromOldSet();
  EXPECT_EQ(run(again).status, 0);
  // The nearest permitted value happens to be the old factory value.
  EXPECT_EQ(get("System", "Rtsp"), "554\n");
  EXPECT_EQ(run(again).out, "no file differs from what the new factory set makes of it\n");
  EXPECT_EQ(run({"upgrade"}).out, "the factory set in place has been merged before\n");
  EXPECT_EQ(get("System", "Rtsp"), "554\n");
}

TEST_F(UpgradeTest, WhatWasUndoneIsNotMergedAgain) {
  start();
  install("Rtsp Cur=\"554\" Def=\"554\"", "Rtsp Cur=\"555\" Def=\"555\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(get("System", "Rtsp"), "555\n");
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(run({"upgrade"}).out, "the factory set in place has been merged before\n");
  start();
  EXPECT_EQ(get("System", "Rtsp"), "554\n");
}

TEST_F(UpgradeTest, PresetsKeepTheAttributesThatTheyLack) {
  start();
  for (const char* path : {kPresets, "/cfg1/preset_cfg.xml"})
    device.write(path, with(with(kTwoPresets, " PanPos=\"1\"", ""), " Description=\"Gate\"", ""));
  const std::string before = device.read(kPresets);
  installPreset();
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(device.read(kPresets),
            with(before, "</PresetCfg>", std::string(kNewPreset) + "</PresetCfg>"));
}

TEST_F(UpgradeTest, SetThatCannotBeKeptDoesNotUndoTheMerge) {
  install("Rtsp Cur=\"554\" Def=\"554\"", "Rtsp Cur=\"555\" Def=\"555\"");
  device.makeDirectory(std::string(kMark) + "/in-the-way");
  const ToolRun result = run(fromOldSet());
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("the settings are in force, but the factory set is not kept"));
  EXPECT_EQ(get("System", "Rtsp"), "555\n");
}

TEST_F(UpgradeTest, ManyPresetsThatCollideAreHeldOneByOne) {
  start();
  std::string offered;
  for (int id = 10; id < 40; ++id) {
    const std::string given = std::to_string(id);
    offered += with(with(kNewPreset, "Id=\"7\"", "Id=\"" + given + "\""), "Yard", "Yard " + given);
  }
  device.write(kPresetsDefault, with(kTwoPresets, "</PresetCfg>", offered + "</PresetCfg>"));
  EXPECT_EQ(run({"preset", "set", "9", "--description", "Yard"}).status, 0);
  const tool::Json answer = upgraded();
  EXPECT_EQ(answer.at("findings").size(), 0U);
  EXPECT_THAT(placesIn(answer, "held"), HasSubstr("presets[39]"));
}

TEST_F(UpgradeTest, UndoReturnsToThePreviousFirmwaresSettings) {
  start();
  set("System", "Rtsp", "8554");
  const std::string before = device.read(kBusiness);
  install("<WebHttp Cur=\"80\"", "<Own Cur=\"1\" Min=\"0\" Max=\"1\"/><WebHttp Cur=\"81\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), before);
  start();
  EXPECT_EQ(device.read(kBusiness), before);
}

TEST_F(UpgradeTest, GoingBackIsTheSameMergeTheOtherWay) {
  start();
  set("System", "Rtsp", "8554");
  set("System", "WebHttp", "81");
  const std::string before = device.read(kBusiness);
  install("<Rtsp Cur=\"554\"", "<Own Cur=\"1\" Min=\"0\" Max=\"1\"/><RtspPort Cur=\"555\"");
  device.write(kRules, R"({"version": 2, "rules": [{"version": 2, "rename":
      {"parameter": "System/Rtsp", "to": "System/RtspPort"}}]})");
  EXPECT_THAT(run({"boot"}).out, HasSubstr("merged with the new factory set; conflicts: 1\n"));
  EXPECT_EQ(get("System", "RtspPort"), "8554\n");
  EXPECT_EQ(run({"undo"}).status, 0);
  const tool::Json again =
      upgraded({"--from", device.hostPath() + "/old", "--rules", device.hostPath() + kRules});
  EXPECT_EQ(placesIn(again, "rule"), "parameters.System.Rtsp\n");
  device.write(kBusinessDefault, kParameters);
  device.remove(kRules);
  EXPECT_EQ(run({"boot"}).out,
            "the settings were merged with the new factory set; conflicts: 1, dropped: 1\n");
  EXPECT_EQ(device.read(kBusiness), before);
}

TEST_F(UpgradeTest, BootRunsItOnce) {
  start();
  set("System", "Rtsp", "8554");
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "the settings were merged with the new factory set\n", ""}));
  EXPECT_EQ(get("System", "WebHttp"), "81\n");
  start();
  EXPECT_THAT(run({"history"}).out, HasSubstr("boot"));
}

TEST_F(UpgradeTest, FirstStartOnlyKeepsTheSet) {
  set("System", "Rtsp", "8554");
  EXPECT_EQ(run({"preset", "delete", "2"}).status, 0);
  const std::string before = device.read(kBusiness) + device.read(kPresets);
  start();
  EXPECT_EQ(device.read(kBusiness) + device.read(kPresets), before);
  EXPECT_EQ(device.read("/cfg1/.camcfg/factory/business_param.xml"), kParameters);
}

TEST_F(UpgradeTest, BootGoesOnWhenRulesAreFaulty) {
  start();
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  device.write(kRules, "{");
  const ToolRun result = run({"boot"});
  EXPECT_EQ(result.status, 4);
  EXPECT_THAT(result.err, HasSubstr("the factory set was not merged: /app/resource/upgrade.json"));
  EXPECT_EQ(get("System", "WebHttp"), "80\n");
}

TEST_F(UpgradeTest, FaultyRulesOfTheOldSetDoNotStopTheNextUpgrade) {
  device.write(kRules, "{");
  start();
  device.remove(kRules);
  install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  const ToolRun result = run({"boot"});
  EXPECT_THAT(result.err, HasSubstr("not used: the rules of the old set"));
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(get("System", "WebHttp"), "81\n");
}

TEST_F(UpgradeTest, StepByStepIsTheSameAsAtOnce) {
  constexpr char kThree[] = R"({"version": 3, "rules": [
      {"version": 2, "rename": {"parameter": "System/Rtsp", "to": "System/RtspPort"}},
      {"version": 2, "map": {"parameter": "Image/Mode", "values": {"Manual": "Hand", "Half-Auto": "Half"}}},
      {"version": 3, "rename": {"parameter": "System/RtspPort", "to": "Image/Port"}},
      {"version": 3, "map": {"parameter": "Image/Mode", "values": {"Hand": "Half", "Half": "Hand"}}}]})";
  const std::string first = with(kParameters, "Auto,Half-Auto,Manual", "Auto,Half,Hand");
  const std::string port = "<Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\" Step=\"1\"/>";
  const std::string renamed = "<RtspPort" + port.substr(5);
  const auto firmware = [&](const std::string& parameters) {
    device.write(kBusinessDefault, parameters);
    device.write(kRules, kThree);
  };
  const std::string second = with(first, port, renamed);
  const std::string third =
      with(with(first, port, ""), "</Image>", "    <Port" + port.substr(5) + "\n</Image>");
  const auto prepare = [&] {
    give("/app/resource/defcfg/", kParameters, kMedia, kTwoPresets);
    writeBoth(kParameters);
    device.remove(kRules);
    run({"boot"});
    set("System", "Rtsp", "8554");
    set("Image", "Mode", "Manual");
  };

  prepare();
  firmware(second);
  device.write(
      kRules,
      with(with(kThree, "\"version\": 3", "\"version\": 2"),
           std::string(kThree).substr(std::string(kThree).find(",\n      {\"version\": 3")), "]}"));
  EXPECT_EQ(run({"boot"}).status, 0);
  EXPECT_EQ(get("System", "RtspPort") + get("Image", "Mode"), "8554\nHand\n");
  firmware(third);
  EXPECT_EQ(run({"boot"}).status, 0);
  const std::string byStep = device.read(kBusiness);
  EXPECT_THAT(byStep, AllOf(HasSubstr("<Port Cur=\"8554\""), HasSubstr("<Mode Cur=\"Half\"")));

  device.write(kBusinessDefault, kParameters);
  prepare();
  firmware(third);
  EXPECT_EQ(run({"boot"}).status, 0);
  EXPECT_EQ(device.read(kBusiness), byStep);
}

TEST_F(UpgradeTest, RulesOfTheCommandLineAreAppliedOnce) {
  start();
  set("Image", "Mode", "Manual");
  device.write("/rules.json", R"({"version": 2, "rules": [{"version": 2, "map": {"parameter":
      "Image/Mode", "values": {"Manual": "Half-Auto", "Half-Auto": "Manual"}}}]})");
  const Words words = {"upgrade", "--rules", device.hostPath() + "/rules.json"};
  EXPECT_EQ(run(words).status, 0);
  EXPECT_EQ(get("Image", "Mode"), "Half-Auto\n");
  set("System", "Rtsp", "8554");
  EXPECT_EQ(run(words).status, 0);
  EXPECT_EQ(get("Image", "Mode"), "Half-Auto\n");
  start();
  EXPECT_EQ(get("Image", "Mode"), "Half-Auto\n");
  device.write("/rules.json", "{");
  EXPECT_THAT(run(words).err, HasSubstr("camcfg: upgrade: --rules: byte"));
}

TEST_F(UpgradeTest, RulesAreChecked) {
  EXPECT_EQ(run({"upgrade", "--check-rules"}).status, 1);
  device.write(kRules, R"({"version": 2, "rules": [{"version": 2, "rename":
      {"parameter": "System/Port", "to": "System/Rtsp"}}]})");
  EXPECT_EQ(run({"upgrade", "--check-rules"}), (ToolRun{0, "version 2, rules: 1; no fault\n", ""}));
  device.write("/rules.json", R"({"version": 2, "rules": [{"version": 2, "rename":
      {"parameter": "System/Port", "to": "System/None"}}]})");
  EXPECT_EQ(
      run({"upgrade", "--check-rules", "--rules", device.hostPath() + "/rules.json"}),
      (ToolRun{1, "rules[0]: the factory set in place has no System/None, to which it leads\n",
               ""}));
}

TEST_F(UpgradeTest, DamagedKeptSetIsNone) {
  start();
  device.write("/cfg1/.camcfg/factory/business_param.xml", "<System/>");
  install("<WebHttp Cur=\"80\"", "<Own Cur=\"1\"/><WebHttp Cur=\"81\"");
  EXPECT_EQ(run({"upgrade"}).status, 0);
  EXPECT_EQ(get("System", "WebHttp"), "80\n");
}

/// Upgrades that were cut off.
class CutUpgradeTest : public UpgradeTest {
 protected:
  CutUpgradeTest() {
    start();
    set("System", "Rtsp", "8554");
    install("<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
    device.enter();
  }
  static std::vector<tool::device::Contents> mainCopies() {
    std::vector<tool::device::Contents> all;
    for (const char* path : {kBusiness, kMpp, kPresets})
      all.push_back({path, tool::device::bytesOf(path)});
    return all;
  }
};

TEST_F(CutUpgradeTest, SetIsDroppedIfTheMainCopiesWereNotChanged) {
  using namespace tool::upgrade;
  const FactorySet former = *keptSet();
  std::vector<tool::device::Contents> merged = mainCopies();
  merged[0].bytes += "<!-- merged -->";
  stage(installedSet(), &former, merged);
  EXPECT_EQ(keptSet(), former);
  settle();
  EXPECT_EQ(keptSet(), former);
  EXPECT_EQ(device.exists(std::string(kMark) + ".new"), false);
}

TEST_F(CutUpgradeTest, SetIsKeptIfTheyWere) {
  using namespace tool::upgrade;
  const FactorySet former = *keptSet();
  stage(installedSet(), &former, mainCopies());
  settle();
  EXPECT_EQ(keptSet(), installedSet());
}

TEST_F(CutUpgradeTest, SetThatIsHalfKeptIsKept) {
  using namespace tool::upgrade;
  const FactorySet former = *keptSet();
  stage(installedSet(), &former, mainCopies());
  const std::string file = "/cfg1/.camcfg/factory/business_param.xml";
  ASSERT_EQ(rename((file + ".new").c_str(), file.c_str()), 0);
  tool::device::saveContents({{kBusiness, kParameters}});
  settle();
  EXPECT_EQ(keptSet(), installedSet());
}

}  // namespace
}  // namespace camcfg::tests
