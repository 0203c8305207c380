/// How failures of the writer are expected: what it throws, and what its border forms report.
#pragma once

#include <gtest/gtest.h>

#include "SK_PluginException.h"
#include "senmark/SK_PluginResult.h"

namespace senmark_test {

/// The message of every failure that a capitalised mirror of a border form throws.
constexpr char kConverterFailed[] = "Internal converter failure";

/// Runs `work` and expects an `SK_PluginException` with this code, without a place.
template <typename Work>
void ExpectWriterError(Work&& work, int code) {
  try {
    work();
  } catch (SK_PLUGIN::SK_PluginException const& error) {
    EXPECT_EQ(error.GetErrorCode(), code);
    EXPECT_EQ(error.GetFileOffset(), -1);
    EXPECT_EQ(error.GetFileLineNo(), -1);
    return;
  }
  ADD_FAILURE() << "no error, expected: " << code;
}

/// The code that a border form reports through the record that it is given, without a place; 0 for none.
template <typename BorderForm>
int CodeOf(BorderForm&& borderForm) {
  SK_PLUGIN::SK_PluginResult result;
  borderForm(&result);
  EXPECT_EQ(result.mReserved, 0);
  EXPECT_EQ(result.mFileOffset, -1);
  EXPECT_EQ(result.mFileLineNo, -1);
  return result.mErrorCode;
}

}  // namespace senmark_test
