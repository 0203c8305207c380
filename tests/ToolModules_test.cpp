// The program and its converter modules: where it looks for them, and what it tells of them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <rapidjson/document.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <numeric>

#include "ModuleFolders.h"
#include "ToolRunner.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

using senmark_test::kExplainingModule;
using senmark_test::kTestModule;
using senmark_test::Lines;
using senmark_test::Manifest;
using senmark_test::ModuleFolders;
using senmark_test::Outcome;

/// The program is a copy of its own, so that what stands beside it is the test's.
class ToolModules : public senmark_test::ToolTest {
 protected:
  ToolModules() {
    fs::create_directory(mFolder.Path("bin"));
    fs::copy_file(mProgram, mFolder.Path("bin/senmark"));
    mProgram = mFolder.Path("bin/senmark");
    mOptions.clear();
    unsetenv("SENMARK_MODULE_PATH");
  }
  ~ToolModules() override { unsetenv("SENMARK_MODULE_PATH"); }

  std::string Beside() const { return mFolder.Path("bin/modules"); }
  std::string Installed() const {
    return fs::weakly_canonical(mFolder.Path("bin/" SENMARK_INSTALLED_MODULES)).string();
  }
  /// What is told of the program's own folders when they are not there.
  std::string NoOwnFolders() const {
    return Beside() + " (beside the program): there is no such folder\n" + Installed() +
           " (installed): there is no such folder\n";
  }

  std::string Formats(std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "formats");
    Outcome const outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::string extensions;
    for (std::string const& line : Lines(outcome.out)) {
      extensions += line.substr(0, line.find(' ')) + ' ';
    }
    return extensions;
  }

  /// A folder of modules somewhere, like one that is beside the program.
  void Move(ModuleFolders const& modules, std::string const& place) const {
    fs::create_directories(fs::path(place).parent_path());
    fs::rename(modules.Path(), place);
  }

  ModuleFolders mModules{mFolder};
};

constexpr char kNative[] = "bvh csv json tdjson tsv txt ";

// Where modules are found.

TEST_F(ToolModules, NoModulesIsNoError) {
  EXPECT_EQ(Formats(), kNative);
  EXPECT_EQ(Run({"modules"}).out, NoOwnFolders());
}

TEST_F(ToolModules, AreFoundByOption) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  std::string const all = std::string("aaa ") + kNative;
  EXPECT_EQ(Formats({"--modules", mModules.Path()}), all);
  mOptions = {"--modules", mModules.Path()};
  EXPECT_EQ(Formats(), all);
}

TEST_F(ToolModules, AreFoundByEnvironment) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  setenv("SENMARK_MODULE_PATH", (":/none:" + mModules.Path()).c_str(), 1);
  EXPECT_EQ(Formats(), std::string("aaa ") + kNative);
}

TEST_F(ToolModules, AreFoundBesideTheProgram) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  Move(mModules, Beside());
  EXPECT_EQ(Formats(), std::string("aaa ") + kNative);
  fs::create_symlink(mProgram, mFolder.Path("link"));
  mProgram = mFolder.Path("link");
  EXPECT_EQ(Formats(), std::string("aaa ") + kNative);
}

TEST_F(ToolModules, AreFoundWhereTheyAreInstalled) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  Move(mModules, Installed());
  EXPECT_EQ(Formats(), std::string("aaa ") + kNative);
}

