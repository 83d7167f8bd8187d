// Takes the place of the C library's function for the libraries that this program links: what a
// change makes of the files is found out on copies of them, which need not reach the medium.
#include <sys/syscall.h>
#include <unistd.h>

#include "device/scratch.h"

extern "C" __attribute__((visibility("default"))) void sync() noexcept {
  if (!camcfg::tool::device::savesForNobody()) syscall(SYS_sync);
}
