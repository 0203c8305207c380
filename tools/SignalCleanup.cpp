#include "SignalCleanup.h"

#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

#include "FolderRemoval.h"

namespace senmark_tool {

namespace {

// Changed with the signals held, so that the handler, which runs in the same thread, finds them whole.
std::atomic<SignalCleanup::Folder*> gNewestFolder{nullptr};
std::atomic<pid_t> gLeader{0};
std::atomic<pid_t> gProcess{0};  // 0: no handlers yet
pthread_t gThread;
static_assert(std::atomic<SignalCleanup::Folder*>::is_always_lock_free && std::atomic<pid_t>::is_always_lock_free,
              "a handler takes no lock");

void Handle(void (*handler)(int)) {
  if (gProcess.exchange(getpid()) == getpid()) {
    return;
  }
  gThread = pthread_self();
  gLeader = 0;  // a child of the process that this one is a child of
  for (int const number : kEndingSignals) {
    struct sigaction before {};
    sigaction(number, nullptr, &before);
    if (before.sa_handler != SIG_IGN) {
      struct sigaction action {};
      action.sa_handler = handler;
      sigfillset(&action.sa_mask);
      sigaction(number, &action, nullptr);
    }
  }
}

}  // namespace

HeldSignals::HeldSignals() : mBefore() {
  sigset_t held;
  sigemptyset(&held);
  for (int const number : kEndingSignals) {
    sigaddset(&held, number);
  }
  pthread_sigmask(SIG_BLOCK, &held, &mBefore);
}

HeldSignals::~HeldSignals() {
  pthread_sigmask(SIG_SETMASK, &mBefore, nullptr);
}

SignalCleanup::Folder::Folder(std::string path) : mPath(std::move(path)), mProcess(getpid()) {
  HeldSignals const held;
  mOlder = gNewestFolder.exchange(this);
  Handle(&EndAll);
}

SignalCleanup::Folder::~Folder() {
  HeldSignals const held;
  // They go in any order, but there are few of them.
  if (gNewestFolder == this) {
    gNewestFolder = mOlder;
    return;
  }
  Folder* newer = gNewestFolder;
  while (newer->mOlder != this) {
    newer = newer->mOlder;
  }
  newer->mOlder = mOlder;
}

SignalCleanup::Group::Group(pid_t leader) {
  HeldSignals const held;
  Handle(&EndAll);
  gLeader = leader;
}

SignalCleanup::Group::~Group() {
  gLeader = 0;
}

void SignalCleanup::EndAll(int number) {
  if (gProcess == getpid()) {
    if (pthread_equal(pthread_self(), gThread) == 0) {
      // The thread that makes and removes these things would go on with it beside the handler.
      pthread_kill(gThread, number);
      return;
    }
    int const before = errno;
    // Taken away as they are ended: a second signal may bring this here again before the first ends the process, when
    // their number and names may be others'. First what might still write to the folders.
    if (pid_t const leader = gLeader.exchange(0); leader != 0) {
      kill(-leader, SIGKILL);
      kill(leader, SIGKILL);  // its group may not exist yet
      while (waitpid(leader, nullptr, 0) == -1 && errno == EINTR) {
      }
    }
    for (Folder const* folder = gNewestFolder.exchange(nullptr); folder != nullptr; folder = folder->mOlder) {
      if (folder->mProcess == getpid()) {
        RemoveFolder(folder->mPath.c_str());
      }
    }
    errno = before;
  }
  // The process dies of it as soon as the handler returns, so that whoever started it sees why.
  signal(number, SIG_DFL);
  raise(number);
}

}  // namespace senmark_tool
