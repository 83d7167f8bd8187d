#include "store/xml_file.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>

namespace camcfg {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

constexpr mode_t kNewFileMode = 0666;

// Does not wait for the other end of a pipe that is there instead of a file.
int openWithoutWaiting(const char* path, int flags) {
  return open(path, flags | O_NONBLOCK | O_CLOEXEC, kNewFileMode);
}

File streamOf(int fd, const char* mode) {
  File file(fd < 0 ? nullptr : fdopen(fd, mode));
  if (file != nullptr) return file;
  const int error = errno;
  if (fd >= 0) close(fd);
  errno = error;
  return nullptr;
}

bool isRegular(int fd, FileIdentity* file) {
  struct stat status;
  if (fstat(fd, &status) != 0) return false;
  if (file != nullptr) *file = {status.st_dev, status.st_ino};
  return S_ISREG(status.st_mode);
}

}  // namespace

bool isShortage(int error) {
  return error == ENOMEM || error == EMFILE || error == ENFILE;
}

Load loadXml(tinyxml2::XMLDocument& document, const char* path, FileIdentity* file) try {
  const int fd = openWithoutWaiting(path, O_RDONLY);
  const File stream = streamOf(fd, "rb");
  if (stream == nullptr) return isShortage(errno) ? Load::Shortage : Load::Failed;
  // The file is read in one call, so a buffer would only be one more copy.
  std::setvbuf(stream.get(), nullptr, _IONBF, 0);
  return isRegular(fd, file) && document.LoadFile(stream.get()) == tinyxml2::XML_SUCCESS
             ? Load::Done
             : Load::Failed;
} catch (const std::bad_alloc&) {
  return Load::Shortage;
}

bool saveXml(tinyxml2::XMLDocument& document, const char* path) try {
  const File file = streamOf(openWithoutWaiting(path, O_WRONLY | O_CREAT | O_TRUNC), "w");
  if (file != nullptr) {
    // No other thread has this stream, so its many small writes need no lock.
    __fsetlocking(file.get(), FSETLOCKING_BYCALLER);
    document.SaveFile(file.get());
    return true;
  }
  if (errno == ENOMEM) return false;
  // Opens the file once more to record in the document why it fails. ENXIO is a pipe that nobody
  // reads, which would be waited for.
  if (errno != ENXIO) document.SaveFile(path);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

}  // namespace camcfg
