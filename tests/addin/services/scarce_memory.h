#pragma once

#include <cstddef>

namespace qv {

/// For the time of its life no block beyond the size can be had in this program: `new` throws std::bad_alloc.
class ScarceMemory {
 public:
  explicit ScarceMemory(std::size_t largestBlock);
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;
  ~ScarceMemory();
};

}  // namespace qv
