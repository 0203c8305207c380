#include "SerializerText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::ExpectWriterError;

template <typename Append>
std::string TextOf(Append&& append) {
  SerializerBuffer buffer;
  append(buffer);
  return std::string(buffer.View());
}

TEST(SerializerText, TextStandsInDoubleQuotesAndIsNotEscaped) {
  EXPECT_EQ(TextOf([](auto& out) { JSON_STR(out, "ab"); }), "\"ab\"");
  EXPECT_EQ(TextOf([](auto& out) { JSON_STR(out, ""); }), "\"\"");
  std::string const odd("q\"\\\n\xC3\xA4\xFF\0", 8);
  EXPECT_EQ(TextOf([&](auto& out) { JSON_STR(out, odd); }), '"' + odd + '"');
}

TEST(SerializerText, PairsHaveNoWhiteSpace) {
  EXPECT_EQ(TextOf([](auto& out) { JSON_StrObj(out, "key", "a value"); }), R"("key":"a value")");
  EXPECT_EQ(TextOf([](auto& out) { JSON_StrObj(out, "key", ""); }), R"("key":"")");
  EXPECT_EQ(TextOf([](auto& out) { JSON_BoolObj(out, "key", true); }), R"("key":true)");
  EXPECT_EQ(TextOf([](auto& out) { JSON_BoolObj(out, "key", false); }), R"("key":false)");
}

TEST(SerializerText, ListOfTextsMayBeEmpty) {
  EXPECT_EQ(TextOf([](auto& out) { JSON_StrArrObj(out, "key", {}); }), R"("key":[])");
  EXPECT_EQ(TextOf([](auto& out) { JSON_StrArrObj(out, "key", {"a"}); }), R"("key":["a"])");
  EXPECT_EQ(TextOf([](auto& out) { JSON_StrArrObj(out, "key", {"a", "", "c,d"}); }), R"("key":["a","","c,d"])");
}

TEST(SerializerText, NumbersHaveTheWritersFormAndNoQuotes) {
  struct Row {
    double value;
    char const* text;
  };
  Row const rows[] = {
      {0, "0"},
      {-0.0, "-0"},
      {12, "12"},
      {-2.5, "-2.5"},
      {0.1 + 0.2, "0.3"},
      {9.95, "9.949999999999999"},
      {1e21, "1e+21"},
      {1.5e20, "1.5e+2"},  // the last zero goes, although it is one of the exponent
      {std::numeric_limits<double>::max(), "1.797693134862316e+308"},
      {std::numeric_limits<double>::lowest(), "-1.797693134862316e+308"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(TextOf([&](auto& out) { JSON_NumObj(out, "n", row.value); }), std::string(R"("n":)") + row.text);
  }
}

TEST(SerializerText, CountHasTheTextOfItsDouble) {
  struct Row {
    std::uint64_t count;
    char const* text;
  };
  Row const rows[] = {
      {0, "0"},
      {9, "9"},
      {10, "10"},
      {120, "120"},
      {4294967296, "4294967296"},
      {9007199254740991, "9007199254740991"},
      {9007199254740992, "9007199254740992"},  // from here on not every count is a double
      {9007199254740993, "9007199254740992"},
      {9007199254740995, "9007199254740996"},
      {9999999999999998, "9999999999999998"},
      {9999999999999999, "1e+16"},
      {10000000000000000, "1e+16"},
      {12345678901234567890u, "1.234567890123457e+19"},
      {std::numeric_limits<std::uint64_t>::max(), "1.844674407370955e+19"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(TextOf([&](auto& out) { AppendCount(out, row.count); }), row.text);
  }
}

TEST(SerializerText, KindsOfStaticNodesHaveNames) {
  char const* const names[] = {"number", "string", "numberArray", "boolean"};
  for (int type = 0; type != 256; ++type) {
    auto const kind = static_cast<ns_sensor::eDataValueType>(type);
    if (type < 4) {
      EXPECT_EQ(GetStaticType(kind), names[type]);
    } else {
      ExpectWriterError([&] { GetStaticType(kind); }, 2026);
    }
  }
}

TEST(SerializerText, KindsOfDynamicNodesHaveNames) {
  char const* const names[] = {"numberString", "paddedString", "numberStringArray"};
  for (int type = 0; type != 256; ++type) {
    auto const kind = static_cast<ns_sensor::eDataValueType>(type);
    if (type < 3) {
      EXPECT_EQ(GetDynamicType(kind), names[type]);
    } else {
      ExpectWriterError([&] { GetDynamicType(kind); }, 2026);
    }
  }
}

TEST(SerializerText, InterpolationsHaveNames) {
  for (int value = 0; value != 256; ++value) {
    auto const interpolation = static_cast<ns_sensor::eInterpolationType>(value);
    if (value == 1 || value == 2) {
      EXPECT_EQ(GetInterpolationStr(interpolation), value == 1 ? "linear" : "hold");
    } else {
      ExpectWriterError([&] { GetInterpolationStr(interpolation); }, 2026);
    }
  }
}

}  // namespace
}  // namespace SK_PLUGIN
