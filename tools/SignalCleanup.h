/// What a signal that ends the program takes along: its scratch folders, and processes that it started.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <array>
#include <string>

namespace senmark_tool {

/// The signals by which a user ends a program: of Ctrl-C, of a terminal that is closed, and of `kill`.
inline constexpr std::array<int, 3> kEndingSignals = {SIGINT, SIGHUP, SIGTERM};

/// Holds these signals back from the calling thread as long as it lives; one that came meanwhile arrives then.
class HeldSignals {
 public:
  HeldSignals();
  ~HeldSignals();
  HeldSignals(HeldSignals const&) = delete;
  HeldSignals& operator=(HeldSignals const&) = delete;

 private:
  sigset_t mBefore;
};

/// From the first of its objects on, these signals end what the objects stand for, and then the process, which dies of
/// the signal as it would without. Not in a child of the process, and not where a signal is ignored. All objects belong
/// to the thread that made the first.
class SignalCleanup {
 public:
  class Folder;
  class Group;

 private:
  static void EndAll(int number);
};

/// A folder, with all that will be in it.
class SignalCleanup::Folder {
 public:
  explicit Folder(std::string path);
  ~Folder();
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;

 private:
  friend class SignalCleanup;

  std::string mPath;
  pid_t mProcess;  ///< whose it is: a child has a copy of this object
  Folder* mOlder;
};

/// A child and its group of processes. One at a time.
class SignalCleanup::Group {
 public:
  explicit Group(pid_t leader);
  ~Group();
  Group(Group const&) = delete;
  Group& operator=(Group const&) = delete;
};

}  // namespace senmark_tool
