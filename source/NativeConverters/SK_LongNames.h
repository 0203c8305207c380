/// Counts the bytes that the long names of one converted file take, and gives up before they take all memory.
///
/// Names of nested nodes can be made of those around them. All of them together then grow with the square of the
/// file, so that a small one could ask for more than any machine has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ns_sensor {

class SK_LongNames {
 public:
  /// Names of more bytes than this are counted. A shorter one is no more than its node takes anyway.
  static constexpr std::size_t kLongName = 1024;
  /// Bytes that all counted names may have together.
  static constexpr std::uint64_t kLimit = std::uint64_t{1} << 30;

  explicit SK_LongNames(std::uint64_t limit = kLimit) : mLimit(limit) {}

  /// Gives the name back. `std::bad_alloc` if it leads past the limit.
  std::string Counted(std::string name);
  /// Takes names out of the count that are no longer there.
  void Forget(std::uint64_t bytes) { mBytes -= bytes; }
  /// Of all names that are in the count.
  std::uint64_t GetBytes() const { return mBytes; }

 private:
  std::uint64_t mLimit;
  std::uint64_t mBytes = 0;
};

}  // namespace ns_sensor
