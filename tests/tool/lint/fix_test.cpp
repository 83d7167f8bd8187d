#include "lint/fix.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using namespace tool;

struct LintedText {
  std::vector<lint::Source> sources;
  std::vector<lint::Finding> findings;
};

LintedText lintOf(const std::string& text) {
  LintedText linted{lint::sourcesOf({{"x.xml", text, ""}}), {}};
  linted.findings = lint::lint(linted.sources);
  return linted;
}

lint::FixedFile fixOf(const std::string& text) {
  const LintedText linted = lintOf(text);
  return fixed(linted.sources.front(), linted.findings);
}

// How often each rule finds something.
std::map<std::string, int> rulesOf(const std::string& text) {
  std::map<std::string, int> counts;
  for (const lint::Finding& finding : lintOf(text).findings) ++counts[finding.rule->id];
  return counts;
}

std::string linesOf(const std::vector<lint::Fix>& fixes) {
  std::string lines;
  for (const lint::Fix& fix : fixes)
    lines += std::to_string(fix.line) + ": " + fix.text + " [" + fix.rule->id + "]\n";
  return lines;
}

struct FixCase {
  const char* what;
  std::string before;
  std::string after;
  std::string fixes;
};

std::string withCrLf(std::string text) {
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 2))
    text.insert(at, 1, '\r');
  return text;
}

constexpr char kUnordered[] = R"(<System>

  <!-- Secure. -->
  <WebHttps Cur="1"/>   <!-- the port -->
	<!-- Two -->
	<!-- comments. -->
	<WebHttp
	   Cur = '2'>
	</WebHttp>  <!-- plain -->
  <Other Cur="3"/>
</System>
)";
constexpr char kOrdered[] = R"(<System>

  <!-- Two -->
	<!-- comments. -->
	<WebHttp
	   Cur = '2'>
	</WebHttp>  <!-- plain -->
	<!-- Secure. -->
  <WebHttps Cur="1"/>   <!-- the port -->
  <Other Cur="3"/>
</System>
)";
constexpr char kMovedFix[] = "7: <WebHttp> is now before <WebHttps> [parameter-shadowed]\n";

const std::vector<FixCase> kFixes = {
    {"Mark", "\xef\xbb\xbf<PresetCfg/>\n", "<PresetCfg/>\n",
     "1: the byte order mark is gone [byte-order-mark]\n"},
    {"MarkAfterSpace", "\n\xef\xbb\xbf<PresetCfg/>", "\n<PresetCfg/>",
     "1: the byte order mark is gone [byte-order-mark]\n"},
    {"Spaces",
     "<T>  \n<a  Val=\"x  y\"  b='  '  />\t\r\n<!--  c   \n  --><b Val=\"\"\n    c=\"\" /></T  >\n",
     "<T>\n<a Val=\"x  y\" b='  ' />\r\n<!--  c   \n  --><b Val=\"\"\n    c=\"\" /></T >\n",
     "1: needless white space is gone from 6 places [extra-space]\n"},
    {"SpacesInText", "<T>a  b  \n  c<a Val=\"\"/>  \n</T>\n", "<T>a  b  \n  c<a Val=\"\"/>\n</T>\n",
     "2: needless white space is gone from 1 place [extra-space]\n"},
    {"Tab", "<T><a\t\tVal=\"\"/></T>", "<T><a\tVal=\"\"/></T>",
     "1: needless white space is gone from 1 place [extra-space]\n"},
    {"AttributeCase", "<T>\n<a val=\"val\"/>\n<b VAL='2'/><c Val=''/></T>",
     "<T>\n<a Val=\"val\"/>\n<b Val='2'/><c Val=''/></T>",
     "2: \"val\" is now \"Val\" [attribute-case]\n3: \"VAL\" is now \"Val\" [attribute-case]\n"},
    {"CaseOfWhatLoadersRead",
     "<LiveMediaService><WEBSOCKET>\n<Channel id=\"0\" name='a' "
     "aName='b'/></WEBSOCKET></LiveMediaService>",
     "<LiveMediaService><WEBSOCKET>\n<Channel Id=\"0\" Name='a' "
     "aName='b'/></WEBSOCKET></LiveMediaService>",
     "2: \"id\" is now \"Id\" [unread-attribute]\n"
     "2: \"name\" is now \"Name\" [unread-attribute]\n"},
    {"OfTwoNamesNone", "<System><Rtsp cur=\"1\" Cur=\"2\"/><P cur='1' CUR='2'/></System>",
     "<System><Rtsp cur=\"1\" Cur=\"2\"/><P cur='1' CUR='2'/></System>", ""},
    {"Order", kUnordered, kOrdered, kMovedFix},
    {"OrderOfLinesOfTwoBytes", withCrLf(kUnordered), withCrLf(kOrdered), kMovedFix},
    {"OrderInALine", "<S><Abc Cur='1'/> <Ab Cur='2'/><A Cur='3'/></S>",
     "<S><A Cur='3'/> <Ab Cur='2'/><Abc Cur='1'/></S>",
     "1: <Ab> is now before <Abc> [parameter-shadowed]\n"
     "1: <A> is now before <Ab> [parameter-shadowed]\n"},
    {"OrderInside", "<S>\n<Bc Cur='1'>\n<Qr Cur='1'/>\n<Q Cur='2'/>\n</Bc>\n<B Cur='2'/>\n</S>\n",
     "<S>\n<B Cur='2'/>\n<Bc Cur='1'>\n<Q Cur='2'/>\n<Qr Cur='1'/>\n</Bc>\n</S>\n",
     "4: <Q> is now before <Qr> [parameter-shadowed]\n"
     "6: <B> is now before <Bc> [parameter-shadowed]\n"},
    {"OfOneNameNone", "<S>\n<Bc Cur='1'/>\n<B Cur='2'/>\n<B Cur='3'/>\n</S>",
     "<S>\n<Bc Cur='1'/>\n<B Cur='2'/>\n<B Cur='3'/>\n</S>", ""},
    {"CommentApart", "<S>\n<Bc Cur='1'/>\n\n<!-- Rest. -->\n\n<B Cur='2'/>\n</S>",
     "<S>\n<B Cur='2'/>\n\n<!-- Rest. -->\n\n<Bc Cur='1'/>\n</S>",
     "6: <B> is now before <Bc> [parameter-shadowed]\n"},
    {"Allowed",
     "<S>\n<Bc Cur='1'/>\n<!-- lint: allow parameter-shadowed: old -->\n<B Cur='2'/>\n</S>",
     "<S>\n<Bc Cur='1'/>\n<!-- lint: allow parameter-shadowed: old -->\n<B Cur='2'/>\n</S>", ""},
    {"NotWellFormed", "\xef\xbb\xbf<S>  \n", "\xef\xbb\xbf<S>  \n", ""},
    {"CutOff", std::string("<S>  \n</S>\0  \n", 13), std::string("<S>  \n</S>\0  \n", 13), ""},
};

