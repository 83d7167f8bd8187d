#include <camcfg/store.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "lint/lint.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::lint;

using Lines = std::set<int>;

// Sections of parameters, one to a line, whose names begin one another often.
std::string randomParameters(std::mt19937& random) {
  std::string text;
  for (const char* section : {"One", "Two", "Three"}) {
    text += std::string("<") + section + ">\n";
    for (auto count = random() % 8; count > 0; --count) {
      std::string name = "P";
      for (auto length = random() % 4; length > 0; --length) name += "ab"[random() % 2];
      text += "<" + name + " Cur=\"x\" Def=\"x\" OptTxt=\"x\"/>\n";
    }
    text += std::string("</") + section + ">\n";
  }
  return text;
}

Lines linesOf(const std::vector<lint::Finding>& findings, const std::set<std::string>& rules) {
  Lines lines;
  for (const lint::Finding& finding : findings)
    if (rules.count(finding.rule->id) != 0) lines.insert(finding.line);
  return lines;
}

// Goes through the sections as calls do that take only a name.
const tinyxml2::XMLElement* lookupInAll(tinyxml2::XMLDocument& document, const char* name) {
  for (auto* section = document.FirstChildElement(); section != nullptr;
       section = section->NextSiblingElement())
    if (const auto* found = CFG_GetElementByName(section, name)) return found;
  return nullptr;
}

// The lines of the parameters for which a lookup finds something else.
template <typename FindsAnother>
Lines linesWhere(tinyxml2::XMLDocument& document, FindsAnother findsAnother) {
  Lines lines;
  for (auto* section = document.FirstChildElement(); section != nullptr;
       section = section->NextSiblingElement())
    for (auto* parameter = section->FirstChildElement(); parameter != nullptr;
         parameter = parameter->NextSiblingElement())
      if (findsAnother(*section, *parameter)) lines.insert(parameter->GetLineNum());
  return lines;
}

TEST(LintLookupsTest, FindingsAreWhereTheLibrarysLookupsFindAnotherParameter) {
  using Element = tinyxml2::XMLElement;
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same names in every run
  for (int round = 0; round < 200; ++round) {
    const std::string text = randomParameters(random);
    tinyxml2::XMLDocument document;
    document.Parse(text.c_str());
    const auto findings = lint::lint(lint::sourcesOf({{"x.xml", text, ""}}));
    EXPECT_EQ(linesOf(findings, {"parameter-shadowed", "parameter-twice"}),
              linesWhere(document,
                         [](Element& section, Element& parameter) {
                           return CFG_GetElementByName(&section, parameter.Name()) != &parameter;
                         }))
        << text;
    EXPECT_EQ(linesOf(findings, {"name-in-two-sections", "name-begins-earlier"}),
              linesWhere(document,
                         [&](Element& section, Element& parameter) {
                           return lookupInAll(document, parameter.Name())->Parent() != &section;
                         }))
        << text;
  }
}

}  // namespace
}  // namespace camcfg::tests
