#include "SK_WriterFailure.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <string>

#include "ExpectError.h"
#include "SK_Error.h"
#include "SK_HostAPIImpl.h"
#include "SK_WriterCode.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_Exception;
using senmark_test::ExpectError;

constexpr eErrorCode kSomeWriterCode = kGroupMissing;

// One failure, and what becomes of it inside the writer and at its border.
struct Failure {
  char const* name;
  std::function<void()> raise;
  int insideCode;
  long long insideOffset;
  long long insideLine;
  int borderCode;
  long long borderOffset;
  long long borderLine;
};

void PrintTo(Failure const& row, std::ostream* out) {
  *out << row.name;
}

struct DerivedPluginException : SK_PluginException {
  using SK_PluginException::SK_PluginException;
};

struct DerivedException : SK_Exception {
  using SK_Exception::SK_Exception;
};

Failure const kFailures[] = {
    {"OfTheWriter", [] { throw SK_PluginException(kSomeWriterCode, 12, 3); }, 2003, 12, 3, 2003, 12, 3},
    {"DerivedFromThat", [] { throw DerivedPluginException(kSomeWriterCode, 12, 3); }, 2003, 12, 3, 2003, 12, 3},
    {"WriterCodeByName", [] { ThrowWriterError(kNoChildren); }, 2021, -1, -1, 2021, -1, -1},
    {"OfAFile", [] { throw SK_Exception(ns_sensor::kWriteFailed, "unseen", 90, 7); }, 1055, 90, 7, 1023, -1, -1},
    {"DerivedFromAFailureOfAFile", [] { throw DerivedException(ns_sensor::kCannotOpenFile, "unseen", -1, 0); }, 1006,
     -1, 0, 1023, -1, -1},
    {"NoMemory", [] { throw std::bad_alloc(); }, 1034, -1, -1, 1034, -1, -1},
    {"ArrayTooLong", [] { throw std::bad_array_new_length(); }, 1034, -1, -1, 1034, -1, -1},
    {"RuntimeError", [] { throw std::runtime_error("unseen"); }, 1023, -1, -1, 1023, -1, -1},
    {"Number", [] { throw 5; }, 1023, -1, -1, 1023, -1, -1},
};

void ExpectRecord(SK_PluginResult const& result, int code, long long offset, long long line) {
  EXPECT_EQ(result.mReserved, 0);
  EXPECT_EQ(result.mErrorCode, code);
  EXPECT_EQ(result.mFileOffset, offset);
  EXPECT_EQ(result.mFileLineNo, line);
}

class WriterFailure : public testing::TestWithParam<Failure> {};

TEST_P(WriterFailure, FileStepThrowsOn) {
  Failure const& row = GetParam();
  try {
    RunFileStep(row.raise);
    FAIL() << "no error";
  } catch (SK_PluginException const& e) {
    EXPECT_EQ(e.GetErrorCode(), row.insideCode);
    EXPECT_EQ(e.GetFileOffset(), row.insideOffset);
    EXPECT_EQ(e.GetFileLineNo(), row.insideLine);
  }
}

TEST_P(WriterFailure, BorderFormReports) {
  Failure const& row = GetParam();
  SK_PluginResult result;
  EXPECT_FALSE(RunAtWriterBorder(&result, row.raise));
  ExpectRecord(result, row.borderCode, row.borderOffset, row.borderLine);
}

TEST_P(WriterFailure, FileStepAtTheBorderIsReportedAsTheStepThrewIt) {
  Failure const& row = GetParam();
  SK_PluginResult result;
  EXPECT_FALSE(RunAtWriterBorder(&result, [&row] { RunFileStep(row.raise); }));
  ExpectRecord(result, row.insideCode, row.insideOffset, row.insideLine);
}

TEST_P(WriterFailure, CleanUpRunsOnceAfterTheReport) {
  Failure const& row = GetParam();
  SK_PluginResult result;
  int runs = 0;
  EXPECT_FALSE(RunAtWriterBorder(&result, row.raise, [&] {
    EXPECT_EQ(result.mErrorCode, row.borderCode);
    ++runs;
  }));
  EXPECT_EQ(runs, 1);
}

TEST_P(WriterFailure, FailureOfTheCleanUpLeavesTheFirstReport) {
  Failure const& row = GetParam();
  SK_PluginResult result;
  EXPECT_FALSE(RunAtWriterBorder(&result, row.raise, [] { throw SK_PluginException(kRollBackFailed, 1, 1); }));
  ExpectRecord(result, row.borderCode, row.borderOffset, row.borderLine);
}

