// A converter module that does all things right but those that its identifier names. It takes files that begin with
// "FM" and end in a point, and makes one sample of each byte between them; without the point they are damaged.
#include <dlfcn.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/ITdjsonRoot_v1.h"
#include "senmark/ITdjsonStaticDataNum_v1.h"
#include "senmark/PluginAPI.h"

namespace {

using namespace SK_PLUGIN;

HostAPI const* gHost = nullptr;
char gFaults[256] = "";
unsigned gChecks = 0;
unsigned gConversions = 0;

bool Has(char const* fault) {
  return std::strstr(gFaults, fault) != nullptr;
}

void Fail(SK_PluginResult* result, int code, char const* reason) {
  gHost->mHandleExceptionAPI->Static_SetPluginErrorObj(result, static_cast<eErrorCode>(code), -1, -1);
  char const* const path = std::getenv("SENMARK_MODULE_LOG");
  std::FILE* const log = path == nullptr ? nullptr : std::fopen(path, "a");
  if (log != nullptr) {
    std::fprintf(log, "%s\n", reason);
    std::fclose(log);
  }
}

/// At most so many bytes of a file; none of what is no file.
struct Bytes {
  explicit Bytes(char const* path) {
    std::FILE* const file = std::fopen(path, "rb");
    size = file == nullptr ? 0 : std::fread(data, 1, sizeof data, file);
    if (file != nullptr) {
      std::fclose(file);
    }
  }
  bool HasMark() const { return size >= 2 && data[0] == 'F' && data[1] == 'M'; }
  bool IsWhole() const { return HasMark() && data[size - 1] == '.'; }

  unsigned char data[64];
  std::size_t size = 0;
};

void LeaveTemporaryFile() {
  char const* const folder = std::getenv("TMPDIR");
  char path[4096];
  std::snprintf(path, sizeof path, "%s/left-XXXXXX", folder == nullptr ? "/tmp" : folder);
  int const fd = mkstemp(path);
  if (fd != -1) {
    close(fd);
  }
}

/// Until whoever holds the other end of standard input closes it, or is gone.
void AwaitEndOfInput() {
  char bytes[64];
  while (true) {
    ssize_t const count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count == 0 || (count < 0 && errno != EINTR)) {
      return;
    }
  }
}

/// Until somebody ends it and the process that it starts. Each says by a byte that it is there.
[[noreturn]] void StayWithAnother() {
  char const* const witness = std::getenv("SENMARK_TEST_WITNESS");
  int const fd = witness == nullptr ? -1 : std::atoi(witness);
  static_cast<void>(fork());
  static_cast<void>(!write(fd, "x", 1));
  while (true) {
    pause();
  }
}

/// Keeps the code in the process, for a thread that may be anywhere in it.
void StayLoaded() {
  Dl_info own;
  if (dladdr(gFaults, &own) != 0) {
    dlopen(own.dli_fname, RTLD_NOW | RTLD_NODELETE);
  }
}

/// What is done wrong with any file.
void DoWrong() {
  if (Has("await")) {
    AwaitEndOfInput();
  }
  if (Has("leak-descriptor")) {
    std::fopen("/dev/null", "r");
  }
  if (Has("leave-file")) {
    LeaveTemporaryFile();
  }
  if (Has("print")) {
    std::printf("converting\n");
  }
  if (Has("set-locale")) {
    std::setlocale(LC_ALL, std::strcmp(std::setlocale(LC_ALL, nullptr), "C") == 0 ? "C.UTF-8" : "C");
  }
  if (Has("change-folder")) {
    static_cast<void>(!chdir("/"));
  }
  if (Has("leave-thread")) {
    StayLoaded();
    std::thread([] { std::this_thread::sleep_for(std::chrono::hours(1)); }).detach();
  }
}

/// What is done wrong with damaged files.
void DoWrongWithDamage() {
  if (Has("crash")) {
    raise(SIGSEGV);
  }
  if (Has("never-end")) {
    while (true) {
      pause();
    }
  }
  if (Has("out-of-time")) {
    raise(SIGXCPU);  // which the system sends when the time of the processor is over
  }
  if (Has("exit")) {
    std::exit(0);
  }
  if (Has("raise")) {
    throw std::runtime_error("thrown by the module");
  }
}

struct Session {
  std::string input;
  std::string output;
};

class Conversion {
 public:
  Conversion(Session& session, SK_PluginResult* result) : mWriter(*gHost->mTdjsonWriterAPI), mKey(&session) {
    void* object = nullptr;
    unsigned char existed = 0;
    mResult = result;
    mWriter.Static_CreateRoot(mKey, session.output.c_str(), gHost->mHandleExceptionAPI->Static_SetPluginErrorObj,
                              &object, &existed, 1, result);
    mRoot = static_cast<ITdjsonRoot_v1*>(object);
    if (mRoot != nullptr) {
      mRoot->Acquire();
    }
  }
  ~Conversion() {
    if (mRoot != nullptr) {
      SK_PluginResult ignored;
      gHost->mHandleMemoryAPI->Static_RemoveConverterFromMap(mKey, &ignored);
      mRoot->Release();
    }
  }

