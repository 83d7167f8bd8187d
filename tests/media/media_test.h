#ifndef CAMCFG_TESTS_MEDIA_MEDIA_TEST_H
#define CAMCFG_TESTS_MEDIA_MEDIA_TEST_H

#include <sstream>
#include <string>

#include "support/device_test.h"
#include "support/each_shortage.h"
#include "support/outcome.h"

namespace camcfg::tests {

/// A test on one section of the media file. Entries of the section are given and compared as the
/// library writes them: a line each, four spaces further in for each level.
class MediaTest : public DeviceTest {
 protected:
  /// @param top      the family's element at the top of the file
  /// @param section  the section under test
  /// @param frame    the family's name in its console lines
  /// @param handle   the family's handle
  MediaTest(const char* top, const char* section, const char* frame, tinyxml2::XMLDocument*& handle)
      : top_(top), section_(section), frame_(frame), handle_(handle) {}

  // Tests that leave a document open or the lock held are not to disturb those after them.
  ~MediaTest() override {
    delete handle_;
    handle_ = nullptr;
    const auto record = g_mapFileLock.find(CFG_FILE_MPP);
    if (record == g_mapFileLock.end() || isUnlocked(CFG_FILE_MPP)) return;
    record->second.s32Locked = 0;
    pthread_mutex_unlock(record->second.pstMutex);
  }

  /// The media file with these entries in the section, among elements that belong to others.
  std::string fileWith(const std::string& entries) const {
    const std::string element = entries.empty() ? "    <" + section_ + "/>\n"
                                                : "    <" + section_ + ">\n" + indented(entries) +
                                                      "    </" + section_ + ">\n";
    return "<Another>\n    <" + section_ + "/>\n</Another>\n\n<" + top_ +
           ">\n    <Before Id=\"1\"/>\n" + element + "    <After>text</After>\n</" + top_ + ">\n";
  }

  /// Writes the main copy with these entries.
  void give(const std::string& entries) { device.write(CFG_FILE_MPP, fileWith(entries)); }

  /// Expects both copies to hold these entries and nothing else of the file to have changed.
  void expectSaved(const std::string& entries) const {
    EXPECT_EQ(device.read(CFG_FILE_MPP), fileWith(entries));
    EXPECT_EQ(device.read(kBackup), fileWith(entries));
  }

  /// Expects the main copy as give() wrote it and no backup made of it.
  void expectNotSaved(const std::string& entries) const {
    EXPECT_EQ(device.read(CFG_FILE_MPP), fileWith(entries));
    EXPECT_FALSE(device.exists(kBackup));
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
    return "[" + level + "][CFG][" + frame_ + "]: " + message + "\n";
  }

  /// The line about a required attribute.
  std::string missing(const std::string& attribute, const std::string& path) const {
    return line("Error", "Attr `" + attribute + "` is required by " + path + " .");
  }

  /// What becomes of the family's document and the file's lock: "closed, unlocked" and so on.
  std::string state() const {
    return std::string(handle_ == nullptr ? "closed" : "open") +
           (isUnlocked(CFG_FILE_MPP) ? ", unlocked" : ", locked");
  }

  static constexpr char kBackup[] = "/cfg1/mpp_cfg.xml";

 private:
  static std::string indented(const std::string& lines) {
    std::string result;
    std::istringstream stream(lines);
    for (std::string line; std::getline(stream, line);) result += "        " + line + "\n";
    return result;
  }

  const std::string top_;
  const std::string section_;
  const std::string frame_;
  tinyxml2::XMLDocument*& handle_;
};

}  // namespace camcfg::tests

#endif
