#include "ConverterProbe.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "LoadedModule.h"
#include "ScratchFolder.h"
#include "StubHostAPI.h"

namespace senmark_tool {

namespace {

/// Where a module may say in words what its codes mean.
constexpr char kLogVariable[] = "SENMARK_MODULE_LOG";

/// Words at the begin of the lines of the report. "...ing" tells how far the process came.
constexpr char kLoadFault[] = "load-fault ";
constexpr char kLoaded[] = "loaded ";
constexpr char kChecking[] = "checking ";
constexpr char kVerdict[] = "verdict ";
constexpr char kCheckFault[] = "check-fault ";
constexpr char kExplaining[] = "explaining ";
constexpr char kLine[] = "line ";
constexpr char kExplainFault[] = "explain-fault ";
constexpr char kUnloading[] = "unloading ";

bool Wants(eProbe probe, eProbe part) {
  return (static_cast<unsigned>(probe) & static_cast<unsigned>(part)) != 0;
}

void Tell(std::ostream& report, char const* word, std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  report << word + text + '\n';
}

void TellLine(void* to, char const* text) {
  Tell(*static_cast<std::ostream*>(to), kLine, text == nullptr ? "" : text);
}

void Check(LoadedModule const& module, std::string const& uid, std::string const& file, std::ostream& report) {
  Tell(report, kChecking, "");
  bool takes = false;
  CallEnd const end = CallModule(module.Api().base.checkFileFormat, file.c_str(), uid.c_str(), &takes);
  if (end.HasFailed()) {
    Tell(report, kCheckFault, end.Text());
  } else {
    Tell(report, kVerdict, takes ? "yes" : "no");
  }
}

void Explain(LoadedModule const& module, std::string const& uid, std::string const& file, std::ostream& report) {
  if (module.Api().explainFile == nullptr) {
    return;
  }
  Tell(report, kExplaining, "");
  CallEnd const end =
      CallModule(module.Api().explainFile, file.c_str(), uid.c_str(), TellLine, static_cast<void*>(&report));
  if (end.HasFailed()) {
    Tell(report, kExplainFault, end.Text());
  }
}

void RunProbe(ServingConverter const& serving, std::string const& file, eProbe probe, std::ostream& report) {
  std::string const& uid = serving.converter->manifest.uid;
  try {
    LoadedModule const module(serving.module->folder.path, StubHostAPI());
    Tell(report, kLoaded, "");
    if (Wants(probe, eProbe::kCheck)) {
      Check(module, uid, file, report);
    }
    if (Wants(probe, eProbe::kExplain)) {
      Explain(module, uid, file, report);
    }
    Tell(report, kUnloading, "");
  } catch (LoadFault const& fault) {
    Tell(report, kLoadFault, fault.what());
  }
}

/// The rest of `line` behind `word`, if it begins with that.
bool Take(std::string const& line, std::string const& word, std::string& rest) {
  if (line.compare(0, word.size(), word) != 0) {
    return false;
  }
  rest = line.substr(word.size());
  return true;
}

/// The place in the answer for an error of what the process was about.
std::string ProbeAnswer::*ErrorPlace(std::string const& stage) {
  return stage == kChecking     ? &ProbeAnswer::checkError
         : stage == kExplaining ? &ProbeAnswer::explanationError
                                : &ProbeAnswer::loadError;
}

ProbeAnswer ReadReport(ProcessEnd const& end) {
  ProbeAnswer answer;
  std::string stage;
  std::string text;
  std::istringstream report(end.report);
  for (std::string line; std::getline(report, line);) {
    if (Take(line, kLine, text)) {
      answer.lines.push_back(text);
    } else if (Take(line, kVerdict, text)) {
      answer.takes = text == "yes";
    } else if (Take(line, kLoadFault, text)) {
      answer.loadError = text;
    } else if (Take(line, kCheckFault, text)) {
      answer.checkError = text;
    } else if (Take(line, kExplainFault, text)) {
      answer.explanationError = text;
    }
    for (char const* const word : {kLoaded, kChecking, kExplaining, kUnloading}) {
      stage = line == word ? line : stage;
    }
  }
  // What a module does when it is unloaded is no answer to what it was asked.
  if (!end.HasReturned() && stage != kUnloading) {
    answer.*ErrorPlace(stage) = end.Text();
  }
  return answer;
}

std::string LastLog(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  std::string last;
  for (std::string line; std::getline(file, line);) {
    last = line.empty() ? last : line;
  }
  return last;
}

}  // namespace

ProbeAnswer ProbeConverter(ServingConverter const& serving, std::string const& file, eProbe probe,
                           Limits const& limits) {
  ScratchFolder const scratch;
  std::string const log = scratch.Path("log");
  ProcessEnd const end = RunLimited(limits, [&](std::ostream& report) {
    setenv(kLogVariable, log.c_str(), 1);
    RunProbe(serving, file, probe, report);
  });
  ProbeAnswer answer = ReadReport(end);
  std::string const said = LastLog(log);
  for (std::string* const error : {&answer.checkError, &answer.loadError, &answer.explanationError}) {
    if (!error->empty() && !said.empty()) {
      *error += " (" + said + ')';
      break;
    }
  }
  return answer;
}

}  // namespace senmark_tool
