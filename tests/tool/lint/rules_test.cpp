#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "lint/lint.h"
#include "lint/rules.h"
#include "tool/lint/cases.h"
#include "tool/lint/device_cases.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::lint;

std::string lineOf(const lint::Finding& finding) {
  return finding.file + ":" + std::to_string(finding.line) + ": " +
         wordFor(finding.rule->severity) + ": " + finding.text + " [" + finding.rule->id + "]\n";
}

std::string linesFor(const std::string& contents) {
  std::string lines;
  for (const lint::Finding& finding : lint::lint(lint::sourcesOf({{"x.xml", contents, ""}})))
    lines += lineOf(finding);
  return lines;
}

std::vector<LintCase> allCases() {
  std::vector<LintCase> all;
  for (const auto cases : {structureCases, valueCases, parameterCases, networkCases, presetCases,
                           mediaCases, streamCases, languageCases, relationCases})
    for (const LintCase& lintCase : cases()) all.push_back(lintCase);
  return all;
}

class LintRuleTest : public testing::TestWithParam<LintCase> {};

TEST_P(LintRuleTest, FindsItsHazardOnItsLine) {
  EXPECT_EQ(linesFor(fileWith(GetParam(), GetParam().hazard)), GetParam().found);
  EXPECT_THAT(GetParam().found, testing::HasSubstr(std::string(" [") + GetParam().rule + "]\n"));
}

TEST_P(LintRuleTest, PassesByAFileMuchLikeIt) {
  ASSERT_NE(GetParam().hazard, GetParam().harmless);
  EXPECT_EQ(linesFor(fileWith(GetParam(), GetParam().harmless)), "");
}

INSTANTIATE_TEST_SUITE_P(Rules, LintRuleTest, testing::ValuesIn(allCases()), caseName<LintCase>);

TEST(LintRulesTest, EachRuleHasAFileThatTriggersItAndOneThatDoesNot) {
  std::set<std::string> tested;
  for (const LintCase& lintCase : allCases()) tested.insert(lintCase.rule);
  for (const DeviceCase& deviceCase : deviceCases()) tested.insert(deviceCase.rule);
  std::set<std::string> rules;
  for (const lint::Rule* rule : lint::kRules)
    EXPECT_TRUE(rules.insert(rule->id).second) << rule->id << " is there twice";
  EXPECT_EQ(tested, rules);
}

TEST(LintRulesTest, EachRuleIsExplainedWithAnExample) {
  const auto isOneLine = [](const std::string& text) {
    return text.size() > 10 && text.find('\n') == std::string::npos;
  };
  for (const lint::Rule* rule : lint::kRules)
    EXPECT_TRUE(isOneLine(rule->explanation) && isOneLine(rule->example)) << rule->id;
}

TEST(LintRulesTest, CleanFilesOfEachKindHaveNoFindings) {
  for (const char* clean : {kCleanParameters, kCleanPresets, kCleanMedia, kCleanTexts})
    EXPECT_EQ(linesFor(clean), "");
}

TEST(LintRulesTest, LongNamesAndValuesAreCutInFindings) {
  std::string name;
  for (int i = 0; i < 100; ++i) name += "\xc3\xbc";
  const std::string found = linesFor("<Texts><" + name + " Val=\"a\"/>\n<" + name + "/></Texts>");
  std::string shown;
  for (int i = 0; i < 40; ++i) shown += "\xc3\xbc";
  EXPECT_EQ(found, "x.xml:2: error: " + shown +
                       "...: a lookup finds the one at line 1 [text-twice]\n"
                       "x.xml:2: warning: " +
                       shown + "... has no \"Val\" [text-missing]\n");
}

TEST(LintRulesTest, AHundredThousandParametersThatBeginOneAnotherTakeSeconds) {
  constexpr int kCount = 100000;
  std::string text = "<System>\n";
  for (int i = kCount; i > 0; --i)
    text += "<P" + std::to_string(i) + " Cur=\"1\" Def=\"1\" Min=\"0\" Max=\"9\" Step=\"1\"/>\n";
  text += "</System>\n<NetWork Hostname=\"gate\"/>\n";
  const auto findings = lint::lint(lint::sourcesOf({{"x.xml", text, ""}}));
  // All but those with as many digits as the first; and the six settings of the system.
  EXPECT_EQ(std::count_if(findings.begin(), findings.end(),
                          [](const lint::Finding& finding) {
                            return std::string(finding.rule->id) == "parameter-shadowed";
                          }),
            10000);
  EXPECT_EQ(findings.size(), 10006U);
}

}  // namespace
}  // namespace camcfg::tests
