#include "ModuleTableCheck.h"

#include <filesystem>
#include <fstream>
#include <memory>

#include "FileState.h"
#include "LoadedModule.h"
#include "StubHostAPI.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr int kLoads = 10;
constexpr int kSessions = 3;
constexpr char kAccepted[] = "accepted";

std::string Quoted(std::string const& text) {
  return '"' + text + '"';
}

/// The module as the library would load it.
std::unique_ptr<LoadedModule> Load(ModulePaths const& module) {
  return std::make_unique<LoadedModule>(module.Folder(), StubHostAPI(), LoadedModule::eTable::kPlain);
}

void CheckEntries(SK_PLUGIN::PluginAPI const& table, TrialReport& report) {
  auto const check = [&report](bool isThere, char const* name) {
    if (!isThere) {
      report.Error(std::string("it leaves ") + name + " null: the library fails with code 1500 when it needs it");
    }
  };
  check(table.terminate != nullptr, "terminate");
  check(table.initializeSession != nullptr, "initializeSession");
  check(table.terminateSession != nullptr, "terminateSession");
  check(table.checkFileFormat != nullptr, "checkFileFormat");
  check(table.convertToTDJSON != nullptr, "convertToTDJSON");
}

/// A call that must succeed.
void Require(CallEnd const& end, std::string const& name, TrialReport& report) {
  if (end.HasFailed() && !end.isMissing) {
    report.Error(name + ' ' + end.Text(), TakeModuleLog());
  }
}

/// A call that may fail, but by its record.
void RequireNoThrow(CallEnd const& end, std::string const& name, TrialReport& report) {
  if (end.hasThrown) {
    report.Error(name + ' ' + end.Text(), TakeModuleLog());
  }
}

void LoadRepeatedly(ModulePaths const& module, TrialReport& report) {
  for (int i = 0; i != kLoads; ++i) {
    try {
      std::unique_ptr<LoadedModule> const loaded = Load(module);
      if (i == 0) {
        CheckEntries(loaded->Api().base, report);
      }
      Require(loaded->Terminate(), "terminate", report);
    } catch (LoadFault const& fault) {
      report.Error(fault.what() + std::string(i == 0 ? "" : ", when it is loaded once more"), TakeModuleLog());
      report.Fact("fault");
      return;
    }
  }
}

/// A file for format checks, and whether a module may find fault with it.
struct Candidate {
  std::string path;
  std::string what;
  enum class eKind : std::uint8_t { kGiven, kTiny, kNoFile } kind;
};

struct Answer {
  CallEnd end;
  bool isAccepted = false;
};

Answer Ask(SK_PLUGIN::PluginAPI const& table, Candidate const& candidate, std::string const& uid) {
  Answer answer;
  answer.end = CallModule(table.checkFileFormat, candidate.path.c_str(), uid.c_str(), &answer.isAccepted);
  return answer;
}

void CheckFormat(ModulePaths const& module, Candidate const& candidate, std::string const& uid, TrialReport& report) {
  std::unique_ptr<LoadedModule> const loaded = Load(module);
  SK_PLUGIN::PluginAPI const& table = loaded->Api().base;
  if (table.checkFileFormat == nullptr) {
    return;
  }
  bool const isFile = candidate.kind != Candidate::eKind::kNoFile;
  FileState const before(candidate.path);
  Answer const first = Ask(table, candidate, uid);
  Answer const second = Ask(table, candidate, uid);
  if (first.isAccepted != second.isAccepted || first.end.Text() != second.end.Text()) {
    report.Error("checkFileFormat gives two answers to one question: the library asks more than once");
  }
  RequireNoThrow(first.end, "checkFileFormat", report);
  if (isFile && first.end.HasFailed() && !first.end.hasThrown) {
    report.Warning("checkFileFormat " + first.end.Text() +
                       ": then no other converter is asked, so rather say that it does not take the file",
                   TakeModuleLog());
  }
  if (FileState(candidate.path) != before) {
    report.Error("checkFileFormat changes the file");
  }
  bool const isAccepted = first.isAccepted && !first.end.HasFailed();
  if (isAccepted && candidate.kind != Candidate::eKind::kGiven) {
    report.Note("it takes it, so files of this kind come to no other converter");
  }
  if (isAccepted) {
    report.Fact(kAccepted);
  }
  loaded->Terminate();
}

/// Extension of a path, as the library tells it to a session.
std::string ExtensionOf(std::string const& path) {
  std::string const extension = fs::path(path).extension().string();
  return extension.empty() ? extension : extension.substr(1);
}

