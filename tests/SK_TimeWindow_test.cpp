#include "SK_TimeWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace SK_PLUGIN {
namespace {

constexpr char kCanary = '\x5A';
constexpr std::size_t kSize = SK_TimeWindow::kSize;

/// A time as it has to be given: with zeroes behind it.
class GivenTime {
 public:
  explicit GivenTime(std::string const& text) { std::copy(text.begin(), text.end(), mText.begin()); }
  char const* Data() const { return mText.data(); }

 private:
  std::array<char, SK_TimeWindow::kPadded> mText = {};
};

/// What `Put` stores. A byte behind the room that is promised must not change.
std::string Put(SK_TimeWindow& last, std::string const& time) {
  std::string out(SK_TimeWindow::kRoom + 64, kCanary);
  GivenTime const given(time);
  std::size_t const length = static_cast<std::size_t>(last.Put(out.data(), given.Data()) - out.data());
  EXPECT_LE(length, 1 + time.size());
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_TimeWindow::kRoom), std::string::npos);
  return out.substr(0, length);
}

std::string TextOf(SK_TimeWindow const& last) {
  std::string out(SK_TimeWindow::kLongest + 64, kCanary);
  std::size_t const length = static_cast<std::size_t>(last.CopyTo(out.data()) - out.data());
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_TimeWindow::kLongest), std::string::npos);
  return out.substr(0, length);
}

/// Reads what is stored from memory that ends where its room does, so that a sanitizer sees what is beyond.
std::string Take(SK_TimeWindow& last, std::string const& stored) {
  EXPECT_EQ(last.SizeOf(stored.front()), stored.size());
  std::vector<char> bytes(SK_TimeWindow::kRoom, kCanary);
  std::copy(stored.begin(), stored.end(), bytes.begin());
  last.Take(bytes.data());
  return TextOf(last);
}

/// A text of `length` characters, each of which differs from that of another `turn`.
std::string Text(std::size_t length, std::size_t turn) {
  std::string text(length, ' ');
  for (std::size_t i = 0; i != length; ++i) {
    text[i] = static_cast<char>('0' + (i + turn) % 10);
  }
  return text;
}

std::string Whole(std::string const& time) {
  return '\x7F' + time;
}

std::string Window(std::string const& time, std::size_t at) {
  return static_cast<char>(at) + time.substr(at, kSize);
}

TEST(Differences, AreTheBytesThatDiffer) {
  std::mt19937 random(1);
  for (int i = 0; i != 100000; ++i) {
    std::array<char, 33> a = {};
    std::array<char, 33> b = {};
    for (std::size_t at = 0; at != a.size(); ++at) {
      a[at] = static_cast<char>(random());
      b[at] = static_cast<char>(random() % 4 == 0 ? random() : static_cast<unsigned>(a[at]));
    }
    std::uint32_t expected = 0;
    for (unsigned at = 0; at != 32; ++at) {
      expected |= (a[at] == b[at] ? 0U : 1U) << at;
    }
    ASSERT_EQ(Differences(a.data(), b.data()), expected);
    ASSERT_EQ(DifferencesByteByByte(a.data(), b.data()), expected);
  }
}

class TimeWindowOf : public testing::TestWithParam<std::size_t> {
 protected:
  TimeWindowOf() {
    mWritten.Reset(GetParam());
    mRead.Reset(GetParam());
  }

  SK_TimeWindow mWritten;
  SK_TimeWindow mRead;
};

// All of a time that is no longer than a window is one.
TEST_P(TimeWindowOf, FirstTimeIsKeptWhole) {
  std::string const time = Text(GetParam(), 3);
  EXPECT_EQ(Put(mWritten, time), GetParam() == kSize ? Window(time, 0) : Whole(time));
}

TEST_P(TimeWindowOf, EqualTimeHasItsWindowAtTheEnd) {
  std::string const time = Text(GetParam(), 3);
  Put(mWritten, time);
  EXPECT_EQ(Put(mWritten, time), Window(time, GetParam() - kSize));
  EXPECT_EQ(Put(mWritten, time), Window(time, GetParam() - kSize));
}

