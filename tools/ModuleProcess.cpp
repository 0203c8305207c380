#include "ModuleProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <streambuf>
#include <system_error>
#include <utility>

#include "OwnProcess.h"
#include "SignalCleanup.h"

namespace senmark_tool {

namespace {

constexpr std::uint64_t kOutputSize = 65536;
constexpr std::uint64_t kTextSize = 4096;
/// How long the end of a process goes unnoticed at most if something that it started keeps its pipes open.
constexpr int kLookInterval = 50;  // milliseconds

// An address space full of shadow memory cannot be limited.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kCanLimitMemory = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool kCanLimitMemory = false;
#else
constexpr bool kCanLimitMemory = true;
#endif
#else
constexpr bool kCanLimitMemory = true;
#endif

[[noreturn]] void ThrowSystemError(char const* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : mFd(fd) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& other) noexcept : mFd(std::exchange(other.mFd, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(mFd, other.mFd);
    return *this;
  }

  int Get() const { return mFd; }
  void Close() {
    if (mFd != -1) {
      close(std::exchange(mFd, -1));
    }
  }

 private:
  int mFd;
};

/// A pipe from the child, and what has come out of it.
class Channel {
 public:
  explicit Channel(std::uint64_t capacity) : mCapacity(capacity) {
    int ends[2];
    if (pipe(ends) != 0) {
      ThrowSystemError("cannot make a pipe");
    }
    mReading = Descriptor(ends[0]);
    mWriting = Descriptor(ends[1]);
    for (int const fd : ends) {
      fcntl(fd, F_SETFD, FD_CLOEXEC);
    }
    // Written to by a process that may be anything, read by one that must not wait for it.
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
  }

  int ReadingEnd() const { return mReading.Get(); }
  int WritingEnd() const { return mWriting.Get(); }
  void CloseWritingEnd() { mWriting.Close(); }
  bool IsOpen() const { return mReading.Get() != -1; }
  std::string TakeText() { return std::move(mText); }

  /// Reads what is there. More than the capacity is read, too, so that the child does not wait, but not kept.
  void Drain() {
    std::array<char, 65536> block;
    while (IsOpen()) {
      ssize_t const size = read(mReading.Get(), block.data(), block.size());
      if (size > 0) {
        mText.append(block.data(), static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(size),
                                                                                    mCapacity - mText.size())));
      } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        mReading.Close();
      } else if (errno == EAGAIN) {
        return;
      }
    }
  }

 private:
  std::uint64_t mCapacity;
  Descriptor mReading;
  Descriptor mWriting;
  std::string mText;
};

void WriteAll(int fd, char const* data, std::size_t size) {
  while (size > 0) {
    ssize_t const written = write(fd, data, size);
    if (written < 0 && errno != EINTR) {
      return;  // the other side is gone, and the process goes with it
    }
    data += std::max<ssize_t>(written, 0);
    size -= static_cast<std::size_t>(std::max<ssize_t>(written, 0));
  }
}

/// Hands on every byte at once.
class PipeBuffer : public std::streambuf {
 public:
  explicit PipeBuffer(int fd) : mFd(fd) {}

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
      char const byte = traits_type::to_char_type(c);
      WriteAll(mFd, &byte, 1);
    }
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(char const* text, std::streamsize size) override {
    WriteAll(mFd, text, static_cast<std::size_t>(size));
    return size;
  }

 private:
  int mFd;
};

void Limit(decltype(RLIMIT_AS) resource, std::uint64_t soft, std::uint64_t hard) {
  rlimit limit;
  if (getrlimit(resource, &limit) != 0) {
    return;
  }
  // Never above what this process was given itself.
  limit.rlim_max = std::min<rlim_t>(limit.rlim_max, hard);
  limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, soft);
  setrlimit(resource, &limit);
}

void SetLimits(Limits const& limits) {
  auto const seconds = static_cast<std::uint64_t>(std::max<std::chrono::seconds::rep>(limits.processorTime.count(), 1));
  Limit(RLIMIT_CPU, seconds, seconds + 1);
  Limit(RLIMIT_FSIZE, limits.fileSize, limits.fileSize);
  Limit(RLIMIT_CORE, 0, 0);
  std::uint64_t const used = AddressSpaceInUse();
  if (kCanLimitMemory && used != 0) {
    Limit(RLIMIT_AS, used + limits.memory, used + limits.memory);
  }
}

