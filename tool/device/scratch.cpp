#include "device/scratch.h"

#include <sys/wait.h>
#include <unistd.h>

#include "base/host.h"
#include "base/outcome.h"
#include "base/progress.h"
#include "device/files.h"
#include "device/signals.h"

namespace camcfg::tool::device {
namespace {

constexpr char kAnswer[] = "answer";
constexpr char kRefusal[] = "refusal";
constexpr char kStatus[] = "status";
constexpr char kDirectory[] = "cfg0";

bool isScratch = false;

Json answerOf(const HostTemporary& device, const std::function<Json()>& work) try {
  const std::string error = device.enter();
  if (!error.empty()) throw Refusal("the change cannot be tried out beforehand: " + error);
  isScratch = true;
  return {{kAnswer, work()}};
} catch (const Refusal& refusal) {
  return {{kRefusal, refusal.what()}, {kStatus, static_cast<int>(refusal.status())}};
}

// The child's part. It ends without anything that its parent has yet to do. Whoever hears of the
// work may have held a lock when the child was made, which nobody here would ever release.
[[noreturn]] void answerFrom(const HostTemporary& device, const std::function<Json()>& work,
                             const MemoryFile& answer) {
  watchWork(nullptr);
  try {
    _exit(writeAll(answer.get(), packed(answerOf(device, work))) ? 0 : 1);
  } catch (const std::exception&) {
    _exit(1);
  }
}

}  // namespace

bool savesForNobody() {
  return isScratch;
}

Json onScratchDevice(const std::vector<Contents>& files, const std::function<Json()>& work) {
  // Whoever interrupts this leaves no temporary directory.
  const HeldSignals signals;
  const HostTemporary device;
  for (const Contents& file : files) device.write(kDirectory, nameOf(file.path), file.bytes);
  const MemoryFile memory;
  const pid_t child = fork();
  if (child == 0) answerFrom(device, work, memory);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
    throw Refusal("the process that works on a copy of the files failed");
  Json answer = unpacked(memory.contents());
  if (answer.contains(kRefusal))
    throw Refusal(static_cast<Status>(answer.at(kStatus).get<int>()), answer.at(kRefusal).text());
  return answer.at(kAnswer);
}

}  // namespace camcfg::tool::device