// Up to four characters, from the first one that is new, and never beyond the end.
TEST_P(TimeWindowOf, BeginsAtTheFirstDifference) {
  std::size_t const length = GetParam();
  for (std::size_t first = 0; first != length; ++first) {
    for (std::size_t second = first; second != length; ++second) {
      mWritten.Reset(length);
      std::string time = Text(length, 1);
      Put(mWritten, time);
      time[first] = 'x';
      time[second] = 'x';
      std::size_t const at = std::min(first, length - kSize);
      EXPECT_EQ(Put(mWritten, time), second < at + kSize ? Window(time, at) : Whole(time)) << first << ' ' << second;
    }
  }
}

// A window is one of the last time that was kept whole, not of the last one.
TEST_P(TimeWindowOf, LastWholeTimeCounts) {
  std::size_t const length = GetParam();
  std::string const time = Text(length, 1);
  mWritten.Reset(length);
  Put(mWritten, time);
  std::string other = time;
  other[0] = 'x';
  EXPECT_EQ(Put(mWritten, other), Window(other, 0));
  if (length > kSize) {
    other[kSize] = 'x';
    EXPECT_EQ(Put(mWritten, other), Whole(other)) << "that is five characters of it";
    other[0] = 'y';
    EXPECT_EQ(Put(mWritten, other), Window(other, 0));
    EXPECT_EQ(Put(mWritten, time), Whole(time));
  }
}

// The lowest bit and the highest one.
TEST_P(TimeWindowOf, EveryBitCounts) {
  std::size_t const length = GetParam();
  for (std::size_t at = 0; at != length; ++at) {
    for (char const other : {'\x31', '\xB0'}) {
      std::string time(length, '0');
      mWritten.Reset(length);
      Put(mWritten, time);
      time[at] = other;
      EXPECT_EQ(Put(mWritten, time), Window(time, std::min(at, length - kSize))) << at;
    }
  }
}

TEST_P(TimeWindowOf, ResetForgetsTheLastTime) {
  std::string const time = Text(GetParam(), 7);
  std::string const first = Put(mWritten, time);
  mWritten.Reset(GetParam());
  EXPECT_EQ(Put(mWritten, time), first);
}

TEST_P(TimeWindowOf, TimesComeBack) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  std::string time = Text(GetParam(), 0);
  int whole = 0;
  for (int i = 0; i != 4000; ++i) {
    std::size_t const from = random() % 3 == 0 ? 0 : time.size() - kSize;
    for (std::size_t changes = random() % 3; changes != 0; --changes) {
      time[from + random() % (time.size() - from)] = static_cast<char>('0' + random() % 10);
    }
    std::string const stored = Put(mWritten, time);
    whole += stored.size() == 1 + time.size() ? 1 : 0;
    ASSERT_EQ(Take(mRead, stored), time) << i;
  }
  EXPECT_LT(GetParam() > kSize ? whole : 0, 4000) << "some had windows";
}

TEST_P(TimeWindowOf, OtherFirstBytesHaveNoSize) {
  std::size_t const last = GetParam() - kSize;
  for (int first = 0; first != 256; ++first) {
    std::size_t const size = mRead.SizeOf(static_cast<char>(first));
    if (first <= static_cast<int>(last)) {
      EXPECT_EQ(size, 1 + kSize) << first;
    } else if (first == 0x7F) {
      EXPECT_EQ(size, 1 + GetParam());
    } else {
      EXPECT_GT(size, SK_TimeWindow::kRoom) << first;
    }
  }
}

TEST_P(TimeWindowOf, EveryWindowIsRead) {
  std::size_t const length = GetParam();
  for (std::size_t at = 0; at <= length - kSize; ++at) {
    ASSERT_EQ(Take(mRead, Whole(Text(length, 2))), Text(length, 2));
    std::string expected = Text(length, 2);
    std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(at), kSize, 'x');
    EXPECT_EQ(Take(mRead, Window(expected, at)), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, TimeWindowOf, testing::Range(SK_TimeWindow::kShortest, SK_TimeWindow::kLongest + 1));

}  // namespace
}  // namespace SK_PLUGIN
