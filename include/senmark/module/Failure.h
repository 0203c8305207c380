/// What ends a conversion.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "senmark/SK_ErrorCode.h"

namespace senmark::kit {

/// Thrown by the kit, and by a converter that cannot go on. The host gets the code and the place; the text goes to
/// the log of the module's writer (`SENMARK_MODULE_LOG`), for the library has a text of its own for every module.
class Failure : public std::runtime_error {
 public:
  /// The code of an input that is not what it claims to be.
  static constexpr std::int32_t kMalformedInput = ns_sensor::kConversionFailed;
  /// The code of something that the kit keeps out of a file, as it could not be read back.
  static constexpr std::int32_t kRefused = 1507;

  /// offset  bytes from the start of the input, -1 for none.
  /// line    of the input, the first one is 1; -1 for none.
  explicit Failure(std::string const& message, std::int64_t offset = -1, std::int64_t line = -1,
                   std::int32_t code = kMalformedInput)
      : std::runtime_error(message), mOffset(offset), mLine(line), mCode(code) {}

  std::int32_t code() const noexcept { return mCode; }
  std::int64_t offset() const noexcept { return mOffset; }
  std::int64_t line() const noexcept { return mLine; }

  /// The same failure with a place, unless it has one.
  Failure at(std::int64_t offset, std::int64_t line) const {
    return mOffset == -1 && mLine == -1 ? Failure(what(), offset, line, mCode) : *this;
  }

 private:
  std::int64_t mOffset;
  std::int64_t mLine;
  std::int32_t mCode;
};

/// Something that the kit does not let into a file.
inline Failure Refused(std::string const& message) {
  return Failure(message, -1, -1, Failure::kRefused);
}

}  // namespace senmark::kit
