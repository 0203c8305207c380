#include "ProgressLine.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <sstream>
#include <streambuf>

namespace senmark_tool {
namespace {

using std::chrono::milliseconds;

/// Keeps what is written, and lets a test wait for it.
class WatchedBuffer : public std::stringbuf {
 public:
  void AwaitFlush() {
    std::unique_lock<std::mutex> lock(mMutex);
    mFlushed.wait(lock, [this] { return mIsFlushed; });
  }

 protected:
  int sync() override {
    std::lock_guard<std::mutex> const lock(mMutex);
    mIsFlushed = true;
    mFlushed.notify_all();
    return 0;
  }

 private:
  std::mutex mMutex;
  std::condition_variable mFlushed;
  bool mIsFlushed = false;
};

TEST(ProgressLine, ShowsItselfAndIsGoneAtTheEnd) {
  WatchedBuffer buffer;
  std::ostream out(&buffer);
  {
    ProgressLine const line(&out, "reading a.csv", milliseconds(0));
    buffer.AwaitFlush();
  }
  std::string const shown = buffer.str();
  EXPECT_EQ(shown.rfind("\r\x1b[Kreading a.csv: 0 s", 0), 0u) << shown;
  std::string const erased = "\r\x1b[K";
  ASSERT_GT(shown.size(), erased.size());
  EXPECT_EQ(shown.substr(shown.size() - erased.size()), erased);
}

TEST(ProgressLine, ShortWorkShowsNothing) {
  std::ostringstream out;
  { ProgressLine const line(&out, "reading", std::chrono::hours(1)); }
  EXPECT_EQ(out.str(), "");
}

TEST(ProgressLine, WithoutATerminalNothingIsShown) {
  ProgressLine const line(nullptr, "reading", milliseconds(0));
}

TEST(ProgressLine, EndsWhenTheWorkFails) {
  WatchedBuffer buffer;
  std::ostream out(&buffer);
  EXPECT_THROW(
      {
        ProgressLine const line(&out, "reading", milliseconds(0));
        buffer.AwaitFlush();
        throw std::runtime_error("no more");
      },
      std::runtime_error);
  std::string const shown = buffer.str();
  EXPECT_EQ(shown.substr(shown.rfind('\r')), "\r\x1b[K");
}

}  // namespace
}  // namespace senmark_tool
