/// A folder that goes with the program, even when a signal ends it.
#pragma once

#include <signal.h>
#include <sys/types.h>

#include <array>
#include <string>
#include <vector>

namespace senmark_tool {

/// The signals by which a user ends a program: of Ctrl-C, of a terminal that is closed, and of `kill`.
inline constexpr std::array<int, 3> kEndingSignals = {SIGINT, SIGHUP, SIGTERM};

/// Holds these signals back as long as it lives; one that came meanwhile arrives then.
class HeldSignals {
 public:
  HeldSignals();
  ~HeldSignals();
  HeldSignals(HeldSignals const&) = delete;
  HeldSignals& operator=(HeldSignals const&) = delete;

 private:
  sigset_t mBefore;
};

/// Has these signals remove a folder before they end the process. Not in a child of the process, and not where they
/// are ignored. One at a time; it must outlive the folder.
class SignalCleanup {
 public:
  /// What the folder holds now is removed; with more in it, it would stay.
  explicit SignalCleanup(std::string const& folder);
  ~SignalCleanup();
  SignalCleanup(SignalCleanup const&) = delete;
  SignalCleanup& operator=(SignalCleanup const&) = delete;

 private:
  static void RemoveAndEnd(int number);

  /// What is inside a folder stands before it: a handler may neither read folders nor take memory.
  std::vector<std::string> mPaths;
  pid_t mProcess;
  std::array<struct sigaction, kEndingSignals.size()> mBefore{};
};

}  // namespace senmark_tool
