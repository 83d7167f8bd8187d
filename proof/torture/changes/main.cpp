// Cuts off, interrupts and starves the tool while it changes settings, and looks at whether each
// change is wholly made or not at all.
//   camcfg-changes [--long] [--seed N]
// Wrong: a device that holds parts of a change, or neither the old nor the new settings, once
// boot, verify or another change has run; a copy that is out of sync then; a file of the tool's that
// is left; an exit status that does not say what became of the change.
// CAMCFG_TORTURE_TOOL names another tool to torture; CAMCFG_TORTURE_ONLY one of the experiments below.
#include <cstdlib>
#include <string>

#include "torture/changes/experiments.h"

namespace camcfg::torture {
namespace {

struct Experiment {
  const char* name;
  void (*run)(const Options& options, Faults& faults);
};

constexpr Experiment kExperiments[] = {
    {"cuts", cutChanges},          {"power", cutPowerInChanges},
    {"signals", interruptChanges}, {"failures", failCallsOfChanges},
    {"kills", killChanges},        {"trials", killTrials},
    {"wear", measureWear},
};

int tortureChanges(const Options& options) {
  const char* only = std::getenv("CAMCFG_TORTURE_ONLY");
  Faults faults;
  for (const Experiment& experiment : kExperiments)
    if (only == nullptr || std::string(only) == experiment.name) experiment.run(options, faults);
  return faults.conclude("changes");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::tortureChanges);
}
