#include "torture/changes/scene.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "torture/harness/child.h"
#include "torture/tracer/process_view.h"

namespace camcfg::torture {
namespace {

void require(const Run& run, const std::string& what) {
  if (run.status != 0) throw std::runtime_error(what + ": " + run.output);
}

std::size_t sizeOf(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  return error ? 0 : static_cast<std::size_t>(size);
}

bool movesBytes(const DeviceCall& call) {
  return !call.flushes && call.path.rfind("/cfg", 0) == 0 &&
         (call.known->kind == CallKind::Write || call.known->kind == CallKind::Copy);
}

}  // namespace

Tally inSlices(const std::function<void(const Slice&, Tally&)>& work) {
  const int places = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
  std::vector<std::unique_ptr<Shared<Tally>>> tallies;
  std::vector<std::function<int()>> tasks;
  for (int i = 0; i < places; ++i) {
    const Shared<Tally>& tally = *tallies.emplace_back(std::make_unique<Shared<Tally>>());
    tasks.emplace_back([&work, &tally, i, places] {
      work({i, places}, *tally);
      return 0;
    });
  }
  Tally sum;
  sum.failed = runSideBySide(tasks);
  for (const auto& tally : tallies) sum.add(**tally);
  return sum;
}

Attention attentionTo(CutPoint::Kind kind) {
  return kind == CutPoint::AnyCall ? Attention::EveryCall : Attention::Changes;
}

std::string textOf(const CutPoint& cut) {
  constexpr const char* kKinds[] = {"changing call ", "call ", "byte "};
  return kKinds[cut.kind] + std::to_string(cut.at);
}

Scene::Scene(const ChangingCommand& command) : command_(command) {
  for (const Words& words : command.before) require(bench_.run(words), words.front());
  start_ = bench_.tree();
  before_ = bench_.mains();
  require(bench_.run(anotherChange()), "another change");
  anotherAfterOld_ = bench_.mains();
  layOut();
  if (!command.tried.empty()) {
    beginTrial();
    return;
  }
  require(bench_.run(command.words), command.name);
  after_ = bench_.mains();
  require(bench_.run(anotherChange()), "another change");
  anotherAfterNew_ = bench_.mains();
  if (after_ == before_) throw std::runtime_error(std::string(command.name) + " changes nothing");
  bench_.leftTemporaries();
}

void Scene::beginTrial() {
  bench_.putOnTrial(command_.tried, command_.isOver);
  start_ = bench_.tree();
  after_ = bench_.mains();
  if (after_ == before_) throw std::runtime_error(std::string(command_.name) + ": no trial");
  bench_.leftTemporaries();
}

// A copy asks for more than there is.
std::size_t Scene::arriving(const DeviceCall& call) const {
  if (call.known->kind != CallKind::Copy) return call.size;
  const std::string name = call.path.substr(call.path.rfind('/') + 1);
  const bool isBackup = call.path == backupPath(name);
  const std::size_t whole = sizeOf(bench_.root() + (isBackup ? mainPath(name) : backupPath(name)));
  const std::size_t there = sizeOf(bench_.root() + call.path);
  return std::min(call.size, whole > there ? whole - there : 0);
}

long Scene::countOf(CutPoint::Kind kind, const Words& words) const {
  long count = 0;
  bench_.follow(
      words,
      [&](const DeviceCall& call) {
        if (kind == CutPoint::AnyCall || (kind == CutPoint::ChangingCall && call.changes))
          ++count;
        else if (kind == CutPoint::Byte && movesBytes(call))
          count += static_cast<long>(arriving(call));
        return Fate{};
      },
      {}, attentionTo(kind));
  return count;
}

void Scene::cut(const Words& words, const CutPoint& cut) const {
  long left = cut.at;
  bench_.follow(
      words,
      [&](const DeviceCall& call) {
        if (cut.kind != CutPoint::Byte) {
          const bool counts = cut.kind == CutPoint::AnyCall || call.changes;
          return counts && left-- == 0 ? Fate{Fate::End} : Fate{};
        }
        if (!movesBytes(call)) return Fate{};
        const auto size = static_cast<long>(arriving(call));
        if (left < size)
          return left == 0 ? Fate{Fate::End}
                           : Fate{Fate::EndAfter, 0, static_cast<std::size_t>(left)};
        left -= size;
        return Fate{};
      },
      {}, attentionTo(cut.kind));
}

std::optional<Written> Scene::cutAfterWrite(const Words& words, long write) const {
  Written written{};
  bench_.follow(words, [&](const DeviceCall& call) {
    if (!movesBytes(call) || arriving(call) == 0 || write-- != 0) return Fate{};
    written = {{}, call.path, positionOf(call.thread, call.descriptor), arriving(call)};
    return Fate{Fate::EndAfter, 0, written.size};
  });
  if (written.size == 0) return std::nullopt;
  written.tree = bench_.tree();
  if (written.tree[written.path].value_or("").size() != written.offset + written.size)
    throw std::runtime_error(written.path + " was not written to its end");
  return written;
}

Tree Written::cutAfter(std::size_t bytes) const {
  Tree cut = tree;
  cut[path]->resize(offset + bytes);
  return cut;
}

Whole Scene::count(const Tree& tree, const Tree& before, const Tree& after,
                   const std::string& where, Tally& tally) const {
  const Whole whole = judge(Bench::mainsOf(tree), before, after);
  ++tally.found[static_cast<int>(whole)];
  if (whole == Whole::Mixed || whole == Whole::Lost) report(where, wordFor(whole));
  const std::vector<std::string> faults = faultsOf(tree);
  if (!faults.empty()) ++tally.failed;
  for (const std::string& fault : faults) report(where, fault);
  return whole;
}

Whole Scene::look(const std::string& where, Tally& tally) const {
  return count(bench_.tree(), before_, after_, where, tally);
}

// Without another change, the device is looked at as it is; with it, whether that was made counts too.
void Scene::recoverWhole(const std::string& where, Tally& tally) const {
  const Run run = bench_.run(wordsOf(Recovery::Boot));
  const Tree mains = bench_.mains();
  const bool hasAnother = mains == anotherAfterOld_ || mains == anotherAfterNew_;
  if (run.status != 0) {
    ++tally.failed;
    report(where, "boot says " + run.output);
  }
  count(bench_.tree(), hasAnother ? anotherAfterOld_ : before_,
        hasAnother ? anotherAfterNew_ : after_, where, tally);
}

Whole Scene::recover(Recovery recovery, const std::string& where, Tally& tally) const {
  if (!command_.tried.empty()) recovery = Recovery::Boot;
  const Run run = bench_.run(wordsOf(recovery));
  const std::string place = where + ", then " + wordsOf(recovery).front();
  const auto fail = [&](const std::string& why) {
    ++tally.failed;
    report(place, why);
  };
  if (run.status != 0) fail("status " + std::to_string(run.status) + ": " + run.output);
  if (run.hasFinished()) ++tally.finished;
  const bool isAnother = recovery == Recovery::AnotherChange;
  const Whole whole = count(bench_.tree(), isAnother ? anotherAfterOld_ : before_,
                            isAnother ? anotherAfterNew_ : after_, place, tally);
  if (command_.isOver && whole == Whole::New) fail("it is not rolled back");
  if (recovery == Recovery::Boot && startsAgain_) {
    const Run again = bench_.run(wordsOf(recovery));
    if (again.status != 0 || !again.output.empty())
      fail("the next boot has something to do: " + again.output);
  }
  return whole;
}

}  // namespace camcfg::torture
