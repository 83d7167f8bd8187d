// Several programs that read and write settings of all families at once, one of them killed at
// random every 50 milliseconds and started again.
//   camcfg-programs [--long] [--seed N]
// Each thread of each program writes rising values to cells of its own and reads everybody's. Wrong,
// where the device has the directory of lock files: a value lower than one that was stored (lost),
// settings of one record that disagree (torn), and a call that fails. The same without the
// directory is counted and printed.
#include <signal.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <random>
#include <thread>

#include "torture/harness/child.h"
#include "torture/harness/device.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/programs/storm.h"

namespace camcfg::torture {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

struct Setting {
  const char* title;
  bool directory;
  bool kills;
  int brief;  // seconds
  int full;
};

constexpr std::array<Setting, 3> kSettings = {{
    {"with /run/camcfg, a program killed every 50 ms", true, true, 12, 180},
    {"without it, a program killed every 50 ms", false, true, 4, 30},
    {"without it, no program killed", false, false, 4, 30},
}};

class Programs {
 public:
  Programs(const Setting& setting, std::uint32_t seed) : setting_(setting), random_(seed) {
    if (setting.directory) device_.makeDirectory(kLockDirectory);
    const int status = runInside(device_.root(), [] {
      layOutStorm();
      return 0;
    });
    if (status != 0) throw std::runtime_error("the device cannot be laid out");
  }

  /// @return how many programs were killed
  int rage(std::chrono::seconds duration) {
    int kills = 0;
    const auto end = Clock::now() + duration;
    for (int i = 0; i < kPrograms; ++i) start(i);
    while (Clock::now() < end) {
      std::this_thread::sleep_for(50ms);
      if (!setting_.kills) continue;
      const int chosen = static_cast<int>(random_() % kPrograms);
      stop(chosen);
      start(chosen);
      ++kills;
    }
    shared_->end = true;
    for (const pid_t child : children_) waitFor(child);
    return kills;
  }

  void conclude(int kills, int seconds, Faults& faults) {
    Table table({"family", "reads", "writes", "lost", "torn", "failed"});
    long wrong = 0;
    long raises = 0;
    const auto names = stormFamilies();
    for (std::size_t i = 0; i < names.size(); ++i) {
      const Counts& counts = shared_->counts[i];
      table.row(names[i].name, counts.reads.load(), counts.writes + counts.raises,
                counts.lost.load(), counts.torn.load(), counts.failed.load());
      wrong += counts.faults();
      raises += counts.raises;
    }
    const int lostRaises = static_cast<int>(runInside(device_.root(), [&] {
      const long count = stormCount();
      return count >= shared_->raised && count <= raises ? 0 : 1;
    }));
    table.print(std::to_string(kPrograms) + " programs of " + std::to_string(kThreadsEach) +
                " threads for " + std::to_string(seconds) + " seconds, " + setting_.title + " (" +
                std::to_string(kills) + " kills); the shared count is " +
                (lostRaises == 0 ? "right" : "wrong") + ":");
    if (!setting_.directory) return;
    if (wrong > 0) faults.add("lost, torn or failed");
    if (lostRaises != 0) faults.add("the shared count is wrong");
  }

 private:
  void start(int program) {
    const auto seed = static_cast<std::uint32_t>(random_());
    children_.at(static_cast<std::size_t>(program)) =
        startInside(device_.root(),
                    [this, program, seed] { return runProgramOfStorm(program, seed, *shared_); });
  }

  void stop(int program) {
    const pid_t child = children_.at(static_cast<std::size_t>(program));
    kill(child, SIGKILL);
    waitFor(child);
  }

  const Setting& setting_;
  std::mt19937 random_;
  Device device_;
  Shared<StormState> shared_;
  std::array<pid_t, kPrograms> children_{};
};

int ragePrograms(const Options& options) {
  Faults faults;
  for (const Setting& setting : kSettings) {
    Programs programs(setting, options.seed);
    const int seconds = options.longRun ? setting.full : setting.brief;
    programs.conclude(programs.rage(std::chrono::seconds(seconds)), seconds, faults);
  }
  return faults.conclude("programs");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::ragePrograms);
}
