/// Runs the command-line program in processes of its own.
#pragma once

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <string>
#include <vector>

#include "NumberSetFile.h"
#include "TempFolder.h"

namespace senmark_test {

struct Outcome {
  int status = -1;
  std::string out;
  std::string err;
};

std::vector<std::string> Lines(std::string const& text);

/// The arguments as a new process takes them, with the null behind. Good for as long as they are not changed.
std::vector<char*> WordsOf(std::vector<std::string>& arguments);

/// A suite of the program, with a folder for its files.
class ToolTest : public testing::Test {
 protected:
  /// Full path of one of the project's data files.
  static std::string Data(std::string const& name);

  std::string Write(NumberSetFile const& file) { return mFolder.Write("file.tdjson", file.Text()); }

  /// Runs to the end. Fails the test when the program is killed.
  Outcome Run(std::vector<std::string> arguments);

  /// Runs with --json and reads what comes. Fails the test when it is no JSON.
  rapidjson::Document RunJson(std::vector<std::string> arguments, int status = 0);

  static rapidjson::Document Parse(std::string const& text);

  rapidjson::Document Recording(std::string const& name) { return Parse(mFolder.Read(Data(name))); }

  TempFolder mFolder;
  std::string mProgram = SENMARK_TOOL;
  /// What stands in front of all arguments. Modules that the build made must not change what a test sees.
  std::vector<std::string> mOptions = {"--no-modules"};
};

}  // namespace senmark_test
