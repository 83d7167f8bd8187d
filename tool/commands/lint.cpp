#include "lint/lint.h"
#include "base/concat.h"

#include <algorithm>
#include <iterator>

#include "base/line_diff.h"
#include "base/markup.h"
#include "base/outcome.h"
#include "commands/groups.h"
#include "device/change.h"
#include "device/files.h"
#include "lint/fix.h"
#include "lint/forms.h"
#include "lint/rules.h"
#include "lint/steering.h"
#include "settings/secrets.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kRules[] = "--rules";
constexpr char kRule[] = "--rule";
constexpr char kStrict[] = "--strict";
constexpr char kBaseline[] = "--baseline";
constexpr char kFix[] = "--fix";
constexpr char kStandardInput[] = "-";

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
  throw Refusal(Status::Usage, concat(kFormat, ": ", quoted(name), " is none of ", joined(names),
                                      didYouMean(name, names)));
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
    answer.notes.push_back(concat("note: ", count, " finding", count == 1 ? "" : "s",
                                  " of the baseline ", count == 1 ? "is " : "are ", what));
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

std::vector<lint::Finding> steered(const std::vector<lint::Source>& sources,
                                   const Arguments& arguments) {
  std::vector<lint::Finding> findings = lint::lint(sources);
  steeringIn(arguments).apply(findings);
  return findings;
}

/// What can be put right in files, and what it makes of them.
struct Repairs {
  std::vector<lint::FixedFile> files;  ///< one for each source
  Json list = Json::array();
};

// @param mayFix  whether a source is one that is written at all
Repairs repairsOf(const std::vector<lint::Source>& sources, const Arguments& arguments,
                  bool (*mayFix)(const lint::Source& source)) {
  const std::vector<lint::Finding> findings = steered(sources, arguments);
  Repairs repairs;
  for (const lint::Source& source : sources) {
    repairs.files.push_back(mayFix(source) ? lint::fixed(source, findings)
                                           : lint::FixedFile{source.bytes, {}});
    for (const lint::Fix& fix : repairs.files.back().fixes)
      repairs.list.push_back(
          {{"file", source.name}, {"line", fix.line}, {"rule", fix.rule->id}, {"text", fix.text}});
  }
  return repairs;
}

// What may be shown of a file, line by line.
std::string withoutSecrets(const std::string& bytes) {
  std::string text;
  std::size_t at = 0;
  for (const Markup& piece : markupIn(bytes))
    for (const MarkupAttribute& attribute : piece.attributes) {
      const bool isUrl = isSameWord(attribute.name, "url");
      if (!isUrl && !isSameWord(attribute.name, "password")) continue;
      const std::size_t begin = offsetOf(attribute.value, bytes);
      const std::string value(attribute.value);
      text.append(bytes, at, begin - at);
      text += isUrl ? settings::maskedUrl(value) : settings::maskedPassword(value);
      at = begin + value.size();
    }
  return text.append(bytes, at, std::string::npos);
}

std::string listingOf(const std::vector<lint::Source>& sources, const Repairs& repairs) {
  std::string listing;
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (!repairs.files[i].fixes.empty())
      listing += lineDiff(sources[i].name, withoutSecrets(sources[i].bytes),
                          withoutSecrets(repairs.files[i].bytes));
  return listing;
}

void setAll(std::vector<lint::Source>& sources, const Repairs& repairs) {
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (!repairs.files[i].fixes.empty()) lint::setBytes(sources[i], repairs.files[i].bytes);
}

// What was put right, and then what is left.
Answer fixedAnswer(const std::vector<lint::Source>& sources, const Repairs& repairs,
                   const std::string& listing, const Arguments& arguments) {
  Answer answer = answerOf(sources, arguments);
  answer.value["fixed"] = repairs.list;
  if (!listing.empty()) answer.value["change"] = listing;
  if (formIn(arguments) != kForms[0].form) return answer;
  std::vector<cli::Block> layout;
  if (!listing.empty()) layout.emplace_back(Verbatim{listing});
  layout.emplace_back(cli::Lines{"fixed", "{file}:{line}: fixed: {text} [{rule}]"});
  layout.insert(layout.end(), answer.layout.begin(), answer.layout.end());
  if (arguments.given(kDryRun)) layout.emplace_back(Line{"nothing was written"});
  answer.layout = std::move(layout);
  return answer;
}

