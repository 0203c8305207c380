/// Times as users write them: seconds, fractions, and the notation of the file itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "TimeHeader.h"
#include "senmark/host/Time.h"

namespace senmark_tool {

/// How a file writes its times, and which of them is 0.
///
/// Time code is hours, minutes, seconds and frames, "01:02:03:04". UTC is a date and a time of day,
/// "2012-06-01T00:00:00.000Z". The zone of a UTC text is not looked at, as it is in the library: times are
/// compared as they are written.
class TimeBase {
 public:
  /// Result: none when the header lacks something, or tells what has no sense.
  ///
  /// firstTime  relative time of the first sample of `header.firstSetId`, which ties the two together.
  static std::optional<TimeBase> Make(TimeHeader const& header, senmark::Time const& firstTime);

  bool UsesTimecode() const { return mUsesTimecode; }
  /// One line for people: the notation and its measures.
  std::string Description() const;
  /// The text of time 0.
  std::string Start() const;

  double FramesPerSecond() const { return mRateValue / mRateScale; }
  bool DropsFrames() const { return mDropsFrames; }
  unsigned Precision() const { return mPrecision; }
  bool IsGmt() const { return mIsGmt; }

  /// Seconds from time 0 to `text`; negative before it. None: not a time of this notation. UTC texts may
  /// stop behind the date, the minute, the second or the fraction.
  std::optional<senmark::Time> Parse(std::string const& text) const;

 private:
  /// Ticks of a text from an origin of the notation's own: frames, or units of the last digit.
  std::optional<std::int64_t> TicksOf(std::string const& text) const;
  std::optional<std::int64_t> FramesOf(std::string const& text) const;
  std::optional<std::int64_t> UtcTicksOf(std::string const& text) const;
  /// Reads "T", hour, minute and what may follow, and adds it to `seconds` and `fraction`.
  bool TakeTimeOfDay(std::string_view text, std::size_t& place, std::int64_t& seconds, std::int64_t& fraction) const;
  std::string TextOfFrames(std::int64_t frames) const;
  std::string TextOfUtcTicks(std::int64_t ticks) const;
  /// Frames in a counted second: the rate, rounded.
  std::int64_t NominalRate() const;
  std::int64_t TicksPerSecond() const;

  bool mUsesTimecode = false;
  double mRateValue = 0;
  double mRateScale = 1;
  bool mDropsFrames = false;
  unsigned mPrecision = 0;
  bool mIsGmt = false;
  std::string mZone;  ///< what stands behind the fraction in the file's first time
  std::int64_t mStart = 0;
};

/// Seconds like "1.5" or "-2", or a fraction like "3/2". None: neither of them, or out of range.
std::optional<senmark::Time> ParseSeconds(std::string const& text);

/// Whether a text can only be meant in the notation of a file.
bool LooksLikeTimeText(std::string const& text);

}  // namespace senmark_tool
