#include <gmock/gmock.h>

#include "lint/lint.h"
#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using tool::HostFile;

/// Files that are given together.
class TogetherTest : public testing::Test {
 protected:
  static std::string linesFor(const std::vector<HostFile>& files) {
    std::string lines;
    for (const tool::lint::Finding& finding : tool::lint::lint(tool::lint::sourcesOf(files)))
      lines += finding.file + ":" + std::to_string(finding.line) + ": " + finding.text + " [" +
               finding.rule->id + "]\n";
    return lines;
  }

  const HostFile parameters_{"factory/business_param.xml", kCleanParameters, ""};
  const HostFile english_{"texts/English.xml", kCleanTexts, ""};
  const HostFile german_{"texts/German.xml", kCleanTexts, ""};
};

TEST_F(TogetherTest, LanguagesAreSoughtAmongFilesOfTexts) {
  EXPECT_EQ(linesFor({parameters_}), "");
  EXPECT_EQ(linesFor({parameters_, english_, german_}), "");
  EXPECT_EQ(linesFor({parameters_, english_}),
            "factory/business_param.xml:2: System/Language: there is no German.xml "
            "[language-option-missing]\n");
  EXPECT_EQ(linesFor({german_, parameters_}),
            "factory/business_param.xml:2: System/Language: there is no English.xml "
            "[language-missing]\n");
}

TEST_F(TogetherTest, PortsAreComparedWhicheverFileComesFirst) {
  std::string text = kCleanMedia;
  text.replace(text.find("Port=\"9000\""), 11, "Port=\"8080\"");
  const HostFile media{"factory/mpp_cfg.xml", text, ""};
  EXPECT_EQ(linesFor({parameters_, media}),
            "factory/mpp_cfg.xml:39: <Instance>: 8080 is the port of <RtspOverHttp> in "
            "factory/business_param.xml at line 7, too [port-of-two-services]\n");
  EXPECT_EQ(linesFor({media, parameters_}),
            "factory/business_param.xml:7: <RtspOverHttp>: 8080 is the port of <Instance> in "
            "factory/mpp_cfg.xml at line 39, too [port-of-two-services]\n");
  EXPECT_EQ(linesFor({parameters_, media, media}), "");
}

}  // namespace
}  // namespace camcfg::tests
