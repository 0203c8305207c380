#include "ModuleBehaviourCheck.h"

#include <filesystem>

#include "ModuleHostCheck.h"
#include "ModuleTableCheck.h"
#include "ModuleTrials.h"

namespace senmark_tool {

void CheckBehaviour(ModulePaths const& module, BehaviourRequest const& request, ModuleFindings& findings) {
  ModuleTrials trials(request.limits, request.keepFolder, findings);
  bool const canBeLoaded = CheckLoading(module, trials);
  trials.Hand();
  if (!canBeLoaded) {
    findings.Note("behaviour", "nothing else was tried, as the module cannot even be loaded and ended");
    return;
  }
  Accepted const accepted = CheckTable(module, request, trials);
  trials.Hand();
  for (std::string const& file : request.files) {
    CheckConversion(module, request, file, accepted.count(file) != 0, trials, findings);
    trials.Hand();
  }
  if (request.files.empty()) {
    findings.Note("behaviour", "no file was given: with some that the module should read, far more can be tried");
  }
}

}  // namespace senmark_tool
