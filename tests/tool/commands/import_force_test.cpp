#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

class ImportForceTest : public SampleTest {
 protected:
  ToolRun import(const std::string& sections, std::vector<std::string> options = {}) const {
    device.write("/document.json", "{\"version\": 1, " + sections + "}");
    options.insert(options.begin(), {"import", device.hostPath() + "/document.json"});
    return run(options);
  }
  static ToolRun refused(const std::string& why) {
    return {1, "", "camcfg: import: " + why + "\ncamcfg: import: nothing was changed\n"};
  }
};

struct Forced {
  const char* sections;          // of the document
  const char* refusal;           // without --force
  std::vector<std::string> set;  // the command that takes it with --force
};

const Forced kForcedSections[] = {
    {R"("parameters": {"System": {"Language": "Engl"}})",
     "parameters.System.Language: 'Engl' is only a part of one of 'English,German,French'; the "
     "nearest permitted is 'English'; '--force' sets it anyway",
     {"set", "System/Language=Engl"}},
    {R"("network": {"cards": {"Lan0": {"ipAddr": "192.0.2"}}})",
     "network.cards.Lan0.ipAddr: '192.0.2' is not of the form 192.0.2.1; '--force' sets it anyway",
     {"network", "set", "Lan0", "IpAddr", "192.0.2"}},
    {R"("network": {"cards": {"Lan0": {"mtu": 10}}})",
     "network.cards.Lan0.mtu: 10 is outside 68..9216; the nearest permitted is 68; '--force' sets "
     "it anyway",
     {"network", "set", "Lan0", "MTU", "10"}},
    {R"("network": {"hostname": "-gate"})",
     "network.hostname: '-gate' has a label that begins or ends with a hyphen; '--force' sets it "
     "anyway",
     {"network", "hostname", "-gate"}},
};

TEST_F(ImportForceTest, WhatSetForceTakesIsRefusedWithoutIt) {
  const std::string former = device.read(kBusiness);
  for (const Forced& each : kForcedSections) {
    EXPECT_EQ(import(each.sections), refused(each.refusal));
    EXPECT_EQ(device.read(kBusiness), former) << each.sections;
  }
}

TEST_F(ImportForceTest, WhatSetForceTakesIsTakenWithIt) {
  const std::string former = device.read(kBusiness);
  for (const Forced& each : kForcedSections) {
    writeBoth(former);
    std::vector<std::string> words = each.set;
    words.emplace_back("--force");
    if (words[1] == "hostname") words.insert(words.begin() + 2, "--");
    if (words[1] == "hostname") words = {"network", "hostname", "--force", "--", "-gate"};
    ASSERT_EQ(run(words).status, 0) << each.sections;
    const std::string set = device.read(kBusiness);
    writeBoth(former);
    EXPECT_EQ(import(each.sections, {"--force"}).status, 0);
    EXPECT_EQ(device.read(kBusiness), set) << each.sections;
    EXPECT_NE(set, former);
  }
}

TEST_F(ImportForceTest, DryRunShowsItAndWritesNothing) {
  const std::string former = device.read(kBusiness);
  EXPECT_EQ(
      import(kForcedSections[0].sections, {"--force", "--dry-run"}),
      (ToolRun{0,
               "PLACE                       BEFORE   AFTER\n"
               "parameters.System.Language  English  Engl\n"
               "nothing was written\n",
               "camcfg: import: warning: /cfg0/business_param.xml:14: System/Language: \"Cur\" "
               "'Engl' is only a part of one of 'English,German,French' [part-of-option]\n"
               "camcfg: import: error: /cfg0/business_param.xml:14: System/Language: there is no "
               "/app/resource/language/Engl.xml [language-missing]\n"}));
  EXPECT_EQ(device.read(kBusiness), former);
}

TEST_F(ImportForceTest, WhatSetForceRefusesIsRefusedWithItToo) {
  EXPECT_EQ(import(R"("parameters": {"System": {"Language": "Klingon"}})", {"--force"}),
            refused("parameters.System.Language: 'Klingon' is not among 'English,German,French'"));
  EXPECT_EQ(import(R"("parameters": {"System": {"Rtsp": 70000}})", {"--force"}).status, 1);
  EXPECT_EQ(import(R"("network": {"cards": {"Lan0": {"speed": "1"}}})", {"--force"}).status, 1);
  EXPECT_EQ(import(R"("presets": [{"id": 129}])", {"--force"}),
            refused("presets[0].id: 129 is outside 0..128; the nearest permitted is 128"));
}

TEST_F(ImportForceTest, SetOfAPlaceTakesForceToo) {
  EXPECT_EQ(run({"set", "network.cards.Lan0.mtu=10"}).status, 1);
  EXPECT_EQ(run({"set", "--force", "network.cards.Lan0.mtu=10"}).status, 0);
  EXPECT_EQ(run({"get", "network.cards.Lan0.mtu"}).out, "10\n");
}

TEST_F(ImportForceTest, DiffComparesWhatOnlyForceWouldImport) {
  device.write("/document.json",
               R"({"version": 1, "parameters": {"System": {"Language": "Engl"}}})");
  EXPECT_EQ(run({"diff", device.hostPath() + "/document.json"}),
            (ToolRun{1,
                     "PLACE                       MAIN     DOCUMENT\n"
                     "parameters.System.Language  English  Engl\n",
                     ""}));
}

}  // namespace
}  // namespace camcfg::tests
