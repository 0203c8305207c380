// The folder of a new module: its files, and what it is not made for. That it builds and converts is tried with an
// installed library.
#include "NewModuleCommand.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "Command.h"
#include "TempFolder.h"

namespace senmark_tool {
namespace {

namespace fs = std::filesystem;

class NewModuleCommand : public testing::Test {
 protected:
  // What it prints, or why it refuses.
  static std::string Run(NewModuleRequest const& request) {
    std::ostringstream out;
    try {
      EXPECT_EQ(RunNewModule(request, out), 0);
    } catch (UsageError const& error) {
      return std::string("usage: ") + error.what();
    } catch (std::runtime_error const& error) {
      return std::string("error: ") + error.what();
    }
    return out.str();
  }

  std::string Read(std::string const& name) const { return mFolder.Read(mPath + '/' + name); }

  senmark_test::TempFolder mFolder;
  std::string mPath = mFolder.Path("made/module");
};

TEST_F(NewModuleCommand, WritesAModuleToBeginWith) {
  EXPECT_EQ(Run({"my-steps_2", mPath, ".StP", false}),
            "wrote " + mPath +
                ": CMakeLists.txt my-steps_2.cpp SKPLUGINUIDS.txt sample.stp README.md\n"
                "Next, in that folder:\n  cmake -S . -B build && cmake --build build\n"
                "  senmark --modules build tree sample.stp\n");
  for (char const* name : {"CMakeLists.txt", "my-steps_2.cpp", "SKPLUGINUIDS.txt", "sample.stp", "README.md"}) {
    std::string const text = Read(name);
    EXPECT_FALSE(text.empty()) << name;
    EXPECT_EQ(text.find('@'), std::string::npos) << name;
  }
  EXPECT_NE(Read("CMakeLists.txt")
                .find("senmark_add_module(NAME my-steps_2 SOURCES my-steps_2.cpp MANIFEST SKPLUGINUIDS.txt)"),
            std::string::npos);
  EXPECT_NE(Read("my-steps_2.cpp").find("SENMARK_MODULE(MySteps2Converter)"), std::string::npos);
  EXPECT_NE(Read("SKPLUGINUIDS.txt").find(R"("extensions": ["stp"])"), std::string::npos);
}

TEST_F(NewModuleCommand, TheNameIsTheExtensionWithoutOne) {
  Run({"2ndFormat", mPath, "", false});
  EXPECT_TRUE(fs::exists(mPath + "/sample.2ndformat"));
  EXPECT_NE(Read("2ndFormat.cpp").find("class Format2ndFormatConverter : "), std::string::npos);
}

TEST_F(NewModuleCommand, TellsProgramsWhatItWrote) {
  EXPECT_EQ(Run({"a", mPath, "b", true}), R"({"folder":")" + mPath +
                                              R"(","files":["CMakeLists.txt","a.cpp","SKPLUGINUIDS.txt","sample.b",)"
                                              R"("README.md"]})"
                                              "\n");
}

TEST_F(NewModuleCommand, RefusesNamesAndExtensionsThatAreNone) {
  for (std::string const name : {"", "a b", "a.b", "-a", "a/b", "..", "a\"b", "\xC3\xA9", "test", "all", "install"}) {
    EXPECT_EQ(Run({name, mPath, "ext", false}),
              "usage: \"" + name +
                  "\" is no name for a module: give up to 64 letters, digits, - and _, and none that a build uses "
                  "itself, like \"test\"");
  }
  EXPECT_NE(Run({std::string(65, 'a'), mPath, "ext", false}).find("usage"), std::string::npos);
  for (std::string const extension : {".", "a.b", "a b", "-a", "a/b", "\n"}) {
    EXPECT_EQ(Run({"name", mPath, extension, false}),
              "usage: \"" + extension + "\" is no extension: give letters, digits, - and _");
  }
  EXPECT_EQ(Run({"name", mPath, "TDJSON", false}), "usage: files with the extension \"tdjson\" are never converted");
  EXPECT_FALSE(fs::exists(mPath));
  Run({std::string(64, 'a'), mPath, "ext", false});
  EXPECT_TRUE(fs::exists(mPath));
}

TEST_F(NewModuleCommand, OverwritesNothing) {
  fs::create_directories(mPath);
  Run({"name", mPath, "ext", false});
  EXPECT_TRUE(fs::exists(mPath + "/name.cpp")) << "an empty folder may be there";
  EXPECT_EQ(Run({"other", mPath, "ext", false}),
            "usage: \"" + mPath + "\" is there already, and nothing is overwritten");
  EXPECT_FALSE(fs::exists(mPath + "/other.cpp"));
  std::string const file = mFolder.Write("file", "text");
  EXPECT_EQ(Run({"other", file, "ext", false}), "usage: \"" + file + "\" is there already, and nothing is overwritten");
  EXPECT_EQ(mFolder.Read(file), "text");
}

TEST_F(NewModuleCommand, LeavesNothingWhenItCannotWrite) {
  std::string const file = mFolder.Write("file", "text");
  EXPECT_EQ(Run({"name", file + "/below", "ext", false}).substr(0, 6), "error:");
  EXPECT_EQ(mFolder.Read(file), "text");
}

}  // namespace
}  // namespace senmark_tool
