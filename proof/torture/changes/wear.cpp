#include <algorithm>
#include <stdexcept>

#include "torture/changes/experiments.h"
#include "torture/changes/medium.h"
#include "torture/changes/scene.h"

namespace camcfg::torture {
namespace {

struct Wear {
  long bytes = 0;
  long flushes = 0;
  long openings = 0;  ///< of main copies and backups to write them
};

const ChangingCommand kMeasured[] = {
    {"set", {"set", "System", "Rtsp", "8554"}, {}},
    {"preset import", {"preset", "import", kPresets}, {}},
    {"import", {"import", kAllSections}, {}},
    {"undo", {"undo"}, {{"import", kAllSections}}},
};

Wear wearOf(const Bench& bench, const Words& words) {
  Wear wear;
  const Tree start = bench.tree();
  Recording recording(bench, start);
  const Run run = recording.run(words);
  if (run.status != 0) throw std::runtime_error(run.output);
  for (const Operation& operation : recording.operations()) {
    wear.bytes += static_cast<long>(operation.bytes.size());
    wear.flushes += operation.kind == Operation::Flush ? 1 : 0;
    wear.openings += operation.kind == Operation::Truncate ? 1 : 0;
  }
  return wear;
}

}  // namespace

void measureWear(const Options& /*options*/, Faults& faults) {
  Table table({"command", "bytes", "flushes", "copies written", "bytes after other changes"});
  for (const ChangingCommand& command : kMeasured) {
    const Bench bench;
    for (const Words& words : command.before) bench.run(words);
    const Wear first = wearOf(bench, command.words);
    const Bench used;
    for (const char* name : {"WebHttps", "RtspOverHttp"}) used.run({"set", "System", name, "8443"});
    for (const Words& words : command.before) used.run(words);
    const Wear later = wearOf(used, command.words);
    table.row(command.name, first.bytes, first.flushes, first.openings, later.bytes);
    if (first.bytes == 0 || first.flushes == 0) faults.add("wear: nothing reached the medium");
  }
  table.print("What a change writes, and how often it waits for the medium");
}

}  // namespace camcfg::torture
