// Names and texts that a file can hold, made of any bytes.
#include "senmark/module/Names.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

#include "SK_Utils.h"

namespace senmark::kit {
namespace {

TEST(KitNames, MatchNamesRemindOfTheirText) {
  struct Row {
    char const* text;
    char const* name;
  };
  Row const rows[] = {
      {"Hips", "Hips"},
      {"left hand_2", "lefthand2"},
      {"2nd", "n2nd"},
      {"", "node"},
      {"\xC3\xA9\xE2\x82\xAC", "nodex2"},
      {"speed [m/s]", "speedms"},
      {"mixamorig:Hips", "mixamorigHips"},
      {"Hips", "Hipsx2"},
      {"Hips", "Hipsx3"},
      {"Hips x2", "Hipsx2x2"},
      {"_9", "n9"},
  };
  MatchNames names;
  for (Row const& row : rows) {
    EXPECT_EQ(names.make(row.text), row.name) << row.text;
  }
}

TEST(KitNames, CollisionsOfNumberedNamesAreNone) {
  MatchNames names;
  EXPECT_EQ(names.make("ax2"), "ax2");
  EXPECT_EQ(names.make("a"), "a");
  EXPECT_EQ(names.make("a"), "ax3");
  EXPECT_EQ(names.make("ax2"), "ax2x2");
  EXPECT_EQ(names.make("ax3"), "ax3x2");
}

TEST(KitNames, AnyBytesMakeValidAndUniqueNames) {
  std::mt19937 random(7);
  MatchNames names;
  std::set<std::string> seen;
  for (int i = 0; i != 50000; ++i) {
    std::string text(random() % 4, '\0');
    for (char& character : text) {
      character = i % 2 == 0 ? static_cast<char>(random()) : "ax2_"[random() % 4];
    }
    std::string const name = names.make(text);
    ASSERT_TRUE(SK_NAMESPACE_INT::SK_Utils::IsValidMatchName(name)) << name;
    ASSERT_TRUE(seen.insert(name).second) << name;
  }
}

TEST(KitNames, LongTextsAreCutAndStayUnique) {
  MatchNames names;
  std::string const text(1000000, 'a');
  EXPECT_EQ(names.make(text), std::string(200, 'a'));
  EXPECT_EQ(names.make(text + 'b'), std::string(200, 'a') + "x2");
}

TEST(KitNames, TextsAreMadeUtf8) {
  struct Row {
    std::string text;
    std::string clean;
  };
  std::string const bad = "\xEF\xBF\xBD";
  Row const rows[] = {
      {"", ""},
      {"plain", "plain"},
      {"\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB5", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x8E\xB5"},
      {std::string("a\0b", 3), "a" + bad + "b"},
      {"\xFF", bad},
      {"\x80", bad},
      {"\xC3", bad},
      {"\xC3(", bad + "("},
      {"\xE2\x82", bad + bad},
      // Overlong, a surrogate, behind the last character.
      {"\xC0\xAF", bad + bad},
      {"\xC1\xBF", bad + bad},
      {"\xE0\x9F\xBF", bad + bad + bad},
      {"\xF0\x8F\xBF\xBF", bad + bad + bad + bad},
      {"\xED\xA0\x80", bad + bad + bad},
      {"\xED\x9F\xBF", "\xED\x9F\xBF"},
      {"\xF4\x8F\xBF\xBF", "\xF4\x8F\xBF\xBF"},
      {"\xF4\x90\x80\x80", bad + bad + bad + bad},
      {"\xF5\x80\x80\x80", bad + bad + bad + bad},
      // What the writer escapes stays.
      {"\b\t\n\f\r\"\\", "\b\t\n\f\r\"\\"},
      {"\x01\x07\x0B\x0E\x1F\x7F", bad + bad + bad + bad + bad + "\x7F"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Utf8(row.text), row.clean);
  }
}

TEST(KitNames, UnitsStandBehindTheName) {
  EXPECT_EQ(WithUnit("Speed", "m/s"), "Speed [m/s]");
  EXPECT_EQ(WithUnit("Speed", ""), "Speed");
  EXPECT_EQ(WithUnit("T\xFF",
                     "\xB0"
                     "C"),
            "T\xEF\xBF\xBD [\xEF\xBF\xBD"
            "C]");
}

}  // namespace
}  // namespace senmark::kit
