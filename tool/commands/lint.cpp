#include <algorithm>

#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "device/files.h"
#include "lint/lint.h"
#include "lint/rules.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kRules[] = "--rules";

Json jsonOf(const lint::Finding& finding) {
  return {{"file", finding.file},
          {"line", finding.line},
          {"severity", wordFor(finding.rule->severity)},
          {"rule", finding.rule->id},
          {"text", finding.text}};
}

cli::Answer rules() {
  Json rules = Json::array();
  for (const lint::Rule* rule : lint::kRules)
    rules.push_back({{"id", rule->id},
                     {"severity", wordFor(rule->severity)},
                     {"subject", rule->subject},
                     {"explanation", rule->explanation},
                     {"example", rule->example}});
  return {std::move(rules),
          {cli::Lines{"", "{id} ({severity!}, {subject})\n  {explanation}\n  Example: {example}"}}};
}

cli::Answer answerOf(const std::vector<lint::Source>& sources) {
  cli::Answer answer;
  int errors = 0;
  Json findings = Json::array();
  for (const lint::Finding& finding : lint::lint(sources)) {
    errors += finding.rule->severity == lint::Severity::Error ? 1 : 0;
    findings.push_back(jsonOf(finding));
  }
  const int warnings = static_cast<int>(findings.size()) - errors;
  answer.value = {{"errors", errors}, {"warnings", warnings}, {"files", Json::array()}};
  for (const lint::Source& source : sources) answer.value["files"].push_back(source.name);
  answer.value["findings"] = std::move(findings);
  answer.layout = {cli::Lines{"findings", "{file}:{line}: {severity!}: {text} [{rule}]"}};
  if (errors != 0) answer.status = Status::Refused;
  if (std::none_of(sources.begin(), sources.end(),
                   [](const lint::Source& source) { return source.isRead; }))
    answer.status = Status::Unusable;
  return answer;
}

cli::Answer run(const cli::Arguments& arguments) {
  const std::vector<HostFile>& files = arguments.files(kFile);
  if (arguments.given(kRules)) {
    if (!files.empty()) throw Refusal(Status::Usage, std::string(kRules) + " takes no " + kFile);
    return rules();
  }
  if (!files.empty()) return answerOf(lint::sourcesOf(files));
  const device::FileSet set = device::surveyFiles();
  device::requireAnyFile(set);
  return answerOf(lint::sourcesOf(set));
}

}  // namespace

cli::CommandGroup lintGroup() {
  return {"Files",
          {{"lint",
            "Report hazards in configuration files, each with its file and line",
            {{cli::Option::HostFiles, kFile,
              "Files of any kind instead of the device's; - is standard "
              "input"},
             {cli::Option::Flag, kRules, "List what is looked for, with an example each"}},
            run}}};
}

}  // namespace camcfg::tool::commands
