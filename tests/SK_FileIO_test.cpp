#include "SK_FileIO.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::FailingFstat;
using senmark_test::FileSizeLimit;
using senmark_test::IsOpen;
using senmark_test::KeptVariable;
using senmark_test::OrdinaryUser;

// Nothing may stay open, whatever a test makes fail.
class FileIO : public testing::Test {
 protected:
  void SetUp() override { mOpenBefore = CountOpenDescriptors(); }
  void TearDown() override { EXPECT_EQ(CountOpenDescriptors(), mOpenBefore); }

  std::string Path(std::string const& name) const { return mFolder.Path(name); }
  std::string Write(std::string const& name, std::string const& content) const { return mFolder.Write(name, content); }
  std::string Read(std::string const& path) const { return mFolder.Read(path); }
  std::string MakeFolder(std::string const& name) const {
    fs::create_directory(Path(name));
    return Path(name);
  }
  std::string MakePipe(std::string const& name) const {
    EXPECT_EQ(mkfifo(Path(name).c_str(), 0600), 0);
    return Path(name);
  }
  std::string MakeLink(std::string const& target, std::string const& name) const {
    fs::create_symlink(target, Path(name));
    return Path(name);
  }
  // Makes the test's own folder one that any user can look into, as far as it is not so by itself.
  void ShowFolder() const { fs::permissions(Path(""), fs::perms(0755)); }

  senmark_test::TempFolder mFolder;
  std::size_t mOpenBefore = 0;
};

TEST_F(FileIO, KindFollowsLinks) {
  std::string const file = Write("file", "x");
  std::string const folder = MakeFolder("folder");
  struct {
    std::string path;
    int kind;
  } const rows[] = {{file, 1},
                    {folder, 2},
                    {MakePipe("pipe"), 3},
                    {"/dev/null", 3},
                    {Path("absent"), 0},
                    {file + "/below", 0},
                    {MakeLink(file, "to_file"), 1},
                    {MakeLink(folder, "to_folder"), 2},
                    {MakeLink(Path("absent"), "dangling"), 0},
                    {"", 0}};
  for (auto const& row : rows) {
    EXPECT_EQ(File_IO::GetFileMode(row.path), row.kind) << row.path;
    EXPECT_EQ(File_IO::GetFileMode(row.path.c_str()), row.kind) << row.path;
    EXPECT_EQ(File_IO::Exists(row.path.c_str()), row.kind != 0) << row.path;
  }
}

TEST_F(FileIO, CreateMakesAnEmptyFile) {
  EXPECT_TRUE(File_IO::Create(Path("new").c_str(), false, false));
  EXPECT_EQ(Read(Path("new")), "");
  mode_t const mask = umask(0);
  EXPECT_TRUE(File_IO::Create(Path("open_to_all").c_str(), true, true));
  umask(mask);
  EXPECT_EQ(fs::status(Path("open_to_all")).permissions(), fs::perms(0644));
}

TEST_F(FileIO, CreateWithoutOverwriteLeavesAnExistingFile) {
  std::string const path = Write("file", "content");
  EXPECT_FALSE(File_IO::Create(path.c_str(), false, false));
  EXPECT_FALSE(File_IO::Create(path.c_str(), false, true));
  EXPECT_EQ(Read(path), "content");
}

TEST_F(FileIO, CreateWithOverwriteEmptiesAnExistingFile) {
  for (bool const append : {false, true}) {
    std::string const path = Write("file", "content");
    EXPECT_TRUE(File_IO::Create(path.c_str(), true, append));
    EXPECT_EQ(Read(path), "");
  }
}

TEST_F(FileIO, CreateRefusesWhatIsNoFile) {
  std::string const folder = MakeFolder("folder");
  std::string const pipe = MakePipe("pipe");
  for (std::string const& path : {folder, pipe}) {
    ExpectError([&] { File_IO::Create(path.c_str(), false, false); }, 4,
                "File_IO::Create, path exists but is not a file.");
  }
  ExpectError([&] { File_IO::Create(folder.c_str(), true, false); }, 7, "File_IO::Create, Cannot create file.");
  ExpectError([&] { File_IO::Create(Path("absent/new").c_str(), false, false); }, 7,
              "File_IO::Create, Cannot create file.");
  // The name is taken, though nothing is behind it.
  std::string const dangling = MakeLink(Path("absent"), "dangling");
  ExpectError([&] { File_IO::Create(dangling.c_str(), false, false); }, 7, "File_IO::Create, Cannot create file.");
}

