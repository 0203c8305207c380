/// From the time that one frame of motion takes to a frame rate, and from frame to frame.
#pragma once

#include "senmark/SK_Records.h"

namespace ns_sensor {

/// Frames per second: one of the usual rates, or whole frames.
///
/// frameTime  seconds, more than 0. The last hundredth of the rate is cut off, not rounded, so that a frame
///            time a little above that of 29.97 gives 29.
double GetFrameRate(double frameTime);

/// The time base for a rate of `GetFrameRate`.
SK_TimeCodeInfo CalculateTimeCode(double rate);

/// One frame on, by the counting of SMPTE ST 12-1: at 29.97 and 59.94 a minute begins with frame 2 and 4, but
/// for every tenth minute. Hours are not wrapped.
void IncrementSmpteTime(SK_DateTimeSMPTE& time, double rate);

}  // namespace ns_sensor
