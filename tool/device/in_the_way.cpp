#include "device/in_the_way.h"

#include <camcfg/types.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "device/files.h"

namespace camcfg::tool::device {
namespace {

// Links to nothing are there, too.
bool isThere(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

// Whether a path leads to what is of this type.
bool isOf(mode_t type, const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && (status.st_mode & S_IFMT) == type;
}

bool isAnyFile() {
  return std::any_of(kPlaces.begin(), kPlaces.end(),
                     [](Place place) { return !filesIn(pathOf(place, "")).empty(); });
}

bool canBeMade(const std::string& directory) {
  return !isThere(directory) && faccessat(AT_FDCWD, "/", W_OK, AT_EACCESS) == 0;
}

// Whoever may not give a directory to its owner keeps it.
bool makeLike(const char* directory, const char* other) {
  constexpr mode_t kUsual = 0755;
  constexpr mode_t kPermissions = 07777;
  if (!canBeMade(directory) || mkdir(directory, kUsual) != 0) return false;
  struct stat like {};
  if (stat(other, &like) != 0 || !S_ISDIR(like.st_mode)) return true;
  const int isKept = chown(directory, like.st_uid, like.st_gid);
  return chmod(directory, like.st_mode & kPermissions) == 0 || isKept != 0;
}

}  // namespace

std::string inTheWayOf(const std::string& path) {
  std::string directory = directoryOf(path);
  if (isThere(directory) && !isOf(S_IFDIR, directory)) return directory;
  return isThere(path) && !isOf(S_IFREG, path) ? path : "";
}

bool isGoingToBeMade(const std::string& directory) {
  return (directory == CFG_DIR_MAIN || directory == CFG_DIR_BACKUP) && canBeMade(directory) &&
         isAnyFile();
}

std::vector<std::string> makeDirectories() {
  std::vector<std::string> made;
  if (!isAnyFile()) return made;
  if (makeLike(CFG_DIR_MAIN, CFG_DIR_BACKUP)) made.emplace_back(CFG_DIR_MAIN);
  if (makeLike(CFG_DIR_BACKUP, CFG_DIR_MAIN)) made.emplace_back(CFG_DIR_BACKUP);
  return made;
}

}  // namespace camcfg::tool::device
