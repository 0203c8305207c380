#include "OutputFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "Command.h"
#include "TempFolder.h"

namespace senmark_tool {
namespace {

namespace fs = std::filesystem;

class OutputFile : public testing::Test {
 protected:
  using File = senmark_tool::OutputFile;

  OutputFile() : mInput(mFolder.Write("input", "source")), mOutput(mFolder.Path("output")) {}

  void Make(std::string const& path, bool overwrites, std::string const& content = "new") {
    File file(path, mInput, overwrites);
    std::ofstream(file.WorkPath()) << content;
    EXPECT_EQ(file.Finish(), content.size());
  }

  /// Why a place is refused; empty: it is not.
  std::string Refusal(std::string const& path, bool overwrites) {
    try {
      File const file(path, mInput, overwrites);
      return std::string();
    } catch (UsageError const& error) {
      return error.what();
    }
  }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.Path(""))) {
      names.insert(entry.path().filename().string());
    }
    names.erase("temporary");
    return names;
  }

  senmark_test::TempFolder mFolder;
  std::string mInput;
  std::string mOutput;
};

TEST_F(OutputFile, StandsAtItsPlaceWhenItIsFinished) {
  Make(mOutput, false);
  EXPECT_EQ(mFolder.Read(mOutput), "new");
  EXPECT_EQ(Names(), (std::set<std::string>{"input", "output"}));
}

TEST_F(OutputFile, FailureLeavesNothing) {
  {
    File const file(mOutput, mInput, false);
    std::ofstream(file.WorkPath()) << "half";
    EXPECT_FALSE(fs::exists(mOutput));
    // Of the same disk, and nothing of it is seen.
    EXPECT_EQ(fs::path(file.WorkPath()).parent_path().parent_path(), fs::path(mOutput).parent_path());
    EXPECT_EQ(fs::path(file.WorkPath()).parent_path().filename().string().rfind(".senmark_", 0), 0u);
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"input"}));
}

TEST_F(OutputFile, FailureLeavesTheOldFile) {
  mFolder.Write("output", "old");
  {
    File const file(mOutput, mInput, true);
    std::ofstream(file.WorkPath()) << "half";
    EXPECT_EQ(mFolder.Read(mOutput), "old");
  }
  EXPECT_EQ(mFolder.Read(mOutput), "old");
  EXPECT_EQ(Names(), (std::set<std::string>{"input", "output"}));
}

TEST_F(OutputFile, ReplacesOnlyWhenAsked) {
  mFolder.Write("output", "old");
  EXPECT_EQ(Refusal(mOutput, false), "\"" + mOutput + "\" exists already; --force replaces it");
  EXPECT_EQ(mFolder.Read(mOutput), "old");
  Make(mOutput, true);
  EXPECT_EQ(mFolder.Read(mOutput), "new");
}

TEST_F(OutputFile, WhatComesMeanwhileIsReplacedOnlyWhenAsked) {
  for (bool const overwrites : {false, true}) {
    fs::remove(mOutput);
    File file(mOutput, mInput, overwrites);
    std::ofstream(file.WorkPath()) << "new";
    mFolder.Write("output", "other");
    if (overwrites) {
      EXPECT_EQ(file.Finish(), 3u);
    } else {
      EXPECT_THROW(file.Finish(), UsageError);
    }
    EXPECT_EQ(mFolder.Read(mOutput), overwrites ? "new" : "other");
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"input", "output"}));
}

TEST_F(OutputFile, LinkToNothingStays) {
  fs::create_symlink(mFolder.Path("none"), mOutput);
  for (bool const overwrites : {false, true}) {
    EXPECT_EQ(Refusal(mOutput, overwrites), "\"" + mOutput + "\" is a link that leads to nothing");
  }
  EXPECT_TRUE(fs::is_symlink(mOutput));
}

TEST_F(OutputFile, NeverReplacesItsSource) {
  fs::create_symlink(mInput, mFolder.Path("link"));
  fs::create_hard_link(mInput, mFolder.Path("hard"));
  fs::create_directory(mFolder.Path("inner"));
  for (std::string const& path :
       {mInput, mFolder.Path("link"), mFolder.Path("hard"), mFolder.Path("inner/../input"), mFolder.Path("./input")}) {
    for (bool const overwrites : {false, true}) {
      EXPECT_NE(Refusal(path, overwrites).find(" is the file itself"), std::string::npos) << path;
    }
  }
  EXPECT_EQ(mFolder.Read(mInput), "source");
}

TEST_F(OutputFile, LinkIsFollowed) {
  mFolder.Write("output", "old");
  fs::create_symlink(mOutput, mFolder.Path("link"));
  EXPECT_NE(Refusal(mFolder.Path("link"), false), "");
  Make(mFolder.Path("link"), true);
  EXPECT_TRUE(fs::is_symlink(mFolder.Path("link")));
  EXPECT_FALSE(fs::is_symlink(mOutput));
  EXPECT_EQ(mFolder.Read(mOutput), "new");
}

TEST_F(OutputFile, PlacesThatCannotHoldAResultAreRefused) {
  fs::create_directory(mFolder.Path("folder"));
  ASSERT_EQ(mkfifo(mFolder.Path("pipe").c_str(), 0600), 0);
  for (std::string const& path :
       {mFolder.Path("folder"), mFolder.Path("folder/"), mFolder.Path("pipe"), mFolder.Path("none/output"),
        mFolder.Path("input/output"), std::string("/dev/null"), std::string()}) {
    EXPECT_NE(Refusal(path, true), "") << path;
  }
  EXPECT_EQ(Names(), (std::set<std::string>{"folder", "input", "pipe"}));
}

TEST_F(OutputFile, MissingFolderIsNamed) {
  EXPECT_EQ(Refusal(mFolder.Path("none/output"), false),
            "there is no folder \"" + mFolder.Path("none") + "\" to write to");
}

TEST_F(OutputFile, NameWithoutAFolderStandsInTheCurrentOne) {
  fs::path const before = fs::current_path();
  fs::current_path(mFolder.Path(""));
  Make("output", false);
  fs::current_path(before);
  EXPECT_EQ(mFolder.Read(mOutput), "new");
}

TEST_F(OutputFile, NewFileHasTheUsualPermissions) {
  mode_t const before = umask(027);
  Make(mOutput, false);
  umask(before);
  EXPECT_EQ(fs::status(mOutput).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(OutputFile, ReplacedFileKeepsItsPermissions) {
  mFolder.Write("output", "old");
  fs::permissions(mOutput, static_cast<fs::perms>(0604));
  Make(mOutput, true);
  EXPECT_EQ(fs::status(mOutput).permissions(), static_cast<fs::perms>(0604));
}

}  // namespace
}  // namespace senmark_tool