TEST_F(FileIO, DeleteGoesByKind) {
  std::string const file = Write("file", "x");
  std::string const folder = MakeFolder("folder");
  std::string const pipe = MakePipe("pipe");
  std::string const link = MakeLink(file, "link");
  File_IO::Delete(link.c_str());
  EXPECT_TRUE(fs::exists(file));
  for (std::string const& path : {file, folder, pipe}) {
    File_IO::Delete(path.c_str());
    EXPECT_FALSE(fs::exists(path)) << path;
  }
}

TEST_F(FileIO, DeleteReportsWhatItCouldNotRemove) {
  ExpectError([&] { File_IO::Delete(Path("absent").c_str()); }, 9, "File_IO::Delete, failure.");
  std::string const folder = MakeFolder("folder");
  std::string const inside = Write("folder/inside", "x");
  ExpectError([&] { File_IO::Delete(folder.c_str()); }, 18, "File_IO::Delete, rmdir failure.");
  fs::permissions(folder, fs::perms(0555));
  ShowFolder();
  {
    OrdinaryUser const user;
    ExpectError([&] { File_IO::Delete(inside.c_str()); }, 9, "File_IO::Delete, unlink failure.");
  }
  EXPECT_TRUE(fs::exists(inside));
  fs::permissions(folder, fs::perms(0755));
}

TEST_F(FileIO, OpenGivesADescriptorOfTheWantedKind) {
  std::string const path = Write("file", "abc");
  int const reader = File_IO::Open(path.c_str(), true, false);
  int const writer = File_IO::Open(path.c_str(), false, false);
  int const appender = File_IO::Open(path.c_str(), false, true);
  EXPECT_EQ(fcntl(reader, F_GETFL) & (O_ACCMODE | O_APPEND), O_RDONLY);
  EXPECT_EQ(fcntl(writer, F_GETFL) & (O_ACCMODE | O_APPEND), O_RDWR);
  EXPECT_EQ(fcntl(appender, F_GETFL) & (O_ACCMODE | O_APPEND), O_RDWR | O_APPEND);
  File_IO::Write(writer, "X", 1);
  File_IO::Write(appender, "end", 3);
  EXPECT_EQ(Read(path), "Xbcend");
  for (int const fd : {reader, writer, appender}) {
    File_IO::Close(fd);
    EXPECT_FALSE(IsOpen(fd));
  }
}

TEST_F(FileIO, OpenMakesNoFile) {
  for (bool const readOnly : {true, false}) {
    ExpectError([&] { File_IO::Open(Path("absent").c_str(), readOnly, false); }, 6, "File_IO::Open, failure.");
    EXPECT_FALSE(fs::exists(Path("absent")));
  }
  ExpectError([&] { File_IO::Open(MakeFolder("folder").c_str(), false, false); }, 6, "File_IO::Open, failure.");
}

TEST_F(FileIO, OpenWithoutPermissionIsCode13) {
  std::string const path = Write("file", "x");
  fs::permissions(path, fs::perms::none);
  ShowFolder();
  OrdinaryUser const user;
  ExpectError([&] { File_IO::Open(path.c_str(), true, false); }, 13, "File_IO::Open, file permission error");
  ExpectError([&] { File_IO::Open(path.c_str(), false, false); }, 13, "File_IO::Open, file permission error");
}

TEST_F(FileIO, OpenForWritingAsksForTheOwnersWriteBit) {
  std::string const path = Write("file", "x");
  // The first of these may well be opened by a superuser; the bit decides all the same.
  for (unsigned const mode : {0444u, 0466u, 0577u}) {
    fs::permissions(path, fs::perms(mode));
    ExpectError([&] { File_IO::Open(path.c_str(), false, false); }, 13, "File_IO::Open, file permission error");
    int const reader = File_IO::Open(path.c_str(), true, false);
    File_IO::Close(reader);
  }
  fs::permissions(path, fs::perms(0600));
  File_IO::Close(File_IO::Open(path.c_str(), false, false));
}

TEST_F(FileIO, OpenReportsAStatusThatCannotBeRead) {
  std::string const path = Write("file", "x");
  FailingFstat const failing(EIO);
  ExpectError([&] { File_IO::Open(path.c_str(), false, false); }, 6, "File_IO::Open, fstat failure.");
  // Reading needs no status.
  File_IO::Close(File_IO::Open(path.c_str(), true, false));
}

