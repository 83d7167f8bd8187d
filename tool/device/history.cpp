#include "device/history.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "base/concat.h"
#include "base/outcome.h"
#include "device/state_changes.h"
#include "device/state_record.h"

namespace camcfg::tool::device {
namespace {

constexpr char kNewKeep[] = "keep.new";

}  // namespace

std::vector<RecordedChange> history() {
  const StateFolder changes = StateFolder::existing().folder(kChanges);
  std::vector<RecordedChange> all;
  for (const int number : numbersOf(changes)) {
    Record record = readRecord(changes, std::to_string(number));
    if (record.kind != Record::Whole || record.change.number != number) continue;
    for (FileChange& file : record.change.files) file = {file.path, "", ""};
    all.push_back(std::move(record.change));
  }
  return all;
}

std::optional<RecordedChange> changeOfNumber(int number) {
  const StateFolder state = StateFolder::existing();
  Record record = readRecord(state.folder(kChanges), std::to_string(number));
  if (record.kind != Record::Whole || record.change.number != number) return std::nullopt;
  return withContents(state, std::move(record.change));
}

int historyLimit() {
  return keptChanges(StateFolder::existing());
}

void setHistoryLimit(int keep) {
  const StateFolder state = StateFolder::made();
  const std::string text = std::to_string(std::max(keep, 0)) + "\n";
  bool isWritten = state.write(kNewKeep, text);
  while (!isWritten && errno == ENOSPC && dropOldest(state))
    isWritten = state.write(kNewKeep, text);
  if (!isWritten || !state.flush() || !state.rename(kNewKeep, state, kKeep)) {
    const int error = errno;
    state.remove(kNewKeep);
    throw Refusal(
        concat(kStateDirectory, "/", kKeep, " cannot be written: ", std::strerror(error)));
  }
  prune(state);
  state.flush();
}

bool forgetOldest() {
  try {
    return dropOldest(StateFolder::existing());
  } catch (const Refusal&) {
    return false;
  }
}

}  // namespace camcfg::tool::device
