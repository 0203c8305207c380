// Every error of samples that are read only when they are asked for, as a host sees it. None has a place: the
// text that is read is not the input.

#include <gtest/gtest.h>

#include "Edit.h"
#include "NumberSetFile.h"
#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;
using ns_sensor::SK_Time;

class SampleErrors : public testing::Test {
 protected:
  ReportedError ErrorOfSamples(std::string const& content, std::string const& id, SK_Time start, SK_Time end) {
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("bad.tdjson", content));
    if (handler == nullptr) {
      ADD_FAILURE() << "the file was to open";
      return mHost.TakeError();
    }
    handler->getDynamicSamples(id.c_str(), id.size(), start.value, start.scale, end.value, end.scale, &mHost, &mHost);
    EXPECT_EQ(mHost.TakeCalls(), "");
    ReportedError const error = mHost.TakeError();
    EXPECT_EQ(mHost.Close(handler), nullptr);
    return error;
  }

  TempFolder mFolder;
  RecordingHost mHost;
};

/// Five samples at the frames 0 to 4, each 40 bytes long. A search looks at sample 2 first; for a range from
/// there to behind the last one it never looks at sample 3.
std::string const kFiveSamples = NumberSetFile::Smpte(30).Add("s", {0, 1, 2, 3, 4}).Text();

struct BadSample {
  char const* name;
  char const* from;
  char const* to;
  std::int32_t code;
  char const* message;
};

void PrintTo(BadSample const& row, std::ostream* out) {
  *out << row.name;
}

class BadSampleText : public SampleErrors, public testing::WithParamInterface<BadSample> {};

TEST_P(BadSampleText, IsOneErrorOfTheQuery) {
  BadSample const& row = GetParam();
  std::string const content = Edit{kFiveSamples.c_str(), row.from, row.to}.Text();
  EXPECT_EQ(ErrorOfSamples(content, "s", {0, 1}, {1, 1}), (ReportedError{row.code, row.message, -1, -1}));
}

BadSample const kSampleErrors[] = {
    {"NoBrace", R"({"time":"00:00:00:02")", R"(<"time":"00:00:00:02")", 39,
     "Invalid sample:\"sampleSetID:s/sample[2]\""},
    {"NoDigit", R"({"time":"00:00:00:02")", R"({"time":"x0:00:00:02")", 39,
     "Invalid sample:\"sampleSetID:s/sample[2]\""},
    {"NoKeyOfATime", R"({"time":"00:00:00:02")", R"({"t1me":"00:00:00:02")", 39,
     "Invalid sample:\"sampleSetID:s/sample[2]\""},
    {"TimeMissing", R"({"time":"00:00:00:03")", R"({"timE":"00:00:00:03")", 39,
     "Unable to find mandatory property:\"time\" at \"sampleSetID:s/sample[3]\"."},
    {"TimeOfAnotherLength", R"("00:00:00:03","value":")", R"("00:00:00:3","value":"0)", 39,
     "Invalid sample time:\"sampleSetID:s/sample[3]\""},
    {"TimeThatIsNoText", R"("00:00:00:03")", "1234567890123", 39, "Invalid sample time:\"sampleSetID:s/sample[3]\""},
    {"ValueMissing", R"("value":"0000003")", R"("valuE":"0000003")", 39,
     "Unable to find mandatory property:\"value\" at \"sampleSetID:s/sample[3]\"."},
    {"ValueThatIsNoText", R"("0000003")", "100000003", 39, "Invalid sample value:\"sampleSetID:s/sample[3]\""},
    {"ValueOfAnotherWidth", R"("0000003")", R"("000\/03")", 39, "Invalid sample value:\"sampleSetID:s/sample[3]\""},
    {"ValueThatIsNoNumber", R"("0000003")", R"("abcdefg")", 34, "Unknown exception occurred."},
    {"ColonMissing", R"("value":"0000003")", R"("value";"0000003")", 32,
     "Unable to find Colon(:) in between key and value for property:\"value\"."},
    {"CommaMissing", R"(03","value")", R"(03";"value")", 32,
     "Unable to find Comma or Closing bracket after property:\"sampleSetID:s/sample[3]::time\"."},
};

