#include "support/scarce_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace camcfg::tests {
namespace {

constexpr int kPlenty = 0;

std::atomic<int> allocationsUntilShort{kPlenty};
std::atomic<bool> staysShort{false};
std::atomic<bool> hasStruck{false};
std::atomic<long> alive{0};

bool fails() {
  if (staysShort && hasStruck) return true;
  if (allocationsUntilShort == kPlenty || --allocationsUntilShort != 0) return false;
  hasStruck = true;
  return true;
}

void* allocate(std::size_t size) noexcept {
  void* memory = fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) ++alive;
  return memory;
}

void release(void* memory) noexcept {
  if (memory != nullptr) --alive;
  std::free(memory);
}

void* allocateOrThrow(std::size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

ScarceMemory::ScarceMemory(int allocation, Shortage shortage) {
  hasStruck = false;
  staysShort = shortage == Shortage::FromThenOn;
  allocationsUntilShort = allocation;
}

ScarceMemory::~ScarceMemory() {
  allocationsUntilShort = kPlenty;
  staysShort = false;
}

bool ScarceMemory::struck() const {
  return hasStruck;
}

long allocationsAlive() {
  return alive;
}

}  // namespace camcfg::tests

using camcfg::tests::allocate;
using camcfg::tests::allocateOrThrow;
using camcfg::tests::release;

void* operator new(std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  release(memory);
}
void operator delete[](void* memory) noexcept {
  release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  release(memory);
}
