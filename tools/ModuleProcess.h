/// Runs code that is not trusted, that of a module above all, in a process of its own.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace senmark_tool {

/// What the process may use. It is ended when it wants more.
struct Limits {
  std::chrono::milliseconds time{10000};   ///< from its begin to its end, as a clock on the wall shows it
  std::chrono::seconds processorTime{10};  ///< of all its threads; at least 1
  std::uint64_t memory = 1ull << 30;       ///< bytes beside what this program has already. None under a sanitizer.
  std::uint64_t fileSize = 1ull << 30;     ///< bytes of the largest file that it may write
  std::uint64_t reportSize = 16ull << 20;  ///< bytes of its report; what comes behind is dropped
};

/// How a process ended, and what it left.
struct ProcessEnd {
  enum class eKind : std::uint8_t {
    kReturned,  ///< the work was done
    kThrew,     ///< an exception left the work; `text` is what it says
    kExited,    ///< the process ended itself, with exit status `number`
    kSignal,    ///< signal `number` ended it
    kTimedOut,  ///< it was ended because its time was over, by the clock or of the processor
  };

  eKind kind = eKind::kReturned;
  int number = 0;
  std::string text;
  std::string report;  ///< what the work wrote to its stream, as far as it came
  std::string output;  ///< the first 64 KiB of what was printed to standard output and standard error

  bool HasReturned() const { return kind == eKind::kReturned; }
  /// In words, like "died of signal 11 (Segmentation fault)"; "ran to its end" if it has returned.
  std::string Text() const;
};

/// Does `work` in a child of this process and waits for its end. This process must have one thread only.
///
/// Standard input is empty there. The process is gone when this returns, and with it all that it started, as long as
/// that has not left its group of processes. What it changes is seen by nobody, except for files and the report:
/// `report` is not buffered, so that what was written before a crash arrives.
///
/// Errors: `std::system_error` if no process can be made.
ProcessEnd RunLimited(Limits const& limits, std::function<void(std::ostream& report)> const& work);

}  // namespace senmark_tool
