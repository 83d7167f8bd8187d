#include "device/in_the_way.h"

#include <camcfg/types.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "device/files.h"

namespace camcfg::tool::device {
namespace {

namespace fs = std::filesystem;

fs::file_status ownStatus(const std::string& path) {
  std::error_code ignored;
  return fs::symlink_status(path, ignored);
}

fs::file_status statusOf(const std::string& path) {
  std::error_code ignored;
  return fs::status(path, ignored);
}

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

// Where a path leads, also if there is nothing.
fs::path resolved(const fs::path& path, int links = 0) {
  constexpr int kMostLinks = 40;
  if (path == path.root_path() || links == kMostLinks) return path;
  if (!fs::is_symlink(ownStatus(path)))
    return resolved(path.parent_path(), links) / path.filename();
  std::error_code ignored;
  const fs::path target = path.parent_path() / fs::read_symlink(path, ignored);
  return resolved(target.lexically_normal(), links + 1);
}

bool isAnyFile() {
  return std::any_of(kPlaces.begin(), kPlaces.end(),
                     [](Place place) { return !filesIn(pathOf(place, "")).empty(); });
}

bool canBeMade(const std::string& directory) {
  return !fs::exists(ownStatus(directory)) && faccessat(AT_FDCWD, "/", W_OK, AT_EACCESS) == 0;
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
  if (fs::exists(ownStatus(directory)) && !fs::is_directory(statusOf(directory))) return directory;
  return fs::exists(ownStatus(path)) && !fs::is_regular_file(statusOf(path)) ? path : "";
}

bool areOneFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  if (stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0)
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
  return resolved(a) == resolved(b);
}

std::string linkBetween(const std::string& a, const std::string& b) {
  std::error_code ignored;
  if (fs::is_symlink(ownStatus(a)) && fs::read_symlink(a, ignored) == b) return a;
  for (const std::string& path : {b, a, directoryOf(b), directoryOf(a)})
    if (fs::is_symlink(ownStatus(path))) return path;
  struct stat status {};
  return stat(b.c_str(), &status) == 0 && status.st_nlink > 1 ? b : "";
}

bool isGoingToBeMade(const std::string& directory) {
  const std::string made = resolved(directory);
  return (made == CFG_DIR_MAIN || made == CFG_DIR_BACKUP) && canBeMade(made) && isAnyFile();
}

std::vector<std::string> makeDirectories() {
  std::vector<std::string> made;
  if (!isAnyFile()) return made;
  if (makeLike(CFG_DIR_MAIN, CFG_DIR_BACKUP)) made.emplace_back(CFG_DIR_MAIN);
  if (makeLike(CFG_DIR_BACKUP, CFG_DIR_MAIN)) made.emplace_back(CFG_DIR_BACKUP);
  return made;
}

}  // namespace camcfg::tool::device
