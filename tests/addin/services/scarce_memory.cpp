#include "scarce_memory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> limit{SIZE_MAX};

}  // namespace

void* operator new(std::size_t size) {
  void* const block = size > limit.load() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

namespace qv {

ScarceMemory::ScarceMemory(std::size_t largestBlock) {
  limit = largestBlock;
}

ScarceMemory::~ScarceMemory() {
  limit = SIZE_MAX;
}

}  // namespace qv
