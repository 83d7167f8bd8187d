#ifndef CAMCFG_TORTURE_CHANGES_OUTCOME_H
#define CAMCFG_TORTURE_CHANGES_OUTCOME_H

#include <string>
#include <vector>

#include "torture/changes/bench.h"

namespace camcfg::torture {

/// What the main copies are found to hold.
enum class Whole { Old, New, Mixed, Lost };

const char* wordFor(Whole whole);

/// Seen from a change: all as before, all as after it, each the one or the other, or anything else.
Whole judge(const Tree& mains, const Tree& before, const Tree& after);

/// What is wrong with a device at rest, a line each: backups out of sync, files that belong to nobody,
/// a change that still waits, a journal put aside.
std::vector<std::string> faultsOf(const Tree& tree);

/// What is counted for a row of a table. Each process has its own, so that they can be added up.
struct Tally {
  int cuts = 0;
  int found[4] = {};    ///< by Whole
  int failed = 0;       ///< recoveries that failed or left something there
  int untrue = 0;       ///< exit statuses that do not say what became of the change
  int temporaries = 0;  ///< temporary files left behind
  int completed = 0;    ///< runs that ended before they were cut
  int finished = 0;     ///< recoveries that had something to do

  int count(Whole whole) const { return found[static_cast<int>(whole)]; }
  void add(const Tally& other);
  /// Whether something in it is wrong.
  int wrong() const { return count(Whole::Mixed) + count(Whole::Lost) + failed + untrue; }
};

/// Reports on standard error what is wrong.
void report(const std::string& where, const std::string& what);

}  // namespace camcfg::torture

#endif
