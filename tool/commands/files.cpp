#include <algorithm>

#include "commands/groups.h"
#include "device/files.h"
#include "device/repair.h"
#include "lint/lint.h"
#include "lint/rules.h"
#include "upgrade/upgrade.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";

Answer status(const Arguments& /*arguments*/) {
  Outcome outcome = device::checkHealth();
  const char* apart = outcome.value["keptApart"].get<bool>()
                          ? "programs: kept apart"
                          : "programs: not kept apart ({keptApartWhyNot})";
  return Answer(std::move(outcome), {Table{"copies",
                                           {{"FILE", "{file}"},
                                            {"COPY", "{copy}"},
                                            {"STATE", "{state!}"},
                                            {"BYTES", "{bytes}"},
                                            {"CHANGED", "{changed}"},
                                            {"AT START", "{atStart}"}}},
                                     Line{"health: {health!}"}, Line{apart}});
}

Answer verify(const Arguments& arguments) {
  Answer answer(device::verify(arguments.directory(kKeepDamaged), arguments.given(kResync)),
                {Table{"files",
                       {{"FILE", "{name}"},
                        {"MAIN", "{found/main!}", "{now/main!}"},
                        {"BACKUP", "{found/backup!}", "{now/backup!}"},
                        {"DEFAULT", "{found/default!}", "{now/default!}"},
                        {"AT START", "{checkedAtStart}"},
                        {"MAIN FROM", "{restored/main}"},
                        {"BACKUP FROM", "{restored/backup}"}}}});
  if (!answer.value["kept"].empty())
    answer.layout.emplace_back(Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  return answer;
}

Answer boot(const Arguments& /*arguments*/) {
  return Answer(upgrade::upgradeAtStart(device::boot()), {cli::Lines{"done", "{}"}});
}

constexpr char kRules[] = "--rules";

Json jsonOf(const lint::Finding& finding) {
  return {{"file", finding.file},
          {"line", finding.line},
          {"severity", wordFor(finding.rule->severity)},
          {"rule", finding.rule->id},
          {"text", finding.text}};
}

Answer rules() {
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

Answer answerOf(const std::vector<lint::Source>& sources) {
  Answer answer;
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

Answer run(const Arguments& arguments) {
  const std::vector<HostFile>& files = arguments.files(kFile);
  if (arguments.given(kRules)) {
    if (!files.empty())
      throw Refusal(Status::Usage, std::string(kRules) + " cannot be combined with " + kFile);
    return rules();
  }
  if (!files.empty()) return answerOf(lint::sourcesOf(files));
  const device::FileSet set = device::surveyFiles();
  device::requireAnyFile(set);
  return answerOf(lint::sourcesOf(set));
}

}  // namespace

CommandGroup filesGroup() {
  return {
      "Files",
      {command("status", "Show the state of every copy and what the next start does to it", status),
       changer("verify", "Check all files as at start-up and restore broken main copies", verify,
               {{Option::Flag, kResync, "Then bring backups in sync with their main copies"},
                {Option::HostDirectory, kKeepDamaged, "Save the damaged copies in DIR first"}}),
       changer("boot", "Do all that a start of the device should do", boot)}};
}

CommandGroup lintGroup() {
  return {
      "Files",
      {command("lint", "Report hazards in configuration files, each with its file and line", run,
               {{Option::HostFiles, kFile,
                 "Files of any kind instead of the device's; - is standard "
                 "input"},
                {Option::Flag, kRules, "List all rules, each with an example"}})}};
}

}  // namespace camcfg::tool::commands
