#include "SK_Ladder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "ExpectError.h"
#include "SK_ClientTable.h"
#include "SK_Error.h"
#include "SK_PluginException.h"

namespace {

using namespace SK_NAMESPACE_INT;
using ns_sensor::SK_Exception;
using senmark_test::ExpectError;

// One failure, and what each ladder makes of it.
struct Failure {
  char const* name;
  std::function<void()> raise;
  int insideCode;
  char const* insideMessage;
  int borderCode;
  char const* borderMessage;
  long long offset;
  long long line;
  bool insideIsRaisedAnew;  // and so becomes the thread's last error
};

void PrintTo(Failure const& row, std::ostream* out) {
  *out << row.name;
}

struct DerivedException : SK_Exception {
  using SK_Exception::SK_Exception;
};

constexpr char kNoMemory[] = "Unable to allocate memory.";
constexpr char kUnknown[] = "Unknown exception occurred.";
constexpr char kCannotConvert[] = "File Cannot be converted.";

Failure const kFailures[] = {
    {"OwnException", [] { throw SK_Exception(ns_sensor::kJsonSyntax, "a message", 12, 3); }, 32, "a message", 32,
     "a message", 12, 3, false},
    {"DerivedFromOwn", [] { throw DerivedException(ns_sensor::kNoMemory, "its message", -1, 0); }, 34, "its message",
     34, "its message", -1, 0, false},
    {"ExceptionOfAPlugin", [] { throw SK_PLUGIN::SK_PluginException(static_cast<ns_sensor::eErrorCode>(2001), 12, 3); },
     2001, kCannotConvert, 23, kUnknown, -1, -1, true},
    {"NoMemory", [] { throw std::bad_alloc(); }, 34, kNoMemory, 34, kNoMemory, -1, -1, true},
    {"ArrayTooLong", [] { throw std::bad_array_new_length(); }, 34, kNoMemory, 34, kNoMemory, -1, -1, true},
    {"Number", [] { throw 5; }, 34, kUnknown, 23, kUnknown, -1, -1, true},
    {"RuntimeError", [] { throw std::runtime_error("unseen"); }, 34, kUnknown, 23, kUnknown, -1, -1, true},
    {"BadIndexText", [] { static_cast<void>(std::stoi("x")); }, 34, kUnknown, 23, kUnknown, -1, -1, true},
    {"Text", [] { throw "unseen"; }, 34, kUnknown, 23, kUnknown, -1, -1, true},
};

struct Report {
  void* clientError;
  int code;
  std::string message;
  long long offset;
  long long line;
};

std::vector<Report> gReports;

void KeepReport(void* clientError, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
  gReports.push_back({clientError, code, message, offset, line});
  if (gReports.back().message == "throw from the proc") {
    throw 1;
  }
}

class LadderTest : public testing::Test {
 protected:
  void SetUp() override {
    static ns_sensor::SK_ClientProcs procs = {};
    procs.error = KeepReport;
    InitializeClientProcs(&procs);
    gReports.clear();
    gLastException = SK_Exception(ns_sensor::kNoFileOpen, "from before", 1, 2);
  }

