#include "torture/exhaustion/allocations.h"

#include <fcntl.h>

#include <atomic>
#include <cstddef>

namespace {

std::atomic<long> blocks{0};

}  // namespace

// Stand before the C library's own, in whose work operator new and the streams end as well.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
  void* memory = __libc_malloc(size);
  if (memory != nullptr) ++blocks;
  return memory;
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
  void* memory = __libc_calloc(count, size);
  if (memory != nullptr) ++blocks;
  return memory;
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
  void* moved = __libc_realloc(memory, size);
  if (memory == nullptr && moved != nullptr) ++blocks;
  if (memory != nullptr && size == 0) --blocks;
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

int openDescriptors() {
  constexpr int kHighest = 256;
  int open = 0;
  for (int descriptor = 0; descriptor < kHighest; ++descriptor)
    if (fcntl(descriptor, F_GETFD) >= 0) ++open;
  return open;
}

}  // namespace camcfg::torture
