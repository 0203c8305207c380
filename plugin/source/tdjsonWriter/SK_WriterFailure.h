/// How failures travel in the writer: what its own code throws, and how a border form and its capitalised
/// mirror hand a failure on. Each of the three ways stands once, here.
#pragma once

#include <type_traits>
#include <utility>

#include "SK_PluginException.h"
#include "senmark/HostAPI.h"
#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {

/// How border forms report; a module may set its own when it makes a root.
extern SetErrorProc gSetWriterErrorObjectProc;

/// Raises one of the writer's own codes, which are named by their meaning at the throw sites. No place.
[[noreturn]] void ThrowWriterError(eErrorCode code);

/// 1023.
[[noreturn]] void ThrowNoText();

/// Gives `text`, an argument of a border form, back. 1023 for null, which no string can be made of.
inline char const* RequireText(char const* text) {
  if (text == nullptr) {
    ThrowNoText();
  }
  return text;
}

/// Throws the exception in flight on as an `SK_PluginException`: itself; for an `SK_Exception` its code plus
/// 1000 with its place; 1034 for `std::bad_alloc`; 1023 for anything else.
[[noreturn]] void RethrowInWriter();

/// Reports the exception in flight to the record: an `SK_PluginException` as it is, 1034 for `std::bad_alloc`,
/// 1023 for anything else.
void ReportInWriter(void* result) noexcept;

/// Throws what the record holds as an `SK_Exception`, if that is a failure.
void ThrowIfFailed(SK_PluginResult const& result);

/// Runs a step that touches a file, and gives its result.
template <typename Body>
auto RunFileStep(Body&& body) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    RethrowInWriter();
  }
}

/// A border form: nothing is thrown, true on success. After a failure has been reported `cleanUp` runs; a
/// failure of its own leaves the first report standing. Part of the form, whose arguments need no memory then.
template <typename Body, typename CleanUp>
[[gnu::always_inline]] inline bool RunAtWriterBorder(void* result, Body&& body, CleanUp&& cleanUp) noexcept {
  try {
    std::forward<Body>(body)();
    return true;
  } catch (...) {
    ReportInWriter(result);
  }
  try {
    std::forward<CleanUp>(cleanUp)();
  } catch (...) {
    // The first failure is the one that the caller must see.
  }
  return false;
}

template <typename Body>
bool RunAtWriterBorder(void* result, Body&& body) noexcept {
  return RunAtWriterBorder(result, std::forward<Body>(body), [] {});
}

/// The capitalised mirror of a border form: calls it with a fresh record and gives its result.
template <typename BorderForm>
auto ThrowOnFailure(BorderForm&& borderForm) -> decltype(borderForm(nullptr)) {
  SK_PluginResult result;
  if constexpr (std::is_void_v<decltype(borderForm(nullptr))>) {
    std::forward<BorderForm>(borderForm)(&result);
    ThrowIfFailed(result);
  } else {
    auto const value = std::forward<BorderForm>(borderForm)(&result);
    ThrowIfFailed(result);
    return value;
  }
}

}  // namespace SK_PLUGIN
