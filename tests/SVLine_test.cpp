#include "SVLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ExpectError.h"
#include "SK_Exception.h"
#include "SVUnitInput.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using testing::ElementsAreArray;

using Lines = std::vector<std::string>;

std::string ToBytes(std::u16string_view text, FileEncodingType encoding) {
  std::string bytes;
  for (char16_t const unit : text) {
    char const high = static_cast<char>(unit >> 8U);
    char const low = static_cast<char>(unit & 0xFFU);
    bytes += encoding == kUTF16LittleEndian ? std::string{low, high} : std::string{high, low};
  }
  return bytes;
}

class LineFile {
 public:
  Lines OfBytes(std::string const& bytes) const {
    SK_InputBytes input(Write(bytes));
    return ReadAll(input, GetMBLine);
  }

  Lines OfUnits(std::u16string_view text, FileEncodingType encoding) const {
    return OfUnitBytes(ToBytes(text, encoding), encoding);
  }

  Lines OfUnitBytes(std::string const& bytes, FileEncodingType encoding) const {
    SVUnitInput input(Write(bytes), encoding);
    return ReadAll(input, GetWCLine);
  }

 private:
  std::string Write(std::string const& bytes) const {
    // A file that is cut and written anew is flushed to the disk by some systems.
    std::filesystem::remove(mFolder.Path("table"));
    return mFolder.Write("table", bytes);
  }

  template <typename Input>
  static Lines ReadAll(Input& input, void (*readLine)(Input&, std::string&)) {
    Lines lines;
    while (input.Peek() != Input::kEnd) {
      std::string line = "what was there before";
      readLine(input, line);
      lines.push_back(line);
    }
    return lines;
  }

  senmark_test::TempFolder mFolder;
};

struct Split {
  char const* name;
  char const* text;
  Lines lines;
  Lines littleEndianLines = {};  ///< where those of a little-endian file are others
};

std::ostream& operator<<(std::ostream& out, Split const& row) {
  return out << row.name;
}

class SplitText : public testing::TestWithParam<Split> {
 protected:
  LineFile mFile;
};

TEST_P(SplitText, AsBytes) {
  EXPECT_THAT(mFile.OfBytes(GetParam().text), ElementsAreArray(GetParam().lines));
}

TEST_P(SplitText, AsBigEndianUnits) {
  std::string_view const text = GetParam().text;
  EXPECT_THAT(mFile.OfUnits(std::u16string(text.begin(), text.end()), kUTF16BigEndian),
              ElementsAreArray(GetParam().lines));
}

TEST_P(SplitText, AsLittleEndianUnits) {
  std::string_view const text = GetParam().text;
  Lines const& lines = GetParam().littleEndianLines.empty() ? GetParam().lines : GetParam().littleEndianLines;
  EXPECT_THAT(mFile.OfUnits(std::u16string(text.begin(), text.end()), kUTF16LittleEndian), ElementsAreArray(lines));
}

Split const kSplit[] = {
    {"Empty", "", {}},
    {"WithoutEnd", "a,b", {"a,b"}},
    {"LineFeed", "a\nb\n", {"a", "b"}},
    {"CarriageReturn", "a\rb\r", {"a", "b"}},
    {"CarriageReturnLineFeed", "a\r\nb\r\n", {"a", "", "b", ""}},
    {"LineFeedCarriageReturn", "a\n\rb\n\r", {"a", "b"}, {"a", "", "b", ""}},
    {"OneCarriageReturnBehindLineFeed", "a\n\r\rb", {"a", "", "b"}, {"a", "", "", "b"}},
    {"LineFeedCarriageReturnLineFeed", "a\n\r\nb", {"a", "", "b"}, {"a", "", "", "b"}},
    {"EmptyLines", "\n\na\n\nb", {"", "", "a", "", "b"}},
    {"EmptyFirstLineOfCarriageReturn", "\ra", {"", "a"}},
    {"QuotesStay", "\"a\",\"b\"\nc", {"\"a\",\"b\"", "c"}},
    {"BreaksBetweenQuotes", "\"a\nb\r\nc\n\r\",d\ne", {"\"a\nb\r\nc\n\r\",d", "e"}},
    {"QuoteInMidField", "a\"b\nc\"d\ne", {"a\"b\nc\"d", "e"}},
    {"DoubledQuoteStays", "\"a\"\"b\n\"\nc", {"\"a\"\"b\n\"", "c"}},
    {"DoubledQuoteAndNothingElse", "\"\"\na", {"\"\"", "a"}},
    {"TwoDoubledQuotes", "\"\"\"\"\na", {"\"\"\"\"", "a"}},
    {"ThreeQuotesLeaveItOpen", "\"\"\"\na", {"\"\"\"\na"}},
    {"QuotationBehindQuotation", "\"a\",\"b\nc\"\nd", {"\"a\",\"b\nc\"", "d"}},
    {"UnterminatedQuote", "a,\"b\nc\nd", {"a,\"b\nc\nd"}},
    {"QuoteAtTheEnd", "a\"", {"a\""}},
    {"ClosingQuoteAtTheEnd", "\"a\"", {"\"a\""}},
    {"TabsAndBlanks", " a\t b \n c", {" a\t b ", " c"}},
};

