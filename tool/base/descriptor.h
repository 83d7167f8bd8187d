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

}  // namespace camcfg::tool

#endif