TEST_P(WriterFailure, MirrorThrowsWhatTheBorderFormReported) {
  Failure const& row = GetParam();
  ExpectError([&row] { ThrowOnFailure([&row](void* result) { return RunAtWriterBorder(result, row.raise); }); },
              row.borderCode, "Internal converter failure", row.borderOffset, row.borderLine);
  ExpectError([&row] { ThrowOnFailure([&row](void* result) { RunAtWriterBorder(result, row.raise); }); },
              row.borderCode, "Internal converter failure", row.borderOffset, row.borderLine);
}

INSTANTIATE_TEST_SUITE_P(Writer, WriterFailure, testing::ValuesIn(kFailures),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(WriterFailureTest, SuccessTouchesNothing) {
  SK_PluginResult result;
  bool hasCleanedUp = false;
  EXPECT_TRUE(RunAtWriterBorder(
      &result, [] {}, [&hasCleanedUp] { hasCleanedUp = true; }));
  EXPECT_FALSE(hasCleanedUp);
  ExpectRecord(result, 0, -1, -1);
  result.mErrorCode = kNoChildren;  // from an earlier call
  EXPECT_TRUE(RunAtWriterBorder(&result, [] {}));
  ExpectRecord(result, 2021, -1, -1);
}

TEST(WriterFailureTest, ResultsArePassedOn) {
  EXPECT_EQ(RunFileStep([] { return std::string("result"); }), "result");
  EXPECT_FALSE(ThrowOnFailure([](void*) { return false; }));
  EXPECT_TRUE(ThrowOnFailure([](void*) { return true; }));
  bool ran = false;
  ThrowOnFailure([&ran](void* result) {
    ExpectRecord(*static_cast<SK_PluginResult*>(result), 0, -1, -1);
    ran = true;
  });
  EXPECT_TRUE(ran);
}

TEST(WriterFailureTest, ThrowIfFailedPassesASuccess) {
  SK_PluginResult result;
  result.mFileOffset = 5;
  EXPECT_NO_THROW(ThrowIfFailed(result));
  result.mErrorCode = kNoChildren;
  result.mFileLineNo = 6;
  ExpectError([&result] { ThrowIfFailed(result); }, 2021, "Internal converter failure", 5, 6);
  EXPECT_EQ(SK_NAMESPACE_INT::gLastException.GetErrorCode(), 2021);
}

TEST(WriterFailureTest, FileStepThrowsACopy) {
  SK_PluginException const* raised = nullptr;
  try {
    RunFileStep([&raised] {
      try {
        throw SK_PluginException(kSomeWriterCode, 12, 3);
      } catch (SK_PluginException const& e) {
        raised = &e;
        throw;
      }
    });
    FAIL() << "no error";
  } catch (SK_PluginException const& e) {
    EXPECT_NE(&e, raised);
  }
}

// The process-wide procedure, put back at the end.
class OtherProc {
 public:
  explicit OtherProc(SetErrorProc proc) : mBefore(gSetWriterErrorObjectProc) { gSetWriterErrorObjectProc = proc; }
  ~OtherProc() { gSetWriterErrorObjectProc = mBefore; }
  OtherProc(OtherProc const&) = delete;
  OtherProc& operator=(OtherProc const&) = delete;

 private:
  SetErrorProc mBefore;
};

TEST(WriterFailureTest, ProcedureOfTheLibraryIsTheFirst) {
  EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
}

TEST(WriterFailureTest, ReportsGoThroughTheProcedureThatIsSet) {
  OtherProc const other([](void* result, eErrorCode code, long long offset, long long line) {
    *static_cast<std::string*>(result) =
        std::to_string(code) + ' ' + std::to_string(offset) + ' ' + std::to_string(line);
  });
  std::string report;
  EXPECT_FALSE(RunAtWriterBorder(&report, [] { throw SK_PluginException(kSomeWriterCode, 12, 3); }));
  EXPECT_EQ(report, "2003 12 3");
}

TEST(WriterFailureTest, NoProcedureLosesNoFailure) {
  OtherProc const none(nullptr);
  SK_PluginResult result;
  EXPECT_FALSE(RunAtWriterBorder(&result, [] { throw SK_PluginException(kSomeWriterCode, 12, 3); }));
  ExpectRecord(result, 2003, 12, 3);
}

TEST(WriterFailureDeathTest, NoRecordStopsTheProcess) {
  EXPECT_DEATH(Static_SetPluginErrorObj(nullptr, kSomeWriterCode, -1, -1), "result != 0");
  EXPECT_DEATH(RunAtWriterBorder(nullptr, [] { throw 1; }), "result != 0");
}

}  // namespace
}  // namespace SK_PLUGIN
