#ifndef CAMCFG_TOOL_FRAME_COMMAND_H
#define CAMCFG_TOOL_FRAME_COMMAND_H

#include <functional>
#include <vector>

#include "frame/answer.h"
#include "frame/arguments.h"

namespace camcfg::tool {

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
    HostFile,  ///< a file outside the device's root, in its place, read whole; "-": standard input
    OptionalHostFile,  ///< the same, may be left out
  };
  Kind kind;
  const char* name;
  const char* help;
};

/// One command of the tool. Help, parsing and dispatch are made from these records. A command below
/// another is named behind what that one takes ("stream cache ID select SOURCE") and gets that,
/// too.
struct Command {
  const char* name;  ///< "set"; "system http-port" is the command "http-port" below "system"
  const char* help;  ///< one line
  std::vector<Option> options;
  std::function<Answer(const Arguments&)> run;  ///< none: only a heading for those below it
  /// Exit status of a refusal, for a command whose status 1 has a meaning of its own.
  Status whenRefused = Status::Refused;
};

/// Commands that stand under one heading in the help text.
struct CommandGroup {
  const char* title;
  std::vector<Command> commands;
};

}  // namespace camcfg::tool

#endif