/// Signals as a new program finds them: what this one catches or ignores is no affair of the work.
void ResetSignals() {
  for (int number = 1; number < NSIG; ++number) {
    signal(number, SIG_DFL);
  }
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

void Redirect(int outputEnd) {
  int const nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  close(nothing);
  dup2(outputEnd, STDOUT_FILENO);
  dup2(outputEnd, STDERR_FILENO);
}

/// What the child says of its end: one letter, and a text behind it. It says nothing if it did not get so far.
constexpr char kReturnedMark = 'R';
constexpr char kThrewMark = 'T';

[[noreturn]] void RunInChild(Limits const& limits, std::function<void(std::ostream& report)> const& work, pid_t parent,
                             int reportEnd, int outputEnd, int endEnd) {
  setpgid(0, 0);
  EndWithParent(parent);
  ResetSignals();
  Redirect(outputEnd);
  SetLimits(limits);
  std::string end;
  try {
    PipeBuffer buffer(reportEnd);
    std::ostream report(&buffer);
    work(report);
    end = kReturnedMark;
  } catch (std::exception const& error) {
    end = kThrewMark + std::string(error.what());
  } catch (...) {
    end = kThrewMark + std::string("something that is no std::exception");
  }
  std::cout.flush();
  std::fflush(nullptr);
  WriteAll(endEnd, end.data(), std::min<std::size_t>(end.size(), kTextSize));
  _exit(0);
}

/// A child, which is gone with all that it started when this object goes, or when a signal ends this process.
class Child {
 public:
  explicit Child(pid_t id) : mId(id), mCleanup(std::in_place, id) {}
  ~Child() {
    if (mId != -1) {
      End();
    }
  }
  Child(Child const&) = delete;
  Child& operator=(Child const&) = delete;

  /// Whether it has ended by itself. It is still there to be waited for, so that its number stands for it.
  bool HasEnded() const {
    siginfo_t info;
    info.si_pid = 0;
    return waitid(P_PID, static_cast<id_t>(mId), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == mId;
  }

  /// Ends it, and what is left of its group. Result: as `waitpid` tells it.
  int End() {
    HeldSignals const untilItIsGone;
    pid_t const id = std::exchange(mId, -1);
    kill(-id, SIGKILL);
    kill(id, SIGKILL);  // its group may not exist yet
    int status = 0;
    while (waitpid(id, &status, 0) == -1 && errno == EINTR) {
    }
    mCleanup.reset();
    return status;
  }

 private:
  pid_t mId;
  std::optional<SignalCleanup::Group> mCleanup;
};

using Channels = std::array<Channel, 3>;
enum eChannel : std::size_t { kReport, kOutput, kEnd };

/// Reads until the child has ended; false if its time was over before.
bool ReadToTheEnd(Channels& channels, Child const& child, std::chrono::milliseconds time) {
  using Clock = std::chrono::steady_clock;
  Clock::time_point const deadline = Clock::now() + time;
  while (!child.HasEnded()) {
    auto const left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) {
      return false;
    }
    std::array<pollfd, 3> waiting;
    std::size_t count = 0;
    for (Channel const& channel : channels) {
      if (channel.IsOpen()) {
        waiting[count++] = {channel.ReadingEnd(), POLLIN, 0};
      }
    }
    // With all pipes closed, the end is a matter of moments, or the process has closed what is not its own.
    int const interval = count == 0 ? 1 : kLookInterval;
    poll(waiting.data(), static_cast<nfds_t>(count), static_cast<int>(std::min<long long>(left, interval)));
    for (Channel& channel : channels) {
      channel.Drain();
    }
  }
  return true;
}

void SetEnd(ProcessEnd& end, int status, std::string const& said) {
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU) {
    end.kind = ProcessEnd::eKind::kTimedOut;
  } else if (WIFSIGNALED(status)) {
    end.kind = ProcessEnd::eKind::kSignal;
    end.number = WTERMSIG(status);
  } else if (said.empty()) {
    end.kind = ProcessEnd::eKind::kExited;
    end.number = WEXITSTATUS(status);
  } else if (said.front() == kThrewMark) {
    end.kind = ProcessEnd::eKind::kThrew;
    end.text = said.substr(1);
  }
}

}  // namespace

std::string ProcessEnd::Text() const {
  switch (kind) {
    case eKind::kReturned:
      return "ran to its end";
    case eKind::kThrew:
      return "threw an exception: " + text;
    case eKind::kExited:
      return "ended the process, with exit status " + std::to_string(number);
    case eKind::kSignal:
      return "died of signal " + std::to_string(number) + " (" + strsignal(number) + ')';
    case eKind::kTimedOut:
      return "did not end in time";
  }
  return std::string();
}

ProcessEnd RunLimited(Limits const& limits, std::function<void(std::ostream& report)> const& work) {
  Channels channels = {Channel(limits.reportSize), Channel(kOutputSize), Channel(kTextSize)};
  // Else the child would print once more what this process has not printed yet.
  std::cout.flush();
  std::fflush(nullptr);
  pid_t const parent = getpid();
  std::optional<HeldSignals> untilItIsKnown(std::in_place);
  pid_t const id = fork();
  if (id == -1) {
    ThrowSystemError("cannot make a process");
  }
  if (id == 0) {
    RunInChild(limits, work, parent, channels[kReport].WritingEnd(), channels[kOutput].WritingEnd(),
               channels[kEnd].WritingEnd());
  }
  Child child(id);
  untilItIsKnown.reset();
  setpgid(id, id);  // both sides do it, so that it is done before either goes on
  for (Channel& channel : channels) {
    channel.CloseWritingEnd();
  }
  ProcessEnd end;
  bool const hasEnded = ReadToTheEnd(channels, child, limits.time);
  int const status = child.End();
  for (Channel& channel : channels) {
    channel.Drain();
  }
  end.report = channels[kReport].TakeText();
  end.output = channels[kOutput].TakeText();
  SetEnd(end, status, channels[kEnd].TakeText());
  if (!hasEnded) {
    end.kind = ProcessEnd::eKind::kTimedOut;
  }
  return end;
}

}  // namespace senmark_tool
