#include "SK_UnicodeConversion.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace SK_UnicodeUtils;

// How a conversion ended, how many units of the source it used, and what it wrote.
template <typename Target>
struct Outcome {
  ConversionResult result;
  std::size_t used;
  std::vector<Target> target;

  bool operator==(Outcome const& other) const {
    return result == other.result && used == other.used && target == other.target;
  }
};

template <typename Target>
void PrintTo(Outcome<Target> const& outcome, std::ostream* out) {
  *out << "result " << outcome.result << ", used " << outcome.used << ", target" << std::hex;
  for (Target const unit : outcome.target) {
    *out << ' ' << static_cast<unsigned>(unit);
  }
  *out << std::dec;
}

template <typename Source, typename Target>
using Conversion = ConversionResult (*)(Source const**, Source const*, Target**, Target*, ConversionFlags);

// Source and target stand in buffers of exactly their size, so that a sanitizer sees every step beyond.
template <typename Source, typename Target>
Outcome<Target> Converted(Conversion<Source, Target> convert, std::vector<Source> const& text, std::size_t room,
                          ConversionFlags flags) {
  std::unique_ptr<Source[]> const source(new Source[text.size()]);
  std::copy(text.begin(), text.end(), source.get());
  std::unique_ptr<Target[]> const target(new Target[room]);
  Source const* from = source.get();
  Target* to = target.get();
  ConversionResult const result = convert(&from, source.get() + text.size(), &to, target.get() + room, flags);
  return {result, static_cast<std::size_t>(from - source.get()), std::vector<Target>(target.get(), to)};
}

// An encoder of the tests' own, written from the bit patterns of the standard.
std::vector<UTF8> Utf8Of(UTF32 c) {
  auto const byte = [](UTF32 value) { return static_cast<UTF8>(value); };
  if (c <= 0x7F) {
    return {byte(c)};
  }
  if (c <= 0x7FF) {
    return {byte(0xC0 + c / 64), byte(0x80 + c % 64)};
  }
  if (c <= 0xFFFF) {
    return {byte(0xE0 + c / 4096), byte(0x80 + c / 64 % 64), byte(0x80 + c % 64)};
  }
  return {byte(0xF0 + c / 262144), byte(0x80 + c / 4096 % 64), byte(0x80 + c / 64 % 64), byte(0x80 + c % 64)};
}

std::vector<UTF16> Utf16Of(UTF32 c) {
  if (c <= 0xFFFF) {
    return {static_cast<UTF16>(c)};
  }
  return {static_cast<UTF16>(0xD800 + (c - 65536) / 1024), static_cast<UTF16>(0xDC00 + (c - 65536) % 1024)};
}

