#include <gmock/gmock.h>

// A document is abandoned on purpose each time a file's lock cannot be had in time, and the locks'
// mutexes outlive the registry that points to them.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:CFG_GetDocByFileName\nleak:cfgGetLockByFile\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
