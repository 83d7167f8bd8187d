// Eight threads that read and write settings of all families at once.
//   camcfg-threads [--long] [--seed N]
// Each thread writes rising values to cells of its own and reads everybody's. Wrong: a value that
// its writer does not find again (a lost update), one lower than was seen before, settings of one
// record that disagree (a torn read), and a call that fails. Counts that all threads raise must end
// at the number of raises. Families that allow one thread at a time are used under one mutex.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <mutex>
#include <random>
#include <thread>

#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/threads/family.h"

namespace camcfg::torture {
namespace {

using Clock = std::chrono::steady_clock;

/// One thread's use of one family.
class Visitor {
 public:
  Visitor(const Family& family, int thread, Counts& counts)
      : family_(family), thread_(thread), counts_(counts) {
    seen_.fill(1);
  }

  void write() {
    if (thread_ >= family_.cells) return;
    const int value = std::min(seen_[own()] + 1, kHighest);
    ++counts_.writes;
    if (!family_.write(thread_, value)) ++counts_.failed;
    seen_[own()] = value;
    look(thread_);
  }

  void read(int cell) {
    if (family_.cells > 0) cell %= family_.cells;
    look(cell);
  }

  void raise() {
    if (!family_.increment) return;
    ++counts_.raises;
    if (!family_.increment()) ++counts_.failed;
  }

  bool reentrant() const { return family_.reentrant; }

 private:
  std::size_t own() const { return static_cast<std::size_t>(thread_); }

  void look(int cell) {
    const int value = family_.read(cell);
    int& seen = seen_[static_cast<std::size_t>(cell)];
    counts_.addRead(value, seen, cell == thread_ ? seen : kHighest);
    seen = std::max(seen, value);
  }

  const Family& family_;
  const int thread_;
  Counts& counts_;
  std::array<int, kThreads> seen_{};  ///< the highest value that this thread saw in each cell
};

class Storm {
 public:
  explicit Storm(std::uint32_t seed) : seed_(seed) {
    for (const Family& family : mediaFamilies()) families_.push_back(family);
  }

  /// @return the seconds that it lasted
  double rage(std::chrono::seconds duration) {
    const auto begin = Clock::now();
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([this, i, end = begin + duration] { work(i, end); });
    for (std::thread& thread : threads) thread.join();
    return std::chrono::duration<double>(Clock::now() - begin).count();
  }

  /// Prints on `output`: standard output is discarded while the library may print.
  void conclude(double seconds, Faults& faults, int output) {
    Table table({"family", "reads", "writes", "calls a second", "lost", "torn", "failed"});
    for (std::size_t i = 0; i < families_.size(); ++i) {
      Counts& counts = counts_[i];
      const Family& family = families_[i];
      if (family.counted && family.counted() != counts.raises)
        faults.add(std::string(family.name) + ": the shared count is " +
                   std::to_string(family.counted()) + " after " + std::to_string(counts.raises));
      const long calls = counts.reads + counts.writes + counts.raises;
      table.row(family.name, counts.reads.load(), counts.writes + counts.raises,
                static_cast<long>(static_cast<double>(calls) / seconds), counts.lost.load(),
                counts.torn.load(), counts.failed.load());
      if (counts.faults() > 0) faults.add(std::string(family.name) + ": lost, torn or failed");
    }
    std::fflush(stdout);
    dup2(output, STDOUT_FILENO);
    table.print(std::to_string(kThreads) + " threads for " + std::to_string(std::lround(seconds)) +
                " seconds" + kChecked);
  }

 private:
#ifdef __SANITIZE_THREAD__
  static constexpr char kChecked[] = ", watched by ThreadSanitizer";
#else
  static constexpr char kChecked[] = "";
#endif

  void work(int thread, Clock::time_point end) {
    std::mt19937 random(seed_ + static_cast<std::uint32_t>(thread));
    std::vector<Visitor> visitors;
    for (std::size_t i = 0; i < families_.size(); ++i)
      visitors.emplace_back(families_[i], thread, counts_[i]);
    while (Clock::now() < end) {
      Visitor& visitor = visitors[random() % visitors.size()];
      std::unique_lock<std::mutex> alone(oneAtATime_, std::defer_lock);
      if (!visitor.reentrant()) alone.lock();
      visit(visitor, static_cast<int>(random() % 8), static_cast<int>(random() % kThreads));
    }
  }

  // Three visits in eight change something.
  static void visit(Visitor& visitor, int chance, int cell) {
    if (chance < 2)
      visitor.write();
    else if (chance == 2)
      visitor.raise();
    else
      visitor.read(cell);
  }

  const std::uint32_t seed_;
  std::vector<Family> families_ = reentrantFamilies();
  std::array<Counts, 16> counts_;
  std::mutex oneAtATime_;
};

int rageInside(const Options& options, int output) {
  layOutFamilies();
  Storm storm(options.seed);
  const double seconds = storm.rage(std::chrono::seconds(options.longRun ? 240 : 6));
  Faults faults;
  storm.conclude(seconds, faults, output);
  return faults.conclude("threads");
}

int rage(const Options& options) {
  const Device device;
  device.fill();
  const int output = dup(STDOUT_FILENO);
  return runInside(device.root(), [&] { return rageInside(options, output); });
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::rage);
}