TEST_F(ToolModules, AllFoldersCountTogether) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  Move(mModules, Beside());
  ModuleFolders const more(mFolder, "more");
  more.Add("b.tdx", Manifest("b", "\"bbb\"").c_str());
  ModuleFolders const environment(mFolder, "environment");
  environment.Add("c.tdx", Manifest("c", "\"ccc\"").c_str());
  ModuleFolders const last(mFolder, "last");
  last.Add("d.tdx", Manifest("d", "\"ddd\"").c_str());
  setenv("SENMARK_MODULE_PATH", environment.Path().c_str(), 1);
  EXPECT_EQ(Formats({"--modules", more.Path(), "--modules", last.Path()}),
            std::string("aaa bbb bvh ccc csv ddd json tdjson tsv txt "));
  rapidjson::Document const told = RunJson({"modules", "--modules", more.Path(), "--modules", last.Path()});
  struct {
    std::string path;
    char const* origin;
  } const expected[] = {{more.Path(), "--modules"},
                        {last.Path(), "--modules"},
                        {environment.Path(), "SENMARK_MODULE_PATH"},
                        {Beside(), "beside the program"},
                        {Installed(), "installed"}};
  ASSERT_EQ(told.Size(), 5u);
  for (rapidjson::SizeType i = 0; i < 5; ++i) {
    EXPECT_EQ(told[i]["path"].GetString(), expected[i].path);
    EXPECT_STREQ(told[i]["origin"].GetString(), expected[i].origin);
  }
}

/// Where the program gives the library modules of its own making.
std::vector<fs::path> OwnFolders(std::string const& temporary) {
  std::vector<fs::path> folders;
  for (fs::directory_entry const& entry : fs::recursive_directory_iterator(temporary)) {
    if (entry.path().filename() == "modules") {
      folders.push_back(entry.path());
    }
  }
  return folders;
}

class ToolModulesSignal : public ToolModules, public testing::WithParamInterface<int> {
 protected:
  ToolModulesSignal() : mTemporary(mFolder.Path("temporary")) {
    fs::create_directory(mTemporary);
    setenv("TEMP", mTemporary.c_str(), 1);
    mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
    // The first takes one of its two extensions, so that it is more than a link.
    mMore.Add("b.tdx", Manifest("b", "\"aaa\",\"bbb\"").c_str());
  }
  ~ToolModulesSignal() override {
    if (mBefore.empty()) {
      unsetenv("TEMP");
    } else {
      setenv("TEMP", mBefore.c_str(), 1);
    }
  }

  /// Starts the program with both folders; it stands still when `reader` has much to read.
  pid_t Start(int& reader) {
    std::vector<std::int64_t> ticks(20000);
    std::iota(ticks.begin(), ticks.end(), 0);
    std::string const file = Write(senmark_test::NumberSetFile::Utc(3).Add("set", ticks));
    std::vector<std::string> arguments = {mProgram, "--modules", mModules.Path(), "--modules", mMore.Path(), "samples",
                                          file,     "set"};
    std::vector<char*> const words = senmark_test::WordsOf(arguments);
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    pid_t child = 0;
    // Whatever started the tests may ignore the signal.
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, GetParam());
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    EXPECT_EQ(posix_spawn(&child, mProgram.c_str(), &actions, &attributes, words.data(), environ), 0);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    reader = ends[0];
    pollfd output{reader, POLLIN, 0};
    EXPECT_EQ(poll(&output, 1, 240000), 1);
    return child;
  }

  ModuleFolders mMore{mFolder, "more"};
  std::string mBefore = getenv("TEMP") == nullptr ? "" : getenv("TEMP");
  std::string mTemporary;
};

TEST_P(ToolModulesSignal, LeavesNoFolderOfLinks) {
  int reader = -1;
  pid_t const child = Start(reader);
  std::vector<fs::path> const folders = OwnFolders(mTemporary);
  ASSERT_EQ(folders.size(), 1u);
  EXPECT_TRUE(fs::is_symlink(folders[0] / "a.tdx"));
  EXPECT_TRUE(fs::is_regular_file(folders[0] / "b.tdx/Contents/Resources/SKPLUGINUIDS.txt"));
  kill(child, GetParam());
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  close(reader);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), GetParam());
  EXPECT_TRUE(fs::is_empty(mTemporary));
  // What the links lead to is still there.
  EXPECT_EQ(Formats({"--modules", mModules.Path(), "--modules", mMore.Path()}), std::string("aaa bbb ") + kNative);
}

