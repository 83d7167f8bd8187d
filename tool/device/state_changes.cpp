#include "device/state_changes.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <set>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/state_contents.h"
#include "device/state_record.h"

namespace camcfg::tool::device {
namespace {

constexpr int kUsuallyKept = 8;
constexpr std::size_t kMostHistoryBytes = std::size_t{1} << 20;
constexpr std::size_t kMostAside = 3;
constexpr char kAside[] = "aside-";

// Numbers that are written in their shortest form, so that each has one name.
std::vector<int> numbersAfter(const StateFolder& folder, const std::string& beginning) {
  std::vector<int> numbers;
  for (const std::string& name : folder.names()) {
    if (!beginsWith(name, beginning)) continue;
    const std::string digits = name.substr(beginning.size());
    const std::optional<std::int32_t> number = decimal32(digits);
    if (number && *number > 0 && std::to_string(*number) == digits) numbers.push_back(*number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

int after(int number) {
  return number < INT32_MAX ? number + 1 : number;
}

std::string asideName(int number) {
  return kAside + std::to_string(number);
}

void collect(Record record, std::set<std::string>& hashes) {
  for (FileChange& file : record.change.files)
    for (const std::string* hash : contentsIn(file)) hashes.insert(*hash);
}

// The contents that anything has to do with; none if that cannot be known.
std::optional<std::set<std::string>> usedContents(const StateFolder& state) {
  std::set<std::string> used;
  for (const char* name : {kJournal, kNewJournal, kRollback, kTrial}) {
    const Record record = readRecord(state, name);
    if (record.kind == Record::Useless) return std::nullopt;
    collect(record, used);
  }
  for (const int number : numbersAfter(state, kAside))
    collect(readRecord(state, asideName(number)), used);
  const StateFolder changes = state.folder(kChanges);
  for (const int number : numbersOf(changes))
    collect(readRecord(changes, std::to_string(number)), used);
  return used;
}

void removeUnused(const StateFolder& state) {
  const std::optional<std::set<std::string>> used = usedContents(state);
  const StateFolder contents = state.folder(kContents);
  if (!used || !contents) return;
  for (const std::string& name : contents.names())
    if (used->count(name) == 0) contents.remove(name);
}

// The file of the latest is emptied in one step, so that its number is never missing.
bool drop(const StateFolder& changes, int number, bool isLatest) {
  const std::string name = std::to_string(number);
  if (isLatest && changes.size(name) == 0) return true;
  const bool isEmptied =
      isLatest && changes.write("new", "") && changes.rename("new", changes, name);
  return isEmptied || changes.remove(name);
}

// The bytes of a change that those counted before it do not have.
std::size_t addedBy(const StateFolder& state, const std::string& name,
                    std::set<std::string>& counted) {
  const StateFolder changes = state.folder(kChanges);
  const StateFolder contents = state.folder(kContents);
  std::set<std::string> hashes;
  collect(readRecord(changes, name), hashes);
  std::size_t bytes = changes.size(name);
  for (const std::string& hash : hashes)
    if (counted.insert(hash).second) bytes += contents.size(hash);
  return bytes;
}

void dropBeyondLimits(const StateFolder& state) {
  const StateFolder changes = state.folder(kChanges);
  std::vector<int> numbers = numbersOf(changes);
  std::reverse(numbers.begin(), numbers.end());
  int left = keptChanges(state);
  std::size_t bytes = 0;
  std::set<std::string> counted;
  for (const int number : numbers) {
    const std::string name = std::to_string(number);
    const bool isForgotten = changes.size(name) == 0;
    if (left > 0 && !isForgotten) bytes += addedBy(state, name, counted);
    if (bytes > kMostHistoryBytes) left = 0;
    if (left == 0 || isForgotten)
      drop(changes, number, number == numbers.front());
    else
      --left;
  }
}

bool dropOldestChange(const StateFolder& state) {
  const StateFolder changes = state.folder(kChanges);
  const std::vector<int> numbers = numbersOf(changes);
  for (const int number : numbers) {
    if (changes.size(std::to_string(number)) == 0) continue;
    return drop(changes, number, number == numbers.back());
  }
  return false;
}

}  // namespace

std::vector<int> numbersOf(const StateFolder& changes) {
  return numbersAfter(changes, "");
}

bool moveToHistory(const StateFolder& state, const char* name) {
  const Record record = readRecord(state, name);
  return record.kind == Record::Whole &&
         state.rename(name, state.madeFolder(kChanges), std::to_string(record.change.number));
}

int nextNumber(const StateFolder& state) {
  const std::vector<int> numbers = numbersOf(state.folder(kChanges));
  const int latest = numbers.empty() ? 0 : numbers.back();
  return after(std::max(latest, readRecord(state, kTrial).change.number));
}

int keptChanges(const StateFolder& state) {
  std::string text = state.read(kKeep, sizeof "2147483647\n").bytes;
  if (!text.empty() && text.back() == '\n') text.pop_back();
  const std::optional<std::int32_t> keep = decimal32(text);
  return keep && *keep >= 0 ? *keep : kUsuallyKept;
}

void prune(const StateFolder& state) {
  dropBeyondLimits(state);
  removeUnused(state);
}

bool dropOldest(const StateFolder& state) {
  const std::vector<int> aside = numbersAfter(state, kAside);
  const bool isDropped =
      dropOldestChange(state) || (!aside.empty() && state.remove(asideName(aside.front())));
  if (isDropped) removeUnused(state);
  return isDropped;
}

std::string putAside(const StateFolder& state, const std::string& name) {
  std::vector<int> numbers = numbersAfter(state, kAside);
  const int number = after(numbers.empty() ? 0 : numbers.back());
  if (!state.rename(name, state, asideName(number)))
    throw Refusal(Status::Unusable, concat(kStateDirectory, "/", name,
                                           " cannot be put aside: ", std::strerror(errno)));
  numbers.push_back(number);
  for (std::size_t i = 0; i + kMostAside < numbers.size(); ++i) state.remove(asideName(numbers[i]));
  return concat(kStateDirectory, "/", asideName(number));
}

}  // namespace camcfg::tool::device
