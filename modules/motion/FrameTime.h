/// How long a frame lasts, and what a data file makes of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "senmark/module/Time.h"

namespace senmark_motion {

namespace kit = senmark::kit;

/// A frame time as a file states it.
struct FrameTime {
  std::string text;
  double seconds = 0;
  std::uint64_t mantissa = 0;  ///< of the text, without zeros at its end, with 18 digits at most
  int decimals = 0;            ///< the frame time is the mantissa over ten to this power
  double unit = 0;             ///< seconds of the last digit in the text, zeros at its end included
};

/// None for a text that is no number.
std::optional<FrameTime> ParseFrameTime(std::string_view text);

/// A number of frames per second.
struct Rate {
  unsigned value = 0;
  unsigned scale = 1;
};

/// A usual rate that the frame time is a spelling of: the one that it equals but for 5 millionths, else one that
/// becomes this text when its frame time is rounded, or cut off, to as many digits, if the two are no more than 0.5 %
/// apart; whole rates come first there. So 0.0333333, .03333 and 0.0333 are 30, and 0.033367 is 29.97.
std::optional<Rate> UsualRate(FrameTime const& time);

/// The rate as a fraction: exact where readers can count with it over the recording, else the nearest one with which
/// they can. None if that is further off than a ten-thousandth of a second at the last frame.
std::optional<Rate> FractionRate(FrameTime const& time, std::uint64_t lastFrame);

/// How the file tells the times of frames 0 to `lastFrame`: by time codes where their rates from 0.5 to 1000 per
/// second and their day are enough, else by GMT from 1970 on. No frame numbers are dropped: no motion file tells that
/// they were. None for a frame time that is not above 0 when there are several frames.
std::optional<kit::TimeBase> ChooseTimeBase(FrameTime const& time, std::uint64_t lastFrame);

}  // namespace senmark_motion
