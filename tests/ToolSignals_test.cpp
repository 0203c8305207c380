// What the program leaves behind when a signal ends it: nothing, and no process of its own.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <numeric>
#include <set>
#include <utility>

#include "ModuleFolders.h"
#include "ToolRunner.h"
#include "Witness.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

using senmark_test::Witness;

constexpr int kFarAway = 240000;  // milliseconds

/// The program with pipes for standard input and output; standard error goes to a file.
class PipedProgram {
 public:
  /// ignored: a signal that it finds ignored; all others are as in a new terminal, whatever started the tests.
  PipedProgram(std::vector<std::string> arguments, std::string const& errPath, int ignored = 0) {
    std::vector<char*> const words = senmark_test::WordsOf(arguments);
    std::array<int, 2> input;
    std::array<int, 2> output;
    EXPECT_EQ(pipe2(input.data(), O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(output.data(), O_CLOEXEC), 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t usual;
    sigemptyset(&usual);
    for (int const number : {SIGINT, SIGHUP, SIGTERM, SIGPIPE}) {
      if (number != ignored) {
        sigaddset(&usual, number);
      }
    }
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    EXPECT_EQ(posix_spawn(&mChild, words[0], &actions, &attributes, words.data(), environ), 0);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    mInput = input[1];
    mOutput = output[0];
  }
  ~PipedProgram() {
    CloseOutput();
    close(mInput);
    if (mChild != -1) {
      kill(mChild, SIGKILL);
      AwaitEnd();
    }
  }
  PipedProgram(PipedProgram const&) = delete;
  PipedProgram& operator=(PipedProgram const&) = delete;

  /// False: it never does.
  bool AwaitOutput() const { return Await(mOutput, POLLIN); }
  /// Fills the pipe and waits until some of it was read. False: nobody does.
  bool AwaitReadingOfInput() const {
    fcntl(mInput, F_SETFL, O_NONBLOCK);
    std::array<char, 4096> const bytes{};
    while (write(mInput, bytes.data(), bytes.size()) > 0) {
    }
    return Await(mInput, POLLOUT);
  }
  void CloseOutput() {
    if (mOutput != -1) {
      close(std::exchange(mOutput, -1));
    }
  }
  void Send(int signal) const { kill(mChild, signal); }
  /// The signal that has ended it; 0 if none has.
  int AwaitEnd() {
    waitpid(std::exchange(mChild, -1), &mStatus, 0);
    return WIFSIGNALED(mStatus) ? WTERMSIG(mStatus) : 0;
  }
  /// Of a program that has ended without a signal.
  int ExitStatus() const { return WEXITSTATUS(mStatus); }

 private:
  static bool Await(int fd, short what) {
    pollfd waiting{fd, what, 0};
    return poll(&waiting, 1, kFarAway) == 1 && (waiting.revents & what) != 0;
  }

  pid_t mChild = -1;
  int mStatus = 0;
  int mInput = -1;
  int mOutput = -1;
};

class ToolSignals : public senmark_test::ToolTest, public testing::WithParamInterface<int> {
 protected:
  ~ToolSignals() override { unsetenv("SENMARK_TEST_WITNESS"); }

  std::vector<std::string> Line(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), SENMARK_TOOL);
    return arguments;
  }
  /// A file with more samples than a pipe takes.
  std::string LongFile(std::string const& name) const {
    std::vector<std::int64_t> ticks(20000);
    std::iota(ticks.begin(), ticks.end(), 0);
    return mFolder.Write(name, senmark_test::NumberSetFile::Smpte(25).Add("set", ticks).Text());
  }
  std::set<std::string> Names() const {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.Path(""))) {
      names.insert(entry.path().filename().string());
    }
    names.erase("err");
    return names;
  }
  /// A module with this fault, and a file that it takes.
  std::string AddModule(char const* fault) const {
    return mModules.Add("a.tdx", senmark_test::Manifest("a", "\"fm\"").c_str(), fault, senmark_test::kFaultyModule);
  }
  std::string ModuleFile() const { return mFolder.Write("long.fm", "FMab."); }

  senmark_test::ModuleFolders mModules{mFolder};
};

TEST_P(ToolSignals, EndReadingWithoutATrace) {
  std::string const own = LongFile("file.tdjson");
  std::string const other = LongFile("file.dat");
  for (std::vector<std::string> const& line : std::vector<std::vector<std::string>>{
           {"samples", own, "set"},
           {"samples", other, "set", "--from", "00:00:00:01"},  // which keeps the converted text
           {"stream", own}}) {
    PipedProgram program(Line(line), mFolder.Path("err"));
    ASSERT_TRUE(program.AwaitOutput()) << line[0];
    EXPECT_NE(mFolder.TempNames(), "") << line[0];
    program.Send(GetParam());
    EXPECT_EQ(program.AwaitEnd(), GetParam()) << line[0];
    EXPECT_EQ(mFolder.TempNames(), "") << line[0];
    EXPECT_EQ(mFolder.Read(mFolder.Path("err")), "") << line[0];
  }
}

