#include <unistd.h>

#include <new>

#include "base/concat.h"
#include "base/progress.h"
#include "base/system_log.h"
#include "cli/channel.h"
#include "cli/command_line.h"
#include "cli/process.h"
#include "cli/raw_line.h"
#include "cli/terminal.h"
#include "testkit/enter_root.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kInForce[] = "the change is in force, but could not be printed: ";

Look lookFor(const Invocation& invocation, const Streams& streams) {
  const bool isTerminal = streams.answersToTerminal();
  return {isTerminal, wantsColours(invocation.color, isTerminal)};
}

std::string rendered(const Answer& answer, const Invocation& invocation, const Look& look) {
  return invocation.json ? renderJson(answer) : renderText(answer, look);
}

// Such a command ends when it is stopped, or by a refusal.
Status goOn(Invocation& invocation, Streams& streams, const HostPrograms& programs) try {
  const Channel channel(streams, programs, invocation.command->name, invocation.json,
                        lookFor(invocation, streams));
  invocation.arguments.lend(channel);
  return invocation.command->run(invocation.arguments).status;
} catch (const Stopped&) {
  return Status::Done;
}

std::string textOf(const std::exception& error) {
  const bool isMemory = dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
  return isMemory ? "out of memory" : error.what();
}

// Why an answer could not be printed; none if it was.
std::optional<Refusal> print(const Answer& answer, const Invocation& invocation, Streams& streams) {
  try {
    streams.answer(rendered(answer, invocation, lookFor(invocation, streams)));
    return std::nullopt;
  } catch (const Refusal& refusal) {
    return refusal;
  } catch (const std::exception& error) {
    return Refusal(textOf(error));
  }
}

Status finish(const Answer& answer, const Invocation& invocation, Streams& streams) {
  const std::optional<Refusal> unprinted = print(answer, invocation, streams);
  for (const std::string& note : answer.notes)
    Streams::message(concat(invocation.command->name, ": ", note),
                     answer.status == Status::Done ? Tone::Warning : Tone::Bad);
  if (!unprinted) return answer.status;
  if (!changeWasMade()) throw Refusal(*unprinted);
  // What was refused after a change, or put back, has its own status.
  if (answer.status != Status::Done) throw unprinted->after("", answer.status);
  throw unprinted->after(kInForce, Status::NotPrinted);
}

Answer outcomeOf(const Invocation& invocation) {
  std::optional<ProgressLine> progress;
  if (!invocation.verbose && !invocation.command->hidden && !invocation.command->becomesProgram)
    progress.emplace(invocation.command->name, STDERR_FILENO);
  return invocation.command->run(invocation.arguments);
}

Status carryOut(Invocation& invocation, Streams& streams, const HostPrograms& programs,
                const Customs& customs) {
  const std::string name = std::string(invocation.command->name) + ": ";
  announceBy([&](const std::string& line) { Streams::message(name + line, Tone::Warning); });
  const auto remark = [&] {
    if (!customs.remarks || !invocation.command->usesDevice) return;
    for (const std::string& line : customs.remarks()) announce("note: " + line);
  };
  if (customs.before && invocation.command->usesDevice && !invocation.command->hidden)
    customs.before(*invocation.command, invocation.arguments);
  try {
    if (invocation.command->goesOn) return goOn(invocation, streams, programs);
    const Status status = finish(outcomeOf(invocation), invocation, streams);
    remark();
    return status;
  } catch (const Refusal& refusal) {
    remark();
    const bool ordinary = refusal.status() == Status::Refused;
    throw refusal.after(name, ordinary ? invocation.command->whenRefused : refusal.status());
  } catch (const std::exception& error) {
    if (!changeWasMade()) throw;
    throw Refusal(kInForce + textOf(error)).after(name, Status::NotPrinted);
  }
}

Status run(Invocation& invocation, Streams& streams, const Customs& customs) {
  Streams::colourMessages(invocation.json ? "never" : invocation.color);
  const HostPrograms programs;
  if (invocation.command == nullptr) {
    streams.answer(rendered(invocation.answer, invocation, {}));
    return Status::Done;
  }
  if (invocation.verbose) streams.showLibraryOutput();
  rememberTemporaries();
  rememberBoot();
  openSystemLog();
  if (invocation.command->becomesProgram)
    streams.giveBackStandardOutput();
  else if (invocation.root)
    if (const std::string error = enterRoot(*invocation.root); !error.empty())
      throw Refusal::about(kRoot, concat(kRoot, " ", *invocation.root, ": ", error),
                           invocation.command->whenRefused);
  return carryOut(invocation, streams, programs, customs);
}

Json answerOf(const Refusal& refusal) {
  const std::string place = refusal.place();
  return {{"error",
           {{"status", static_cast<int>(refusal.status())},
            {"place", place.empty() ? Json() : Json(Streams::lineOf(place))},
            {"text", Streams::lineOf(refusal.what())}}}};
}

// Says why a command ended. In JSON that is one line, for those who read the answers of a command
// that goes on line by line. It must not follow what could be printed of an answer.
int refuse(const Refusal& refusal, const Invocation& invocation, Streams& streams) {
  Streams::message(refusal.what(), Tone::Bad);
  if (invocation.json) streams.tryToAnswer(renderJson({answerOf(refusal), {}}, -1));
  return static_cast<int>(refusal.status());
}

}  // namespace

int runProgram(const std::vector<CommandGroup>& groups, int argc, const char* const* argv,
               const Customs& customs) {
  Streams streams;
  Streams::colourMessages(colorIn(argc, argv));
  Invocation invocation;
  try {
    invocation.json = asksForJson(groups, argc, argv);
    const bool isAtTerminal = customs.atTerminal != nullptr && streams.answersToTerminal();
    invocation = readCommandLine(groups, argc, argv,
                                 isAtTerminal ? findCommand(groups, customs.atTerminal) : nullptr);
    return static_cast<int>(run(invocation, streams, customs));
  } catch (const Refusal& refusal) {
    return refuse(refusal, invocation, streams);
  } catch (const std::exception& error) {
    const bool known = invocation.command != nullptr;
    return refuse(Refusal(known ? invocation.command->whenRefused : Status::Refused, textOf(error)),
                  invocation, streams);
  }
}

}  // namespace camcfg::tool::cli
