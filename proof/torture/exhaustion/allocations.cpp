#include "torture/exhaustion/allocations.h"

#include <fcntl.h>

#include <atomic>
#include <cerrno>
#include <cstddef>

namespace {

std::atomic<long> blocks{0};
std::atomic<int> untilFailure{0};
std::atomic<bool> failsOn{false};
std::atomic<bool> hasFailed{false};

std::atomic<bool> plenty{false};

bool fails() {
  if (plenty) return false;
  if (failsOn && hasFailed) return true;
  if (untilFailure == 0 || --untilFailure != 0) return false;
  hasFailed = true;
  return true;
}

void* counted(void* memory) {
  if (memory != nullptr) ++blocks;
  return memory;
}

void* outOfMemory() {
  errno = ENOMEM;
  return nullptr;
}

}  // namespace

// Called instead of the C library's own, in whose work operator new and the streams end as well.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
  return fails() ? outOfMemory() : counted(__libc_malloc(size));
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
  return fails() ? outOfMemory() : counted(__libc_calloc(count, size));
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
  if (size != 0 && fails()) return outOfMemory();
  void* moved = __libc_realloc(memory, size);
  if (memory == nullptr) return counted(moved);
  if (size == 0) --blocks;
  return moved;
}

__attribute__((visibility("default"))) void free(void* memory) {
  if (memory != nullptr) --blocks;
  __libc_free(memory);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)

namespace camcfg::torture {

long liveBlocks() {
  return blocks;
}

void failAllocation(int allocation, bool andAllBehindIt) {
  hasFailed = false;
  failsOn = andAllBehindIt;
  untilFailure = allocation;
}

bool allocationFailed() {
  return hasFailed;
}

PlentyOfMemory::PlentyOfMemory() {
  plenty = true;
}

PlentyOfMemory::~PlentyOfMemory() {
  plenty = false;
}

int openDescriptors() {
  constexpr int kHighest = 256;
  int open = 0;
  for (int descriptor = 0; descriptor < kHighest; ++descriptor)
    if (fcntl(descriptor, F_GETFD) >= 0) ++open;
  return open;
}

}  // namespace camcfg::torture