TEST_P(ToolSignals, EndAConversionWithoutATrace) {
  AddModule("await");
  std::string const input = ModuleFile();
  mFolder.Write("result.tdjson", "old");
  std::set<std::string> const names = Names();
  PipedProgram program(Line({"--modules", mModules.Path(), "convert", "--force", input, mFolder.Path("result.tdjson")}),
                       mFolder.Path("err"));
  ASSERT_TRUE(program.AwaitReadingOfInput());
  EXPECT_NE(Names(), names);
  program.Send(GetParam());
  EXPECT_EQ(program.AwaitEnd(), GetParam());
  EXPECT_EQ(Names(), names);
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(mFolder.Read(mFolder.Path("result.tdjson")), "old");
}

TEST_P(ToolSignals, EndTheProcessesThatTryAModule) {
  std::string const module = AddModule("stay-check");
  std::string const input = ModuleFile();
  std::set<std::string> const names = Names();
  for (std::vector<std::string> const& line :
       std::vector<std::vector<std::string>>{{"module", "check", module, input, "--time-limit", "240000"},
                                             {"--modules", mModules.Path(), "modules", "--why", input}}) {
    Witness witness;
    setenv("SENMARK_TEST_WITNESS", std::to_string(witness.WritingEnd()).c_str(), 1);
    PipedProgram program(Line(line), mFolder.Path("err"));
    char byte = 0;
    ASSERT_TRUE(witness.Read(byte)) << line[0];
    ASSERT_TRUE(witness.Read(byte)) << line[0];
    EXPECT_NE(mFolder.TempNames(), "") << line[0];
    program.Send(GetParam());
    EXPECT_EQ(program.AwaitEnd(), GetParam()) << line[0];
    EXPECT_TRUE(witness.AwaitTheEndOfOthers()) << line[0];
    EXPECT_EQ(mFolder.TempNames(), "") << line[0];
    EXPECT_EQ(Names(), names) << line[0];
  }
}

INSTANTIATE_TEST_SUITE_P(
    Tool, ToolSignals, testing::Values(SIGINT, SIGHUP, SIGTERM), [](testing::TestParamInfo<int> const& row) {
      return std::string(row.param == SIGINT ? "Interrupt" : row.param == SIGHUP ? "HangUp" : "Terminate");
    });

TEST_F(ToolSignals, IgnoredSignalStaysIgnored) {
  std::string const file = LongFile("file.tdjson");
  auto* const before = signal(SIGHUP, SIG_IGN);
  PipedProgram program(Line({"stream", file}), mFolder.Path("err"), SIGHUP);
  signal(SIGHUP, before);
  ASSERT_TRUE(program.AwaitOutput());
  program.Send(SIGHUP);
  // It goes on, and finds nobody who reads.
  program.CloseOutput();
  EXPECT_EQ(program.AwaitEnd(), SIGPIPE);
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(mFolder.Read(mFolder.Path("err")), "");
}

TEST_F(ToolSignals, PipeWithoutAReaderIsNoSignalWhereThatIsIgnored) {
  std::string const file = LongFile("file.tdjson");
  auto* const before = signal(SIGPIPE, SIG_IGN);
  PipedProgram program(Line({"stream", file}), mFolder.Path("err"), SIGPIPE);
  signal(SIGPIPE, before);
  program.CloseOutput();
  EXPECT_EQ(program.AwaitEnd(), 0);
  EXPECT_EQ(program.ExitStatus(), 1);
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(mFolder.Read(mFolder.Path("err")), "");
}

/// Where it is ignored, a process is gone without a word as soon as it has ended.
TEST_F(ToolSignals, SignalOfAChildIsNotIgnored) {
  std::string const module = AddModule("good");
  std::string const input = ModuleFile();
  std::string const usual = Run({"module", "check", module, input}).out;
  std::string const outPath = mFolder.Path("answer");
  std::vector<std::string> line = Line({"module", "check", module, input, "--time-limit", "240000"});
  std::vector<char*> const words = senmark_test::WordsOf(line);
  pid_t const child = fork();
  if (child == 0) {
    signal(SIGCHLD, SIG_IGN);
    dup2(open(outPath.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDOUT_FILENO);
    execv(words[0], words.data());
    _exit(127);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(mFolder.Read(outPath), usual);
  EXPECT_NE(usual, "");
}

}  // namespace
