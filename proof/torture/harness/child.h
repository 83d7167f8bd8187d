#ifndef CAMCFG_TORTURE_HARNESS_CHILD_H
#define CAMCFG_TORTURE_HARNESS_CHILD_H

#include <sys/mman.h>
#include <sys/types.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace camcfg::torture {

/// A value that a process shares with the children it starts later.
template <typename Value>
class Shared {
  static_assert(std::is_trivially_destructible_v<Value>);

 public:
  Shared() : value_(new (map()) Value()) {}
  ~Shared() { munmap(value_, sizeof(Value)); }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;

  Value& operator*() const { return *value_; }
  Value* operator->() const { return value_; }

 private:
  static void* map() {
    void* memory =
        mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::runtime_error("mmap");
    return memory;
  }

  Value* value_;
};

/// Discards what this process prints on standard output.
void silenceOutput();

/// Starts a child that runs `work` with a directory as its root and standard output silenced, and
/// then ends with the status that `work` returns.
/// @return the child's id, to be waited for
pid_t startInside(const std::string& hostRoot, const std::function<int()>& work);

/// Waits for a child's end.
/// @return its exit status; 128 and the signal's number for one that a signal ended
int waitFor(pid_t child);

/// Runs `work` in a child as startInside() does, and waits for its end.
int runInside(const std::string& hostRoot, const std::function<int()>& work);

/// Runs a program with standard output and standard error silenced; sync() returns at once in it.
/// @return its exit status as waitFor() returns it
int runProgram(const std::vector<std::string>& words);

/// Replaces this process by a program; sync() returns at once in it.
[[noreturn]] void becomeProgram(std::vector<std::string> words);

/// Runs tasks in children of their own, as many at a time as there are processors.
/// @return how many of them ended with a status other than 0
int runSideBySide(const std::vector<std::function<int()>>& tasks);

}  // namespace camcfg::torture

#endif
