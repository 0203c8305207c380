/// The kit for converter modules: a class with two methods becomes a module.
///
///     #include "senmark/Module.h"
///     namespace kit = senmark::kit;
///
///     class Beats : public kit::Converter {
///      public:
///       bool accepts(kit::Input const& input) override { return input.head(6) == "BEATS\n"; }
///       void convert(kit::Input const& input, kit::Output& output) override {
///         output.setTimeBase(kit::TimeBase::gmt(3));
///         kit::NumberStream& rate = output.top().numberStream("Heart rate", format);
///         ...
///         rate.add(*kit::InstantOfSeconds(time), value);
///       }
///     };
///     SENMARK_MODULE(Beats)
///
/// The kit calls `convert` for one file at a time, gives the library every error with its place, and ends what was
/// begun. It keeps out of the file what the raw writer takes and no reader gives back: samples out of order, texts of
/// numbers with an exponent, NaN, match names that are not valid or come twice, arrays of more than three numbers,
/// empty groups. Headers only: it is compiled into the module.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "senmark/ExplainingPluginAPI.h"
#include "senmark/PluginAPI.h"
#include "senmark/module/Failure.h"
#include "senmark/module/Input.h"
#include "senmark/module/Output.h"

namespace senmark::kit {

/// Takes the lines of `Converter::explain`.
class Explanation {
 public:
  Explanation(void (*line)(void* to, char const* text), void* to) : mLine(line), mTo(to) {}

  /// text: one line, UTF-8.
  void add(std::string const& text) { mLine(mTo, text.c_str()); }

 private:
  void (*mLine)(void* to, char const* text);
  void* mTo;
};

/// What a module is made of. One object converts one file or answers one question; it needs a default constructor.
///
/// Whatever a method throws ends the call: a `Failure` with its code and place, `std::bad_alloc` with code 1034,
/// anything else with code 1023.
class Converter {
 public:
  virtual ~Converter() = default;

  /// Whether the file is one for this converter. Asked for files of any extension, perhaps twice, if the manifest
  /// tells no signature: look at the extension first, and at no more of the file than needed. A `Failure` is a no.
  virtual bool accepts(Input const& input) = 0;

  /// Reads the file into `output`, which the kit then finishes.
  virtual void convert(Input const& input, Output& output) = 0;

  /// Tells people how the converter sees a file.
  virtual void explain(Input const& input, Explanation& explanation) {
    explanation.add(accepts(input) ? "it takes the file" : "it does not take the file");
  }
};

namespace detail {

/// Appends a line to the file that a module's writer has named in the environment, if any.
/// Nothing is said if that fails. Takes no memory of C++.
inline void Log(char const* what, char const* text, std::int32_t code = 0, std::int64_t offset = -1,
                std::int64_t line = -1) {
  char const* const path = std::getenv("SENMARK_MODULE_LOG");
  std::FILE* const log = path == nullptr || *path == '\0' ? nullptr : std::fopen(path, "ae");
  if (log == nullptr) {
    return;
  }
  std::fputs(what, log);
  if (code != 0) {
    std::fprintf(log, " %d", static_cast<int>(code));
  }
  if (offset != -1) {
    std::fprintf(log, " at byte %lld", static_cast<long long>(offset));
  }
  if (line != -1) {
    std::fprintf(log, "%s line %lld", offset != -1 ? "," : " in", static_cast<long long>(line));
  }
  std::fprintf(log, ": %s\n", text);
  std::fclose(log);
}

inline void Report(SK_PLUGIN::SK_PluginResult* result, std::int32_t code, std::int64_t offset, std::int64_t line) {
  result->mErrorCode = static_cast<ns_sensor::eErrorCode>(code);
  result->mFileOffset = offset;
  result->mFileLineNo = line;
}

/// Runs `work`; what it throws goes into the result and the log. Nothing passes.
template <typename Work>
void RunAtBorder(SK_PLUGIN::SK_PluginResult* result, Work&& work) noexcept {
  auto const report = [&](std::int32_t code, char const* text) {
    Report(result, code, -1, -1);
    Log("error", text, code);
  };
  try {
    work();
  } catch (Failure const& failure) {
    Report(result, failure.code(), failure.offset(), failure.line());
    Log("error", failure.what(), failure.code(), failure.offset(), failure.line());
  } catch (std::bad_alloc const&) {
    report(1000 + ns_sensor::kNoMemory, "no memory");
  } catch (std::exception const& error) {
    report(1000 + ns_sensor::kUnknownAtBorder, error.what());
  } catch (...) {
    report(1000 + ns_sensor::kUnknownAtBorder, "something that is no std::exception was thrown");
  }
}

/// As the library finds it: what follows the last point of the file's name, in lower case; nothing for a path without
/// a folder.
inline std::string ExtensionOf(std::string const& path) {
  std::size_t const separator = path.find_last_of("/\\");
  std::size_t const point = path.rfind('.');
  bool const hasExtension = separator != std::string::npos && point != std::string::npos && point > separator;
  std::string extension = hasExtension ? path.substr(point + 1) : std::string();
  for (char& character : extension) {
    character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
  }
  return extension;
}

/// The functions of the module's table.
template <typename Kind>
class Entry {
 public:
  static void fillIn(SK_PLUGIN::HostAPI const* hostAPI, SK_PLUGIN::PluginAPI* pluginAPI,
                     SK_PLUGIN::SK_PluginResult* result) {
    mHostAPI = hostAPI;
    if (hostAPI == nullptr || hostAPI->mVersion < 1 || pluginAPI->version < 1) {
      Report(result, ns_sensor::kModuleInitFailed, -1, -1);
      return;
    }
    pluginAPI->terminate = [](SK_PLUGIN::SK_PluginResult*) {};
    pluginAPI->initializeSession = InitializeSession;
    pluginAPI->terminateSession = TerminateSession;
    pluginAPI->checkFileFormat = CheckFileFormat;
    pluginAPI->convertToTDJSON = ConvertToTDJSON;
    if (pluginAPI->size >= sizeof(SK_PLUGIN::ExplainingPluginAPI)) {
      reinterpret_cast<SK_PLUGIN::ExplainingPluginAPI*>(pluginAPI)->explainFile = ExplainFile;
    }
  }

