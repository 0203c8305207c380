#include "SK_TempFileHandler.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::FileSizeLimit;
using senmark_test::KeptVariable;
using SK_NAMESPACE_INT::SK_TempFileHandler;

static_assert(std::is_nothrow_destructible_v<SK_TempFileHandler> && !std::is_polymorphic_v<SK_TempFileHandler>);

constexpr std::uint64_t kNoMapping = 0xFFFFFFFFFFFFFFFFu;

// The folder for temporary files must be empty at the end, and nothing may stay open.
class TempFileHandler : public testing::Test {
 protected:
  void SetUp() override { mOpenBefore = CountOpenDescriptors(); }
  void TearDown() override { EXPECT_EQ(CountOpenDescriptors(), mOpenBefore); }

  // Path of the one file in the folder for temporary files.
  std::string ScratchFile() const {
    std::vector<std::string> paths;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.TempPath())) {
      paths.push_back(entry.path().string());
    }
    EXPECT_EQ(paths.size(), 1u);
    return paths.empty() ? std::string() : paths.front();
  }
  // Bytes that the scratch file takes on the disk.
  std::uint64_t ScratchBytesOnDisk() const {
    struct stat status = {};
    EXPECT_EQ(stat(ScratchFile().c_str(), &status), 0);
    return static_cast<std::uint64_t>(status.st_blocks) * 512;
  }

  senmark_test::TempFolder mFolder;
  std::size_t mOpenBefore = 0;
};

std::string Mapped(SK_TempFileHandler const& handler) {
  return std::string(handler.GetTempFileMappingAddress(), handler.GetTempFileSize());
}

void ExpectNamed(std::string const& path, std::string const& prefix) {
  EXPECT_EQ(path.substr(0, prefix.size()), prefix);
  EXPECT_EQ(path.size(), prefix.size() + 6);
}

TEST_F(TempFileHandler, NameIsThatOfTheInputAndSixCharacters) {
  SK_TempFileHandler const first("c.tdjson");
  ExpectNamed(ScratchFile(), mFolder.TempPath() + "c.tdjson");
  EXPECT_EQ(fs::status(ScratchFile()).permissions(), fs::perms(0600));
}

TEST_F(TempFileHandler, TwoOfOneNameHaveTwoFiles) {
  SK_TempFileHandler first("c.tdjson");
  SK_TempFileHandler second("c.tdjson");
  EXPECT_TRUE(first.WriteToTempFile("one", 3, true));
  EXPECT_TRUE(second.WriteToTempFile("two", 3, true));
  first.CreateTempFileMapping();
  second.CreateTempFileMapping();
  EXPECT_EQ(Mapped(first), "one");
  EXPECT_EQ(Mapped(second), "two");
}

TEST_F(TempFileHandler, FolderWithoutSeparatorBecomesPartOfTheName) {
  KeptVariable const temp("TEMP");
  temp.Set(mFolder.TempPath() + "b");
  SK_TempFileHandler const handler("c.tdjson");
  ExpectNamed(ScratchFile(), mFolder.TempPath() + "bc.tdjson");
}

TEST_F(TempFileHandler, FirstVariableThatIsSetGivesTheFolder) {
  KeptVariable const temp("TEMP");
  KeptVariable const tmp("TMP");
  KeptVariable const tmpdir("TMPDIR");
  temp.Set(mFolder.TempPath() + "temp_");
  tmp.Set(mFolder.TempPath() + "tmp_");
  tmpdir.Set(mFolder.TempPath() + "tmpdir_");
  {
    SK_TempFileHandler const handler("x");
    ExpectNamed(ScratchFile(), mFolder.TempPath() + "temp_x");
  }
  temp.Unset();
  {
    SK_TempFileHandler const handler("x");
    ExpectNamed(ScratchFile(), mFolder.TempPath() + "tmp_x");
  }
  tmp.Unset();
  {
    SK_TempFileHandler const handler("x");
    ExpectNamed(ScratchFile(), mFolder.TempPath() + "tmpdir_x");
  }
}

