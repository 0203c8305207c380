// Blocks for a file that is about to grow.
#include "SK_OSFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <limits>
#include <string>

#include "FailingCalls.h"
#include "SK_FileIO.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::uint64_t kSize = 1 << 20;

struct stat Status(int fd) {
  struct stat status = {};
  EXPECT_EQ(fstat(fd, &status), 0);
  return status;
}

/// Not every file system can, and where it cannot there is nothing to see.
bool CanReserve(senmark_test::TempFolder const& folder) {
  File_IO::Descriptor const file(File_IO::Open(folder.Write("probe", "").c_str(), false, false));
  return fallocate(file.Get(), FALLOC_FL_KEEP_SIZE, 0, 4096) == 0;
}

TEST(OSFile, BlocksAreSetAsideAndTheLengthStays) {
  senmark_test::TempFolder const folder;
  if (!CanReserve(folder)) {
    GTEST_SKIP();
  }
  File_IO::Descriptor const file(File_IO::Open(folder.Write("file", "").c_str(), false, false));
  ReserveFileBlocks(file.Get(), 0, kSize);
  EXPECT_EQ(Status(file.Get()).st_size, 0);
  EXPECT_GE(static_cast<std::uint64_t>(Status(file.Get()).st_blocks) * 512, kSize);
}

TEST(OSFile, BlocksBehindTheEndAreSetAside) {
  senmark_test::TempFolder const folder;
  if (!CanReserve(folder)) {
    GTEST_SKIP();
  }
  File_IO::Descriptor const file(File_IO::Open(folder.Write("file", std::string(kSize, 'x')).c_str(), false, false));
  ReserveFileBlocks(file.Get(), kSize, 3 * kSize);
  EXPECT_EQ(static_cast<std::uint64_t>(Status(file.Get()).st_size), kSize);
  EXPECT_GE(static_cast<std::uint64_t>(Status(file.Get()).st_blocks) * 512, 4 * kSize);
  File_IO::SetEOF(file.Get(), kSize);
  EXPECT_LT(static_cast<std::uint64_t>(Status(file.Get()).st_blocks) * 512, 2 * kSize) << "cutting gives them back";
}

volatile std::sig_atomic_t gSignals = 0;

/// Counts what would end the process.
class CountedSignal {
 public:
  CountedSignal() : mBefore(std::signal(SIGXFSZ, [](int) { gSignals = gSignals + 1; })) { gSignals = 0; }
  ~CountedSignal() { std::signal(SIGXFSZ, mBefore); }
  CountedSignal(CountedSignal const&) = delete;
  CountedSignal& operator=(CountedSignal const&) = delete;

 private:
  void (*mBefore)(int);
};

/// A file without a name, which goes when it is closed.
int OpenNameless(std::string pattern) {
  int const fd = mkstemp(pattern.data());
  std::filesystem::remove(pattern);
  return fd;
}

// A memory file system sends the signal for what a disk would do.
TEST(OSFile, NothingIsSetAsideBeyondTheLimitOfTheProcess) {
  senmark_test::TempFolder const folder;
  for (std::string const& place : {folder.Path(""), std::string("/dev/shm/")}) {
    File_IO::Descriptor const file(OpenNameless(place + "senmark_test_XXXXXX"));
    if (file.Get() == -1 || fallocate(file.Get(), FALLOC_FL_KEEP_SIZE, 0, 4096) != 0) {
      continue;
    }
    File_IO::SetEOF(file.Get(), 0);
    senmark_test::FileSizeLimit const limit(kSize);
    CountedSignal const signal;
    for (std::uint64_t const end : {std::uint64_t{0}, kSize / 2, kSize, 2 * kSize}) {
      ReserveFileBlocks(file.Get(), end, kSize - end / 2 + 1);
      EXPECT_EQ(Status(file.Get()).st_blocks, 0) << place << ' ' << end;
    }
    EXPECT_EQ(gSignals, 0) << place;
    ReserveFileBlocks(file.Get(), kSize / 2, kSize / 2);
    EXPECT_GE(static_cast<std::uint64_t>(Status(file.Get()).st_blocks) * 512, kSize / 2) << place;
  }
}

TEST(OSFile, WhatTheSystemRefusesChangesNothing) {
  senmark_test::TempFolder const folder;
  std::string const path = folder.Write("file", "text");
  {
    File_IO::Descriptor const readOnly(File_IO::Open(path.c_str(), true, false));
    auto const blocks = Status(readOnly.Get()).st_blocks;
    ReserveFileBlocks(readOnly.Get(), 4, kSize);
    EXPECT_EQ(Status(readOnly.Get()).st_blocks, blocks);
  }
  File_IO::Descriptor const file(File_IO::Open(path.c_str(), false, false));
  auto const blocks = Status(file.Get()).st_blocks;
  for (std::uint64_t const size :
       {std::uint64_t{0}, std::uint64_t{1} << 63U, std::numeric_limits<std::uint64_t>::max()}) {
    ReserveFileBlocks(file.Get(), 4, size);
    EXPECT_EQ(Status(file.Get()).st_blocks, blocks) << size;
    if (size != 0) {
      ReserveFileBlocks(file.Get(), size, 1);
      EXPECT_EQ(Status(file.Get()).st_blocks, blocks) << size;
    }
  }
  ReserveFileBlocks(-1, 0, kSize);
  EXPECT_EQ(folder.Read(path), "text");
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
