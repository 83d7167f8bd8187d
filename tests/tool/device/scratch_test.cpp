#include "device/scratch.h"

#include <unistd.h>

#include <mutex>

#include "base/host.h"
#include "base/outcome.h"
#include "base/progress.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using tool::Json;
using tool::readFile;
using tool::Refusal;
using tool::device::onScratchDevice;
using tool::device::savesForNobody;

class ScratchTest : public testing::Test {
 protected:
  ~ScratchTest() override { tool::watchWork(nullptr); }
};

TEST_F(ScratchTest, WorkSeesTheFilesOfItsDeviceOnly) {
  const Json answer = onScratchDevice({{kBusiness, kParameters}}, [] {
    return Json::array({readFile(kBusiness).value_or(""), readFile(kBusinessBackup).has_value(),
                        savesForNobody()});
  });
  EXPECT_EQ(answer.at(0).text(), kParameters);
  EXPECT_FALSE(answer.at(1).get<bool>());
  EXPECT_TRUE(answer.at(2).get<bool>());
  EXPECT_FALSE(savesForNobody());
}

TEST_F(ScratchTest, RefusalComesWithItsStatus) {
  try {
    onScratchDevice({}, []() -> Json { throw Refusal(tool::Status::Usage, "no"); });
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_STREQ(refusal.what(), "no");
    EXPECT_EQ(refusal.status(), tool::Status::Usage);
  }
}

TEST_F(ScratchTest, WorkThatDiesIsRefused) {
  EXPECT_THROW(onScratchDevice({}, []() -> Json { _exit(3); }), Refusal);
}

// The thread of a progress line may have just taken it.
TEST_F(ScratchTest, WorkDoesNotWaitForALockOfWhoeverWatches) {
  std::mutex busy;
  tool::watchWork([&](const std::string&) {
    if (!busy.try_lock()) _exit(4);
    busy.unlock();
  });
  const std::lock_guard<std::mutex> lock(busy);
  EXPECT_EQ(onScratchDevice({},
                            [] {
                              tool::workingOn("/cfg0/business_param.xml");
                              return Json(7);
                            })
                .get<int>(),
            7);
}

}  // namespace
}  // namespace camcfg::tests
