#include "base/descriptor.h"

#include <sys/mman.h>

#include <cerrno>

namespace camcfg::tool {

bool writeAll(int fd, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = write(fd, text.data() + done, text.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

bool readAll(int fd, std::string& text) {
  char buffer[16384];
  for (;;) {
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    text.append(buffer, static_cast<std::size_t>(got));
  }
}

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
