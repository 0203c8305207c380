/// What one file may have, so that none takes all memory.
#pragma once

#include <cstddef>
#include <string>

#include "senmark/module/Failure.h"

namespace senmark_gpx {

/// Tracks, segments and routes, with points or without.
inline constexpr std::size_t kMostParts = 10000;
/// Streams; a segment has one for the position and one for each thing that its points tell beside it.
inline constexpr std::size_t kMostStreams = 20000;
/// Values that do not change: points without time, and what they, tracks and routes tell.
inline constexpr std::size_t kMostValues = 100000;

class Limit {
 public:
  /// what: in the plural.
  Limit(std::size_t most, char const* what) : mMost(most), mWhat(what) {}

  /// Counts one more. Errors: `Failure` if that is too many.
  void add() {
    if (mCount == mMost) {
      throw senmark::kit::Failure("more than " + std::to_string(mMost) + ' ' + mWhat);
    }
    ++mCount;
  }

 private:
  std::size_t mMost;
  char const* mWhat;
  std::size_t mCount = 0;
};

}  // namespace senmark_gpx
