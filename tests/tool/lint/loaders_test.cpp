#include <algorithm>
#include <set>

#include "tool/lint/cases.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

// What lint says of media files is what loaders do: 'graph' loads every section.
class LintLoadersTest : public ToolTest, public testing::WithParamInterface<LintCase> {
 protected:
  ToolRun load(const std::string& other) const {
    device.write(kMpp, fileWith(GetParam(), other));
    return run({"graph"});
  }

  static bool isSaidNotToLoad() {
    static const std::set<std::string> rules = {
        "required-attribute", "minus-one",       "cache-size-missing", "srt-caller-without-host",
        "srt-mode",           "section-missing", "section-nested",     "whitelist-empty"};
    return rules.count(GetParam().rule) != 0 ||
           GetParam().found.find("does not load") != std::string::npos;
  }
};

TEST_P(LintLoadersTest, FileWithTheHazardLoadsUnlessItIsSaidNotTo) {
  const ToolRun result = load(GetParam().hazard);
  EXPECT_EQ(result.status != 0, isSaidNotToLoad()) << result.err;
}

TEST_P(LintLoadersTest, FileMuchLikeItLoads) {
  const ToolRun result = load(GetParam().harmless);
  EXPECT_EQ(result.status, 0) << result.err;
}

std::vector<LintCase> casesOfMedia() {
  std::vector<LintCase> all;
  for (const auto cases : {structureCases, valueCases, mediaCases, streamCases})
    for (const LintCase& lintCase : cases())
      if (lintCase.base == kCleanMedia) all.push_back(lintCase);
  return all;
}

INSTANTIATE_TEST_SUITE_P(Rules, LintLoadersTest, testing::ValuesIn(casesOfMedia()),
                         caseName<LintCase>);

}  // namespace
}  // namespace camcfg::tests
