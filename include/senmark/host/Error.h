/// What went wrong, as an exception and as a value.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "senmark/SK_ErrorCode.h"

namespace senmark {

/// The only exception of the wrapper's own. Beside it, `std::bad_alloc` and what a host's own visitor
/// throws may leave an operation.
class Error : public std::runtime_error {
 public:
  Error(std::int32_t code, std::string const& message, std::int64_t offset = -1, std::int64_t line = -1)
      : std::runtime_error(message), mCode(code), mOffset(offset), mLine(line) {}

  /// An `ns_sensor::eErrorCode`.
  std::int32_t code() const noexcept { return mCode; }
  /// Text for people, in English; the same as `what()`.
  std::string message() const { return what(); }
  /// Bytes from the start of the input file, -1 for none.
  std::int64_t offset() const noexcept { return mOffset; }
  /// Line in the input file, -1 for none.
  std::int64_t line() const noexcept { return mLine; }

 private:
  std::int32_t mCode;
  std::int64_t mOffset;
  std::int64_t mLine;
};

/// The outcome of `attempt`: a value or the error that stood in its way. `T` may be void.
template <class T>
class [[nodiscard]] Result {
 public:
  using Stored = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

  explicit Result(Stored value) : mOutcome(std::in_place_index<0>, std::move(value)) {}
  explicit Result(Error error) : mOutcome(std::in_place_index<1>, std::move(error)) {}

  bool ok() const noexcept { return mOutcome.index() == 0; }
  explicit operator bool() const noexcept { return ok(); }

  /// The value; throws the error if there is none.
  Stored& value() & {
    Require();
    return *std::get_if<0>(&mOutcome);
  }
  Stored const& value() const& {
    Require();
    return *std::get_if<0>(&mOutcome);
  }
  Stored value() && {
    Require();
    return std::move(*std::get_if<0>(&mOutcome));
  }

  /// The error. Only for a result that is not `ok()`.
  Error const& error() const { return std::get<1>(mOutcome); }

 private:
  void Require() const {
    if (Error const* error = std::get_if<1>(&mOutcome)) {
      throw *error;
    }
  }

  std::variant<Stored, Error> mOutcome;
};

/// The form of every operation that returns its error instead of throwing it.
///
/// work  called once, with no argument. It may hold one operation or a whole loop over samples.
///
///     auto file = senmark::attempt([&] { return manager.open(path); });
///     if (!file) return Report(file.error().code(), file.error().message());
///
/// Only `Error` is caught; memory that has run out still ends in `std::bad_alloc`.
template <class Work>
auto attempt(Work&& work) -> Result<std::invoke_result_t<Work&>> {
  using Value = std::invoke_result_t<Work&>;
  static_assert(!std::is_reference_v<Value>, "return a value or nothing");
  try {
    if constexpr (std::is_void_v<Value>) {
      work();
      return Result<Value>(std::monostate{});
    } else {
      return Result<Value>(work());
    }
  } catch (Error const& error) {
    return Result<Value>(error);
  }
}

}  // namespace senmark
