#include "ModuleTrials.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <utility>

#include "ProcessTraces.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kLogVariable[] = "SENMARK_MODULE_LOG";
/// How much of ended processes there may be in one run before the rest is given up. One that has to be waited for
/// counts more.
constexpr std::size_t kMostDeaths = 12;
constexpr std::size_t kWeightOfWaiting = 4;
/// Between a text and its detail.
constexpr char kDetailMark = '\t';
/// What the library itself prints when one of its own converters cannot open a file.
constexpr char kOwnOutput[] = "ERROR Opening File ";

std::string ReadAll(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// A first line of what is not the library's own.
std::string ForeignOutput(std::string const& output) {
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, sizeof kOwnOutput - 1, kOwnOutput) != 0) {
      return line;
    }
  }
  return std::string();
}

void FlushOutput() {
  std::cout.flush();
  std::fflush(nullptr);
}

}  // namespace

void TrialReport::Tell(char mark, std::string const& text, std::string const& detail) {
  std::string line = mark + text + kDetailMark + detail;
  std::replace(line.begin(), line.end(), '\n', ' ');
  mOut << line + '\n';
}

ModuleTrials::ModuleTrials(Limits const& limits, std::string keepFolder, ModuleFindings& findings)
    : mLimits(limits), mKeepFolder(std::move(keepFolder)), mFindings(findings) {}

bool ModuleTrials::Run(std::vector<Trial> const& trials) {
  mFacts.clear();
  std::size_t deaths = 0;
  std::size_t suspect = trials.size();
  for (std::size_t first = 0; first < trials.size();) {
    ProcessEnd end;
    std::size_t const stopped = RunFrom(trials, first, end);
    if (suspect == first && stopped != first) {
      Add(eSeverity::kWarning, trials[first].name,
          "the process ended here after other trials in it, but not when this one was the first");
    }
    if (stopped == trials.size()) {
      break;
    }
    suspect = trials.size();
    if (stopped != first) {
      // What went before may be to blame: it has to happen once more, in a process of its own. Time that was over
      // is no suspicion, as all of them share it.
      suspect = end.kind == ProcessEnd::eKind::kTimedOut ? trials.size() : stopped;
      first = stopped;
      continue;
    }
    AddEnd(trials[first], end);
    ++first;
    deaths += end.kind == ProcessEnd::eKind::kTimedOut ? kWeightOfWaiting : 1;
    if (deaths >= kMostDeaths && first < trials.size()) {
      Add(eSeverity::kNote, trials[first].name,
          "not tried any more, after so many ends, and neither is what would follow");
      break;
    }
  }
  return deaths == 0;
}

std::size_t ModuleTrials::RunFrom(std::vector<Trial> const& trials, std::size_t first, ProcessEnd& end) {
  for (std::string const& folder : {Path("temporary"), Path("current")}) {
    fs::remove_all(folder);
    fs::create_directory(folder);
  }
  end = RunLimited(mLimits, [&](std::ostream& out) { RunHere(trials, first, out); });
  std::size_t current = first;
  std::istringstream lines(end.report);
  for (std::string line; std::getline(lines, line);) {
    std::string const text = line.substr(1);
    switch (line.front()) {
      case 'B':
        current = std::stoul(text);
        break;
      case 'D':
        current = std::stoul(text) + 1;
        break;
      case 'E':
        Add(eSeverity::kError, trials[current].name, text);
        break;
      case 'W':
        Add(eSeverity::kWarning, trials[current].name, text);
        break;
      case 'N':
        Add(eSeverity::kNote, trials[current].name, text);
        break;
      default:
        mFacts[current].push_back(text.substr(0, text.find(kDetailMark)));
        break;
    }
  }
  return current;
}

void ModuleTrials::RunHere(std::vector<Trial> const& trials, std::size_t first, std::ostream& out) const {
  for (char const* const name : kTemporaryVariables) {
    setenv(name, Path("temporary").c_str(), 1);
  }
  setenv(kLogVariable, Path("log").c_str(), 1);
  fs::current_path(Path("current"));
  int const output = open(Path("output").c_str(), O_RDWR | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0600);
  dup2(output, STDOUT_FILENO);
  close(output);
  TrialReport report(out);
  for (std::size_t trial = first; trial < trials.size(); ++trial) {
    report.Begin(trial);
    Watch(trials[trial], report);
    report.End(trial);
  }
}

void ModuleTrials::Watch(Trial const& trial, TrialReport& report) const {
  TakeModuleLog();
  ProcessTraces const before = ProcessTraces::Now({Path("temporary"), Path("current")});
  trial.work(report);
  for (Trace const& left : WhatIsLeft(before)) {
    report.Error(left.text, left.detail);
  }
  // The next trial is not to be blamed for it.
  fs::current_path(before.folder);
  for (std::string const& folder : {Path("temporary"), Path("current")}) {
    for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
      fs::remove_all(entry.path());
    }
  }
  FlushOutput();
  std::string const printed = ForeignOutput(ReadAll(Path("output")));
  if (!printed.empty()) {
    report.Error("it prints to standard output, which is the host's", ": " + printed);
  }
  static_cast<void>(!ftruncate(STDOUT_FILENO, 0));
}

void ModuleTrials::Add(eSeverity severity, std::string const& where, std::string const& line) {
  std::size_t const end = std::min(line.find(kDetailMark), line.size());
  std::string const text = line.substr(0, end);
  auto const same = std::find_if(mFound.begin(), mFound.end(),
                                 [&](Found const& found) { return found.severity == severity && found.text == text; });
  if (same == mFound.end()) {
    mFound.push_back({severity, where, text, line.substr(std::min(end + 1, line.size())), {}});
  } else if (same->where != where) {
    same->others.insert(where);
  }
}

void ModuleTrials::AddEnd(Trial const& trial, ProcessEnd const& end) {
  std::string text = "it " + end.Text();
  if (!trial.input.empty() && !mKeepFolder.empty()) {
    fs::create_directories(mKeepFolder);
    std::string const kept = mKeepFolder + '/' + std::to_string(++mKept) + fs::path(trial.input).extension().string();
    fs::copy_file(trial.input, kept, fs::copy_options::overwrite_existing);
    text += "; the file is kept as " + kept;
  }
  // Each is a matter of its own.
  mFound.push_back({eSeverity::kError, trial.name, text, {}, {}});
}

void ModuleTrials::Hand() {
  for (Found const& found : mFound) {
    std::size_t const others = found.others.size();
    mFindings.Add({found.severity,
                   found.where,
                   {},
                   found.text + found.detail + (others == 0 ? "" : " (and " + Counted(others, "other trial") + ')')});
  }
  mFound.clear();
}

std::string TakeModuleLog() {
  char const* const path = std::getenv(kLogVariable);
  if (path == nullptr) {
    return std::string();
  }
  std::istringstream text(ReadAll(path));
  std::error_code ignored;
  fs::remove(path, ignored);
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) {
    if (std::find(lines.begin(), lines.end(), line) == lines.end()) {
      lines.push_back(line);
    }
  }
  std::string said;
  for (std::string const& line : lines) {
    said += (said.empty() ? "; the module says: " : "; ") + line;
  }
  return said;
}

}  // namespace senmark_tool