INSTANTIATE_TEST_SUITE_P(Ending, ToolModulesSignal, testing::Values(SIGINT, SIGHUP, SIGTERM));

TEST_F(ToolModules, CanBeLeftOut) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str());
  Move(mModules, Beside());
  setenv("SENMARK_MODULE_PATH", mModules.Path().c_str(), 1);
  EXPECT_EQ(Formats({"--no-modules"}), kNative);
  EXPECT_EQ(Run({"modules", "--no-modules"}).out, "");
  Outcome const both = Run({"formats", "--no-modules", "--modules", Beside()});
  EXPECT_EQ(both.status, 2);
  EXPECT_EQ(both.err, "senmark: --modules excludes --no-modules (--help tells what there is)\n");
}

TEST_F(ToolModules, MissingFolderOfTheCommandLineIsAnError) {
  Outcome const outcome = Run({"info", Data("example_v2.tdjson"), "--modules", mFolder.Path("none")});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "senmark: --modules " + mFolder.Path("none") + ": there is no such folder\n");
}

TEST_F(ToolModules, ConvertFilesOfTheirKind) {
  mModules.Add("a.tdx", Manifest("a", "\"aaa\"").c_str(), "a", kTestModule);
  ModuleFolders const more(mFolder, "more");
  more.Add("b.tdx", Manifest("b", "\"bbb\"").c_str(), "b", kTestModule);
  std::string const input = mFolder.Write("file.aaa", "\1\2");
  for (std::vector<std::string> options : {std::vector<std::string>{}, {"--modules", more.Path()}}) {
    options.insert(options.end(), {"--modules", mModules.Path(), "samples", input, "bytes", "--csv"});
    Outcome const outcome = Run(options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "seconds,value\n0,1\n0.04,2\n");
  }
}

// modules

