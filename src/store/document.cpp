#include <unistd.h>

#include <cstring>
#include <memory>
#include <utility>

#include "base/log.h"
#include "base/never_freed.h"
#include "base/text.h"
#include "base/xml_edit.h"
#include "camcfg/store.h"
#include "store/file_lock.h"
#include "store/xml_file.h"

namespace {

using camcfg::Place;
using tinyxml2::XMLDocument;

// The lines that device logs have always shown for these two records.
constexpr Place kNoDocumentPlace{"CFG_GetDocByFileName", 313};
constexpr Place kLoadPlace{"CFG_GetDocByFileName", 324};

void mainPathOf(char (&mainPath)[CFG_PATH_SIZE], const char* path) {
  if (path[0] == '/')
    camcfg::copyText(mainPath, path);
  else
    camcfg::joinPath(mainPath, CFG_DIR_MAIN, path);
}

// Deliberate: the first five characters are overwritten whatever they are, so a path outside
// "/cfg0" gets a backup path that makes little sense. Files outside "/cfg0" are not saved by anyone
// who wants a backup of them. [backup-path]
void backupPathOf(char (&backupPath)[CFG_PATH_SIZE], const char (&mainPath)[CFG_PATH_SIZE]) {
  std::memset(backupPath, 0, sizeof CFG_DIR_BACKUP);  // a shorter path ends after the directory
  camcfg::copyText(backupPath, mainPath);
  std::memcpy(backupPath, CFG_DIR_BACKUP, std::strlen(CFG_DIR_BACKUP));
}

bool saveBothCopies(XMLDocument& document, const char* path) {
  char mainPath[CFG_PATH_SIZE];
  mainPathOf(mainPath, path);
  const bool written = camcfg::saveXml(document, mainPath);
  sync();
  // If memory ran out while writing, the incomplete main copy must not replace the backup.
  if (!written) return false;

  char backupPath[CFG_PATH_SIZE];
  backupPathOf(backupPath, mainPath);
  cfgSyncCfgFile(mainPath, backupPath);
  sync();
  return true;
}

}  // namespace

XMLDocument* CFG_GetDocByFileName(char* pcPath, tagBU_BOOL enReadOnly) {
  std::unique_ptr<XMLDocument> document = camcfg::newDocument();
  if (document == nullptr || document->Error()) {
    camcfg::logError(kNoDocumentPlace, "New XMLDocument fail\n");
    return nullptr;
  }
  if (pcPath == nullptr) {
    camcfg::logError(kLoadPlace, "Load file %s fail\n", "(null)");
    return nullptr;
  }
  tag_CFG_FILE_LOCK* lock = camcfg::takeLock(pcPath);
  if (lock == nullptr) {
    // Deliberate: the document is abandoned, not deleted, when the lock cannot be had.
    // [document-abandoned]
    camcfg::neverFreed(std::move(document));
    return nullptr;  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  }
  if (camcfg::loadXml(*document, pcPath) != camcfg::Load::Done) {
    document.reset();
    camcfg::logError(kLoadPlace, "Load file %s fail\n", pcPath);
    camcfg::releaseLock(lock, pcPath);
    return nullptr;
  }
  if (enReadOnly == BU_TRUE) camcfg::releaseLock(lock, pcPath);
  return document.release();
}

int CFG_SaveFile(XMLDocument* pstDoc, char* pcPath, tagBU_BOOL enUnlock) {
  if (pcPath == nullptr) return -1;
  const bool written = pstDoc != nullptr && saveBothCopies(*pstDoc, pcPath);
  if (enUnlock == BU_TRUE) cfgUnlockFile(pcPath);
  return written ? 0 : -1;
}
