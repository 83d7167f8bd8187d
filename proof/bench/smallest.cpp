// The least that reads a parameter of a device: what starting the tool is compared with.
//   smallest ROOT SECTION NAME
#include <camcfg/params.h>
#include <unistd.h>

#include <cstdio>

extern "C" void UTIL_LOG_Print(int /*level*/, char* /*module*/, char* /*format*/, ...) {}

int main(int argc, char** argv) {
  int value = 0;
  if (argc != 4 || chroot(argv[1]) != 0 || CFG_COM_GetIntParam(argv[2], argv[3], &value) != 0)
    return 1;
  std::printf("%d\n", value);
  return 0;
}
