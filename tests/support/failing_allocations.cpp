#include "support/failing_allocations.h"

#include <cstdlib>
#include <new>

namespace camcfg::tests {
namespace {

struct Shortage {
  int allocationsLeft = 0;  // up to and including the one that fails; 0: none is to fail
  bool lasts = false;       // whether those after it fail as well
  bool begun = false;
};
thread_local Shortage shortage;

bool refuses() {
  if (shortage.begun && shortage.lasts) return true;
  if (shortage.allocationsLeft == 0 || --shortage.allocationsLeft > 0) return false;
  shortage.begun = true;
  return true;
}

void* allocate(std::size_t size) {
  return refuses() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

FailingAllocations::FailingAllocations(int nth, Reach reach) {
  shortage = {nth, reach == FromThereOn, false};
}

FailingAllocations::~FailingAllocations() {
  shortage = {};
}

bool FailingAllocations::happened() const {
  return shortage.begun;
}

std::string deeplyNested() {
  constexpr int kDepth = 60;
  std::string xml;
  for (int i = 0; i < kDepth; ++i) xml += "<Level>";
  for (int i = 0; i < kDepth; ++i) xml += "</Level>";
  return xml;
}

}  // namespace camcfg::tests

using camcfg::tests::allocate;
using camcfg::tests::allocateOrThrow;

void* operator new(std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
