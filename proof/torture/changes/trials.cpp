#include <signal.h>

#include <chrono>
#include <random>
#include <thread>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"
#include "torture/harness/child.h"

namespace camcfg::torture {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLength(1000);  // of a trial
constexpr milliseconds kAround(60);    // what a change takes, or its rollback

/// Kills changes on trial that nobody confirms, on one device all the time.
class TrialStorm {
 public:
  TrialStorm(std::uint32_t seed, Tally& tally) : random_(seed), tally_(tally) {}

  void kill(long number) {
    const Words words[] = {{"try", "--for", "1s", "--", "import", kAllSections},
                           {"try", "--for", "1s", "--", "set", "System", "Rtsp", "8554"}};
    const pid_t child = bench_.start(words[number % 2]);
    // While the change is made, and while it is rolled back, in turns.
    std::this_thread::sleep_for((number % 4 < 2 ? milliseconds(0) : kLength) + life());
    ::kill(child, SIGKILL);
    const int status = waitFor(child);
    ++tally_.cuts;
    if (status == 6) ++tally_.completed;
    const Recovery recovery = number % 8 < 4 ? Recovery::Boot : Recovery::Verify;
    if (recovery == Recovery::Verify) std::this_thread::sleep_for(kLength);
    look(bench_.run(wordsOf(recovery)), "kill " + std::to_string(number));
    bench_.leftTemporaries();
  }

 private:
  std::chrono::microseconds life() {
    const auto most = std::chrono::microseconds(kAround).count();
    return std::chrono::microseconds(std::uniform_int_distribution<long>(0, most)(random_));
  }

  void look(const Run& recovery, const std::string& where) {
    if (recovery.hasFinished()) ++tally_.finished;
    const Tree tree = bench_.tree();
    const Whole whole = judge(Bench::mainsOf(tree), old_, old_);
    ++tally_.found[static_cast<int>(whole)];
    std::vector<std::string> faults = faultsOf(tree);
    if (whole != Whole::Old) faults.emplace_back("it is not rolled back");
    if (recovery.status != 0) faults.push_back(recovery.output);
    if (!faults.empty()) ++tally_.failed;
    for (const std::string& fault : faults) report(where, fault);
  }

  std::mt19937 random_;
  Tally& tally_;
  Bench bench_;
  const Tree old_ = bench_.mains();
};

}  // namespace

void killTrials(const Options& options, Faults& faults) {
  const long kills = options.longRun ? 1000 : 80;
  const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
    TrialStorm storm(options.seed + static_cast<std::uint32_t>(slice.index), part);
    for (long i = 0; i < kills / slice.of; ++i) storm.kill(i);
  });
  Table table({"kills", "done before", "old", "finished", "not old", "failed"});
  table.row(tally.cuts, tally.completed, tally.count(Whole::Old), tally.finished,
            tally.cuts - tally.count(Whole::Old), tally.failed);
  table.print(
      "import and set on trial for a second, killed at random moments while they are made or "
      "rolled "
      "back, each followed by boot, or by verify once the time is over, seed " +
      std::to_string(options.seed));
  if (tally.wrong() > 0) faults.add("kill storm of trials");
  if (tally.finished == 0) faults.add("kill storm of trials: nothing was interrupted");
}

}  // namespace camcfg::torture
