#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "camcfg/store.h"

namespace {

char kPath[] = "/no-such-directory/none.xml";

TEST(WithoutLoggerTest, RecordsGoToStandardErrorAfterLevelFunctionAndLine) {
  EXPECT_EXIT(
      {
        CFG_GetDocByFileName(kPath, BU_TRUE);
        std::_Exit(0);
      },
      testing::ExitedWithCode(0),
      testing::Eq("<3>[CFG_GetDocByFileName:324] Load file /no-such-directory/none.xml fail\n"));
}

TEST(WithoutLoggerTest, RecordsWithoutAnEndOfLineGetOne) {
  EXPECT_EXIT(
      {
        CFG_UnlockFile(kPath);
        CFG_UnlockFile(kPath);
        std::_Exit(0);
      },
      testing::ExitedWithCode(0),
      testing::Eq("<4>[cfgUnlockFile:115] /no-such-directory/none.xml has not been locked before "
                  "unlock!\n"
                  "<4>[cfgUnlockFile:115] /no-such-directory/none.xml has not been locked before "
                  "unlock!\n"));
}

}  // namespace
