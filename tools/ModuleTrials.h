/// Things that are tried with a module, in processes of their own.
#pragma once

#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "ModuleFindings.h"
#include "ModuleProcess.h"
#include "ScratchFolder.h"

namespace senmark_tool {

/// What a trial tells from its process.
class TrialReport {
 public:
  explicit TrialReport(std::ostream& out) : mOut(out) {}

  /// Findings. `detail` is put behind the text; findings that differ in it alone count as equal.
  void Error(std::string const& text, std::string const& detail = {}) { Tell('E', text, detail); }
  void Warning(std::string const& text, std::string const& detail = {}) { Tell('W', text, detail); }
  void Note(std::string const& text, std::string const& detail = {}) { Tell('N', text, detail); }
  /// Something for the one who started the trial.
  void Fact(std::string const& text) { Tell('F', text); }

  // For the process itself.
  void Begin(std::size_t trial) { Tell('B', std::to_string(trial)); }
  void End(std::size_t trial) { Tell('D', std::to_string(trial)); }

 private:
  void Tell(char mark, std::string const& text, std::string const& detail = {});

  std::ostream& mOut;
};

struct Trial {
  std::string name;                        ///< where findings say that they were made
  std::function<void(TrialReport&)> work;  ///< runs in another process
  std::string input;                       ///< a file that is worth keeping if the trial fails; or empty
};

/// Runs trials one after another, several in one process as long as nothing ends it. The process has a current folder
/// and a folder for temporary files of its own.
class ModuleTrials {
 public:
  /// limits  of each trial. keepFolder: where inputs of trials that end their process are kept; empty: nowhere.
  ModuleTrials(Limits const& limits, std::string keepFolder, ModuleFindings& findings);

  /// Runs them all, unless too many end their process. Result: whether none did.
  bool Run(std::vector<Trial> const& trials);

  /// Hands on what was found since the last call. Equal findings of several trials become one.
  void Hand();

  /// What the trials of the last run told, by their positions.
  std::map<std::size_t, std::vector<std::string>> const& Facts() const { return mFacts; }

  /// Path of a name in a folder that lives as long as this object.
  std::string Path(std::string const& name) const { return mScratch.Path(name); }

 private:
  struct Found {
    eSeverity severity = eSeverity::kNote;
    std::string where;
    std::string text;
    std::string detail;
    std::set<std::string> others;  ///< names of trials beside that one
  };

  /// Runs trials from `first` on in one process. Result: the first one that was not finished.
  std::size_t RunFrom(std::vector<Trial> const& trials, std::size_t first, ProcessEnd& end);
  void RunHere(std::vector<Trial> const& trials, std::size_t first, std::ostream& out) const;
  void Watch(Trial const& trial, TrialReport& report) const;
  void Add(eSeverity severity, std::string const& where, std::string const& line);
  void AddEnd(Trial const& trial, ProcessEnd const& end);

  Limits mLimits;
  std::string mKeepFolder;
  ModuleFindings& mFindings;
  ScratchFolder mScratch;
  std::vector<Found> mFound;
  std::map<std::size_t, std::vector<std::string>> mFacts;
  std::size_t mKept = 0;
};

/// What the module wrote into its log since the last call, as it is put behind a finding; empty if it keeps none.
std::string TakeModuleLog();

}  // namespace senmark_tool
