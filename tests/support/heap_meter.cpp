#include "tests/support/heap_meter.h"

#include <atomic>
#include <cstdlib>
#include <new>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>  // which does nothing where the address sanitizer is off
#else
#define ASAN_POISON_MEMORY_REGION(address, size)
#define ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif

namespace {

std::atomic<std::size_t> held = 0;
std::atomic<std::size_t> mostHeld = 0;

/// The size of a block stands before it, in as much room as keeps the block aligned. For the address
/// sanitizer that room is no more to be read than what lies behind the block.
constexpr std::size_t prefix = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  void* const block = std::malloc(prefix + size);
  if (block == nullptr) return nullptr;
  *static_cast<std::size_t*>(block) = size;
  ASAN_POISON_MEMORY_REGION(block, prefix);
  const std::size_t now = held += size;
  std::size_t most = mostHeld;
  while (now > most && !mostHeld.compare_exchange_weak(most, now)) {
  }
  return static_cast<char*>(block) + prefix;
}

void* operator new(std::size_t size) {
  void* const block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* const block = static_cast<char*>(pointer) - prefix;
  ASAN_UNPOISON_MEMORY_REGION(block, prefix);
  held -= *static_cast<std::size_t*>(block);
  std::free(block);
}

void operator delete(void* pointer, std::size_t) noexcept { operator delete(pointer); }
void operator delete(void* pointer, const std::nothrow_t&) noexcept { operator delete(pointer); }
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return operator new(size, std::nothrow);
}
void operator delete[](void* pointer, const std::nothrow_t&) noexcept { operator delete(pointer); }
void operator delete[](void* pointer) noexcept { operator delete(pointer); }
void operator delete[](void* pointer, std::size_t) noexcept { operator delete(pointer); }

namespace pelmarix {

HeapMeter::HeapMeter() : start_(held) { mostHeld = start_; }

std::size_t HeapMeter::peak() const { return mostHeld - start_; }

}  // namespace pelmarix
