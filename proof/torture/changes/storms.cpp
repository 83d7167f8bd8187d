#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <random>
#include <stdexcept>
#include <thread>
#include <utility>

#include "torture/changes/experiments.h"
#include "torture/changes/scene.h"
#include "torture/harness/child.h"

namespace camcfg::torture {
namespace {

using Clock = std::chrono::steady_clock;

// The changes of a storm, one after the other, over and over.
const Words kUndo = {"undo"};
const Words kChanges[] = {
    {"import", kAllSections}, kUndo,
    {"import", kAllSections}, {"set", "System", "Rtsp", "8554"},
    {"import", kFewSections}, kUndo,
    {"import", kFewSections}, {"set", "System", "WebHttps", "8443"},
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
    Tree tree = {{"/cfg0", {}}, {"/cfg1", {}}, {kLockDirectory, {}}};
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

/// Lives of runs, of a length drawn by chance, so that about one in ten ends by itself, however busy
/// the machine is.
class Lives {
 public:
  explicit Lives(long usual) : usual_(usual) {}

  std::chrono::microseconds draw(std::mt19937& random) const {
    return std::chrono::microseconds(std::uniform_int_distribution<long>(0, usual_)(random));
  }
  void learn(bool isTooLong) { usual_ += isTooLong ? -usual_ / 8 : std::max(1L, usual_ / 64); }

 private:
  long usual_;  // microseconds
};

/// Makes changes and kills them, on one device all the time.
class Storm {
 public:
  Storm(std::uint32_t seed, Tally& tally) : random_(seed), tally_(tally) {}

  void kill(long number) {
    const Tree before = bench_.mains();
    const bool isUndo = kChanges[change_] == kUndo;
    const Tree after = isUndo ? former_ : forecast_.after(before, change_);
    // Half of them once the change is in force, which is a small part of its time.
    const int status = number % 2 == 0 ? killAtAnyTime() : killInForce();
    ++tally_.cuts;
    if (status == 0) ++tally_.completed;
    const Recovery recovery = number % 4 < 2 ? Recovery::Boot : Recovery::Verify;
    const Run run = bench_.run(wordsOf(recovery));
    if (look(before, after, status, run, "kill " + std::to_string(number)) == Whole::New) {
      change_ = (change_ + 1) % std::size(kChanges);
      former_ = before;
    }
    bench_.leftTemporaries();
  }

 private:
  int killAtAnyTime() {
    const pid_t child = bench_.start(kChanges[change_]);
    waitFor(anyTime_.draw(random_));
    ::kill(child, SIGKILL);
    const int status = torture::waitFor(child);
    anyTime_.learn(status == 0);
    return status;
  }

  // From the first flush on, which is the journal's.
  int killInForce() {
    bool isComing = false;
    const auto decide = [&](const DeviceCall& call) {
      if (call.flushes && !std::exchange(isComing, true)) killGroupLater(getpgid(call.thread));
      return Fate{};
    };
    const int status = bench_.follow(kChanges[change_], decide).status;
    inForce_.learn(status == 0);
    return status;
  }

  void killGroupLater(pid_t group) {
    const std::chrono::microseconds life = inForce_.draw(random_);
    if (fork() != 0) return;
    waitFor(life);
    ::kill(-group, SIGKILL);
    _exit(0);
  }

  // A process that sleeps for less is woken too late.
  static void waitFor(std::chrono::microseconds time) {
    if (time > std::chrono::milliseconds(2)) return std::this_thread::sleep_for(time);
    const auto end = Clock::now() + time;
    while (Clock::now() < end) continue;
  }

  Whole look(const Tree& before, const Tree& after, int status, const Run& recovery,
             const std::string& where) {
    if (recovery.hasFinished()) ++tally_.finished;
    const Tree tree = bench_.tree();
    const Whole whole = judge(Bench::mainsOf(tree), before, after);
    ++tally_.found[static_cast<int>(whole)];
    const auto say = [&](int& count, const std::string& what) {
      ++count;
      report(where, what);
    };
    if (whole == Whole::Mixed || whole == Whole::Lost) report(where, wordFor(whole));
    if (status == 0 && whole != Whole::New)
      say(tally_.untrue, "the change was done but is not there");
    if (recovery.status != 0) say(tally_.failed, recovery.output);
    for (const std::string& fault : faultsOf(tree)) say(tally_.failed, fault);
    return whole;
  }

  std::mt19937 random_;
  Tally& tally_;
  Bench bench_;
  Forecast forecast_;
  std::size_t change_ = 0;
  Tree former_;  // before the latest change
  Lives anyTime_{20000};
  Lives inForce_{400};
};

}  // namespace

void killChanges(const Options& options, Faults& faults) {
  const Tally tally = killInStorms<Storm>(options, options.longRun ? 10000 : 200);
  Table table({"kills", "done before", "old", "new", "finished", "mixed", "lost", "failed",
               "untrue status"});
  table.row(tally.cuts, tally.completed, tally.count(Whole::Old), tally.count(Whole::New),
            tally.finished, tally.count(Whole::Mixed), tally.count(Whole::Lost), tally.failed,
            tally.untrue);
  table.print(
      "import, undo and set killed at random moments, every second time once the change is in "
      "force, each followed by boot or verify, seed " +
      std::to_string(options.seed));
  if (tally.wrong() > 0) faults.add("kill storm");
  if (tally.finished == 0) faults.add("kill storm: no change was interrupted");
}

}  // namespace camcfg::torture
