#include "base/library_log.h"

#include "tool/tool_test.h"

extern "C" void UTIL_LOG_Print(int level, char* prefix, char* format, ...);

namespace camcfg::tests {
namespace {

using testing::MatchesRegex;

constexpr char kGood[] = "<A/>\n";

TEST_F(ToolTest, LibraryIsSilentUnlessAskedFor) {
  device.write(kBusinessDefault, kGood);
  device.write(kBusinessBackup, kGood);
  EXPECT_EQ(run({"verify"}).err, "");
}

TEST_F(ToolTest, VerboseShowsWhatTheLibraryPrintsAndLogsOnStandardError) {
  device.write(kBusinessDefault, kGood);
  device.write(kBusinessBackup, kGood);
  const ToolRun verbose = run({"-v", "verify"});
  EXPECT_EQ(verbose.status, 0);
  EXPECT_EQ(verbose.out,
            "FILE                MAIN             BACKUP  DEFAULT  AT START  MAIN FROM  "
            "BACKUP FROM\n"
            "business_param.xml  missing -> good  good    good     yes       backup     -\n");
  EXPECT_THAT(verbose.err, MatchesRegex("camcfg: info: \\[CFG_VerifyFileFormat:[0-9]+\\] "
                                        "DefCfgFileCnt =1,MainFileCnt =0,BackupFileCnt =1\n"
                                        "file /cfg0/business_param.xml \n"
                                        "camcfg: info: \\[CFG_VerifyFileFormat:[0-9]+\\] "
                                        "/cfg0/business_param.xml load failed\n"
                                        "camcfg: info: \\[CFG_VerifyFileFormat:[0-9]+\\] "
                                        "sync /cfg1/business_param.xml\n"));
}

TEST_F(ToolTest, VerboseShowsErrorsWithTheirLevel) {
  device.write(kBusiness, "<A");
  EXPECT_EQ(run({"list", "-v"}).err,
            "camcfg: error: [CFG_GetDocByFileName:324] Load file /cfg0/business_param.xml fail\n"
            "camcfg: list: /cfg0/business_param.xml is not well-formed XML; run 'camcfg verify' to "
            "repair it\n");
}

TEST(LibraryLogTest, LastErrorOrWarningIsKeptWithoutItsLineEnd) {
  char prefix[] = "[f:1] ";
  char error[] = "Load file %s fail\n";
  char warning[] = "Lock %s timeout";
  char information[] = "sync %s \n";
  UTIL_LOG_Print(3, prefix, error, "a");
  EXPECT_EQ(tool::lastComplaint(), "Load file a fail");
  UTIL_LOG_Print(4, prefix, warning, "b");
  EXPECT_EQ(tool::lastComplaint(), "Lock b timeout");
  UTIL_LOG_Print(6, prefix, information, "c");
  EXPECT_EQ(tool::lastComplaint(), "Lock b timeout");
  tool::forgetComplaint();
  EXPECT_EQ(tool::lastComplaint(), "");
}

}  // namespace
}  // namespace camcfg::tests
