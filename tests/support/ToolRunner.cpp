#include "ToolRunner.h"

#include <fcntl.h>
#include <rapidjson/error/en.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>

extern char** environ;

namespace senmark_test {

std::vector<std::string> Lines(std::string const& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::vector<char*> WordsOf(std::vector<std::string>& arguments) {
  std::vector<char*> words;
  for (std::string& argument : arguments) {
    words.push_back(argument.data());
  }
  words.push_back(nullptr);
  return words;
}

std::string ToolTest::Data(std::string const& name) {
  return std::string(SENMARK_TEST_DATA) + '/' + name;
}

Outcome ToolTest::Run(std::vector<std::string> arguments) {
  std::string const outPath = mFolder.Path("out");
  std::string const errPath = mFolder.Path("err");
  arguments.insert(arguments.begin(), mOptions.begin(), mOptions.end());
  arguments.insert(arguments.begin(), mProgram);
  std::vector<char*> const words = WordsOf(arguments);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  pid_t child = 0;
  int const failure = posix_spawn(&child, mProgram.c_str(), &actions, nullptr, words.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  EXPECT_EQ(failure, 0);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status)) << "the program was killed";
  return {WEXITSTATUS(status), mFolder.Read(outPath), mFolder.Read(errPath)};
}

rapidjson::Document ToolTest::RunJson(std::vector<std::string> arguments, int status) {
  arguments.emplace_back("--json");
  Outcome const outcome = Run(arguments);
  EXPECT_EQ(outcome.status, status) << outcome.err;
  return Parse(outcome.out);
}

rapidjson::Document ToolTest::Parse(std::string const& text) {
  rapidjson::Document document;
  document.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(text.c_str());
  EXPECT_FALSE(document.HasParseError()) << rapidjson::GetParseError_En(document.GetParseError()) << " at "
                                         << document.GetErrorOffset();
  return document;
}

}  // namespace senmark_test
