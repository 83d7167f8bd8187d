#include "store/xml_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <new>

#include "support/device_test.h"
#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLDocument;

int nextDescriptor() {
  const int fd = open("/", O_RDONLY);
  close(fd);
  return fd;
}

class XmlFileTest : public DeviceTest {
 protected:
  XMLDocument document;
  const int descriptor = nextDescriptor();
  void TearDown() override { EXPECT_EQ(nextDescriptor(), descriptor) << "a file was left open"; }
};

TEST_F(XmlFileTest, LoadsWhatIsWellFormedAndSaysWhatIsNot) {
  device.write("/good", "<A/>");
  device.write("/bad", "<A");
  device.makeDirectory("/directory");
  EXPECT_TRUE(loadXml(document, "/good"));
  EXPECT_FALSE(loadXml(document, "/bad"));
  EXPECT_FALSE(loadXml(document, "/none"));
  EXPECT_FALSE(loadXml(document, "/directory"));
  EXPECT_TRUE(loadXml(document, "/good"));
  EXPECT_STREQ(document.RootElement()->Name(), "A");
}

TEST_F(XmlFileTest, SavesWithIndentedLines) {
  document.Parse("<A><B/></A>");
  saveXml(document, "/x");
  EXPECT_FALSE(document.Error());
  EXPECT_EQ(device.read("/x"), "<A>\n    <B/>\n</A>\n");
}

TEST_F(XmlFileTest, SaveThatFailsStandsInTheDocument) {
  saveXml(document, "/nowhere/x");
  EXPECT_EQ(document.ErrorID(), tinyxml2::XML_ERROR_FILE_COULD_NOT_BE_OPENED);
}

TEST_F(XmlFileTest, FilesAreClosedWhenMemoryRunsOut) {
  device.write("/x", deeplyNested());
  const auto runsOut = [](auto call) {
    try {
      call();
      return false;
    } catch (const std::bad_alloc&) {
      return true;
    }
  };
  underEachShortage([&] { return runsOut([&] { loadXml(document, "/x"); }); },
                    [&](bool struck, bool threw) { EXPECT_EQ(threw, struck); });
  underEachShortage([&] { return runsOut([&] { saveXml(document, "/y"); }); },
                    [&](bool struck, bool threw) { EXPECT_EQ(threw, struck); });
}

}  // namespace
}  // namespace camcfg::tests
