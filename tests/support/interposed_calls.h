#ifndef CAMCFG_TESTS_SUPPORT_INTERPOSED_CALLS_H
#define CAMCFG_TESTS_SUPPORT_INTERPOSED_CALLS_H

#include <dirent.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <functional>
#include <optional>

namespace camcfg::tests {

/// Hooks between the library and the C library. A hook that is not set lets the call pass;
/// one that returns a value answers in the call's place (and sets errno where the call would).
/// Programs that use it are linked with interposed_calls.cpp; for sync() there is quick_saves.h.
struct InterposedCalls {
  std::function<std::optional<ssize_t>(std::size_t& size)> copyFileRange;
  std::function<std::optional<ssize_t>(std::size_t& size)> read;
  std::function<std::optional<ssize_t>(std::size_t& size)> write;
  std::function<std::optional<int>(const char* path)> open;
  std::function<std::optional<int>(int fd)> close;
  std::function<std::optional<int>(int fd, struct stat&)> status;
  std::function<bool()> refusesAStream;
  std::function<std::optional<int>(pthread_mutex_t*, const timespec*)> timedLock;
  std::function<void(pthread_mutex_t*)> beforeUnlock;
  std::function<bool(const char* directory)> refusesToOpen;
  std::function<void(dirent&)> entryRead;
};

/// The hooks of this process. Set them before threads are started.
InterposedCalls& interposedCalls();

/// Puts the hooks back when it goes.
class InterposedCallsScope {
 public:
  InterposedCallsScope() = default;
  ~InterposedCallsScope() { interposedCalls() = {}; }
  InterposedCallsScope(const InterposedCallsScope&) = delete;
  InterposedCallsScope& operator=(const InterposedCallsScope&) = delete;
  InterposedCalls* operator->() { return &interposedCalls(); }
};

}  // namespace camcfg::tests

#endif
