/// The two places where exceptions turn: inside the library everything becomes an `SK_Exception`, and
/// at the border everything becomes a call of the host's error proc. The two give different codes to
/// the same unknown exception, on purpose.
#pragma once

#include <utility>

namespace SK_NAMESPACE_INT {

/// Throws the exception in flight on as an `SK_Exception`: itself; for an `SK_PluginException` its code
/// with a fixed message and no place; 34 for `std::bad_alloc` and for anything else.
[[noreturn]] void RethrowInside();

/// Reports the exception in flight through the host's error proc: an `SK_Exception` as it is; 34 for
/// `std::bad_alloc`; 23 for anything else. A failure in here ends the process.
void ReportAtBorder(void* clientErrorObject) noexcept;

/// Runs `body` on the ladder inside the library and gives its result.
template <typename Body>
auto RunInside(Body&& body) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    RethrowInside();
  }
}

/// Runs `body` on the ladder of the border. Nothing is thrown.
template <typename Body>
void RunAtBorder(void* clientErrorObject, Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (...) {
    ReportAtBorder(clientErrorObject);
  }
}

}  // namespace SK_NAMESPACE_INT