TEST_F(ToolModules, ListSaysAllOfThem) {
  mModules.Add("a.tdx",
               R"({"converter":[{"identifier":"org.a","name":[{"localeID":"en_US","value":"Kind A"}],"version":1.5,)"
               R"("force_converter":true,"extensions":["A1","a2"],"check_format":[)"
               R"({"byte_seq":"AB","length":2,"offset":0},{"byte_seq":"0xFF","length":1,"offset":9}]},)"
               R"({"identifier":"org.b","version":1,"extensions":["b"]},7]})",
               "org.module\n");
  Outcome const outcome = Run({"modules", "--modules", mModules.Path()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            mModules.Path() +
                " (--modules)\n"
                "  a.tdx, identifier org.module\n"
                "    converter org.a \"Kind A\", version 1.5, forced, takes files with \"AB\" at byte 0 and 0xFF at "
                "byte 9\n"
                "      .a1\n"
                "      .a2\n"
                "    converter org.b, version 1, takes files that its code checks\n"
                "      .b\n"
                "    faulty from there on: converter 3 of the manifest: \"identifier\" is missing\n" +
                NoOwnFolders());
}

TEST_F(ToolModules, ListSaysItInJson) {
  mModules.Add("a.tdx",
               R"({"converter":[{"identifier":"org.a","version":1.5,"extensions":["a"],"check_format":[)"
               R"({"byte_seq":"AB","length":2,"offset":7}]},7]})",
               "org.module");
  rapidjson::Document const told = RunJson({"modules", "--modules", mModules.Path()});
  rapidjson::Value const& folder = told[0];
  EXPECT_TRUE(folder["problem"].IsNull());
  ASSERT_EQ(folder["modules"].Size(), 1u);
  rapidjson::Value const& module = folder["modules"][0];
  EXPECT_STREQ(module["name"].GetString(), "a.tdx");
  EXPECT_EQ(module["path"].GetString(), mModules.Path() + "/a.tdx");
  EXPECT_STREQ(module["identifier"].GetString(), "org.module");
  EXPECT_TRUE(module["used"].GetBool());
  EXPECT_TRUE(module["problem"].IsNull());
  EXPECT_STREQ(module["fault"].GetString(), "converter 2 of the manifest: \"identifier\" is missing");
  rapidjson::Value const& converter = module["converters"][0];
  EXPECT_STREQ(converter["uid"].GetString(), "org.a");
  EXPECT_STREQ(converter["name"].GetString(), "");
  EXPECT_EQ(converter["version"].GetDouble(), 1.5);
  EXPECT_FALSE(converter["forced"].GetBool());
  EXPECT_STREQ(converter["signatures"][0]["bytes"].GetString(), "AB");
  EXPECT_EQ(converter["signatures"][0]["length"].GetInt(), 2);
  EXPECT_EQ(converter["signatures"][0]["offset"].GetInt(), 7);
  EXPECT_STREQ(converter["extensions"][0]["extension"].GetString(), "a");
  EXPECT_TRUE(converter["extensions"][0]["served"].GetBool());
  EXPECT_TRUE(converter["extensions"][0]["reason"].IsNull());
  EXPECT_STREQ(told[1]["problem"].GetString(), "there is no such folder");
}

TEST_F(ToolModules, ListSaysWhyOneIsNotUsed) {
  mModules.Add("a.tdx", Manifest("org.a", "\"x\"").c_str(), "ida");
  ModuleFolders const more(mFolder, "more");
  more.Add("b.tdx", Manifest("org.b", "\"x\"").c_str(), "idb");
  ModuleFolders const last(mFolder, "last");
  last.Add("A.tdx", Manifest("org.c", "\"c\"").c_str(), "idc");
  fs::create_directory(mFolder.Path("empty"));
  Outcome const outcome = Run({"modules", "--modules", mModules.Path(), "--modules", more.Path(), "--modules",
                               mFolder.Path("empty"), "--modules", last.Path()});
  EXPECT_EQ(outcome.out, mModules.Path() +
                             " (--modules)\n"
                             "  a.tdx, identifier ida\n"
                             "    converter org.a \"Name of org.a\", version 1, takes files that its code checks\n"
                             "      .x\n" +
                             more.Path() +
                             " (--modules)\n"
                             "  b.tdx: not used: it serves no extension, identifier idb\n"
                             "    converter org.b \"Name of org.b\", version 1, takes files that its code checks\n"
                             "      .x: not served: converter org.a of a.tdx comes first\n" +
                             mFolder.Path("empty") + " (--modules): it is empty\n" + last.Path() +
                             " (--modules)\n"
                             "  A.tdx: not used: a module of the same name comes first: " +
                             mModules.Path() + "/a.tdx\n" + NoOwnFolders());
}

TEST_F(ToolModules, ControlCharactersOfAManifestDoNotReachTheTerminal) {
  mModules.Add("a.tdx", Manifest("a\\u001bb", "\"x\\u0007\"").c_str(), "id\033");
  Outcome const outcome = Run({"modules", "--modules", mModules.Path()});
  EXPECT_EQ(outcome.out.find('\033'), std::string::npos);
  EXPECT_EQ(outcome.out.find('\007'), std::string::npos);
  EXPECT_NE(outcome.out.find("converter a?b"), std::string::npos);
}

// modules --why

TEST_F(ToolModules, DecisionIsToldStepByStep) {
  mModules.Add("a.tdx", Manifest("refuse", "\"xyz\"").c_str());
  ModuleFolders const more(mFolder, "more");
  more.Add(
      "b.tdx",
      Manifest("org.b", "\"xyz\",\"bbb\"", R"(,"check_format":[{"byte_seq":"AB","length":2,"offset":1}])").c_str());
  std::string const file = mFolder.Write("file.xyz", "a,b\n1,2\n");
  mOptions = {"--modules", mModules.Path(), "--modules", more.Path()};
  Outcome const outcome = Run({"modules", "--why", file});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out,
            file +
                "\n"
                "  it is no Timed Data JSON; its extension is xyz\n"
                "  not asked: \"Name of org.b\" (org.b) of b.tdx: converter refuse of a.tdx comes first\n"
                "  by extension, xyz: \"Name of refuse\" (refuse) of a.tdx: no, its check function says no\n"
                "  modules, bbb: \"Name of org.b\" (org.b) of b.tdx: no, signature \"AB\" at byte 1: there stands "
                "\",b\"\n"
                "  modules, xyz: \"Name of refuse\" (refuse) of a.tdx: no, its check function says no\n"
                "  the library's own, bvh: the library's own converter for motion capture (BVH): no, its first line "
                "does not begin with HIERARCHY\n"
                "  the library's own, csv: the library's own converter for comma-separated values: yes, it takes any "
                "file\n");
  rapidjson::Document const told = RunJson({"modules", "--why", file});
  EXPECT_EQ(told["file"].GetString(), file);
  EXPECT_STREQ(told["extension"].GetString(), "xyz");
  EXPECT_TRUE(told["format"].IsNull());
  EXPECT_TRUE(told["taken"].GetBool());
  EXPECT_TRUE(told["error"].IsNull());
  EXPECT_STREQ(told["notAsked"][0]["converter"].GetString(), "org.b");
  ASSERT_EQ(told["asked"].Size(), 5u);
  EXPECT_STREQ(told["asked"][1]["turn"].GetString(), "modules");
  EXPECT_STREQ(told["asked"][1]["extension"].GetString(), "bbb");
  EXPECT_STREQ(told["asked"][1]["converter"].GetString(), "org.b");
  EXPECT_EQ(told["asked"][1]["module"].GetString(), more.Path() + "/b.tdx");
  EXPECT_STREQ(told["asked"][1]["answer"].GetString(), "no");
  EXPECT_STREQ(told["asked"][4]["answer"].GetString(), "yes");
  EXPECT_TRUE(told["asked"][4]["module"].IsNull());
}

