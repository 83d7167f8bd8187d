#ifndef CAMCFG_TOOL_BASE_DESCRIPTOR_H
#define CAMCFG_TOOL_BASE_DESCRIPTOR_H

#include <unistd.h>

#include <string>

namespace camcfg::tool {

/// An open file descriptor, closed when this object goes.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }
  bool close() {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

/// Writes a text whole. False, with errno set, when that failed.
bool writeAll(int fd, const std::string& text);

/// Reads all that is left. False, with errno set, when that failed.
bool readAll(int fd, std::string& text);

/// A file without a name, in memory: it needs no directory and no room on the device.
class MemoryFile {
 public:
  MemoryFile();

  /// Its descriptor; below 0 if the system has none left.
  int get() const { return descriptor_.get(); }
  /// Writes a text and goes back to its beginning. False, with errno set, when that failed.
  bool fill(const std::string& text) const;
  /// All that was written to it.
  std::string contents() const;

 private:
  Descriptor descriptor_;
};

}  // namespace camcfg::tool

#endif
