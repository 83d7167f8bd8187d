#include "torture/tracer/process_view.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <stdexcept>

namespace camcfg::torture {

std::string textAt(pid_t child, std::uint64_t address) {
  char text[PATH_MAX + 1] = {};
  // In two parts, since the page after the one where it begins may not be mapped.
  const std::size_t first = std::min<std::size_t>(4096 - address % 4096, PATH_MAX);
  const iovec here{text, PATH_MAX};
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  const auto at = [](std::uint64_t place) { return reinterpret_cast<void*>(place); };
  const iovec there[] = {{at(address), first}, {at(address + first), PATH_MAX - first}};
  process_vm_readv(child, &here, 1, there, 2, 0);
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
