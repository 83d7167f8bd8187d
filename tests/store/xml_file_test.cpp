#include "store/xml_file.h"

#include <fcntl.h>
#include <unistd.h>

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
  EXPECT_EQ(loadXml(document, "/good"), Load::Done);
  EXPECT_EQ(loadXml(document, "/bad"), Load::Failed);
  EXPECT_EQ(loadXml(document, "/none"), Load::Failed);
  EXPECT_EQ(loadXml(document, "/directory"), Load::Failed);
  EXPECT_EQ(loadXml(document, "/good"), Load::Done);
  EXPECT_STREQ(document.RootElement()->Name(), "A");
}

TEST_F(XmlFileTest, SavesWithIndentedLines) {
  document.Parse("<A><B/></A>");
  EXPECT_TRUE(saveXml(document, "/x"));
  EXPECT_FALSE(document.Error());
  EXPECT_EQ(device.read("/x"), "<A>\n    <B/>\n</A>\n");
}

TEST_F(XmlFileTest, SaveThatFailsStandsInTheDocument) {
  EXPECT_TRUE(saveXml(document, "/nowhere/x"));
  EXPECT_EQ(document.ErrorID(), tinyxml2::XML_ERROR_FILE_COULD_NOT_BE_OPENED);
}

TEST_F(XmlFileTest, FilesAreClosedWhenMemoryRunsOut) {
  device.write("/x", deeplyNested());
  underEachShortage(
      [&] { return loadXml(document, "/x"); },
      [&](bool struck, Load load) { EXPECT_EQ(load, struck ? Load::Shortage : Load::Done); });
  underEachShortage([&] { return saveXml(document, "/y"); },
                    [&](bool struck, bool saved) { EXPECT_EQ(saved, !struck); });
}

}  // namespace
}  // namespace camcfg::tests
