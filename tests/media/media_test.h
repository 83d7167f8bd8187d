#ifndef CAMCFG_TESTS_MEDIA_MEDIA_TEST_H
#define CAMCFG_TESTS_MEDIA_MEDIA_TEST_H

#include <sstream>
#include <string>

#include "media/families.h"
#include "support/device_test.h"
#include "support/each_shortage.h"
#include "support/outcome.h"
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

/// A test on one section of the media file. Entries of the section are given and compared as the
/// library writes them: a line each, four spaces further in for each level.
class MediaTest : private QuickSaves, public DeviceTest {
 protected:
  MediaTest(const Family& family, const char* section) : family_(family), section_(section) {
    lockRecord();
  }

  // Lets the tests of one process follow each other, whatever document or lock one of them left.
  ~MediaTest() override {
    delete family_.handle;
    family_.handle = nullptr;
    tag_CFG_FILE_LOCK* record = lockRecord();
    pthread_mutex_trylock(record->pstMutex);
    pthread_mutex_unlock(record->pstMutex);
    record->s32Locked = 0;
  }

  const Family& family() const { return family_; }

  /// The media file with these entries in the section, among elements that belong to others.
  std::string fileWith(const std::string& entries) const {
    const std::string element = entries.empty() ? "    <" + section_ + "/>\n"
                                                : "    <" + section_ + ">\n" + indented(entries) +
                                                      "    </" + section_ + ">\n";
    return "<Another>\n    <" + section_ + "/>\n</Another>\n\n<" + std::string(family_.top) +
           ">\n    <Before Id=\"1\"/>\n" + element + "    <After>text</After>\n</" + family_.top +
           ">\n";
  }

  /// Writes the main copy with these entries.
  void give(const std::string& entries) { device.write(kMainCopy, fileWith(entries)); }

  /// Writes the main copy with only these sections of the family.
  void giveSections(const std::string& sections) {
    device.write(kMainCopy,
                 std::string("<") + family_.top + ">" + sections + "</" + family_.top + ">");
  }

  /// Expects both copies to hold these entries and nothing else of the file to have changed.
  void expectSaved(const std::string& entries) const {
    EXPECT_EQ(device.read(kMainCopy), fileWith(entries));
    EXPECT_EQ(device.read(kBackupCopy), fileWith(entries));
  }

  /// Expects the main copy as give() wrote it and no backup made of it.
  void expectNotSaved(const std::string& entries) const {
    EXPECT_EQ(device.read(kMainCopy), fileWith(entries));
    EXPECT_FALSE(device.exists(kBackupCopy));
  }

  /// How often a loader allocates over a file with these entries. Programs that use it are linked
  /// with scarce_memory.cpp.
  template <typename List>
  int allocationsOfLoading(const std::string& entries, int (*loader)(List&)) {
    const auto load = [loader] {
      List list;
      loader(list);
    };
    give(entries);
    int allocations = 0;
    testkit::captureOutput([&] {
      load();  // makes the lock's record
      allocations = allocationsOf(load);
    });
    return allocations;
  }

  /// A console line of the family.
  std::string line(const std::string& level, const std::string& message) const {
    return family_.line(level, message);
  }

  /// The line about a required attribute.
  std::string missing(const std::string& attribute, const std::string& path) const {
    return family_.required(attribute, path);
  }

  /// What becomes of the family's document and the file's lock: "closed, unlocked" and so on.
  std::string state() const {
    return std::string(family_.handle == nullptr ? "closed" : "open") +
           (isUnlocked(CFG_FILE_MPP) ? ", unlocked" : ", locked");
  }

 private:
  static std::string indented(const std::string& lines) {
    std::string result;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) result += "        " + line + "\n";
    return result;
  }

  static tag_CFG_FILE_LOCK* lockRecord() {
    pthread_mutex_lock(&g_lockMapFileLock);
    tag_CFG_FILE_LOCK* record = cfgGetLockByFile(CFG_FILE_MPP);
    pthread_mutex_unlock(&g_lockMapFileLock);
    return record;
  }

  const Family& family_;
  const std::string section_;
};

}  // namespace camcfg::tests

#endif
