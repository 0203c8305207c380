#include "SK_NumberLayout.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

namespace SK_NAMESPACE_INT {
namespace {

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof(bits));
  return bits;
}

bool ReadWith(SK_NumberLayout const& layout, char const* text, double& out) {
  switch (layout.DecimalChunks()) {
    case 0:
      return layout.Read<0>(text, out);
    case 1:
      return layout.Read<1>(text, out);
    case 2:
      return layout.Read<2>(text, out);
    default:
      return layout.Read<3>(text, out);
  }
}

/// Reads a text that ends with its buffer and has just the 8 bytes in front of it that may be read.
bool Read(SK_NumberLayout const& layout, std::string const& text, double& out) {
  constexpr std::size_t kInFront = 8;
  auto const buffer = std::make_unique<char[]>(kInFront + text.size());
  std::memset(buffer.get(), '9', kInFront);
  std::memcpy(buffer.get() + kInFront, text.data(), text.size());
  return ReadWith(layout, buffer.get() + kInFront, out);
}

struct Layout {
  bool hasSign;
  unsigned integerDigits;
  unsigned decimals;
};

std::string Generate(Layout const& layout, std::mt19937_64& random) {
  std::string text = layout.hasSign ? (random() % 2 == 0 ? "+" : "-") : "";
  // Often with zeros at either end, as padded numbers have them.
  auto const zerosInFront = random() % (layout.integerDigits + 1);
  auto const zerosBehind = random() % (layout.decimals + 1);
  for (unsigned i = 0; i < layout.integerDigits; ++i) {
    text += i < zerosInFront ? '0' : static_cast<char>('0' + random() % 10);
  }
  text += layout.decimals == 0 ? "" : ".";
  for (unsigned i = layout.decimals; i > 0; --i) {
    text += i <= zerosBehind ? '0' : static_cast<char>('0' + random() % 10);
  }
  return text;
}

TEST(NumberLayout, GivesWhatStrtodGivesForEveryLayout) {
  std::mt19937_64 random(3);
  for (unsigned integerDigits = 0; integerDigits <= 8; ++integerDigits) {
    for (unsigned decimals = 0; decimals <= 24; ++decimals) {
      for (bool const hasSign : {false, true}) {
        if (integerDigits + decimals == 0) {
          continue;
        }
        Layout const shape = {hasSign, integerDigits, decimals};
        SK_NumberLayout layout;
        ASSERT_TRUE(layout.Learn(Generate(shape, random)));
        for (int i = 0; i < 200; ++i) {
          std::string const text = Generate(shape, random);
          double found = 0;
          ASSERT_TRUE(Read(layout, text, found)) << text;
          ASSERT_EQ(BitsOf(found), BitsOf(std::strtod(text.c_str(), nullptr))) << text;
        }
      }
    }
  }
}

TEST(NumberLayout, TakesNoOtherBytes) {
  std::mt19937_64 random(5);
  for (Layout const& shape : {Layout{true, 3, 7}, Layout{false, 8, 0}, Layout{false, 0, 4}, Layout{true, 1, 18}}) {
    SK_NumberLayout layout;
    ASSERT_TRUE(layout.Learn(Generate(shape, random)));
    std::string const text = Generate(shape, random);
    for (std::size_t at = 0; at < text.size(); ++at) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string changed = text;
        changed[at] = static_cast<char>(byte);
        bool const wasDigit = text[at] >= '0' && text[at] <= '9';
        bool const isDigit = byte >= '0' && byte <= '9';
        bool const isSign = byte == '+' || byte == '-';
        bool const wasSign = text[at] == '+' || text[at] == '-';
        bool const fits = changed == text || (wasDigit && isDigit) || (wasSign && isSign);
        double found = 0;
        ASSERT_EQ(Read(layout, changed, found), fits) << changed << " byte " << byte << " at " << at;
      }
    }
  }
}

TEST(NumberLayout, RoundsRightWhereTheMantissaLeavesTheExactIntegers) {
  for (char const* const text :
       {"90071992.54740991", "90071992.54740992", "90071992.54740993", "99999999.99999999", "9.007199254740992",
        "9.007199254740993", "0.99999999999999999999", "1.0000000000000001", "0.000000000000000000000001",
        "12345678.000000000000000000000001", "4.35000000000000000000"}) {
    SK_NumberLayout layout;
    ASSERT_TRUE(layout.Learn(text)) << text;
    double found = 0;
    ASSERT_TRUE(Read(layout, text, found)) << text;
    EXPECT_EQ(BitsOf(found), BitsOf(std::strtod(text, nullptr))) << text;
  }
}

TEST(NumberLayout, ZeroKeepsItsSign) {
  SK_NumberLayout layout;
  ASSERT_TRUE(layout.Learn("+00.00"));
  double found = 1;
  ASSERT_TRUE(Read(layout, "-00.00", found));
  EXPECT_EQ(BitsOf(found), BitsOf(-0.0));
  ASSERT_TRUE(Read(layout, "+00.00", found));
  EXPECT_EQ(BitsOf(found), BitsOf(0.0));
}

TEST(NumberLayout, LearnsUpToItsLimits) {
  SK_NumberLayout layout;
  EXPECT_TRUE(layout.Learn("12345678"));
  EXPECT_FALSE(layout.Learn("123456789"));
  EXPECT_TRUE(layout.Learn("+1." + std::string(23, '1')));
  EXPECT_TRUE(layout.Learn("+1." + std::string(24, '1')));
  EXPECT_FALSE(layout.Learn("+1." + std::string(25, '1')));
  for (char const* const text : {"", "+", ".", "-.", "5.", "+5."}) {
    EXPECT_FALSE(layout.Learn(text)) << text;
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
