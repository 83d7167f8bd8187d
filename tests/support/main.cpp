#include <gmock/gmock.h>

// Where memory runs out while tinyxml2 words an error, it loses the buffer it does that in.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libtinyxml2.so\n";
}

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
