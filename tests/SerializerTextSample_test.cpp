#include "SerializerTextSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "SampleBuffers.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_StringProperties;
using senmark_test::ExpectTooWide;
using senmark_test::TextOf;

SK_StringProperties Widths(std::uint64_t maxLen, std::uint64_t maxDigits) {
  SK_StringProperties properties;
  properties.maxLen = maxLen;
  properties.maxDigitsInStrLength = maxDigits;
  return properties;
}

struct PaddedText {
  char const* name;
  std::uint64_t maxLen;
  std::uint64_t maxDigits;
  char const* value;
  char const* length;
  char const* text;
};

void PrintTo(PaddedText const& row, std::ostream* out) {
  *out << row.name;
}

class StringSample : public testing::TestWithParam<PaddedText> {};

TEST_P(StringSample, HasTheTextOfItsRow) {
  PaddedText const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendStringSample(out, "T", row.value, Widths(row.maxLen, row.maxDigits)); }),
            std::string(R"({"time":"T","value":{"length":")") + row.length + R"(","str":")" + row.text + R"("}})");
}

PaddedText const kPaddedTexts[] = {
    {"ThreeBlanksBehind", 5, 2, "ab", "02", "ab   "},
    {"Fits", 2, 1, "ab", "2", "ab"},
    {"LengthOfTwoDigits", 10, 2, "0123456789", "10", "0123456789"},
    {"LengthCountsBytesAsWritten", 4, 1, R"(a\n)", "3", R"(a\n )"},
    {"BytesAboveAsciiPass", 4, 1, "\xC3\xA4", "2", "\xC3\xA4  "},
    {"WiderThanItsPlaces", 1, 1, "0123456789", "10", "0123456789"},
};

INSTANTIATE_TEST_SUITE_P(SerializerTextSample, StringSample, testing::ValuesIn(kPaddedTexts),
                         [](auto const& row) { return std::string(row.param.name); });

std::string PlainStringSample(std::string const& time, std::string const& value, std::uint64_t maxLen,
                              std::uint64_t maxDigits) {
  std::string length = std::to_string(value.size());
  length.insert(0, maxDigits > length.size() ? maxDigits - length.size() : 0, '0');
  std::string text = value;
  text.resize(std::max<std::size_t>(maxLen, value.size()), ' ');
  std::string sample = R"({"time":")" + time + R"(","value":{"length":")" + length;
  return sample + R"(","str":")" + text + R"("}})";
}

// Behind something else, with every width of the length that there can be, and texts around each power of ten.
TEST(SerializerTextSample, TextsOfEverySizeArePaddedStepByStep) {
  std::vector<std::size_t> sizes;
  for (std::size_t size = 0; size != 140; ++size) {
    sizes.push_back(size);
  }
  sizes.insert(sizes.end(), {999, 1000, 1001, 9999, 10000, 65535, 65536, 99998, 99999, 100000, 100001, 1000000});
  std::mt19937 random(5);
  for (std::size_t const size : sizes) {
    std::string value(size, 'a');
    for (char& character : value) {
      character = static_cast<char>(random());
    }
    std::string const time(size % 40, 't');
    for (std::uint64_t digits = 0; digits != 11; ++digits) {
      for (std::size_t const width :
           {std::size_t{0}, size - 1, size, size + 1, size + random() % 70, size + 200, std::size_t{99999}}) {
        if (width > size + 100000) {
          continue;  // one less than 0
        }
        SerializerBuffer buffer;
        buffer.Put("before");
        AppendStringSample(buffer, time, value, Widths(width, digits));
        ASSERT_TRUE(buffer.View() == "before" + PlainStringSample(time, value, width, digits))
            << size << ' ' << width << ' ' << digits;
      }
    }
  }
}

TEST(SerializerTextSample, LengthOfNineDigitsIsWhole) {
  std::string const value(100000001, 'a');
  SerializerBuffer buffer;
  AppendStringSample(buffer, "T", value, Widths(1, 8));
  std::string const start = R"({"time":"T","value":{"length":"100000001","str":"aa)";
  EXPECT_EQ(buffer.View().substr(0, start.size()), start);
  EXPECT_EQ(buffer.Size(), start.size() - 2 + value.size() + std::string_view(R"("}})").size());
}

// A sanitizer sees what is written beyond the memory.
TEST(SerializerTextSample, TextsStayInTheirMemory) {
  std::string const value(30, 'v');
  for (std::size_t width = 25; width != 90; ++width) {
    for (std::size_t before = 3900; before != 4110; ++before) {
      SerializerBuffer buffer;
      buffer.Put(std::string_view(std::string(before, 'x')));
      AppendStringSample(buffer, "T1", value, Widths(width, 8));
      ASSERT_EQ(buffer.View(), std::string(before, 'x') + PlainStringSample("T1", value, width, 8));
    }
  }
}

// A host may ask for any count. None of these may wrap, reach the system's memory, or come out short.
TEST(SerializerTextSample, AbsurdWidthsAreNoMemory) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const width : {std::uint64_t{0x7fffffff}, std::uint64_t{1000000000000000000}, most / 2, most}) {
    SCOPED_TRACE(width);
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, 1)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(2, width)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, width)); });
  }
}

}  // namespace
}  // namespace SK_PLUGIN
