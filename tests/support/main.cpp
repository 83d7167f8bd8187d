#include <gmock/gmock.h>

// The mutexes of the lock registry are never freed, and the map that leads to them is gone by the
// time leaks are looked for.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:cfgGetLockByFile\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
