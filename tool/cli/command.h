#ifndef CAMCFG_TOOL_CLI_COMMAND_H
#define CAMCFG_TOOL_CLI_COMMAND_H

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/host.h"
#include "cli/answer.h"

namespace camcfg::tool::cli {

class Channel;
struct Command;

/// What was given to a command, by the names in its options and in those of the commands above it.
/// Asking for a name that is in none of them throws std::logic_error: it can only be a mistake.
class Arguments {
 public:
  struct Given {
    std::vector<std::string> texts;
    std::unique_ptr<HostDirectory> directory;
    std::vector<HostFile> files;
  };

  /// What is known of a name, for whoever reads the command line; an unknown one becomes known.
  Given& operator[](TextRef name) { return known_[std::string(name.view())]; }

  bool given(TextRef name) const;
  /// The text given, or what was in the file given; empty if none was.
  std::string text(TextRef name) const;
  /// All texts given.
  const std::vector<std::string>& texts(TextRef name) const;
  /// The directory given, opened before the device's root was entered; null if none was.
  HostDirectory* directory(TextRef name) const;
  /// All files given that are read whole.
  const std::vector<HostFile>& files(TextRef name) const;

  /// The command that this one carries out, and what was given to it; null: there is none.
  const Command* innerCommand() const { return inner_; }
  const Arguments& inner() const { return *innerArguments_; }
  void setInner(const Command& command, Arguments arguments) {
    inner_ = &command;
    innerArguments_ = std::make_shared<const Arguments>(std::move(arguments));
  }

  /// Lends the command a channel, for as long as it runs.
  void lend(const Channel& channel) { channel_ = &channel; }
  /// How a command answers that goes on until it is stopped.
  const Channel& channel() const;

 private:
  const Given& at(TextRef name) const;

  std::map<std::string, Given, std::less<>> known_;
  const Channel* channel_ = nullptr;
  const Command* inner_ = nullptr;
  std::shared_ptr<const Arguments> innerArguments_;
};

/// A word that may be in a place of a command line.
struct Candidate {
  std::string word;
  std::string help{};  ///< what it stands for, in a few words; may be empty
};

/// Finds the words that may be in a place. It throws a Refusal if the device cannot name them.
/// @param before  what is given on the command line before that place
using WordFinder = std::function<std::vector<Candidate>(const Arguments& before)>;

/// A choice of these words.
inline WordFinder oneOf(std::vector<const char*> words) {
  return [words = std::move(words)](const Arguments& /*before*/) {
    std::vector<Candidate> candidates;
    for (const char* word : words) candidates.push_back({word});
    return candidates;
  };
}

/// Something that a command takes on its command line.
struct Option {
  enum Kind {
    Argument,           ///< a word in its place
    OptionalArgument,   ///< the same, may be left out
    Arguments,          ///< one word or more, to the end
    OptionalArguments,  ///< any number of words, to the end
    Flag,               ///< "--name"
    Value,              ///< "--name VALUE"
    Values,             ///< the same, as often as wanted
    HostDirectory,      ///< "--name DIR": a directory outside the device's root, made if missing
    HostFile,   ///< a file outside the device's root, in its place, read whole; "-": standard input
    HostFiles,  ///< any number of those, to the end; an unreadable one is reported, not refused
    OptionalHostFile,  ///< HostFile that may be left out
    HostFileValue,     ///< "--name FILE": a HostFile
    HostFolder,        ///< "--name DIR": what some files in a directory outside the root hold
  };
  Kind kind;
  const char* name;
  const char* help;
  WordFinder words{};  ///< completes what is there; none: the words that go by the option's name
  const char* shortName = nullptr;   ///< "-v"
  const char* valueName = nullptr;   ///< of a Value in help texts; null: "VALUE"
  std::vector<const char*> files{};  ///< of a HostFolder; those that do not exist are left out
  const char* ending{};              ///< of a HostFolder: all files of this ending, by their names
  const char* listed{};              ///< of a HostFolder: files of this ending are named, not read
  bool isFolderOrFile = false;       ///< of a HostFolder: a file in its place is its only file
  bool isReplaced = false;           ///< the command may replace these HostFiles

