// Lets every exported function run out of what a system may be short of, at each of its system
// calls and allocations in turn, once for only that one and once from that one on. Native only: it
// traces.
//   camcfg-exhaustion [--long] [--seed N]
// Wrong: a result that is not as stated, a failed call that changed a file, a lock, a block of
// memory or a descriptor left behind, and a next call that does not do what it should. What becomes
// of the copies when a save fails, which no result reports, is counted. With --long, all of it once more
// with programs kept apart.
#include <cstdio>

#include "torture/exhaustion/trial.h"
#include "torture/harness/options.h"
#include "torture/harness/table.h"
#include "torture/harness/xml_text.h"

namespace camcfg::torture {
namespace {

bool parses(const std::optional<std::string>& copy) {
  return copy && settingsOf(*copy);
}

/// What a condition did to all functions.
struct Tally {
  int runs = 0;
  int failed = 0;
  int read = 0;        ///< readers that succeeded nevertheless
  int stored = 0;      ///< writers that stored their change in both copies
  int notStored = 0;   ///< writers that succeeded with both copies as they were
  int mainGood = 0;    ///< main copy good, its backup out of date or damaged
  int backupGood = 0;  ///< main copy damaged, its backup good
  int bothDamaged = 0;
};

class Exhaustion {
 public:
  Exhaustion(Faults& faults, bool areKeptApart) : faults_(faults), areKeptApart_(areKeptApart) {
    device_.fill();
    if (areKeptApart) device_.makeDirectory(kLockDirectory);
  }

  void tryAll(const Operation& operation) {
    const Trial trial(device_, operation);
    const Outcome reference = trial.run(std::nullopt);
    if (reference.result != operation.success) faults_.add(operation.name + " does not succeed");
    for (std::size_t i = 0; i < conditions().size(); ++i)
      for (const Lasting lasting : {Lasting::OneCall, Lasting::FromThenOn})
        tryEachCall(trial, operation, reference, {&conditions()[i], lasting, 0},
                    tallies_[i][lasting == Lasting::OneCall ? 0 : 1]);
  }

  void print(const std::string& title) const {
    Table table({"condition", "lasts", "runs", "failed as stated", "read nevertheless",
                 "stored in both copies", "in neither", "main good", "backup good",
                 "both damaged"});
    for (std::size_t i = 0; i < conditions().size(); ++i)
      for (const int lasting : {0, 1}) {
        const Tally& tally = tallies_[i][lasting];
        table.row(conditions()[i].name, lasting == 0 ? "one call" : "from then on", tally.runs,
                  tally.failed, tally.read, tally.stored, tally.notStored, tally.mainGood,
                  tally.backupGood, tally.bothDamaged);
      }
    table.print(title);
    std::printf("In %d of the runs without memory tinyxml2 lost a block.\n\n", lostByTinyxml2_);
  }

 private:
  void tryEachCall(const Trial& trial, const Operation& operation, const Outcome& reference,
                   Strike strike, Tally& tally) {
    for (;;) {
      ++strike.call;
      const Outcome outcome = trial.run(strike);
      if (!outcome.struck) return;
      ++tally.runs;
      const bool mayLoadAgain = areKeptApart_ && strike.lasting == Lasting::OneCall;
      const std::string fault = faultOf(trial, operation, reference, outcome, mayLoadAgain);
      if (!fault.empty())
        faults_.add(operation.name + ", " + strike.condition->name + " at " + outcome.struckCall +
                    (strike.lasting == Lasting::OneCall ? "" : " and on") + ": " + fault);
      count(trial, operation, reference, outcome, tally);
      if (isLostByTinyxml2(outcome)) ++lostByTinyxml2_;
    }
  }

  // Where programs are kept apart, a reader whose file is not the one that its lock file is open for
  // closes that and loads once more.
  std::string faultOf(const Trial& trial, const Operation& operation, const Outcome& reference,
                      const Outcome& outcome, bool mayLoadAgain) const {
    const bool failed = outcome.result == operation.failure;
    const bool succeeded = outcome.result == operation.success;
    if (!failed && !succeeded) return "result " + std::to_string(outcome.result);
    if (operation.either != Either::Always && outcome.duringFirstLoad && !failed && !mayLoadAgain)
      return "succeeded without its file";
    if (operation.either == Either::Never && outcome.afterFirstLoad && !succeeded)
      return "failed though its file was loaded";
    const bool unchanged = outcome.copies == trial.before();
    if (!operation.writes && !unchanged) return "a reader changed its file";
    if (outcome.starved && operation.writes && !parses(outcome.copies.backup))
      return "a document that was not written whole reached the backup";
    // A save that runs out of memory may leave the main copy incomplete, as stated.
    if (operation.either == Either::Never && !outcome.starved && !succeeded && !unchanged)
      return "failed and changed its file";
    return leftBehind(operation, succeeded, reference, outcome);
  }

  // Where its list of blocks cannot grow, tinyxml2 forgets the block that it was to hold.
  static bool isLostByTinyxml2(const Outcome& outcome) {
    return outcome.starved && outcome.blocksLeft == 1;
  }

  std::string leftBehind(const Operation& operation, bool succeeded, const Outcome& reference,
                         const Outcome& outcome) const {
    const int locks = succeeded && operation.leavesLocked ? 1 : 0;
    if (outcome.locksLeft > locks) return "a lock is left";
    if (outcome.blocksLeft != 0 && !isLostByTinyxml2(outcome))
      return std::to_string(outcome.blocksLeft) + " blocks left";
    if (outcome.descriptorsLeft > 0 || (outcome.descriptorsLeft < 0 && !areKeptApart_))
      return std::to_string(outcome.descriptorsLeft) + " descriptors left";
    if (outcome.nextResult != operation.success) return "the next call failed";
    if (!(outcome.nextCopies == reference.copies)) return "the next call did something else";
    return "";
  }

  static void count(const Trial& trial, const Operation& operation, const Outcome& reference,
                    const Outcome& outcome, Tally& tally) {
    if (outcome.result != operation.success)
      ++tally.failed;
    else if (!operation.writes)
      ++tally.read;
    else if (outcome.copies == reference.copies)
      ++tally.stored;
    else if (outcome.copies == trial.before())
      ++tally.notStored;
    else if (parses(outcome.copies.main))
      ++tally.mainGood;
    else if (parses(outcome.copies.backup))
      ++tally.backupGood;
    else
      ++tally.bothDamaged;
  }

  Faults& faults_;
  const bool areKeptApart_;
  Device device_;
  int lostByTinyxml2_ = 0;
  std::vector<std::array<Tally, 2>> tallies_ =
      std::vector<std::array<Tally, 2>>(conditions().size());
};

int exhaust(const Options& options) {
  Faults faults;
  for (const std::string& name : functionsLeftOut(CAMCFG_SYMBOLS))
    faults.add(name + " is exported and not tried");
  const std::vector<Operation> all = operations();
  const std::string calls = std::to_string(all.size()) + " calls of exported functions";
  for (const bool areKeptApart : {false, true}) {
    if (areKeptApart && !options.longRun) break;
    Exhaustion exhaustion(faults, areKeptApart);
    for (const Operation& operation : all) exhaustion.tryAll(operation);
    exhaustion.print("Shortages at each system call and each allocation of " + calls +
                     (areKeptApart ? std::string(", with ") + kLockDirectory : ""));
  }
  return faults.conclude("exhaustion");
}

}  // namespace
}  // namespace camcfg::torture

int main(int argc, char** argv) {
  return camcfg::torture::runTorture(argc, argv, camcfg::torture::exhaust);
}
