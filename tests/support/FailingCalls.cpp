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
#include <filesystem>
#include <iterator>

namespace {

std::atomic<int> gFstatReason{0};
std::atomic<bool> gMunmapFails{false};

template <typename Function>
Function* NextDefinition(char const* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These stand before the definitions of the C library in the order of linking, and so take their calls.
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

namespace senmark_test {

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
