#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>

#include "camcfg/store.h"
#include "store/xml_file.h"
#include "support/log.h"
#include "support/text.h"

namespace {

using camcfg::here;
using camcfg::Level;
using camcfg::log;

constexpr char kFunction[] = "CFG_VerifyFileFormat";

struct CloseDirectory {
  void operator()(DIR* directory) const { closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

bool isRegularFile(DIR* directory, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_REG;
  struct stat status {};
  return fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode);
}

const dirent* nextRegularFile(DIR* directory) {
  const dirent* entry = readdir(directory);
  while (entry != nullptr && !isRegularFile(directory, *entry)) entry = readdir(directory);
  return entry;
}

struct Counts {
  int defaults = 0;
  int main = 0;
  int backup = 0;
};

// A directory that cannot be opened counts as empty, unless it is memory or descriptors that are
// short: then its files may well be there.
int countFiles(const char* directory) {
  int count = 0;
  if (cfgQueryFileNum(const_cast<char*>(directory), &count) != 0) camcfg::throwIfShort(errno);
  return count;
}

const char* directoryToScan(const Counts& counts) {
  if (counts.defaults != 0) return CFG_DIR_DEFAULT;
  if (counts.main != 0) return CFG_DIR_MAIN;
  return counts.backup != 0 ? CFG_DIR_BACKUP : nullptr;
}

// One file's three paths; a path stays empty until its copy is looked at.
struct Copies {
  char main[CFG_PATH_SIZE] = {};
  char backup[CFG_PATH_SIZE] = {};
  char defaults[CFG_PATH_SIZE] = {};
};

// Restores what is broken under one name, given how many files each directory held at the start.
class Verification {
 public:
  explicit Verification(const Counts& counts) : counts_(counts) {}

  void verify(const char* name) {
    Copies copies;
    camcfg::joinPath(copies.main, CFG_DIR_MAIN, name);
    const bool intact = camcfg::loadXml(document_, copies.main);
    std::printf("file %s \n", copies.main);
    if (intact) return;
    log(Level::Info, here(kFunction), "%s load failed \n", copies.main);
    if (!restoreFromBackup(copies, name)) restoreFromDefault(copies, name);
  }

 private:
  bool restoreFromBackup(Copies& copies, const char* name) {
    if (counts_.backup == 0) return false;
    camcfg::joinPath(copies.backup, CFG_DIR_BACKUP, name);
    if (!loads(copies.backup)) return false;
    cfgSyncCfgFile(copies.backup, copies.main);
    log(Level::Info, here(kFunction), "sync %s \n", copies.backup);
    return true;
  }

  void restoreFromDefault(Copies& copies, const char* name) {
    if (counts_.defaults == 0) return;
    camcfg::joinPath(copies.defaults, CFG_DIR_DEFAULT, name);
    if (!loads(copies.defaults)) return;
    cfgSyncCfgFile(copies.defaults, copies.main);
    // Deliberate: with no file in the backup directory the backup path is still empty here, so this
    // copy fails and the directory stays as it is. [backup-not-refilled]
    cfgSyncCfgFile(copies.defaults, copies.backup);
    log(Level::Info, here(kFunction), "sync %s \n", copies.defaults);
  }

  bool loads(const char* path) {
    if (camcfg::loadXml(document_, path)) return true;
    log(Level::Info, here(kFunction), "%s load failed \n", path);
    return false;
  }

  const Counts counts_;
  tinyxml2::XMLDocument document_;
};

}  // namespace

int cfgQueryFileNum(char* dir, int* count) {
  if (count == nullptr) return -1;
  const Directory directory(dir == nullptr ? nullptr : opendir(dir));
  if (directory == nullptr) {
    const int error = errno;
    std::printf("File %s didn't exist\n", dir == nullptr ? "(null)" : dir);
    errno = error;
    return -1;
  }
  int found = 0;
  while (nextRegularFile(directory.get()) != nullptr) ++found;
  *count = found;
  return 0;
}

int CFG_VerifyFileFormat() try {
  Counts counts;
  counts.defaults = countFiles(CFG_DIR_DEFAULT);
  counts.main = countFiles(CFG_DIR_MAIN);
  counts.backup = countFiles(CFG_DIR_BACKUP);
  log(Level::Info, here(), "DefCfgFileCnt =%d,MainFileCnt =%d,BackupFileCnt =%d \n",
      counts.defaults, counts.main, counts.backup);

  const char* path = directoryToScan(counts);
  if (path == nullptr) {
    camcfg::logError(here(), "All File didn't exist\n");
    return -1;
  }
  const Directory directory(opendir(path));
  if (directory == nullptr) {
    camcfg::logError(here(), "File %s didn't exist\n", path);
    return -1;
  }
  Verification verification(counts);
  while (const dirent* entry = nextRegularFile(directory.get())) verification.verify(entry->d_name);
  return 0;
} catch (const std::bad_alloc&) {
  // A copy that memory did not suffice to load is not a broken copy.
  return -1;
}
