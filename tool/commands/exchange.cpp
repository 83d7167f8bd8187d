#include "document/exchange.h"

#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kAll[] = "--all";
constexpr char kBackup[] = "--backup";
constexpr char kNoSecrets[] = "--no-secrets";
constexpr char kYes[] = "--yes";

[[noreturn]] void refuseUsage(const std::string& text) {
  throw Refusal(Status::Usage, text);
}

int countOf(const cli::Arguments& arguments, std::initializer_list<const char*> names) {
  int count = 0;
  for (const char* name : names) count += arguments.given(name) ? 1 : 0;
  return count;
}

std::vector<cli::Candidate> exportable(const cli::Arguments& /*before*/) {
  std::vector<cli::Candidate> candidates;
  for (const std::string& name : document::exportNames()) candidates.push_back({name});
  return candidates;
}

cli::Answer exportDocument(const cli::Arguments& arguments) {
  Outcome outcome =
      document::exportSettings(arguments.texts(kSection), !arguments.given(kNoSecrets));
  const std::string text = document::printJson(outcome.value);
  return cli::Answer(std::move(outcome), {cli::Verbatim{text}});
}

// What was changed, or would be; nothing where that failed.
cli::Answer changed(Outcome outcome, const char* unchanged) {
  cli::Answer answer(std::move(outcome));
  if (answer.status != Status::Done) return answer;
  if (answer.value["changes"].empty()) {
    answer.layout = {cli::Line{unchanged}};
    return answer;
  }
  answer.layout = {cli::Table{
      "changes", {{"PLACE", "{place}"}, {"BEFORE", "{before-}"}, {"AFTER", "{after+}"}}}};
  if (answer.value["dryRun"].get<bool>())
    answer.layout.emplace_back(cli::Line{"nothing was written"});
  return answer;
}

document::ImportOptions optionsOf(const cli::Arguments& arguments) {
  return {arguments.given(kDryRun), arguments.given(kShowSecrets)};
}

cli::Answer importDocument(const cli::Arguments& arguments) {
  return changed(document::importSettings(arguments.text(kFile), optionsOf(arguments)),
                 "nothing differs from the device");
}

Outcome compared(const cli::Arguments& arguments) {
  const bool showSecrets = arguments.given(kShowSecrets);
  if (countOf(arguments, {kFile, kFactory, kBackup}) > 1)
    refuseUsage("give one of '--backup', '--factory' and FILE");
  if (arguments.given(kFile))
    return document::compareWithDocument(arguments.text(kFile), showSecrets);
  return document::compareWithCopies(
      arguments.given(kFactory) ? device::Place::Default : device::Place::Backup, showSecrets);
}

cli::Answer diff(const cli::Arguments& arguments) {
  cli::Answer answer(compared(arguments));
  const char* heading = arguments.given(kFile)      ? "DOCUMENT"
                        : arguments.given(kFactory) ? "DEFAULT"
                                                    : "BACKUP";
  if (!answer.value["differences"].empty())
    answer.layout = {cli::Table{
        "differences", {{"PLACE", "{place}"}, {"MAIN", "{device}"}, {heading, "{other}"}}}};
  else if (answer.status == Status::Done)
    answer.layout = {cli::Line{"nothing differs"}};
  return answer;
}

Outcome resetBy(const cli::Arguments& arguments) {
  const int scopes = countOf(arguments, {kSection, kSectionOption, kAll});
  if (scopes != 1)
    refuseUsage(std::string(scopes == 0 ? "nothing is named" : "more than one thing is named") +
                "; give SECTION NAME, '--section SECTION' or '--all'");
  const document::ImportOptions options = optionsOf(arguments);
  if (arguments.given(kSectionOption))
    return document::resetSection(arguments.text(kSectionOption), options);
  if (arguments.given(kAll)) {
    if (!options.rehearse && !arguments.given(kYes))
      refuseUsage(
          "'--all' replaces every setting of the device; '--dry-run' shows what would change, "
          "'--yes' does it");
    return document::resetAll(options);
  }
  if (!arguments.given(kName))
    refuseUsage("which parameter? '--section " + arguments.text(kSection) +
                "' resets the whole section");
  return document::resetParameter(arguments.text(kSection), arguments.text(kName), options);
}

cli::Answer reset(const cli::Arguments& arguments) {
  return changed(resetBy(arguments), "it has its factory values already");
}

}  // namespace

cli::CommandGroup exchangeGroup() {
  return {"Export and import",
          {{"export",
            "Print settings as one JSON document",
            {{cli::Option::OptionalArguments, kSection, "Only these, such as stream or live.srt",
              exportable},
             {cli::Option::Flag, kNoSecrets, "Leave passwords out"}},
            exportDocument},
           {"import",
            "Bring the device to what such a document holds",
            {{cli::Option::HostFile, kFile, "The document; '-' is standard input"},
             {cli::Option::Flag, kDryRun, "Show what would change and write nothing"},
             {cli::Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            importDocument},
           {"diff",
            "Tell which settings differ from the backups, the factory set or a document",
            {{cli::Option::OptionalHostFile, kFile,
              "A document as 'export' prints it; '-' is standard input"},
             {cli::Option::Flag, kBackup,
              "Compare with the backups, which is done if nothing is named"},
             {cli::Option::Flag, kFactory, "Compare with the factory set"},
             {cli::Option::Flag, kShowSecrets, "Show passwords"}},
            diff,
            Status::Usage},
           {"reset",
            "Put factory values back: of a parameter, a section or the whole device",
            {{cli::Option::OptionalArgument, kSection, "Section of a parameter"},
             {cli::Option::OptionalArgument, kName, "Whole name of the parameter"},
             {cli::Option::Value, kSectionOption,
              "All of a section: System, NetWork, presets, live.srt"},
             {cli::Option::Flag, kAll, "The whole device"},
             {cli::Option::Flag, kYes, "Really reset the whole device"},
             {cli::Option::Flag, kDryRun, "Show what would change and write nothing"},
             {cli::Option::Flag, kShowSecrets, "Show passwords in the list of changes"}},
            reset}}};
}

}  // namespace camcfg::tool::commands
