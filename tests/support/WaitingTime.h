/// Times as streams hand them to where samples wait.
#pragma once

#include <algorithm>
#include <array>
#include <string>

#include "SK_TimeWindow.h"

namespace senmark_test {

/// All of them share one window, as the streams of a thread do. Good until the next one is made; a text without a
/// window for as long as `text` is.
inline SK_PLUGIN::SK_WaitingTime WaitingTime(std::string const& text) {
  using SK_PLUGIN::SK_TimeWindow;
  static SK_TimeWindow window;
  static std::array<char, SK_TimeWindow::kLongest> padded;
  if (!SK_TimeWindow::AreFor(text.size())) {
    return {text};
  }
  padded = {};
  std::copy(text.begin(), text.end(), padded.begin());
  window.Set(padded.data(), text.size());
  return {std::string_view(padded.data(), text.size()), &window};
}

}  // namespace senmark_test