std::vector<std::string> NamesInTmp(std::string const& prefix) {
  std::vector<std::string> names;
  for (fs::directory_entry const& entry : fs::directory_iterator("/tmp/")) {
    std::string const name = entry.path().filename().string();
    if (name.compare(0, prefix.size(), prefix) == 0) {
      names.push_back(name);
    }
  }
  return names;
}

TEST_F(TempFileHandler, WithoutVariablesTheFileLiesInTmp) {
  KeptVariable const temp("TEMP");
  KeptVariable const tmp("TMP");
  KeptVariable const tmpdir("TMPDIR");
  temp.Unset();
  tmp.Unset();
  tmpdir.Unset();
  std::string const name = "senmark_scratch_of_" + std::to_string(getpid()) + "_";
  {
    SK_TempFileHandler const handler(name);
    ASSERT_EQ(NamesInTmp(name).size(), 1u);
    EXPECT_EQ(NamesInTmp(name).front().size(), name.size() + 6);
  }
  EXPECT_TRUE(NamesInTmp(name).empty());
}

TEST_F(TempFileHandler, FileThatCannotBeMadeIsCode15) {
  KeptVariable const temp("TEMP");
  temp.Set(mFolder.Path("absent/"));
  ExpectError([] { SK_TempFileHandler("c.tdjson"); }, 15, "Unable to open temporary file.");
}

TEST_F(TempFileHandler, ChunksFollowEachOther) {
  SK_TempFileHandler handler("x");
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, false));
  EXPECT_TRUE(handler.WriteToTempFile("", 0, false));
  EXPECT_TRUE(handler.WriteToTempFile("de", 2, false));
  EXPECT_TRUE(handler.WriteToTempFile("f", 1, true));
  EXPECT_TRUE(handler.CreateTempFileMapping());
  EXPECT_EQ(Mapped(handler), "abcdef");
}

TEST_F(TempFileHandler, LastChunkClosesTheFile) {
  auto handler = std::make_unique<SK_TempFileHandler>("x");
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore + 1);
  EXPECT_TRUE(handler->WriteToTempFile("abc", 3, false));
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore + 1);
  EXPECT_TRUE(handler->WriteToTempFile("", 0, true));
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  // The next one to open takes over the number, and must not lose its file to the handler.
  int const fd = open("/dev/null", O_RDONLY);
  handler.reset();
  EXPECT_TRUE(senmark_test::IsOpen(fd));
  EXPECT_EQ(mFolder.TempNames(), "");
  close(fd);
}

TEST_F(TempFileHandler, UnfinishedFileIsClosedAndRemoved) {
  {
    SK_TempFileHandler handler("x");
    EXPECT_TRUE(handler.WriteToTempFile("abc", 3, false));
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(TempFileHandler, FileThatIsGoneAlreadyIsNoFailure) {
  SK_TempFileHandler const handler("x");
  fs::remove(ScratchFile());
}

TEST_F(TempFileHandler, WithoutMappingTheAccessorsSaySo) {
  SK_TempFileHandler handler("x");
  EXPECT_EQ(handler.GetTempFileMappingAddress(), nullptr);
  EXPECT_EQ(handler.GetTempFileSize(), kNoMapping);
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, true));
  EXPECT_EQ(handler.GetTempFileMappingAddress(), nullptr);
  EXPECT_EQ(handler.GetTempFileSize(), kNoMapping);
}

TEST_F(TempFileHandler, EmptyFileFailsLikeAnEmptyInput) {
  SK_TempFileHandler handler("x");
  EXPECT_TRUE(handler.WriteToTempFile("", 0, true));
  ExpectError([&] { handler.CreateTempFileMapping(); }, 54, "Empty Input file.");
  EXPECT_EQ(handler.GetTempFileMappingAddress(), nullptr);
  EXPECT_EQ(handler.GetTempFileSize(), kNoMapping);
}

TEST_F(TempFileHandler, MappingTellsWhyItFailed) {
  SK_TempFileHandler handler("x");
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, true));
  std::string const path = ScratchFile();
  fs::remove(path);
  ExpectError([&] { handler.CreateTempFileMapping(); }, 6, "Unable to open input file:" + path + ".");
}

