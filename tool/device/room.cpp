#include "device/room.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <map>

#include "base/concat.h"
#include "device/files.h"

namespace camcfg::tool::device {
namespace {

constexpr std::uintmax_t kStatBlock = 512;  // of st_blocks

bool maybeWritten(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

std::string cannotWrite(const std::string& path) {
  return concat("cannot write ", path, ": ", std::strerror(errno));
}

// An existing file is rewritten in its place; only a new one needs its directory's permission.
std::string whyNotPermitted(const std::string& path) {
  const std::string directory = directoryOf(path);
  struct stat status {};
  if (stat(directory.c_str(), &status) != 0) return cannotWrite(path);
  if (stat(path.c_str(), &status) != 0 && lstat(path.c_str(), &status) == 0)
    return concat("cannot write ", path, ": it is a link to nothing; move it away");
  if (stat(path.c_str(), &status) != 0)
    return errno == ENOENT && maybeWritten(directory) ? "" : cannotWrite(path);
  if (!S_ISREG(status.st_mode))
    return concat("cannot write ", path, ": it is not a regular file; move it away");
  return maybeWritten(path) ? "" : cannotWrite(path);
}

// What is to be written onto one file system, in whole blocks.
struct Load {
  std::string paths;
  std::uintmax_t needed = 0;
  std::uintmax_t free = 0;
  bool known = false;
  std::uintmax_t newFiles = 0;
  std::uintmax_t freeFiles = 0;
  bool countsFiles = false;

  void add(const Writing& writing, const struct statvfs& space) {
    const std::uintmax_t block = space.f_frsize == 0 ? 1 : space.f_frsize;
    paths += (paths.empty() ? "" : " and ") + writing.path;
    needed += (writing.bytes + block - 1) / block * block;
    free = space.f_bavail * block;
    known = space.f_blocks != 0;
    newFiles += writing.isNew ? 1 : 0;
    freeFiles = space.f_favail;
    countsFiles = space.f_files != 0;
  }

  std::string fault() const {
    if (countsFiles && newFiles > freeFiles)
      return concat("cannot write ", paths, ": the file system takes ",
                    freeFiles == 0 ? "no more" : concat("only ", freeFiles, " more"), " files");
    if (known && needed > free)
      return concat(kNoRoom, paths, ": ", needed, " bytes are needed and ", free, " are free");
    return "";
  }
};

}  // namespace

Writing replacing(const std::string& path, std::uintmax_t bytes) {
  struct stat present {};
  const bool isNew = stat(path.c_str(), &present) != 0;
  const std::uintmax_t given = static_cast<std::uintmax_t>(present.st_blocks) * kStatBlock;
  return {path, bytes > given ? bytes - given : 0, isNew};
}

std::string whyNotWritable(const std::vector<Writing>& writings) {
  std::map<dev_t, Load> loads;
  for (const Writing& writing : writings) {
    std::string fault = whyNotPermitted(writing.path);
    if (!fault.empty()) return fault;

    const std::string directory = directoryOf(writing.path);
    struct stat status {};
    struct statvfs space {};
    if (stat(directory.c_str(), &status) == 0 && statvfs(directory.c_str(), &space) == 0)
      loads[status.st_dev].add(writing, space);
  }
  for (const auto& [device, load] : loads)
    if (std::string fault = load.fault(); !fault.empty()) return fault;
  return "";
}

}  // namespace camcfg::tool::device
