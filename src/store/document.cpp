#include <unistd.h>

#include <memory>
#include <utility>

#include "base/log.h"
#include "base/never_freed.h"
#include "base/xml_edit.h"
#include "camcfg/store.h"
#include "store/file_lock.h"
#include "store/paths.h"
#include "store/xml_file.h"

namespace {

using camcfg::Access;
using camcfg::Place;
using camcfg::SaveStep;
using tinyxml2::XMLDocument;

// The lines that device logs have always shown for these two records.
constexpr Place kNoDocumentPlace{"CFG_GetDocByFileName", 313};
constexpr Place kLoadPlace{"CFG_GetDocByFileName", 324};

void copyToBackup(const char (&mainPath)[CFG_PATH_SIZE]) {
  char backupPath[CFG_PATH_SIZE];
  camcfg::backupPathOf(backupPath, mainPath);
  cfgSyncCfgFile(mainPath, backupPath);
  sync();
}

bool saveBothCopies(XMLDocument& document, const char* path) {
  const camcfg::WorkLock lock(path);
  if (!lock) return false;
  char mainPath[CFG_PATH_SIZE];
  camcfg::mainPathOf(mainPath, path);
  lock.note(SaveStep::MainCopy);
  const bool written = camcfg::saveXml(document, mainPath);
  if (written) lock.note(SaveStep::BackupCopy);
  sync();
  // If memory ran out while writing, the incomplete main copy must not replace the backup.
  if (written) copyToBackup(mainPath);
  lock.note(SaveStep::None);
  return written;
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
  tag_CFG_FILE_LOCK* lock =
      camcfg::takeLock(pcPath, enReadOnly == BU_TRUE ? Access::Read : Access::Write);
  if (lock == nullptr) {
    // Deliberate: the document is abandoned, not deleted, when the lock cannot be had.
    // [document-abandoned]
    camcfg::neverFreed(std::move(document));
    return nullptr;  // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)
  }
  camcfg::FileIdentity file;
  const camcfg::Load loaded = camcfg::loadXml(*document, pcPath, &file);
  if (!camcfg::confirmFile(lock, file)) {
    camcfg::releaseLock(lock, pcPath);
    return CFG_GetDocByFileName(pcPath, enReadOnly);
  }
  if (loaded != camcfg::Load::Done) {
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
