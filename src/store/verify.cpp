#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "base/log.h"
#include "base/text.h"
#include "camcfg/store.h"
#include "store/file_lock.h"
#include "store/xml_file.h"

namespace {

using camcfg::here;
using camcfg::Level;
using camcfg::Load;
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

// A directory that cannot be opened counts as empty, unless memory or descriptors ran
// out: then its files may well exist, and the count fails.
bool countFiles(const char* directory, int& count) {
  return cfgQueryFileNum(const_cast<char*>(directory), &count) == 0 || !camcfg::isShortage(errno);
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
  Verification(const Counts& counts, bool locks) : counts_(counts), locks_(locks) {}

  // False when memory or descriptors ran out: a copy that could not be loaded for lack of them is
  // not a broken copy. One that another program keeps locked is left to that program.
  bool verify(const char* name) {
    Copies copies;
    camcfg::joinPath(copies.main, CFG_DIR_MAIN, name);
    const camcfg::WorkLock lock(copies.main, &locks_);
    if (!lock) return camcfg::loadXml(document_, copies.main) != Load::Shortage;
    return verify(copies, name);
  }

 private:
  bool verify(Copies& copies, const char* name) {
    const Load main = camcfg::loadXml(document_, copies.main);
    if (main == Load::Shortage) return false;
    std::printf("file %s \n", copies.main);
    if (main == Load::Done) return true;
    log(Level::Info, here(kFunction), "%s load failed \n", copies.main);
    Load source = restoreFromBackup(copies, name);
    if (source == Load::Failed) source = restoreFromDefault(copies, name);
    return source != Load::Shortage;
  }

  Load restoreFromBackup(Copies& copies, const char* name) {
    if (counts_.backup == 0) return Load::Failed;
    camcfg::joinPath(copies.backup, CFG_DIR_BACKUP, name);
    const Load backup = load(copies.backup);
    if (backup != Load::Done) return backup;
    cfgSyncCfgFile(copies.backup, copies.main);
    log(Level::Info, here(kFunction), "sync %s \n", copies.backup);
    return Load::Done;
  }

  Load restoreFromDefault(Copies& copies, const char* name) {
    if (counts_.defaults == 0) return Load::Failed;
    camcfg::joinPath(copies.defaults, CFG_DIR_DEFAULT, name);
    const Load defaults = load(copies.defaults);
    if (defaults != Load::Done) return defaults;
    cfgSyncCfgFile(copies.defaults, copies.main);
    // Deliberate: with no file in the backup directory the backup path is still empty here, so this
    // copy fails and the directory stays as it is. [backup-not-refilled]
    cfgSyncCfgFile(copies.defaults, copies.backup);
    log(Level::Info, here(kFunction), "sync %s \n", copies.defaults);
    return Load::Done;
  }

  Load load(const char* path) {
    const Load result = camcfg::loadXml(document_, path);
    if (result == Load::Failed) log(Level::Info, here(kFunction), "%s load failed \n", path);
    return result;
  }

  const Counts counts_;
  const bool locks_;
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

int CFG_VerifyFileFormat() {
  Counts counts;
  if (!countFiles(CFG_DIR_DEFAULT, counts.defaults) || !countFiles(CFG_DIR_MAIN, counts.main) ||
      !countFiles(CFG_DIR_BACKUP, counts.backup))
    return -1;
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
  const bool locks = camcfg::locksAreAskedFor(CFG_DIR_MAIN);
  Verification verification(counts, locks);
  while (const dirent* entry = nextRegularFile(directory.get()))
    if (!verification.verify(entry->d_name)) return -1;
  return 0;
}
