/// The text of a sample's time that was made last.
#pragma once

#include <cstddef>
#include <string_view>

#include "SK_TimeWindow.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

// Without a decision for each field: nearly all of them are the same nearly always.
inline bool AreSame(ns_sensor::SK_DateTimeSMPTE const& a, ns_sensor::SK_DateTimeSMPTE const& b) {
  return ((a.frames ^ b.frames) | (a.seconds ^ b.seconds) | (a.minutes ^ b.minutes) | (a.hours ^ b.hours)) == 0;
}
inline bool AreSame(ns_sensor::SK_DateTimeUTC const& a, ns_sensor::SK_DateTimeUTC const& b) {
  return ((a.fraction ^ b.fraction) | (a.second ^ b.second) | (a.minute ^ b.minute) | (a.hour ^ b.hour) |
          (a.day ^ b.day) | (a.month ^ b.month) | (a.year ^ b.year) | (a.offsetSign ^ b.offsetSign) |
          (a.offsetHour ^ b.offsetHour) | (a.offsetMinute ^ b.offsetMinute)) == 0;
}

/// Many streams get a sample at the same time, and most of the next times are of the same day.
template <typename Time>
struct SK_LastTimeText {
  static constexpr std::size_t kNoClock = ~std::size_t{0};

  Time time;
  std::size_t length;                 // 0: none
  std::size_t clockAt;                // where the hours stand
  std::size_t restAt;                 // where stands what is behind the second
  unsigned short digits;              // of the rest; 0 if it has no place in the text
  char text[SK_TimeWindow::kPadded];  // with zeroes behind it

  std::string_view View() const { return std::string_view(text, length); }

  /// Of the thread, so that streams share it although nothing is locked.
  static SK_LastTimeText& Get() {
    static thread_local SK_LastTimeText last = {};
    return last;
  }
};

}  // namespace SK_PLUGIN
