/// The command-line program. It is a host of the library like any other.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <iostream>

#include "Command.h"
#include "CommandLine.h"
#include "LibraryModules.h"
#include "ModuleSearch.h"
#include "TemporaryFolder.h"
#include "Utf8.h"

namespace {

using senmark_tool::CommandLine;
using senmark_tool::LibraryModules;
using senmark_tool::ModuleDiscovery;
using senmark_tool::Request;
using senmark_tool::SearchedFolder;

constexpr char kOutputProblem[] = "cannot write the output";

/// Tells on standard error what went wrong with a file.
void Complain(std::string const& file, std::string const& message) {
  std::cerr << "senmark: " << (file.empty() ? "" : senmark_tool::Printable(file) + ": ")
            << senmark_tool::Printable(message) << '\n';
}

int ShowHelp(std::string const& help) {
  std::cout << help << std::flush;
  if (std::cout.fail()) {
    Complain("", kOutputProblem);
    return senmark_tool::kFileAtFault;
  }
  return senmark_tool::kFine;
}

/// Whether what reads the output has seen enough and is gone, which is no news to anybody.
bool HasNoReader() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

/// While it lives, the first write to standard output that fails ends the work by an exception, so that all that
/// was opened and made for it is given back.
class ThrowingOutput {
 public:
  /// signalBefore receives what the signal of a pipe without a reader did so far.
  explicit ThrowingOutput(void (*&signalBefore)(int)) {
    signalBefore = std::signal(SIGPIPE, SIG_IGN);
    std::cout.exceptions(std::ios::badbit | std::ios::failbit);
  }
  ~ThrowingOutput() { std::cout.exceptions(std::ios::goodbit); }
  ThrowingOutput(ThrowingOutput const&) = delete;
  ThrowingOutput& operator=(ThrowingOutput const&) = delete;
};

/// With the library started and its modules found.
int RunWithModules(Request request, CommandLine::Run run) {
  ModuleDiscovery const found(request.withoutModules ? std::vector<SearchedFolder>()
                                                     : senmark_tool::SearchModules(request.moduleFolders));
  request.modules = &found;
  LibraryModules const modules(found);
  senmark::Options options;
  options.pluginFolder = modules.Folder();
  senmark::Senmark const manager(senmark::Library::Linked(), options);
  return run(manager, request, std::cout);
}

/// A pipe would be waited for, perhaps without end, and a device be read without one; neither can be mapped.
void RefuseWhatIsNoFile(std::string const& path) {
  std::error_code ignored;
  std::filesystem::file_status const status = std::filesystem::status(path, ignored);
  if (std::filesystem::is_fifo(status) || std::filesystem::is_socket(status)) {
    throw std::runtime_error("it is a pipe, not a file");
  }
  if (std::filesystem::is_character_file(status) || std::filesystem::is_block_file(status)) {
    throw std::runtime_error("it is a device, not a file");
  }
}

/// Without them, a file of the library's could get their number and the answer or a complaint in it. Writing to the
/// output that was not given fails as before.
void OpenStandardDescriptors() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    bool const isOpen = fcntl(fd, F_GETFD) != -1;
    // A new one takes the lowest number that is free.
    if (!isOpen && open("/dev/null", fd == STDERR_FILENO ? O_WRONLY : O_RDONLY) != fd) {
      return;
    }
  }
}

int RunCommand(CommandLine const& line) {
  std::string const& file = line.request.file;
  void (*pipeSignal)(int) = SIG_DFL;
  try {
    ThrowingOutput const throwing(pipeSignal);
    senmark_tool::TemporaryFolder const temporary;
    RefuseWhatIsNoFile(file);
    int const status = line.runAlone ? line.runAlone(std::cout) : RunWithModules(line.request, line.run);
    std::cout.flush();
    return status;
  } catch (std::ios_base::failure const&) {
    if (!HasNoReader()) {
      Complain("", kOutputProblem);
    } else if (pipeSignal != SIG_IGN) {
      // Nothing is left to clear away, so that it can die as other programs do.
      std::signal(SIGPIPE, SIG_DFL);
      std::raise(SIGPIPE);
    }
  } catch (senmark_tool::ModuleFolderError const& error) {
    Complain("", error.what());
    return senmark_tool::kUsageAtFault;
  } catch (senmark_tool::UsageError const& error) {
    Complain(file, error.what());
    return senmark_tool::kUsageAtFault;
  } catch (senmark::Error const& error) {
    Complain(file, error.message() + " (code " + std::to_string(error.code()) + ")");
  } catch (std::filesystem::filesystem_error const& error) {
    Complain(file, "cannot use \"" + error.path1().string() + "\": " + error.code().message());
  } catch (std::exception const& error) {
    Complain(file, error.what());
  }
  return senmark_tool::kFileAtFault;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    OpenStandardDescriptors();
    std::signal(SIGCHLD, SIG_DFL);  // where it is ignored, children cannot be waited for
    std::ios::sync_with_stdio(false);
    CommandLine line;
    try {
      ReadCommandLine(argc, argv, line);
    } catch (senmark_tool::UsageError const& error) {
      Complain("", error.what());
      return senmark_tool::kUsageAtFault;
    }
    return line.help.empty() ? RunCommand(line) : ShowHelp(line.help);
  } catch (...) {
    return senmark_tool::kFileAtFault;  // no memory is left even for a message
  }
}