  static void ExpectLast(int code, std::string const& message, long long offset, long long line) {
    EXPECT_EQ(gLastException.GetErrorCode(), code);
    EXPECT_EQ(gLastException.GetLocalizedErrMsg(), message);
    EXPECT_EQ(gLastException.GetFileOffset(), offset);
    EXPECT_EQ(gLastException.GetFileLineNo(), line);
  }
  static void ExpectLastFromBefore() { ExpectLast(26, "from before", 1, 2); }
};

class Ladder : public LadderTest, public testing::WithParamInterface<Failure> {};

TEST_P(Ladder, InsideThrowsOn) {
  Failure const& row = GetParam();
  ExpectError([&row] { RunInside(row.raise); }, row.insideCode, row.insideMessage, row.offset, row.line);
  if (row.insideIsRaisedAnew) {
    ExpectLast(row.insideCode, row.insideMessage, row.offset, row.line);
  } else {
    ExpectLastFromBefore();
  }
  EXPECT_TRUE(gReports.empty());
}

TEST_P(Ladder, BorderReports) {
  Failure const& row = GetParam();
  int client = 0;
  RunAtBorder(&client, row.raise);
  ASSERT_EQ(gReports.size(), 1u);
  EXPECT_EQ(gReports[0].clientError, &client);
  EXPECT_EQ(gReports[0].code, row.borderCode);
  EXPECT_EQ(gReports[0].message, row.borderMessage);
  EXPECT_EQ(gReports[0].offset, row.offset);
  EXPECT_EQ(gReports[0].line, row.line);
  ExpectLastFromBefore();
}

TEST_P(Ladder, InsideThenBorderReportsWhatInsideMadeOfIt) {
  Failure const& row = GetParam();
  RunAtBorder(nullptr, [&row] { RunInside(row.raise); });
  ASSERT_EQ(gReports.size(), 1u);
  EXPECT_EQ(gReports[0].clientError, nullptr);
  EXPECT_EQ(gReports[0].code, row.insideCode);
  EXPECT_EQ(gReports[0].message, row.insideMessage);
}

TEST_P(Ladder, LastErrorOfAnotherThreadIsUntouched) {
  Failure const& row = GetParam();
  std::thread([&row] {
    EXPECT_THROW(RunInside(row.raise), SK_Exception);
    EXPECT_EQ(gLastException.GetErrorCode(), row.insideIsRaisedAnew ? row.insideCode : 0);
  }).join();
  ExpectLastFromBefore();
}

INSTANTIATE_TEST_SUITE_P(Ladder, Ladder, testing::ValuesIn(kFailures),
                         [](auto const& row) { return std::string(row.param.name); });

using LadderWithoutFailure = LadderTest;

TEST_F(LadderWithoutFailure, GivesTheResultAndSaysNothing) {
  EXPECT_EQ(RunInside([] { return std::string("result"); }), "result");
  bool ran = false;
  RunInside([&ran] { ran = true; });
  EXPECT_TRUE(ran);
  ran = false;
  RunAtBorder(nullptr, [&ran] { ran = true; });
  EXPECT_TRUE(ran);
  EXPECT_TRUE(gReports.empty());
  ExpectLastFromBefore();
}

TEST_F(LadderWithoutFailure, ErrorRaisedByThrowErrorArrivesWhole) {
  RunAtBorder(nullptr, [] {
    RunInside([] {
      ThrowError({ns_sensor::kDuplicateMatchName, SK_Message::kDuplicateMatchName, 90, 7}, Quoted("x"), Quoted("a"));
    });
  });
  ASSERT_EQ(gReports.size(), 1u);
  EXPECT_EQ(gReports[0].code, 40);
  EXPECT_EQ(gReports[0].message,
            "Duplicate MatchName:\"x\" at \"a\". MatchName must be unique for every node in \"dataOutline\".");
  EXPECT_EQ(gReports[0].offset, 90);
  EXPECT_EQ(gReports[0].line, 7);
}

TEST_F(LadderWithoutFailure, PassesAnExceptionOnAsACopy) {
  SK_Exception const* raised = nullptr;
  try {
    RunInside([&raised] {
      try {
        throw SK_Exception(ns_sensor::kJsonSyntax, "a message", 12, 3);
      } catch (SK_Exception const& e) {
        raised = &e;
        throw;
      }
    });
    FAIL() << "no error";
  } catch (SK_Exception const& e) {
    EXPECT_NE(&e, raised);
  }
}

using LadderDeathTest = LadderTest;

TEST_F(LadderDeathTest, FailureInTheErrorProcEndsTheProcess) {
  EXPECT_DEATH(RunAtBorder(nullptr, [] { throw SK_Exception(ns_sensor::kNoError, "throw from the proc", 0, 0); }),
               "terminate");
}

}  // namespace