void OpenSessions(ModulePaths const& module, std::string const& input, std::string const& output,
                  std::string const& uid, TrialReport& report) {
  std::unique_ptr<LoadedModule> const loaded = Load(module);
  SK_PLUGIN::PluginAPI const& table = loaded->Api().base;
  for (int i = 0; i != kSessions; ++i) {
    void* session = nullptr;
    CallEnd const begin = CallModule(table.initializeSession, uid.c_str(), ExtensionOf(input).c_str(), input.c_str(),
                                     output.c_str(), &session);
    RequireNoThrow(begin, "initializeSession", report);
    if (!begin.HasFailed()) {
      Require(CallModule(table.terminateSession, session), "terminateSession", report);
    }
  }
  loaded->Terminate();
}

/// A conversion whose first object cannot be made: the writer here makes none.
void ConvertInVain(ModulePaths const& module, std::string const& input, std::string const& output,
                   std::string const& uid, TrialReport& report) {
  std::unique_ptr<LoadedModule> const loaded = Load(module);
  SK_PLUGIN::PluginAPI const& table = loaded->Api().base;
  void* session = nullptr;
  CallEnd const begin = CallModule(table.initializeSession, uid.c_str(), ExtensionOf(input).c_str(), input.c_str(),
                                   output.c_str(), &session);
  if (!begin.HasFailed()) {
    bool hasSucceeded = false;
    CallEnd const end = CallModule(table.convertToTDJSON, session, &hasSucceeded);
    RequireNoThrow(end, "convertToTDJSON", report);
    if (!end.HasFailed() && hasSucceeded) {
      report.Error("convertToTDJSON says that it has succeeded when the writer fails");
    }
    RequireNoThrow(CallModule(table.terminateSession, session), "terminateSession", report);
  }
  loaded->Terminate();
}

std::string WriteFile(std::string const& path, std::string const& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
  return path;
}

}  // namespace

bool CheckLoading(ModulePaths const& module, ModuleTrials& trials) {
  bool const hasReturned =
      trials.Run({{"loading", [&module](TrialReport& report) { LoadRepeatedly(module, report); }, {}}});
  return hasReturned && trials.Facts().empty();
}

Accepted CheckTable(ModulePaths const& module, BehaviourRequest const& request, ModuleTrials& trials) {
  using eKind = Candidate::eKind;
  std::string const folder = trials.Path("folder");
  fs::create_directory(folder);
  std::string const empty = WriteFile(trials.Path("empty"), "");
  std::vector<Candidate> candidates = {{empty, "an empty file", eKind::kTiny},
                                       {WriteFile(trials.Path("byte"), "x"), "a file of one byte", eKind::kTiny},
                                       {folder, "a folder", eKind::kNoFile},
                                       {trials.Path("nothing"), "a file that is not there", eKind::kNoFile}};
  for (std::string const& file : request.files) {
    candidates.push_back({file, fs::path(file).filename().string(), eKind::kGiven});
  }
  std::vector<Trial> checks;
  std::vector<std::string> checkedFiles;
  std::vector<Trial> sessions;
  for (ModuleManifest::Converter const& converter : request.converters) {
    std::string const uid = converter.identifier;
    for (Candidate const& candidate : candidates) {
      // With a signature the code is not asked.
      if (!converter.hasSignature) {
        checks.push_back(
            {"format check of " + candidate.what + " by " + Quoted(uid),
             [&module, candidate, uid](TrialReport& report) { CheckFormat(module, candidate, uid, report); },
             {}});
        checkedFiles.push_back(candidate.path);
      }
      if (candidate.kind == eKind::kNoFile) {
        continue;
      }
      std::string const output = WriteFile(trials.Path("unwritten.tdjson"), "");
      std::string const input = candidate.path;
      sessions.push_back(
          {"session of " + Quoted(uid) + " with " + candidate.what,
           [&module, input, output, uid](TrialReport& report) { OpenSessions(module, input, output, uid, report); },
           {}});
      std::string const noPlace = trials.Path("nowhere/out.tdjson");
      sessions.push_back(
          {"conversion of " + candidate.what + " by " + Quoted(uid) + " that cannot be written",
           [&module, input, noPlace, uid](TrialReport& report) { ConvertInVain(module, input, noPlace, uid, report); },
           {}});
    }
  }
  Accepted accepted;
  trials.Run(checks);
  for (auto const& [position, facts] : trials.Facts()) {
    accepted.insert(checkedFiles[position]);
  }
  trials.Run(sessions);
  return accepted;
}

}  // namespace senmark_tool
