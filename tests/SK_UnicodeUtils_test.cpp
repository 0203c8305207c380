#include "SK_UnicodeUtils.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "ExpectError.h"

namespace {

using namespace SK_UnicodeUtils;
using senmark_test::ExpectError;

UTF8String Utf8(std::string const& text) {
  return UTF8String(text.begin(), text.end());
}

std::string Bytes(UTF8String const& text) {
  return std::string(text.begin(), text.end());
}

UTF16String Utf16(std::u16string const& text) {
  return UTF16String(text.begin(), text.end());
}

// A copy without a terminator, in a buffer of exactly its size.
template <typename Unit>
std::unique_ptr<Unit[]> Exactly(std::basic_string<Unit> const& text) {
  std::unique_ptr<Unit[]> copy(new Unit[text.size()]);
  std::copy(text.begin(), text.end(), copy.get());
  return copy;
}

TEST(UnicodeUtils, AsciiIsZeroTo127) {
  EXPECT_FALSE(IsAscii(-1));
  EXPECT_TRUE(IsAscii(0));
  EXPECT_TRUE(IsAscii(127));
  EXPECT_FALSE(IsAscii(128));
  EXPECT_FALSE(IsAscii(256 + 'a'));
}

TEST(UnicodeUtils, AsciiCheckSeesEveryByteUpToTheTerminator) {
  EXPECT_FALSE(AsciiCheck(nullptr));
  EXPECT_TRUE(AsciiCheck(""));
  EXPECT_TRUE(AsciiCheck("plain \x01\x7F"));
  EXPECT_FALSE(AsciiCheck("\x80"));
  EXPECT_FALSE(AsciiCheck("last \xFF"));
  EXPECT_TRUE(AsciiCheck("behind\0\xFF"));
}

TEST(UnicodeUtils, AsciiToUTF16WidensTheCountedBytes) {
  EXPECT_EQ(AsciiToUTF16("abcdef", 3), Utf16(u"abc"));
  EXPECT_EQ(AsciiToUTF16("abc", 0), UTF16String());
  EXPECT_EQ(AsciiToUTF16("", 0), UTF16String());
}

TEST(UnicodeUtils, AsciiToUTF16OfOtherBytesIsEmpty) {
  EXPECT_EQ(AsciiToUTF16(nullptr, 0), UTF16String());
  EXPECT_EQ(AsciiToUTF16("gr\xC3\xBC\xC3\x9F", 6), UTF16String());
  // The bytes that are not wanted count too.
  EXPECT_EQ(AsciiToUTF16("abc\x80", 3), UTF16String());
  EXPECT_EQ(AsciiToUTF16("\x80", 1), UTF16String());
}

TEST(UnicodeUtils, AsciiToUTF16WidensWithoutSign) {
  EXPECT_EQ(AsciiToUTF16("a\0\xFF", 3), (UTF16String{0x61, 0, 0xFF}));
}

TEST(UnicodeUtils, CastsKeepThePointer) {
  char const text[] = "x";
  EXPECT_EQ(static_cast<void const*>(CharAsUTF8(text)), static_cast<void const*>(text));
  EXPECT_EQ(UTF8AsChar(CharAsUTF8(text)), static_cast<char const*>(text));
}

TEST(UnicodeUtils, UTF8to16OfNothingIsNothing) {
  ConversionResult status = sourceIllegal;
  unsigned long consumed = 7;
  EXPECT_EQ(UTF8to16(UTF8String(), &status, &consumed), UTF16String());
  EXPECT_EQ(status, conversionOK);
  EXPECT_EQ(consumed, 0u);
}

TEST(UnicodeUtils, UTF8to16ConvertsEveryLength) {
  EXPECT_EQ(UTF8to16(Utf8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), nullptr, nullptr),
            Utf16(u"a\u00E4\u20AC\U0001F600"));
}