INSTANTIATE_TEST_SUITE_P(SVLine, SplitText, testing::ValuesIn(kSplit),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SVLine, BytesPassUnchanged) {
  std::string text;
  for (int byte = 0; byte != 256; ++byte) {
    if (byte != '"' && byte != '\n' && byte != '\r') {
      text += static_cast<char>(byte);
    }
  }
  EXPECT_THAT(LineFile().OfBytes(text + "\n" + text), ElementsAreArray({text, text}));
}

/// The lines of a text by the rules, one byte at a time.
Lines ReferenceLines(std::string const& text) {
  Lines lines;
  std::size_t i = 0;
  while (i != text.size()) {
    std::string line;
    bool isQuoted = false;
    for (; i != text.size(); ++i) {
      char const byte = text[i];
      if (!isQuoted && (byte == '\n' || byte == '\r')) {
        i += byte == '\n' && i + 1 != text.size() && text[i + 1] == '\r' ? 2 : 1;
        break;
      }
      line += byte;
      // A doubled quote closes and opens, which is the same as if it did neither.
      isQuoted = isQuoted != (byte == '"');
    }
    lines.push_back(line);
  }
  return lines;
}

TEST(SVLine, SpecialBytesAreFoundWhereverTheyStand) {
  LineFile const file;
  std::mt19937 random(3);
  for (int i = 0; i < 100; ++i) {
    std::string text;
    for (auto left = random() % 4000; left != 0; --left) {
      // Neighbours of the special bytes, and those with their highest bit set, are taken for them easily.
      static constexpr std::string_view kRare = "\"\n\r!#\t\v\f\x0E\xA2\x8A\x8D\x01";
      text += random() % 4 == 0 ? kRare[random() % kRare.size()] : 'a';
    }
    ASSERT_THAT(file.OfBytes(text), ElementsAreArray(ReferenceLines(text))) << testing::PrintToString(text);
  }
}

TEST(SVLine, LinesGoAcrossPieces) {
  constexpr std::size_t kPiece = 256 * 1024;
  LineFile const file;
  for (char const* const end : {"\n", "\r", "\n\r", "\r\n", "\"\"", "\"x\"", "\"\n\"", "\"", "\"\"\"\n\""}) {
    for (std::size_t before = kPiece - 4; before <= kPiece + 1; ++before) {
      std::string const text = std::string(before, 'a') + end + "b\nc";
      ASSERT_TRUE(file.OfBytes(text) == ReferenceLines(text)) << testing::PrintToString(end) << ' ' << before;
      std::u16string const wide(text.begin(), text.end());
      ASSERT_TRUE(file.OfUnits(wide, kUTF16BigEndian) == ReferenceLines(text)) << before;
      // Half as long, so that the end of a piece lies in the same place again.
      std::u16string const half = wide.substr(kPiece / 2);
      ASSERT_TRUE(file.OfUnits(half, kUTF16BigEndian) == ReferenceLines(text.substr(kPiece / 2))) << before;
    }
  }
}

TEST(SVLine, LineOfManyMegabytesIsOne) {
  std::string const text = "\"" + std::string(3000000, '\n') + "\"" + std::string(3000000, 'x');
  Lines const lines = LineFile().OfBytes(text);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_TRUE(lines[0] == text);
}

TEST(SVLine, ManyDoubledQuotesAreOneLine) {
  std::string const text(1000000, '"');
  EXPECT_TRUE(LineFile().OfBytes(text + "\na") == (Lines{text, "a"}));
  EXPECT_TRUE(LineFile().OfUnits(std::u16string(1000000, '"') + u"\na", kUTF16LittleEndian) == (Lines{text, "a"}));
}

class Units : public testing::TestWithParam<FileEncodingType> {
 protected:
  Lines Read(std::u16string_view text) const { return mFile.OfUnits(text, GetParam()); }

  LineFile mFile;
};

INSTANTIATE_TEST_SUITE_P(SVLine, Units, testing::Values(kUTF16BigEndian, kUTF16LittleEndian), [](auto const& row) {
  return std::string(row.param == kUTF16BigEndian ? "BigEndian" : "LittleEndian");
});

