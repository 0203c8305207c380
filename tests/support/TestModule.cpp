// A converter module as others write theirs: it knows the public headers alone. What it does wrong, and when, is
// asked of it by its identifier and by the uids of its converters; what it does at all is kept in a file.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string>

#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/ITdjsonRoot_v1.h"
#include "senmark/PluginAPI.h"

namespace {

using namespace SK_PLUGIN;

/// Appends a line to the file that the test named.
void Note(std::string const& line) {
  char const* const path = std::getenv("SENMARK_TEST_MODULE_NOTES");
  std::FILE* const file = path == nullptr ? nullptr : std::fopen(path, "a");
  if (file != nullptr) {
    std::fputs((line + '\n').c_str(), file);
    std::fclose(file);
  }
}

/// Code that runs when the module is loaded and unloaded, whatever the library calls.
struct Loaded {
  Loaded() { Note("loaded"); }
  ~Loaded() { Note("unloaded"); }
} gLoaded;

struct Session {
  std::string uid;
  std::string input;
  std::string output;
};

HostAPI const* gHost = nullptr;
std::string gIdentifier;
/// For converters that use one key for all of their conversions.
int gOneKey = 0;

void Fail(SK_PluginResult* result, int code) {
  gHost->mHandleExceptionAPI->Static_SetPluginErrorObj(result, static_cast<eErrorCode>(code), 12, 3);
}

void OwnErrorProc(void* result, eErrorCode code, long long offset, long long line) {
  auto* const record = static_cast<SK_PluginResult*>(result);
  record->mErrorCode = code;
  record->mFileOffset = offset;
  record->mFileLineNo = line;
}

bool Asks(std::string const& text, char const* word) {
  return text.find(word) != std::string::npos;
}

/// Whether the input asks for a conversion that breaks off.
bool BreaksOff(std::string const& input) {
  std::FILE* const file = std::fopen(input.c_str(), "rb");
  int const first = std::fgetc(file);
  std::fclose(file);
  return first == '!';
}

ITdjsonRoot_v1* MakeRoot(void* key, Session const& session, SK_PluginResult* result) {
  void* object = nullptr;
  unsigned char existed = 0;
  bool const ownProc = Asks(session.uid, "own-error-proc");
  gHost->mTdjsonWriterAPI->Static_CreateRoot(
      key, session.output.c_str(), ownProc ? OwnErrorProc : gHost->mHandleExceptionAPI->Static_SetPluginErrorObj,
      &object, &existed, 1, result);
  if (existed != 0) {
    Note("a root was left");
  }
  return static_cast<ITdjsonRoot_v1*>(object);
}

/// One number for each byte of the input, at a frame each.
void Write(Session& session, SK_PluginResult* result) {
  TDJSONWriter_API const& writer = *gHost->mTdjsonWriterAPI;
  void* const key = Asks(session.uid, "one-key") ? static_cast<void*>(&gOneKey) : &session;
  ITdjsonRoot_v1* const root = MakeRoot(key, session, result);
  if (root == nullptr) {
    return;
  }
  root->Acquire();
  root->setSMPTETimeInfo(0, 25, 1, result);
  root->writeVersionToFile(result);
  void* object = nullptr;
  writer.Static_CreateDynamicDataNum(key, &object, 1, result);
  if (object != nullptr) {
    auto* const node = static_cast<ITdjsonDynamicDataNum_v1*>(object);
    node->Acquire();
    node->setDynamicDataInfo("Bytes", "bytes", "bytes", 0, 1, 0, "", result);
    node->setNumberPattern(3, 0, 0, result);
    node->setNumberRange(0, 255, 0, 255, result);
    std::FILE* const file = std::fopen(session.input.c_str(), "rb");
    unsigned char frame = 0;
    for (int byte = std::fgetc(file); byte != EOF && frame < 25; byte = std::fgetc(file)) {
      node->addSampleSMPTE(0, 0, 0, frame++, byte, result);
    }
    std::fclose(file);
    if (BreaksOff(session.input)) {
      // What was made of the file so far is forgotten.
      node->Release();
      root->Release();
      return Fail(result, 1706);
    }
    node->commit(result);
    root->addDynamicData(node, result);
    root->commit(result);
    gHost->mHandleMemoryAPI->Static_RemoveConverterFromMap(key, result);
    if (Asks(session.uid, "late-call")) {
      SK_PluginResult ignored;
      root->writeVersionToFile(&ignored);
    }
    node->Release();
  }
  root->Release();
}

void Terminate(SK_PluginResult* result) {
  Note("terminate");
  if (Asks(gIdentifier, "fail-terminate")) {
    Fail(result, 1702);
  }
  if (Asks(gIdentifier, "throw-terminate")) {
    throw std::string("text");
  }
}

void InitializeSession(char const* uid, char const* extension, char const* input, char const* output, void** session,
                       SK_PluginResult* result) {
  Note(std::string("session ") + uid + ' ' + extension + ' ' +
       (std::filesystem::exists(output) ? "onto an existing file" : "onto nothing"));
  if (Asks(uid, "throw-session")) {
    throw 7;
  }
  if (Asks(uid, "early-root") && BreaksOff(input)) {
    ITdjsonRoot_v1* const root = MakeRoot(&gOneKey, {uid, input, output}, result);
    root->Acquire();
    root->Release();
    return Fail(result, 1703);
  }
  if (Asks(uid, "fail-session")) {
    return Fail(result, 1703);
  }
  if (!Asks(uid, "null-session")) {
    *session = new Session{uid, input, output};
  }
}

void TerminateSession(void* session, SK_PluginResult* result) {
  Note(session == nullptr ? "end of null session" : "end of session");
  bool const fails = session != nullptr && Asks(static_cast<Session*>(session)->uid, "fail-end");
  delete static_cast<Session*>(session);
  if (fails) {
    Fail(result, 1704);
    throw 8;
  }
}

void CheckFileFormat(char const* input, char const* uid, bool* accepted, SK_PluginResult* result) {
  Note(std::string("check ") + uid);
  if (Asks(uid, "throw-check")) {
    throw std::bad_alloc();
  }
  if (Asks(uid, "fail-check")) {
    return Fail(result, 1705);
  }
  if (!Asks(uid, "silent-check")) {
    *accepted = std::filesystem::exists(input) && !Asks(uid, "refuse");
  }
}

void ConvertToTDJSON(void* session, bool* succeeded, SK_PluginResult* result) {
  if (session == nullptr) {
    return;
  }
  auto& opened = *static_cast<Session*>(session);
  Note("convert " + opened.uid);
  if (Asks(opened.uid, "throw-convert")) {
    throw 9;
  }
  if (Asks(opened.uid, "fail-convert")) {
    // An error counts more than the flag.
    *succeeded = true;
    return Fail(result, 1706);
  }
  if (Asks(opened.uid, "remove-output")) {
    std::filesystem::remove(opened.output);
  }
  if (Asks(opened.uid, "write-nothing")) {
    *succeeded = true;
  } else if (!Asks(opened.uid, "silent-convert")) {
    Write(opened, result);
    *succeeded = result->mErrorCode == 0;
  }
}

}  // namespace

void InitializePlugin(char const* identifier, HostAPI* hostAPI, PluginAPI* pluginAPI, SK_PluginResult* result) {
  gHost = hostAPI;
  gIdentifier = identifier;
  bool const asPromised = hostAPI != nullptr && hostAPI->mSize == 32 && hostAPI->mVersion == 1 &&
                          pluginAPI->size == 48 && pluginAPI->version == 1 && pluginAPI->terminate == nullptr &&
                          pluginAPI->convertToTDJSON == nullptr && result->mErrorCode == 0;
  Note("initialize " + gIdentifier + (asPromised ? "" : " with tables that are wrong"));
  if (Asks(gIdentifier, "empty-table")) {
    return;
  }
  pluginAPI->terminate = Terminate;
  pluginAPI->initializeSession = InitializeSession;
  pluginAPI->terminateSession = TerminateSession;
  pluginAPI->checkFileFormat = CheckFileFormat;
  pluginAPI->convertToTDJSON = ConvertToTDJSON;
  if (Asks(gIdentifier, "throw-init")) {
    throw 10;
  }
  if (Asks(gIdentifier, "fail-init")) {
    Fail(result, 1701);
  }
}
