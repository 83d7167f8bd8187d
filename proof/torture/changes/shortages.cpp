#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"

namespace camcfg::torture {
namespace {

struct Shortage {
  const char* name;
  int error;
  bool lasts;  ///< all calls from one on fail, not only that one
};

constexpr Shortage kShortages[] = {
    {"ENOSPC once", ENOSPC, false},
    {"ENOSPC from then on", ENOSPC, true},
    {"EIO once", EIO, false},
    {"EIO from then on", EIO, true},
};

bool isThere(const Scene& scene, const std::string& path) {
  return access((scene.bench().root() + path).c_str(), F_OK) == 0;
}

// What takes up room: bytes, and new names.
bool needsRoom(const Scene& scene, const DeviceCall& call) {
  const CallKind kind = call.known->kind;
  if (kind == CallKind::Write || kind == CallKind::Copy) return true;
  if (kind == CallKind::Open) return (call.flags & O_CREAT) != 0 && !isThere(scene, call.path);
  if (std::strncmp(call.known->name, "mkdir", 5) == 0) return !isThere(scene, call.path);
  return !call.toPath.empty() && !isThere(scene, call.toPath);
}

// sync() cannot fail, and the locks are not on the medium of the settings.
bool canFail(const Scene& scene, const Shortage& shortage, const DeviceCall& call) {
  if (!call.changes || call.path.rfind("/run", 0) == 0) return false;
  if (call.flushes) return shortage.error == EIO && call.isOfOneMedium;
  return shortage.error == EIO || needsRoom(scene, call);
}

// Room for the main copy but not for the backup: the tool says that the change is stored.
bool isSaidToBeStored(const Run& run) {
  return run.status == 1 && run.output.find(": stored in ") != std::string::npos;
}

// Where not even that can be undone any more: the tool says that the change stays in force.
bool isSaidToStay(const Run& run) {
  return (run.status == 1 || run.status == 3) &&
         (run.output.find("the change stays in force") != std::string::npos ||
          run.output.find("carries the change out") != std::string::npos);
}

struct Trial {
  const Scene& scene;
  const Shortage& shortage;
  long at;

  Run run(bool& isReached) const {
    long left = at;
    return scene.bench().follow(scene.command().words, [&](const DeviceCall& call) {
      if (!canFail(scene, shortage, call)) return Fate{};
      const bool fails = left == 0 || (left < 0 && shortage.lasts);
      isReached |= left-- == 0;
      return fails ? Fate{Fate::Fail, shortage.error} : Fate{};
    });
  }

  // What is left by a shortage that lasts is looked at once it is over.
  void judge(const Run& run, Tally& tally) const {
    const std::string where =
        std::string(scene.command().name) + ", " + shortage.name + " at call " + std::to_string(at);
    const bool isStored = isSaidToBeStored(run) || (shortage.lasts && isSaidToStay(run));
    const ChangingCommand& command = scene.command();
    // What is on trial is found until boot.
    const bool isLeft = !shortage.lasts && !isStored && command.tried.empty();
    const Whole atOnce = torture::judge(scene.bench().mains(), scene.before(), scene.after());
    const Whole whole = scene.recover(Recovery::Boot, where, tally);
    const bool isSaidToBeNew = !command.isOver && (run.status == 0 || isStored);
    const Whole said = isSaidToBeNew ? Whole::New : Whole::Old;
    const bool isTrue = whole == said && (!isLeft || atOnce == said) &&
                        (run.status == 0 || run.status == 1 || run.status == 3);
    if (isTrue) return;
    ++tally.untrue;
    report(where, "status " + std::to_string(run.status) + ", at once " + wordFor(atOnce) +
                      ", after boot " + wordFor(whole) + ": " + run.output);
  }
};

void failEach(const ChangingCommand& command, const Shortage& shortage, const Slice& slice,
              Tally& tally) {
  const Scene scene(command);
  bool isReached = true;
  for (long at = slice.index; isReached; at += slice.of) {
    isReached = false;
    scene.layOut();
    const Trial trial{scene, shortage, at};
    const Run run = trial.run(isReached);
    if (!isReached) break;
    ++tally.cuts;
    trial.judge(run, tally);
    tally.temporaries += scene.bench().leftTemporaries();
  }
}

}  // namespace

void failCallsOfChanges(const Options& /*options*/, Faults& faults) {
  Table table(
      {"command", "failure", "at calls", "old", "new", "mixed", "lost", "failed", "untrue status"});
  for (const ChangingCommand& command : allCommands())
    for (const Shortage& shortage : kShortages) {
      const Tally tally = inSlices(
          [&](const Slice& slice, Tally& part) { failEach(command, shortage, slice, part); });
      table.row(command.name, shortage.name, tally.cuts, tally.count(Whole::Old),
                tally.count(Whole::New), tally.count(Whole::Mixed), tally.count(Whole::Lost),
                tally.failed, tally.untrue);
      if (tally.wrong() > 0) faults.add(std::string(command.name) + ", " + shortage.name);
    }
  table.print("Calls that fail, one or all from one on; once that is over, boot");
}

}  // namespace camcfg::torture
