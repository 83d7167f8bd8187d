#include "tool/lint/cases.h"

namespace camcfg::tests {

std::vector<LintCase> allCases() {
  std::vector<LintCase> all;
  for (const auto cases : {structureCases, textCases, valueCases, parameterCases, networkCases,
                           presetCases, mediaCases, streamCases, languageCases, relationCases})
    for (const LintCase& lintCase : cases()) all.push_back(lintCase);
  return all;
}

std::string fileWith(const LintCase& lintCase, const std::string& other) {
  std::string text = lintCase.base;
  const std::string part = lintCase.part;
  std::size_t at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  for (; at != std::string::npos; at = text.find(part, at + other.size()))
    text.replace(at, part.size(), other);
  return text;
}

}  // namespace camcfg::tests
