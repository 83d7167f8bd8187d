#ifndef CAMCFG_TESTS_STORE_VERIFY_TEST_H
#define CAMCFG_TESTS_STORE_VERIFY_TEST_H

#include <string>
#include <vector>

#include "support/device_test.h"

namespace camcfg::tests {

/// A device whose files are verified. Copies of x.xml are written by directory: good ones hold the
/// directory's name, so that it shows where a restored copy came from.
class VerifyTest : public DeviceTest {
 protected:
  static constexpr char kDefault[] = "/app/resource/defcfg";
  static constexpr char kMain[] = "/cfg0";
  static constexpr char kBackup[] = "/cfg1";

  static std::string good(const std::string& directory) {
    return "<From dir=\"" + directory + "\"/>";
  }
  static std::string broken(const std::string& directory) { return "<From dir=\"" + directory; }

  static std::string path(const std::string& directory, const std::string& name = "x.xml") {
    return directory + "/" + name;
  }
  void writeGood(const std::string& directory, const std::string& name = "x.xml") {
    device.write(path(directory, name), good(directory));
  }
  void writeBroken(const std::string& directory, const std::string& name = "x.xml") {
    device.write(path(directory, name), broken(directory));
  }

  /// Runs the verification and expects its result, its whole output and its whole log.
  void expectVerified(int result, const std::string& output,
                      const std::vector<testing::Matcher<testkit::LogRecord>>& records) {
    log.clear();
    int returned = -2;
    EXPECT_EQ(captureOutput([&] { returned = CFG_VerifyFileFormat(); }), output);
    EXPECT_EQ(returned, result);
    EXPECT_THAT(log.records(), testing::ElementsAreArray(records));
  }

  using Record = testing::Matcher<testkit::LogRecord>;
  static Record counts(int defaults, int main, int backup) {
    return Logged(6, "CFG_VerifyFileFormat",
                  "DefCfgFileCnt =" + std::to_string(defaults) + ",MainFileCnt =" +
                      std::to_string(main) + ",BackupFileCnt =" + std::to_string(backup) + " \n");
  }
  static Record loadFailed(const std::string& file) {
    return Logged(6, "CFG_VerifyFileFormat", file + " load failed \n");
  }
  static Record synced(const std::string& file) {
    return Logged(6, "CFG_VerifyFileFormat", "sync " + file + " \n");
  }
  static Record error(const std::string& message) {
    return Logged(3, "CFG_VerifyFileFormat", message);
  }
};

}  // namespace camcfg::tests

#endif
