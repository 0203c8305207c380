#include "ModuleHostCheck.h"

#include <dlfcn.h>
#include <signal.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>

#include "Excerpt.h"
#include "FileState.h"
#include "ManifestConverters.h"
#include "ModuleVariants.h"
#include "senmark/Host.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

/// Damaged forms are made of so much of a file.
constexpr std::size_t kMostDamaged = std::size_t{1} << 20;
constexpr std::uint64_t kMostSamplesAtOnce = 1u << 20;
constexpr std::size_t kExcerptWidth = 60;
constexpr char kLoaded[] = "loaded";

std::string ReadBytes(std::string const& path, std::size_t most = static_cast<std::size_t>(-1)) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes;
  char block[65536];
  while (bytes.size() < most && (file.read(block, sizeof block), file.gcount() != 0)) {
    bytes.append(block, std::min(static_cast<std::size_t>(file.gcount()), most - bytes.size()));
  }
  return bytes;
}

bool AreEqual(std::string const& path, std::string const& otherPath) {
  std::ifstream file(path, std::ios::binary);
  std::ifstream other(otherPath, std::ios::binary);
  return std::equal(std::istreambuf_iterator<char>(file), {}, std::istreambuf_iterator<char>(other), {});
}

senmark::Senmark Start(std::string const& folder) {
  senmark::Options options;
  options.pluginFolder = folder;
  return senmark::Senmark(senmark::Library::Linked(), options);
}

/// An error as a host sees it.
std::string Text(senmark::Error const& error) {
  std::string text = error.message() + " (code " + std::to_string(error.code()) + ')';
  if (error.offset() >= 0) {
    text += ", byte " + std::to_string(error.offset());
  }
  if (error.line() >= 0) {
    text += ", line " + std::to_string(error.line());
  }
  return text;
}

/// What the converted text has at the place of an error; empty if that cannot be told.
std::string TextAtError(senmark::Senmark const& manager, std::string const& input, senmark::Error const& error,
                        std::string const& scratch) {
  senmark::Result<void> const saved = senmark::attempt([&] { manager.stream(input).save(scratch); });
  std::optional<Place> const place = saved && error.offset() >= 0
                                         ? FindPlace(scratch, static_cast<std::uint64_t>(error.offset()), kExcerptWidth)
                                         : std::nullopt;
  std::error_code ignored;
  fs::remove(scratch, ignored);
  if (!place) {
    return std::string();
  }
  bool const hasExponent = std::regex_search(place->excerpt, std::regex("[0-9][eE]-[0-9]"));
  return "; there, what was written is " + place->excerpt +
         (hasExponent ? "; a number with a negative exponent cannot be read back: round numbers before they are written"
                      : "");
}

/// Reads a set and tells what is wrong with the times of its samples.
void CheckSamples(senmark::File const& file, senmark::DynamicData const& data, TrialReport& report) {
  std::string const set = "the sample set \"" + data.sampleSetId + "\" ";
  std::uint64_t count = 0;
  std::optional<senmark::Time> last;
  bool isInOrder = true;
  std::uint64_t const window = std::clamp<std::uint64_t>(data.sampleCount, 1, kMostSamplesAtOnce);
  for (senmark::Sample const& sample : file.samples(data.sampleSetId, window).all()) {
    isInOrder = isInOrder && (!last || *last <= sample.time);
    last = sample.time;
    ++count;
  }
  if (!isInOrder || (data.extent && data.extent->end < data.extent->start)) {
    report.Error(set + "is not in the order of time: hosts will not find its samples");
  } else if (count != data.sampleCount) {
    report.Error(set + "has " + std::to_string(data.sampleCount) + " samples, of which " + std::to_string(count) +
                 " can be read");
  }
}

/// What several trials share.
struct Setup {
  std::string folder;  ///< with the module alone in it
  std::string code;
  std::string input;
  std::string scratch;  ///< path of a file that each trial may use
};

/// Walks the tree and reads all samples.
void ReadWhole(senmark::Senmark const& manager, senmark::File const& file, Setup const& setup, TrialReport& report) {
  static_cast<void>(file.info());
  static_cast<void>(file.videoSyncTimes());
  std::size_t nodes = 0;
  file.walk([&](senmark::Node const& node, int) {
    ++nodes;
    if (!node.dynamic) {
      return;
    }
    try {
      CheckSamples(file, *node.dynamic, report);
    } catch (senmark::Error const& error) {
      report.Error("the sample set \"" + node.dynamic->sampleSetId + "\" cannot be read: " + Text(error),
                   TextAtError(manager, setup.input, error, setup.scratch));
    }
  });
  if (nodes == 0) {
    report.Warning("it is converted into nothing: there is no node");
  }
}

