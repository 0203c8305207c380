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
  unsigned short Length() const { return mForm.length; }

  /// Whether the file has times of this kind.
  bool IsOfKind(ns_sensor::SK_DateTimeSMPTE const&) const { return mTimeCodeUsed; }
  bool IsOfKind(ns_sensor::SK_DateTimeUTC const&) const { return !mTimeCodeUsed; }

  /// The text of a time of the file's kind, good until the thread makes the next one. Empty for one that does not come
  /// out at the file's length.
  template <typename Time>
  SK_WaitingTime const& Make(Time const& time) {
    SK_LastTimeText<Time> const& last = SK_LastTimeText<Time>::Get();
    return (mForm.DifferencesTo(last.form) | DifferencesOf(time, last.time)) == 0 ? last.whole : MakeNew(Time(time));
  }

 private:
  SK_WaitingTime const& MakeNew(ns_sensor::SK_DateTimeSMPTE const& time);
  SK_WaitingTime const& MakeNew(ns_sensor::SK_DateTimeUTC const& time);
  template <typename Time>
  SK_WaitingTime const& Keep(Time const& time, std::size_t clockAt, std::size_t restAt);

  std::string mText;      // kept for its memory
  SK_WaitingTime mWhole;  // that text, of a length that has no window
  bool mTimeCodeUsed;
  SK_TimeForm mForm;
};

}  // namespace SK_PLUGIN