TEST_F(FileIO, CloseIgnoresOnlyMinusOne) {
  File_IO::Close(-1);
  int const fd = File_IO::Open("/dev/null", true, false);
  File_IO::Close(fd);
  ExpectError([&] { File_IO::Close(fd); }, 8, "File_IO::Close, Cannot close file.");
  ExpectError([&] { File_IO::Close(-2); }, 8, "File_IO::Close, Cannot close file.");
}

TEST_F(FileIO, SeekMovesFromEachPlace) {
  int const fd = File_IO::Open(Write("file", "0123456789").c_str(), false, false);
  EXPECT_EQ(File_IO::Offset(fd), 0);
  EXPECT_EQ(File_IO::Seek(fd, 4, File_IO::kSeekFromStart), 4);
  EXPECT_EQ(File_IO::Seek(fd, -1, File_IO::kSeekFromCurrent), 3);
  EXPECT_EQ(File_IO::Offset(fd), 3);
  EXPECT_EQ(File_IO::Seek(fd, -2, File_IO::kSeekFromEnd), 8);
  EXPECT_EQ(File_IO::Seek(fd, 5000000000, File_IO::kSeekFromStart), 5000000000);
  EXPECT_EQ(File_IO::Offset(fd), 5000000000);
  File_IO::Close(fd);
}

TEST_F(FileIO, SeekRefusesAModeBeforeItLooksAtTheFile) {
  for (int const mode : {-1, 3, 4}) {
    ExpectError([&] { File_IO::Seek(-1, 0, static_cast<File_IO::SeekMode>(mode)); }, 10,
                "File_IO::Seek, Invalid Seek mode.");
  }
  ExpectError([] { File_IO::Seek(-1, 0, File_IO::kSeekFromStart); }, 10, "File_IO::Seek, lseek failure.");
  ExpectError([] { File_IO::Offset(-1); }, 10, "File_IO::Seek, lseek failure.");
  int const fd = File_IO::Open(Write("file", "x").c_str(), true, false);
  ExpectError([&] { File_IO::Seek(fd, -1, File_IO::kSeekFromStart); }, 10, "File_IO::Seek, lseek failure.");
  File_IO::Close(fd);
}

TEST_F(FileIO, SetEOFCutsAndExtends) {
  std::string const path = Write("file", "0123456789");
  int const fd = File_IO::Open(path.c_str(), false, false);
  File_IO::SetEOF(fd, 4);
  EXPECT_EQ(Read(path), "0123");
  File_IO::SetEOF(fd, 6);
  EXPECT_EQ(Read(path), std::string("0123\0\0", 6));
  ExpectError([&] { File_IO::SetEOF(fd, -1); }, 10, "File_IO::SetEOF, ftruncate failure.");
  ExpectError([] { File_IO::SetEOF(-1, 0); }, 10, "File_IO::SetEOF, ftruncate failure.");
  File_IO::Close(fd);
}

TEST_F(FileIO, ReadGivesWhatIsThere) {
  int const fd = File_IO::Open(Write("file", "abcde").c_str(), true, false);
  char buffer[8] = {};
  EXPECT_EQ(File_IO::Read(fd, buffer, 3), 3u);
  EXPECT_EQ(std::string(buffer), "abc");
  EXPECT_EQ(File_IO::Read(fd, buffer, 8), 2u);
  EXPECT_EQ(File_IO::Read(fd, buffer, 8), 0u);
  EXPECT_EQ(File_IO::Read(fd, buffer, 0), 0u);
  File_IO::Close(fd);
  ExpectError([&] { File_IO::Read(fd, buffer, 1); }, 11, "File_IO::Read, read failure.");
}