TEST_P(Units, BecomeUtf8) {
  EXPECT_THAT(Read(u"\u007F\u0080\u07FF\u0800\uFFFD\uD7FF\uE000"),
              ElementsAreArray({"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xED\x9F\xBF\xEE\x80\x80"}));
}

/// Their low byte is one of a surrogate, had the bytes the other order.
TEST_P(Units, LettersThatLookLikeSurrogatesAreNone) {
  EXPECT_THAT(Read(u"\u00D8\u00DC\u01D8"), ElementsAreArray({"\xC3\x98\xC3\x9C\xC7\x98"}));
}

TEST_P(Units, PairsAreJoined) {
  EXPECT_THAT(Read(u"\U00010000\n\"\U0010FFFF\""), ElementsAreArray({"\xF0\x90\x80\x80", "\"\xF4\x8F\xBF\xBF\""}));
}

TEST_P(Units, ZeroIsACharacter) {
  EXPECT_THAT(Read(std::u16string_view(u"a\0b\nc", 5)), ElementsAreArray({std::string("a\0b", 3), std::string("c")}));
}

TEST_P(Units, MarksOfBothOrdersGoOutsideOfQuotes) {
  EXPECT_THAT(Read(u"\uFEFFa\uFFFEb\uFEFF,\"c\uFEFFd\uFFFE\"\uFEFF"), ElementsAreArray({"ab,\"c\xEF\xBB\xBF"
                                                                                        "d\xEF\xBF\xBE\""}));
}

TEST_P(Units, LineOfNothingButAMarkIsEmpty) {
  EXPECT_THAT(Read(u"\uFEFF\na"), ElementsAreArray({"", "a"}));
}

TEST_P(Units, OddByteAtTheEndIsNone) {
  EXPECT_THAT(mFile.OfUnitBytes(ToBytes(u"ab", GetParam()) + "c", GetParam()), ElementsAreArray({"ab"}));
  EXPECT_THAT(mFile.OfUnitBytes("c", GetParam()), ElementsAreArray(Lines()));
}

TEST_P(Units, SurrogateWithoutTheOtherIsRefused) {
  struct {
    std::u16string text;
    char const* message;
  } const kRefused[] = {
      {std::u16string{'a', 0xDC00, 'b'}, "Bad UTF-16 - leading low surrogate"},
      {std::u16string{'a', 0xD800, 'b'}, "Bad UTF-16 - missing low surrogate"},
      {std::u16string{0xDC00, 0xD800}, "Bad UTF-16 - leading low surrogate"},
      {std::u16string{0xD800, 0xD800, 0xDC00}, "Bad UTF-16 - missing low surrogate"},
      {std::u16string{'a', 0xD800}, "Incomplete Unicode at end of string"},
      {std::u16string{0xD800, '\n', 0xDC00}, "Incomplete Unicode at end of string"},
      {std::u16string{0xD800, 0xFEFF, '\n', 0xDC00}, "Incomplete Unicode at end of string"},
      {std::u16string{'"', 0xD800, '"'}, "Bad UTF-16 - missing low surrogate"},
  };
  for (auto const& row : kRefused) {
    senmark_test::ExpectError([&] { Read(row.text); }, 1, row.message);
  }
}

/// The mark goes before the units become characters.
TEST_P(Units, PairAroundAMarkIsJoined) {
  EXPECT_THAT(Read(std::u16string{0xD800, 0xFEFF, 0xDC00}), ElementsAreArray({"\xF0\x90\x80\x80"}));
}

/// The lines of a file of units by the rules, one unit at a time; `kRefused` in place of a line that is no text.
/// What a look at the next unit gives has its bytes in the order of a big-endian file.
class ReferenceUnits {
 public:
  static constexpr char kRefused[] = "refused";

  ReferenceUnits(std::u16string text, bool isSwapped) : mText(std::move(text)), mIsSwapped(isSwapped) {}

  Lines ReadAll() {
    Lines lines;
    while (mNext != mText.size() && (lines.empty() || lines.back() != kRefused)) {
      lines.push_back(ToUtf8(ReadLine()));
    }
    return lines;
  }

 private:
  bool LooksLike(char16_t unit) const {
    return mNext != mText.size() && (mIsSwapped ? swap_endian(mText[mNext]) : mText[mNext]) == unit;
  }

  std::u16string ReadLine() {
    std::u16string line;
    while (mNext != mText.size()) {
      char16_t const unit = mText[mNext++];
      if (unit == 0xFEFF || unit == 0xFFFE) {
        continue;
      }
      if (unit == '\n' || unit == '\r') {
        mNext += unit == '\n' && LooksLike('\r') ? 1 : 0;
        break;
      }
      line += unit;
      if (unit == '"') {
        ReadQuotation(line);
      }
    }
    return line;
  }

