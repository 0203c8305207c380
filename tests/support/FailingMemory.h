/// Memory that runs out when a test wants it to. A suite that lists `FailingMemory.cpp` replaces the allocating
/// functions of C++, for the library too. Memory that comes from elsewhere is not concerned.
#pragma once

#include <cstdint>
#include <limits>

namespace senmark_test {

/// As long as it lives, some of the thread's allocations fail. One at a time.
class FailingMemory {
 public:
  static constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();

  /// The allocation with this number fails, counted from 1, and those behind it, `count` in all.
  explicit FailingMemory(std::uint64_t first, std::uint64_t count = 1);
  ~FailingMemory();
  FailingMemory(FailingMemory const&) = delete;
  FailingMemory& operator=(FailingMemory const&) = delete;

  /// Whether it has come to that.
  bool HasFailed() const;
};

}  // namespace senmark_test