/// Whether the code of the module is in this process: that it was needed.
bool IsLoaded(std::string const& code) {
  void* const handle = dlopen(code.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle != nullptr) {
    dlclose(handle);
  }
  return handle != nullptr;
}

/// The file itself, converted twice.
void ConvertTwice(Setup const& setup, std::string const& first, std::string const& second, TrialReport& report) {
  senmark::Senmark const manager = Start(setup.folder);
  try {
    ReadWhole(manager, manager.open(setup.input, first), setup, report);
    manager.open(setup.input, second);
  } catch (senmark::Error const& error) {
    std::string const log = TakeModuleLog();
    report.Error(Text(error), TextAtError(manager, setup.input, error, setup.scratch) + log);
  }
  if (IsLoaded(setup.code)) {
    report.Fact(kLoaded);
  }
  if (!fs::exists(second)) {
    return;
  }
  if (!AreEqual(first, second)) {
    report.Error("two conversions of the file write different bytes");
  }
}

void ConvertElsewhere(Setup const& setup, std::string const& first, std::string const& other, TrialReport& report) {
  senmark::Senmark const manager = Start(setup.folder);
  senmark::Result<void> const opened = senmark::attempt([&] { manager.open(setup.input, other); });
  if (!opened) {
    report.Error("a conversion in another process fails: " + Text(opened.error()), TakeModuleLog());
  } else if (!AreEqual(first, other)) {
    report.Error("conversions of the file in two processes write different bytes");
  }
}

/// A damaged file: whether it is opened does not matter, as long as something can be said of it.
void ConvertDamaged(Setup const& setup, TrialReport& report) {
  senmark::Senmark const manager = Start(setup.folder);
  senmark::Result<void> const opened = senmark::attempt([&] { manager.open(setup.input); });
  // A module that tells in its log what went wrong has turned the exception into this code itself.
  if (!opened && opened.error().code() == ns_sensor::kUnknownAtBorder + 1000 && TakeModuleLog().empty()) {
    report.Error("an exception left the module, or it gave the writer a null text: " + Text(opened.error()));
  }
}

/// Lets no file grow beyond a size for as long as it lives.
class FullDisk {
 public:
  explicit FullDisk(std::uint64_t size) {
    getrlimit(RLIMIT_FSIZE, &mBefore);
    rlimit limit = mBefore;
    limit.rlim_cur = std::min<rlim_t>(size, mBefore.rlim_max);
    mHandler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &mBefore);
    signal(SIGXFSZ, mHandler);
  }
  FullDisk(FullDisk const&) = delete;
  FullDisk& operator=(FullDisk const&) = delete;

 private:
  rlimit mBefore;
  void (*mHandler)(int) = nullptr;
};

void ConvertOntoFullDisk(Setup const& setup, std::string const& output, std::uint64_t size, TrialReport& report) {
  senmark::Senmark const manager = Start(setup.folder);
  std::optional<senmark::Result<void>> opened;
  {
    FullDisk const full(size);
    opened = senmark::attempt([&] { manager.open(setup.input, output); });
  }
  if (*opened) {
    report.Error("the conversion is said to have succeeded, but the disk was full after " +
                 Counted(static_cast<std::size_t>(size), "byte"));
  }
  if (fs::exists(output)) {
    report.Error("a conversion onto a full disk leaves its output behind");
    fs::remove(output);
  }
}

void ConvertWithoutFolder(Setup const& setup, std::string const& output, TrialReport& report) {
  senmark::Senmark const manager = Start(setup.folder);
  if (senmark::attempt([&] { manager.open(setup.input, output); })) {
    report.Error("the conversion is said to have succeeded, but there is no folder for its output");
  }
}

/// A folder with nothing but the module.
std::string FolderOf(ModulePaths const& module, ModuleTrials const& trials) {
  std::string folder = trials.Path("modules");
  fs::create_directory(folder);
  std::string const link = folder + '/' + module.FolderName();
  if (!fs::exists(link)) {
    fs::create_directory_symlink(module.Folder(), link);
  }
  return folder;
}

