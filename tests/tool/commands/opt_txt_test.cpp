#include <tinyxml2.h>

#include <algorithm>

#include "cli/completion.h"
#include "commands/groups.h"
#include "device/files.h"
#include "lint/lint.h"
#include "settings/value.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::settings;

/// A text, and whether an "OptTxt" has it as a whole one.
struct Asked {
  std::string optTxt;
  std::string text;
  bool isWhole;
  bool isPart = true;  ///< the library accepts it
};

void PrintTo(const Asked& asked, std::ostream* out) {
  *out << "'" << asked.text << "' of '" << asked.optTxt << "'";
}

const std::vector<Asked> kAsked = {
    {"Auto,Half-Auto,Manual", "Auto", true},
    {"Auto,Half-Auto,Manual", "Half-Auto", true},
    {"Auto,Half-Auto,Manual", "Manual", true},
    {"Auto,Half-Auto,Manual", "Half", false},
    {"Half-Auto,Manual", "Auto", false},
    {"Auto,Manual", "Man", false},
    {"Auto,Manual", "uto", false},
    {"Auto,Manual", "auto", false, false},
    {"Auto,Manual", "Off", false, false},
    {"Auto,Manual", "Auto,Manual", false},
    {"Auto,Manual", "Auto,Man", false},
    {"Auto,Manual", ",", false},
    {"Auto,Manual", "", false},
    {"Auto, Manual", "Manual", true},
    {"Auto, Manual", "", false},
    {"Auto;Man;Manual", "Man", true},
    {"On|Off", "Off", true},
    {"On|Off", "Of", false},
    {"Slow/Fast", "Fast", true},
    {"Slow Fast", "Slow", true},
    {"Slow Fast", "Slow Fast", false},
    {"Slow Fast,A/B", "Slow Fast", true},
    {"Slow Fast,A/B", "Slow", false},
    {"Slow Fast,A/B", "A", false},
    {"A B/C D", "C D", true},
    {"A B/C D", "C", false},
    {"DD.MM.YYYY,MM/DD/YYYY", "MM/DD/YYYY", true},
    {"DD.MM.YYYY,MM/DD/YYYY", "MM", false},
    {"1/25,1/50", "1/50", true},
    {"1/25,1/50", "1/5", false},
    {"High Quality,Low", "High Quality", true},
    {"10.5,1.5", "1.5", true},
    {"10.5,1.5", "5", false},
    {"a_b,c", "a", false},
    {"R&D <1> \"x\",Off", "R&D <1> \"x\"", true},
    {"R&D <1> \"x\",Off", "R", false},
    {"\xc3\xbc"
     "ber,a",
     "ber", false},
    {"", "", true},
    {",", "", true},
};

class OptTxtTest : public ToolTest, public testing::WithParamInterface<Asked> {
 protected:
  OptTxtTest() {
    tinyxml2::XMLDocument document;
    for (const char* section : {"A", "NetWork"})
      document.InsertEndChild(document.NewElement(section));
    tinyxml2::XMLElement& element = *document.FirstChildElement()->InsertNewChildElement("B");
    element.SetAttribute("Cur", GetParam().text.c_str());
    element.SetAttribute("Def", "");
    element.SetAttribute("OptTxt", GetParam().optTxt.c_str());
    document.LastChildElement()->SetAttribute("Hostname", "gate");
    contents_ = tool::written(document);
  }

  std::string contents_;
};

TEST_P(OptTxtTest, GrammarSetAndLintAgree) {
  const auto& [optTxt, text, isWhole, isPart] = GetParam();
  EXPECT_EQ(isWholeOption(optTxt, text), isWhole);

  writeBoth(with(contents_, "Cur=\"", "Cur=\"before"));
  EXPECT_EQ(run({"set", "A", "B", "--", text}).status, isWhole ? 0 : 1);
  EXPECT_EQ(run({"set", "--force", "A", "B", "--", text}).status, isPart ? 0 : 1);

  const std::string rule = isPart ? "part-of-option" : "not-an-option";
  const auto findings = lint::lint(lint::sourcesOf({{"x.xml", contents_, ""}}));
  const auto found = std::count_if(findings.begin(), findings.end(), [&](const auto& finding) {
    return finding.rule->id == rule && finding.text.find("\"Cur\"") != std::string::npos;
  });
  EXPECT_EQ(found, isWhole ? 0 : 1) << contents_;
}

TEST_P(OptTxtTest, EveryTextThatIsOfferedCanBeSet) {
  writeBoth(contents_);
  for (const std::string& text : optionsIn(GetParam().optTxt)) {
    EXPECT_TRUE(isWholeOption(GetParam().optTxt, text)) << text;
    EXPECT_EQ(run({"set", "A", "B", "--", text}).status, 0) << text;
  }
}

TEST_P(OptTxtTest, TextsThatAreOfferedAreThoseOfTheCompletion) {
  testkit::DeviceRoot entered;
  entered.write(kBusiness, contents_);
  cli::Arguments before = cli::placeIn(commands::allGroups(), {""}).before;
  before["PLACE=VALUE"].texts = {"A", "B"};
  std::vector<std::string> words;
  for (const cli::Candidate& candidate : commands::wordsFor("PLACE=VALUE")(before))
    words.push_back(candidate.word);
  EXPECT_EQ(words, optionsIn(GetParam().optTxt));
}

INSTANTIATE_TEST_SUITE_P(Texts, OptTxtTest, testing::ValuesIn(kAsked));

}  // namespace
}  // namespace camcfg::tests
