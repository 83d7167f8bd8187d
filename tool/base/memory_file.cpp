#include "base/memory_file.h"

#include <sys/mman.h>

namespace camcfg::tool {

MemoryFile::MemoryFile() : descriptor_(memfd_create("camcfg", MFD_CLOEXEC)) {}

bool MemoryFile::fill(const std::string& text) const {
  return writeAll(get(), text) && lseek(get(), 0, SEEK_SET) == 0;
}

std::string MemoryFile::contents() const {
  std::string text;
  if (lseek(get(), 0, SEEK_SET) == 0) readAll(get(), text);
  return text;
}

}  // namespace camcfg::tool
