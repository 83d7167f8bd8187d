#include "upgrade/rules.h"

#include <gmock/gmock.h>

#include "base/host.h"
#include "base/json.h"
#include "base/plain_text.h"
#include "device/files.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace tool::upgrade;

constexpr char kChain[] = R"({"version": 3, "rules": [
  {"version": 2, "rename": {"parameter": "System/Rtsp", "to": "Ports/RtspPort"}},
  {"version": 2, "rename": {"section": "Image", "to": "Picture"}},
  {"version": 2, "map": {"parameter": "System/Mode", "values": {"Auto": "On", "Manual": "Off"}}},
  {"version": 3, "rename": {"parameter": "Ports/RtspPort", "to": "Ports/Rtsp"}},
  {"version": 3, "rename": {"member": "Picture/View/Width", "to": "Size"}},
  {"version": 3, "drop": {"parameter": "System/Old"}},
  {"version": 3, "map": {"parameter": "System/Mode", "values": {"On": "Always"}}}]})";

constexpr char kOld[] =
    "<System>\n    <Rtsp Cur=\"554\"/>\n    <Mode Cur=\"Auto\"/>\n    <Old Cur=\"1\"/>\n</System>\n"
    "<Image>\n    <View Width=\"1\"/>\n    <View Width=\"2\"/>\n</Image>\n";

class UpgradeRulesTest : public testing::Test {
 protected:
  static std::string applied(const std::vector<Rule>& rules, const std::string& text,
                             Entries* entries = nullptr) {
    const tool::device::Document document = tool::device::parsed(text);
    for (const Rule& rule : rules) apply(rule, *document, true, entries);
    return tool::written(*document);
  }

  static std::vector<std::string> faultsIn(const std::string& text) {
    tool::settings::Faults faults;
    readRules(text, faults);
    std::vector<std::string> texts;
    for (const auto& [place, reason] : faults)
      texts.push_back(std::string(place).append(": ").append(reason));
    return texts;
  }

  const Rules chain = requireRules(kChain, "x");
};

TEST_F(UpgradeRulesTest, RenameDropAndMap) {
  Entries entries;
  const std::string text = applied(rulesBetween(1, 3, chain.all), kOld, &entries);
  EXPECT_EQ(text, tool::written(*tool::device::parsed(
                      "<System><Mode Cur=\"Always\"/></System>"
                      "<Picture><View Size=\"1\"/><View Size=\"2\"/></Picture>"
                      "<Ports><Rtsp Cur=\"554\"/></Ports>")));
  EXPECT_EQ(entries.size(), 8U);
}

TEST_F(UpgradeRulesTest, StepByStepIsTheSameAsAtOnce) {
  const std::string half = applied(rulesBetween(1, 2, chain.all), kOld);
  EXPECT_EQ(applied(rulesBetween(2, 3, chain.all), half),
            applied(rulesBetween(1, 3, chain.all), kOld));
}

TEST_F(UpgradeRulesTest, LeadBackToo) {
  const std::string there = applied(rulesBetween(1, 3, chain.all), kOld);
  const std::string back = applied(rulesBetween(3, 1, chain.all), there);
  EXPECT_THAT(back, HasSubstr("<Rtsp Cur=\"554\"/>"));
  EXPECT_THAT(back, HasSubstr("<Mode Cur=\"Auto\"/>"));
  EXPECT_THAT(back, HasSubstr("<Image>\n    <View Width=\"1\"/>"));
}

TEST_F(UpgradeRulesTest, AreAppliedToWhatIsThere) {
  EXPECT_EQ(applied(chain.all, "<Other>\n    <A Cur=\"1\"/>\n</Other>\n"),
            "<Other>\n    <A Cur=\"1\"/>\n</Other>\n");
}

TEST_F(UpgradeRulesTest, NameThatIsTakenStays) {
  const std::string text = "<System>\n    <A Cur=\"1\"/>\n    <B Cur=\"2\"/>\n</System>\n";
  EXPECT_EQ(applied({{2, Rule::Rename, Rule::Parameter, "System/A", "System/B", {}}}, text), text);
}

