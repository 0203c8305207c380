// The described way, extraction from a text stream in the plain locale, stands here as the reference.
#include "BVHLine.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <locale>
#include <random>
#include <sstream>

namespace ns_sensor {
namespace {

using namespace std::string_literals;

template <typename Value>
std::string BytesOf(Value const& value) {
  return std::string(reinterpret_cast<char const*>(&value), sizeof(value));
}
std::string BytesOf(std::string const& text) {
  return text;
}

/// Takes values of one kind until there is none, as bytes, and the one that failed with them.
template <typename Value>
std::string ByStream(std::string const& text, Value const& before) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  std::string all;
  while (true) {
    Value value = before;
    bool const isRead = static_cast<bool>(stream >> value);
    all += (isRead ? '+' : '-') + BytesOf(value);
    if (!isRead) {
      return all;
    }
  }
}

template <typename Value>
std::string ByLine(std::string const& text, Value const& before) {
  // A block of its own, so that a sanitizer sees every read behind the text.
  std::string const exact(text.data(), text.size());
  BVHLine line(exact);
  std::string all;
  while (true) {
    Value value = before;
    bool const isRead = line.Read(value);
    EXPECT_NE(line.HasFailed(), isRead);
    all += (isRead ? '+' : '-') + BytesOf(value);
    if (!isRead) {
      return all;
    }
  }
}

template <typename Value>
void ExpectLikeAStream(std::string const& text, Value const& before) {
  ASSERT_EQ(ByLine(text, before), ByStream(text, before)) << '"' << text << '"';
}

void ExpectAllLikeAStream(std::string const& text) {
  ExpectLikeAStream(text, -7.25);
  ExpectLikeAStream(text, std::int32_t{77});
  ExpectLikeAStream(text, std::uint64_t{77});
  ExpectLikeAStream(text, std::string("before"));
}

TEST(BVHLine, ReadsOddTextsLikeAStream) {
  std::string const noughts(400, '0');
  std::string const nines(400, '9');
  for (std::string const& text : std::initializer_list<std::string>{"",
                                                                    " ",
                                                                    "1",
                                                                    "-1",
                                                                    "+1",
                                                                    "1e",
                                                                    "1e+",
                                                                    "1e-",
                                                                    "1e5",
                                                                    "1E5",
                                                                    "1e+5",
                                                                    "1e-5",
                                                                    "1ee5",
                                                                    "1e5e5",
                                                                    "1e5.5",
                                                                    "0x10",
                                                                    "0X1p3",
                                                                    "inf",
                                                                    "-inf",
                                                                    "INFINITY",
                                                                    "nan",
                                                                    "NAN(1)",
                                                                    "1.5.2",
                                                                    "..5",
                                                                    "+-",
                                                                    "-+1",
                                                                    "--1",
                                                                    "+",
                                                                    "-",
                                                                    ".",
                                                                    "-.",
                                                                    ".e5",
                                                                    ".5",
                                                                    "5.",
                                                                    "5.e3",
                                                                    "-.5e-3",
                                                                    "5,5",
                                                                    "1,234",
                                                                    "1'000",
                                                                    "0",
                                                                    "-0",
                                                                    "+0",
                                                                    "00",
                                                                    "-0.0",
                                                                    "0e0",
                                                                    "0e999999",
                                                                    "0.0e-999999",
                                                                    "1e308",
                                                                    "1.7976931348623157e308",
                                                                    "1.7976931348623158e308",
                                                                    "1.7976931348623159e308",
                                                                    "1e309",
                                                                    "-1e309",
                                                                    "1e99999999999999999999",
                                                                    "1e-99999999999999999999",
                                                                    "4.9e-324",
                                                                    "2.4e-324",
                                                                    "2.5e-324",
                                                                    "-2.4e-324",
                                                                    "2.2250738585072011e-308",
                                                                    "2.2250738585072014e-308",
                                                                    "1e-400",
                                                                    "-1e-400",
                                                                    "-9.23872e-007",
                                                                    "3.4150944E-6",
                                                                    "-1.0177777E-13",
                                                                    "0.016666666666666666",
                                                                    "9007199254740993",
                                                                    "9007199254740992",
                                                                    "9007199254740991e22",
                                                                    "9007199254740993e-22",
                                                                    "1e22",
                                                                    "1e23",
                                                                    "1e-22",
                                                                    "1e-23",
                                                                    "123456789012345678901234567890",
                                                                    "0.00000000000000000000000000000012345",
                                                                    "9999999999999999999",
                                                                    "18446744073709551615",
                                                                    "18446744073709551616",
                                                                    "-18446744073709551615",
                                                                    "-18446744073709551616",
                                                                    "2147483647",
                                                                    "2147483648",
                                                                    "-2147483648",
                                                                    "-2147483649",
                                                                    "6,",
                                                                    "06",
                                                                    "6.5",
                                                                    "6abc",
                                                                    "\t\v\f\r 1\t\v\f\r 2",
                                                                    "1 2 3 junk 4",
                                                                    "1\n2",
                                                                    "a b",
                                                                    "{",
                                                                    "}",
                                                                    "1 x",
                                                                    "x 1",
                                                                    "1\t",
                                                                    "1\0002"s,
                                                                    "\0001"s,
                                                                    "1 \0"s,
                                                                    "a\0b c"s,
                                                                    "1\xa0",
                                                                    "\x85",
                                                                    "\xff",
                                                                    noughts + "1",
                                                                    "0." + noughts + "1",
                                                                    "0." + noughts + "1e401",
                                                                    "1" + noughts + "e-400",
                                                                    nines,
                                                                    nines + "e-400",
                                                                    "0." + nines,
                                                                    "1e" + noughts + "5",
                                                                    "1e-" + noughts + "5",
                                                                    "1e" + nines,
                                                                    "1e-" + nines}) {
    ExpectAllLikeAStream(text);
  }
}

TEST(BVHLine, NumberOfHugeLengthIsReadLikeAStream) {
  std::string const noughts(300000, '0');
  ExpectLikeAStream("0." + noughts + "15e300001", 0.0);
  ExpectLikeAStream("25" + noughts + "e-300001 3", 0.0);
}

/// A text of a kind that motion files have, or nearly.
std::string RandomNumber(std::mt19937_64& random) {
  static char const* const kSigns[] = {"", "", "", "-", "-", "+", "--"};
  std::string text = kSigns[random() % 7];
  for (auto left = random() % (random() % 8 == 0 ? 25 : 5); left != 0; --left) {
    text += static_cast<char>('0' + random() % 10);
  }
  if (random() % 8 != 0) {
    text += '.';
    for (auto left = random() % (random() % 4 == 0 ? 25 : 8); left != 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
  }
  if (random() % 6 == 0) {
    text += random() % 2 == 0 ? "e" : "E";
    text += kSigns[random() % 7];
    for (auto left = random() % (random() % 4 == 0 ? 5 : 3); left != 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
  }
  return text;
}

TEST(BVHLine, ReadsRandomNumbersLikeAStream) {
  std::mt19937_64 random(21);
  for (int i = 0; i != 600000; ++i) {
    ExpectLikeAStream(RandomNumber(random), 1.5);
  }
}

TEST(BVHLine, ReadsEveryFormOfRandomDoublesLikeAStream) {
  std::mt19937_64 random(22);
  char text[400];
  for (int i = 0; i != 300000; ++i) {
    std::uint64_t const bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof(number));
    std::snprintf(text, sizeof(text), "%.*g", static_cast<int>(1 + random() % 20), number);
    ExpectLikeAStream(text, 1.5);
    double const angle = static_cast<double>(static_cast<std::int64_t>(random() % 36000000000) - 18000000000) / 1e8;
    std::snprintf(text, sizeof(text), "%.*f", static_cast<int>(random() % 18), angle);
    ExpectLikeAStream(text, 1.5);
  }
}

TEST(BVHLine, ReadsRandomNumberLinesLikeAStream) {
  std::mt19937_64 random(23);
  for (int i = 0; i != 10000; ++i) {
    std::string line = random() % 2 == 0 ? "" : " \t";
    for (auto left = random() % 200; left != 0; --left) {
      std::string number = RandomNumber(random);
      if (random() % 64 != 0 && ByStream(number, 1.5)[0] != '+') {
        number = "0.25";
      }
      line += number + (random() % 8 == 0 ? "\t" : " ");
    }
    line += random() % 2 == 0 ? "\r" : "";
    ExpectLikeAStream(line, 1.5);
  }
}

TEST(BVHLine, ReadsRandomBytesLikeAStream) {
  std::mt19937_64 random(24);
  std::string const alphabet = "0123456789012345678901+-..eE xX\t\v\r\0\xa0naif"s;
  for (int i = 0; i != 1000000; ++i) {
    std::string text;
    for (auto left = random() % 24; left != 0; --left) {
      text += alphabet[random() % alphabet.size()];
    }
    ExpectAllLikeAStream(text);
  }
}

TEST(BVHLine, ReadsKindsInTurnLikeAStream) {
  std::mt19937_64 random(25);
  std::string const alphabet = "0123456789+-.e a\t";
  for (int i = 0; i != 200000; ++i) {
    std::string text;
    for (auto left = random() % 30; left != 0; --left) {
      text += alphabet[random() % alphabet.size()];
    }
    std::istringstream stream(text);
    BVHLine line(text);
    for (int step = 0; step != 8; ++step) {
      std::string expectedWord = "before";
      std::string word = expectedWord;
      double expectedNumber = 1.5;
      double number = expectedNumber;
      std::int32_t expectedCount = 7;
      std::int32_t count = expectedCount;
      switch (random() % 3) {
        case 0:
          stream >> expectedWord;
          line.Read(word);
          break;
        case 1:
          stream >> expectedNumber;
          line.Read(number);
          break;
        default:
          stream >> expectedCount;
          line.Read(count);
      }
      ASSERT_EQ(word, expectedWord) << text;
      ASSERT_EQ(BytesOf(number), BytesOf(expectedNumber)) << text;
      ASSERT_EQ(count, expectedCount) << text;
      ASSERT_EQ(line.HasFailed(), stream.fail()) << text;
    }
  }
}

}  // namespace
}  // namespace ns_sensor
