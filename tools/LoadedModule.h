/// A module whose code runs in this process.
#pragma once

#include <exception>
#include <stdexcept>
#include <string>

#include "senmark/ExplainingPluginAPI.h"

namespace senmark_tool {

/// What became of a call into a module.
struct CallEnd {
  SK_PLUGIN::SK_PluginResult result;
  bool isMissing = false;  ///< the module did not provide the function
  bool hasThrown = false;  ///< it let out an exception, which says `thrown`
  std::string thrown;

  /// As the library sees it.
  bool HasFailed() const { return isMissing || hasThrown || result.mErrorCode != ns_sensor::kNoError; }
  /// In words, like "failed with code 1705 at byte 12, line 3"; empty if it has not failed.
  std::string Text() const;
};

/// Calls `function` with a fresh record as last argument. Nothing is thrown.
template <typename... Parameters, typename... Arguments>
CallEnd CallModule(void (*function)(Parameters...), Arguments... arguments) {
  CallEnd end;
  if (function == nullptr) {
    end.isMissing = true;
    return end;
  }
  try {
    function(arguments..., &end.result);
  } catch (std::exception const& error) {
    end.hasThrown = true;
    end.thrown = error.what();
  } catch (...) {
    end.hasThrown = true;
    end.thrown = "something that is no std::exception";
  }
  return end;
}

/// The code of a module cannot be brought to run.
class LoadFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Loads the code and lets it fill in its table; ends it and takes the code away when it goes. What the code does to
/// the process cannot be undone, so this is for the child of `RunLimited` only.
class LoadedModule {
 public:
  /// Which table the module is handed.
  enum class eTable : std::uint8_t {
    kLong,   ///< with `explainFile`; the plain one if the module refuses it
    kPlain,  ///< as the library does it
  };

  /// folder  of the module. hostAPI: must live as long as the object.
  /// Errors: `LoadFault`.
  LoadedModule(std::string const& folder, SK_PLUGIN::HostAPI* hostAPI, eTable table = eTable::kLong);
  ~LoadedModule() { Terminate(); }
  LoadedModule(LoadedModule const&) = delete;
  LoadedModule& operator=(LoadedModule const&) = delete;

  /// `explainFile` is null if the module does not offer it.
  SK_PLUGIN::ExplainingPluginAPI const& Api() const { return mApi; }

  /// Calls the module's terminate function and unloads the code; after that nothing of it may be used. Once only:
  /// later calls do nothing.
  CallEnd Terminate();

 private:
  CallEnd Initialize(SK_PLUGIN::HostAPI* hostAPI, std::uint32_t size);

  std::string mIdentifier;
  void* mCode = nullptr;  ///< of the system's loader
  SK_PLUGIN::ExplainingPluginAPI mApi;
};

}  // namespace senmark_tool
