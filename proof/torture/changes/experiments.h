#ifndef CAMCFG_TORTURE_CHANGES_EXPERIMENTS_H
#define CAMCFG_TORTURE_CHANGES_EXPERIMENTS_H

#include "torture/harness/options.h"
#include "torture/harness/table.h"

namespace camcfg::torture {

// Each prints its tables and counts what is wrong.

/// A run is ended at every call and within writes; so is the run that finishes it.
void cutChanges(const Options& options, Faults& faults);
/// Power fails, and any part of what was not flushed is lost.
void cutPowerInChanges(const Options& options, Faults& faults);
/// The user interrupts a run at every call.
void interruptChanges(const Options& options, Faults& faults);
/// A call of a run fails, or all from one on.
void failCallsOfChanges(const Options& options, Faults& faults);
/// Runs are killed at random moments.
void killChanges(const Options& options, Faults& faults);
/// The same for changes on trial, which must be rolled back.
void killTrials(const Options& options, Faults& faults);
/// What reaches the medium.
void measureWear(const Options& options, Faults& faults);

}  // namespace camcfg::torture

#endif
