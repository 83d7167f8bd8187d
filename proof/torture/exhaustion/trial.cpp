#include "torture/exhaustion/trial.h"

#include <cstdio>

#include "camcfg/livemedia.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"
#include "torture/exhaustion/allocations.h"

namespace camcfg::torture {
namespace {

constexpr char kOther[] = "<A Cur=\"0\"/>\n";

int locksHeld() {
  int held = 0;
  for (const auto& [path, record] : g_mapFileLock)
    if (record.s32Locked != 0) ++held;
  return held;
}

void releaseLocks() {
  for (const auto& [path, record] : g_mapFileLock)
    if (record.s32Locked != 0) cfgUnlockFile(path.c_str());
}

// What an operation may leave behind as stated: an open document, a lock.
void tidyUp() {
  CFG_MPP_CloseRead();
  CFG_LM_CloseRead();
  releaseLocks();
}

}  // namespace

Trial::Trial(const Device& device, const Operation& operation)
    : device_(device),
      operation_(operation),
      mainPath_(operation.file[0] == '/' ? operation.file : mainPath(operation.file)),
      backupPath_(backupPath(operation.file)) {
  if (operation_.file == std::string("other.xml")) {
    before_ = {kOther, kOther};
  } else if (operation_.file[0] != '/' && operation_.file[0] != '\0') {
    before_ = {sampleText(operation_.file), sampleText(operation_.file)};
  }
  // Something to restore and something to copy.
  if (operation_.name == "CFG_VerifyFileFormat") before_.main = "<damaged";
  if (operation_.name == "cfgSyncCfgFile") before_.backup = kOther;
}

Outcome Trial::run(const std::optional<Strike>& strike) const {
  const Shared<Report> report;
  layOut();
  Traced child(device_.root(), [&] { return work(*report, strike); });
  child.run();
  layOut();

  Outcome outcome;
  if (strike && strike->condition->strikes != nullptr)
    this->strike(child, *strike, outcome);
  else
    child.run();
  outcome.copies = copies();
  layOut();
  child.run();
  outcome.nextCopies = copies();

  if (!child.ended() || child.status() != 0) throw std::runtime_error(operation_.name + " crashed");
  outcome.starved = report->struck;
  if (outcome.starved) outcome.struckCall = "allocation " + std::to_string(strike->call);
  outcome.struck |= report->struck;
  outcome.result = report->result;
  outcome.locksLeft = report->locksLeft;
  outcome.blocksLeft = report->blocksLeft;
  outcome.descriptorsLeft = report->descriptorsLeft;
  outcome.nextResult = report->nextResult;
  return outcome;
}

// In the child. The first run makes what is made once: lock records, buffers, the lists to dump.
int Trial::work(Report& report, const std::optional<Strike>& strike) const {
  std::printf("\n");
  operation_.run();
  tidyUp();
  const long blocks = liveBlocks();
  const int descriptors = openDescriptors();
  pauseHere();

  const bool starved = strike && strike->condition->strikes == nullptr;
  report.result = starved ? runStarved(report, *strike) : operation_.run();
  pauseHere();

  report.locksLeft = locksHeld();
  tidyUp();
  report.blocksLeft = liveBlocks() - blocks;
  report.descriptorsLeft = openDescriptors() - descriptors;
  report.nextResult = operation_.run();
  tidyUp();
  return 0;
}

int Trial::runStarved(Report& report, const Strike& strike) const {
  failAllocation(strike.call, strike.lasting == Lasting::FromThenOn);
  const int result = operation_.run();
  report.struck = allocationFailed();
  failAllocation(0, false);
  return result;
}

void Trial::layOut() const {
  if (before_.main) device_.write(mainPath_, *before_.main);
  if (before_.backup) device_.write(backupPath_, *before_.backup);
}

Copies Trial::copies() const {
  if (!before_.main) return {};
  return {device_.read(mainPath_), device_.read(backupPath_)};
}

void Trial::strike(Traced& child, const Strike& strike, Outcome& outcome) const {
  int calls = 0;
  int loads = 0;
  bool firstLoad = true;
  child.run([&](const FileCall& call) {
    if (call.known->kind == CallKind::Open && call.path == mainPath_) ++loads;
    if (call.writes || loads > 1) firstLoad = false;
    if (!strike.condition->strikes(call)) return Verdict{};
    ++calls;
    const bool fails =
        strike.lasting == Lasting::OneCall ? calls == strike.call : calls >= strike.call;
    if (!fails) return Verdict{};
    if (!outcome.struck) {
      outcome.struckCall = std::string(call.known->name) + " " + call.path;
      outcome.afterFirstLoad = !firstLoad;
      outcome.duringFirstLoad = firstLoad && isNeededToLoad(call, strike.lasting);
    }
    outcome.struck = true;
    return Verdict{Verdict::Fail, strike.condition->error};
  });
}

// That a load looks at the file's kind, or closes the file, need not count, nor does one reading
// that a stream makes ahead of its need.
bool Trial::isNeededToLoad(const FileCall& call, Lasting lasting) const {
  if (call.path != mainPath_) return false;
  return call.known->kind == CallKind::Open ||
         (call.known->kind == CallKind::Read && lasting == Lasting::FromThenOn);
}

}  // namespace camcfg::torture