TEST_F(TempFileHandler, SecondMappingReplacesTheFirst) {
  SK_TempFileHandler handler("x");
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, false));
  handler.CreateTempFileMapping();
  EXPECT_EQ(Mapped(handler), "abc");
  EXPECT_TRUE(handler.WriteToTempFile("def", 3, true));
  handler.CreateTempFileMapping();
  EXPECT_EQ(Mapped(handler), "abcdef");
}

TEST_F(TempFileHandler, ShortWriteIsFalseAndLeavesTheFileOpen) {
  SK_TempFileHandler handler("x");
  bool first = false;
  bool second = true;
  bool third = true;
  {
    FileSizeLimit const limit(5);
    first = handler.WriteToTempFile("abc", 3, false);
    second = handler.WriteToTempFile("defg", 4, true);
    third = handler.WriteToTempFile("h", 1, true);
  }
  EXPECT_TRUE(first);
  EXPECT_FALSE(second);
  EXPECT_FALSE(third);
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore + 1);
}

TEST_F(TempFileHandler, WriteToAClosedFileIsFalse) {
  SK_TempFileHandler handler("x");
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, true));
  EXPECT_FALSE(handler.WriteToTempFile("d", 1, false));
}

constexpr std::uint64_t kReserved = 1 << 20;

bool FolderCanReserve(std::string const& folder) {
  std::string path = folder + "probeXXXXXX";
  int const fd = mkstemp(path.data());
  bool const can = fallocate(fd, FALLOC_FL_KEEP_SIZE, 0, kReserved) == 0;
  close(fd);
  unlink(path.c_str());
  return can;
}

TEST_F(TempFileHandler, ReservationTakesBlocksAndNoLength) {
  if (!FolderCanReserve(mFolder.TempPath())) {
    GTEST_SKIP() << "this file system reserves nothing";
  }
  SK_TempFileHandler handler("x");
  handler.Reserve(kReserved);
  EXPECT_GE(ScratchBytesOnDisk(), kReserved);
  EXPECT_EQ(fs::file_size(ScratchFile()), 0u);
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, false));
  EXPECT_EQ(fs::file_size(ScratchFile()), 3u);
  EXPECT_GE(ScratchBytesOnDisk(), kReserved);
}

TEST_F(TempFileHandler, LastChunkGivesBackWhatWasReserved) {
  SK_TempFileHandler handler("x");
  handler.Reserve(kReserved);
  EXPECT_TRUE(handler.WriteToTempFile("abc", 3, false));
  EXPECT_TRUE(handler.WriteToTempFile("def", 3, true));
  EXPECT_LT(ScratchBytesOnDisk(), kReserved / 2);
  handler.CreateTempFileMapping();
  EXPECT_EQ(Mapped(handler), "abcdef");
}

TEST_F(TempFileHandler, MoreThanWasReservedCanBeWritten) {
  SK_TempFileHandler handler("x");
  handler.Reserve(4096);
  std::string const chunk(10000, 'x');
  EXPECT_TRUE(handler.WriteToTempFile(chunk.data(), chunk.size(), false));
  EXPECT_TRUE(handler.WriteToTempFile("end", 3, true));
  handler.CreateTempFileMapping();
  EXPECT_TRUE(Mapped(handler) == chunk + "end");
}

TEST_F(TempFileHandler, ReservationThatFailsIsNoError) {
  constexpr std::uint64_t kLargestOffset = std::numeric_limits<std::int64_t>::max();
  for (std::uint64_t const size : {std::uint64_t{0}, kLargestOffset, kLargestOffset + 1, kNoMapping}) {
    SK_TempFileHandler handler("x");
    handler.Reserve(size);
    EXPECT_TRUE(handler.WriteToTempFile("abc", 3, true)) << size;
    handler.CreateTempFileMapping();
    EXPECT_EQ(Mapped(handler), "abc") << size;
  }
}

}  // namespace
