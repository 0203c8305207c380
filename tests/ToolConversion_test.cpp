// The program on files of other kinds: writing them as Timed Data JSON, and reading them as if they were.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <rapidjson/document.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <utility>

#include "ModuleFolders.h"
#include "ToolRunner.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

using senmark_test::Lines;
using senmark_test::NumberSetFile;
using senmark_test::Outcome;

constexpr char kSmallBvh[] =
    "HIERARCHY\nROOT hip\n{\n  OFFSET 1 2 3\n  CHANNELS 6 Xposition Yposition Zposition Zrotation Yrotation "
    "Xrotation\n  End Site\n  {\n    OFFSET 0 0 1\n  }\n}\nMOTION\nFrames: 3\nFrame Time: 0.04\n1 2 3 0 0 0\n"
    "4 5 6 0 0 0\n7 8 9 0 0 0\n";

class ToolConversion : public senmark_test::ToolTest {
 protected:
  std::string Output() const { return mFolder.Path("result.tdjson"); }

  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.Path(""))) {
      names.insert(entry.path().filename().string());
    }
    for (char const* const own : {"temporary", "out", "err"}) {
      names.erase(own);
    }
    return names;
  }

  /// Runs a line of a shell, in which the program is "$0" and the folder of the test "$1".
  int Shell(std::string const& line) {
    std::string const command =
        "sh -c '" + line + "' " + SENMARK_TOOL + " '" + mFolder.Path("") + "' 2>'" + mFolder.Path("err") + "'";
    int const status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
};

// convert

