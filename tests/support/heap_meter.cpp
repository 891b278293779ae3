#include "tests/support/heap_meter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

// Each piece of memory begins with its size, padded so that what follows is
// aligned for every type.
constexpr std::size_t kHead = alignof(std::max_align_t) < sizeof(std::size_t)
                                  ? sizeof(std::size_t)
                                  : alignof(std::max_align_t);

std::atomic<std::size_t> inUse{0};
std::atomic<std::size_t> peak{0};

}  // namespace

namespace vel::test {

std::size_t heapInUse() { return inUse; }

std::size_t heapPeak() { return peak; }

void resetHeapPeak() { peak = inUse.load(); }

}  // namespace vel::test

void* operator new(std::size_t size) {
  void* memory = std::malloc(size + kHead);
  if (memory == nullptr) throw std::bad_alloc();
  *static_cast<std::size_t*>(memory) = size;
  const std::size_t now = inUse += size;
  if (now > peak) peak = now;
  return static_cast<char*>(memory) + kHead;
}

void* operator new[](std::size_t size) { return operator new(size); }

// A sanitizer has ones of its own, which know nothing of the head.
void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void* operator new[](std::size_t size, const std::nothrow_t& without) noexcept {
  return operator new(size, without);
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  void* whole = static_cast<char*>(memory) - kHead;
  inUse -= *static_cast<std::size_t*>(whole);
  std::free(whole);
}

void operator delete[](void* memory) noexcept { operator delete(memory); }

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

void operator delete[](void* memory, std::size_t) noexcept { operator delete(memory); }
