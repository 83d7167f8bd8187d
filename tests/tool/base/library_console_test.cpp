
#include <gmock/gmock.h>

#include <cstdio>

#include "base/library_log.h"
#include "camcfg/testkit/captured_output.h"

namespace camcfg::tests {
namespace {

using testkit::captureOutput;

TEST(LibraryConsoleTest, LastErrorIsTheComplaint) {
  EXPECT_EQ(tool::complaintIn("[Error][CFG][A]: first .\n"
                              "[Error][CFG][A]: Attr `Id` is required by <B> .\n"
                              "[Warning][CFG][A]: later\n"
                              "[Info][CFG][A]: done.\n"),
            "Attr `Id` is required by <B>");
}

TEST(LibraryConsoleTest, LastWarningIsTheComplaintWhereThereIsNoError) {
  EXPECT_EQ(tool::complaintIn("[Warning][CFG][A]: one\n[Warning][CFG][A]: two, skip.\n"),
            "two, skip");
}

TEST(LibraryConsoleTest, OtherLinesAreNoComplaint) {
  EXPECT_EQ(tool::complaintIn(""), "");
  EXPECT_EQ(tool::complaintIn("[Info][CFG][A]: fine\nfile /a \n"), "");
  EXPECT_EQ(tool::complaintIn("[Error][CFG][A"), "");
}

TEST(LibraryConsoleTest, CallIsHeardAndItsOutputPassedOn) {
  tool::forgetComplaint();
  int result = 0;
  const std::string printed = captureOutput([&] {
    result = tool::heard([] {
      std::printf("[Error][CFG][A]: no\n");
      return 7;
    });
  });
  EXPECT_EQ(result, 7);
  EXPECT_EQ(printed, "[Error][CFG][A]: no\n");
  EXPECT_EQ(tool::lastComplaint(), "no");
}

TEST(LibraryConsoleTest, SilentCallLeavesTheComplaint) {
  captureOutput([] { tool::heard([] { return std::printf("[Error][CFG][A]: earlier\n"); }); });
  EXPECT_EQ(tool::heard([] { return 0; }), 0);
  EXPECT_EQ(tool::lastComplaint(), "earlier");
}

}  // namespace
}  // namespace camcfg::tests
