#include "store/xml_file.h"

#include <fcntl.h>
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

// Does not wait for the other end of a pipe that stands in place of a file.
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

bool isRegular(std::FILE* file) {
  struct stat status {};
  return fstat(fileno(file), &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

void throwIfShort(int error) {
  if (error == ENOMEM || error == EMFILE || error == ENFILE) throw std::bad_alloc();
}

bool loadXml(tinyxml2::XMLDocument& document, const char* path) {
  const File file = streamOf(openWithoutWaiting(path, O_RDONLY), "rb");
  if (file == nullptr) throwIfShort(errno);
  return file != nullptr && isRegular(file.get()) &&
         document.LoadFile(file.get()) == tinyxml2::XML_SUCCESS;
}

void saveXml(tinyxml2::XMLDocument& document, const char* path) {
  const File file = streamOf(openWithoutWaiting(path, O_WRONLY | O_CREAT | O_TRUNC), "w");
  if (file != nullptr) {
    document.SaveFile(file.get());
    return;
  }
  if (errno == ENOMEM) throw std::bad_alloc();
  // Opens the file once more to record in the document why it cannot be. ENXIO is a pipe that nobody
  // reads, which would be waited for.
  if (errno != ENXIO) document.SaveFile(path);
}

}  // namespace camcfg
