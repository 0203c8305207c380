// Names and texts that a file can hold, made of any bytes.
#include "senmark/module/Names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <string_view>

#include "ExactRange.h"
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

/// A copy between bytes that do not change.
class GuardedCopy {
 public:
  explicit GuardedCopy(std::string_view text) : mText(text), mBytes(text.size() + 2 * kGuard, '#') {
    mIsPlain = detail::CopyPlain(ExactText(), mBytes.data() + kGuard);
  }
  bool IsPlain() const { return mIsPlain; }
  std::string Copy() const { return mBytes.substr(kGuard, mText.size()); }
  bool IsInItsRoom() const {
    std::string const guard(kGuard, '#');
    return mBytes.substr(0, kGuard) == guard && mBytes.substr(kGuard + mText.size() + 8) == guard.substr(8);
  }

 private:
  static constexpr std::size_t kGuard = 32;

  // In memory that ends with it, so that a sanitizer sees what is read behind it.
  std::string_view ExactText() {
    mExact = std::make_unique<ExactRange>(mText);
    return std::string_view(mExact->begin(), mText.size());
  }

  std::string mText;
  std::unique_ptr<ExactRange> mExact;
  std::string mBytes;
  bool mIsPlain;
};

// The short way takes exactly the texts that come out as they went in and need no backslash in the file.
TEST(KitNames, PlainTextsAreCopied) {
  for (std::size_t length = 0; length <= 40; ++length) {
    for (std::size_t at = 0; at != std::max<std::size_t>(length, 1); ++at) {
      for (int byte = 0; byte != 256; ++byte) {
        std::string text(length, at % 2 == 0 ? ' ' : '~');
        if (length != 0) {
          text[at] = static_cast<char>(byte);
        }
        bool const isPlain = SampleText(text) == text && text.find_first_of("\\[]\b\t\n\f\r") == std::string::npos;
        bool const mayBePlain = std::none_of(text.begin(), text.end(), [](char c) { return c < 0; });
        GuardedCopy const copy(text);
        ASSERT_EQ(copy.IsPlain(), isPlain && mayBePlain) << byte << " at " << at << " of " << length;
        ASSERT_TRUE(copy.IsInItsRoom()) << length;
        if (copy.IsPlain()) {
          ASSERT_EQ(copy.Copy(), text);
        }
      }
    }
  }
}

TEST(KitNames, AnyBytesAreCopiedOnlyIfPlain) {
  std::mt19937 random(11);
  char const special[] = {'"', '\\', '[', ']', 0x1F, '!', '#', 'Z', '^', 0x7F, static_cast<char>(0x80), '\0'};
  int plain = 0;
  for (int i = 0; i != 200000; ++i) {
    std::string text(random() % 30, '\0');
    for (char& character : text) {
      character = random() % 8 == 0 ? special[random() % sizeof special] : static_cast<char>(' ' + random() % 95);
    }
    bool const expected = std::all_of(text.begin(), text.end(),
                                      [](char c) { return c >= ' ' && c != '"' && c != '\\' && c != '[' && c != ']'; });
    GuardedCopy const copy(text);
    ASSERT_EQ(copy.IsPlain(), expected) << text;
    ASSERT_TRUE(!expected || copy.Copy() == text);
    plain += expected ? 1 : 0;
  }
  EXPECT_GT(plain, 10000);
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
