/// What the benchmarks that open files share: a host, a stopwatch, and an eye on the memory.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "senmark/Senmark.h"

/// A host that only opens and closes, and prints the errors that it gets.
class OpeningHost {
 public:
  /// modules  folder of converter modules, null for none.
  explicit OpeningHost(char const* modules = nullptr);
  ~OpeningHost();
  OpeningHost(OpeningHost const&) = delete;
  OpeningHost& operator=(OpeningHost const&) = delete;

  /// output  where a converted file is to go, null for the folder for temporary files.
  ns_sensor::ISensorFileHandler* Open(std::string const& path, char const* output = nullptr);
  void Close(ns_sensor::ISensorFileHandler* handler) { mManager->closeFile(&handler, &mErrors); }
  /// Seconds from the call to its return; closing does not count.
  double SecondsToOpen(std::string const& path, char const* output = nullptr);
  bool HasFailed() const { return mErrors != 0; }

 private:
  ns_sensor::ISenmark* mManager = nullptr;
  int mErrors = 0;
};

class Stopwatch {
 public:
  double Seconds() const { return std::chrono::duration<double>(Clock::now() - mStart).count(); }

 private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point mStart = Clock::now();
};

/// The folder for temporary files, with its separator.
std::string TempFolder();

/// Bytes of anonymous memory that `work` takes at its peak, beyond what there was before it; watched from a
/// second thread.
std::uint64_t PeakMemoryOf(std::function<void()> const& work);

inline double Best(std::vector<double> const& seconds) {
  return *std::min_element(seconds.begin(), seconds.end());
}

inline double Middle(std::vector<double> seconds) {
  std::sort(seconds.begin(), seconds.end());
  return seconds[seconds.size() / 2];
}
