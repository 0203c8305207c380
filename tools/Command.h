/// What the subcommands share. Each stands in a file of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "InputFile.h"
#include "senmark/Host.h"

namespace senmark_tool {

class ModuleDiscovery;

/// Exit statuses of the program.
enum eExitStatus : int {
  kFine = 0,
  kFileAtFault = 1,
  kUsageAtFault = 2,
};

/// The user asked for something that cannot be: a time text that is none, a node that is not there.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What the user asked for. Members that a subcommand has no option for keep their defaults.
struct Request {
  std::string file;
  std::string path;  ///< of a node
  std::string output;
  bool overwrites = false;  ///< an output that exists
  std::string sampleSet;
  std::string from;  ///< time text; empty: the begin
  std::string to;    ///< time text; empty: the end
  std::optional<std::uint64_t> limit;
  std::string plotPath;  ///< file for a plot of the samples; empty: they are written out
  bool asCsv = false;
  std::size_t width = 0;   ///< of a chart, in columns; 0: as the terminal
  std::size_t height = 0;  ///< of a chart, in lines; 0: as the terminal
  bool asJson = false;
  std::vector<std::string> moduleFolders;  ///< of the command line
  bool withoutModules = false;
  ModuleDiscovery const* modules = nullptr;  ///< what was found; always there when a subcommand runs
};

/// Each writes its answer to `out` and returns an exit status. What goes wrong is thrown, as
/// `senmark::Error` or `UsageError`; then the status follows from that.
int RunInfo(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunTree(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunGet(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunSamples(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunPlot(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunCheck(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunConvert(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunStream(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunFormats(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunModules(senmark::Senmark const& manager, Request const& request, std::ostream& out);
int RunWhy(senmark::Senmark const& manager, Request const& request, std::ostream& out);
/// What `RunModules` does when there is a file.
int RunChoice(senmark::Senmark const& manager, Request const& request, std::ostream& out);

/// Opens the file for a request with a range, in which times may be written as the file writes them.
InputFile OpenForRange(senmark::Senmark const& manager, Request const& request);

/// The samples that the user asked for: those of one set, from `from` to `to`.
///
/// Errors: `UsageError` for a set that is not there and for texts that are no times of the file.
senmark::SampleRange RequestedSamples(InputFile const& input, senmark::Samples const& samples, Request const& request);
senmark::Samples RequestedSet(senmark::File const& file, Request const& request);

/// The extent that a chart shows: what was asked for, as far as the set has samples there. None: nothing.
std::optional<senmark::Extent> RequestedExtent(InputFile const& input, senmark::Samples const& samples,
                                               Request const& request);

}  // namespace senmark_tool
