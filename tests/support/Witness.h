/// Tells of other processes without looking at a clock.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <utility>

namespace senmark_test {

/// A pipe that shows whether processes are still there: it is open for writing in all that begin after it.
class Witness {
 public:
  Witness() { EXPECT_EQ(pipe(mEnds), 0); }
  ~Witness() {
    CloseWritingEnd();
    close(mEnds[0]);
  }
  Witness(Witness const&) = delete;
  Witness& operator=(Witness const&) = delete;

  int WritingEnd() const { return mEnds[1]; }
  void CloseWritingEnd() {
    if (mEnds[1] != -1) {
      close(std::exchange(mEnds[1], -1));
    }
  }

  /// What a process has written, or else false.
  template <class Value>
  bool Read(Value& value) const {
    return WaitForInput() && read(mEnds[0], &value, sizeof value) == sizeof value;
  }
  /// Waits until this process is the only one left. False: others are still there when they should be long gone.
  bool AwaitTheEndOfOthers() {
    CloseWritingEnd();
    char byte;
    return WaitForInput() && read(mEnds[0], &byte, 1) == 0;
  }

 private:
  bool WaitForInput() const {
    constexpr int kFarAway = 240000;  // milliseconds
    pollfd waiting{mEnds[0], POLLIN, 0};
    return poll(&waiting, 1, kFarAway) == 1;
  }

  int mEnds[2] = {-1, -1};
};

}  // namespace senmark_test
