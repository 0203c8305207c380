/// A line on a terminal that says what is being done and for how long, while a call that cannot tell by itself
/// takes its time.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>

namespace senmark_tool {

/// Shows itself only after a second, on a thread of its own, and is gone from the terminal when it ends.
class ProgressLine {
 public:
  /// out  of a terminal, used by nobody else meanwhile; null: nothing is ever shown.
  /// what one line of printable text.
  ProgressLine(std::ostream* out, std::string what, std::chrono::milliseconds delay = std::chrono::seconds(1));
  ~ProgressLine();
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;

 private:
  void Run();

  std::ostream* mOut;
  std::string mWhat;
  std::chrono::milliseconds mDelay;
  std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
  std::mutex mMutex;
  std::condition_variable mEnd;
  bool mIsEnding = false;
  std::thread mThread;
};

}  // namespace senmark_tool
