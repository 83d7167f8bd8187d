#include "lint/lint.h"

#include <algorithm>
#include <iterator>

#include "commands/groups.h"
#include "device/files.h"
#include "lint/forms.h"
#include "lint/rules.h"
#include "lint/steering.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kRules[] = "--rules";
constexpr char kRule[] = "--rule";
constexpr char kStrict[] = "--strict";
constexpr char kBaseline[] = "--baseline";

Answer rules() {
  Json rules = Json::array();
  for (const lint::Rule* rule : lint::kRules)
    rules.push_back({{"id", rule->id},
                     {"severity", wordFor(rule->severity)},
                     {"subject", rule->subject},
                     {"explanation", rule->explanation},
                     {"example", rule->example},
                     {"why", rule->why},
                     {"fix", rule->fix}});
  return {std::move(rules),
          {cli::Lines{"",
                      "{id} ({severity!}, {subject})\n  {explanation}\n  Example: {example}\n"
                      "  Why: {why}\n  Fix: {fix}"}}};
}

// What is shown of findings, in the form asked for.
using Form = cli::Block (*)(const std::vector<lint::Finding>&);

constexpr struct {
  const char* name;
  Form form;
} kForms[] = {{"text",
               [](const auto& /*findings*/) -> cli::Block {
                 return cli::Lines{"findings", "{file}:{line}: {severity!}: {text} [{rule}]"};
               }},
              {"json", [](const auto& /*findings*/) -> cli::Block { return cli::WholeValue{}; }},
              {"sarif",
               [](const auto& findings) -> cli::Block {
                 return Verbatim{lint::sarifOf(findings).dump(2) + "\n"};
               }},
              {"gitlab",
               [](const auto& findings) -> cli::Block {
                 return Verbatim{lint::gitlabOf(findings).dump(2) + "\n"};
               }},
              {"github", [](const auto& findings) -> cli::Block {
                 return Verbatim{lint::githubOf(findings)};
               }}};

Form formIn(const Arguments& arguments) {
  const std::string name = arguments.given(kFormat) ? arguments.text(kFormat) : kForms[0].name;
  std::vector<std::string> names;
  for (const auto& form : kForms) {
    if (name == form.name) return form.form;
    names.emplace_back(form.name);
  }
  throw Refusal(Status::Usage, std::string(kFormat) + ": " + quoted(name) + " is none of " +
                                   joined(names) + didYouMean(name, names));
}

lint::Steering steeringIn(const Arguments& arguments) {
  lint::Steering steering;
  for (const std::string& rule : arguments.texts(kRule)) steering.set(rule);
  if (arguments.given(kBaseline)) steering.setBaseline(arguments.text(kBaseline));
  return steering;
}

void addKnown(const lint::Steering& steering, Answer& answer) {
  answer.value["known"] = steering.known();
  answer.value["gone"] = steering.gone();
  const auto note = [&](std::size_t count, const char* what) {
    if (count == 0) return;
    answer.notes.push_back("note: " + std::to_string(count) + " finding" + (count == 1 ? "" : "s") +
                           " of the baseline " + (count == 1 ? "is " : "are ") + what);
  };
  note(steering.known(), "left out");
  note(steering.gone(), "there no longer");
}

Answer answerOf(const std::vector<lint::Source>& sources, const Arguments& arguments) {
  const Form form = formIn(arguments);
  lint::Steering steering = steeringIn(arguments);
  std::vector<lint::Finding> findings = lint::lint(sources);
  steering.apply(findings);
  const auto errors = std::count_if(findings.begin(), findings.end(), [](const auto& finding) {
    return finding.severity == lint::Severity::Error;
  });
  const auto count = static_cast<std::ptrdiff_t>(findings.size());
  Answer answer;
  answer.value = {{"errors", errors}, {"warnings", count - errors}, {"files", Json::array()}};
  for (const lint::Source& source : sources) answer.value["files"].push_back(source.name);
  answer.value["findings"] = lint::jsonOf(findings);
  if (arguments.given(kBaseline)) addKnown(steering, answer);
  answer.layout = {form(findings)};
  if (errors != 0 || (arguments.given(kStrict) && count != 0)) answer.status = Status::Refused;
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
  if (!files.empty()) return answerOf(lint::sourcesOf(files), arguments);
  const device::FileSet set = device::surveyFiles();
  device::requireAnyFile(set);
  return answerOf(lint::sourcesOf(set), arguments);
}

Candidates ruleWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const lint::Rule* rule : lint::kRules)
    for (const char* level : {"off", "warning", "error"})
      candidates.push_back({rule->id + ("=" + std::string(level)), rule->explanation});
  return candidates;
}

}  // namespace

CommandGroup lintGroup() {
  return {
      "Files",
      {command(
          "lint", "Report hazards in configuration files, each with its file and line", run,
          {{Option::HostFiles, kFile,
            "Files of any kind instead of the device's; - is standard input"},
           {Option::Values, kRule, "Change a rule: RULE=off, RULE=warning, RULE=error", ruleWords},
           {Option::Flag, kStrict, "Warnings count, too: the exit status is 1"},
           {Option::HostFileValue, kBaseline,
            "Leave out what is known: an earlier answer of 'lint --json'"},
           {Option::Value, kFormat, "text, json, sarif, gitlab or github",
            oneOf({"text", "json", "sarif", "gitlab", "github"})},
           {Option::Flag, kRules,
            "List all rules: what, an example, why it matters, what to do"}})}};
}

}  // namespace camcfg::tool::commands
