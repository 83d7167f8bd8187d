#include "store/cut_save.h"

#include <unistd.h>

#include "camcfg/store.h"
#include "store/paths.h"
#include "store/process_lock.h"
#include "store/xml_file.h"

namespace camcfg {
namespace {

struct Copy {
  char path[CFG_PATH_SIZE];
  Load load;
};

Load tryToLoad(const char* path) {
  tinyxml2::XMLDocument document;
  return loadXml(document, path);
}

// In the order of a save: what is copied is on the medium before what it replaces is touched.
bool copyDurably(const Copy& source, const Copy& destination) {
  sync();
  const bool copied = cfgSyncCfgFile(source.path, destination.path) == 0;
  sync();
  return copied;
}

}  // namespace

bool repairCutSave(const char* path, SaveStep step) {
  Copy main;
  Copy backup;
  mainPathOf(main.path, path);
  backupPathOf(backup.path, main.path);
  main.load = tryToLoad(main.path);
  backup.load = tryToLoad(backup.path);
  if (main.load == Load::Shortage || backup.load == Load::Shortage) return false;
  if (main.load == Load::Failed && backup.load == Load::Failed) {
    warn("%s was left half saved, neither %s nor %s loads", main.path, main.path, backup.path);
    return true;
  }

  // A main copy that was being written may parse and yet end too early.
  const bool toMain =
      backup.load == Load::Done && (main.load == Load::Failed || step == SaveStep::MainCopy);
  const Copy& source = toMain ? backup : main;
  const Copy& destination = toMain ? main : backup;
  const bool copied = copyDurably(source, destination);
  warn(copied ? "%s was left half saved, copied %s to %s"
              : "%s was left half saved, could not copy %s to %s",
       main.path, source.path, destination.path);
  // A save does not look either at whether its backup could be made.
  return copied || !toMain;
}

}  // namespace camcfg