std::string fixName(const testing::TestParamInfo<FixCase>& info) {
  return info.param.what;
}

inline void PrintTo(const FixCase& fixCase, std::ostream* out) {
  *out << fixCase.what;
}

class FixTest : public testing::TestWithParam<FixCase> {};

TEST_P(FixTest, ChangesWhatItSaysAndNoOtherByte) {
  const lint::FixedFile file = fixOf(GetParam().before);
  EXPECT_EQ(file.bytes, GetParam().after);
  EXPECT_EQ(linesOf(file.fixes), GetParam().fixes);
  EXPECT_EQ(file.fixes.empty(), GetParam().before == GetParam().after);
}

TEST_P(FixTest, ChangesNothingTheSecondTime) {
  EXPECT_EQ(linesOf(fixOf(GetParam().after).fixes), "");
}

INSTANTIATE_TEST_SUITE_P(Files, FixTest, testing::ValuesIn(kFixes), fixName);

// Of files with a hazard, each with more of what is put right.
std::vector<std::string> hazards() {
  std::vector<std::string> all;
  for (const LintCase& lintCase : allCases()) {
    const std::string text = fileWith(lintCase, lintCase.hazard);
    all.push_back(text);
    std::string untidy = "\xef\xbb\xbf" + text;
    for (const char* part : {" Cur=", "</Image>", " Id="})
      if (const std::size_t at = untidy.find(part); at != std::string::npos)
        untidy.insert(at, "  ");
    all.push_back(withCrLf(untidy));
  }
  return all;
}

TEST(FixAllTest, WhatIsPutRightIsFoundNoMoreAndNothingElseComesUp) {
  int fixedFiles = 0;
  for (const std::string& text : hazards()) {
    SCOPED_TRACE(text);
    const lint::FixedFile file = fixOf(text);
    std::map<std::string, int> before = rulesOf(text);
    std::set<std::string> rules;
    for (const lint::Fix& fix : file.fixes) rules.insert(fix.rule->id);
    for (const auto& [rule, count] : rulesOf(file.bytes)) {
      EXPECT_LE(count, before[rule]) << rule;
      EXPECT_EQ(rules.count(rule), 0U) << rule;
    }
    EXPECT_EQ(file.fixes.empty(), file.bytes == text);
    EXPECT_EQ(fixOf(file.bytes).bytes, file.bytes);
    fixedFiles += file.fixes.empty() ? 0 : 1;
  }
  EXPECT_GT(fixedFiles, 100);
}

}  // namespace
}  // namespace camcfg::tests