 private:
  struct Session {
    Input input;
    std::string output;
  };

  static void InitializeSession(char const* uid, char const* extension, char const* input, char const* output,
                                void** session, SK_PLUGIN::SK_PluginResult* result) {
    RunAtBorder(result, [&] { *session = new Session{Input(input, extension, uid), output}; });
  }

  static void TerminateSession(void* session, SK_PLUGIN::SK_PluginResult* /*result*/) {
    delete static_cast<Session*>(session);
  }

  static void CheckFileFormat(char const* input, char const* uid, bool* accepted, SK_PLUGIN::SK_PluginResult* result) {
    RunAtBorder(result, [&] {
      try {
        *accepted = Kind().accepts(Input(input, ExtensionOf(input), uid));
      } catch (Failure const& failure) {
        Log("not accepted", failure.what(), failure.code(), failure.offset(), failure.line());
      }
    });
  }

  static void ConvertToTDJSON(void* session, bool* succeeded, SK_PLUGIN::SK_PluginResult* result) {
    RunAtBorder(result, [&] {
      auto const& opened = *static_cast<Session*>(session);
      Kind converter;
      Output output(*mHostAPI, opened.output);
      converter.convert(opened.input, output);
      output.finish();
      *succeeded = true;
    });
  }

  static void ExplainFile(char const* input, char const* uid, void (*line)(void* to, char const* text), void* to,
                          SK_PLUGIN::SK_PluginResult* result) {
    RunAtBorder(result, [&] {
      Explanation explanation(line, to);
      Kind().explain(Input(input, ExtensionOf(input), uid), explanation);
    });
  }

  /// Hidden, whatever the module is compiled with: each module has one of its own.
  __attribute__((visibility("hidden"))) inline static SK_PLUGIN::HostAPI const* mHostAPI = nullptr;
};

}  // namespace detail

}  // namespace senmark::kit

/// Makes the class a module: writes the function that the library looks for. Once in a module, outside of namespaces.
#define SENMARK_MODULE(Class)                                                                                     \
  void InitializePlugin(char const* /*identifier*/, SK_PLUGIN::HostAPI* hostAPI, SK_PLUGIN::PluginAPI* pluginAPI, \
                        SK_PLUGIN::SK_PluginResult* result) {                                                     \
    senmark::kit::detail::Entry<Class>::fillIn(hostAPI, pluginAPI, result);                                       \
  }