// The text itself is the answer; what else there is to say goes to standard error.
Answer fixedText(const lint::Source& source, Answer answer) {
  for (const char* list : {"fixed", "findings"})
    for (const Json& each : answer.value[list])
      answer.notes.push_back(concat(source.name, ":", each.find_path("line")->get<int>(), ": ",
                                    each.find_path("text")->text(), " [",
                                    each.find_path("rule")->text(), "]"));
  answer.value["contents"] = source.bytes;
  answer.layout = {Verbatim{source.bytes}};
  return answer;
}

Answer fixFiles(const std::vector<HostFile>& files, const Arguments& arguments) {
  const bool isInput = std::any_of(
      files.begin(), files.end(), [](const HostFile& file) { return file.path == kStandardInput; });
  if (isInput && files.size() > 1)
    throw Refusal(Status::Usage, std::string(kFix) + ": - cannot be combined with other files");
  std::vector<lint::Source> sources = lint::sourcesOf(files);
  const Repairs repairs =
      repairsOf(sources, arguments, [](const auto& /*source*/) { return true; });
  const bool isRehearsal = arguments.given(kDryRun);
  const std::string listing = isRehearsal ? listingOf(sources, repairs) : "";
  for (std::size_t i = 0; i < files.size() && !isRehearsal && !isInput; ++i) {
    if (repairs.files[i].fixes.empty()) continue;
    replace(files[i], repairs.files[i].bytes);
    noteChange();
  }
  setAll(sources, repairs);
  Answer answer = fixedAnswer(sources, repairs, listing, arguments);
  return isInput && !isRehearsal ? fixedText(sources.front(), std::move(answer)) : answer;
}

Answer fixDevice(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, device::Turn::allFiles()));
  const device::FileSet set = device::surveyFiles();
  device::requireAnyFile(set);
  std::vector<lint::Source> sources = lint::sourcesOf(set);
  // Texts are part of the firmware.
  const Repairs repairs = repairsOf(
      sources, arguments, [](const lint::Source& source) { return source.copies != nullptr; });
  if (arguments.given(kDryRun)) {
    const std::string listing = listingOf(sources, repairs);
    setAll(sources, repairs);
    return fixedAnswer(sources, repairs, listing, arguments);
  }
  std::vector<device::Change> changes;
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (!repairs.files[i].fixes.empty())
      changes.push_back(device::changeTo({sources[i].name, repairs.files[i].bytes}));
  device::makeChanges(changes);
  const device::FileSet after = device::surveyFiles();
  return fixedAnswer(lint::sourcesOf(after), repairs, "", arguments);
}

Answer lintAll(const Arguments& arguments) {
  const std::vector<HostFile>& files = arguments.files(kFile);
  if (arguments.given(kRules)) {
    for (const auto& [other, isGiven] :
         {std::pair{kFile, !files.empty()}, std::pair{kFix, arguments.given(kFix)}})
      if (isGiven) throw Refusal(Status::Usage, concat(kRules, " cannot be combined with ", other));
    return rules();
  }
  if (arguments.given(kFix))
    return files.empty() ? fixDevice(arguments) : fixFiles(files, arguments);
  if (arguments.given(kDryRun))
    throw Refusal(Status::Usage, concat(kDryRun, " is of use with ", kFix, " only"));
  if (!files.empty()) return answerOf(lint::sourcesOf(files), arguments);
  const device::FileSet set = device::surveyFiles();
  device::requireAnyFile(set);
  return answerOf(lint::sourcesOf(set), arguments);
}

Candidates ruleWords(const Arguments& /*before*/) {
  Candidates candidates;
  for (const lint::Rule* rule : lint::kRules)
    for (const char* level : {"off", "warning", "error"})
      candidates.push_back({concat(rule->id, "=", level), rule->explanation});
  return candidates;
}

Option replacedFiles() {
  Option files{Option::HostFiles, kFile,
               "Files of any kind instead of the device's; - is standard input"};
  files.isReplaced = true;
  return files;
}

}  // namespace

CommandGroup lintGroup() {
  return {
      "Files",
      {changer(
          "lint", "Report hazards in configuration files, each with its file and line", lintAll,
          {replacedFiles(),
           {Option::Values, kRule, "Change a rule: RULE=off, RULE=warning, RULE=error", ruleWords},
           {Option::Flag, kStrict, "Warnings count, too: the exit status is 1"},
           {Option::HostFileValue, kBaseline,
            "Leave out what is known: an earlier answer of 'lint --json'"},
           {Option::Flag, kFix, "Put right what has one right answer, then report the rest"},
           dryRun(),
           {Option::Value, kFormat, "text, json, sarif, gitlab or github",
            oneOf({"text", "json", "sarif", "gitlab", "github"})},
           {Option::Flag, kRules,
            "List all rules: what, an example, why it matters, what to do"}})}};
}

}  // namespace camcfg::tool::commands
