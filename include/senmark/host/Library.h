/// The library itself: linked to the program, or loaded while it runs.
#pragma once

#include <dlfcn.h>

#include <memory>
#include <string>
#include <vector>

#include "senmark/Senmark.h"
#include "senmark/host/Receiver.h"

namespace senmark {

/// The five functions of the library, wherever they come from. Cheap to copy; usable from any thread.
class Library {
 public:
  /// The exported functions, by the names they have without their version.
  struct Functions {
    decltype(&CreateSenmark_1) create = nullptr;
    decltype(&DestroySenmark_1) destroy = nullptr;
    decltype(&GetLastException_1) lastException = nullptr;
    decltype(&GetSupportedFormats_1) supportedFormats = nullptr;
    decltype(&GetLocalizedErrorMsg_1) localizedErrorMsg = nullptr;
  };

  /// The library that the program was linked with. A program that does not call this needs no linking.
  static Library Linked() {
    return Library(Functions{&CreateSenmark_1, &DestroySenmark_1, &GetLastException_1, &GetSupportedFormats_1,
                             &GetLocalizedErrorMsg_1});
  }

  /// Loads the library from a file. It stays in memory for the rest of the process, because threads that
  /// have met an error keep a part of it until they end.
  ///
  /// path    of the shared object; a bare name is searched for as the system's loader does it.
  /// Errors: 6 no such file, not a shared object, or not this library.
  static Library Load(std::string const& path) {
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (handle == nullptr) {
      char const* const reason = dlerror();
      throw Error(ns_sensor::kCannotOpenFile, reason != nullptr ? reason : "cannot load " + path);
    }
    Functions functions;
    Find(handle, path, "CreateSenmark_1", functions.create);
    Find(handle, path, "DestroySenmark_1", functions.destroy);
    Find(handle, path, "GetLastException_1", functions.lastException);
    Find(handle, path, "GetSupportedFormats_1", functions.supportedFormats);
    Find(handle, path, "GetLocalizedErrorMsg_1", functions.localizedErrorMsg);
    return Library(functions);
  }

  /// Functions that the host has found in a way of its own. None may be null.
  explicit Library(Functions const& functions) : mFunctions(functions) {}

  Functions const& functions() const { return mFunctions; }

 private:
  template <class Function>
  static void Find(void* handle, std::string const& path, char const* name, Function& function) {
    void* const symbol = dlsym(handle, name);
    if (symbol == nullptr) {
      throw Error(ns_sensor::kCannotOpenFile, path + " has no function " + name);
    }
    function = reinterpret_cast<Function>(symbol);
  }

  Functions mFunctions;
};

namespace detail {

/// Holds the lock that all users of the wrapper in the process share.
class BorderLock {
 public:
  explicit BorderLock(SharedState const* shared) : mShared(shared) { mShared->lock(); }
  BorderLock(BorderLock const&) = delete;
  BorderLock& operator=(BorderLock const&) = delete;
  ~BorderLock() { mShared->unlock(); }

 private:
  SharedState const* mShared;
};

/// One creation of the manager. Lives as long as anything that came from it.
class Session {
 public:
  Session(Library library, char const* pluginFolder, char const* wantedModules, char const* locale)
      : mLibrary(library) {
    Receiver receiver;
    void* hostApi = nullptr;
    mLibrary.functions().create(&mManager, pluginFolder, wantedModules, locale, receiver.Client(), ForwardingTable(),
                                &hostApi);
    receiver.Raise();
    mPropertyApi = static_cast<ns_sensor::SK_HostPropertyAPI const*>(hostApi);
    FindSharedState();
  }
  Session(Session const&) = delete;
  Session& operator=(Session const&) = delete;
  ~Session() {
    BorderLock const lock(mShared);
    Destroy();
  }

  Library const& library() const { return mLibrary; }
  ns_sensor::ISenmark& manager() const { return *mManager; }
  ns_sensor::SK_HostPropertyAPI const* propertyApi() const { return mPropertyApi; }
  SharedState const* shared() const { return mShared; }

 private:
  /// Learns from an answer whose table the library took: that table's copy of this header has the lock.
  void FindSharedState() {
    Receiver probe;
    mLibrary.functions().localizedErrorMsg("probe", nullptr, nullptr, nullptr, nullptr, probe.Client());
    mShared = probe.shared;
    if (mShared == nullptr) {
      Destroy();
      throw Error(ns_sensor::kInternalFailure, "another table of client procs is in force in this process");
    }
  }

  void Destroy() {
    Receiver receiver;  // nothing can be done about an error here
    mLibrary.functions().destroy(&mManager, receiver.Client());
  }

  Library mLibrary;
  ns_sensor::ISenmark* mManager = nullptr;
  ns_sensor::SK_HostPropertyAPI const* mPropertyApi = nullptr;
  SharedState const* mShared = nullptr;
};

}  // namespace detail
}  // namespace senmark