  void ReadQuotation(std::u16string& line) {
    while (mNext != mText.size()) {
      line += mText[mNext++];
      if (line.back() == '"') {
        if (!LooksLike('"')) {
          return;
        }
        line += mText[mNext++];
      }
    }
  }

  static std::string ToUtf8(std::u16string const& text) {
    std::string bytes;
    for (std::size_t i = 0; i != text.size(); ++i) {
      unsigned code = text[i];
      if (code >= 0xD800 && code <= 0xDFFF) {
        unsigned const low = i + 1 != text.size() ? text[i + 1] : 0U;
        if (code > 0xDBFF || low < 0xDC00 || low > 0xDFFF) {
          return kRefused;
        }
        code = 0x10000 + (code - 0xD800) * 0x400 + (low - 0xDC00);
        ++i;
      }
      int const more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
      constexpr unsigned kFirstMarks[] = {0, 0xC0, 0xE0, 0xF0};
      bytes += static_cast<char>(kFirstMarks[more] | code >> 6 * more);
      for (int left = more; left-- != 0;) {
        bytes += static_cast<char>(0x80 | (code >> 6 * left & 0x3F));
      }
    }
    return bytes;
  }

  std::u16string const mText;
  bool const mIsSwapped;
  std::size_t mNext = 0;
};

TEST_P(Units, AreReadAsOneByOne) {
  // Characters that mean something in one order or the other, and their neighbours.
  constexpr std::u16string_view kAlphabet =
      u"\"\"\"\"\n\n\r\r,ab\u2200\u2200\u0A00\u0D00\u0D00\uFEFF\uFFFE\u0023\u2300\u0122\u010A\u010D\u00DF\u20AC";
  std::mt19937 random(11);
  int refused = 0;
  for (int i = 0; i < 4000; ++i) {
    std::u16string text;
    for (auto left = random() % 16; left != 0; --left) {
      if (random() % 40 == 0) {
        text += static_cast<char16_t>(random() % 2 == 0 ? 0xD83D : 0xDE00);
      } else if (random() % 20 == 0) {
        text += u"\U0001F600";
      } else {
        text += kAlphabet[random() % kAlphabet.size()];
      }
    }
    Lines const expected = ReferenceUnits(text, GetParam() == kUTF16LittleEndian).ReadAll();
    if (!expected.empty() && expected.back() == ReferenceUnits::kRefused) {
      EXPECT_THROW(Read(text), SK_Exception) << testing::PrintToString(text);
      ++refused;
    } else {
      ASSERT_THAT(Read(text), ElementsAreArray(expected)) << testing::PrintToString(text);
    }
  }
  EXPECT_GT(refused, 200);
  EXPECT_LT(refused, 2000);
}

// What follows a quote or a line feed is looked at with its bytes in the order of a big-endian file.

TEST(SVLine, ForAllSignGoesOnWithAQuotationInLittleEndian) {
  constexpr std::u16string_view kText = u"\"a\"\u2200\nb\"c\nd";
  EXPECT_THAT(LineFile().OfUnits(kText, kUTF16LittleEndian), ElementsAreArray({"\"a\"\xE2\x88\x80\nb\"c", "d"}));
  EXPECT_THAT(LineFile().OfUnits(kText, kUTF16BigEndian), ElementsAreArray({"\"a\"\xE2\x88\x80", "b\"c\nd"}));
}

TEST(SVLine, AnusvaraBehindLineFeedIsLostInLittleEndian) {
  constexpr std::u16string_view kText = u"a\n\u0D00b\r\u0D00c";
  EXPECT_THAT(LineFile().OfUnits(kText, kUTF16LittleEndian), ElementsAreArray({"a", "b",
                                                                               "\xE0\xB4\x80"
                                                                               "c"}));
  EXPECT_THAT(LineFile().OfUnits(kText, kUTF16BigEndian), ElementsAreArray({"a",
                                                                            "\xE0\xB4\x80"
                                                                            "b",
                                                                            "\xE0\xB4\x80"
                                                                            "c"}));
}

/// So a mark between two quotes that would be one is dropped.
TEST(SVLine, MarkBetweenTwoQuotationsGoes) {
  EXPECT_THAT(LineFile().OfUnits(u"\"a\"\uFEFF\"b\"", kUTF16LittleEndian), ElementsAreArray({"\"a\"\"b\""}));
}

TEST(SVLine, BytesOfAUnitAreExchanged) {
  EXPECT_EQ(swap_endian(0), 0);
  EXPECT_EQ(swap_endian(0x0022), 0x2200);
  EXPECT_EQ(swap_endian(0xFEFF), 0xFFFE);
  EXPECT_EQ(swap_endian(0xFF00), 0x00FF);
  EXPECT_EQ(swap_endian(0x1234), 0x3412);
}

}  // namespace
}  // namespace ns_sensor
