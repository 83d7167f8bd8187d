#include <csignal>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"

namespace camcfg::torture {
namespace {

struct Interruption {
  const char* name;
  Fate::Kind kind;
  int status;  ///< of a run that it ended
};

constexpr Interruption kInterruptions[] = {
    {"Ctrl-C", Fate::Interrupt, 128 + SIGINT},
    {"SIGTERM", Fate::Terminate, 128 + SIGTERM},
};

// Nobody finishes anything: what the status says must be so at once.
void interrupt(const Scene& scene, const Interruption& interruption, const CutPoint& cut,
               Tally& tally) {
  scene.layOut();
  long left = cut.at;
  const Run run = scene.bench().follow(
      scene.command().words,
      [&](const DeviceCall& call) {
        const bool counts = cut.kind == CutPoint::AnyCall || call.changes;
        return counts && left-- == 0 ? Fate{interruption.kind} : Fate{};
      },
      {}, attentionTo(cut.kind));
  ++tally.cuts;
  const std::string where =
      std::string(scene.command().name) + ", " + interruption.name + " at " + textOf(cut);
  const Whole whole = scene.look(where, tally);
  const Whole said = run.status == 0 ? Whole::New : Whole::Old;
  if (whole != said || (run.status != 0 && run.status != interruption.status)) {
    ++tally.untrue;
    report(where,
           "status " + std::to_string(run.status) + ", " + wordFor(whole) + ": " + run.output);
  }
  tally.temporaries += scene.bench().leftTemporaries();
}

}  // namespace

void interruptChanges(const Options& options, Faults& faults) {
  // Whoever started this, in the background of a script for one, may have had them ignored.
  for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, SIG_DFL);
  const CutPoint::Kind kind = options.longRun ? CutPoint::AnyCall : CutPoint::ChangingCall;
  const long every = options.longRun ? 1 : 2;
  Table table({"command", "signal", "at calls", "old", "new", "mixed", "lost", "failed",
               "untrue status", "temporary files left"});
  for (const ChangingCommand& command : changingCommands())
    for (const Interruption& interruption : kInterruptions) {
      const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
        const Scene scene(command);
        scene.layOut();
        const long calls = scene.countOf(kind, command.words);
        for (long i = 0; i < calls; i += every)
          if (slice.has(i / every)) interrupt(scene, interruption, {kind, i}, part);
      });
      table.row(command.name, interruption.name, tally.cuts, tally.count(Whole::Old),
                tally.count(Whole::New), tally.count(Whole::Mixed), tally.count(Whole::Lost),
                tally.failed, tally.untrue, tally.temporaries);
      if (tally.wrong() + tally.temporaries > 0)
        faults.add(std::string(command.name) + ", " + interruption.name);
      if (tally.count(Whole::Old) == 0 || tally.count(Whole::New) == 0)
        faults.add(std::string(command.name) + ", " + interruption.name + ": not all was tried");
    }
  table.print("A change interrupted at " + std::string(every == 1 ? "each" : "every second") +
              " call; nothing is run afterwards");
}

}  // namespace camcfg::torture
