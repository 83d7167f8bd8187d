#include <unistd.h>

#include <new>

#include "base/progress.h"
#include "cli/channel.h"
#include "cli/command_line.h"
#include "cli/process.h"
#include "cli/terminal.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::cli {
namespace {

Look lookFor(const Invocation& invocation, const Streams& streams) {
  const bool isTerminal = streams.answersToTerminal();
  return {isTerminal, wantsColours(invocation.color, isTerminal)};
}

std::string rendered(const Answer& answer, const Invocation& invocation, const Look& look,
                     const HostPrograms& programs) {
  if (invocation.json) return renderJson(answer);
  if (!answer.through.words.empty())
    return programs.passThrough(answer.through, renderText(answer));
  return renderText(answer, look);
}

// Such a command ends when it is stopped, or by a refusal.
Status goOn(Invocation& invocation, const Streams& streams, const HostPrograms& programs) try {
  const Channel channel(streams, programs, invocation.command->name, invocation.json,
                        lookFor(invocation, streams));
  invocation.arguments.lend(channel);
  invocation.command->run(invocation.arguments);
  return Status::Done;
} catch (const Stopped&) {
  return Status::Done;
}

Status carryOut(Invocation& invocation, const Streams& streams, const HostPrograms& programs) {
  const std::string name = std::string(invocation.command->name) + ": ";
  announceBy([&](const std::string& line) { Streams::message(name + line, Tone::Warning); });
  try {
    if (invocation.command->goesOn) return goOn(invocation, streams, programs);
    std::optional<ProgressLine> progress;
    if (!invocation.verbose && !invocation.command->hidden && !invocation.command->becomesProgram)
      progress.emplace(invocation.command->name, STDERR_FILENO);
    const Answer answer = invocation.command->run(invocation.arguments);
    progress.reset();
    streams.answer(rendered(answer, invocation, lookFor(invocation, streams), programs));
    for (const std::string& note : answer.notes)
      Streams::message(name + note, answer.status == Status::Done ? Tone::Warning : Tone::Bad);
    return answer.status;
  } catch (const Refusal& refusal) {
    const bool ordinary = refusal.status() == Status::Refused;
    throw Refusal(ordinary ? invocation.command->whenRefused : refusal.status(),
                  name + refusal.what());
  }
}

// When to colour, as far as that can be seen from a command line that may make no sense.
std::string colorIn(int argc, const char* const* argv) {
  const std::string given = std::string(kColor) + "=";
  std::string when = "auto";
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word == kColor && i + 1 < argc) when = argv[i + 1];
    if (word.compare(0, given.size(), given) == 0) when = word.substr(given.size());
  }
  return when;
}

Status run(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  Streams streams;
  Streams::colourMessages(colorIn(argc, argv));
  Invocation invocation = readCommandLine(groups, argc, argv);
  Streams::colourMessages(invocation.json ? "never" : invocation.color);
  if (invocation.command == nullptr) {
    streams.answer(invocation.text);
    return Status::Done;
  }
  if (invocation.verbose) streams.showLibraryOutput();
  const HostPrograms programs;
  rememberTemporaries();
  if (invocation.command->becomesProgram)
    streams.giveBackStandardOutput();
  else if (invocation.root)
    if (const std::string error = enterRoot(*invocation.root); !error.empty())
      throw Refusal("--root " + *invocation.root + ": " + error);
  return carryOut(invocation, streams, programs);
}

}  // namespace

int runProgram(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  Status status = Status::Refused;
  try {
    status = run(groups, argc, argv);
  } catch (const Refusal& refusal) {
    status = refusal.status();
    Streams::message(refusal.what(), Tone::Bad);
  } catch (const std::bad_alloc&) {
    Streams::message("out of memory", Tone::Bad);
  } catch (const std::exception& error) {
    Streams::message(error.what(), Tone::Bad);
  }
  return static_cast<int>(status);
}

}  // namespace camcfg::tool::cli
