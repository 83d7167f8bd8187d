#include "support/interposed_calls.h"

#include <dlfcn.h>
#include <cerrno>

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
