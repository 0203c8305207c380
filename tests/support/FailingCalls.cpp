#include "FailingCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <filesystem>
#include <iterator>

namespace {

std::atomic<int> gFstatReason{0};
std::atomic<bool> gMunmapFails{false};

struct CallState {
  std::atomic<int> reason{0};   // 0: the call goes through
  std::atomic<int> passed{0};   // calls still to go through
  std::atomic<int> failing{0};  // calls still to fail behind them
  std::atomic<bool> failed{false};
};
CallState gCallStates[senmark_test::kCalls];

// Sets `errno` if the call is to fail.
bool FailsNow(senmark_test::eCall call) {
  CallState& state = gCallStates[call];
  int const reason = state.reason;
  if (reason == 0 || state.passed-- > 0 || state.failing-- <= 0) {
    return false;
  }
  state.failed = true;
  errno = reason;
  return true;
}

template <typename Function>
Function* NextDefinition(char const* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These stand before the definitions of the C library in the order of linking, and so take their calls; those of the
// shared library too, for which they must be visible.
#pragma GCC visibility push(default)

extern "C" int fstat(int fd, struct stat* status) noexcept {
  if (int const reason = gFstatReason) {
    errno = reason;
    return -1;
  }
  static auto* const next = NextDefinition<int(int, struct stat*)>("fstat");
  return next(fd, status);
}

extern "C" int munmap(void* address, std::size_t size) noexcept {
  if (gMunmapFails) {
    errno = EINVAL;
    return -1;
  }
  static auto* const next = NextDefinition<int(void*, std::size_t)>("munmap");
  return next(address, size);
}

extern "C" int open(char const* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  mode_t const mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  static auto* const next = NextDefinition<int(char const*, int, ...)>("open");
  return FailsNow(senmark_test::kOpen) ? -1 : next(path, flags, mode);
}

extern "C" int mkostemp(char* path, int flags) {
  static auto* const next = NextDefinition<int(char*, int)>("mkostemp");
  return FailsNow(senmark_test::kMkostemp) ? -1 : next(path, flags);
}

extern "C" ssize_t write(int fd, void const* buffer, std::size_t size) {
  static auto* const next = NextDefinition<ssize_t(int, void const*, std::size_t)>("write");
  return FailsNow(senmark_test::kWrite) ? -1 : next(fd, buffer, size);
}

extern "C" int ftruncate(int fd, off_t length) noexcept {
  static auto* const next = NextDefinition<int(int, off_t)>("ftruncate");
  return FailsNow(senmark_test::kFtruncate) ? -1 : next(fd, length);
}

extern "C" int close(int fd) {
  static auto* const next = NextDefinition<int(int)>("close");
  int const result = next(fd);
  return FailsNow(senmark_test::kClose) ? -1 : result;
}

extern "C" void* mmap(void* address, std::size_t size, int protection, int flags, int fd, off_t offset) noexcept {
  static auto* const next = NextDefinition<void*(void*, std::size_t, int, int, int, off_t)>("mmap");
  return FailsNow(senmark_test::kMmap) ? MAP_FAILED : next(address, size, protection, flags, fd, offset);
}

extern "C" off_t lseek(int fd, off_t offset, int whence) noexcept {
  static auto* const next = NextDefinition<off_t(int, off_t, int)>("lseek");
  return FailsNow(senmark_test::kLseek) ? -1 : next(fd, offset, whence);
}

#pragma GCC visibility pop

namespace senmark_test {

FailingCall::FailingCall(eCall call, int reason, int passed, int failing) : mCall(call) {
  CallState& state = gCallStates[call];
  state.passed = passed;
  state.failing = failing;
  state.failed = false;
  state.reason = reason;
}

FailingCall::~FailingCall() {
  gCallStates[mCall].reason = 0;
}

bool FailingCall::HasFailed() const {
  return gCallStates[mCall].failed;
}

FailingFstat::FailingFstat(int reason) {
  gFstatReason = reason;
}

FailingFstat::~FailingFstat() {
  gFstatReason = 0;
}

FailingMunmap::FailingMunmap() {
  gMunmapFails = true;
}

FailingMunmap::~FailingMunmap() {
  gMunmapFails = false;
}

FileSizeLimit::FileSizeLimit(rlim_t limit) : mBefore(), mHandler(std::signal(SIGXFSZ, SIG_IGN)) {
  EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &mBefore), 0);
  rlimit lowered = mBefore;
  lowered.rlim_cur = limit;
  EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &lowered), 0);
}

FileSizeLimit::~FileSizeLimit() {
  EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &mBefore), 0);
  std::signal(SIGXFSZ, mHandler);
}

OrdinaryUser::OrdinaryUser() : mBefore(geteuid()) {
  constexpr uid_t kNobody = 65534;
  if (mBefore == 0) {
    EXPECT_EQ(seteuid(kNobody), 0);
  }
}

OrdinaryUser::~OrdinaryUser() {
  if (mBefore == 0) {
    EXPECT_EQ(seteuid(mBefore), 0);
  }
}

KeptVariable::KeptVariable(char const* name) : mName(name), mWasSet(getenv(name) != nullptr) {
  if (mWasSet) {
    mValue = getenv(name);
  }
}

KeptVariable::~KeptVariable() {
  if (mWasSet) {
    Set(mValue);
  } else {
    Unset();
  }
}

void KeptVariable::Set(std::string const& value) const {
  setenv(mName, value.c_str(), 1);
}

void KeptVariable::Unset() const {
  unsetenv(mName);
}

std::size_t CountOpenDescriptors() {
  namespace fs = std::filesystem;
  return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

bool IsOpen(int fd) {
  return fcntl(fd, F_GETFD) != -1;
}

}  // namespace senmark_test
