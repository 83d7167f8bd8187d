#include "base/host_directory.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/refusal.h"

namespace camcfg::tool {
namespace {

[[noreturn]] void refuse(const std::string& path) {
  throw Refusal(path + ": " + std::strerror(errno));
}

int openOrMake(const char* path) {
  mkdir(path, 0777);
  return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

}  // namespace

HostDirectory::HostDirectory(const std::string& path)
    : path_(path), descriptor_(openOrMake(path.c_str())) {
  if (!descriptor_) refuse(path);
}

bool HostDirectory::holds(const std::string& name, const std::string& bytes) const {
  const Descriptor file(
      openat(descriptor_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::string held;
  return file && readAll(file.get(), held) && held == bytes;
}

void HostDirectory::write(const std::string& name, const std::string& bytes) {
  Descriptor file(
      openat(descriptor_.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (file && writeAll(file.get(), bytes) && fsync(file.get()) == 0 && file.close()) return;
  const int error = errno;
  if (error != EEXIST) unlinkat(descriptor_.get(), name.c_str(), 0);
  errno = error;
  refuse(path_ + "/" + name);
}

std::string HostDirectory::save(const std::string& name, const std::string& bytes) {
  std::string free = name;
  struct stat status {};
  for (int next = 1; fstatat(descriptor_.get(), free.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
       ++next) {
    if (holds(free, bytes)) return path_ + "/" + free;
    free = name + "." + std::to_string(next);
  }
  write(free, bytes);
  fsync(descriptor_.get());
  return path_ + "/" + free;
}

}  // namespace camcfg::tool
