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
  auto const begin = std::chrono::steady_clock::now();
  {
    ProgressLine const line(&out, "reading a.csv", milliseconds(0));
    buffer.AwaitFlush();
  }
  auto const elapsed = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
  std::string const shown = buffer.str();
  std::string const line = "\r\x1b[Kreading a.csv: ";
  ASSERT_EQ(shown.rfind(line, 0), 0u) << shown;
  std::size_t length = 0;
  int const seconds = std::stoi(shown.substr(line.size()), &length);
  EXPECT_GE(seconds, 0);
  EXPECT_LE(seconds, elapsed.count());
  EXPECT_EQ(shown.substr(line.size() + length, 2), " s");
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