TEST(UnicodeUtils, BadUTF8ShortensTheText) {
  ConversionResult status = conversionOK;
  unsigned long consumed = 0;
  EXPECT_EQ(UTF8to16(Utf8("ab\xC3\xA4\x80"
                          "cd"),
                     &status, &consumed),
            Utf16(u"ab\u00E4"));
  EXPECT_EQ(status, sourceIllegal);
  EXPECT_EQ(consumed, 4u);
  EXPECT_EQ(UTF8to16(Utf8("ab\xE2\x82"), &status, &consumed), Utf16(u"ab"));
  EXPECT_EQ(status, sourceExhausted);
  EXPECT_EQ(consumed, 2u);
}

TEST(UnicodeUtils, EncodedSurrogateShortensTheText) {
  ConversionResult status = conversionOK;
  EXPECT_EQ(UTF8to16(Utf8("a\xED\xA0\x80z"), &status, nullptr), Utf16(u"a"));
  EXPECT_EQ(status, sourceIllegal);
}

TEST(UnicodeUtils, UTF8to16IsTheSameAroundTheShortText) {
  for (std::size_t const size : {255u, 256u, 257u, 1000u}) {
    unsigned long consumed = 0;
    EXPECT_EQ(UTF8to16(UTF8String(size, 'x'), nullptr, &consumed), UTF16String(size, 'x'));
    EXPECT_EQ(consumed, size);
    UTF8String const wide = UTF8String(size - 4, 'x') + Utf8("\xF0\x9F\x98\x80");
    EXPECT_EQ(UTF8to16(wide, nullptr, &consumed), UTF16String(size - 4, 'x') + Utf16(u"\U0001F600"));
    EXPECT_EQ(consumed, size);
  }
}

TEST(UnicodeUtils, UTF8to16KeepsZeroBytes) {
  EXPECT_EQ(UTF8to16(UTF8String{0x61, 0, 0x62}, nullptr, nullptr), (UTF16String{0x61, 0, 0x62}));
}

