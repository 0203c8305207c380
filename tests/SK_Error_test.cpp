#include "SK_Error.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <thread>
#include <vector>

#include "ExpectError.h"

namespace {

using namespace SK_NAMESPACE_INT;
using senmark_test::ExpectError;

SK_UTF16String Wide(std::string const& text) {
  return SK_UTF16String(text.begin(), text.end());
}

std::string Text(std::string const& text) {
  return text;
}

// The text of a literal with as many values as the test has; the rest are left out.
std::string Message(char const* literal, SK_ReplacementValue const& value1 = SK_ReplacementValue(),
                    SK_ReplacementValue const& value2 = SK_ReplacementValue(),
                    SK_ReplacementValue const& value3 = SK_ReplacementValue(),
                    SK_ReplacementValue const& value4 = SK_ReplacementValue()) {
  return SubstituteErrorMessage(literal, value1, value2, value3, value4);
}

struct Rendered {
  char const* name;
  SK_ReplacementValue value;
  int tag;
  char const* text;
};

void PrintTo(Rendered const& row, std::ostream* out) {
  *out << row.name;
}

Rendered const kRendered[] = {
    {"SignedLong", SK_ReplacementValue(-5000000000LL), 1, "-5000000000"},
    {"SmallestSigned", SK_ReplacementValue(LLONG_MIN), 1, "-9223372036854775808"},
    {"Int", SK_ReplacementValue(7), 1, "7"},
    {"NegativeIntKeepsItsSign", SK_ReplacementValue(-1), 1, "-1"},
    {"SmallestInt", SK_ReplacementValue(INT_MIN), 1, "-2147483648"},
    {"UnsignedLong", SK_ReplacementValue(ULLONG_MAX), 2, "18446744073709551615"},
    {"LargestUnsignedIsNotNegative", SK_ReplacementValue(UINT_MAX), 2, "4294967295"},
    {"Double", SK_ReplacementValue(1.5), 3, "1.500000"},
    {"DoubleIsCutToSixDecimals", SK_ReplacementValue(-0.00000049), 3, "-0.000000"},
    {"LargeDoubleIsWrittenOut", SK_ReplacementValue(1e20), 3, "100000000000000000000.000000"},
    {"String", SK_ReplacementValue(Text("a text")), 4, "a text"},
    {"EmptyString", SK_ReplacementValue(Text("")), 4, ""},
};

class ReplacementValue : public testing::TestWithParam<Rendered> {};

TEST_P(ReplacementValue, IsShownByItsKind) {
  Rendered const& row = GetParam();
  EXPECT_EQ(row.value.GetTag(), row.tag);
  EXPECT_EQ(Message("<^1>", row.value), std::string("<") + row.text + ">");
  EXPECT_EQ(row.value.GetString(), row.tag == 4 ? row.text : "");
}

TEST_P(ReplacementValue, CopiesAreShownAlike) {
  SK_ReplacementValue const copy(GetParam().value);
  SK_ReplacementValue assigned(Text("old"));
  assigned = GetParam().value;
  for (SK_ReplacementValue const& value : {copy, assigned}) {
    EXPECT_EQ(value.GetTag(), GetParam().tag);
    EXPECT_EQ(Message("<^1>", value), std::string("<") + GetParam().text + ">");
  }
}

INSTANTIATE_TEST_SUITE_P(Error, ReplacementValue, testing::ValuesIn(kRendered),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(Error, MarkWithoutAValueStays) {
  EXPECT_EQ(SK_ReplacementValue().GetTag(), 0);
  EXPECT_EQ(SK_ReplacementValue().GetString(), "");
  EXPECT_EQ(Message(SK_Message::kInvalidPointer), "Invalid pointer to ^1.");
  EXPECT_EQ(Message("^1^2^3^4", SK_ReplacementValue(), 2), "^12^3^4");
}

TEST(Error, EmptyStringRemovesTheMark) {
  EXPECT_EQ(Message(SK_Message::kInvalidPointer, Text("")), "Invalid pointer to .");
}

TEST(Error, AllFourMarksAreReplaced) {
  EXPECT_EQ(Message(SK_Message::kMatchNameNotMatching, Text("a"), 2, 3u, Text("d")),
            "a:Match name found for child Node at index 2 for path item 3,Input match name:d.");
}

TEST(Error, OnlyTheFirstOfEqualMarksIsReplaced) {
  EXPECT_EQ(Message("^1 and ^1", Text("one")), "one and ^1");
}

TEST(Error, ValueThatHoldsALaterMarkIsReplacedInItsTurn) {
  EXPECT_EQ(Message("^1|^2", Text("^2"), Text("two")), "two|^2");
  EXPECT_EQ(Message("^1", Text("^2"), Text("^3"), Text("^4"), Text("end")), "end");
}

TEST(Error, ValueThatHoldsAnEarlierMarkIsNot) {
  EXPECT_EQ(Message("^1|^2", Text("one"), Text("^1")), "one|^1");
  EXPECT_EQ(Message("^1", Text("^1^1")), "^1^1");
}

TEST(Error, OtherHatsAreText) {
  EXPECT_EQ(Message("^0^5^a^", Text("one")), "^0^5^a^");
  EXPECT_EQ(Message("^11", Text("one")), "one1");
}

TEST(Error, ValueThatIsNotAsciiVanishes) {
  EXPECT_EQ(Message(SK_Message::kFileNotExist, Text("/t\xC3\xB6ne.tdjson")), "File not exist at input path:.");
  EXPECT_EQ(Message("a^1b^2c", Text("\x80"), Text("plain")), "abplainc");
}

TEST(Error, TextThatIsNotAsciiStays) {
  EXPECT_EQ(Message("$$$/Key=t\xC3\xB6ne \xF0\x9F\x98\x80: ^1", 5), "t\xC3\xB6ne \xF0\x9F\x98\x80: 5");
}

TEST(Error, BadUTF8ShortensTheMessageAndRaisesNothing) {
  EXPECT_EQ(Message("$$$/Key=before\x80 ^1", Text("value")), "before");
  EXPECT_EQ(Message("plain \xC3", Text("value")), "plain ");
}

TEST(Error, ShortTextsAreRenderedToo) {
  EXPECT_EQ(Message("^1", Text("")), "");
  EXPECT_EQ(Message("^1", 1), "1");
  EXPECT_EQ(Message("\xC3\xA4"), "\xC3\xA4");
  EXPECT_EQ(Message(""), "");
}

TEST(Error, ReplaceHatLeavesItsInputAlone) {
  SK_UTF16String const text = Wide("a ^1 b");
  EXPECT_EQ(ReplaceHat(text, "^1", 5), Wide("a 5 b"));
  EXPECT_EQ(text, Wide("a ^1 b"));
  EXPECT_EQ(ReplaceHat(text, "^2", 5), text);
  EXPECT_EQ(ReplaceHat(text, "^1", SK_ReplacementValue()), text);
}

TEST(Error, ReplaceHatAtBothEnds) {
  EXPECT_EQ(ReplaceHat(Wide("^1 b"), "^1", Text("x")), Wide("x b"));
  EXPECT_EQ(ReplaceHat(Wide("a ^1"), "^1", Text("x")), Wide("a x"));
  EXPECT_EQ(ReplaceHat(Wide("^1"), "^1", Text("")), Wide(""));
  EXPECT_EQ(ReplaceHat(Wide("^"), "^1", Text("x")), Wide("^"));
  EXPECT_EQ(ReplaceHat(SK_UTF16String(), "^1", Text("x")), SK_UTF16String());
}

TEST(Error, NamesAreQuoted) {
  EXPECT_EQ(Quoted("name"), "\"name\"");
  EXPECT_EQ(Quoted(""), "\"\"");
}

TEST(Error, ThrowErrorRaisesAllThatItIsGiven) {
  ExpectError(
      [] {
        ThrowError({ns_sensor::kWrongPropertyType, SK_Message::kInvalidPropertyTypeAtPath, 5000000000, 12},
                   Text("\"min\""), Text("JSON Number"), Text("\"a/b\""));
      },
      43, "Invalid \"min\" type, expected type:JSON Number at \"a/b\".", 5000000000, 12);
  ExpectError([] { ThrowError({ns_sensor::kEmptyFile, SK_Message::kEmptyFile, -1, -1}); }, 54, "Empty Input file.");
}

TEST(Error, ThrowErrorKeepsTheLastErrorOfTheThread) {
  EXPECT_THROW(ThrowError({ns_sensor::kPathMismatch, SK_Message::kMatchNameNotFound, 17, 3}, Text("\"x\"")),
               ns_sensor::SK_Exception);
  EXPECT_EQ(gLastException.GetErrorCode(), 33);
  EXPECT_EQ(gLastException.GetLocalizedErrMsg(), std::string("No node found with match name : \"x\"."));
  EXPECT_EQ(gLastException.GetFileOffset(), 17);
  EXPECT_EQ(gLastException.GetFileLineNo(), 3);
  // Another error takes its place.
  EXPECT_THROW(ThrowError({ns_sensor::kEmptyFile, SK_Message::kEmptyFile, -1, -1}), ns_sensor::SK_Exception);
  EXPECT_EQ(gLastException.GetErrorCode(), 54);
  EXPECT_EQ(gLastException.GetFileOffset(), -1);
  EXPECT_EQ(gLastException.GetFileLineNo(), -1);
}

TEST(Error, BuildingAMessageIsNoError) {
  gLastException = ns_sensor::SK_Exception();
  Message(SK_Message::kInvalidPointer, Text("x"));
  EXPECT_EQ(gLastException.GetErrorCode(), 0);
}

TEST(Error, LastErrorBelongsToItsThread) {
  EXPECT_THROW(ThrowError({ns_sensor::kEmptyFile, SK_Message::kEmptyFile, -1, -1}), ns_sensor::SK_Exception);
  std::thread([] {
    EXPECT_EQ(gLastException.GetErrorCode(), 0);
    EXPECT_EQ(gLastException.GetLocalizedErrMsg(), std::string());
    EXPECT_EQ(gLastException.GetFileOffset(), 0);
    EXPECT_EQ(gLastException.GetFileLineNo(), 0);
    EXPECT_THROW(ThrowError({ns_sensor::kNoFileOpen, SK_Message::kNoFileOpened, -1, -1}), ns_sensor::SK_Exception);
    EXPECT_EQ(gLastException.GetErrorCode(), 26);
  }).join();
  EXPECT_EQ(gLastException.GetErrorCode(), 54);
}

}  // namespace
