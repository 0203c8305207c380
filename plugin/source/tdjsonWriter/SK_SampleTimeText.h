/// The time of a sample as the texts of one file have it. All of them have one length, by which readers find
/// a sample.
#pragma once

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
  std::string_view Fitting() const;

  std::string mText;  // kept between calls, so that a sample allocates nothing
  bool mTimeCodeUsed;
  unsigned short mUTCPrecision;
  unsigned short mTimeLength;
};

}  // namespace SK_PLUGIN
