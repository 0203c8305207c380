#include "SK_TimeTail.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

namespace SK_PLUGIN {
namespace {

constexpr char kCanary = '\x5A';

/// A time as it has to be given: with zeroes behind it.
class GivenTime {
 public:
  explicit GivenTime(std::string const& text) { std::copy(text.begin(), text.end(), mText.begin()); }
  char const* Data() const { return mText.data(); }

 private:
  std::array<char, SK_TimeTail::kPadded> mText = {};
};

/// What `Put` stores. A byte behind the room that is promised must not change.
std::string PutTail(SK_TimeTail& last, std::string const& time) {
  std::string out(SK_TimeTail::kRoom + 64, kCanary);
  GivenTime const given(time);
  std::size_t const length = last.Put(out.data(), given.Data());
  EXPECT_LE(length, time.size());
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_TimeTail::kRoom), std::string::npos);
  return out.substr(0, length);
}

/// Reads a tail from memory that ends where its room does, so that a sanitizer sees what is beyond.
bool TakeTail(SK_TimeTail& last, std::string const& tail) {
  std::vector<char> bytes(SK_TimeTail::kRoom, kCanary);
  std::copy(tail.begin(), tail.end(), bytes.begin());
  return last.Take(bytes.data(), tail.size());
}

/// A text of `length` characters, each of which differs from that of another `turn`.
std::string Text(std::size_t length, std::size_t turn) {
  std::string text(length, ' ');
  for (std::size_t i = 0; i != length; ++i) {
    text[i] = static_cast<char>('0' + (i + turn) % 10);
  }
  return text;
}

class TimeTailOf : public testing::TestWithParam<std::size_t> {
 protected:
  TimeTailOf() {
    mWritten.Reset(GetParam());
    mRead.Reset(GetParam());
  }

  SK_TimeTail mWritten;
  SK_TimeTail mRead;
};

TEST_P(TimeTailOf, FirstTimeIsItsOwnTail) {
  std::string const time = Text(GetParam(), 3);
  EXPECT_EQ(PutTail(mWritten, time), time);
  EXPECT_EQ(mWritten.Text(), time);
}

TEST_P(TimeTailOf, EqualTimeHasAnEmptyTail) {
  std::string const time = Text(GetParam(), 3);
  PutTail(mWritten, time);
  EXPECT_EQ(PutTail(mWritten, time), "");
  EXPECT_EQ(PutTail(mWritten, time), "");
  EXPECT_EQ(mWritten.Text(), time);
}

// All characters behind the first one that is new are stored, whether they are new or not.
TEST_P(TimeTailOf, TailBeginsAtTheFirstDifference) {
  std::size_t const length = GetParam();
  for (std::size_t first = 0; first != length; ++first) {
    for (std::size_t second = first; second != length; ++second) {
      mWritten.Reset(length);
      std::string time = Text(length, 1);
      PutTail(mWritten, time);
      time[first] = 'x';
      time[second] = 'x';
      EXPECT_EQ(PutTail(mWritten, time), time.substr(first)) << first << ' ' << second;
      EXPECT_EQ(mWritten.Text(), time);
    }
  }
}

// The lowest bit and the highest one, and a character without any bit.
TEST_P(TimeTailOf, EveryBitCounts) {
  std::size_t const length = GetParam();
  for (std::size_t at = 0; at != length; ++at) {
    for (char const other : {'\x31', '\xB0', '\0'}) {
      std::string time(length, '0');
      mWritten.Reset(length);
      PutTail(mWritten, time);
      time[at] = other;
      EXPECT_EQ(PutTail(mWritten, time), time.substr(at)) << at;
    }
  }
}

TEST_P(TimeTailOf, ResetForgetsTheLastTime) {
  std::string const time = Text(GetParam(), 7);
  PutTail(mWritten, time);
  mWritten.Reset(GetParam());
  EXPECT_EQ(mWritten.Text(), std::string(GetParam(), '\0'));
  EXPECT_EQ(PutTail(mWritten, time), time);
}

TEST_P(TimeTailOf, TimesComeBackByTheirTails) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  std::string time = Text(GetParam(), 0);
  for (int i = 0; i != 2000; ++i) {
    for (std::size_t changes = random() % 3; changes != 0 && !time.empty(); --changes) {
      time[random() % time.size()] = static_cast<char>('0' + random() % 10);
    }
    ASSERT_TRUE(TakeTail(mRead, PutTail(mWritten, time)));
    ASSERT_EQ(mRead.Text(), time) << i;
  }
}

TEST_P(TimeTailOf, LongerTailIsNone) {
  std::string const time = Text(GetParam(), 5);
  ASSERT_TRUE(TakeTail(mRead, time));
  for (std::size_t length = GetParam() + 1; length != 256; ++length) {
    std::vector<char> const bytes(256, 'x');
    EXPECT_FALSE(mRead.Take(bytes.data(), length)) << length;
    EXPECT_EQ(mRead.Text(), time) << "nothing of it was taken";
  }
}

TEST_P(TimeTailOf, EveryLengthOfATailReplacesTheEnd) {
  std::size_t const length = GetParam();
  for (std::size_t tail = 0; tail <= length; ++tail) {
    mRead.Reset(length);
    ASSERT_TRUE(TakeTail(mRead, Text(length, 2)));
    ASSERT_TRUE(TakeTail(mRead, std::string(tail, 'x')));
    EXPECT_EQ(mRead.Text(), Text(length, 2).substr(0, length - tail) + std::string(tail, 'x'));
  }
}

// What was read behind a tail is no part of the next time either.
TEST_P(TimeTailOf, WhatIsBehindATailStaysOut) {
  std::string const time = Text(GetParam(), 4);
  ASSERT_TRUE(TakeTail(mRead, time));
  for (std::size_t tail = 0; tail <= GetParam(); ++tail) {
    ASSERT_TRUE(TakeTail(mRead, time.substr(GetParam() - tail)));
    EXPECT_EQ(mRead.Text(), time) << tail;
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, TimeTailOf, testing::Range(std::size_t{0}, SK_TimeTail::kLongest + 1));

}  // namespace
}  // namespace SK_PLUGIN
