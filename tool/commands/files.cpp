#include <algorithm>

#include "commands/groups.h"
#include "device/files.h"
#include "device/repair.h"
#include "document/document.h"
#include "document/trial.h"
#include "lint/lint.h"
#include "lint/rules.h"
#include "upgrade/upgrade.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";
constexpr char kNoSalvage[] = "--no-salvage";

// A device is not well whose files load, but not all that is in them.
void addUnreadSections(Outcome& outcome, Json& findings) {
  for (const auto& [name, fault] : document::unreadSections()) {
    findings.push_back(std::string(name)
                           .append(" cannot be read: ")
                           .append(fault)
                           .append("; 'camcfg help recovery' says what to do"));
    if (outcome.status != Status::Done) continue;
    outcome.status = Status::Degraded;
    outcome.value["health"] = "degraded";
  }
}

Answer status(const Arguments& /*arguments*/) {
  Outcome outcome = deviceHealth();
  const char* apart = outcome.value["keptApart"].get<bool>()
                          ? "programs: kept apart"
                          : "programs: not kept apart ({keptApartWhyNot})";
  outcome.value["pending"] = document::pendingChange();
  Answer answer(std::move(outcome), {Table{"copies",
                                           {{"FILE", "{file}"},
                                            {"COPY", "{copy}"},
                                            {"STATE", "{state!}"},
                                            {"BYTES", "{bytes}"},
                                            {"CHANGED", "{changed}"},
                                            {"AT START", "{atStart}"}}},
                                     Line{"health: {health!}"}, Line{apart}});
  if (!answer.value["pending"].is_null())
    answer.layout.emplace_back(
        Line{"on trial: change {pending/number} by {pending/caller}, until {pending/until} "
             "({pending/secondsLeft} s left): {pending/command}"});
  return answer;
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
  document::rollBackWhatIsOver();
  if (!answer.value["kept"].empty())
    answer.layout.emplace_back(Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  return answer;
}

Answer boot(const Arguments& arguments) {
  Outcome outcome = upgrade::upgradeAtStart(
      device::boot(!arguments.given(kNoSalvage), document::rollBackAtStart));
  Json unread;
  addUnreadSections(outcome, unread);
  return Answer(std::move(outcome), {cli::Lines{"done", "{}"}});
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

Outcome deviceHealth() {
  Outcome outcome = device::checkHealth();
  Json unread = Json::array();
  addUnreadSections(outcome, unread);
  for (const Json& finding : unread) {
    outcome.notes.push_back(finding.text());
    outcome.value["findings"].push_back(finding);
  }
  return outcome;
}

CommandGroup filesGroup() {
  return {
      "Files",
      {command("status", "Show the state of every copy and what the next start does to it", status),
       restorer("verify", "Check all files as at start-up and restore broken main copies", verify,
                {{Option::Flag, kResync, "Then bring backups in sync with their main copies"},
                 {Option::HostDirectory, kKeepDamaged, "Save the damaged copies in DIR first"}}),
       restorer("boot", "Do all that a start of the device should do", boot,
                {{Option::Flag, kNoSalvage,
                  "Replace files of which no copy loads by factory copies, whatever is left of "
                  "them"}})}};
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