TEST_F(ToolModules, DecisionOnAFileOfTheFormatIsShort) {
  std::string const file = Data("example_v2.tdjson");
  Outcome const outcome = Run({"modules", "--why", file});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, file + "\n  it is Timed Data JSON, version 2: no converter is asked\n");
}

TEST_F(ToolModules, DecisionThatFailsIsTheFilesFault) {
  mModules.Add("a.tdx", Manifest("fail-check", "\"aaa\"").c_str());
  mOptions = {"--modules", mModules.Path()};
  std::string const file = mFolder.Write("file", "x");
  Outcome const outcome = Run({"modules", "--why", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            file +
                "\n"
                "  it is no Timed Data JSON; its extension is empty\n"
                "  modules, aaa: \"Name of fail-check\" (fail-check) of a.tdx: error, its check function failed with "
                "code 1705 at byte 12, line 3\n"
                "  it is not opened: \"Name of fail-check\" (fail-check) of a.tdx: its check function failed with code "
                "1705 at byte 12, line 3\n");
  EXPECT_STREQ(RunJson({"modules", "--why", file}, 1)["asked"][0]["answer"].GetString(), "error");
}

// why

class ToolWhy : public ToolModules {
 protected:
  ToolWhy() { mOptions = {"--modules", mModules.Path()}; }
};

TEST_F(ToolWhy, FileOfTheFormatIsReadAsItStands) {
  Outcome const outcome = Run({"why", Data("example_v2.tdjson")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "It is Timed Data JSON, version 2 and is read as it stands.\n");
}

TEST_F(ToolWhy, NativeConverterHasNoMoreToSay) {
  Outcome const outcome = Run({"why", mFolder.Write("file.csv", "a\n1\n")});
  EXPECT_EQ(outcome.out,
            "It is converted by the library's own converter for comma-separated values: it takes any file\n");
  Outcome const unknown = Run({"why", mFolder.Write("file.xyz", "a\n1\n")});
  EXPECT_EQ(unknown.out,
            "It is converted by the library's own converter for comma-separated values: it takes any file, and no "
            "converter for its extension does\n");
}

TEST_F(ToolWhy, ConverterExplainsTheFileItself) {
  mModules.Add("a.tdx", Manifest("org.a", "\"aaa\"").c_str(), "a", kExplainingModule);
  Outcome const outcome = Run({"why", mFolder.Write("file.aaa", "x")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "It is converted by \"Name of org.a\" (org.a) of a.tdx: its check function says yes\n"
            "  org.a looks at file.aaa\n"
            "  in two lines, with \xC3\xA4\n");
}

TEST_F(ToolWhy, ConverterThatDeclinesExplainsItToo) {
  mModules.Add("a.tdx", Manifest("refuse", "\"csv\"").c_str(), "a", kExplainingModule);
  std::string const file = mFolder.Write("file.csv", "a\n1\n");
  Outcome const outcome = Run({"why", file});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out,
            "The extension is that of \"Name of refuse\" (refuse) of a.tdx, which does not take it: its check function "
            "says no\n"
            "  refuse looks at file.csv\n"
            "  in two lines, with \xC3\xA4\n"
            "It is converted by the library's own converter for comma-separated values: it takes any file, and no "
            "converter for its extension does\n");
  rapidjson::Document const told = RunJson({"why", file});
  EXPECT_TRUE(told["taken"].GetBool());
  EXPECT_STREQ(told["takenBy"]["converter"].GetString(), "comma-separated values");
  EXPECT_STREQ(told["explanations"][0]["converter"].GetString(), "refuse");
  EXPECT_FALSE(told["explanations"][0]["takes"].GetBool());
  EXPECT_STREQ(told["explanations"][0]["lines"][1].GetString(), "in two lines, with \xC3\xA4");
  EXPECT_TRUE(told["explanations"][0]["error"].IsNull());
}

TEST_F(ToolWhy, CrashOfAnExplanationIsNoFaultOfTheFile) {
  mModules.Add("a.tdx", Manifest("crash-explain", "\"aaa\"").c_str(), "a", kExplainingModule);
  Outcome const outcome = Run({"why", mFolder.Write("file.aaa", "x")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(Lines(outcome.out).back(), "  (its explanation died of signal 9 (Killed))");
}

TEST_F(ToolWhy, CrashOfACheckIsOneOfTheFile) {
  mModules.Add("a.tdx", Manifest("crash-check", "\"aaa\"").c_str(), "a", kExplainingModule);
  Outcome const outcome = Run({"why", mFolder.Write("file.aaa", "x")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "It is not opened: \"Name of crash-check\" (crash-check) of a.tdx: its check function died of signal 9 "
            "(Killed)\n");
}

TEST_F(ToolWhy, ModuleThatIsChosenMustLoad) {
  mModules.Add("a.tdx",
               Manifest("org.a", "\"aaa\"", R"(,"check_format":[{"byte_seq":"x","length":1,"offset":0}])").c_str(),
               "fail-init", kTestModule);
  std::string const file = mFolder.Write("file.aaa", "x");
  Outcome const outcome = Run({"why", file});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out,
            "It is not opened: \"Name of org.a\" (org.a) of a.tdx: its module cannot be loaded: its initialisation "
            "failed with code 1701 at byte 12, line 3\n");
  EXPECT_EQ(Run({"info", file}).status, 1);
}

TEST_F(ToolWhy, FileThatIsNotThereIsRefused) {
  Outcome const outcome = Run({"why", mFolder.Path("none.csv")});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out.rfind("It is not opened: ", 0), 0u);
  EXPECT_NE(outcome.out.find("(code 4)"), std::string::npos);
  rapidjson::Document const told = RunJson({"why", mFolder.Path("none.csv")}, 1);
  EXPECT_FALSE(told["taken"].GetBool());
  EXPECT_TRUE(told["takenBy"].IsNull());
  EXPECT_NE(std::string(told["error"].GetString()).find("(code 4)"), std::string::npos);
}

}  // namespace
