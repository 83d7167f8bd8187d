#ifndef CAMCFG_TESTS_MEDIA_LIVEMEDIA_TEST_H
#define CAMCFG_TESTS_MEDIA_LIVEMEDIA_TEST_H

#include <string>

#include "camcfg/livemedia.h"
#include "media/media_test.h"
#include "support/quick_saves.h"

namespace camcfg::tests {

inline const std::string kMainCopy = CFG_FILE_MPP;
inline const std::string kBackupCopy = "/cfg1/mpp_cfg.xml";

/// What is logged when nothing is there to unlock.
inline const std::string kNotLocked = "/cfg0/mpp_cfg.xml has not been locked before unlock!";
/// What is logged when a lock is not had in time.
inline const std::string kLockTimeout = "Lock /cfg0/mpp_cfg.xml timeout, a deadlock may exist!";

/// The line on standard output that goes with either.
inline std::string lockWarning(const std::string& message) {
  return "[Warn][Cfg] " + message + "\n";
}

inline std::string error(const std::string& message) {
  return "[Error][CFG][LiveMedia]: " + message + "\n";
}

inline std::string warning(const std::string& message) {
  return "[Warning][CFG][LiveMedia]: " + message + "\n";
}

inline std::string info(const std::string& message) {
  return "[Info][CFG][LiveMedia]: " + message + "\n";
}

inline std::string required(const std::string& attribute, const std::string& path) {
  return error("Attr `" + attribute + "` is required by " + path + " .");
}

inline std::string unsupported(const std::string& element, const std::string& path) {
  return warning("Un-support element <" + element + "> at " + path + ", ignored.");
}

/// A test on one section of the live media services.
class LiveMediaTest : private QuickSaves, public MediaTest {
 protected:
  explicit LiveMediaTest(const char* section)
      : MediaTest("LiveMediaService", section, "LiveMedia", g_LM_xmlDoc) {
    lockRecord();
  }

  // Lets the tests of one process follow each other, whatever lock one of them did not release.
  ~LiveMediaTest() override {
    tag_CFG_FILE_LOCK* record = lockRecord();
    pthread_mutex_trylock(record->pstMutex);
    pthread_mutex_unlock(record->pstMutex);
    record->s32Locked = 0;
  }

  /// Writes the main copy with only these sections.
  void giveSections(const std::string& sections) {
    device.write(kMainCopy, "<LiveMediaService>" + sections + "</LiveMediaService>");
  }

 private:
  static tag_CFG_FILE_LOCK* lockRecord() {
    pthread_mutex_lock(&g_lockMapFileLock);
    tag_CFG_FILE_LOCK* record = cfgGetLockByFile(CFG_FILE_MPP);
    pthread_mutex_unlock(&g_lockMapFileLock);
    return record;
  }
};

}  // namespace camcfg::tests

#endif