// Two gigabytes of addresses with nothing behind them yet.
class LargeRange {
 public:
  LargeRange() : mStart(mmap(nullptr, kSize, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {
    EXPECT_NE(mStart, MAP_FAILED);
  }
  ~LargeRange() { munmap(mStart, kSize); }
  LargeRange(LargeRange const&) = delete;
  LargeRange& operator=(LargeRange const&) = delete;

  void* Get() const { return mStart; }

 private:
  static constexpr std::size_t kSize = std::size_t{1} << 31;
  void* mStart;
};

TEST_F(FileIO, ReadRefusesTwoGigabytes) {
  LargeRange const range;
  int const fd = File_IO::Open("/dev/null", true, false);
  EXPECT_EQ(File_IO::Read(fd, range.Get(), 2147483647u), 0u);
  for (unsigned const count : {2147483648u, 2147483649u, 4294967295u}) {
    ExpectError([&] { File_IO::Read(fd, range.Get(), count); }, 11, "File_IO::Read, request too large.");
  }
  File_IO::Close(fd);
}

TEST_F(FileIO, WriteRefusesTwoGigabytesUnderTheOtherName) {
  LargeRange const range;
  int const fd = File_IO::Open("/dev/null", false, false);
  // The device takes bytes without looking at them. The system hands it no more than these at once, and so
  // the next request is cut.
  File_IO::Write(fd, range.Get(), 0x7FFFF000u);
  ExpectError([&] { File_IO::Write(fd, range.Get(), 2147483647u); }, 55, "File_IO::Write,WriteFile failure.");
  for (unsigned const count : {2147483648u, 2147483649u, 4294967295u}) {
    ExpectError([&] { File_IO::Write(fd, range.Get(), count); }, 55, "File_IO::Read, request too large.");
  }
  File_IO::Close(fd);
}

TEST_F(FileIO, WriteToAFullDiskHasTheCodeOfExhaustedMemory) {
  int const fd = File_IO::Open("/dev/full", false, false);
  ExpectError([&] { File_IO::Write(fd, "abc", 3); }, 34, "File_IO::Write, Disk Full.");
  File_IO::Close(fd);
  errno = ENOSPC;  // left from before, and not the reason of the next failure
  ExpectError([&] { File_IO::Write(fd, "abc", 3); }, 55, "File_IO::Write,WriteFile failure.");
}

TEST_F(FileIO, ShortWriteIsAFailure) {
  std::string const path = Write("file", "");
  int const fd = File_IO::Open(path.c_str(), false, false);
  errno = ENOSPC;
  {
    FileSizeLimit const limit(5);
    File_IO::Write(fd, "abc", 3);
    ExpectError([&] { File_IO::Write(fd, "defg", 4); }, 55, "File_IO::Write,WriteFile failure.");
    ExpectError([&] { File_IO::Write(fd, "h", 1); }, 55, "File_IO::Write,WriteFile failure.");
  }
  EXPECT_EQ(Read(path), "abcde");
  File_IO::Close(fd);
}

TEST_F(FileIO, LengthKeepsThePosition) {
  int const fd = File_IO::Open(Write("file", "0123456789").c_str(), true, false);
  File_IO::Seek(fd, 7, File_IO::kSeekFromStart);
  EXPECT_EQ(File_IO::Length(fd), 10);
  EXPECT_EQ(File_IO::Offset(fd), 7);
  File_IO::Close(fd);
  ExpectError([&] { File_IO::Length(fd); }, 11, "File_IO::Length, failure.");
  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  ExpectError([&] { File_IO::Length(pipeEnds[0]); }, 11, "File_IO::Length, failure.");
  File_IO::Close(pipeEnds[0]);
  File_IO::Close(pipeEnds[1]);
}

std::vector<std::string> SortedChildren(DIR* folder) {
  std::vector<std::string> names;
  std::string name;
  while (File_IO::GetNextChild(folder, &name)) {
    names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

TEST_F(FileIO, ChildrenAreAllButTheHiddenOnes) {
  std::string const path = MakeFolder("folder");
  Write("folder/b", "");
  Write("folder/.hidden", "");
  Write("folder/..more", "");
  Write("folder/a.txt", "");
  MakeFolder("folder/sub");
  File_IO::Folder folder(File_IO::OpenFolder(path.c_str()));
  EXPECT_EQ(SortedChildren(folder.Get()), (std::vector<std::string>{"a.txt", "b", "sub"}));
  EXPECT_FALSE(File_IO::GetNextChild(folder.Get(), nullptr));
}

TEST_F(FileIO, ChildrenAreCountedWithoutAName) {
  std::string const path = MakeFolder("folder");
  Write("folder/one", "");
  Write("folder/two", "");
  File_IO::Folder folder(File_IO::OpenFolder(path.c_str()));
  EXPECT_TRUE(File_IO::GetNextChild(folder.Get(), nullptr));
  EXPECT_TRUE(File_IO::GetNextChild(folder.Get(), nullptr));
  EXPECT_FALSE(File_IO::GetNextChild(folder.Get(), nullptr));
}

TEST_F(FileIO, DescriptorClosesWhatItHolds) {
  std::string const path = Write("file", "x");
  int fd = -1;
  {
    File_IO::Descriptor const file(File_IO::Open(path.c_str(), true, false));
    fd = file.Get();
    EXPECT_TRUE(IsOpen(fd));
  }
  EXPECT_FALSE(IsOpen(fd));
  File_IO::Descriptor none(-1);
  none.Close();
}

TEST_F(FileIO, DescriptorGivesUpWhatIsReleasedOrClosed) {
  std::string const path = Write("file", "x");
  int fd = -1;
  {
    File_IO::Descriptor released(File_IO::Open(path.c_str(), true, false));
    fd = released.Release();
    EXPECT_EQ(released.Get(), -1);
  }
  EXPECT_TRUE(IsOpen(fd));
  File_IO::Descriptor closed(fd);
  closed.Close();
  EXPECT_FALSE(IsOpen(fd));
  EXPECT_EQ(closed.Get(), -1);
}

TEST_F(FileIO, FolderWithOnlyHiddenNamesHasNoChild) {
  std::string const path = MakeFolder("folder");
  Write("folder/.one", "");
  Write("folder/.two", "");
  File_IO::Folder folder(File_IO::OpenFolder(path.c_str()));
  std::string name = "untouched";
  EXPECT_FALSE(File_IO::GetNextChild(folder.Get(), &name));
  EXPECT_EQ(name, "untouched");
}

TEST_F(FileIO, OpenFolderRefusesByKind) {
  ExpectError([&] { File_IO::OpenFolder(Path("absent").c_str()); }, 16, "File_IO::OpenFolder, failure.");
  std::string const file = Write("file", "x");
  ExpectError([&] { File_IO::OpenFolder(file.c_str()); }, 16, "File_IO::OpenFolder,  path is not a folder.");
  std::string const pipe = MakePipe("pipe");
  ExpectError([&] { File_IO::OpenFolder(pipe.c_str()); }, 16, "File_IO::OpenFolder,  path is not a folder.");
  std::string const closed = MakeFolder("closed");
  fs::permissions(closed, fs::perms::none);
  ShowFolder();
  {
    OrdinaryUser const user;
    ExpectError([&] { File_IO::OpenFolder(closed.c_str()); }, 16, "File_IO::OpenFolder, opendir failure.");
  }
  fs::permissions(closed, fs::perms(0700));  // or its own user could not remove it
}

TEST_F(FileIO, CloseFolderIgnoresOnlyNull) {
  File_IO::CloseFolder(nullptr);
  DIR* const folder = File_IO::OpenFolder(MakeFolder("folder").c_str());
  close(dirfd(folder));
  ExpectError([&] { File_IO::CloseFolder(folder); }, 17, "File_IO::CloseFolder, closedir failure.");
}

TEST_F(FileIO, ClosedDescriptorIsTheEndOfAFolder) {
  std::string const path = MakeFolder("folder");
  Write("folder/child", "");
  DIR* const folder = File_IO::OpenFolder(path.c_str());
  int const kept = dup(dirfd(folder));
  close(dirfd(folder));
  EXPECT_FALSE(File_IO::GetNextChild(folder, nullptr));
  dup2(kept, dirfd(folder));
  close(kept);
  File_IO::CloseFolder(folder);
}

TEST_F(FileIO, FolderThatCannotBeReadIsCode22) {
  std::string const path = MakeFolder("folder");
  DIR* const folder = File_IO::OpenFolder(path.c_str());
  int const file = File_IO::Open(Write("file", "x").c_str(), true, false);
  dup2(file, dirfd(folder));  // what is behind the descriptor is no folder any more
  ExpectError([&] { File_IO::GetNextChild(folder, nullptr); }, 22, "File_IO::GetNextChild, readdir_r failure.");
  File_IO::Close(file);
  File_IO::CloseFolder(folder);
}

TEST_F(FileIO, FolderClosesWhatItHolds) {
  std::string const path = MakeFolder("folder");
  {
    File_IO::Folder const none;
    EXPECT_EQ(none.Get(), nullptr);
    File_IO::Folder const open(File_IO::OpenFolder(path.c_str()));
    EXPECT_EQ(CountOpenDescriptors(), mOpenBefore + 1);
  }
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  File_IO::Folder early(File_IO::OpenFolder(path.c_str()));
  early.Close();
  EXPECT_EQ(early.Get(), nullptr);
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  early.Close();
}

TEST_F(FileIO, FolderReportsAFailedCloseButNotWhenItGoes) {
  std::string const path = MakeFolder("folder");
  File_IO::Folder reporting(File_IO::OpenFolder(path.c_str()));
  close(dirfd(reporting.Get()));
  ExpectError([&] { reporting.Close(); }, 17, "File_IO::CloseFolder, closedir failure.");
  File_IO::Folder const quiet(File_IO::OpenFolder(path.c_str()));
  close(dirfd(quiet.Get()));
}

// What stands behind `prefix` in `path`, which must begin with it.
std::string Behind(std::string const& prefix, std::string const& path) {
  EXPECT_EQ(path.substr(0, prefix.size()), prefix);
  return path.substr(std::min(prefix.size(), path.size()));
}

TEST_F(FileIO, TempFileIsMadeInTheFolderGiven) {
  std::string first;
  std::string second;
  EXPECT_TRUE(File_IO::GetTempFile(first, Path("")));
  EXPECT_TRUE(File_IO::GetTempFile(second, Path("")));
  EXPECT_EQ(Behind(Path(""), first).size(), 6u);
  EXPECT_EQ(Behind(Path(""), second).size(), 6u);
  EXPECT_NE(first, second);
  EXPECT_EQ(Read(first), "");
}

TEST_F(FileIO, TempFileNameFollowsAFolderWithoutSeparator) {
  MakeFolder("folder");
  std::string path;
  File_IO::GetTempFile(path, Path("folder"));
  EXPECT_EQ(Behind(Path("folder"), path).size(), 6u);
  EXPECT_TRUE(fs::is_empty(Path("folder")));
}

TEST_F(FileIO, TempFolderIsTheFirstVariableThatIsSet) {
  KeptVariable const temp("TEMP");
  KeptVariable const tmp("TMP");
  KeptVariable const tmpdir("TMPDIR");
  temp.Set(Path("a"));
  tmp.Set(Path("b"));
  tmpdir.Set(Path("c"));
  EXPECT_EQ(File_IO::GetTempFolder(), Path("a"));
  std::string path;
  File_IO::GetTempFile(path, "");
  EXPECT_EQ(Behind(Path("a"), path).size(), 6u);
  temp.Unset();
  EXPECT_EQ(File_IO::GetTempFolder(), Path("b"));
  tmp.Unset();
  EXPECT_EQ(File_IO::GetTempFolder(), Path("c"));
  tmpdir.Unset();
  EXPECT_EQ(File_IO::GetTempFolder(), "/tmp/");
  File_IO::GetTempFile(path, "");
  EXPECT_EQ(Behind("/tmp/", path).size(), 6u);
  File_IO::Delete(path.c_str());
  // Set to nothing is set.
  tmpdir.Set("/nowhere/");
  tmp.Set("");
  EXPECT_EQ(File_IO::GetTempFolder(), "");
}

TEST_F(FileIO, TempFileThatCannotBeMadeIsCode15) {
  std::string path = "untouched";
  ExpectError([&] { File_IO::GetTempFile(path, Path("absent/")); }, 15,
              "File_IO::GetTempFile, Unable to open temporary file.");
  EXPECT_EQ(path, "untouched");
}

TEST_F(FileIO, TempFileThatCannotBeClosedIsNotLeftBehind) {
  MakeFolder("folder");
  std::string path = "untouched";
  {
    senmark_test::FailingCall const failing(senmark_test::kClose, EIO);
    ExpectError([&] { File_IO::GetTempFile(path, Path("folder/")); }, 8, "File_IO::Close, Cannot close file.");
  }
  EXPECT_EQ(path, "untouched");
  EXPECT_TRUE(fs::is_empty(Path("folder")));
}

TEST_F(FileIO, AppendToTempFileWritesAndLeavesOpen) {
  std::string const path = Write("file", "");
  int const fd = File_IO::Open(path.c_str(), false, true);
  EXPECT_TRUE(File_IO::AppendToTempFile(fd, "abc", 3, false));
  EXPECT_TRUE(File_IO::AppendToTempFile(fd, "", 0, false));
  EXPECT_TRUE(IsOpen(fd));
  EXPECT_TRUE(File_IO::AppendToTempFile(fd, "de", 2, true));
  EXPECT_FALSE(IsOpen(fd));
  EXPECT_EQ(Read(path), "abcde");
}

TEST_F(FileIO, AppendToTempFileTellsOfAFullDisk) {
  int const fd = File_IO::Open("/dev/full", false, false);
  EXPECT_FALSE(File_IO::AppendToTempFile(fd, "abc", 3, false));
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_TRUE(IsOpen(fd));
  EXPECT_FALSE(File_IO::AppendToTempFile(fd, "abc", 3, true));
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_FALSE(IsOpen(fd));
}

TEST_F(FileIO, AppendToTempFileOfAPartIsFalse) {
  std::string const path = Write("file", "");
  int const fd = File_IO::Open(path.c_str(), false, false);
  bool result = true;
  errno = ENOSPC;
  {
    FileSizeLimit const limit(2);
    result = File_IO::AppendToTempFile(fd, "abc", 3, false);
    EXPECT_EQ(errno, 0);
  }
  EXPECT_FALSE(result);
  File_IO::Close(fd);
}

TEST_F(FileIO, RenameMovesAFile) {
  std::string const from = Write("from", "content");
  File_IO::Rename(from.c_str(), Path("to").c_str());
  EXPECT_FALSE(fs::exists(from));
  EXPECT_EQ(Read(Path("to")), "content");
}

TEST_F(FileIO, RenameToAnExistingFileLeavesBoth) {
  std::string const from = Write("from", "from");
  std::string const to = Write("to", "to");
  ExpectError([&] { File_IO::Rename(from.c_str(), to.c_str()); }, 21, "File_IO::Rename, New path does not exists.");
  EXPECT_EQ(Read(from), "from");
  EXPECT_EQ(Read(to), "to");
}

TEST_F(FileIO, RenameThatTheSystemRefusesIsCode22) {
  ExpectError([&] { File_IO::Rename(Path("absent").c_str(), Path("to").c_str()); }, 22,
              "File_IO::Rename, Rename failure.");
  std::string const from = Write("from", "x");
  ExpectError([&] { File_IO::Rename(from.c_str(), Path("absent/to").c_str()); }, 22,
              "File_IO::Rename, Rename failure.");
}

std::string Derived(std::string const& path, int number) {
  return path + "._" + static_cast<char>('0' + number / 10) + static_cast<char>('0' + number % 10) + '_';
}

TEST_F(FileIO, DerivedPathIsTheFirstThatIsFree) {
  std::string const path = Path("a");
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), path + "._00_");
  Write("a._00_", "");
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), path + "._01_");
  Write("a._02_", "");
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), path + "._01_");
  for (int i = 3; i < 99; ++i) {
    std::ofstream(Derived(path, i));
  }
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), path + "._01_");
  Write("a._01_", "");
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), path + "._99_");
  MakeFolder("a._99_");
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), "");
}

