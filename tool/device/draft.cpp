#include "device/draft.h"

#include <algorithm>

#include "base/library_log.h"
#include "base/outcome.h"
#include "device/calm.h"
#include "device/scratch.h"

namespace camcfg::tool::device {
namespace {

// A program may be saving the file.
Contents requireContents(const Change& change) {
  const std::string& path = change.path;
  const std::optional<std::string> bytes = readFile(path);
  if (isReplaced(bytes, change)) return {path, change.instead};
  if (bytes && isWhole(*bytes)) return {path, *bytes};
  requireDocument(path);
  return {path, calmly([&] { return bytesOf(path); },
                       [](const std::string& now) { return !isWhole(now); })};
}

std::vector<Contents> filesOf(const std::vector<Change>& changes) {
  std::vector<Contents> files;
  for (const Change& change : changes)
    if (std::none_of(files.begin(), files.end(),
                     [&](const Contents& file) { return file.path == change.path; }))
      files.push_back(requireContents(change));
  return files;
}

[[noreturn]] void refuse(const Change& change, std::string fault, const std::string& complaint) {
  if (!complaint.empty()) fault += " (" + complaint + ")";
  throw Refusal(change.what + ": " + fault + "; nothing was changed");
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
std::optional<std::size_t> missingIn(const std::string& path, const std::vector<Change>& changes) {
  const Copy main = loadCopy(path);
  std::optional<std::size_t> last;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (changes[i].path != path) continue;
    if (main.loads() && !changes[i].arrived(*main.document)) return i;
    last = i;
  }
  return main.loads() ? std::nullopt : last;
}

void makeAll(const std::vector<Change>& changes, const std::vector<Contents>& files) {
  std::vector<std::string> complaints;
  complaints.reserve(changes.size());
  for (const Change& change : changes) complaints.push_back(make(change));
  for (const Contents& file : files)
    if (const std::optional<std::size_t> missing = missingIn(file.path, changes))
      refuse(changes[*missing], "the change is not in " + file.path, complaints[*missing]);
}

}  // namespace

bool isReplaced(const std::optional<std::string>& bytes, const Change& change) {
  return !change.instead.empty() &&
         (!bytes || bytes->find('\0') != std::string::npos || !isWhole(*bytes));
}

std::vector<FileChange> draftOf(const std::vector<Change>& changes) {
  const std::vector<Contents> files = filesOf(changes);
  const Json after = onScratchDevice(files, [&] {
    makeAll(changes, files);
    Json contents = Json::array();
    for (const Contents& file : files) contents.push_back(bytesOf(file.path));
    return contents;
  });
  std::vector<FileChange> draft;
  for (std::size_t i = 0; i < files.size(); ++i)
    draft.push_back({files[i].path, files[i].bytes, after.at(i).text()});
  return draft;
}

}  // namespace camcfg::tool::device
