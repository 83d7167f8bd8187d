#include "torture/tracer/process_view.h"

#include <sys/uio.h>
#include <unistd.h>

#include <climits>
#include <fstream>
#include <stdexcept>

namespace camcfg::torture {

std::string textAt(pid_t child, std::uint64_t address) {
  char text[PATH_MAX] = {};
  // As far as the page reaches: what lies after it may not be mapped.
  const std::size_t size = 4096 - address % 4096;
  const iovec here{text, size < sizeof text ? size : sizeof text - 1};
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  const iovec there{reinterpret_cast<void*>(address), here.iov_len};
  process_vm_readv(child, &here, 1, &there, 1, 0);
  return text;
}

std::string linkOf(pid_t child, const std::string& name) {
  const std::string link = "/proc/" + std::to_string(child) + "/" + name;
  char target[PATH_MAX];
  const ssize_t length = readlink(link.c_str(), target, sizeof target);
  return length < 0 ? "" : std::string(target, static_cast<std::size_t>(length));
}

std::size_t positionOf(pid_t thread, int descriptor) {
  std::ifstream info("/proc/" + std::to_string(thread) + "/fdinfo/" + std::to_string(descriptor));
  std::string word;
  std::size_t position = 0;
  if (!(info >> word >> position) || word != "pos:") throw std::runtime_error("fdinfo");
  return position;
}

}  // namespace camcfg::torture
