#include <signal.h>
#include <unistd.h>

#include <map>
#include <random>
#include <stdexcept>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"
#include "torture/harness/child.h"

namespace camcfg::torture {
namespace {

// The changes of a storm, one after the other, over and over.
const Words kChanges[] = {
    {"import", kAllSections},
    {"set", "System", "Rtsp", "8554"},
    {"import", kFewSections},
    {"set", "System", "WebHttps", "8443"},
};

/// Finds out what a change makes of main copies, on a device where nothing disturbs it.
class Forecast {
 public:
  Tree after(const Tree& mains, std::size_t change) {
    Tree& known = known_[{mains, change}];
    if (known.empty()) known = find(mains, change);
    return known;
  }

 private:
  Tree find(const Tree& mains, std::size_t change) const {
    Tree tree = {{"/cfg0", {}}, {"/cfg1", {}}, {"/run/camcfg", {}}};
    for (const auto& [path, bytes] : mains) {
      tree[path] = bytes;
      tree["/cfg1" + path.substr(5)] = bytes;
    }
    bench_.put(tree);
    if (bench_.run(kChanges[change]).status != 0) throw std::runtime_error("a storm's change");
    return bench_.mains();
  }

  Bench bench_;
  std::map<std::pair<Tree, std::size_t>, Tree> known_;
};

class Storm {
 public:
  Storm(std::uint32_t seed, Tally& tally) : random_(seed), tally_(tally) {}

  void kill(long number) {
    const std::size_t change = static_cast<std::size_t>(number) % std::size(kChanges);
    const Tree before = bench_.mains();
    const Tree after = forecast_.after(before, change);
    const int status = runAndKill(change);
    const std::string where = "kill " + std::to_string(number);
    ++tally_.cuts;
    const Run recovery = bench_.run(wordsOf(kRecoveries[number % 2]));
    look(before, after, status, recovery, where);
    bench_.leftTemporaries();
  }

 private:
  int runAndKill(std::size_t change) {
    std::uniform_int_distribution<long> life(0, usualLife_);
    const pid_t child = bench_.start(kChanges[change]);
    usleep(static_cast<useconds_t>(life(random_)));
    ::kill(child, SIGKILL);
    const int status = waitFor(child);
    if (status == 0) ++tally_.completed;
    // So that about one in ten comes too late, however busy the machine is.
    usualLife_ += status == 0 ? -usualLife_ / 50 : usualLife_ / 450;
    return status;
  }

  void look(const Tree& before, const Tree& after, int status, const Run& recovery,
            const std::string& where) {
    if (recovery.hasFinished()) ++tally_.finished;
    const Tree tree = bench_.tree();
    const Whole whole = judge(Bench::mainsOf(tree), before, after);
    ++tally_.found[static_cast<int>(whole)];
    const auto say = [&](int& count, const std::string& what) {
      ++count;
      report(where + ": " + what);
    };
    if (whole == Whole::Mixed || whole == Whole::Lost) report(where + ": " + wordFor(whole));
    if (status == 0 && before != after && whole != Whole::New) say(tally_.untrue, "was done but is not");
    if (recovery.status != 0) say(tally_.failed, recovery.output);
    for (const std::string& fault : faultsOf(tree)) say(tally_.failed, fault);
  }

  std::mt19937 random_;
  Tally& tally_;
  Bench bench_;
  Forecast forecast_;
  long usualLife_ = 20000;  // microseconds
};

}  // namespace

void killChanges(const Options& options, Faults& faults) {
  const long kills = options.longRun ? 10000 : 400;
  const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
    Storm storm(options.seed + static_cast<std::uint32_t>(slice.index), part);
    for (long i = 0; i < kills / slice.of; ++i) storm.kill(i);
  });
  Table table({"kills", "done before", "old", "new", "finished", "mixed", "lost", "failed",
               "untrue status"});
  table.row(tally.cuts, tally.completed, tally.count(Whole::Old), tally.count(Whole::New),
            tally.finished, tally.count(Whole::Mixed), tally.count(Whole::Lost), tally.failed,
            tally.untrue);
  table.print("import and set killed at random moments, each followed by boot or verify, seed " +
              std::to_string(options.seed));
  if (tally.wrong() > 0) faults.add("kill storm");
  if (tally.finished == 0) faults.add("kill storm: no change was interrupted");
}

}  // namespace camcfg::torture
