#include <sys/mount.h>

#include <optional>

#include "tool/device/journal_device.h"
#include "tool/small_disk.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A device whose backup directory is a file system of its own.
class FullDiskTest : public JournalTest {
 protected:
  FullDiskTest() : JournalTest(testkit::DeviceRoot::StayOut) {}
  ~FullDiskTest() override {
    if (disk_) umount2("/cfg1", MNT_DETACH);  // of which the disk knows the path from outside
  }

  /// Why that is not possible here; empty if it is.
  std::string mountDisk(const char* size) {
    disk_.emplace(device.hostPath() + "/cfg1", size);
    if (!disk_->fault().empty()) return disk_->fault();
    device.enter();
    putBack();
    return "";
  }

  /// Leaves no room.
  void fill() const {
    try {
      device.write("/cfg1/ballast", std::string(300000, 'x'));
    } catch (const std::runtime_error&) {
      // As much of it as there is room for.
    }
  }

  static std::string big(char c) { return "<A v=\"" + std::string(20000, c) + "\"/>\n"; }

 private:
  std::optional<SmallDisk> disk_;
};

TEST_F(FullDiskTest, OldestChangesMakeRoomForTheJournal) {
  const std::string why = mountDisk("200k");
  if (!why.empty()) GTEST_SKIP() << why;
  for (char c = 'a'; c < 'l'; ++c) complete(big(c));
  EXPECT_TRUE(holds({kBusiness, big('k')}));
  const auto kept = history();
  EXPECT_GT(kept.size(), 0U);
  EXPECT_LT(kept.size(), 8U);
  EXPECT_EQ(kept.back().number, 11);
  EXPECT_TRUE(changeOfNumber(11));
}

TEST_F(FullDiskTest, JournalWithoutRoomIsRefusedAndLeavesNothing) {
  const std::string why = mountDisk("80k");
  if (!why.empty()) GTEST_SKIP() << why;
  device.write("/cfg1/ballast", std::string(40000, 'x'));
  try {
    openJournal({{kBusiness, kOldBusiness, std::string(60000, 'y')}});
    FAIL() << "nothing was thrown";
  } catch (const tool::Refusal& refusal) {
    EXPECT_STREQ(refusal.what(),
                 "/cfg1/.camcfg/journal cannot be written: No space left on device");
  }
  EXPECT_TRUE(isIdle());
  EXPECT_THAT(device.list("/cfg1/.camcfg/contents"), IsEmpty());
}

TEST_F(FullDiskTest, InterruptedChangeWithoutRoomIsFinishedOnceThereIs) {
  const std::string why = mountDisk("120k");
  if (!why.empty()) GTEST_SKIP() << why;
  openJournal({{kBusiness, kOldBusiness, big('n')}});
  fill();
  for (int run = 0; run < 2; ++run) {
    try {
      finishInterrupted();
      FAIL() << "nothing was thrown";
    } catch (const tool::Refusal& refusal) {
      EXPECT_EQ(refusal.status(), tool::Status::Unusable);
      EXPECT_THAT(refusal.what(), HasSubstr("/cfg0/business_param.xml could not be saved; make "
                                            "room and run 'camcfg verify'"));
    }
  }
  EXPECT_TRUE(device.exists(kJournal));
  device.remove("/cfg1/ballast");
  EXPECT_EQ(finishInterrupted().size(), 1U);
  EXPECT_TRUE(holds({kBusiness, big('n')}));
}

TEST_F(FullDiskTest, HistoryMakesRoomForAnInterruptedChange) {
  const std::string why = mountDisk("200k");
  if (!why.empty()) GTEST_SKIP() << why;
  complete(big('a'));
  complete(big('b'));
  complete(kOldBusiness);
  openJournal({{kBusiness, kOldBusiness, big('n')}});
  fill();
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("finished")));
  EXPECT_TRUE(holds({kBusiness, big('n')}));
}

TEST_F(FullDiskTest, ReadOnlyFileSystemLosesNothing) {
  const std::string why = mountDisk("200k");
  if (!why.empty()) GTEST_SKIP() << why;
  complete(kOthers);
  openJournal({{kBusiness, kOthers, kNewBusiness}});
  ASSERT_EQ(mount("none", "/cfg1", "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_TRUE(waitingChange());
  EXPECT_THROW(finishInterrupted(), tool::Refusal);
  EXPECT_FALSE(forgetOldest());
  EXPECT_EQ(history().size(), 1U);
}

}  // namespace
}  // namespace camcfg::tests
