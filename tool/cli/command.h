#ifndef CAMCFG_TOOL_CLI_COMMAND_H
#define CAMCFG_TOOL_CLI_COMMAND_H

#include <functional>
#include <string>
#include <vector>

#include "cli/answer.h"
#include "cli/arguments.h"

namespace camcfg::tool::cli {

/// A word that may be in a place of a command line.
struct Candidate {
  std::string word;
  std::string help{};  ///< what it stands for, in a few words; may be empty
};

/// Finds the words that may be in a place. It throws a Refusal if the device cannot name them.
/// @param before  what is given on the command line before that place
using WordFinder = std::function<std::vector<Candidate>(const Arguments& before)>;

/// Something that a command takes on its command line.
struct Option {
  enum Kind {
    Argument,           ///< a word in its place
    OptionalArgument,   ///< the same, may be left out
    Arguments,          ///< one word or more, to the end
    OptionalArguments,  ///< any number of words, to the end
    Flag,               ///< "--name"
    Value,              ///< "--name VALUE"
    HostDirectory,      ///< "--name DIR": a directory outside the device's root, made if missing
    HostFile,   ///< a file outside the device's root, in its place, read whole; "-": standard input
    HostFiles,  ///< any number of those, to the end; an unreadable one is reported, not refused
    OptionalHostFile,  ///< HostFile that may be left out
  };
  Kind kind;
  const char* name;
  const char* help;
  WordFinder words{};  ///< completes what is there; none: the words that go by the option's name

  bool isNamed() const { return name[0] == '-'; }
  bool isRequired() const { return kind == Argument || kind == Arguments || kind == HostFile; }
  bool takesMany() const {
    return kind == Arguments || kind == OptionalArguments || kind == HostFiles;
  }
  /// What help texts call the value of a named option; null if it takes none.
  const char* value() const {
    return kind == Value ? "VALUE" : kind == HostDirectory ? "DIR" : nullptr;
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

  /// The last word of the name: "select" of "stream cache select".
  std::string word() const { return name + (above().empty() ? 0 : above().size() + 1); }
  /// The name of the command that this one is below: "stream cache"; empty if it is below none.
  std::string above() const {
    const std::size_t space = std::string(name).rfind(' ');
    return space == std::string::npos ? "" : std::string(name, space);
  }
};

/// Commands under one heading in the help text.
struct CommandGroup {
  const char* title;
  std::vector<Command> commands;
};

/// The commands of all groups, in their order.
inline std::vector<const Command*> commandsIn(const std::vector<CommandGroup>& groups) {
  std::vector<const Command*> all;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands) all.push_back(&command);
  return all;
}

/// The command of this whole name; null if there is none.
inline const Command* findCommand(const std::vector<CommandGroup>& groups,
                                  const std::string& name) {
  for (const Command* command : commandsIn(groups))
    if (name == command->name) return command;
  return nullptr;
}

}  // namespace camcfg::tool::cli

#endif