  void Write(Bytes const& bytes) {
    if (mRoot == nullptr) {
      return;
    }
    mRoot->setSMPTETimeInfo(0, 25, 1, mResult);
    mRoot->writeVersionToFile(mResult);
    WriteSamples(bytes);
    if (Has("other-bytes")) {
      WriteNumber(++gConversions);
    }
    if (Has("other-process")) {
      WriteNumber(static_cast<unsigned>(getpid()));
    }
    if (Has("exponent")) {
      WriteNumber(1.25e-7);
    }
    mRoot->commit(mResult);
  }

 private:
  void WriteSamples(Bytes const& bytes) {
    void* object = nullptr;
    mWriter.Static_CreateDynamicDataNum(mKey, &object, 1, mResult);
    if (object == nullptr) {
      return;
    }
    auto* const node = static_cast<ITdjsonDynamicDataNum_v1*>(object);
    node->Acquire();
    node->setDynamicDataInfo("Bytes", "bytes", "bytes", 0, 1, 0, "", mResult);
    node->setNumberPattern(3, 0, 0, mResult);
    node->setNumberRange(0, 255, 0, 255, mResult);
    for (std::size_t i = 2; i + 1 < bytes.size && i < 26; ++i) {
      // Two neighbours change places.
      std::size_t const frame = Has("disorder") ? (i == 4 ? 5 : i == 5 ? 4 : i) : i;
      node->addSampleSMPTE(0, 0, 0, static_cast<int>(frame - 2), bytes.data[i], mResult);
    }
    node->commit(mResult);
    mRoot->addDynamicData(node, mResult);
    node->Release();
  }

  void WriteNumber(double number) {
    void* object = nullptr;
    mWriter.Static_CreateStaticDataNum(mKey, &object, "number", "Number", number, 1, mResult);
    if (object != nullptr) {
      auto* const node = static_cast<ITdjsonStaticDataNum_v1*>(object);
      node->Acquire();
      mRoot->addStaticData(node, mResult);
      node->Release();
    }
  }

  TDJSONWriter_API const& mWriter;
  void* mKey;
  SK_PluginResult* mResult = nullptr;
  ITdjsonRoot_v1* mRoot = nullptr;
};

void Terminate(SK_PluginResult* result) {
  if (Has("bad-end")) {
    Fail(result, 1702, "no end");
  }
}

void InitializeSession(char const*, char const*, char const* input, char const* output, void** session,
                       SK_PluginResult* result) {
  *session = new Session{input, output};
  if (Has("leak-session")) {
    std::fopen("/dev/null", "r");
  }
  if (Has("no-session")) {
    Fail(result, 1703, "no session today");
  }
}

void TerminateSession(void* session, SK_PluginResult* result) {
  delete static_cast<Session*>(session);
  if (Has("bad-session-end")) {
    Fail(result, 1704, "no end of the session");
  }
}

void CheckFileFormat(char const* input, char const*, bool* accepted, SK_PluginResult* result) {
  *accepted = Bytes(input).HasMark();
  if (Has("stay-check")) {
    StayWithAnother();
  }
  if (Has("unstable-check")) {
    *accepted = ++gChecks % 2 == 0;
  }
  if (Has("refuse")) {
    *accepted = false;
  }
  if (Has("take-all")) {
    *accepted = true;
  }
  if (Has("check-changes")) {
    std::FILE* const file = std::fopen(input, "a");
    if (file != nullptr) {
      std::fputs("!", file);
      std::fclose(file);
    }
  }
  if (Has("check-fails") && Bytes(input).size < 2) {
    Fail(result, 1705, "too short");
  }
  if (Has("check-throws") && Bytes(input).size < 2) {
    throw std::runtime_error("too short");
  }
}

void ConvertToTDJSON(void* session, bool* succeeded, SK_PluginResult* result) {
  auto& opened = *static_cast<Session*>(session);
  Bytes const bytes(opened.input.c_str());
  DoWrong();
  if (!bytes.IsWhole()) {
    DoWrongWithDamage();
    return Fail(result, 1706, "the point at the end is missing");
  }
  Conversion(opened, result).Write(bytes);
  *succeeded = Has("always-content") || result->mErrorCode == 0;
  if (Has("always-content")) {
    *result = SK_PluginResult();
  }
}

}  // namespace

void InitializePlugin(char const* identifier, HostAPI* hostAPI, PluginAPI* pluginAPI, SK_PluginResult* result) {
  gHost = hostAPI;
  std::snprintf(gFaults, sizeof gFaults, "%s", identifier);
  if (!Has("empty-entry")) {
    pluginAPI->terminate = Terminate;
  }
  pluginAPI->initializeSession = InitializeSession;
  pluginAPI->terminateSession = TerminateSession;
  pluginAPI->checkFileFormat = CheckFileFormat;
  pluginAPI->convertToTDJSON = ConvertToTDJSON;
  if (Has("bad-start")) {
    Fail(result, 1701, "no start");
  }
}
