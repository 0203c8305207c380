/// The time of a sample as the texts of one file have it. All of them have one length, by which readers find
/// a sample.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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

  /// The text of a time of the file's kind, good until the next call. Empty for one that does not come out at
  /// the file's length.
  std::string_view Make(ns_sensor::SK_DateTimeSMPTE const& time);
  std::string_view Make(ns_sensor::SK_DateTimeUTC const& time);

 private:
  enum class eKind : unsigned char { kNone, kSMPTE, kUTC };

  std::string_view Fitting() const;
  /// Puts what stands behind the second into the text of the call before. False, with that text lost, for a value that
  /// does not fit.
  bool Replace(std::size_t at, unsigned short digits, int value);

  std::string mText;           // kept between calls: a sample allocates nothing, and few begin a new second
  eKind mLast = eKind::kNone;  // of the time whose text this is
  ns_sensor::SK_DateTimeSMPTE mLastSMPTE;
  ns_sensor::SK_DateTimeUTC mLastUTC;
  std::size_t mFractionAt = 0;
  bool mTimeCodeUsed;
  unsigned short mUTCPrecision;
  unsigned short mTimeLength;
};

}  // namespace SK_PLUGIN
