/// A signature: bytes that a file has at one place.
#pragma once

#include <cstdint>
#include <string>

namespace SK_PLUGIN {

struct CheckFormat {
  std::int64_t mOffset = 0;   ///< bytes from the start of the file
  std::int32_t mLength = 0;   ///< bytes that are compared; more than 1024 count as 1024
  std::string mByteSequence;  ///< the bytes themselves, with a NUL behind them, or "0x" and two digits for each

  bool empty() const { return mLength == 0 || mByteSequence.empty(); }
  void clear();

  /// Whether the open file has these bytes; an empty signature is in no file. Codes 10, 11.
  bool IsIn(int fd) const;
};

}  // namespace SK_PLUGIN
