#include <random>
#include <set>
#include <stdexcept>

#include "torture/changes/experiments.h"
#include "torture/changes/medium.h"
#include "torture/changes/scene.h"

namespace camcfg::torture {
namespace {

constexpr std::size_t kFewOperations = 20;

/// Commands that follow each other while power may fail at any time.
struct Story {
  std::string name;
  std::vector<Words> before;    ///< long ago
  std::vector<Words> commands;  ///< that power fails in or after
  Words tried{};                ///< what was put on trial before; none: nothing was
  bool staysOld = false;        ///< nothing of it may be in force after the start
  int status = 0;               ///< of each command
};

std::vector<Story> stories() {
  std::vector<Story> all;
  for (const ChangingCommand& command : changingCommands())
    all.push_back({command.name, command.before, {command.words}});
  for (const ChangingCommand& end : endsOfTrials())
    all.push_back({end.name, end.before, {end.words}, end.tried, end.isOver});
  const Words import = {"import", kAllSections};
  all.push_back({"try", {}, {{"try", "--for", "1s", "--", "import", kAllSections}}, {}, true, 6});
  all.push_back({"set, then import", {}, {anotherChange(), import}});
  all.push_back({"import, then set", {}, {import, anotherChange()}});
  return all;
}

using Survivals = std::vector<Survival>;
using Operations = std::vector<Operation>;

// The first operation that is not flushed when power fails before the operation `cut`.
std::size_t unflushed(const Operations& operations, std::size_t cut) {
  while (cut > 0 && operations[cut - 1].kind != Operation::Flush) --cut;
  return cut;
}

Tree afterPowerCut(const Tree& start, const Operations& operations, std::size_t cut,
                   const Survivals& survivals) {
  Medium medium(start);
  const std::size_t flushed = cut - survivals.size();
  for (std::size_t i = 0; i < cut; ++i)
    medium.apply(operations[i], i < flushed ? Survival::Whole : survivals[i - flushed]);
  return medium.tree();
}

/// The commands of a story as they were carried out once.
class Chapter {
 public:
  explicit Chapter(const Story& story) {
    for (const Words& words : story.before) require(bench_.run(words));
    states_.push_back(bench_.mains());
    if (!story.tried.empty()) bench_.putOnTrial(story.tried, story.staysOld);
    start_ = bench_.tree();
    Recording recording(bench_, start_);
    for (const Words& words : story.commands) {
      require(recording.run(words), story.status);
      ends_.push_back(recording.operations().size());
      states_.push_back(bench_.mains());
    }
    operations_ = recording.operations();
    Tree tree = bench_.tree();
    for (auto file = tree.begin(); file != tree.end();)
      file = file->first.rfind("/run/camcfg/", 0) == 0 ? tree.erase(file) : std::next(file);
    if (tree != recording.tree()) throw std::runtime_error("not all that was done was recorded");
  }

  const Bench& bench() const { return bench_; }
  const Operations& operations() const { return operations_; }
  const Tree& start() const { return start_; }

  // A command that has ended must be in force.
  std::pair<Tree, Tree> allowed(std::size_t cut) const {
    std::size_t done = 0;
    while (done < ends_.size() && ends_[done] <= cut) ++done;
    return {states_[done], states_[std::min(done + 1, states_.size() - 1)]};
  }

 private:
  static void require(const Run& run, int status = 0) {
    if (run.status != status) throw std::runtime_error(run.output);
  }

  Bench bench_;
  Tree start_;
  std::vector<Tree> states_;
  Operations operations_;
  std::vector<std::size_t> ends_;
};

Survivals drawn(const Operation* first, std::size_t count, std::mt19937& random) {
  std::uniform_int_distribution<int> any(0, 3);
  Survivals survivals(count);
  for (std::size_t i = 0; i < count; ++i) {
    const int number = any(random);
    survivals[i] = first[i].kind == Operation::Write ? static_cast<Survival>(number)
                                                     : static_cast<Survival>(number % 2);
  }
  return survivals;
}

// All, nothing, all but one, only one; then any, by chance.
std::vector<Survivals> survivalsOf(const Operation* first, std::size_t count, int draws,
                                   std::mt19937& random) {
  std::vector<Survivals> all = {Survivals(count, Survival::None)};
  if (count == 0) return all;
  all.emplace_back(count, Survival::Whole);
  const auto addWith = [&](Survival others, std::size_t i, Survival one) {
    all.emplace_back(count, others)[i] = one;
  };
  for (std::size_t i = 0; i < count; ++i) {
    addWith(Survival::Whole, i, Survival::None);
    addWith(Survival::None, i, Survival::Whole);
    if (first[i].kind != Operation::Write) continue;
    addWith(Survival::Whole, i, Survival::Zeros);
    addWith(Survival::Whole, i, Survival::Half);
  }
  for (int draw = 0; draw < draws; ++draw) all.push_back(drawn(first, count, random));
  return all;
}

// Whether a file was written that was to be emptied before, and was not: what it held shows through.
bool isOverwritten(const Operation* first, const Survivals& survivals) {
  std::set<int> kept;
  for (std::size_t i = 0; i < survivals.size(); ++i) {
    if (survivals[i] == Survival::None && first[i].kind == Operation::Truncate)
      kept.insert(first[i].file);
    if (survivals[i] != Survival::None && first[i].kind == Operation::Write &&
        kept.count(first[i].file) != 0)
      return true;
  }
  return false;
}

/// Which states of the medium are tried.
enum class Medley {
  Orderly,      ///< no file is written that was not emptied before as it was to be
  Overwritten,  ///< those others
};

class PowerCut {
 public:
  PowerCut(const Story& story, Medley medley, const Slice& slice, Tally& tally,
           const Options& options)
      : name_(story.name),
        medley_(medley),
        slice_(slice),
        tally_(tally),
        options_(options),
        chapter_(story),
        random_(options.seed + static_cast<std::uint32_t>(slice.index)) {}

