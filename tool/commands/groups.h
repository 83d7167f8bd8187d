#ifndef CAMCFG_TOOL_COMMANDS_GROUPS_H
#define CAMCFG_TOOL_COMMANDS_GROUPS_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "device/section.h"
#include "device/turn.h"
#include "document/exchange.h"
#include "parameters/parameter.h"
#include "settings/setting.h"

namespace camcfg::tool::commands {

using cli::Answer;
using cli::Arguments;
using cli::CommandGroup;
using cli::Fields;
using cli::Line;
using cli::oneOf;
using cli::Option;
using cli::Table;
using cli::Verbatim;
using Candidates = std::vector<cli::Candidate>;

// Names that several commands give to what they take. What is in a place is completed by its
// name, see addWords.
constexpr char kAssignment[] = "PLACE=VALUE";
constexpr char kCard[] = "CARD";
constexpr char kField[] = "FIELD";
constexpr char kFieldValue[] = "FIELD=VALUE";
constexpr char kFile[] = "FILE";
constexpr char kId[] = "ID";
constexpr char kKey[] = "KEY";
constexpr char kKind[] = "KIND";
constexpr char kLanguage[] = "LANGUAGE";
constexpr char kName[] = "NAME";
constexpr char kPlace[] = "PLACE";
constexpr char kPreset[] = "PRESET";
constexpr char kSection[] = "SECTION";
constexpr char kSource[] = "SOURCE";

constexpr char kDryRun[] = "--dry-run";
constexpr char kFactory[] = "--factory";
constexpr char kForce[] = "--force";
constexpr char kFormat[] = "--format";
constexpr char kMode[] = "--mode";
constexpr char kSectionOption[] = "--section";
constexpr char kShowSecrets[] = "--show-secrets";

/// What a command answers that finds nothing to change.
constexpr char kSoAlready[] = "it is so already; nothing was written";

/// The option of commands that change something: they write nothing then.
inline Option dryRun() {
  return {Option::Flag, kDryRun, "Show what would change and write nothing"};
}

/// The files that a command is going to change; none if it only shows what would change.
inline device::Turn::Files filesFor(const Arguments& arguments, const device::Turn::Files& files) {
  return arguments.given(kDryRun) ? device::Turn::Files() : files;
}

/// A row of a group's table: what it is called, what it does, how, and what it takes.
/// @param run  null: only a heading for those below it
inline cli::Command command(const char* name, const char* help, Answer (*run)(const Arguments&),
                            std::vector<Option> options = {}, Status whenRefused = Status::Refused,
                            bool hidden = false) {
  return {name, help, std::move(options), run, whenRefused, hidden};
}

/// The same for a command that restores what was there, and sets nothing.
inline cli::Command restorer(const char* name, const char* help, Answer (*run)(const Arguments&),
                             std::vector<Option> options = {}) {
  cli::Command restorer = command(name, help, run, std::move(options));
  restorer.changesDevice = true;
  return restorer;
}

/// The same for a command that changes settings, if only when it is given a value.
inline cli::Command changer(const char* name, const char* help, Answer (*run)(const Arguments&),
                            std::vector<Option> options = {}) {
  cli::Command changer = restorer(name, help, run, std::move(options));
  changer.changesSettings = true;
  return changer;
}

/// A command with what its help adds.
inline cli::Command withDetails(cli::Command command, std::function<std::string()> details) {
  command.details = std::move(details);
  return command;
}

// The words that the device has, for the completion of command lines. They throw a Refusal if the
// device's files are unusable, and load nothing but the file that the words are in.

/// The words that may be in the place of an argument or option of this name; null if nobody knows.
cli::WordFinder wordsFor(const std::string& name);

/// Gives those to the arguments and options that say nothing of their words.
void addWords(std::vector<CommandGroup>& groups);

/// Has what commands change reviewed: what lint would call an error is refused unless it is forced, and
/// every new finding is reported.
void addReviews(std::vector<CommandGroup>& groups);

/// Gives the commands their examples.
void addExamples(std::vector<CommandGroup>& groups);

/// For an argument that is named like another one, but whose words nobody knows.
Candidates anyWord(const Arguments& before);
Candidates presetIdWords(const Arguments& before);
/// Names of network cards, and their interfaces.
Candidates cardOrInterfaceWords(const Arguments& before);
/// The keys of a section's entries, each with what says which one it is.
Candidates entryWords(const settings::Table& table);
Candidates cacheIdWords(const Arguments& before);
/// Sources that the cache ID given allows.
Candidates allowedSourceWords(const Arguments& before);

// What several commands show.

/// The device's name, language and ports.
/// @param above  the path to them in an answer, "system/"
Fields systemFields(const std::string& above);

// Settings, by their descriptions.

/// Settings by the ranks of their columns.
settings::Settings byRank(settings::Settings settings);

/// A table of the settings that are listed.
Table columnsOf(const settings::Settings& settings);

/// What can be read of something, with what is left out, and why, in the notes.
/// @throws Refusal (unusable) if nothing can be read
Answer readableAnswer(device::Readable readable, std::vector<cli::Block> layout);

/// Sets one parameter, with the turn taken.
Answer setOne(const parameters::Assignment& assignment, bool force, bool rehearse = false);

/// What was changed, or would be; nothing where that failed.
/// @param unchanged  a line for where nothing differs
Answer changed(Outcome outcome, const char* unchanged);

/// What an import was asked for.
/// Which of its words the value of an option is.
/// @param otherwise  if it is not given
/// @throws Refusal  it is none of them
std::size_t choiceOf(const Arguments& arguments, const char* option,
                     const std::vector<std::string>& words, std::size_t otherwise);
/// What --mode says of a document.
document::Mode modeOf(const Arguments& arguments);
document::ImportOptions importOptions(const Arguments& arguments);

/// What help says of settings: names, permitted values, units and meanings, on indented lines.
/// @param name     what a setting is called
/// @param assumed  what an entry has where it is left out; null: that is not said
std::string membersHelp(const settings::Settings& settings,
                        const char* (*name)(const settings::Setting& setting),
                        const Json* assumed = nullptr);

/// Words that set one: "port=", and "mode=caller" where only a few words are permitted.
Candidates memberWords(const settings::Settings& settings);

/// The commands that add, change and delete one entry.
/// @param above  the command that they are below: "live srt"
std::vector<cli::Command> commandsForEntries(const settings::Table& table,
                                             const std::string& above);

/// "Each SRT instance (live.srt in documents):", and its members.
std::string helpOf(const settings::Table& table);

// One function for each group, in the file of its name.
CommandGroup completeGroup();
CommandGroup exchangeGroup();
CommandGroup explainGroup();
CommandGroup filesGroup();
CommandGroup findGroup();
CommandGroup graphGroup();
CommandGroup helpGroup();
CommandGroup historyGroup();
CommandGroup languageGroup();
CommandGroup lintGroup();
CommandGroup liveGroup();
CommandGroup networkGroup();
CommandGroup parametersGroup();
CommandGroup presetGroup();
CommandGroup runGroup();
CommandGroup salvageGroup();
CommandGroup streamGroup();
CommandGroup summaryGroup();
CommandGroup reportGroup();
CommandGroup schemaGroup();
CommandGroup systemGroup();
CommandGroup trialGroup();
CommandGroup upgradeGroup();
CommandGroup watchGroup();

/// All commands, in the order of the help text.
std::vector<CommandGroup> allGroups();

/// The group that a command is in, by the first word of its name, where nothing else is needed to run
/// it: to make all takes longer than what most commands do. Else all groups.
std::vector<CommandGroup> groupsFor(const std::string& word);

/// What is done before any command: a change on trial is rolled back when its time is over.
void prepare(const cli::Command& command, const Arguments& arguments);

/// What is to be said about the device after any command.
std::vector<std::string> remarks();

}  // namespace camcfg::tool::commands

#endif
