/// Calls of the library's writer.
#pragma once

#include <string>
#include <utility>

#include "senmark/HostAPI.h"
#include "senmark/SK_PluginResult.h"
#include "senmark/module/Failure.h"

namespace senmark::kit::detail {

/// Throws what the writer reported. doing: what was being done, for people.
inline void ThrowReport(char const* doing, SK_PLUGIN::SK_PluginResult const& result) {
  throw Failure(std::string("the writer cannot ") + doing, result.mFileOffset, result.mFileLineNo, result.mErrorCode);
}

/// Calls `call` with the address of a result, and gives what it gives. Errors: `Failure` as the writer reports it.
template <typename Call>
auto CallWriter(char const* doing, Call&& call) -> decltype(call(nullptr)) {
  SK_PLUGIN::SK_PluginResult result;
  if constexpr (std::is_void_v<decltype(call(nullptr))>) {
    call(static_cast<void*>(&result));
    if (result.mErrorCode != ns_sensor::kNoError) {
      ThrowReport(doing, result);
    }
  } else {
    auto value = call(static_cast<void*>(&result));
    if (result.mErrorCode != ns_sensor::kNoError) {
      ThrowReport(doing, result);
    }
    return value;
  }
}

/// An object of the writer, with a reference of its own.
template <typename Interface>
class Held {
 public:
  Held() = default;
  /// object  as a function of the table gave it: a pointer to the interface.
  explicit Held(void* object) : mObject(static_cast<Interface*>(object)) { mObject->Acquire(); }
  Held(Held&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
  Held& operator=(Held&& other) noexcept {
    std::swap(mObject, other.mObject);
    return *this;
  }
  Held(Held const&) = delete;
  Held& operator=(Held const&) = delete;
  ~Held() {
    if (mObject != nullptr) {
      mObject->Release();
    }
  }

  Interface* get() const { return mObject; }
  Interface* operator->() const { return mObject; }
  explicit operator bool() const { return mObject != nullptr; }

 private:
  Interface* mObject = nullptr;
};

/// Makes an object. create: a function of the table without what comes before and behind its own arguments.
template <typename Interface, typename Create>
Held<Interface> Make(char const* doing, Create&& create) {
  void* object = nullptr;
  CallWriter(doing, [&](void* result) { create(&object, result); });
  return Held<Interface>(object);
}

}  // namespace senmark::kit::detail
