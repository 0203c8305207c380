#include "FileState.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "TempFolder.h"

namespace {

using senmark_tool::FileState;

TEST(FileState, IsEqualAsLongAsNothingIsWritten) {
  senmark_test::TempFolder const folder;
  std::string const path = folder.Write("file", "content");
  FileState const before(path);
  EXPECT_FALSE(FileState(path) != before);
  std::ifstream(path).get();
  EXPECT_FALSE(FileState(path) != before);
}

TEST(FileState, TellsEveryChange) {
  senmark_test::TempFolder const folder;
  std::string const path = folder.Write("file", "content");
  auto const time = std::filesystem::last_write_time(path);
  FileState const before(path);
  for (char const* const other : {"contents", "conten", "", "Content"}) {
    folder.Write("file", other);
    std::filesystem::last_write_time(path, time);
    EXPECT_TRUE(FileState(path) != before) << other;
  }
  folder.Write("file", "content");
  std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
  EXPECT_TRUE(FileState(path) != before);
  std::filesystem::remove(path);
  EXPECT_TRUE(FileState(path) != before);
}

TEST(FileState, WhatIsNoFileIsEqualToItself) {
  senmark_test::TempFolder const folder;
  EXPECT_FALSE(FileState(folder.TempPath()) != FileState(folder.TempPath()));
  EXPECT_FALSE(FileState(folder.Path("nothing")) != FileState(folder.Path("nothing")));
}

}  // namespace