TEST(UnicodeUtils, UTF16to8ConvertsEveryLength) {
  EXPECT_EQ(Bytes(UTF16to8(Utf16(u"a\u00E4\u20AC\U0001F600"))), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(Bytes(UTF16to8(Utf16(u"plain text"))), "plain text");
  EXPECT_EQ(Bytes(UTF16to8(UTF16String())), "");
}

TEST(UnicodeUtils, UTF16to8OfAPointerEndsAtItsZeroUnit) {
  unsigned short const text[] = {0x61, 0x20AC, 0, 0x62};
  EXPECT_EQ(Bytes(UTF16to8(text)), "a\xE2\x82\xAC");
  EXPECT_EQ(Bytes(UTF16to8(text + 2)), "");
  EXPECT_EQ(Bytes(UTF16to8(static_cast<unsigned short const*>(nullptr))), "");
}

struct EncodedLength {
  char const* name;
  UTF16String text;
  char const* bytes;
};

void PrintTo(EncodedLength const& row, std::ostream* out) {
  *out << row.name;
}

EncodedLength const kEncodedLengths[] = {
    {"LastOfOneByte", {0x7F, 'x', 'x', 'x'}, "\x7Fxxx"},
    {"FirstOfTwo", {0x80, 'x', 'x', 'x'}, "\xC2\x80xxx"},
    {"LastOfTwo", {0x7FF, 'x', 'x', 'x'}, "\xDF\xBFxxx"},
    {"FirstOfThree", {0x800, 'x', 'x', 'x'}, "\xE0\xA0\x80xxx"},
    {"LastOfThree", {0xFFFF, 'x', 'x', 'x'}, "\xEF\xBF\xBFxxx"},
    {"FirstOfFour", {0xD800, 0xDC00, 'x', 'x'}, "\xF0\x90\x80\x80xx"},
    {"LastOfFour", {0xDBFF, 0xDFFF, 'x', 'x'}, "\xF4\x8F\xBF\xBFxx"},
    {"BeforeTheSurrogates", {0xD7FF, 'x', 'x', 'x'}, "\xED\x9F\xBFxxx"},
    {"LoneHigh", {0xD800, 'x', 'x', 'x'}, "\xED\xA0\x80xxx"},
    {"LoneLow", {0xDFFF, 'x', 'x', 'x'}, "\xED\xBF\xBFxxx"},
    {"LowBeforeHigh", {0xDC00, 0xD800, 'x', 'x'}, "\xED\xB0\x80\xED\xA0\x80xx"},
    {"HighBeforePair", {0xD800, 0xD83D, 0xDE00, 'x'}, "\xED\xA0\x80\xF0\x9F\x98\x80x"},
    {"HighAtTheEnd", {'x', 'x', 'x', 0xDBFF}, "xxx\xED\xAF\xBF"},
    {"BehindTheSurrogates", {0xE000, 'x', 'x', 'x'}, "\xEE\x80\x80xxx"},
    {"ShortLoneSurrogate", {0xD800}, "\xED\xA0\x80"},
    {"ShortPair", {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80"},
    {"ShortAscii", {'a', 'b', 'c'}, "abc"},
    {"AsciiOfFour", {'a', 'b', 'c', 'd'}, "abcd"},
};

class StringToUTF8 : public testing::TestWithParam<EncodedLength> {};

TEST_P(StringToUTF8, GivesTheseBytes) {
  UTF8String out = Utf8("old");
  UTF16StringtoUTF8String(GetParam().text.c_str(), GetParam().text.size(), out);
  EXPECT_EQ(Bytes(out), GetParam().bytes);
}

INSTANTIATE_TEST_SUITE_P(UnicodeUtils, StringToUTF8, testing::ValuesIn(kEncodedLengths),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(UnicodeUtils, NullOrNoLengthLeavesTheResult) {
  unsigned short const text[] = {'a', 0};
  UTF8String out = Utf8("old");
  UTF16StringtoUTF8String(nullptr, 5, out);
  EXPECT_EQ(Bytes(out), "old");
  UTF16StringtoUTF8String(text, 0, out);
  EXPECT_EQ(Bytes(out), "old");
}

TEST(UnicodeUtils, ZeroUnitEndsATextOfFourUnitsOrMore) {
  UTF16String text(10, 'a');
  text[5] = 0;
  UTF8String out;
  UTF16StringtoUTF8String(text.c_str(), 10, out);
  EXPECT_EQ(Bytes(out), "aaaaa");
  text[2] = 0xE4;
  UTF16StringtoUTF8String(text.c_str(), 10, out);
  EXPECT_EQ(Bytes(out),
            "aa\xC3\xA4"
            "aa");
  UTF16StringtoUTF8String(text.c_str() + 5, 4, out);
  EXPECT_EQ(Bytes(out), "");
}

TEST(UnicodeUtils, LengthOfFourOrMoreCountsNoFurther) {
  UTF16String const text(10, 'a');
  UTF8String out;
  UTF16StringtoUTF8String(text.c_str(), 4, out);
  EXPECT_EQ(Bytes(out), "aaaaaaaaaa");
}

TEST(UnicodeUtils, LengthBelowFourIsExact) {
  // No terminator stands behind these, and a zero unit among them is a character.
  for (std::size_t length = 1; length <= 3; ++length) {
    UTF8String out;
    UTF16StringtoUTF8String(Exactly(UTF16String(length, 'a')).get(), length, out);
    EXPECT_EQ(Bytes(out), std::string(length, 'a'));
  }
  UTF8String out;
  UTF16StringtoUTF8String(Exactly(UTF16String{'a', 0, 'b'}).get(), 3, out);
  EXPECT_EQ(Bytes(out), std::string("a\0b", 3));
  UTF16StringtoUTF8String(Exactly(UTF16String{'a', 'b', 0xD83D}).get(), 3, out);
  EXPECT_EQ(Bytes(out), "ab\xED\xA0\xBD");
}

std::string FromNative(UTF16String const& text) {
  std::string out = "old";
  FromUTF16Native(Exactly(text).get(), text.size(), &out);
  return out;
}

TEST(UnicodeUtils, FromUTF16NativeConvertsEveryLength) {
  EXPECT_EQ(FromNative(UTF16String()), "");
  EXPECT_EQ(FromNative(Utf16(u"a\u00E4\u20AC\U0001F600z")), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(FromNative(UTF16String{'a', 0, 'b'}), std::string("a\0b", 3));
  EXPECT_EQ(FromNative(UTF16String{0xDBFF, 0xDFFF}), "\xF4\x8F\xBF\xBF");
}

TEST(UnicodeUtils, FromUTF16NativeJoinsItsPasses) {
  // A pass takes 16,384 bytes: the three-byte and four-byte characters below straddle its end.
  for (std::size_t before = 16380; before <= 16386; ++before) {
    UTF16String const text = UTF16String(before, 'x') + Utf16(u"\u20AC\U0001F600") + UTF16String(20000, 'y');
    EXPECT_EQ(FromNative(text), std::string(before, 'x') + "\xE2\x82\xAC\xF0\x9F\x98\x80" + std::string(20000, 'y'));
  }
}

struct BadUtf16 {
  char const* name;
  UTF16String text;
  char const* message;
};

void PrintTo(BadUtf16 const& row, std::ostream* out) {
  *out << row.name;
}

BadUtf16 const kBadUtf16[] = {
    {"OddTrailingHigh", {'a', 'b', 0xD83D}, "Incomplete Unicode at end of string"},
    {"OnlyAHigh", {0xD800}, "Incomplete Unicode at end of string"},
    {"LeadingLow", {0xDC00, 'a'}, "Bad UTF-16 - leading low surrogate"},
    {"LastLeadingLow", {'a', 0xDFFF}, "Bad UTF-16 - leading low surrogate"},
    {"LowMissing", {0xD800, 'a'}, "Bad UTF-16 - missing low surrogate"},
    {"SecondHigh", {0xDBFF, 0xDBFF}, "Bad UTF-16 - missing low surrogate"},
    {"FirstBehindLow", {0xDBFF, 0xE000}, "Bad UTF-16 - missing low surrogate"},
};

class StrictFromUTF16 : public testing::TestWithParam<BadUtf16> {};

TEST_P(StrictFromUTF16, RaisesCode1) {
  ExpectError([&] { FromNative(GetParam().text); }, 1, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(UnicodeUtils, StrictFromUTF16, testing::ValuesIn(kBadUtf16),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(UnicodeUtils, CodePointToUTF8TellsWhatItWrote) {
  struct {
    unsigned codePoint;
    std::string bytes;
  } const rows[] = {{0x80, "\xC2\x80"},
                    {0x7FF, "\xDF\xBF"},
                    {0x800, "\xE0\xA0\x80"},
                    {0xD7FF, "\xED\x9F\xBF"},
                    {0xE000, "\xEE\x80\x80"},
                    {0xFFFF, "\xEF\xBF\xBF"},
                    {0x10000, "\xF0\x90\x80\x80"},
                    {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
  for (auto const& row : rows) {
    for (std::size_t room = 0; room <= 4; ++room) {
      std::unique_ptr<unsigned char[]> const out(new unsigned char[room]);
      unsigned long written = 99;
      CodePoint_to_UTF8_Multi(row.codePoint, out.get(), room, &written);
      std::size_t const expected = room < row.bytes.size() ? 0 : row.bytes.size();
      ASSERT_EQ(written, expected) << std::hex << row.codePoint;
      EXPECT_EQ(std::string(UTF8AsChar(out.get()), written), row.bytes.substr(0, expected));
    }
  }
}

TEST(UnicodeUtils, CodePointToUTF8RefusesSurrogatesAndWhatIsTooLarge) {
  unsigned char out[4];
  unsigned long written = 0;
  for (unsigned const codePoint : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu}) {
    ExpectError([&] { CodePoint_to_UTF8_Multi(codePoint, out, 4, &written); }, 1, "Bad UTF-32 - surrogate code point");
  }
  for (unsigned const codePoint : {0x110000u, 0x110001u, 0xFFFFFFFFu}) {
    ExpectError([&] { CodePoint_to_UTF8_Multi(codePoint, out, 4, &written); }, 1, "Bad UTF-32 - out of range.");
  }
  // Also when it would not fit.
  ExpectError([&] { CodePoint_to_UTF8_Multi(0xD800, out, 0, &written); }, 1, "Bad UTF-32 - surrogate code point");
}

TEST(UnicodeUtils, SurrogatePairGivesItsCodePoint) {
  unsigned short const first[] = {0xD800, 0xDC00};
  unsigned short const last[] = {0xDBFF, 0xDFFF, 'x'};
  unsigned codePoint = 0;
  unsigned long unitsRead = 0;
  CodePoint_from_UTF16Nat_Surrogate(first, 2, &codePoint, &unitsRead);
  EXPECT_EQ(codePoint, 0x10000u);
  EXPECT_EQ(unitsRead, 2u);
  CodePoint_from_UTF16Nat_Surrogate(last, 3, &codePoint, &unitsRead);
  EXPECT_EQ(codePoint, 0x10FFFFu);
  EXPECT_EQ(unitsRead, 2u);
}

TEST(UnicodeUtils, HalfAPairReadsNothing) {
  std::unique_ptr<unsigned short[]> const high = Exactly(UTF16String{0xD800});
  unsigned codePoint = 5;
  unsigned long unitsRead = 9;
  CodePoint_from_UTF16Nat_Surrogate(high.get(), 1, &codePoint, &unitsRead);
  EXPECT_EQ(unitsRead, 0u);
  // A low one is refused before its length is looked at.
  std::unique_ptr<unsigned short[]> const low = Exactly(UTF16String{0xDC00});
  ExpectError([&] { CodePoint_from_UTF16Nat_Surrogate(low.get(), 1, &codePoint, &unitsRead); }, 1,
              "Bad UTF-16 - leading low surrogate");
}

TEST(UnicodeUtils, UTF16NatToUTF8FillsItsRoomWithWholeCharacters) {
  UTF16String const text = Utf16(u"a\u00E4\u20AC\U0001F600");
  struct {
    unsigned long room, unitsRead, bytesWritten;
  } const rows[] = {{0, 0, 0}, {1, 1, 1}, {2, 1, 1}, {3, 2, 3}, {5, 2, 3}, {6, 3, 6}, {9, 3, 6}, {10, 5, 10}};
  for (auto const& row : rows) {
    std::unique_ptr<unsigned char[]> const out(new unsigned char[row.room]);
    unsigned long unitsRead = 99;
    unsigned long bytesWritten = 99;
    UTF16Nat_to_UTF8(Exactly(text).get(), text.size(), out.get(), row.room, &unitsRead, &bytesWritten);
    EXPECT_EQ(unitsRead, row.unitsRead) << row.room;
    EXPECT_EQ(bytesWritten, row.bytesWritten) << row.room;
  }
}

std::string To16(std::string const& text, bool bigEndian) {
  std::string out = "old";
  ToUTF16(Exactly(Utf8(text)).get(), text.size(), &out, bigEndian);
  return out;
}

TEST(UnicodeUtils, ToUTF16WritesTheWantedByteOrder) {
  std::string const text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
  EXPECT_EQ(To16(text, true), std::string("\x00"
                                          "a\x00\xE4\x20\xAC\xD8\x3D\xDE\x00",
                                          10));
  EXPECT_EQ(To16(text, false), std::string("a\x00\xE4\x00\xAC\x20\x3D\xD8\x00\xDE", 10));
  EXPECT_EQ(To16("", true), "");
}

TEST(UnicodeUtils, ToUTF16JoinsItsPasses) {
  // A pass takes 8,192 units: the pair below straddles its end.
  for (std::size_t before = 8190; before <= 8193; ++before) {
    std::string expected;
    for (std::size_t i = 0; i < before; ++i) {
      expected += std::string("x\0", 2);
    }
    expected += std::string("\x3D\xD8\x00\xDE", 4);
    for (std::size_t i = 0; i < 9000; ++i) {
      expected += std::string("y\0", 2);
    }
    EXPECT_EQ(To16(std::string(before, 'x') + "\xF0\x9F\x98\x80" + std::string(9000, 'y'), false), expected);
  }
}

TEST(UnicodeUtils, ToUTF16RaisesOnWhatIsNotUTF8) {
  for (char const* const text : {"a\x80", "\xC3", "ab\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
    ExpectError([&] { To16(text, true); }, 1, "Incomplete Unicode at end of string");
    ExpectError([&] { To16(text, false); }, 1, "Incomplete Unicode at end of string");
  }
}

}  // namespace
