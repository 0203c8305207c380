#include "CommandLine.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <limits>
#include <sstream>
#include <vector>

#include "MeantWord.h"

namespace senmark_tool {

namespace {

constexpr char kTimeHelp[] = "seconds (1.5), a fraction (3/2), or a time as the file writes it";

/// A whole number, at least `least`. Only digits are one: no sign, no point, no other base. To be used as a
/// transformation, for what it checks is then read without zeros in front, which would stand for another base.
CLI::Validator WholeNumber(std::uint64_t least) {
  auto const read = [least](std::string& text) {
    bool isNumber = !text.empty();
    std::uint64_t number = 0;
    for (char const digit : text) {
      auto const value = static_cast<std::uint64_t>(digit - '0');
      isNumber = isNumber && digit >= '0' && digit <= '9' &&
                 number <= (std::numeric_limits<std::uint64_t>::max() - value) / 10;
      number = number * 10 + value;
    }
    if (!isNumber || number < least) {
      return "\"" + text + "\" is no whole number from " + std::to_string(least) + " to " +
             std::to_string(std::numeric_limits<std::uint64_t>::max());
    }
    text = std::to_string(number);
    return std::string();
  };
  return CLI::Validator(read, "");
}

CLI::App* AddCommand(CLI::App& app, CommandLine& line, char const* name, char const* help, CommandLine::Run run) {
  CLI::App* const command = app.add_subcommand(name, help);
  command->add_flag("--json", line.request.asJson, "machine-readable output");
  command->fallthrough();  // the options of the program may stand behind, too
  command->callback([&line, run] { line.run = run; });
  return command;
}

CLI::App* AddFileCommand(CLI::App& app, CommandLine& line, char const* name, char const* help, CommandLine::Run run) {
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
  ModuleCheckRequest& request = line.moduleCheck;
  check->add_option("DIR", request.folder, "the folder of the module, Name.tdx")->required();
  check->add_option("FILE", request.files, "files that the module should read");
  check->add_option("--keep", request.keepFolder, "keep damaged files that the module fails on in this folder");
  check
      ->add_option("--time-limit", request.milliseconds,
                   "for each thing that is tried, in milliseconds: 10000 unless given")
      ->transform(WholeNumber(1));
  check->add_flag("--json", request.asJson, "machine-readable output");
  check->callback(
      [&line] { line.runAlone = [&line](std::ostream& out) { return RunModuleCheck(line.moduleCheck, out); }; });
  module->require_subcommand(1);
}

void AddNewModule(CLI::App& app, CommandLine& line) {
  CLI::App* const command = app.add_subcommand("new-module", "a folder with a converter module to begin with");
  NewModuleRequest& request = line.newModule;
  command->add_option("NAME", request.name, "of the module: letters, digits, - and _")->required();
  command->add_option("DIR", request.folder, "the folder to make")->required();
  command->add_option("--extension", request.extension, "of the files that it is for; the name without this");
  command->add_flag("--json", request.asJson, "machine-readable output");
  command->callback(
      [&line] { line.runAlone = [&line](std::ostream& out) { return RunNewModule(line.newModule, out); }; });
}

void AddCommands(CLI::App& app, CommandLine& line) {
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
  samples->add_option("--limit", line.request.limit, "at most so many samples")->transform(WholeNumber(0));
  CLI::Option* const csv = samples->add_flag(
      "--csv", line.request.asCsv, "comma-separated text: RFC 4180 with lines that end in LF, times in seconds");
  csv->excludes("--json");
  CLI::Option* const picture =
      samples->add_option("--plot", line.request.plotPath, "draw the samples into this SVG file");
  picture->excludes(csv)->excludes("--limit");
  samples->add_flag("--force", line.request.overwrites, "replace the SVG file if it exists")->needs(picture);
  CLI::App* const plot = AddFileCommand(app, line, "plot", "a chart of a sample set", &RunPlot);
  AddRange(*plot, line);
  plot->add_option("--width", line.request.width, "columns, instead of the terminal's")->transform(WholeNumber(1));
  plot->add_option("--height", line.request.height, "lines, instead of the terminal's")->transform(WholeNumber(1));
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
  std::string const meant = MeantWord(word, names);
  return "there is no command \"" + word + '"' + (meant.empty() ? "" : "; did you mean \"" + meant + "\"?");
}

}  // namespace

void ReadCommandLine(int argc, char const* const* argv, CommandLine& line) {
  CLI::App app("Looks into files of timed sensor data.", "senmark");
  AddCommands(app, line);
  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& error) {
    if (error.get_exit_code() != 0) {
      throw UsageError(UsageProblem(app, error) + " (--help tells what there is)");
    }
    std::ostringstream help;
    app.exit(error, help);
    line.help = help.str();
  }
}

}  // namespace senmark_tool