TEST_F(FileIO, DerivedPathCountsTheOnesFirst) {
  std::string const path = Path("a");
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(File_IO::ConjureDerivedPath(path), Derived(path, i));
    std::ofstream(Derived(path, i));
  }
  EXPECT_EQ(File_IO::ConjureDerivedPath(path), "");
}

TEST_F(FileIO, SwapExchangesTwoFiles) {
  std::string const a = Write("a", "of a");
  std::string const b = Write("b", "of b");
  Write("a._00_", "in the way");
  File_IO::SwapData(a.c_str(), b.c_str());
  EXPECT_EQ(Read(a), "of b");
  EXPECT_EQ(Read(b), "of a");
  EXPECT_EQ(Read(Path("a._00_")), "in the way");
  EXPECT_FALSE(fs::exists(Path("a._01_")));
}

TEST_F(FileIO, SwapNeedsAThirdName) {
  std::string const a = Write("a", "of a");
  std::string const b = Write("b", "of b");
  for (int i = 0; i < 100; ++i) {
    std::ofstream(Derived(a, i));
  }
  ExpectError([&] { File_IO::SwapData(a.c_str(), b.c_str()); }, 15, "File_IO::SwapData, Cannot create temp file path.");
  EXPECT_EQ(Read(a), "of a");
  EXPECT_EQ(Read(b), "of b");
}