  bool isNamed() const { return name[0] == '-'; }
  bool isRequired() const { return kind == Argument || kind == Arguments || kind == HostFile; }
  bool isHostFile() const {
    return kind == HostFile || kind == HostFiles || kind == OptionalHostFile ||
           kind == HostFileValue;
  }
  bool isDirectory() const { return kind == HostDirectory || kind == HostFolder; }
  bool takesMany() const {
    return kind == Arguments || kind == OptionalArguments || kind == HostFiles;
  }
  /// What help texts call the value of a named option; null if it takes none.
  const char* value() const {
    if (isDirectory()) return valueName == nullptr ? "DIR" : valueName;
    if (kind == HostFileValue) return "FILE";
    return kind != Value && kind != Values ? nullptr : valueName == nullptr ? "VALUE" : valueName;
  }
};

/// One command of the tool. Help, parsing and dispatch are made from these records. A command below
/// another is named after what that one takes ("stream cache ID select SOURCE") and gets that,
/// too.
struct Command {
  const char* name;  ///< "set"; "system http-port" is the command "http-port" below "system"
  const char* help;  ///< one line
  std::vector<Option> options;
  std::function<Answer(const Arguments&)> run;  ///< none: only a heading for those below it
  /// Exit status of a refusal, for a command whose status 1 has a meaning of its own.
  Status whenRefused = Status::Refused;
  bool hidden = false;  ///< for programs: neither in help nor completed
  /// Its first argument is a program, which it becomes, and all after that are that program's, whatever
  /// they look like. It gets the tool's standard output, and enters no root: it is given kRoot.
  bool becomesProgram = false;
  bool usesDevice = true;
  std::function<std::string()> details{};  ///< what help adds, in lines that stay as they are
  bool changesDevice = false;              ///< it can end with Status::NotPrinted
  bool changesSettings = false;            ///< it can be carried out by another command
  bool goesOn = false;  ///< until it is stopped; it answers through the channel of its arguments
  /// What follows its own options is another command that changes settings, with what that takes.
  bool takesCommand = false;

  /// Lines as they are typed after "camcfg ", each of which works on the sample device as it is new.
  std::vector<const char*> examples{};

  /// It is not given what the command above it takes: "stream cache add", of "stream cache ID".
  bool standsAlone = false;

  /// The last word of the name: "select" of "stream cache select".
  std::string word() const { return name + (above().empty() ? 0 : above().size() + 1); }
  /// The name of the command that this one is below: "stream cache"; empty if it is below none.
  std::string above() const {
    const std::size_t space = std::string(name).rfind(' ');
    return space == std::string::npos ? "" : std::string(name, space);
  }
};

/// The examples of a command on indented lines, after a heading.
std::string examplesOf(const Command& command);

/// Commands under one heading in the help text.
struct CommandGroup {
  const char* title;
  std::vector<Command> commands;
};

/// The commands of all groups, in their order.
std::vector<const Command*> commandsIn(const std::vector<CommandGroup>& groups);

/// The command of this whole name; null if there is none.
const Command* findCommand(const std::vector<CommandGroup>& groups, const std::string& name);

// Options that may be before or after any command.
constexpr char kHelp[] = "--help";
constexpr char kVersion[] = "--version";
constexpr char kRoot[] = "--root";
constexpr char kJson[] = "--json";
constexpr char kVerbose[] = "--verbose";
constexpr char kColor[] = "--color";
constexpr const char* kColorWords[] = {"auto", "always", "never"};
const std::vector<Option>& globalOptions();

/// Something that is explained apart from the commands.
struct Topic {
  const char* name;   ///< "exit-status"
  const char* title;  ///< one line
  /// Paragraphs with empty lines between them; lines that begin with spaces stay as they are.
  const char* text;
};

/// All topics, by name: the text files in tool/topics, which the build puts into the tool. The first
/// line of a file is the topic's title, an empty line follows.
const std::vector<Topic>& allTopics();

/// The list at the beginning of the topic exit-status. Its rows are "  1  refused", or "  1  diff:
/// something differs" for one command, of which that one is shown instead of the general one.
/// @param command  whose rows are wanted; null: all rows are
std::string exitStatuses(const Command* command);

}  // namespace camcfg::tool::cli

#endif
