/// The first section of a motion file.
#pragma once

#include <cstddef>

#include "Skeleton.h"
#include "Source.h"

namespace senmark_motion {

constexpr std::size_t kMostJoints = 20000;     ///< of a file, end sites included
constexpr std::size_t kMostChannels = 100000;  ///< numbers of a frame
constexpr std::size_t kLongestName = 1000;     ///< bytes

/// Reads from the start of the file up to and with the word `MOTION`. Keywords may have any case, and lines may be
/// broken anywhere but in front of a name, which is the rest of its line. Errors: `Failure` with a place for anything
/// that is no hierarchy, and for one beyond the limits.
Skeleton ReadHierarchy(Source& source);

}  // namespace senmark_motion
