/// The time of a sample as the texts of one file have it. All of them have one length, by which readers find
/// a sample.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "SK_LastTimeText.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonRootImpl;

class SK_SampleTimeText {
 public:
  /// Takes the time base over as it is now; a later one of the root changes nothing here.
  explicit SK_SampleTimeText(TdjsonRootImpl const& root);

  /// In bytes.
  unsigned short Length() const { return mTimeLength; }

  /// Whether the file has times of this kind.
  bool IsOfKind(ns_sensor::SK_DateTimeSMPTE const&) const { return mTimeCodeUsed; }
  bool IsOfKind(ns_sensor::SK_DateTimeUTC const&) const { return !mTimeCodeUsed; }

  /// The text of a time of the file's kind, good until the thread makes the next one. Empty for one that does not come
  /// out at the file's length. One of up to `SK_TimeWindow::kLongest` bytes stands in memory of
  /// `SK_TimeWindow::kPadded` bytes, with zeroes behind it.
  template <typename Time>
  std::string_view Make(Time const& time) {
    SK_LastTimeText<Time> const& last = SK_LastTimeText<Time>::Get();
    bool const isLast = last.length == mTimeLength && last.digits == DigitsOf(time) && AreSame(time, last.time);
    return isLast ? last.View() : MakeNew(Time(time));
  }

 private:
  /// Hours, minutes and seconds with two digits each, and the colon behind each.
  static constexpr unsigned kLengthBeforeFrames = 9;

  // Of what stands behind the second.
  unsigned short DigitsOf(ns_sensor::SK_DateTimeSMPTE const& /*time*/) const {
    return static_cast<unsigned short>(mTimeLength - kLengthBeforeFrames);
  }
  unsigned short DigitsOf(ns_sensor::SK_DateTimeUTC const& /*time*/) const { return mUTCPrecision; }

  std::string_view MakeNew(ns_sensor::SK_DateTimeSMPTE const& time);
  std::string_view MakeNew(ns_sensor::SK_DateTimeUTC const& time);
  template <typename Time>
  std::string_view Keep(Time const& time, std::size_t clockAt, std::size_t restAt);

  std::string mText;  // kept for its memory
  bool mTimeCodeUsed;
  unsigned short mUTCPrecision;
  unsigned short mTimeLength;
};

}  // namespace SK_PLUGIN
