/// Expectations on errors of the library: code, whole message and both positions at once.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "SK_Exception.h"

namespace senmark_test {

/// Runs `work` and expects it to raise this error and no other.
///
/// offset, line  the positions of the error; -1 for none.
template <typename Work>
void ExpectError(Work&& work, int code, std::string const& message, long long offset = -1, long long line = -1) {
  try {
    work();
  } catch (ns_sensor::SK_Exception const& error) {
    EXPECT_EQ(error.GetLocalizedErrMsg(), message);
    EXPECT_EQ(error.GetErrorCode(), code);
    EXPECT_EQ(error.GetFileOffset(), offset);
    EXPECT_EQ(error.GetFileLineNo(), line);
    return;
  }
  ADD_FAILURE() << "no error, expected: " << message;
}

}  // namespace senmark_test
