#include <camcfg/params.h>
#include <camcfg/preset.h>

#include <mutex>

#include "base/host.h"
#include "base/outcome.h"
#include "device/change.h"
#include "device/journal.h"
#include "device/scratch.h"
#include "support/device_test.h"
#include "support/quick_saves.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;

/// Temporary files are found before the device's root is entered.
struct Temporaries {
  Temporaries() { tool::rememberTemporaries(); }
};

/// A change while whose saves something else happens.
class UndertakingTest : public testing::Test, Temporaries {
 protected:
  UndertakingTest() {
    for (const char* path : {kBusiness, kBusinessBackup}) device.write(path, kParameters);
  }
  ~UndertakingTest() override { insteadOfSync = nullptr; }

  /// @param afterFlush  is called after each flush of a file of the device, with its number from 1
  /// @param more  changes that are made with it
  void setRtsp(const std::function<void(int flush)>& afterFlush, std::vector<Change> more = {}) {
    insteadOfSync = [this, afterFlush] {
      const std::lock_guard<std::mutex> guard(saving_);
      if (!savesForNobody()) afterFlush(++flushes_);
    };
    more.insert(
        more.begin(),
        {kBusiness, "System/Rtsp",
         [] { return CFG_COM_SetIntParam(text("System"), text("Rtsp"), 8554) == 0; },
         [](tinyxml2::XMLDocument& document) { return standing(document) == "8554"; }, standing});
    makeChanges(more);
  }

  std::string refusalOf(const std::function<void(int flush)>& afterFlush,
                        const std::vector<Change>& more = {}) {
    try {
      setRtsp(afterFlush, more);
    } catch (const tool::Refusal& refusal) {
      return refusal.what();
    }
    return "";
  }

  static std::optional<std::string> standing(tinyxml2::XMLDocument& document) {
    return document.FirstChildElement("System")->FirstChildElement("Rtsp")->Attribute("Cur");
  }

  /// Another program saves what it loaded before, each time that the change is complete.
  std::function<void(int)> undoing(int times) {
    return [this, times](int flush) {
      if (flush % 2 == 0 && ++made <= times)
        for (const char* path : {kBusiness, kBusinessBackup}) device.write(path, others);
    };
  }

  testkit::DeviceRoot device;
  const std::string others = with(kParameters, "Brightness Cur=\"0\"", "Brightness Cur=\"5\"");
  int made = 0;

 private:
  std::mutex saving_;
  int flushes_ = 0;
};

TEST_F(UndertakingTest, ChangeThatIsUndoneIsMadeAgain) {
  setRtsp(undoing(2));
  EXPECT_EQ(made, 3);
  EXPECT_THAT(device.read(kBusiness), testing::HasSubstr("Rtsp Cur=\"8554\""));
  EXPECT_THAT(device.read(kBusiness), testing::HasSubstr("Brightness Cur=\"5\""));
}

TEST_F(UndertakingTest, ChangeThatIsUndoneThreeTimesIsRefusedAndTheOthersSaveStays) {
  EXPECT_EQ(refusalOf(undoing(9)),
            "System/Rtsp: another program's save undid it 3 times; '554' is set now");
  EXPECT_EQ(made, 3);
  EXPECT_EQ(device.read(kBusiness), others);
}

TEST_F(UndertakingTest, WriteThatStopsShortIsTakenBack) {
  EXPECT_EQ(
      refusalOf([this](int flush) {
        if (flush == 1) device.write(kBusiness, device.read(kBusiness).substr(0, 100));
      }),
      "System/Rtsp: the change is not in /cfg0/business_param.xml; the previous contents were "
      "restored");
  EXPECT_EQ(device.read(kBusiness), kParameters);
  EXPECT_EQ(device.read(kBusinessBackup), kParameters);
}

TEST_F(UndertakingTest, WriteThatStopsShortAgainAndAgainSaysHowTheFileIsLeft) {
  EXPECT_EQ(
      refusalOf([this](int flush) {
        if (flush % 2 == 1) device.write(kBusiness, device.read(kBusiness).substr(0, 100));
      }),
      "System/Rtsp: the change is not in /cfg0/business_param.xml; the previous contents could "
      "not be restored; make room and run 'camcfg verify'");
}

TEST_F(UndertakingTest, BackupThatIsNotWrittenIsReported) {
  EXPECT_EQ(refusalOf([this](int flush) {
              if (flush == 2) device.write(kBusinessBackup, "<System/>");
            }),
            "System/Rtsp: stored in /cfg0/business_param.xml but not in its backup "
            "/cfg1/business_param.xml; run 'camcfg verify --resync'");
}

// Two files, one of which another program saves; and then no further journal can be written.
TEST_F(UndertakingTest, AttemptThatCannotBeRepeatedLeavesNoFileChanged) {
  constexpr char kPresets[] = "<PresetCfg>\n</PresetCfg>\n";
  for (const char* path : {"/cfg0/preset_cfg.xml", "/cfg1/preset_cfg.xml"})
    device.write(path, kPresets);
  const Change preset{"/cfg0/preset_cfg.xml", "presets",
                      [] {
                        tagPRESET_CFG_S record{};
                        return CFG_PRESET_SetParam(&record) == 0;
                      },
                      [](tinyxml2::XMLDocument& document) {
                        return document.FirstChildElement()->FirstChildElement() != nullptr;
                      }};
  const std::string refusal = refusalOf(
      [this](int flush) {
        if (flush != 4) return;
        for (const char* path : {kBusiness, kBusinessBackup}) device.write(path, others);
        device.makeDirectory("/cfg1/.camcfg/journal.new");
      },
      {preset});
  EXPECT_THAT(refusal, testing::HasSubstr("/cfg1/.camcfg/journal cannot be written"));
  EXPECT_EQ(device.read(kBusiness), others);
  EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), kPresets);
  EXPECT_EQ(device.read("/cfg1/preset_cfg.xml"), kPresets);
  device.remove("/cfg1/.camcfg/journal.new");
  EXPECT_FALSE(hasLeftJournal());
}

}  // namespace
}  // namespace camcfg::tests
