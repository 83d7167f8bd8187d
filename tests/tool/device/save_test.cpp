#include "device/save.h"

#include "base/outcome.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using tool::device::Contents;
using tool::device::holds;
using tool::device::saveContents;

constexpr char kPreset[] = "/cfg0/preset_cfg.xml";

class SaveTest : public testing::Test {
 protected:
  void writeBoth(const std::string& bytes) const {
    for (const char* path : {kBusiness, kBusinessBackup}) device.write(path, bytes);
  }

  testkit::DeviceRoot device;
};

TEST_F(SaveTest, EveryByteIsSavedAsItIs) {
  std::string all;
  for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::string texts[] = {"",
                               "x",
                               kParameters,
                               "\xef\xbb\xbf<A/>\r\n<B v=\"&amp;&#10;\"/>\r",
                               "<?xml version=\"1.0\"?>\n\n\t<!-- ]]> --><![CDATA[&]]>",
                               all,
                               std::string(300000, '&')};
  for (const std::string& text : texts) {
    saveContents({{kBusiness, text}});
    EXPECT_EQ(device.read(kBusiness), text);
    EXPECT_EQ(device.read(kBusinessBackup), text);
    EXPECT_EQ(tool::device::bytesOf(kBusiness), text);
  }
}

TEST_F(SaveTest, SeveralFilesAreSavedTogether) {
  const std::vector<Contents> files = {
      {kBusiness, "<A/>"}, {kPreset, "<B/>"}, {"/cfg0/mpp_cfg.xml", "<C/>"}};
  saveContents(files);
  for (const Contents& file : files) EXPECT_TRUE(holds(file)) << file.path;
  saveContents({});
}

TEST_F(SaveTest, FileHoldsBytesOnlyIfBothCopiesDo) {
  EXPECT_FALSE(holds({kBusiness, ""}));
  writeBoth("<A/>");
  EXPECT_TRUE(holds({kBusiness, "<A/>"}));
  EXPECT_FALSE(holds({kBusiness, "<A />"}));
  device.write(kBusinessBackup, "<A/>\n");
  EXPECT_FALSE(holds({kBusiness, "<A/>"}));
  device.remove(kBusinessBackup);
  EXPECT_FALSE(holds({kBusiness, "<A/>"}));
}

TEST_F(SaveTest, NulIsRefusedBeforeAnyFileIsTouched) {
  writeBoth("<A/>");
  EXPECT_THROW(saveContents({{kBusiness, "<B/>"}, {kPreset, std::string("<C/>\0", 5)}}),
               tool::Refusal);
  EXPECT_TRUE(holds({kBusiness, "<A/>"}));
}

TEST_F(SaveTest, FileThatCannotBeReadIsUnusable) {
  try {
    tool::device::bytesOf(kBusiness);
    FAIL() << "nothing was thrown";
  } catch (const tool::Refusal& refusal) {
    EXPECT_STREQ(refusal.what(), "/cfg0/business_param.xml: No such file or directory");
    EXPECT_EQ(refusal.status(), tool::Status::Unusable);
  }
}

}  // namespace
}  // namespace camcfg::tests
