/// A signature as a manifest tells it: bytes that a file has at one place.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace senmark_tool {

struct FileSignature {
  std::string bytes;        ///< the bytes themselves, or "0x" and two digits for each
  std::int32_t length = 0;  ///< bytes that are compared; more than 1024 count as 1024
  std::int64_t offset = 0;  ///< from the start of the file

  /// Why the library does not find it in a file; empty if it does.
  std::string Mismatch(std::istream& file) const;
  /// In words, like `"GPX1" at byte 4`.
  std::string Text() const;
};

}  // namespace senmark_tool
