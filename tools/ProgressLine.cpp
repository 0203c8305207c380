#include "ProgressLine.h"

#include <utility>

namespace senmark_tool {

namespace {

constexpr std::chrono::milliseconds kBetweenUpdates(500);
// To the first column, and away with what stands behind it (ECMA-48: CR, EL).
constexpr char kErase[] = "\r\x1b[K";

}  // namespace

ProgressLine::ProgressLine(std::ostream* out, std::string what, std::chrono::milliseconds delay)
    : mOut(out), mWhat(std::move(what)), mDelay(delay) {
  if (mOut != nullptr) {
    mThread = std::thread([this] { Run(); });
  }
}

ProgressLine::~ProgressLine() {
  if (mOut == nullptr) {
    return;
  }
  {
    std::lock_guard<std::mutex> const lock(mMutex);
    mIsEnding = true;
  }
  mEnd.notify_one();
  mThread.join();
}

void ProgressLine::Run() {
  std::unique_lock<std::mutex> lock(mMutex);
  auto const isEnding = [this] { return mIsEnding; };
  bool isShown = false;
  for (std::chrono::milliseconds pause = mDelay; !mEnd.wait_for(lock, pause, isEnding); pause = kBetweenUpdates) {
    auto const elapsed = std::chrono::steady_clock::now() - mStart;
    *mOut << kErase << mWhat << ": " << std::chrono::duration_cast<std::chrono::seconds>(elapsed).count() << " s"
          << std::flush;
    isShown = true;
  }
  if (isShown) {
    *mOut << kErase << std::flush;
  }
}

}  // namespace senmark_tool
