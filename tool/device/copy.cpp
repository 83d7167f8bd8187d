#include "device/copy.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/library_log.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

constexpr char kRepair[] = "run 'camcfg verify' to repair it";

// What the file system says of a path, before the library opens it: opening a pipe would wait for
// somebody to write into it.
Copy examine(const std::string& path) {
  const auto unreadable = [] {
    return Copy{State::Unreadable, std::string("cannot be read: ") + std::strerror(errno), nullptr};
  };
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return {State::Missing, "is missing", nullptr};
    return unreadable();
  }
  if (S_ISDIR(status.st_mode)) return {State::NotAFile, "is a directory", nullptr};
  if (!S_ISREG(status.st_mode))
    return {State::NotAFile, "is no regular file", nullptr, S_ISFIFO(status.st_mode)};
  if (faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) return unreadable();
  return {State::Good, "", nullptr};
}

// The library gives one reason for all that it cannot load; any other complaint, such as a lock
// that cannot be had, is passed on as it is.
std::string loadFault(const std::string& path) {
  const std::string complaint = lastComplaint();
  const bool ordinary = complaint.empty() || complaint == "Load file " + path + " fail";
  return ordinary ? "is not well-formed XML" : "cannot be loaded: " + complaint;
}

std::string remedyFor(State state) {
  if (state == State::Missing || state == State::Damaged) return std::string("; ") + kRepair;
  if (state == State::Unreadable) return "";
  return std::string("; move it away and ") + kRepair;
}

}  // namespace

const char* wordFor(State state) {
  constexpr const char* kWords[] = {"good",       "missing",    "damaged",     "no-element",
                                    "unreadable", "not-a-file", "out-of-step", "cut-short"};
  return kWords[static_cast<std::size_t>(state)];
}

Copy loadCopy(const std::string& path) {
  workingOn(path);
  Copy copy = examine(path);
  if (copy.state != State::Good) return copy;
  forgetComplaint();
  copy.document.reset(CFG_GetDocByFileName(argument(path), BU_TRUE));
  if (copy.document == nullptr) return {State::Damaged, loadFault(path), nullptr};
  if (copy.document->FirstChildElement() != nullptr) return copy;
  return {State::NoElement, "holds no element", std::move(copy.document)};
}

Document requireDocument(const std::string& path) {
  Copy copy = loadCopy(path);
  if (copy.state != State::Good)
    throw Refusal(Status::Unusable, path + " " + copy.fault + remedyFor(copy.state));
  return std::move(copy.document);
}

bool sameContents(const Copy& a, const Copy& b) {
  return a.loads() && b.loads() && written(*a.document) == written(*b.document);
}

std::string backupOf(const std::string& mainPath) {
  return std::string(CFG_DIR_BACKUP) + "/" + nameOf(mainPath);
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace camcfg::tool::device
