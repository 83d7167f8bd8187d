#include <sys/wait.h>
#include <unistd.h>

#include "base/caller.h"
#include "device/journal.h"
#include "tool/json_in.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;

class BootTest : public ParametersTest {
 protected:
  BootTest() {
    for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"}) {
      device.write(directory + std::string("business_param.xml"), kParameters);
      device.write(directory + std::string("mpp_cfg.xml"), kMedia);
      device.write(directory + std::string("preset_cfg.xml"), "<PresetCfg>\n</PresetCfg>\n");
    }
  }
};

TEST_F(BootTest, IsSilentWhereThereIsNothingToDo) {
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""}));
}

TEST_F(BootTest, RestoresWhatIsBrokenAndBringsBackupsInSync) {
  device.write(kBusiness, "<System");
  device.remove("/cfg1/mpp_cfg.xml");
  EXPECT_EQ(run({"boot"}),
            (ToolRun{0,
                     "/cfg0/business_param.xml was restored from /cfg1/business_param.xml\n"
                     "/cfg1/mpp_cfg.xml was brought in sync with /cfg0/mpp_cfg.xml\n",
                     ""}));
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""}));
}

TEST_F(BootTest, EndsWithTheStatusOfTheDevice) {
  device.remove("/app/resource/defcfg/mpp_cfg.xml");
  EXPECT_EQ(run({"boot"}).status, 4);
  for (const char* directory : {"/cfg0/", "/cfg1/"})
    device.write(directory + std::string("mpp_cfg.xml"), "<Stream");
  const ToolRun result = run({"boot", "--json"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(jsonIn(result.out)["health"], tool::Json("unusable"));
}

TEST_F(BootTest, DeviceWithoutAnyFileIsRefused) {
  for (const char* directory : {"/cfg0", "/cfg1", "/app"}) device.remove(directory);
  const ToolRun result = run({"boot"});
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.err, HasSubstr("there is no device here"));
}

/// A change of the RTSP port whose program was killed as soon as it was in force.
class InterruptedTest : public BootTest {
 protected:
  InterruptedTest() {
    const pid_t killed = fork();
    if (killed == 0) {
      device.enter();
      const char* words[] = {"camcfg", "set", "System", "Rtsp", "8554"};
      tool::rememberCaller(5, words);
      tool::device::openJournal(
          {{kBusiness, kParameters, with(kParameters, "Rtsp Cur=\"554\"", "Rtsp Cur=\"8554\"")}});
      _exit(0);
    }
    int status = 0;
    waitpid(killed, &status, 0);
    EXPECT_EQ(status, 0);
  }
};

TEST_F(InterruptedTest, CommandThatOnlyReadsSaysThatAChangeIsWaiting) {
  const ToolRun result = run({"get", "System", "Rtsp"});
  EXPECT_EQ(result.out, "554\n");
  EXPECT_THAT(result.err,
              AllOf(HasSubstr("camcfg: get: note: an interrupted change is waiting: set "
                              "System Rtsp 8554 ("),
                    HasSubstr("'camcfg boot' or the next change")));
  EXPECT_EQ(run({"get", "System", "Rtsp"}).err, result.err);
}

TEST_F(InterruptedTest, BootFinishesIt) {
  EXPECT_THAT(run({"boot"}).out,
              HasSubstr("finished an interrupted change: set System Rtsp 8554 ("));
  EXPECT_EQ(run({"get", "System", "Rtsp"}), (ToolRun{0, "8554\n", ""}));
}

TEST_F(InterruptedTest, NextChangeFinishesItFirst) {
  const ToolRun result = run({"set", "Image", "Brightness", "5"});
  EXPECT_EQ(result.out, "Image/Brightness: 0 -> 5\n");
  EXPECT_THAT(result.err, HasSubstr("camcfg: set: finished an interrupted change: set System"));
  EXPECT_EQ(run({"get", "System", "Rtsp"}), (ToolRun{0, "8554\n", ""}));
}

}  // namespace
}  // namespace camcfg::tests
