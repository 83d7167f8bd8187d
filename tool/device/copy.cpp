#include "device/copy.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/library_log.h"
#include "base/progress.h"
#include "base/refusal.h"

namespace camcfg::tool::device {
namespace {

constexpr char kMend[] = "run 'camcfg verify' to mend it";

// What the file system says of a path, before the library opens it: opening a pipe would wait for
// somebody to write into it.
Copy examine(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) {
    if (errno == ENOENT || errno == ENOTDIR) return {State::Missing, "is missing", nullptr};
    return {State::Unreadable, std::string("cannot be read: ") + std::strerror(errno), nullptr};
  }
  if (S_ISDIR(status.st_mode)) return {State::NotAFile, "is a directory", nullptr};
  if (!S_ISREG(status.st_mode))
    return {State::NotAFile, "is no regular file", nullptr, S_ISFIFO(status.st_mode)};
  if (faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0)
    return {State::Unreadable, std::string("cannot be read: ") + std::strerror(errno), nullptr};
  return {State::Good, "", nullptr};
}

// The library gives one reason for all that it cannot load; any other complaint, such as a lock
// that cannot be had, is told as it is.
std::string loadFault(const std::string& path) {
  const std::string complaint = lastComplaint();
  const bool ordinary = complaint.empty() || complaint == "Load file " + path + " fail";
  return ordinary ? "is not well-formed XML" : "cannot be loaded: " + complaint;
}

std::string remedyFor(State state) {
  switch (state) {
    case State::Missing:
    case State::Damaged:
      return std::string("; ") + kMend;
    case State::NoElement:
    case State::NotAFile:
      return std::string("; move it away and ") + kMend;
    default:
      return "";
  }
}

}  // namespace

const char* wordFor(State state) {
  switch (state) {
    case State::Good:
      return "good";
    case State::Missing:
      return "missing";
    case State::Damaged:
      return "damaged";
    case State::NoElement:
      return "no-element";
    case State::Unreadable:
      return "unreadable";
    case State::NotAFile:
      return "not-a-file";
    case State::OutOfStep:
      return "out-of-step";
    case State::CutShort:
      return "cut-short";
  }
  return "";
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

std::string written(const tinyxml2::XMLDocument& document) {
  tinyxml2::XMLPrinter printer;
  document.Print(&printer);
  return printer.CStr();
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
