#include "SK_FileMapper.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;
using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using SK_NAMESPACE_INT::SK_FileMapper;

static_assert(sizeof(SK_FileMapper) == 16, "a pointer and a size, and nothing else");
static_assert(!std::has_virtual_destructor_v<SK_FileMapper> && !std::is_polymorphic_v<SK_FileMapper>);
static_assert(std::is_nothrow_destructible_v<SK_FileMapper>);

class FileMapper : public testing::Test {
 protected:
  void SetUp() override { mOpenBefore = CountOpenDescriptors(); }
  void TearDown() override { EXPECT_EQ(CountOpenDescriptors(), mOpenBefore); }

  senmark_test::TempFolder mFolder;
  std::size_t mOpenBefore = 0;
};

std::string Mapped(SK_FileMapper const& mapper) {
  return std::string(mapper.GetFilePointer(), mapper.GetFileSize());
}

TEST_F(FileMapper, MapsTheWholeFile) {
  std::size_t const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  for (std::size_t const size : {std::size_t{1}, page - 1, page, page + 1, 5 * page + 3}) {
    std::string content(size, 'x');
    content.front() = 'a';
    content.back() = 'z';
    SK_FileMapper const mapper(mFolder.Write("file", content));
    EXPECT_EQ(mapper.GetFileSize(), size);
    EXPECT_TRUE(Mapped(mapper) == content) << size;
  }
}

TEST_F(FileMapper, KeepsNoDescriptor) {
  SK_FileMapper const mapper(mFolder.Write("file", "content"));
  EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
}

TEST_F(FileMapper, OutlivesTheNameOfItsFile) {
  std::string const path = mFolder.Write("file", "content");
  SK_FileMapper const mapper(path);
  fs::remove(path);
  EXPECT_EQ(Mapped(mapper), "content");
}

TEST_F(FileMapper, MissingFileIsNamed) {
  ExpectError([&] { SK_FileMapper(mFolder.Path("absent")); }, 6,
              "Unable to open input file:" + mFolder.Path("absent") + ".");
  ExpectError([] { SK_FileMapper(""); }, 6, "Unable to open input file:.");
}

TEST_F(FileMapper, NameThatIsNotAsciiVanishesFromTheMessage) {
  ExpectError([&] { SK_FileMapper(mFolder.Path("t\xC3\xB6ne")); }, 6, "Unable to open input file:.");
}

TEST_F(FileMapper, UnknownSizeIsCode5) {
  std::string const path = mFolder.Write("file", "content");
  senmark_test::FailingFstat const failing(EOVERFLOW);
  ExpectError([&] { SK_FileMapper{path}; }, 5,
              "Unable to calculate size of input file:" + path + ", probably file is corrupt");
}

TEST_F(FileMapper, EmptyFileIsCode54) {
  std::string const path = mFolder.Write("file", "");
  ExpectError([&] { SK_FileMapper{path}; }, 54, "Empty Input file.");
}

TEST_F(FileMapper, WhatCannotBeMappedIsCode21) {
  // A folder can be opened and has a size, at least on the usual file systems of the platform.
  std::string const path = mFolder.Path("");
  ExpectError([&] { SK_FileMapper{path}; }, 21, "Unable to read file in memory.");
}

TEST_F(FileMapper, ExistenceSaysNothingOfTheKind) {
  std::string const file = mFolder.Write("file", "");
  EXPECT_TRUE(SK_FileMapper::CheckFileExistance(file.c_str()));
  EXPECT_TRUE(SK_FileMapper::CheckFileExistance(mFolder.Path("").c_str()));
  EXPECT_TRUE(SK_FileMapper::CheckFileExistance("/dev/null"));
  EXPECT_FALSE(SK_FileMapper::CheckFileExistance(mFolder.Path("absent").c_str()));
  EXPECT_FALSE(SK_FileMapper::CheckFileExistance(""));
  fs::create_symlink(mFolder.Path("absent"), mFolder.Path("dangling"));
  EXPECT_FALSE(SK_FileMapper::CheckFileExistance(mFolder.Path("dangling").c_str()));
}

using FileMapperDeathTest = FileMapper;

TEST_F(FileMapperDeathTest, MappingThatCannotBeUndoneStops) {
  std::string const path = mFolder.Write("file", "content");
  auto const unmapInVain = [&path] {
    auto mapper = std::make_unique<SK_FileMapper>(path);
    senmark_test::FailingMunmap const failing;
    mapper.reset();
  };
  EXPECT_DEATH(unmapInVain(), "source/SK_FileMapper_mac:69: CloseMapping: Assertion `sk_errno == 0' failed");
}

}  // namespace