bool HasSignature(BehaviourRequest const& request) {
  return std::any_of(request.converters.begin(), request.converters.end(),
                     [](ModuleManifest::Converter const& converter) { return converter.hasSignature; });
}

bool IsClaimed(BehaviourRequest const& request, std::string const& extension) {
  return std::any_of(request.converters.begin(), request.converters.end(),
                     [&](ModuleManifest::Converter const& converter) {
                       return std::find(converter.extensions.begin(), converter.extensions.end(), extension) !=
                              converter.extensions.end();
                     });
}

std::vector<Trial> DamagedTrials(Setup const& setup, std::string const& name, ModuleTrials const& trials) {
  std::string const bytes = ReadBytes(setup.input, kMostDamaged);
  std::vector<Variant> variants = Truncated(bytes);
  for (Variant& variant : Mutated(bytes)) {
    variants.push_back(std::move(variant));
  }
  std::string const folder = trials.Path("damaged");
  fs::remove_all(folder);
  fs::create_directory(folder);
  std::vector<Trial> damaged;
  for (Variant const& variant : variants) {
    Setup own = setup;
    own.input = folder + '/' + std::to_string(damaged.size()) + fs::path(setup.input).extension().string();
    std::ofstream(own.input, std::ios::binary) << variant.bytes;
    damaged.push_back(
        {name + ' ' + variant.name, [own](TrialReport& report) { ConvertDamaged(own, report); }, own.input});
  }
  return damaged;
}

std::vector<Trial> UnwritableTrials(Setup const& setup, std::string const& name, std::string const& output,
                                    std::uint64_t size, ModuleTrials const& trials) {
  std::vector<Trial> unwritable;
  std::string const missing = trials.Path("no folder/out.tdjson");
  unwritable.push_back({name + ", without a folder for the output",
                        [setup, missing](TrialReport& report) { ConvertWithoutFolder(setup, missing, report); },
                        {}});
  std::vector<std::uint64_t> limits = {0, 1, 64, size / 2, size - 1};
  limits.erase(std::remove_if(limits.begin(), limits.end(), [size](std::uint64_t limit) { return limit >= size; }),
               limits.end());
  for (std::uint64_t const limit : limits) {
    unwritable.push_back(
        {name + ", onto a full disk",
         [setup, output, limit](TrialReport& report) { ConvertOntoFullDisk(setup, output, limit, report); },
         {}});
  }
  return unwritable;
}

}  // namespace

void CheckConversion(ModulePaths const& module, BehaviourRequest const& request, std::string const& file,
                     bool isAccepted, ModuleTrials& trials, ModuleFindings& findings) {
  std::string const name = fs::path(file).filename().string();
  Setup const setup = {FolderOf(module, trials), module.Full(module.Code()), file, trials.Path("text")};
  std::string const first = trials.Path("first.tdjson");
  std::string const other = trials.Path("other.tdjson");
  for (std::string const& output : {first, other}) {
    fs::remove(output);
  }
  std::string const extension = fs::path(file).extension().string();
  if (!IsClaimed(request, LowerCase(extension.substr(extension.empty() ? 0 : 1)))) {
    findings.Note(name,
                  "the manifest does not name its extension: it comes to the module only if nothing that is "
                  "made for the extension takes it");
  }
  FileState const before(file);
  bool const hasReturned =
      trials.Run({{name, [&](TrialReport& report) { ConvertTwice(setup, first, other, report); }, file}});
  bool const isTaken = isAccepted || (!trials.Facts().empty() && HasSignature(request));
  if (hasReturned && !isTaken) {
    findings.Warning(name, "the module does not take it: it is left to the library's own converters");
  }
  if (hasReturned && fs::exists(first)) {
    trials.Run({{name + ", in a process of its own",
                 [&](TrialReport& report) { ConvertElsewhere(setup, first, other, report); }, file}});
    trials.Run(UnwritableTrials(setup, name, trials.Path("full.tdjson"), fs::file_size(first), trials));
  }
  trials.Run(DamagedTrials(setup, name, trials));
  if (FileState(file) != before) {
    findings.Error(name, "it is changed by its own conversion");
  }
}

}  // namespace senmark_tool
