// Code of a module that ends its process while it is loaded.
#include <signal.h>

#include "senmark/PluginAPI.h"

namespace {

struct Dying {
  Dying() { raise(SIGILL); }
} gDying;

}  // namespace

void InitializePlugin(char const*, SK_PLUGIN::HostAPI*, SK_PLUGIN::PluginAPI*, SK_PLUGIN::SK_PluginResult*) {}
