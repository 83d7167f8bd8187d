#include "media/service_test.h"
#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

// Too long for a string that needs no memory of its own.
constexpr char kLong[] = "a text of more than fifteen characters";

class ShortMemoryTest : public LiveMediaTest {
 protected:
  ShortMemoryTest() : LiveMediaTest("Any") {}

  void SetUp() override { giveAllSections(); }

  void giveAllSections() {
    const std::string text = kLong;
    const std::string channels = "<Channel Id='1' Type='Audio' Name='" + text + "'/>";
    giveSections("<WEBSOCKET>" + channels + channels + "</WEBSOCKET><RTSP><MediaGroup Name='" +
                 text + "'>" + channels + "</MediaGroup></RTSP><RTMP><Target Id='1' url='" + text +
                 "' username='" + text + "'>" + channels +
                 "</Target></RTMP><NDI><Instance Id='1' " + "GroupName='" + text + "'>" + channels +
                 "</Instance></NDI><SRT>" + "<Instance Id='1' Mode='Caller' Port='1' Hostname='" +
                 text + "'><Stream Id='" + text + "'>" + channels + "</Stream></Instance></SRT>" +
                 deeplyNested());  // saving needs memory as well
  }

  // `call` returns one of the family's results. What was printed meanwhile.
  template <typename Call>
  std::string expectEachShortageToFailAndLeaveNothingBehind(
      Call call, const std::string& stateOnSuccess = "closed, unlocked") {
    const std::string printed = captureOutput([&] {
      underEachShortage(call, [&](bool struck, std::int32_t result) {
        EXPECT_EQ(result, struck ? CFG_LM_ERR : 0);
        ASSERT_EQ(state(), struck ? "closed, unlocked" : stateOnSuccess);
        if (stateOnSuccess == "closed, locked" && !struck) CFG_UnlockFile(text(CFG_FILE_MPP));
        giveAllSections();  // a save that failed has left a part of them
      });
    });
    EXPECT_FALSE(HasFailure()) << printed;
    return printed;
  }

  template <typename List>
  void expectLoadToFail(std::int32_t (*loader)(List&)) {
    const std::string printed = expectEachShortageToFailAndLeaveNothingBehind([loader] {
      List list;
      return loader(list);
    });
    EXPECT_THAT(printed, testing::Not(testing::HasSubstr("has not been locked")));
  }
};

TEST_F(ShortMemoryTest, OpeningFailsAndLeavesNothingBehind) {
  for (const tagBU_BOOL mode : {BU_TRUE, BU_FALSE})
    expectEachShortageToFailAndLeaveNothingBehind([mode] {
      if (CFG_LM_Open("SRT", mode) == nullptr) return CFG_LM_ERR;
      CFG_LM_CloseRead();
      if (mode == BU_FALSE) CFG_UnlockFile(text(CFG_FILE_MPP));
      return 0;
    });
}

TEST_F(ShortMemoryTest, LoadersFailAndLeaveNothingBehind) {
  expectLoadToFail(CFG_LM_LoadWebsocketConfig);
  expectLoadToFail(CFG_LM_LoadRtspConfig);
  expectLoadToFail(CFG_LM_LoadRtmpConfig);
  expectLoadToFail(CFG_LM_LoadNdiConfig);
  expectLoadToFail(CFG_LM_LoadSrtConfig);
}

TEST_F(ShortMemoryTest, DumpersFailAndLeaveNothingBehind) {
  const WebsocketList websocket{{kLong, 1}, {kLong, 2}};
  const RtspList rtsp = shared({{kLong, {{kLong, 1}}}});
  const NdiList ndi{{1, 1, 1, kLong, 1, kLong, kLong, 1, kLong, kLong, 1, 2, 3}};
  const SrtList srt{{1, 0, kLong, 1, 1, kLong, 20, {{kLong, 1, {1, 2}}}}};
  expectEachShortageToFailAndLeaveNothingBehind(
      [&] { return CFG_LM_DumpWebsocketConfig(websocket); });
  expectEachShortageToFailAndLeaveNothingBehind([&] { return CFG_LM_DumpRtspConfig(rtsp); });
  expectEachShortageToFailAndLeaveNothingBehind([&] { return CFG_LM_DumpNdiConfig(ndi); });
  expectEachShortageToFailAndLeaveNothingBehind([&] { return CFG_LM_DumpSrtConfig(srt); });
}

TEST_F(ShortMemoryTest, TheRtmpDumperFailsWithTheLockReleased) {
  const RtmpList targets{{1, 1, kLong, kLong, kLong, 1, 2}};
  expectEachShortageToFailAndLeaveNothingBehind([&] { return CFG_LM_DumpRtmpConfig(targets); },
                                                "closed, locked");
}

}  // namespace
}  // namespace camcfg::tests
