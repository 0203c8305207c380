#include "ModuleCheckCommand.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "Command.h"
#include "ModuleBehaviourCheck.h"
#include "ModuleCodeCheck.h"
#include "ModuleFindings.h"
#include "ModuleLayoutCheck.h"
#include "ModuleManifest.h"
#include "ModulePaths.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

bool IsFile(std::string const& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

std::vector<std::string> AbsoluteFiles(std::vector<std::string> const& files) {
  std::vector<std::string> paths;
  for (std::string const& file : files) {
    if (!IsFile(file)) {
      throw UsageError("there is no file \"" + file + "\"");
    }
    paths.push_back(fs::absolute(file).string());
  }
  return paths;
}

std::string ReadAll(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// The manifest as far as it can be used; adds what is wrong with it.
std::vector<ModuleManifest::Converter> CheckManifest(ModulePaths const& module, ModuleFindings& findings) {
  ModuleManifest const manifest(ReadAll(module.Full(ModulePaths::Manifest())), ModulePaths::Manifest());
  for (Finding const& finding : manifest.Findings().All()) {
    findings.Add(finding);
  }
  return manifest.Findings().HasErrors() ? std::vector<ModuleManifest::Converter>() : manifest.Converters();
}

ModuleFindings Check(ModuleCheckRequest const& request) {
  ModulePaths const module(request.folder);
  BehaviourRequest behaviour;
  behaviour.files = AbsoluteFiles(request.files);
  behaviour.keepFolder = request.keepFolder.empty() ? "" : fs::absolute(request.keepFolder).string();
  constexpr std::uint64_t kLongest = 1000ull * 60 * 60 * 24 * 365;  // clocks take no more than some hundred years
  behaviour.limits.time = std::chrono::milliseconds(std::min(request.milliseconds, kLongest));
  ModuleFindings findings;
  CheckLayout(module, findings);
  bool const canRun = IsFile(module.Full(module.Code())) && CheckCode(module, behaviour.limits, findings);
  if (IsFile(module.Full(ModulePaths::Manifest()))) {
    behaviour.converters = CheckManifest(module, findings);
  }
  if (canRun && !behaviour.converters.empty()) {
    CheckBehaviour(module, behaviour, findings);
  } else {
    findings.Note("behaviour", "not tried: first the errors above have to go");
  }
  return findings;
}

}  // namespace

int RunModuleCheck(ModuleCheckRequest const& request, std::ostream& out) {
  ModuleFindings const findings = Check(request);
  std::string const name = ModulePaths(request.folder).FolderName();
  if (request.asJson) {
    findings.WriteJson(out, name);
  } else {
    findings.Print(out, name);
  }
  return findings.HasErrors() ? kFileAtFault : kFine;
}

}  // namespace senmark_tool
