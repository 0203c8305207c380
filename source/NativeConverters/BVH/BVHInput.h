/// The lines of a motion capture file, with the states that a text stream has.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "SK_InputBytes.h"

namespace ns_sensor {

class BVHInput {
 public:
  explicit BVHInput(std::string const& path) : mBytes(path) {}

  bool IsOpen() const { return mBytes.IsOpen(); }
  /// False once a line ended with the file instead of a line end.
  bool IsGood() const { return mIsGood; }
  /// True once there was no line left to read.
  bool HasFailed() const { return mHasFailed; }

  /// The next line without its line end, which is LF alone: a CR stays. Empty when there is none. Good until
  /// the next call.
  std::string_view ReadLine();

 private:
  SK_InputBytes mBytes;
  bool mIsGood = true;
  bool mHasFailed = false;
  std::string mBroken;  ///< a line of which the parts came in different pieces
};

/// Reads lines up to one that holds `key`, and what that says beside the key into `value`. That stays as it is
/// when no line does, or when only a last line without line end does.
void StraightUntilYouHit(BVHInput& input, std::string_view key, std::uint64_t& value);
void StraightUntilYouHit(BVHInput& input, std::string_view key, double& value);

}  // namespace ns_sensor