TEST_F(FileIO, SwapWithoutTheFirstTouchesNothing) {
  std::string const b = Write("b", "of b");
  ExpectError([&] { File_IO::SwapData(Path("a").c_str(), b.c_str()); }, 22, "File_IO::Rename, Rename failure.");
  EXPECT_EQ(Read(b), "of b");
  EXPECT_FALSE(fs::exists(Path("a._00_")));
}

TEST_F(FileIO, SwapWithoutTheSecondPutsTheFirstBack) {
  std::string const a = Write("a", "of a");
  ExpectError([&] { File_IO::SwapData(a.c_str(), Path("b").c_str()); }, 22, "File_IO::Rename, Rename failure.");
  EXPECT_EQ(Read(a), "of a");
  EXPECT_FALSE(fs::exists(Path("a._00_")));
  EXPECT_FALSE(fs::exists(Path("b")));
}

TEST_F(FileIO, SwapThatFailsAtTheLastStepPutsBothBack) {
  std::string const a = Write("a", "of a");
  MakeFolder("b");
  Write("b/inside", "of b");
  // A folder may be named with a separator at the end, and a file may not.
  ExpectError([&] { File_IO::SwapData(a.c_str(), Path("b/").c_str()); }, 22, "File_IO::Rename, Rename failure.");
  EXPECT_EQ(Read(a), "of a");
  EXPECT_EQ(Read(Path("b/inside")), "of b");
  EXPECT_FALSE(fs::exists(Path("a._00_")));
}