INSTANTIATE_TEST_SUITE_P(SampleErrors, BadSampleText, testing::ValuesIn(kSampleErrors),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(SampleErrors, SamplesAreNumberedWithinTheAnswer) {
  std::string const content = Edit{kFiveSamples.c_str(), R"("value":"0000003")", R"("valuE":"0000003")"}.Text();
  EXPECT_EQ(ErrorOfSamples(content, "s", {2, 30}, {1, 1}),
            (ReportedError{39, "Unable to find mandatory property:\"value\" at \"sampleSetID:s/sample[1]\".", -1, -1}));
}

TEST_F(SampleErrors, NumberOfAnInvalidSampleIsALabelOnly) {
  // The set begins at byte 41: (41 + 2 * 41 + 41 - 40) / 41 is 3.
  std::string const content = NumberSetFile::Smpte(30).Add("twelve_bytes", {0, 1, 2, 3, 4}).Text();
  std::string const bad = Edit{content.c_str(), R"({"time":"00:00:00:02")", R"(<"time":"00:00:00:02")"}.Text();
  EXPECT_EQ(ErrorOfSamples(bad, "twelve_bytes", {0, 1}, {1, 1}),
            (ReportedError{39, "Invalid sample:\"sampleSetID:twelve_bytes/sample[3]\"", -1, -1}));
}

struct BadValue {
  char const* name;
  Edit edit;
  char const* id;
  char const* message;  // the code is 39
};

void PrintTo(BadValue const& row, std::ostream* out) {
  *out << row.name;
}

class BadSampleValue : public SampleErrors, public testing::WithParamInterface<BadValue> {};

TEST_P(BadSampleValue, IsOneErrorOfTheQuery) {
  BadValue const& row = GetParam();
  EXPECT_EQ(ErrorOfSamples(row.edit.Text(), row.id, {0, 1}, {9, 1}), (ReportedError{39, row.message, -1, -1}));
}

BadValue const kValueErrors[] = {
    {"LengthAboveTheLargest",
     {kSmallVersion2, R"("length":"3")", R"("length":"7")"},
     "n1",
     "Padded string length cannot be greater than max length."},
    {"LengthAboveTheLargestOfVersion1",
     {kSmallVersion1, R"("length":8)", R"("length":9)"},
     "ev",
     "Padded string length cannot be greater than max length."},
    {"LengthMissing",
     {kSmallVersion2, R"("length":"3")", R"("lengtH":"3")"},
     "n1",
     "Invalid sample value:\"sampleSetID:n1/sample[0]\""},
    {"LengthThatIsNoText",
     {kSmallVersion2, R"("length":"3")", R"("length":333)"},
     "n1",
     "Invalid sample value:\"sampleSetID:n1/sample[0]\""},
    {"LengthThatIsNoNumberInVersion1",
     {kSmallVersion1, R"("length":8,"str":"a\"bcd\"")", R"("length":"","str":"abcdefg")"},
     "ev",
     "Invalid sample value:\"sampleSetID:ev/sample[0]\""},
    {"TextMissing",
     {kSmallVersion2, R"("str":"a b   ")", R"("stR":"a b   ")"},
     "n1",
     "Invalid sample value:\"sampleSetID:n1/sample[0]\""},
    {"PaddedTextThatIsNoObject",
     {kSmallVersion2, R"({"length":"3","str":"a b   "})", R"("length is 3, str is a b....")"},
     "n1",
     "Invalid sample value:\"sampleSetID:n1/sample[0]\""},
    {"TooFewElements",
     {kSmallVersion2, R"(["2.00","3.75"])", R"(["2.00,,,3.75"])"},
     "p1",
     "Number array does not contains enough elements at \"sampleSetID:p1/sample[1]\"."},
    {"ArrayThatIsNone",
     {kSmallVersion2, R"(["2.00","3.75"])", R"("1234567890123")"},
     "p1",
     "Invalid sample value:\"sampleSetID:p1/sample[1]\""},
    {"ElementOfAnotherWidth",
     {kSmallVersion2, R"(["2.00","3.75"])", R"(["2.0","03.75"])"},
     "p1",
     "Invalid sample value:\"sampleSetID:p1/sample[1]\""},
    {"ElementThatIsNoText",
     {kSmallVersion2, R"(["2.00","3.75"])", R"(["2.00",1.3750])"},
     "p1",
     "Invalid sample value:\"sampleSetID:p1/sample[1]\""},
};

INSTANTIATE_TEST_SUITE_P(SampleErrors, BadSampleValue, testing::ValuesIn(kValueErrors),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace senmark_test
