#include "support/interposed_calls.h"

#include <dlfcn.h>
#include <fcntl.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace camcfg::tests {

InterposedCalls& interposedCalls() {
  static InterposedCalls calls;
  return calls;
}

namespace {

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace
}  // namespace camcfg::tests

using camcfg::tests::interposedCalls;
using camcfg::tests::next;

// The program's own definitions come before those of the C library.
extern "C" {

ssize_t copy_file_range(int from, off64_t* fromOffset, int to, off64_t* toOffset, std::size_t size,
                        unsigned flags) {
  using Function = ssize_t(int, off64_t*, int, off64_t*, std::size_t, unsigned);
  static auto* const real = next<Function>("copy_file_range");
  if (interposedCalls().copyFileRange)
    if (const auto answer = interposedCalls().copyFileRange(size)) return *answer;
  return real(from, fromOffset, to, toOffset, size, flags);
}

ssize_t read(int fd, void* data, std::size_t size) {
  static auto* const real = next<ssize_t(int, void*, std::size_t)>("read");
  if (interposedCalls().read)
    if (const auto answer = interposedCalls().read(size)) return *answer;
  return real(fd, data, size);
}

ssize_t write(int fd, const void* data, std::size_t size) {
  static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
  if (interposedCalls().write)
    if (const auto answer = interposedCalls().write(size)) return *answer;
  return real(fd, data, size);
}

int open(const char* path, int flags, ...) {
  static auto* const real = next<int(const char*, int, ...)>("open");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  if (interposedCalls().open)
    if (const auto answer = interposedCalls().open(path)) return *answer;
  return real(path, flags, mode);
}

int close(int fd) {
  static auto* const real = next<int(int)>("close");
  if (interposedCalls().close)
    if (const auto answer = interposedCalls().close(fd)) return *answer;
  return real(fd);
}

int fstat(int fd, struct stat* status) noexcept {
  static auto* const real = next<int(int, struct stat*)>("fstat");
  if (interposedCalls().status)
    if (const auto answer = interposedCalls().status(fd, *status)) return *answer;
  return real(fd, status);
}

FILE* fdopen(int fd, const char* mode) noexcept {
  static auto* const real = next<FILE*(int, const char*)>("fdopen");
  if (!interposedCalls().refusesAStream || !interposedCalls().refusesAStream())
    return real(fd, mode);
  errno = ENOMEM;
  return nullptr;
}

int pthread_mutex_timedlock(pthread_mutex_t* mutex, const timespec* deadline) noexcept {
  using Function = int(pthread_mutex_t*, const timespec*);
  static auto* const real = next<Function>("pthread_mutex_timedlock");
  if (interposedCalls().timedLock)
    if (const auto answer = interposedCalls().timedLock(mutex, deadline)) return *answer;
  return real(mutex, deadline);
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
  static auto* const real = next<int(pthread_mutex_t*)>("pthread_mutex_unlock");
  if (interposedCalls().beforeUnlock) interposedCalls().beforeUnlock(mutex);
  return real(mutex);
}

DIR* opendir(const char* directory) {
  static auto* const real = next<DIR*(const char*)>("opendir");
  if (interposedCalls().refusesToOpen && interposedCalls().refusesToOpen(directory)) {
    errno = EMFILE;
    return nullptr;
  }
  return real(directory);
}

dirent* readdir(DIR* directory) {
  static auto* const real = next<dirent*(DIR*)>("readdir");
  dirent* entry = real(directory);
  if (entry != nullptr && interposedCalls().entryRead) interposedCalls().entryRead(*entry);
  return entry;
}

}  // extern "C"