TEST_F(UpgradeRulesTest, WhateverIsDroppedIsListed) {
  Entries entries;
  applied(
      {{2, Rule::Drop, Rule::Section, "Image", "", {}}},
      "<Image><Mode Cur=\"Auto\" Def=\"Auto\"/><View Width=\"1\"><In Cur=\"2\"/></View></Image>",
      &entries);
  std::vector<std::string> listed;
  for (const Entry& entry : entries) listed.push_back(entry.place + " " + entry.before.dump());
  EXPECT_THAT(listed, ElementsAre("parameters.Image.Mode \"Auto\"",
                                  "parameters.Image[\"View/Width\"] \"1\"",
                                  "parameters.Image[\"View/In\"] \"2\""));
}

TEST_F(UpgradeRulesTest, SecretsAreNotReported) {
  Entries entries;
  applied({{2, Rule::Drop, Rule::Member, "RTMP/Target/password", "", {}}},
          "<RTMP><Target password=\"secret\"/></RTMP>", &entries);
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_TRUE(entries[0].before.is_null());
}

TEST_F(UpgradeRulesTest, FaultsAreNamedWithTheirPlaces) {
  EXPECT_THAT(faultsIn(kChain), IsEmpty());
  EXPECT_THAT(faultsIn("{"), ElementsAre(HasSubstr("byte 2: ")));
  EXPECT_THAT(faultsIn("[]"), ElementsAre(HasSubstr(": it must be an object")));
  EXPECT_THAT(faultsIn(R"({"version": 0, "rules": []})"),
              ElementsAre(HasSubstr("version: 0 is outside 1..")));
  EXPECT_THAT(faultsIn(R"({"version": 1, "rules": [{"version": 1}]})"),
              ElementsAre("rules[0]: it must have one of rename, drop, map"));
  EXPECT_THAT(faultsIn(R"({"version": 1, "rules": [{"version": 2, "drop": {"section": "A"}}]})"),
              ElementsAre("rules[0]: its version is above that of the file, 1"));
  EXPECT_THAT(faultsIn(R"({"version": 1, "rules": [{"version": 1, "drop": {"parameter": "A"}}]})"),
              ElementsAre("rules[0].drop.parameter: it must be names with slashes between them"));
  EXPECT_THAT(
      faultsIn(
          R"({"version": 1, "rules": [{"version": 1, "rename": {"section": "A", "to": "A"}}]})"),
      ElementsAre("rules[0].rename.to: it is the name that it has"));
  EXPECT_THAT(
      faultsIn(
          R"({"version": 1, "rules": [{"version": 1, "rename": {"parameter": "A/B", "to": "A/B/C"}}]})"),
      ElementsAre("rules[0].rename.to: it is inside of what gets the name"));
  EXPECT_THAT(faultsIn(R"({"version": 2, "rules": [{"version": 2, "drop": {"section": "A"}},
                                                   {"version": 1, "drop": {"section": "B"}}]})"),
              ElementsAre("rules[1]: rules must be in the order of their versions"));
}

// The schema is tested with the same cases.
TEST_F(UpgradeRulesTest, CasesAreJudgedAsTheSchemaJudgesThem) {
  const tool::Json cases = tool::readJson(*tool::readFile(CAMCFG_RULE_CASES)).value;
  ASSERT_GT(cases.size(), 30U);
  for (const tool::Json& each : cases)
    EXPECT_EQ(faultsIn(each.at("rules").dump()).empty(), each.at("valid").get<bool>())
        << each.dump();
}

TEST_F(UpgradeRulesTest, RuleThatLeadsNowhereIsAFault) {
  const tool::device::Document factory = tool::device::parsed(
      "<System><Mode Cur=\"Always\"/></System><Picture><View Size=\"1\"/></Picture>"
      "<Ports><Other Cur=\"554\"/></Ports>");
  const tool::settings::Faults faults = faultsOf(chain, {factory.get()});
  std::vector<std::string> places;
  for (const auto& fault : faults) places.push_back(fault.place);
  EXPECT_THAT(places, ElementsAre("rules[0]", "rules[3]"));
}

}  // namespace
}  // namespace camcfg::tests
