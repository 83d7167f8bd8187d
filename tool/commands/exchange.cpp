#include "document/exchange.h"
#include "base/concat.h"

#include <unistd.h>

#include "base/plain_text.h"
#include "base/progress.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/placed.h"
#include "document/section_names.h"
#include "document/single.h"
#include "parameters/parameter.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kAll[] = "--all";
constexpr char kBackup[] = "--backup";
constexpr char kChanged[] = "--changed";
constexpr char kNoSecrets[] = "--no-secrets";
constexpr char kPartial[] = "--partial";
constexpr char kYes[] = "--yes";

int countOf(const Arguments& arguments, std::initializer_list<const char*> names) {
  int count = 0;
  for (const char* name : names) count += arguments.given(name) ? 1 : 0;
  return count;
}

Candidates exportable(const Arguments& /*before*/) {
  Candidates candidates;
  for (const std::string& name : document::sectionNames()) candidates.push_back({name});
  return candidates;
}

Answer exportDocument(const Arguments& arguments) {
  Outcome outcome = document::exportSettings(
      arguments.texts(kSection),
      {!arguments.given(kNoSecrets), arguments.given(kPartial), arguments.given(kChanged)});
  const std::string text = document::printJson(outcome.value);
  return Answer(std::move(outcome), {Verbatim{text}});
}

// "9 entries of live.rtsp and 1 of presets"
std::string textOf(const std::vector<document::Deletion>& deletions) {
  std::string text;
  for (const auto& [section, entries] : deletions)
    text += concat(text.empty() ? "" : ", ", entries,
                   text.empty() ? entries == 1 ? " entry" : " entries" : "", " of ", section);
  return text;
}

// Whoever asked for deletions entry by entry need not be asked again.
void beforeDeleting(const Arguments& arguments, document::Mode mode,
                    const std::vector<document::Deletion>& deletions) {
  const std::string text = textOf(deletions);
  const bool isAsked = mode != document::Mode::Merge && !arguments.given(kDryRun) &&
                       !arguments.given(kYes) && isatty(STDERR_FILENO) == 1;
  if (isAsked)
    throw Refusal(Status::Usage,
                  concat("this deletes ", text,
                         ", which the document does not have; '--dry-run' shows them, "
                         "'--yes' does it, '--mode merge' keeps them"));
  announce((arguments.given(kDryRun) ? "note: would delete " : "note: deletes ") + text);
}

Answer importDocument(const Arguments& arguments) {
  const device::Turn turn(arguments.given(kDryRun) ? device::Turn::Files()
                                                   : device::Turn::allFiles());
  const document::Mode mode = modeOf(arguments);
  return changed(document::importSettings(arguments.text(kFile), mode, importOptions(arguments),
                                          [&](const std::vector<document::Deletion>& deletions) {
                                            beforeDeleting(arguments, mode, deletions);
                                          }),
                 "nothing differs from the device");
}

Outcome compared(const Arguments& arguments) {
  const bool showSecrets = arguments.given(kShowSecrets);
  if (countOf(arguments, {kFile, kFactory, kBackup}) > 1)
    throw Refusal(Status::Usage, "give one of '--backup', '--factory' and FILE");
  if (arguments.given(kFile))
    return document::compareWithDocument(arguments.text(kFile), showSecrets);
  return document::compareWithCopies(
      arguments.given(kFactory) ? device::Place::Default : device::Place::Backup, showSecrets);
}

Answer diff(const Arguments& arguments) {
  Answer answer(compared(arguments));
  const char* heading = arguments.given(kFile)      ? "DOCUMENT"
                        : arguments.given(kFactory) ? "DEFAULT"
                                                    : "BACKUP";
  if (!answer.value["differences"].empty())
    answer.layout = {
        Table{"differences", {{"PLACE", "{place}"}, {"MAIN", "{device}"}, {heading, "{other}"}}}};
  else if (answer.status == Status::Done)
    answer.layout = {Line{"nothing differs"}};
  return answer;
}

