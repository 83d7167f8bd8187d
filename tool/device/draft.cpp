#include "device/draft.h"

#include <algorithm>

#include "base/library_log.h"
#include "base/outcome.h"
#include "device/calm.h"
#include "device/scratch.h"

namespace camcfg::tool::device {
namespace {

bool parses(const std::string& bytes) {
  tinyxml2::XMLDocument document;
  return document.Parse(bytes.data(), bytes.size()) == tinyxml2::XML_SUCCESS;
}

// A program may be saving the file.
Contents requireContents(const std::string& path) {
  requireDocument(path);
  return {path, calmly([&] { return bytesOf(path); },
                       [](const std::string& bytes) { return !parses(bytes); })};
}

std::vector<Contents> filesOf(const std::vector<Change>& changes) {
  std::vector<Contents> files;
  for (const Change& change : changes)
    if (std::none_of(files.begin(), files.end(),
                     [&](const Contents& file) { return file.path == change.path; }))
      files.push_back(requireContents(change.path));
  return files;
}

void make(const Change& change) {
  forgetComplaint();
  const bool accepted = change.make();
  const std::string complaint = lastComplaint();
  const Copy main = loadCopy(change.path);
  if (accepted && main.loads() && change.arrived(*main.document)) return;
  std::string fault = accepted ? "the change is not in " + change.path : "the library refused it";
  if (!complaint.empty()) fault += " (" + complaint + ")";
  throw Refusal(change.what + ": " + fault + "; nothing was changed");
}

}  // namespace

std::vector<FileChange> draftOf(const std::vector<Change>& changes) {
  const std::vector<Contents> files = filesOf(changes);
  const Json after = onScratchDevice(files, [&] {
    for (const Change& change : changes) make(change);
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