std::string Pattern(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i < size; ++i) {
    text[i] = static_cast<char>('a' + i % 23);
  }
  return text;
}

TEST_F(FileIO, CopyIsTheSameAtEverySizeOfABlock) {
  for (std::size_t const size : {0u, 1u, 65535u, 65536u, 65537u, 131072u, 200001u}) {
    std::string const source = Write("source", Pattern(size));
    std::string const destination = Write("destination", "");
    File_IO::CopyFileContents(source.c_str(), destination.c_str());
    EXPECT_TRUE(Read(destination) == Pattern(size)) << size;
    EXPECT_TRUE(Read(source) == Pattern(size)) << size;
  }
}

TEST_F(FileIO, CopyLeavesNoOldTail) {
  for (std::size_t const size : {0u, 1u, 65536u}) {
    std::string const source = Write("source", Pattern(size));
    std::string const destination = Write("destination", std::string(100000, 'o'));
    File_IO::CopyFileContents(source.c_str(), destination.c_str());
    EXPECT_TRUE(Read(destination) == Pattern(size)) << size;
  }
}

TEST_F(FileIO, CopyToADeviceHasNothingToCut) {
  File_IO::CopyFileContents(Write("source", "abc").c_str(), "/dev/null");
}

TEST_F(FileIO, CopyNeedsBothFiles) {
  std::string const file = Write("file", "content");
  ExpectError([&] { File_IO::CopyFileContents(Path("absent").c_str(), file.c_str()); }, 6, "File_IO::Open, failure.");
  EXPECT_EQ(Read(file), "content");
  ExpectError([&] { File_IO::CopyFileContents(file.c_str(), Path("absent").c_str()); }, 6, "File_IO::Open, failure.");
  fs::permissions(file, fs::perms(0400));
  ExpectError([&] { File_IO::CopyFileContents("/dev/null", file.c_str()); }, 13,
              "File_IO::Open, file permission error");
}

TEST_F(FileIO, CopyFromWhatCannotBeReadIsCode11) {
  std::string const destination = Write("destination", "content");
  ExpectError([&] { File_IO::CopyFileContents(MakeFolder("folder").c_str(), destination.c_str()); }, 11,
              "File_IO::CopyFileContents, read failure.");
}

TEST_F(FileIO, CopyToAFullDiskIsCode55) {
  std::string const source = Write("source", "content");
  ExpectError([&] { File_IO::CopyFileContents(source.c_str(), "/dev/full"); }, 55, "File_IO::CopyFileContents, fails.");
}

TEST_F(FileIO, CopyThatIsCutInABlockIsCode55) {
  std::string const source = Write("source", Pattern(100000));
  std::string const destination = Write("destination", "");
  FileSizeLimit const limit(70000);
  ExpectError([&] { File_IO::CopyFileContents(source.c_str(), destination.c_str()); }, 55,
              "File_IO::CopyFileContents, fails.");
}

}  // namespace
