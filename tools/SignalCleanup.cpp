#include "SignalCleanup.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace senmark_tool {

namespace {

std::atomic<SignalCleanup const*> gCleanup{nullptr};
static_assert(std::atomic<SignalCleanup const*>::is_always_lock_free, "a handler takes no lock");

}  // namespace

HeldSignals::HeldSignals() : mBefore() {
  sigset_t held;
  sigemptyset(&held);
  for (int const number : kEndingSignals) {
    sigaddset(&held, number);
  }
  sigprocmask(SIG_BLOCK, &held, &mBefore);
}

HeldSignals::~HeldSignals() {
  sigprocmask(SIG_SETMASK, &mBefore, nullptr);
}

SignalCleanup::SignalCleanup(std::string const& folder) : mProcess(getpid()) {
  mPaths.push_back(folder);
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    mPaths.push_back(entry.path().string());
  }
  std::reverse(mPaths.begin(), mPaths.end());
  gCleanup = this;
  for (std::size_t i = 0; i != kEndingSignals.size(); ++i) {
    struct sigaction action {};
    action.sa_handler = &RemoveAndEnd;
    sigfillset(&action.sa_mask);
    sigaction(kEndingSignals[i], nullptr, &mBefore[i]);
    if (mBefore[i].sa_handler != SIG_IGN) {
      sigaction(kEndingSignals[i], &action, nullptr);
    }
  }
}

SignalCleanup::~SignalCleanup() {
  for (std::size_t i = 0; i != kEndingSignals.size(); ++i) {
    sigaction(kEndingSignals[i], &mBefore[i], nullptr);
  }
  gCleanup = nullptr;
}

void SignalCleanup::RemoveAndEnd(int number) {
  int const before = errno;
  SignalCleanup const* const cleanup = gCleanup;
  if (cleanup != nullptr && cleanup->mProcess == getpid()) {
    for (std::string const& path : cleanup->mPaths) {
      if (unlink(path.c_str()) != 0) {
        rmdir(path.c_str());
      }
    }
  }
  errno = before;
  // The process dies of it as soon as the handler returns, so that whoever started it sees why.
  signal(number, SIG_DFL);
  raise(number);
}

}  // namespace senmark_tool
