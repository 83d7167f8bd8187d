#ifndef CAMCFG_TORTURE_THREADS_FAMILY_H
#define CAMCFG_TORTURE_THREADS_FAMILY_H

#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace camcfg::torture {

inline constexpr int kThreads = 8;

/// Text values are so long that a torn one would show.
inline constexpr int kHighest = 60000;

/// A family of the interface as its readers and writers use it. Every thread has settings of its
/// own, its cell, which no other thread writes; all threads read all cells.
struct Family {
  const char* name;
  bool reentrant;  ///< false: used under one mutex for all such families
  int cells;       ///< threads beyond that number only read
  /// Stores a value in a cell. False when the call failed.
  std::function<bool(int cell, int value)> write;
  /// Reads a cell: the value; kTorn when its settings disagree; kFailed when the call failed.
  std::function<int(int cell)> read;
  /// Adds one to a count that all threads share, in one transaction; null for most.
  std::function<bool()> increment;
  std::function<int()> counted;
};

inline constexpr int kTorn = -2;
inline constexpr int kFailed = -1;

/// What came of a family's calls.
struct Counts {
  std::atomic<long> reads{0};
  std::atomic<long> writes{0};
  std::atomic<long> raises{0};
  std::atomic<long> lost{0};
  std::atomic<long> torn{0};
  std::atomic<long> failed{0};

  /// Counts a read; a value that is not among those that the cell may hold is lost.
  void addRead(int value, int least, int most = kHighest) {
    ++reads;
    if (value == kTorn)
      ++torn;
    else if (value == kFailed)
      ++failed;
    else if (value < least || value > most)
      ++lost;
  }
  long faults() const { return lost + torn + failed; }
};

/// Those that any thread may call at any time.
std::vector<Family> reentrantFamilies();

/// The stream and live media families.
std::vector<Family> mediaFamilies();

/// Writes the files that they all work on, with every cell at 1. Called inside the device.
void layOutFamilies();
std::string mediaFile();

/// A text that contains its value, longer than any buffer that is written at once.
std::string longText(int value);
/// The value, or kTorn.
int valueOfLongText(const std::string& text);

}  // namespace camcfg::torture

#endif
