#include "device/draft.h"

#include <algorithm>

#include "base/concat.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "device/calm.h"
#include "device/scratch.h"

namespace camcfg::tool::device {
namespace {

Contents startOf(const Change& change, bool again) {
  if (!change.instead.empty() && isReplaced(readFile(change.path), change))
    return {change.path, change.instead};
  if (!change.read.empty() && !again) return {change.path, change.read};
  return requireContents(change.path);
}

std::vector<Contents> filesOf(const std::vector<Change>& changes, bool again) {
  std::vector<Contents> files;
  for (const Change& change : changes)
    if (std::none_of(files.begin(), files.end(),
                     [&](const Contents& file) { return file.path == change.path; }))
      files.push_back(startOf(change, again));
  return files;
}

[[noreturn]] void refuse(const Change& change, std::string fault, const std::string& complaint) {
  if (!complaint.empty()) fault += concat(" (", complaint, ")");
  throw Refusal(concat(change.what, ": ", fault, "; nothing was changed"));
}

// What the library complained of, although it made the change.
std::string make(const Change& change) {
  forgetComplaint();
  const bool accepted = change.make();
  std::string complaint = lastComplaint();
  if (!accepted) refuse(change, "the library refused it", complaint);
  return complaint;
}

// The first change that a file does not hold; the last one of a file that is no longer whole. None
// if it holds all.
std::optional<std::size_t> missingIn(const Contents& file, const std::vector<Change>& changes) {
  const Document document = parsed(file.bytes);
  std::optional<std::size_t> last;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (changes[i].path != file.path) continue;
    if (!document->Error() && !changes[i].arrived(*document)) return i;
    last = i;
  }
  return document->Error() ? last : std::nullopt;
}

// What they make of the files.
Json makeAll(const std::vector<Change>& changes, const std::vector<Contents>& files) {
  std::vector<std::string> complaints;
  complaints.reserve(changes.size());
  for (const Change& change : changes) complaints.push_back(make(change));
  Json contents = Json::array();
  for (const Contents& file : files) {
    const Contents now{file.path, readFile(file.path).value_or("")};
    if (const std::optional<std::size_t> missing = missingIn(now, changes))
      refuse(changes[*missing], "the change is not in " + file.path, complaints[*missing]);
    contents.push_back(now.bytes);
  }
  return contents;
}

}  // namespace

bool isReplaced(const std::optional<std::string>& bytes, const Change& change) {
  return !change.instead.empty() &&
         (!bytes || bytes->find('\0') != std::string::npos || !isWhole(*bytes));
}

Contents requireContents(const std::string& path) {
  std::optional<std::string> bytes = readFile(path);
  if (bytes && isWhole(*bytes)) return {path, std::move(*bytes)};
  requireDocument(path);
  return {path, calmly([&] { return bytesOf(path); },
                       [](const std::string& now) { return !isWhole(now); })};
}

std::vector<FileChange> draftOf(const std::vector<Change>& changes, bool again) {
  const std::vector<Contents> files = filesOf(changes, again);
  const Json after = onScratchDevice(files, [&] { return makeAll(changes, files); });
  std::vector<FileChange> draft;
  for (std::size_t i = 0; i < files.size(); ++i)
    draft.push_back({files[i].path, files[i].bytes, after.at(i).text()});
  return draft;
}

}  // namespace camcfg::tool::device
