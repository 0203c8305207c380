/// The command-line program. It is a host of the library like any other.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <csignal>
#include <filesystem>
#include <functional>
#include <iostream>
#include <limits>

#include "Command.h"
#include "LibraryModules.h"
#include "MeantWord.h"
#include "ModuleCheckCommand.h"
#include "ModuleSearch.h"
#include "NewModuleCommand.h"
#include "TemporaryFolder.h"
#include "Utf8.h"

namespace {

using senmark_tool::LibraryModules;
using senmark_tool::ModuleDiscovery;
using senmark_tool::Request;
using senmark_tool::SearchedFolder;
using Run = int (*)(senmark::Senmark const&, Request const&, std::ostream&);

constexpr char kOutputProblem[] = "cannot write the output";
constexpr char kTimeHelp[] = "seconds (1.5), a fraction (3/2), or a time as the file writes it";

/// The options of all subcommands, and which of these was chosen.
struct CommandLine {
  Request request;
  senmark_tool::ModuleCheckRequest moduleCheck;
  senmark_tool::NewModuleRequest newModule;
  Run run = nullptr;
  std::function<int(std::ostream&)> runAlone;  ///< instead of `run`: without the library in this process
};

/// A whole number, at least `least`. Only digits are one: no sign, no point, no other base.
CLI::Validator WholeNumber(std::uint64_t least) {
  auto const check = [least](std::string const& text) {
    bool isNumber = !text.empty();
    std::uint64_t number = 0;
    for (char const digit : text) {
      auto const value = static_cast<std::uint64_t>(digit - '0');
      isNumber = isNumber && digit >= '0' && digit <= '9' &&
                 number <= (std::numeric_limits<std::uint64_t>::max() - value) / 10;
      number = number * 10 + value;
    }
    return isNumber && number >= least ? std::string()
                                       : "\"" + text + "\" is no whole number from " + std::to_string(least) + " to " +
                                             std::to_string(std::numeric_limits<std::uint64_t>::max());
  };
  return CLI::Validator(check, "");
}

CLI::App* AddCommand(CLI::App& app, CommandLine& line, char const* name, char const* help, Run run) {
  CLI::App* const command = app.add_subcommand(name, help);
  command->add_flag("--json", line.request.asJson, "machine-readable output");
  command->fallthrough();  // the options of the program may stand behind, too
  command->callback([&line, run] { line.run = run; });
  return command;
}

CLI::App* AddFileCommand(CLI::App& app, CommandLine& line, char const* name, char const* help, Run run) {
  CLI::App* const command = AddCommand(app, line, name, help, run);
  command->add_option("FILE", line.request.file, "a file that the library can open")->required();
  return command;
}

void AddRange(CLI::App& command, CommandLine& line) {
  command.add_option("ID", line.request.sampleSet, "id of a sample set, as \"tree\" shows it")->required();
  command.add_option("--from", line.request.from, std::string("first time: ") + kTimeHelp);
  command.add_option("--to", line.request.to, std::string("last time: ") + kTimeHelp);
}

/// What the writer of a converter module needs.
void AddModuleCommands(CLI::App& app, CommandLine& line) {
  CLI::App* const module = app.add_subcommand("module", "for writers of converter modules");
  CLI::App* const check = module->add_subcommand("check", "tells what is wrong with a module");
  senmark_tool::ModuleCheckRequest& request = line.moduleCheck;
  check->add_option("DIR", request.folder, "the folder of the module, Name.tdx")->required();
  check->add_option("FILE", request.files, "files that the module should read");
  check->add_option("--keep", request.keepFolder, "keep damaged files that the module fails on in this folder");
  check
      ->add_option("--time-limit", request.milliseconds,
                   "for each thing that is tried, in milliseconds: 10000 unless given")
      ->check(WholeNumber(1));
  check->add_flag("--json", request.asJson, "machine-readable output");
  check->callback([&line] {
    line.runAlone = [&line](std::ostream& out) { return senmark_tool::RunModuleCheck(line.moduleCheck, out); };
  });
  module->require_subcommand(1);
}

void AddNewModule(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand("new-module", "a folder with a converter module to begin with");
  senmark_tool::NewModuleRequest& request = line.newModule;
  command->add_option("NAME", request.name, "of the module: letters, digits, - and _")->required();
  command->add_option("DIR", request.folder, "the folder to make")->required();
  command->add_option("--extension", request.extension, "of the files that it is for; the name without this");
  command->add_flag("--json", request.asJson, "machine-readable output");
  command->callback([&line] {
    line.runAlone = [&line](std::ostream& out) { return senmark_tool::RunNewModule(line.newModule, out); };
  });
}

void AddCommands(CLI::App& app, CommandLine& line) {
  using namespace senmark_tool;
  CLI::Option* const modules = app.add_option("--modules", line.request.moduleFolders,
                                              "folder of converter modules that comes before the usual ones; may be "
                                              "given again");
  modules->allow_extra_args(false);
  app.add_flag("--no-modules", line.request.withoutModules, "no converter modules at all")->excludes(modules);
  AddFileCommand(app, line, "info", "what a file says about itself", &RunInfo);
  AddFileCommand(app, line, "tree", "names, kinds and types of all nodes", &RunTree);
  AddFileCommand(app, line, "get", "one node with all its properties", &RunGet)
      ->add_option("PATH", line.request.path, "path of a node, like arm/hand or [\"arm\"][0]")
      ->required();
  CLI::App* const samples = AddFileCommand(app, line, "samples", "times and values of a sample set", &RunSamples);
  AddRange(*samples, line);
  samples->add_option("--limit", line.request.limit, "at most so many samples")->check(WholeNumber(0));
  CLI::Option* const csv = samples->add_flag(
      "--csv", line.request.asCsv, "comma-separated text: RFC 4180 with lines that end in LF, times in seconds");
  csv->excludes("--json");
  CLI::Option* const picture =
      samples->add_option("--plot", line.request.plotPath, "draw the samples into this SVG file");
  picture->excludes(csv)->excludes("--limit");
  samples->add_flag("--force", line.request.overwrites, "replace the SVG file if it exists")->needs(picture);
  CLI::App* const plot = AddFileCommand(app, line, "plot", "a chart of a sample set", &RunPlot);
  AddRange(*plot, line);
  plot->add_option("--width", line.request.width, "columns, instead of the terminal's")->check(WholeNumber(1));
  plot->add_option("--height", line.request.height, "lines, instead of the terminal's")->check(WholeNumber(1));
  AddFileCommand(app, line, "check", "reads all of a file and shows the first error with its place", &RunCheck);
  CLI::App* const convert = AddFileCommand(app, line, "convert", "writes a file as Timed Data JSON", &RunConvert);
  convert->add_option("OUT", line.request.output, "the file to write")->required();
  convert->add_flag("--force", line.request.overwrites, "replace OUT if it exists");
  CLI::App* const stream =
      AddFileCommand(app, line, "stream", "the bytes of a file as Timed Data JSON, on standard output", &RunStream);
  stream->remove_option(stream->get_option("--json"));  // it has nothing to tell beside them
  AddCommand(app, line, "formats", "the kinds of files that can be opened", &RunFormats);
  AddCommand(app, line, "modules", "the converter modules that were found, and why one is not used", &RunModules)
      ->add_option("--why", line.request.file, "which converters are asked for this file, and what they say");
  AddFileCommand(app, line, "why", "what the library does with a file, and how its converter sees it", &RunWhy);
  AddModuleCommands(app, line);
  AddNewModule(app, line);
  app.require_subcommand(1);
}

/// Tells on standard error what went wrong with a file.
void Complain(std::string const& file, std::string const& message) {
  std::cerr << "senmark: " << (file.empty() ? "" : senmark_tool::Printable(file) + ": ")
            << senmark_tool::Printable(message) << '\n';
}

/// What is wrong with the arguments, in one line.
std::string UsageProblem(CLI::App const& app, CLI::ParseError const& error) {
  std::vector<std::string> const unknown = app.remaining(true);
  if (dynamic_cast<CLI::RequiredError const*>(&error) == nullptr || unknown.empty()) {
    return error.what();
  }
  // What is missing may be what was not understood.
  std::string const& word = unknown.front();
  if (word.size() > 1 && word.front() == '-') {
    return "there is no option \"" + word + "\"; names that begin with - stand behind --";
  }
  std::vector<std::string> names;
  CLI::App const* command = &app;
  for (std::vector<CLI::App*> chosen = app.get_subcommands(); !chosen.empty(); chosen = command->get_subcommands()) {
    command = chosen.front();
  }
  for (CLI::App const* const known : command->get_subcommands([](CLI::App const*) { return true; })) {
    names.push_back(known->get_name());
  }
  std::string const meant = senmark_tool::MeantWord(word, names);
  return "there is no command \"" + word + '"' + (meant.empty() ? "" : "; did you mean \"" + meant + "\"?");
}

/// Tells why the work did not begin, or shows the help that was asked for.
int RefuseOrHelp(CLI::App const& app, CLI::ParseError const& error) {
  if (error.get_exit_code() != 0) {
    Complain("", UsageProblem(app, error) + " (--help tells what there is)");
    return senmark_tool::kUsageAtFault;
  }
  app.exit(error);
  std::cout.flush();
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
int RunWithModules(Request request, Run run) {
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
  int fd = 0;
  while (fd >= 0 && fd <= STDERR_FILENO) {
    if (fcntl(fd, F_GETFD) != -1 || open("/dev/null", fd == STDERR_FILENO ? O_WRONLY : O_RDONLY) == fd) {
      ++fd;
    } else {
      fd = -1;
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
    std::ios::sync_with_stdio(false);
    CLI::App app("Looks into files of timed sensor data.", "senmark");
    CommandLine line;
    AddCommands(app, line);
    try {
      app.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
      return RefuseOrHelp(app, error);
    }
    return RunCommand(line);
  } catch (...) {
    return senmark_tool::kFileAtFault;  // no memory is left even for a message
  }
}
