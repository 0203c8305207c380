/// What stands between the hierarchy and the frames.
#pragma once

#include <cstdint>
#include <string>

#include "FrameTime.h"
#include "Source.h"

namespace senmark_motion {

struct MotionHeader {
  std::uint64_t frameCount = 0;  ///< as the file states it
  FrameTime frameTime;
  std::int64_t frameTimeOffset = 0;  ///< bytes of the file before the text of the frame time
};

/// Reads `Frames:` and `Frame Time:`, in this order or the other, on one line or several; the frames come next.
/// Errors: `Failure` with a place for anything else, and for what is missing.
MotionHeader ReadMotionHeader(Source& source);

}  // namespace senmark_motion
