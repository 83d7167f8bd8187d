#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"

namespace camcfg::torture {
namespace {

struct Grain {
  CutPoint::Kind kind;
  long every;
  const char* name;
};

Recovery recoveryOf(long cut) {
  return kRecoveries[cut % static_cast<long>(std::size(kRecoveries))];
}

// Every cut of a slice, each with one of the recoveries, in turns.
void cutSlice(const ChangingCommand& command, const Grain& grain, const Slice& slice,
              Tally& tally) {
  Scene scene(command);
  scene.startAgain(grain.kind != CutPoint::Byte);
  scene.layOut();
  const long count = scene.countOf(grain.kind, command.words);
  for (long i = 0; i * grain.every < count; ++i) {
    if (!slice.has(i)) continue;
    const CutPoint cut{grain.kind, i * grain.every};
    scene.layOut();
    scene.cut(command.words, cut);
    ++tally.cuts;
    scene.recover(recoveryOf(i / slice.of), command.name + (", " + textOf(cut)), tally);
  }
}

// The same within the writes: each is made once, and what it leaves is then cut at its bytes.
void cutWrites(const ChangingCommand& command, long every, const Slice& slice, Tally& tally) {
  Scene scene(command);
  scene.startAgain(false);
  std::size_t next = 0;
  long number = 0;
  for (long write = 0;; ++write) {
    scene.layOut();
    const std::optional<Written> written = scene.cutAfterWrite(command.words, write);
    if (!written) return;
    for (; next < written->size; next += static_cast<std::size_t>(every), ++number) {
      if (!slice.has(number)) continue;
      scene.bench().put(written->cutAfter(next));
      ++tally.cuts;
      scene.recover(
          recoveryOf(number / slice.of),
          command.name + (", byte " + std::to_string(next)) + " of write " + std::to_string(write),
          tally);
    }
    next -= written->size;
  }
}

void cutCommands(const Options& options, Faults& faults) {
  const Grain grains[] = {
      {options.longRun ? CutPoint::AnyCall : CutPoint::ChangingCall, 1, "before each call"},
      {CutPoint::Byte, options.longRun ? 7 : 1499, options.longRun ? "every 7th byte" : "bytes"},
  };
  Table table({"command", "cut", "cuts", "old", "new", "finished", "mixed", "lost", "failed"});
  for (const ChangingCommand& command : allCommands())
    for (const Grain& grain : grains) {
      const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
        if (options.longRun && grain.kind == CutPoint::Byte)
          cutWrites(command, grain.every, slice, part);
        else
          cutSlice(command, grain, slice, part);
      });
      table.row(command.name, grain.name, tally.cuts, tally.count(Whole::Old),
                tally.count(Whole::New), tally.finished, tally.count(Whole::Mixed),
                tally.count(Whole::Lost), tally.failed);
      std::fprintf(stderr, "(%s, %s: %d cuts, %d wrong)\n", command.name, grain.name, tally.cuts,
                   tally.wrong());
      if (tally.wrong() > 0) faults.add(std::string(command.name) + ", " + grain.name);
      const bool isOld = tally.count(Whole::Old) > 0;
      const bool isNew = command.isOver || tally.count(Whole::New) > 0;
      if (tally.cuts > 0 && (!isOld || !isNew || tally.finished == 0))
        faults.add(std::string(command.name) + ", " + grain.name + ": not all was tried");
    }
  table.print("A change cut off, then finished by boot, verify or another change in turns");
}

// The recovery of what the first cut leaves is cut at each of its calls; then the device starts.
void cutRecovery(const Scene& scene, Recovery recovery, const CutPoint& first, Tally& tally) {
  const Words& words = wordsOf(recovery);
  scene.layOut();
  scene.cut(scene.command().words, first);
  const Tree left = scene.bench().tree();
  const long calls = scene.countOf(CutPoint::ChangingCall, words);
  for (long i = 0; i < calls; ++i) {
    const CutPoint second{CutPoint::ChangingCall, i};
    scene.bench().put(left);
    scene.cut(words, second);
    ++tally.cuts;
    scene.recoverWhole(scene.command().name + (", " + textOf(first)) + ", " + words.front() +
                           " cut at " + textOf(second),
                       tally);
  }
}

void cutRecoveries(const Options& options, Faults& faults) {
  Table table({"change", "finished by", "cuts", "old", "new", "mixed", "lost", "failed"});
  const ChangingCommand& command = changingCommands().front();
  for (const Recovery recovery : kRecoveries) {
    const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
      const Scene scene(command);
      scene.layOut();
      const long calls = scene.countOf(CutPoint::ChangingCall, command.words);
      const long every = options.longRun ? 4 : 24;
      for (long i = 0; i * every < calls; ++i)
        if (slice.has(i)) cutRecovery(scene, recovery, {CutPoint::ChangingCall, i * every}, part);
    });
    table.row(command.name, wordsOf(recovery).front(), tally.cuts, tally.count(Whole::Old),
              tally.count(Whole::New), tally.count(Whole::Mixed), tally.count(Whole::Lost),
              tally.failed);
    if (tally.wrong() > 0) faults.add(std::string("cut in ") + wordsOf(recovery).front());
  }
  table.print("A cut change whose finishing is cut off as well, then boot");
}

}  // namespace

void cutChanges(const Options& options, Faults& faults) {
  cutCommands(options, faults);
  cutRecoveries(options, faults);
}

}  // namespace camcfg::torture
