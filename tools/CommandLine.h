/// The command line of the program.
#pragma once

#include <functional>
#include <ostream>
#include <string>

#include "Command.h"
#include "ModuleCheckCommand.h"
#include "NewModuleCommand.h"

namespace senmark_tool {

/// The options of all subcommands, and which of these was chosen. It stays where it was filled in.
struct CommandLine {
  using Run = int (*)(senmark::Senmark const&, Request const&, std::ostream&);

  CommandLine() = default;
  CommandLine(CommandLine const&) = delete;
  CommandLine& operator=(CommandLine const&) = delete;

  std::string help;  ///< not empty: it is all that was asked for
  Request request;
  ModuleCheckRequest moduleCheck;
  NewModuleRequest newModule;
  Run run = nullptr;
  std::function<int(std::ostream&)> runAlone;  ///< instead of `run`: without the library in this process
};

/// Fills in what the arguments say.
///
/// Errors: `UsageError` with what is wrong with them, in one line.
void ReadCommandLine(int argc, char const* const* argv, CommandLine& line);

}  // namespace senmark_tool
