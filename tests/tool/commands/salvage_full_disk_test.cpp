#include <optional>

#include "tool/small_disk.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t kPage = 4096;
constexpr std::size_t kPages = 10;

/// Both copies of the parameters are damaged, and the backup directory is a small file system.
class SalvageFullDiskTest : public ParametersTest {
 protected:
  std::string mountDisk() {
    disk_.emplace(device.hostPath() + "/cfg1", "40k");
    device.write(kBusinessDefault, kParameters);
    for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"}) {
      device.write(directory + std::string("mpp_cfg.xml"), "<Stream/>\n");
      device.write(directory + std::string("preset_cfg.xml"), "<PresetCfg/>\n");
    }
    return disk_->fault();
  }

  /// Leaves so many pages of room.
  void damageAndFill(std::size_t left) const {
    device.remove("/cfg1/.camcfg");
    device.remove("/cfg1/ballast");
    writeBoth(damaged_);
    for (std::size_t pages = kPages; pages > left; --pages) {
      try {
        device.write("/cfg1/ballast", std::string((pages - left) * kPage, 'x'));
        return;
      } catch (const std::runtime_error&) {
        device.remove("/cfg1/ballast");
      }
    }
  }

  void expectUntouched(std::size_t left) const {
    EXPECT_EQ(device.read(kBusiness), damaged_) << left;
    EXPECT_EQ(device.read(kBusinessBackup), damaged_) << left;
    EXPECT_THAT(run({"history"}).out, Not(HasSubstr("salvage"))) << left;
    EXPECT_THAT(run({"status"}).err, Not(HasSubstr("interrupted"))) << left;
  }

  const std::string whole_ = with(kParameters, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\"");
  const std::string damaged_ = whole_.substr(0, whole_.find("</NetWork>"));

 private:
  std::optional<SmallDisk> disk_;
};

TEST_F(SalvageFullDiskTest, WhatIsRefusedChangesNothing) {
  const std::string why = mountDisk();
  if (!why.empty()) GTEST_SKIP() << why;
  bool wasRefused = false;
  for (std::size_t left = 0; left < kPages; ++left) {
    damageAndFill(left);
    if (run({"salvage", "--apply"}).status == 0) continue;
    wasRefused = true;
    expectUntouched(left);
  }
  EXPECT_TRUE(wasRefused);
}

TEST_F(SalvageFullDiskTest, TheStartSalvagesWithLittleRoom) {
  const std::string why = mountDisk();
  if (!why.empty()) GTEST_SKIP() << why;
  for (std::size_t left = 0; left < kPages; ++left) {
    damageAndFill(left);
    run({"boot"});
    EXPECT_EQ(device.read(kBusiness), whole_) << left;
  }
}

}  // namespace
}  // namespace camcfg::tests
