// Blocks for a file that is about to grow.
#include "SK_OSFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <limits>

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