bool IsScalarValue(UTF32 c) {
  return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

template <typename Unit>
std::vector<Unit> Joined(std::vector<std::vector<Unit>> const& parts) {
  std::vector<Unit> all;
  for (std::vector<Unit> const& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

constexpr std::size_t kAmpleRoom = 16;

// Every limit of a length with its neighbours, and a sample of the rest: all would take long in a debug build.
bool IsTried(UTF32 c) {
  return IsScalarValue(c) && ((c + 2) % 0x80 < 4 || c % 37 == 0);
}

TEST(UnicodeConversion, CodePointsPassAllSixWays) {
  for (UTF32 c = 0; c <= 0x10FFFF; ++c) {
    if (!IsTried(c)) {
      continue;
    }
    std::vector<UTF8> const utf8 = Utf8Of(c);
    std::vector<UTF16> const utf16 = Utf16Of(c);
    std::vector<UTF32> const utf32 = {c};
    for (ConversionFlags const flags : {strictConversion, lenientConversion}) {
      ASSERT_EQ(Converted(ConvertUTF8toUTF16, utf8, kAmpleRoom, flags),
                (Outcome<UTF16>{conversionOK, utf8.size(), utf16}));
      ASSERT_EQ(Converted(ConvertUTF8toUTF32, utf8, kAmpleRoom, flags),
                (Outcome<UTF32>{conversionOK, utf8.size(), utf32}));
      ASSERT_EQ(Converted(ConvertUTF16toUTF8, utf16, kAmpleRoom, flags),
                (Outcome<UTF8>{conversionOK, utf16.size(), utf8}));
      ASSERT_EQ(Converted(ConvertUTF16toUTF32, utf16, kAmpleRoom, flags),
                (Outcome<UTF32>{conversionOK, utf16.size(), utf32}));
      ASSERT_EQ(Converted(ConvertUTF32toUTF8, utf32, kAmpleRoom, flags), (Outcome<UTF8>{conversionOK, 1, utf8}));
      ASSERT_EQ(Converted(ConvertUTF32toUTF16, utf32, kAmpleRoom, flags), (Outcome<UTF16>{conversionOK, 1, utf16}));
    }
  }
}

TEST(UnicodeConversion, EmptySourceNeedsNoRoom) {
  EXPECT_EQ(Converted(ConvertUTF8toUTF16, {}, 0, strictConversion), (Outcome<UTF16>{conversionOK, 0, {}}));
  EXPECT_EQ(Converted(ConvertUTF16toUTF8, {}, 0, strictConversion), (Outcome<UTF8>{conversionOK, 0, {}}));
  EXPECT_EQ(Converted(ConvertUTF32toUTF8, {}, 0, lenientConversion), (Outcome<UTF8>{conversionOK, 0, {}}));
}

// One character of each length: a, U+00E4, U+20AC, U+1F600.
std::vector<UTF32> const kMixed = {0x61, 0xE4, 0x20AC, 0x1F600};

std::vector<UTF8> Utf8OfFirst(std::size_t count) {
  std::vector<std::vector<UTF8>> parts;
  for (std::size_t i = 0; i < count; ++i) {
    parts.push_back(Utf8Of(kMixed[i]));
  }
  return Joined(parts);
}

std::vector<UTF16> Utf16OfFirst(std::size_t count) {
  std::vector<std::vector<UTF16>> parts;
  for (std::size_t i = 0; i < count; ++i) {
    parts.push_back(Utf16Of(kMixed[i]));
  }
  return Joined(parts);
}

// Whole characters among the first `units` units, when these are the lengths of the characters.
std::size_t WholeCharacters(std::vector<std::size_t> const& lengths, std::size_t units) {
  std::size_t count = 0;
  while (count < lengths.size() && lengths[count] <= units) {
    units -= lengths[count++];
  }
  return count;
}

TEST(UnicodeConversion, SourceCutInsideACharacterStaysAtItsFirstByte) {
  std::vector<UTF8> const whole = Utf8OfFirst(4);
  for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
    std::vector<UTF8> const text(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
    std::size_t const count = WholeCharacters({1, 2, 3, 4}, cut);
    std::size_t const used = Utf8OfFirst(count).size();
    ConversionResult const result = used == cut ? conversionOK : sourceExhausted;
    for (ConversionFlags const flags : {strictConversion, lenientConversion}) {
      EXPECT_EQ(Converted(ConvertUTF8toUTF16, text, kAmpleRoom, flags),
                (Outcome<UTF16>{result, used, Utf16OfFirst(count)}));
      EXPECT_EQ(
          Converted(ConvertUTF8toUTF32, text, kAmpleRoom, flags),
          (Outcome<UTF32>{result, used,
                          std::vector<UTF32>(kMixed.begin(), kMixed.begin() + static_cast<std::ptrdiff_t>(count))}));
    }
    EXPECT_EQ(isLegalUTF8Sequence(text.data() + used, text.data() + text.size()), false);
  }
}

TEST(UnicodeConversion, HighSurrogateAtTheEndIsAnExhaustedSource) {
  for (ConversionFlags const flags : {strictConversion, lenientConversion}) {
    EXPECT_EQ(Converted(ConvertUTF16toUTF8, {0x61, 0xD83D}, kAmpleRoom, flags),
              (Outcome<UTF8>{sourceExhausted, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF16toUTF32, {0x61, 0xDBFF}, kAmpleRoom, flags),
              (Outcome<UTF32>{sourceExhausted, 1, {0x61}}));
  }
}

TEST(UnicodeConversion, FullTargetKeepsWholeCharacters) {
  std::vector<UTF8> const utf8 = Utf8OfFirst(4);
  std::vector<UTF16> const utf16 = Utf16OfFirst(4);
  for (std::size_t room = 0; room <= utf8.size(); ++room) {
    std::size_t const count = WholeCharacters({1, 2, 3, 4}, room);
    ConversionResult const result = count == 4 ? conversionOK : targetExhausted;
    EXPECT_EQ(Converted(ConvertUTF16toUTF8, utf16, room, strictConversion),
              (Outcome<UTF8>{result, Utf16OfFirst(count).size(), Utf8OfFirst(count)}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF8, kMixed, room, strictConversion),
              (Outcome<UTF8>{result, count, Utf8OfFirst(count)}));
  }
  for (std::size_t room = 0; room <= utf16.size(); ++room) {
    std::size_t const count = WholeCharacters({1, 1, 1, 2}, room);
    ConversionResult const result = count == 4 ? conversionOK : targetExhausted;
    EXPECT_EQ(Converted(ConvertUTF8toUTF16, utf8, room, strictConversion),
              (Outcome<UTF16>{result, Utf8OfFirst(count).size(), Utf16OfFirst(count)}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF16, kMixed, room, strictConversion),
              (Outcome<UTF16>{result, count, Utf16OfFirst(count)}));
  }
  for (std::size_t room = 0; room <= kMixed.size(); ++room) {
    ConversionResult const result = room == 4 ? conversionOK : targetExhausted;
    std::vector<UTF32> const expected(kMixed.begin(), kMixed.begin() + static_cast<std::ptrdiff_t>(room));
    EXPECT_EQ(Converted(ConvertUTF8toUTF32, utf8, room, strictConversion),
              (Outcome<UTF32>{result, Utf8OfFirst(room).size(), expected}));
    EXPECT_EQ(Converted(ConvertUTF16toUTF32, utf16, room, strictConversion),
              (Outcome<UTF32>{result, Utf16OfFirst(room).size(), expected}));
  }
}

struct LoneSurrogate {
  char const* name;
  std::vector<UTF16> text;
  std::size_t strictUsed;
  std::vector<UTF8> lenientUtf8;
  std::vector<UTF32> lenientUtf32;
};

void PrintTo(LoneSurrogate const& row, std::ostream* out) {
  *out << row.name;
}

LoneSurrogate const kLoneSurrogates[] = {
    {"LowFirst", {0xDC00, 0x61}, 0, {0xED, 0xB0, 0x80, 0x61}, {0xDC00, 0x61}},
    {"LastLow", {0x61, 0xDFFF, 0x62}, 1, {0x61, 0xED, 0xBF, 0xBF, 0x62}, {0x61, 0xDFFF, 0x62}},
    {"HighBeforeAscii", {0xD800, 0x61}, 0, {0xED, 0xA0, 0x80, 0x61}, {0xD800, 0x61}},
    {"HighBeforeHigh", {0xDBFF, 0xD83D, 0xDE00}, 0, {0xED, 0xAF, 0xBF, 0xF0, 0x9F, 0x98, 0x80}, {0xDBFF, 0x1F600}},
    {"HighBeforeFirstBehindLow", {0xD800, 0xE000}, 0, {0xED, 0xA0, 0x80, 0xEE, 0x80, 0x80}, {0xD800, 0xE000}},
};

class LoneSurrogateIn16 : public testing::TestWithParam<LoneSurrogate> {};

TEST_P(LoneSurrogateIn16, StopsStrictAndPassesLenient) {
  LoneSurrogate const& row = GetParam();
  Outcome<UTF8> const strict = Converted(ConvertUTF16toUTF8, row.text, kAmpleRoom, strictConversion);
  EXPECT_EQ(strict.result, sourceIllegal);
  EXPECT_EQ(strict.used, row.strictUsed);
  EXPECT_EQ(strict.target, std::vector<UTF8>(row.lenientUtf8.begin(),
                                             row.lenientUtf8.begin() + static_cast<std::ptrdiff_t>(row.strictUsed)));
  EXPECT_EQ(Converted(ConvertUTF16toUTF32, row.text, kAmpleRoom, strictConversion).result, sourceIllegal);
  EXPECT_EQ(Converted(ConvertUTF16toUTF32, row.text, kAmpleRoom, strictConversion).used, row.strictUsed);

  EXPECT_EQ(Converted(ConvertUTF16toUTF8, row.text, kAmpleRoom, lenientConversion),
            (Outcome<UTF8>{conversionOK, row.text.size(), row.lenientUtf8}));
  EXPECT_EQ(Converted(ConvertUTF16toUTF32, row.text, kAmpleRoom, lenientConversion),
            (Outcome<UTF32>{conversionOK, row.text.size(), row.lenientUtf32}));
}

INSTANTIATE_TEST_SUITE_P(UnicodeConversion, LoneSurrogateIn16, testing::ValuesIn(kLoneSurrogates),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(UnicodeConversion, SurrogateIn32StopsStrictOnly) {
  for (UTF32 const c : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu}) {
    EXPECT_EQ(Converted(ConvertUTF32toUTF8, {0x61, c, 0x62}, kAmpleRoom, strictConversion),
              (Outcome<UTF8>{sourceIllegal, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF16, {0x61, c, 0x62}, kAmpleRoom, strictConversion),
              (Outcome<UTF16>{sourceIllegal, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF8, {0x61, c, 0x62}, kAmpleRoom, lenientConversion),
              (Outcome<UTF8>{conversionOK, 3, Joined<UTF8>({{0x61}, Utf8Of(c), {0x62}})}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF16, {0x61, c, 0x62}, kAmpleRoom, lenientConversion),
              (Outcome<UTF16>{conversionOK, 3, {0x61, 0xFFFD, 0x62}}));
  }
}

TEST(UnicodeConversion, CodePointAboveTheLastStopsStrictAndIsReplacedLenient) {
  for (UTF32 const c : {0x110000u, 0x110001u, 0x1FFFFFu, 0x200000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(Converted(ConvertUTF32toUTF8, {0x61, c, 0x62}, kAmpleRoom, strictConversion),
              (Outcome<UTF8>{sourceIllegal, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF16, {0x61, c, 0x62}, kAmpleRoom, strictConversion),
              (Outcome<UTF16>{sourceIllegal, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF8, {c, 0x62}, kAmpleRoom, lenientConversion),
              (Outcome<UTF8>{conversionOK, 2, {0xEF, 0xBF, 0xBD, 0x62}}));
    EXPECT_EQ(Converted(ConvertUTF32toUTF16, {c, 0x62}, kAmpleRoom, lenientConversion),
              (Outcome<UTF16>{conversionOK, 2, {0xFFFD, 0x62}}));
  }
}

// A bitmap of all legal sequences of `length` bytes, made by encoding every code point.
std::vector<bool> LegalSequences(std::size_t length) {
  std::vector<bool> legal(std::size_t{1} << (8 * length));
  for (UTF32 c = 0; c <= 0x10FFFF; ++c) {
    std::vector<UTF8> const bytes = Utf8Of(c);
    if (IsScalarValue(c) && bytes.size() == length) {
      std::size_t index = 0;
      for (UTF8 const byte : bytes) {
        index = index << 8 | byte;
      }
      legal[index] = true;
    }
  }
  return legal;
}

TEST(UnicodeConversion, LegalSequencesAreThoseOfCodePoints) {
  for (std::size_t length = 1; length <= 3; ++length) {
    std::vector<bool> const legal = LegalSequences(length);
    for (std::size_t index = 0; index < legal.size(); ++index) {
      UTF8 bytes[3];
      for (std::size_t i = 0; i < length; ++i) {
        bytes[i] = static_cast<UTF8>(index >> (8 * (length - 1 - i)));
      }
      ASSERT_EQ(isLegalUTF8(bytes, static_cast<int>(length)), legal[index]) << std::hex << index;
    }
  }
}

TEST(UnicodeConversion, LegalSequencesOfFourBytesAreThoseOfCodePoints) {
  UTF8 const edges[] = {0x00, 0x7F, 0x80, 0xBF, 0xC0, 0xFF};
  for (unsigned first = 0; first <= 0xFF; ++first) {
    for (unsigned second = 0; second <= 0xFF; ++second) {
      for (UTF8 const third : edges) {
        for (UTF8 const fourth : edges) {
          UTF8 const bytes[4] = {static_cast<UTF8>(first), static_cast<UTF8>(second), third, fourth};
          UTF32 const c = (first & 7u) << 18 | (second & 63u) << 12 | (third & 63u) << 6 | (fourth & 63u);
          // Encoding what the bits say gives the bytes back only if they were legal.
          bool const legal = c > 0xFFFF && IsScalarValue(c) && Utf8Of(c) == std::vector<UTF8>(bytes, bytes + 4);
          ASSERT_EQ(isLegalUTF8(bytes, 4), legal)
              << std::hex << first << ' ' << second << ' ' << +third << ' ' << +fourth;
        }
      }
    }
  }
}

TEST(UnicodeConversion, LengthsOutsideOneToFourAreNotLegal) {
  UTF8 const bytes[] = {0x61, 0x80, 0x80, 0x80, 0x80, 0x80};
  EXPECT_FALSE(isLegalUTF8(bytes, 0));
  EXPECT_TRUE(isLegalUTF8(bytes, 1));
  UTF8 const five[] = {0xF8, 0x88, 0x80, 0x80, 0x80, 0x80};
  EXPECT_FALSE(isLegalUTF8(five, 5));
  EXPECT_FALSE(isLegalUTF8(five, 6));
}

TEST(UnicodeConversion, SequenceCutByItsEndIsNotLegal) {
  for (UTF32 const c : kMixed) {
    std::vector<UTF8> const whole = Utf8Of(c);
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
      std::unique_ptr<UTF8[]> const bytes(new UTF8[cut]);
      std::copy(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut), bytes.get());
      EXPECT_EQ(isLegalUTF8Sequence(bytes.get(), bytes.get() + cut), cut == whole.size()) << std::hex << c;
    }
  }
}

struct BadUtf8 {
  char const* name;
  std::vector<UTF8> text;
  ConversionResult result;
};

void PrintTo(BadUtf8 const& row, std::ostream* out) {
  *out << row.name;
}

// Each follows an "a" and stops the conversion behind it.
BadUtf8 const kBadUtf8[] = {
    {"ContinuationFirst", {0x80, 0x62, 0x62, 0x62}, sourceIllegal},
    {"LastContinuationFirst", {0xBF, 0x62, 0x62, 0x62}, sourceIllegal},
    {"LongFormOfZero", {0xC0, 0x80, 0x62, 0x62}, sourceIllegal},
    {"LongFormOfDelete", {0xC1, 0xBF, 0x62, 0x62}, sourceIllegal},
    {"LongFormInThree", {0xE0, 0x9F, 0xBF, 0x62}, sourceIllegal},
    {"LongFormInFour", {0xF0, 0x8F, 0xBF, 0xBF}, sourceIllegal},
    {"FirstSurrogate", {0xED, 0xA0, 0x80, 0x62}, sourceIllegal},
    {"LastSurrogate", {0xED, 0xBF, 0xBF, 0x62}, sourceIllegal},
    {"FirstAboveTheLast", {0xF4, 0x90, 0x80, 0x80}, sourceIllegal},
    {"FirstByteF5", {0xF5, 0x80, 0x80, 0x80}, sourceIllegal},
    {"FiveBytes", {0xF8, 0x88, 0x80, 0x80, 0x80}, sourceIllegal},
    {"SixBytes", {0xFC, 0x84, 0x80, 0x80, 0x80, 0x80}, sourceIllegal},
    {"FourOfFiveBytes", {0xF8, 0x88, 0x80, 0x80}, sourceExhausted},
    {"SecondByteMissing", {0xC3, 0x62, 0x62, 0x62}, sourceIllegal},
    {"ThirdByteMissing", {0xE2, 0x82, 0x62, 0x62}, sourceIllegal},
    {"FourthByteMissing", {0xF0, 0x9F, 0x98, 0x62}, sourceIllegal},
};

class BadSequence : public testing::TestWithParam<BadUtf8> {};

TEST_P(BadSequence, StopsBothKindsOfConversion) {
  std::vector<UTF8> const text = Joined<UTF8>({{0x61}, GetParam().text});
  for (ConversionFlags const flags : {strictConversion, lenientConversion}) {
    EXPECT_EQ(Converted(ConvertUTF8toUTF16, text, kAmpleRoom, flags), (Outcome<UTF16>{GetParam().result, 1, {0x61}}));
    EXPECT_EQ(Converted(ConvertUTF8toUTF32, text, kAmpleRoom, flags), (Outcome<UTF32>{GetParam().result, 1, {0x61}}));
  }
}

INSTANTIATE_TEST_SUITE_P(UnicodeConversion, BadSequence, testing::ValuesIn(kBadUtf8),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
