// Code of a module that exports far more than its entry, and that calls what only its host may have by chance.
#include "senmark/PluginAPI.h"

extern "C" void GetSupportedFormats_1(void* clientObject, void* clientErrorObject, void* clientProcs);

#define LOUD(name)                                              \
  extern "C" __attribute__((visibility("default"))) int name(); \
  int name() {                                                  \
    return 1;                                                   \
  }

LOUD(AName0)
LOUD(AName1)
LOUD(AName2)
LOUD(AName3)
LOUD(AName4)
LOUD(AName5)
LOUD(AName6)
LOUD(AName7)
LOUD(AName8)
LOUD(AName9)
LOUD(AnotherName)
LOUD(YetAnotherName)

void InitializePlugin(char const*, SK_PLUGIN::HostAPI* hostAPI, SK_PLUGIN::PluginAPI*, SK_PLUGIN::SK_PluginResult*) {
  if (hostAPI == nullptr) {
    GetSupportedFormats_1(nullptr, nullptr, nullptr);
  }
}