// A word by itself that is, or comes nearest to, a section and no parameter.
void requireNoSection(const std::string& word) {
  const parameters::Parameters parameters;
  if (isAmong(parameters.sections(), word))
    throw Refusal(Status::Usage,
                  concat("which parameter? '--section ", word, "' resets the whole section"));
  if (word.find_first_of("/.") != std::string::npos) return;
  std::vector<std::string> names;
  for (const parameters::Parameter& parameter : parameters.all())
    names.push_back(parameter.name.substr(parameter.name.rfind('/') + 1));
  std::vector<std::string> known = document::sectionNames();
  known.insert(known.end(), names.begin(), names.end());
  if (!isAmong(names, word) && !isAmong(names, nearestWord(word, known)))
    throw Refusal(document::whyNoSection(word));
}

Outcome resetBy(const Arguments& arguments) {
  const int scopes = countOf(arguments, {kSection, kSectionOption, kAll});
  if (scopes != 1)
    throw Refusal(Status::Usage,
                  std::string(scopes == 0 ? "nothing is named" : "more than one thing is named") +
                      "; give a parameter, '--section SECTION' or '--all'");
  const document::ImportOptions options = importOptions(arguments);
  if (arguments.given(kSectionOption))
    return document::resetSection(arguments.text(kSectionOption), options);
  if (arguments.given(kAll)) {
    if (!options.rehearse && !arguments.given(kYes))
      throw Refusal(
          Status::Usage,
          "'--all' replaces every setting of the device; '--dry-run' shows what would change, "
          "'--yes' does it");
    return document::resetAll(options);
  }
  const std::string word = arguments.text(kSection);
  if (!arguments.given(kName)) requireNoSection(word);
  const std::string place = document::placeInDocument(
      arguments.given(kName) ? concat(word, "/", arguments.text(kName)) : word);
  if (document::isInDocument(place)) return document::resetSingle(place, options);
  return arguments.given(kName) ? document::resetParameter(word, arguments.text(kName), options)
                                : document::resetParameter(place, "", options);
}

Answer reset(const Arguments& arguments) {
  const device::Turn turn(arguments.given(kDryRun) ? device::Turn::Files()
                                                   : device::Turn::allFiles());
  return changed(resetBy(arguments), "it has its factory values already");
}

}  // namespace

CommandGroup exchangeGroup() {
  return {
      "Export and import",
      {command("export", "Print settings as one JSON document", exportDocument,
               {{Option::OptionalArguments, kSection,
                 "Only these, such as System, stream or live.srt", exportable},
                {Option::Flag, kChanged, "Only what differs from the factory set"},
                {Option::Flag, kNoSecrets, "Leave passwords out"},
                {Option::Flag, kPartial, "Leave out, and name, what cannot be read"}}),
       changer("import", "Set the device to the contents of such a document", importDocument,
               {{Option::HostFile, kFile, "The document; '-' is standard input"},
                {Option::Value, kMode,
                 "merge: delete nothing; replace, the default: lists become what the document has; "
                 "override: and what it does not name gets factory values, except for the network",
                 oneOf({"merge", "replace", "override"}), nullptr, "MODE"},
                {Option::Flag, kYes, "Delete entries without being asked at a terminal"},
                {Option::Flag, kForce,
                 "Take what 'set --force' and 'network set --force' take, and texts that are not "
                 "UTF-8 and new; and confirm a change that is on trial first"},
                dryRun(),
                {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}}),
       command(
           "diff", "Show which settings differ from the backups, the factory set or a document",
           diff,
           {{Option::OptionalHostFile, kFile,
             "A document as 'export' prints it; '-' is standard input"},
            {Option::Flag, kBackup, "Compare with the backups, which is done if nothing is named"},
            {Option::Flag, kFactory, "Compare with the factory set"},
            {Option::Flag, kShowSecrets, "Show passwords"}},
           Status::Usage),
       changer(
           "reset", "Put factory values back: of a parameter, a section or the whole device", reset,
           {{Option::OptionalArgument, kSection,
             "Section of a parameter; or a place, SECTION/NAME or what 'find' prints"},
            {Option::OptionalArgument, kName, "Whole name of the parameter"},
            {Option::Value, kSectionOption, "All of a section: System, NetWork, presets, live.srt"},
            {Option::Flag, kAll, "The whole device"},
            {Option::Flag, kYes, "Really reset the whole device"},
            dryRun(),
            {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}})}};
}

}  // namespace camcfg::tool::commands
