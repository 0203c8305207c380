/// The text of a sample's time that was made last.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_TimeWindow.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

// Where the fields of two times differ. Without a decision for each field: nearly all are the same nearly always.
inline std::uint32_t DifferencesOf(ns_sensor::SK_DateTimeSMPTE const& a, ns_sensor::SK_DateTimeSMPTE const& b) {
  return static_cast<std::uint32_t>((a.frames ^ b.frames) | (a.seconds ^ b.seconds) | (a.minutes ^ b.minutes) |
                                    (a.hours ^ b.hours));
}
inline std::uint32_t DifferencesOf(ns_sensor::SK_DateTimeUTC const& a, ns_sensor::SK_DateTimeUTC const& b) {
  return static_cast<std::uint32_t>((a.fraction ^ b.fraction) | (a.second ^ b.second) | (a.minute ^ b.minute) |
                                    (a.hour ^ b.hour) | (a.day ^ b.day) | (a.month ^ b.month) | (a.year ^ b.year) |
                                    (a.offsetSign ^ b.offsetSign) | (a.offsetHour ^ b.offsetHour) |
                                    (a.offsetMinute ^ b.offsetMinute));
}

/// What the texts of a file's times have in common.
struct SK_TimeForm {
  std::uint16_t length = 0;  ///< in bytes; 0: there is no text
  std::uint16_t digits = 0;  ///< behind the second; 0 if they have no place in the text

  /// 0 for two that are the same.
  std::uint32_t DifferencesTo(SK_TimeForm const& other) const { return Bits() ^ other.Bits(); }

 private:
  std::uint32_t Bits() const { return length | std::uint32_t{digits} << 16U; }
};

/// Many streams get a sample at the same time, and most of the next times are of the same day.
template <typename Time>
struct SK_LastTimeText {
  static constexpr std::size_t kNoClock = ~std::size_t{0};

  Time time;
  SK_TimeForm form;
  std::size_t clockAt;                 // where the hours stand
  std::size_t restAt;                  // where stands what is behind the second
  SK_TimeWindow window;                // of the text
  SK_WaitingTime whole;                // the text with its window, as streams take it
  char text[SK_TimeWindow::kLongest];  // with zeroes behind it

  /// Of the thread, so that streams share it although nothing is locked.
  static SK_LastTimeText& Get() {
    static thread_local SK_LastTimeText last = {};
    return last;
  }
};

}  // namespace SK_PLUGIN
