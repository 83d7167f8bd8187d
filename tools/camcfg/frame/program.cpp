#include "frame/program.h"

#include <new>

#include "frame/command_line.h"
#include "frame/host_programs.h"
#include "frame/host_temporary.h"
#include "frame/render.h"
#include "frame/status.h"
#include "frame/streams.h"
#include "support/enter_root.h"

namespace camcfg::tool {
namespace {

void enter(const std::string& root) {
  const std::string error = enterRoot(root);
  if (!error.empty()) throw Refusal("--root " + root + ": " + error);
}

std::string rendered(const Answer& answer, const HostPrograms& programs) {
  const std::string text = renderText(answer);
  return answer.through.words.empty() ? text : programs.passThrough(answer.through, text);
}

Status carryOut(const Invocation& invocation, const Streams& streams,
                const HostPrograms& programs) {
  const std::string name = std::string(invocation.command->name) + ": ";
  try {
    const Answer answer = invocation.command->run(invocation.arguments);
    streams.answer(invocation.json ? renderJson(answer) : rendered(answer, programs));
    for (const std::string& note : answer.notes) Streams::message(name + note);
    return answer.status;
  } catch (const Refusal& refusal) {
    const bool ordinary = refusal.status() == Status::Refused;
    throw Refusal(ordinary ? invocation.command->whenRefused : refusal.status(),
                  name + refusal.what());
  }
}

Status run(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  Streams streams;
  const Invocation invocation = readCommandLine(groups, argc, argv);
  if (invocation.command == nullptr) {
    streams.answer(invocation.text);
    return Status::Done;
  }
  if (invocation.verbose) streams.showLibraryOutput();
  const HostPrograms programs;
  rememberTemporaries();
  if (invocation.root) enter(*invocation.root);
  return carryOut(invocation, streams, programs);
}

}  // namespace

int runProgram(const std::vector<CommandGroup>& groups, int argc, const char* const* argv) {
  Status status = Status::Refused;
  try {
    status = run(groups, argc, argv);
  } catch (const Refusal& refusal) {
    status = refusal.status();
    Streams::message(refusal.what());
  } catch (const std::bad_alloc&) {
    Streams::message("out of memory");
  } catch (const std::exception& error) {
    Streams::message(error.what());
  }
  return static_cast<int>(status);
}

}  // namespace camcfg::tool
