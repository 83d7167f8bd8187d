#include "store/xml_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "support/device_test.h"
#include "support/each_shortage.h"
#include "support/interposed_calls.h"

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
  InterposedCallsScope calls;
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

TEST_F(XmlFileTest, NewFileMayBeReadAndWrittenByAllWhomTheUmaskLets) {
  const mode_t before = umask(0);
  const bool saved = saveXml(document, "/x");
  umask(before);
  struct stat status {};
  EXPECT_TRUE(saved);
  ASSERT_EQ(stat("/x", &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0666u);
}

TEST_F(XmlFileTest, SaveThatFailsShowsInTheDocument) {
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

TEST_F(XmlFileTest, OnlyWantOfMemoryOrDescriptorsIsAShortage) {
  device.write("/x", "<A/>");
  const auto loadFailingWith = [&](int error) {
    calls->open = [error](const char*) {
      errno = error;
      return -1;
    };
    const Load load = loadXml(document, "/x");
    calls->open = nullptr;
    return load;
  };
  for (const int error : {ENOMEM, EMFILE, ENFILE})
    EXPECT_EQ(loadFailingWith(error), Load::Shortage) << strerrorname_np(error);
  for (const int error : {ENOENT, EACCES, EIO, ENOTDIR, ELOOP})
    EXPECT_EQ(loadFailingWith(error), Load::Failed) << strerrorname_np(error);
}

TEST_F(XmlFileTest, FileOfUnknownKindIsNotLoaded) {
  device.write("/x", "<A/>");
  calls->status = [](int, struct stat&) {
    errno = EIO;
    return -1;
  };
  const Load load = loadXml(document, "/x");
  calls->status = nullptr;
  EXPECT_EQ(load, Load::Failed);
}

TEST_F(XmlFileTest, SaveThatNoMemoryIsLeftForWhenOpeningFailsAndTriesNoOtherWay) {
  device.write("/x", "older");
  document.Parse("<A/>");
  int opened = 0;
  calls->open = [&](const char*) {
    ++opened;
    errno = ENOMEM;
    return -1;
  };
  const bool saved = saveXml(document, "/x");
  calls->open = nullptr;
  EXPECT_FALSE(saved);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(device.read("/x"), "older");
  EXPECT_FALSE(document.Error());
}

TEST_F(XmlFileTest, DescriptorThatNoStreamCanBeMadeOfIsClosedAndCountsAsAShortage) {
  device.write("/x", "<A/>");
  calls->refusesAStream = [] { return true; };
  calls->close = [](int) -> std::optional<int> {
    errno = EIO;
    return std::nullopt;
  };
  const Load load = loadXml(document, "/x");
  const bool saved = saveXml(document, "/y");
  calls->close = nullptr;
  EXPECT_EQ(load, Load::Shortage);
  EXPECT_FALSE(saved);
}

TEST_F(XmlFileTest, SoIsStandardInputsWhereThatIsClosed) {
  device.write("/x", "<A/>");
  const int input = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  calls->refusesAStream = [] { return true; };
  EXPECT_EQ(loadXml(document, "/x"), Load::Shortage);
  EXPECT_EQ(open("/", O_RDONLY), STDIN_FILENO);
  dup2(input, STDIN_FILENO);
  close(input);
}

}  // namespace
}  // namespace camcfg::tests
