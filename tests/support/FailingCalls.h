/// Faults on purpose: calls of the system that fail when a test wants them to, limits that make them fail,
/// and a look at what stayed open. Linux only, like the way in which the calls are replaced.
#pragma once

#include <sys/resource.h>
#include <sys/types.h>

#include <csignal>
#include <cstddef>
#include <string>

namespace senmark_test {

/// Makes every `fstat` of the process fail with this `errno` for as long as it lives.
class FailingFstat {
 public:
  explicit FailingFstat(int reason);
  ~FailingFstat();
  FailingFstat(FailingFstat const&) = delete;
  FailingFstat& operator=(FailingFstat const&) = delete;
};

/// Makes every `munmap` of the process fail for as long as it lives.
class FailingMunmap {
 public:
  FailingMunmap();
  ~FailingMunmap();
  FailingMunmap(FailingMunmap const&) = delete;
  FailingMunmap& operator=(FailingMunmap const&) = delete;
};

/// The calls that `FailingCall` takes.
enum eCall : std::size_t { kOpen, kMkostemp, kWrite, kFtruncate, kClose, kMmap, kCalls };

/// Makes one of these calls fail with this `errno` in the whole process for as long as it lives, after `passed`
/// calls that go through. A failing `close` closes, as the system's does. At most one of each call at a time.
class FailingCall {
 public:
  FailingCall(eCall call, int reason, int passed = 0);
  ~FailingCall();
  FailingCall(FailingCall const&) = delete;
  FailingCall& operator=(FailingCall const&) = delete;

 private:
  eCall mCall;
};

/// No file of the process can grow beyond `limit` bytes for as long as it lives: a write across the limit
/// is cut there, and one behind it fails. Says nothing on standard output while it lives, for that may be
/// a file.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t limit);
  ~FileSizeLimit();
  FileSizeLimit(FileSizeLimit const&) = delete;
  FileSizeLimit& operator=(FileSizeLimit const&) = delete;

 private:
  rlimit mBefore;
  void (*mHandler)(int);
};

/// Takes a superuser's rights away for as long as it lives; any other user has none to lose.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(OrdinaryUser const&) = delete;
  OrdinaryUser& operator=(OrdinaryUser const&) = delete;

 private:
  uid_t mBefore;
};

/// Keeps an environment variable and puts it back at the end.
class KeptVariable {
 public:
  explicit KeptVariable(char const* name);
  ~KeptVariable();
  KeptVariable(KeptVariable const&) = delete;
  KeptVariable& operator=(KeptVariable const&) = delete;

  void Set(std::string const& value) const;
  void Unset() const;

 private:
  char const* mName;
  bool mWasSet;
  std::string mValue;
};

std::size_t CountOpenDescriptors();
bool IsOpen(int fd);

}  // namespace senmark_test
