#include "tool/media_tool_test.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

// An import checks what it changes, value by value.

class HeldValuesTest : public MediaToolTest {
 protected:
  std::string exported(const std::string& section) const { return run({"export", section}).out; }
  ToolRun import(const std::string& document) const {
    device.write("/document.json", document);
    return run({"import", device.hostPath() + "/document.json"});
  }
};

struct Held {
  const char* section;
  std::vector<std::string> given;    // a part of the file, and what the device has instead
  std::vector<std::string> changed;  // a part of the document, and what it has instead
  std::vector<std::string> written;  // what becomes of the file
};

const Held kHeld[] = {
    {"live.srt", {"Port=\"9001\"", "Port=\"0\""}, {": 120", ": 130"}, {"\"120\"", "\"130\""}},
    // The same entry.
    {"live.srt", {"Port=\"9001\"", "Port=\"0\""}, {": 20,", ": 21,"}, {"cy=\"20\"", "cy=\"21\""}},
    {"live.ndi",
     {"MulticastEnable=\"false\" MulticastIp=\"239.255.0.0\"",
      "MulticastEnable=\"true\" MulticastIp=\"10.0.0.1\""},
     {"\"One\"", "\"Two\""},
     {"\"One\"", "\"Two\""}},
    {"live.rtsp",
     {"Name=\"empty\"", "Name=\"live\""},
     {"\"name\": \"audio\"", "\"name\": \"sound\""},
     {"Channel Id=\"7\" Name=\"audio\"/>\n        </M",
      "Channel Id=\"7\" Name=\"sound\"/>\n        </M"}},
};

TEST_F(HeldValuesTest, WhatTheDeviceHasIsNotRefusedWhenAnotherValueChanges) {
  for (const Held& each : kHeld) {
    give(with(kMedia, each.given[0], each.given[1]));
    const std::string document = with(exported(each.section), each.changed[0], each.changed[1]);
    EXPECT_EQ(import(document).err, "") << each.section;
    expectBoth(with(with(kMedia, each.given[0], each.given[1]), each.written[0], each.written[1]));
  }
}

TEST_F(HeldValuesTest, WhatIsChangedIsRefusedAsEver) {
  giveWith("Port=\"9001\"", "Port=\"0\"");
  EXPECT_EQ(import(with(exported("live.srt"), "\"port\": 0", "\"port\": 70000")).status, 1);
  EXPECT_EQ(import(with(exported("live.srt"), "\"port\": 9000", "\"port\": 0")).status, 1);
}

TEST_F(HeldValuesTest, WhatIsOfAnotherEntryIsNotHeld) {
  giveWith("Port=\"9001\"", "Port=\"0\"");
  EXPECT_EQ(import(with(exported("live.srt"), "\"id\": 1", "\"id\": 2")).err,
            "camcfg: import: live.srt[1].port: 0 is outside 1..65535; the nearest permitted is 1\n"
            "camcfg: import: nothing was changed\n");
}

TEST_F(HeldValuesTest, TwoValuesThatDoNotGoTogetherAreRefusedIfOneOfThemChanges) {
  giveWith("MulticastIp=\"239.255.0.0\"", "MulticastIp=\"10.0.0.1\"");
  EXPECT_EQ(import(with(exported("live.ndi"), "\"multicastEnabled\": false",
                        "\"multicastEnabled\": true"))
                .status,
            1);
}

TEST_F(HeldValuesTest, SecondEntryOfAKeyThatIsNewIsRefused) {
  EXPECT_EQ(import(with(exported("live.rtsp"), "\"empty\"", "\"live\"")).err,
            "camcfg: import: live.rtsp[1].name: there is another one with this name\n"
            "camcfg: import: nothing was changed\n");
}

using HeldParametersTest = SampleTest;

TEST_F(HeldParametersTest, SetOfOneMemberLeavesTheOthersUnchecked) {
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"0\"");
  EXPECT_EQ(run({"set", "live.srt[1].latency=21"}).err, "");
  EXPECT_EQ(run({"get", "live.srt[1].latency"}).out, "21\n");
}

TEST_F(HeldParametersTest, ForcedPartOfAnOptionStaysWhenAnotherValueChanges) {
  ASSERT_EQ(run({"set", "--force", "System/Language=Engl"}).status, 0);
  const ToolRun exported = run({"export", "System"});
  EXPECT_EQ(exported.err,
            "camcfg: export: note: parameters.System.Language: 'Engl' is only a part of one of "
            "'English,German,French'; the nearest permitted is 'English'; '--force' sets it "
            "anyway; an import will refuse it on a device that does not have it\n");
  device.write("/document.json", with(exported.out, "554", "555"));
  EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}),
            (ToolRun{0,
                     "PLACE                   BEFORE  AFTER\n"
                     "parameters.System.Rtsp  554     555\n",
                     ""}));
  EXPECT_EQ(run({"get", "System/Language"}).out, "Engl\n");
}

TEST_F(HeldParametersTest, ForcedFieldsOfACardStayWhenAnotherValueChanges) {
  ASSERT_EQ(run({"network", "set", "--force", "Lan0", "IpAddr", "nowhere"}).status, 0);
  ASSERT_EQ(run({"network", "set", "--force", "Lan0", "MTU", "1"}).status, 0);
  device.write("/document.json", with(run({"export", "network"}).out, "\"Full\"", "\"Half\""));
  EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}).status, 0);
  EXPECT_EQ(run({"get", "network.cards.Lan0.ipAddr"}).out, "nowhere\n");
  EXPECT_EQ(run({"get", "network.cards.Lan0.mtu"}).out, "1\n");
  EXPECT_EQ(run({"get", "network.cards.Lan0.duplex"}).out, "Half\n");
}

TEST_F(HeldParametersTest, PresetsOfAnyIdStayWhenAnotherOneChanges) {
  const std::string former = device.read("/cfg0/preset_cfg.xml");
  for (const char* other : {" Id=\"500\"", " Id=\"0\"", ""}) {
    const std::string present = with(former, " Id=\"1\"", other);
    for (const char* directory : {"/cfg0/", "/cfg1/"})
      device.write(directory + std::string("preset_cfg.xml"), present);
    const std::string document = run({"export", "presets"}).out;
    device.write("/document.json", with(document, "\"pan\": 4150", "\"pan\": 4151"));
    EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}).err, "") << other;
    EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), with(present, "\"4150\"", "\"4151\"")) << other;
  }
}

struct HeldPreset {
  const char* part;
  std::string present;
};

TEST_F(HeldParametersTest, PresetsThatNoRecordHoldsKeepWhatIsNotChanged) {
  const std::string former = device.read("/cfg0/preset_cfg.xml");
  const std::string endless = "\"" + std::string(70, 'x') + "\"";
  for (const HeldPreset& each :
       {HeldPreset{"\"Stage right\"", endless}, {"TiltPos=\"-360\"", "TiltPos=\"x\""}}) {
    const std::string present = with(former, each.part, each.present);
    for (const char* directory : {"/cfg0/", "/cfg1/"})
      device.write(directory + std::string("preset_cfg.xml"), present);
    const std::string document = run({"export", "presets"}).out;
    device.write("/document.json", with(document, "\"pan\": 4150", "\"pan\": 4151"));
    EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}).err, "") << each.part;
    EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), with(present, "\"4150\"", "\"4151\""));
  }
}

}  // namespace
}  // namespace camcfg::tests
