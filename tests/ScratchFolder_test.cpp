#include "ScratchFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <system_error>

#include "TempFolder.h"

namespace senmark_tool {
namespace {

TEST(ScratchFolder, GoesWithAllThatIsInIt) {
  senmark_test::TempFolder const temporary;
  {
    ScratchFolder const folder;
    EXPECT_EQ(folder.Path("").find(temporary.TempPath()), 0u) << folder.Path("");
    std::filesystem::create_directory(folder.Path("inner"));
    std::ofstream(folder.Path("inner/file")) << "text";
    EXPECT_TRUE(std::filesystem::exists(folder.Path("inner/file")));
    EXPECT_NE(temporary.TempNames(), "");
  }
  EXPECT_EQ(temporary.TempNames(), "");
}

TEST(ScratchFolder, TwoAreApart) {
  senmark_test::TempFolder const temporary;
  ScratchFolder const one;
  ScratchFolder const other;
  EXPECT_NE(one.Path("a"), other.Path("a"));
}

TEST(ScratchFolder, FolderThatIsMissingIsAnError) {
  senmark_test::TempFolder const temporary;
  setenv("TEMP", temporary.Path("none").c_str(), 1);
  EXPECT_THROW(ScratchFolder(), std::system_error);
}

TEST(ScratchFolder, EmptyNamesAreNoFolders) {
  senmark_test::TempFolder const temporary;
  setenv("TMP", temporary.TempPath().c_str(), 1);
  setenv("TEMP", "", 1);
  {
    ScratchFolder const folder;
    EXPECT_EQ(folder.Path("").find(temporary.TempPath()), 0u) << folder.Path("");
  }
  unsetenv("TMP");
}

}  // namespace
}  // namespace senmark_tool