TEST_F(ToolConversion, ConvertSaysWhatItWrote) {
  std::string const input = mFolder.Write("table.csv", "a,b\n1,x\n2,y\n3,z\n");
  Outcome const outcome = Run({"convert", input, Output()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
  std::string const size = std::to_string(fs::file_size(Output()));
  EXPECT_EQ(outcome.out,
            "wrote " + Output() + ": " + size + " bytes, 2 groups, 6 static nodes, 0 dynamic nodes, 0 samples\n");
  EXPECT_EQ(Names(), (std::set<std::string>{"result.tdjson", "table.csv"}));
  EXPECT_STREQ(Parse(mFolder.Read(Output()))["version"].GetString(), "tdjson2.0.0");
}

TEST_F(ToolConversion, ConvertSaysItInJson) {
  rapidjson::Document const told = RunJson({"convert", mFolder.Write("walk.bvh", kSmallBvh), Output()});
  EXPECT_STREQ(told["output"].GetString(), Output().c_str());
  EXPECT_EQ(told["bytes"].GetUint64(), fs::file_size(Output()));
  // The joint and its end; an offset of each; position and rotation of the joint.
  EXPECT_EQ(told["groups"].GetInt(), 2);
  EXPECT_EQ(told["staticNodes"].GetInt(), 2);
  EXPECT_EQ(told["dynamicNodes"].GetInt(), 2);
  EXPECT_EQ(told["samples"].GetInt(), 6);
}

TEST_F(ToolConversion, ResultIsTheSameFileToRead) {
  ASSERT_EQ(Run({"convert", Data("dab_30hz.bvh"), Output()}).status, 0);
  EXPECT_EQ(Run({"check", Output()}).status, 0);
  for (std::vector<std::string> arguments : {std::vector<std::string>{"tree"}, {"samples", "5"}, {"get", "mnHips"}}) {
    arguments.insert(arguments.begin() + 1, Data("dab_30hz.bvh"));
    std::string const ofInput = Run(arguments).out;
    arguments[1] = Output();
    EXPECT_EQ(Run(arguments).out, ofInput) << arguments[0];
    EXPECT_NE(ofInput, "");
  }
}

TEST_F(ToolConversion, FileOfTheFormatIsCopied) {
  ASSERT_EQ(Run({"convert", Data("jumping_jacks_v1_pretty.tdjson"), Output()}).status, 0);
  EXPECT_EQ(mFolder.Read(Output()), mFolder.Read(Data("jumping_jacks_v1_pretty.tdjson")));
}

TEST_F(ToolConversion, ConvertReplacesOnlyWithForce) {
  std::string const input = mFolder.Write("table.csv", "a\n1\n");
  mFolder.Write("result.tdjson", "old");
  Outcome const refused = Run({"convert", input, Output()});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.err, "senmark: " + input + ": \"" + Output() + "\" exists already; --force replaces it\n");
  EXPECT_EQ(mFolder.Read(Output()), "old");
  EXPECT_EQ(Run({"convert", input, Output(), "--force"}).status, 0);
  EXPECT_EQ(mFolder.Read(Output()).rfind("{\"version\"", 0), 0u);
}

TEST_F(ToolConversion, ConvertNeverReplacesItsInput) {
  std::string const text = NumberSetFile::Smpte(30).Add("s", {0}).Text();
  std::string const input = mFolder.Write("file.tdjson", text);
  fs::create_symlink(input, mFolder.Path("link"));
  fs::create_hard_link(input, mFolder.Path("hard"));
  for (std::string const& output : {input, mFolder.Path("link"), mFolder.Path("hard"), mFolder.Path("./file.tdjson")}) {
    EXPECT_EQ(Run({"convert", input, output}).status, 2) << output;
    EXPECT_EQ(Run({"convert", input, output, "--force"}).status, 2) << output;
    EXPECT_EQ(Run({"convert", output, input, "--force"}).status, 2) << output;
  }
  EXPECT_EQ(mFolder.Read(input), text);
}

struct Failure {
  char const* name;
  char const* file;
  char const* content;
  char const* message;
};

class FailingConversion : public ToolConversion, public testing::WithParamInterface<Failure> {};

TEST_P(FailingConversion, LeavesNoOutputAndTheOldOneUnharmed) {
  std::string const input = mFolder.Write(GetParam().file, GetParam().content);
  std::set<std::string> names = Names();
  Outcome const outcome = Run({"convert", input, Output()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "senmark: " + input + ": " + GetParam().message + '\n');
  EXPECT_EQ(Names(), names);

  mFolder.Write("result.tdjson", "old");
  names.insert("result.tdjson");
  EXPECT_EQ(Run({"convert", input, Output(), "--force"}).status, 1);
  EXPECT_EQ(mFolder.Read(Output()), "old");
  EXPECT_EQ(Names(), names);

  Outcome const stream = Run({"stream", input});
  EXPECT_EQ(stream.status, 1);
  EXPECT_EQ(stream.out, "");
  EXPECT_EQ(stream.err, outcome.err);
}

INSTANTIATE_TEST_SUITE_P(
    Tool, FailingConversion,
    testing::Values(
        Failure{"InvalidJson", "a.json", "{\"a\":[1,}", "File Cannot be converted. (code 1506)"},
        Failure{"FrameTimeTooSmall", "a.bvh",
                "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\n}\nMOTION\nFrames: 1\nFrame Time: 0.001\n",
                "File Cannot be converted. (code 1508)"},
        Failure{"WrongCountOfNumbers", "a.bvh",
                "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nCHANNELS 3 Xrotation Yrotation Zrotation\n}\nMOTION\nFrames: 1\n"
                "Frame Time: 0.04\n1 2\n",
                "File Cannot be converted. (code 1509)"},
        Failure{"BrokenFileOfTheFormat", "a.tdjson", "{\"version\":\"tdjson2.0.0\",\"dataOutline\":1}",
                "Invalid \"dataOutline\" type, expected type:JSON Array. (code 32)"}),
    [](testing::TestParamInfo<Failure> const& row) { return row.param.name; });

TEST_F(ToolConversion, FullDiskLeavesTheOldOutput) {
  std::string table = "a\n";
  for (int i = 0; i != 20000; ++i) {
    table += "12345\n";
  }
  mFolder.Write("table.csv", table);
  std::string const own = NumberSetFile::Smpte(30).Add("s", std::vector<std::int64_t>(20000, 0)).Text();
  mFolder.Write("own.tdjson", own);
  mFolder.Write("result.tdjson", "old");
  std::set<std::string> const names = Names();
  // No file may grow over 64 blocks of 512 or 1024 bytes.
  for (char const* const input : {"table.csv", "own.tdjson"}) {
    EXPECT_EQ(Shell(std::string("trap \"\" XFSZ; ulimit -f 64; \"$0\" --no-modules convert --force \"$1\"") + input +
                    " \"$1\"result.tdjson"),
              1)
        << input;
    EXPECT_NE(mFolder.Read(mFolder.Path("err")).find("(code "), std::string::npos);
    EXPECT_EQ(mFolder.Read(Output()), "old") << input;
    EXPECT_EQ(Names(), names) << input;
  }
}

TEST_F(ToolConversion, PlacesThatCannotHoldTheResult) {
  std::string const input = mFolder.Write("table.csv", "a\n1\n");
  fs::create_directory(mFolder.Path("folder"));
  for (std::string const& output :
       {mFolder.Path("none/result.tdjson"), mFolder.Path("folder"), std::string("/dev/null")}) {
    Outcome const outcome = Run({"convert", input, output, "--force"});
    EXPECT_EQ(outcome.status, 2) << output;
    EXPECT_NE(outcome.err.find(output.substr(0, output.find("/result"))), std::string::npos) << outcome.err;
  }
}

TEST_F(ToolConversion, MissingInputHasItsCode) {
  std::string const input = mFolder.Path("none.csv");
  Outcome const outcome = Run({"convert", input, Output()});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "senmark: " + input + ": File not exist at input path:" + input + ". (code 4)\n");
  EXPECT_EQ(Names(), std::set<std::string>());
}

// The line that tells of the progress

/// The end of a terminal from which what is shown can be read.
class Terminal {
 public:
  Terminal() : mMaster(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    EXPECT_GE(mMaster, 0);
    EXPECT_EQ(grantpt(mMaster), 0);
    EXPECT_EQ(unlockpt(mMaster), 0);
  }
  ~Terminal() { close(mMaster); }
  Terminal(Terminal const&) = delete;
  Terminal& operator=(Terminal const&) = delete;

  /// The other end, to be closed by the caller.
  int OpenSlave() const {
    char const* const name = ptsname(mMaster);
    return name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
  }

  /// Waits for more of what is shown. False: nobody has the other end any more, or nothing came for so long that
  /// nothing will.
  bool ReadMore() {
    constexpr int kFarAway = 240000;  // milliseconds
    pollfd waiting{mMaster, POLLIN, 0};
    char buffer[256];
    ssize_t const count = poll(&waiting, 1, kFarAway) == 1 ? read(mMaster, buffer, sizeof buffer) : 0;
    mShown.append(buffer, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count > 0;
  }
  std::string const& Shown() const { return mShown; }

 private:
  int mMaster;
  std::string mShown;
};

/// The program with the terminal for standard error, and a pipe for standard input that is open until told otherwise.
class ProgramOnATerminal {
 public:
  ProgramOnATerminal(std::vector<std::string> arguments, std::string const& outPath, Terminal const& terminal) {
    std::vector<char*> const words = senmark_test::WordsOf(arguments);
    int ends[2];
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    mInput = ends[1];
    int const slave = terminal.OpenSlave();
    EXPECT_GE(slave, 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[0], 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_adddup2(&actions, slave, 2);
    int const failure = posix_spawn(&mChild, words[0], &actions, nullptr, words.data(), environ);
    EXPECT_EQ(failure, 0);
    if (failure != 0) {
      mChild = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[0]);
    close(slave);
  }
  ~ProgramOnATerminal() {
    EndInput();
    if (mChild != -1) {
      kill(mChild, SIGKILL);
      AwaitEnd();
    }
  }
  ProgramOnATerminal(ProgramOnATerminal const&) = delete;
  ProgramOnATerminal& operator=(ProgramOnATerminal const&) = delete;

  void EndInput() {
    if (mInput != -1) {
      close(std::exchange(mInput, -1));
    }
  }
  /// Result: as `waitpid` tells it.
  int AwaitEnd() {
    int status = -1;
    waitpid(std::exchange(mChild, -1), &status, 0);
    return status;
  }

 private:
  pid_t mChild = -1;
  int mInput = -1;
};

TEST_F(ToolConversion, LongConversionShowsItsProgressOnATerminal) {
  // A conversion that takes as long as the line needs: its converter goes on when standard input ends.
  senmark_test::ModuleFolders const modules(mFolder);
  modules.Add("a.tdx", senmark_test::Manifest("a", "\"fm\"").c_str(), "await", senmark_test::kFaultyModule);
  std::string const input = mFolder.Write("long.fm", "FMab.");
  Terminal terminal;
  ProgramOnATerminal program({SENMARK_TOOL, "--modules", modules.Path(), "convert", input, Output()},
                             mFolder.Path("out"), terminal);
  std::string const erased = "\r\x1b[K";
  std::string const line = erased + "converting " + input + ": ";
  while (terminal.Shown().size() < line.size()) {
    ASSERT_TRUE(terminal.ReadMore()) << terminal.Shown();
  }
  EXPECT_EQ(terminal.Shown().substr(0, line.size()), line);
  EXPECT_FALSE(fs::exists(Output()));

  program.EndInput();
  // To the end, for the program waits when nobody reads.
  while (terminal.ReadMore()) {
  }
  int const status = program.AwaitEnd();
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << terminal.Shown();
  std::string const shown = terminal.Shown();
  EXPECT_GE(std::stoi(shown.substr(line.size())), 1) << "it comes after a second";
  EXPECT_EQ(shown.substr(shown.size() - erased.size()), erased);
  EXPECT_EQ(mFolder.Read(mFolder.Path("out")).rfind("wrote ", 0), 0u);
}

// stream

TEST_F(ToolConversion, StreamGivesTheBytesThatConvertWrites) {
  for (std::string const& input : {Data("dab_30hz.bvh"), mFolder.Write("table.csv", "a,b\n1,x\n"),
                                   mFolder.Write("some.json", "{\"a\":[1,2,{\"b\":true}]}")}) {
    ASSERT_EQ(Run({"convert", input, Output(), "--force"}).status, 0);
    Outcome const stream = Run({"stream", input});
    EXPECT_EQ(stream.status, 0) << stream.err;
    EXPECT_TRUE(stream.out == mFolder.Read(Output())) << input;
  }
}

TEST_F(ToolConversion, StreamOfAFileOfTheFormatIsTheFile) {
  for (char const* const name : {"weather_montreal_utc_v2.tdjson", "jumping_jacks_v1_pretty.tdjson"}) {
    EXPECT_TRUE(Run({"stream", Data(name)}).out == mFolder.Read(Data(name))) << name;
  }
}

TEST_F(ToolConversion, ReaderThatGoesAwayEndsTheWorkQuietly) {
  fs::copy(Data("dab_30hz.bvh"), mFolder.Path("dab.bvh"));
  auto* const before = signal(SIGPIPE, SIG_DFL);  // whatever started the tests may ignore it, and a shell keeps to that
  for (char const* const work :
       {"stream \"$1\"dab.bvh", "samples --csv \"$1\"dab.bvh 0", "tree \"$1\"dab.bvh --json"}) {
    // The status of the program goes to a file: that of a pipe is the reader's.
    Shell(std::string("{ \"$0\" --no-modules ") + work + "; echo $? >\"$1\"status; } | head -c 1 >\"$1\"first");
    EXPECT_EQ(mFolder.Read(mFolder.Path("first")).size(), 1u);
    EXPECT_EQ(mFolder.Read(mFolder.Path("err")), "") << work;
    std::string const status = mFolder.Read(mFolder.Path("status"));
    // What fits into the pipe as a whole may all have been written. A shell adds 128 to the number of the signal.
    EXPECT_TRUE(status == "141\n" || (status == "0\n" && std::string(work)[1] != 't')) << work << ": " << status;
    EXPECT_EQ(mFolder.TempNames(), "") << work;
  }
  signal(SIGPIPE, before);
}

// Reading

TEST_F(ToolConversion, AllFormatsAreListed) {
  std::string const csv = "csv       Comma Seperated Value\n";
  std::string const out = Run({"formats"}).out;
  EXPECT_EQ(out, "bvh       Biovision Hierarchy\n" + csv +
                     "json      JSON\ntdjson    Timed Data JSON\ntsv       Tab Seperated Value\n"
                     "txt       Tab Seperated Value\n");
  EXPECT_EQ(RunJson({"formats"}).Size(), 6u);
}

struct Table {
  char const* file;
  char const* content;
  char const* tree;
};

class Tables : public ToolConversion, public testing::WithParamInterface<Table> {};

TEST_P(Tables, AreReadByAllSubcommands) {
  std::string const path = mFolder.Write(GetParam().file, GetParam().content);
  EXPECT_EQ(Run({"tree", path}).out, GetParam().tree);
  EXPECT_EQ(Run({"check", path}).out, path + ": no error, 0 samples read\n");
  rapidjson::Document const info = RunJson({"info", path});
  EXPECT_TRUE(info["timeBase"].IsNull());
  EXPECT_EQ(info["duration"]["seconds"].GetDouble(), 0);
  EXPECT_EQ(info["samples"].GetInt(), 0);
  rapidjson::Document const node = RunJson({"get", path, "[0][1]"});
  EXPECT_EQ(node["value"].GetDouble(), 2.5);
  for (char const* const command : {"samples", "plot"}) {
    Outcome const outcome = Run({command, path, "0"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "senmark: " + path + ": no sample set \"0\"; the file has none\n");
  }
  EXPECT_EQ(Names().size(), 1u);
}

constexpr char kTableTree[] =
    "data0 \"a\"  group\n"
    "  data1 \"a 0\"  static, number\n"
    "  data2 \"a 1\"  static, number\n"
    "data3 \"b\"  group\n"
    "  data4 \"b 0\"  static, string\n"
    "  data5 \"b 1\"  static, string\n";

INSTANTIATE_TEST_SUITE_P(Tool, Tables,
                         testing::Values(Table{"table.csv", "a,b\n1,x\n2.5,y\n", kTableTree},
                                         Table{"table.tsv", "a\tb\n1\tx\n2.5\ty\n", kTableTree},
                                         Table{"table.txt", "a\tb\r\n1\tx\r\n2.5\ty\r\n", kTableTree},
                                         Table{"some.json", "{\"a\":[1,2.5],\"c\":null,\"b\":true}",
                                               "matchName0 \"a\"  group\n"
                                               "  matchName1 \"a 0\"  static, number\n"
                                               "  matchName2 \"a 1\"  static, number\n"
                                               "matchName3 \"b\"  static, boolean\n"}),
                         [](testing::TestParamInfo<Table> const& row) {
                           return std::string(fs::path(row.param.file).extension().string().substr(1));
                         });

/// The fields of a line whose fields are quoted or empty, and have no quotes in them.
std::vector<std::string> FieldsOf(std::string const& line) {
  std::vector<std::string> fields;
  for (std::size_t begin = 0; begin < line.size();) {
    bool const isQuoted = line[begin] == '"';
    std::size_t const end = std::min(isQuoted ? line.find('"', begin + 1) : line.find(',', begin), line.size());
    fields.push_back(line.substr(begin + (isQuoted ? 1 : 0), end - begin - (isQuoted ? 1 : 0)));
    begin = end + (isQuoted ? 2 : 1);
  }
  return fields;
}

TEST_F(ToolConversion, RealTableHasItsCells) {
  std::vector<std::string> const lines = Lines(mFolder.Read(Data("weather_death_valley_2021.csv")));
  std::vector<std::string> const headers = FieldsOf(lines[0]);
  rapidjson::Document const tree = RunJson({"tree", Data("weather_death_valley_2021.csv")});
  ASSERT_EQ(tree.Size(), headers.size());
  ASSERT_EQ(lines.size(), 366u);
  for (rapidjson::SizeType column = 0; column != tree.Size(); ++column) {
    EXPECT_EQ(tree[column]["displayName"].GetString(), headers[column]);
    rapidjson::Value const& cells = tree[column]["children"];
    ASSERT_EQ(cells.Size(), lines.size() - 1);
    bool const isText = column < 3;  // station, name and date
    for (rapidjson::SizeType row = 0; row != cells.Size(); ++row) {
      std::vector<std::string> const fields = FieldsOf(lines[row + 1]);
      std::string const cell = column < fields.size() ? fields[column] : std::string();
      ASSERT_STREQ(cells[row]["type"].GetString(), isText ? "string" : "number");
      if (isText) {
        ASSERT_EQ(cells[row]["value"].GetString(), cell);
      } else {
        ASSERT_EQ(cells[row]["value"].GetDouble(), std::strtod(cell.c_str(), nullptr)) << headers[column] << row;
      }
    }
  }
}

TEST_F(ToolConversion, MotionIsReadByAllSubcommands) {
  std::string const path = mFolder.Write("walk.bvh", kSmallBvh);
  EXPECT_EQ(Run({"tree", path}).out,
            "mnhip \"hip\"  group\n"
            "  mnhipOFFSET \"hipOFFSET\"  static, number array\n"
            "  mnhipPOSITION \"hipPOSITION\"  dynamic, number array, 3 samples, id 0\n"
            "  mnhipROTATION \"hipROTATION\"  dynamic, number array, 3 samples, id 1\n"
            "  mnhipEnd \"hipEnd\"  group\n"
            "    mnhipEndOFFSET \"hipEndOFFSET\"  static, number array\n");
  EXPECT_NE(Run({"info", path}).out.find("time base   time code, 25 frames per second, from 00:00:00:00\n"),
            std::string::npos);
  EXPECT_EQ(Run({"check", path}).out, path + ": no error, 6 samples read\n");
  EXPECT_EQ(RunJson({"get", path, "mnhip/mnhipOFFSET"})["value"][2].GetDouble(), 3);
  // Positions turn their second and third axis round.
  EXPECT_EQ(Run({"samples", path, "0", "--csv"}).out,
            "seconds,X_POSITION,Y_POSITION,Z_POSITION\n0,1,-2,-3\n0.04,4,-5,-6\n0.08,7,-8,-9\n");
  EXPECT_EQ(Run({"plot", path, "0"}).status, 0);
}

// Less than one frame in a second is none, so that frames are no time.
TEST_F(ToolConversion, DurationOfSlowMotionIsUnknown) {
  std::string text = kSmallBvh;
  std::size_t const time = text.find("Frame Time: ");
  text.replace(time, text.find('\n', time) - time, "Frame Time: 2.5");
  std::string const path = mFolder.Write("slow.bvh", text);
  EXPECT_NE(Run({"info", path}).out.find("\nduration    unknown\n"), std::string::npos) << Run({"info", path}).out;
  EXPECT_NE(Run({"info", "--json", path}).out.find(R"("duration":{"value":0,"scale":0,"seconds":null})"),
            std::string::npos);
}

TEST_F(ToolConversion, TimesOfAConvertedFileAreTaken) {
  std::string const path = mFolder.Write("walk.bvh", kSmallBvh);
  EXPECT_EQ(Run({"samples", path, "0", "--csv", "--from", "00:00:00:01", "--to", "00:00:00:02"}).out,
            "seconds,X_POSITION,Y_POSITION,Z_POSITION\n0.04,4,-5,-6\n0.08,7,-8,-9\n");
  EXPECT_EQ(RunJson({"plot", path, "0", "--from", "00:00:00:01"})["from"]["seconds"].GetDouble(), 0.04);
  Outcome const wrong = Run({"samples", path, "0", "--from", "00:00:00:25"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_NE(wrong.err.find("is no time of this file; its times begin at 00:00:00:00"), std::string::npos);
}

// Places of errors

TEST_F(ToolConversion, ErrorInTheConvertedTextIsShownThere) {
  // A number this small cannot be read back.
  std::string const path = mFolder.Write("small.csv", "value\n1.25e-05\n");
  rapidjson::Document const outcome = RunJson({"check", path}, 1);
  rapidjson::Value const& error = outcome["error"];
  EXPECT_TRUE(error["inConvertedText"].GetBool());
  EXPECT_GT(error["offset"].GetUint64(), fs::file_size(path));
  EXPECT_NE(std::string(error["excerpt"].GetString()).find("1.25e-05"), std::string::npos);
  std::vector<std::string> const lines = Lines(Run({"check", path}).out);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[1], "  at byte " + std::to_string(error["offset"].GetUint64()) +
                          " of the converted text, line 1, column " + std::to_string(error["offset"].GetUint64() + 1));
  EXPECT_EQ(lines[3].substr(4), error["excerpt"].GetString());
}

TEST_F(ToolConversion, ErrorBeforeTheConversionIsShownInTheFile) {
  // The search for the format's first key ends in an error of its own.
  std::string const text = "{\"version\" 5}";
  std::string const path = mFolder.Write("odd.json", text);
  rapidjson::Document const outcome = RunJson({"check", path}, 1);
  rapidjson::Value const& error = outcome["error"];
  ASSERT_GE(error["offset"].GetInt64(), 0);
  EXPECT_FALSE(error["inConvertedText"].GetBool());
  EXPECT_STREQ(error["excerpt"].GetString(), text.c_str());
}

TEST_F(ToolConversion, ErrorOfTheConverterHasNoPlace) {
  rapidjson::Document const outcome = RunJson({"check", mFolder.Write("a.json", "{\"a\":[1,}")}, 1);
  EXPECT_EQ(outcome["error"]["code"].GetInt(), 1506);
  EXPECT_EQ(outcome["error"]["offset"].GetInt(), -1);
  EXPECT_FALSE(outcome["error"].HasMember("excerpt"));
}

}  // namespace
