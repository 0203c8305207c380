#include "FolderRemoval.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "TempFolder.h"

namespace senmark_tool {
namespace {

namespace fs = std::filesystem;

TEST(FolderRemoval, TakesAllThatIsInIt) {
  senmark_test::TempFolder const folder;
  fs::path const top = folder.Path("top");
  fs::path inner = top;
  for (int depth = 0; depth != 20; ++depth) {
    inner /= "inner";
  }
  fs::create_directories(inner);
  // More than are read at a time, with names of all lengths.
  for (std::size_t i = 1; i <= 255; ++i) {
    std::ofstream(top / std::string(i, 'x')) << i;
    std::ofstream(inner / std::string(i, 'y')) << i;
  }
  ASSERT_EQ(mkfifo((top / ".pipe").c_str(), 0600), 0);
  RemoveFolder(top.c_str());
  EXPECT_FALSE(fs::exists(top));
}

TEST(FolderRemoval, LeavesWhatLinksLeadTo) {
  senmark_test::TempFolder const folder;
  fs::create_directory(folder.Path("other"));
  std::string const file = folder.Write("other/file", "text");
  fs::create_directory(folder.Path("top"));
  fs::create_directory_symlink(folder.Path("other"), folder.Path("top/folder"));
  fs::create_symlink(file, folder.Path("top/file"));
  fs::create_symlink(folder.Path("none"), folder.Path("top/nothing"));
  RemoveFolder(folder.Path("top").c_str());
  EXPECT_FALSE(fs::exists(folder.Path("top")));
  EXPECT_EQ(folder.Read(file), "text");
}

TEST(FolderRemoval, LinkGoesAlone) {
  senmark_test::TempFolder const folder;
  fs::create_directory(folder.Path("other"));
  std::string const file = folder.Write("other/file", "text");
  fs::create_directory_symlink(folder.Path("other"), folder.Path("top"));
  RemoveFolder(folder.Path("top").c_str());
  EXPECT_FALSE(fs::is_symlink(folder.Path("top")));
  EXPECT_EQ(folder.Read(file), "text");
}

/// Each level must be gone through but a few times, not as often as all above it together.
TEST(FolderRemoval, WhatLiesTooDeepStaysAndTakesNoTime) {
  senmark_test::TempFolder const folder;
  fs::path const top = folder.Path("top");
  fs::path inner = top;
  for (int depth = 0; depth != 100; ++depth) {
    inner /= "d";
  }
  fs::create_directories(inner);
  std::ofstream(top / "file") << "text";
  RemoveFolder(top.c_str());
  EXPECT_FALSE(fs::exists(top / "file"));
  EXPECT_TRUE(fs::exists(inner));
}

TEST(FolderRemoval, WhatIsNotThereIsNoMatter) {
  senmark_test::TempFolder const folder;
  RemoveFolder(folder.Path("none").c_str());
  EXPECT_FALSE(fs::exists(folder.Path("none")));
}

}  // namespace
}  // namespace senmark_tool
