#ifndef CAMCFG_TORTURE_PROGRAMS_STORM_H
#define CAMCFG_TORTURE_PROGRAMS_STORM_H

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

#include "torture/threads/family.h"

namespace camcfg::torture {

inline constexpr int kPrograms = 4;
inline constexpr int kThreadsEach = kThreads / kPrograms;
inline constexpr std::size_t kMostFamilies = 16;

/// How far the writer of a cell has got. A program that is killed leaves either value.
struct Progress {
  std::atomic<int> begun{1};
  std::atomic<int> done{1};
};

/// What the programs share outside the device.
struct StormState {
  std::atomic<bool> end{false};
  std::array<Counts, kMostFamilies> counts;
  std::array<std::array<Progress, kThreads>, kMostFamilies> progress;
  std::atomic<long> raised{0};  ///< of those counted as raises, how many were reported as done
};

/// The families as programs side by side use them: each write is one transaction.
std::vector<Family> stormFamilies();

/// Writes the files, main copies and backups. Called inside the device.
void layOutStorm();

/// The count that all raise. Called inside the device.
long stormCount();

/// One program: verifies the files, as each does at its start, and works until the end.
int runProgramOfStorm(int program, std::uint32_t seed, StormState& state);

}  // namespace camcfg::torture

#endif
