// A converter module that tells how it sees a file, to hosts that give it a place for that. What it does wrong is asked
// of it by its identifier and by the uids of its converters.
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "senmark/ExplainingPluginAPI.h"

namespace {

using namespace SK_PLUGIN;

HostAPI const* gHost = nullptr;
bool gDiesAtUnload = false;

/// Code that runs when the module is unloaded, whatever the host calls.
struct Unloaded {
  ~Unloaded() {
    if (gDiesAtUnload) {
      raise(SIGKILL);
    }
  }
} gUnloaded;

bool Asks(std::string const& text, char const* word) {
  return text.find(word) != std::string::npos;
}

void Fail(SK_PluginResult* result, int code) {
  gHost->mHandleExceptionAPI->Static_SetPluginErrorObj(result, static_cast<eErrorCode>(code), 12, 3);
}

void Log(char const* text) {
  char const* const path = std::getenv("SENMARK_MODULE_LOG");
  std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "a");
  if (file != nullptr) {
    std::fputs(text, file);
    std::fclose(file);
  }
}

void Terminate(SK_PluginResult*) {}

void CheckFileFormat(char const*, char const* uid, bool* accepted, SK_PluginResult* result) {
  std::puts("printed by the module");
  if (Asks(uid, "crash-check")) {
    raise(SIGKILL);
  }
  if (Asks(uid, "exit-check")) {
    _exit(0);
  }
  if (Asks(uid, "hang-check")) {
    for (unsigned volatile turns = 0;; ++turns) {
    }
  }
  if (Asks(uid, "throw-check")) {
    throw std::runtime_error("no idea");
  }
  if (Asks(uid, "log-check")) {
    Log("the first\nthe header is damaged\n");
    Fail(result, 1705);
  }
  // The writer is not needed for a check; without one, it must refuse and not crash.
  if (Asks(uid, "write-check")) {
    void* object = nullptr;
    gHost->mTdjsonWriterAPI->Static_CreateStaticDataNum(&object, &object, "a", "a", 1.5, 1, result);
  }
  *accepted = !Asks(uid, "refuse");
}

void ExplainFile(char const* input, char const* uid, void (*line)(void* to, char const* text), void* to,
                 SK_PluginResult* result) {
  std::string const name = input;
  line(to, (std::string(uid) + " looks at " + name.substr(name.rfind('/') + 1)).c_str());
  line(to, "in two\nlines, with \xC3\xA4");
  if (Asks(uid, "crash-explain")) {
    raise(SIGKILL);
  }
  if (Asks(uid, "fail-explain")) {
    Fail(result, 1707);
  }
}

}  // namespace

void InitializePlugin(char const* identifier, HostAPI* hostAPI, PluginAPI* pluginAPI, SK_PluginResult* result) {
  gHost = hostAPI;
  gDiesAtUnload = Asks(identifier, "die-at-unload");
  if (Asks(identifier, "crash-init")) {
    raise(SIGKILL);
  }
  if (Asks(identifier, "fail-init") || (Asks(identifier, "only-48") && pluginAPI->size != 48)) {
    Fail(result, 1701);
    return;
  }
  pluginAPI->terminate = Terminate;
  if (!Asks(identifier, "no-check")) {
    pluginAPI->checkFileFormat = CheckFileFormat;
  }
  if (pluginAPI->size >= sizeof(ExplainingPluginAPI) || Asks(identifier, "writes-behind-the-table")) {
    reinterpret_cast<ExplainingPluginAPI*>(pluginAPI)->explainFile = ExplainFile;
  }
}