  void run() {
    // Alike in all slices.
    std::mt19937 random(options_.seed);
    const Operations& operations = chapter_.operations();
    for (std::size_t cut = 0; cut <= operations.size(); ++cut) {
      const std::size_t flushed = unflushed(operations, cut);
      for (const Survivals& survivals : survivalsOf(operations.data() + flushed, cut - flushed,
                                                    options_.longRun ? 200 : 2, random))
        if (isOverwritten(operations.data() + flushed, survivals) ==
            (medley_ == Medley::Overwritten))
          tryOne(cut, survivals);
    }
  }

 private:
  // The short run takes a sample of what is different.
  void tryOne(std::size_t cut, const Survivals& survivals) {
    const Tree left = afterPowerCut(chapter_.start(), chapter_.operations(), cut, survivals);
    if (!seen_.insert({left, chapter_.allowed(cut)}).second) return;
    const long number = static_cast<long>(seen_.size()) - 1;
    const bool isShort = chapter_.operations().size() < kFewOperations;
    const long every = options_.longRun || isShort ? 1 : 4;
    if (number % every != 0 || !slice_.has(number / every)) return;
    chapter_.bench().put(left);
    ++tally_.cuts;
    const std::string where = name_ + ", power fails before operation " + std::to_string(cut);
    const bool hasFinished = start(where, chapter_.allowed(cut));
    if (hasFinished && medley_ == Medley::Orderly)
      failAgain(left, where + " and again in boot", chapter_.allowed(cut));
  }

  // While boot finishes a change, power fails once more, at a moment drawn by chance.
  void failAgain(const Tree& left, const std::string& where, const std::pair<Tree, Tree>& allowed) {
    constexpr int kDraws = 3;
    chapter_.bench().put(left);
    Recording recording(chapter_.bench(), left);
    recording.run({"boot"});
    const Operations& operations = recording.operations();
    std::uniform_int_distribution<std::size_t> anyCut(0, operations.size());
    for (int draw = 0; draw < kDraws; ++draw) {
      const std::size_t cut = anyCut(random_);
      const std::size_t flushed = unflushed(operations, cut);
      const Survivals survivals = drawn(operations.data() + flushed, cut - flushed, random_);
      if (isOverwritten(operations.data() + flushed, survivals)) continue;
      chapter_.bench().put(afterPowerCut(left, operations, cut, survivals));
      ++tally_.cuts;
      start(where, allowed);
    }
  }

  // True if it finished a change.
  bool start(const std::string& where, const std::pair<Tree, Tree>& allowed) {
    const Run run = chapter_.bench().run({"boot"});
    if (run.hasFinished()) ++tally_.finished;
    const Tree tree = chapter_.bench().tree();
    const Whole whole = judge(Bench::mainsOf(tree), allowed.first, allowed.second);
    ++tally_.found[static_cast<int>(whole)];
    if (whole == Whole::Mixed || whole == Whole::Lost) report(where, wordFor(whole));
    std::vector<std::string> faults = faultsOf(tree);
    if (run.status != 0) faults.push_back("status " + std::to_string(run.status));
    if (!faults.empty()) ++tally_.failed;
    for (const std::string& fault : faults) report(where, fault);
    if (!faults.empty()) report(where, "boot says " + run.output);
    return run.hasFinished();
  }

  const std::string name_;
  const Medley medley_;
  const Slice slice_;
  Tally& tally_;
  const Options& options_;
  const Chapter chapter_;
  std::mt19937 random_;
  std::set<std::pair<Tree, std::pair<Tree, Tree>>> seen_;
};

void cutPowerIn(Medley medley, const char* title, const Options& options, Faults& faults) {
  Table table(
      {"commands", "states of the medium", "old", "new", "finished", "mixed", "lost", "failed"});
  for (const Story& story : stories()) {
    const Tally tally = inSlices([&](const Slice& slice, Tally& part) {
      PowerCut(story, medley, slice, part, options).run();
    });
    table.row(story.name, tally.cuts, tally.count(Whole::Old), tally.count(Whole::New),
              tally.finished, tally.count(Whole::Mixed), tally.count(Whole::Lost), tally.failed);
    if (tally.wrong() > 0) faults.add(story.name + ", power cuts");
    if (tally.cuts > 0 && tally.count(story.staysOld ? Whole::Old : Whole::New) == 0)
      faults.add(story.name + ", power cuts: not all was tried");
  }
  table.print(title + std::string("; then boot, seed ") + std::to_string(options.seed));
}

}  // namespace

void cutPowerInChanges(const Options& options, Faults& faults) {
  cutPowerIn(Medley::Orderly,
             "Power fails at any time, and any part of what was not flushed is lost", options,
             faults);
  cutPowerIn(
      Medley::Overwritten,
      "The same where a file was written that was not emptied before, which was to come first",
      options, faults);
}

}  // namespace camcfg::torture
