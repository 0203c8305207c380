// Windows of times: as they are made and stored, and as they are read again.

#include "SK_TimeWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "SK_TimeWindowReader.h"

namespace SK_PLUGIN {
namespace {

constexpr char kCanary = '\x5A';
constexpr std::size_t kSize = SK_TimeWindow::kSize;

/// Gives a time as it has to be given: with zeroes behind it, in memory that ends where it may be read to.
void Set(SK_TimeWindow& window, std::string const& time) {
  std::vector<char> padded(SK_TimeWindow::kLongest);
  std::copy(time.begin(), time.end(), padded.begin());
  window.Set(padded.data(), time.size());
}

/// What `put` stores from `out` on, whose end it gives. A byte behind the room that is promised must not change.
template <typename Put>
std::string Stored(Put&& put) {
  std::string out(SK_TimeWindow::kRoom + 64, kCanary);
  std::size_t const length = static_cast<std::size_t>(put(out.data()) - out.data());
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_TimeWindow::kRoom), std::string::npos);
  return out.substr(0, length);
}

std::string Put(SK_TimeWindow const& window) {
  return Stored([&](char* out) { return window.Put(out); });
}

std::string PutWithBase(SK_TimeWindow const& window) {
  return Stored([&](char* out) { return window.Put(window.PutBase(out)); });
}

/// A text of `length` characters, each of which differs from that of another `turn`.
std::string Text(std::size_t length, std::size_t turn) {
  std::string text(length, ' ');
  for (std::size_t i = 0; i != length; ++i) {
    text[i] = static_cast<char>('0' + (i + turn) % 10);
  }
  return text;
}

std::string Window(std::string const& time, std::size_t at) {
  return static_cast<char>(at) + time.substr(at, kSize);
}
std::string LastWindow(std::string const& time) {
  return Window(time, time.size() - kSize);
}

/// Of a base and a window of the base itself.
std::string Base(std::string const& base) {
  return '\x7F' + base;
}

class TimeWindowOf : public testing::TestWithParam<std::size_t> {
 protected:
  TimeWindowOf() { mReader.Reset(GetParam()); }

  /// The time that is stored, from memory that ends where its room does, so that a sanitizer sees what is beyond.
  std::string Read(std::string const& stored) {
    std::vector<char> bytes(SK_TimeWindow::kRoom, kCanary);
    std::copy(stored.begin(), stored.end(), bytes.begin());
    char const* const window = mReader.IsWindow(bytes.data()) ? bytes.data() : mReader.TakeBase(bytes.data());
    if (window == nullptr) {
      return "none";
    }
    EXPECT_EQ(window + SK_TimeWindow::kStoredSize, bytes.data() + stored.size());
    std::string out(SK_TimeWindow::kLongest + 64, kCanary);
    mReader.CopyBaseTo(out.data());
    SK_TimeWindowReader::CopyWindowTo(out.data(), window);
    EXPECT_EQ(out.find_first_not_of(kCanary, SK_TimeWindow::kLongest), std::string::npos);
    return out.substr(0, mReader.Length());
  }

  SK_TimeWindow mWindow;
  SK_TimeWindowReader mReader;
};

TEST_P(TimeWindowOf, FirstTimeIsTheBase) {
  std::string const time = Text(GetParam(), 3);
  Set(mWindow, time);
  EXPECT_NE(mWindow.BaseID(), 0u);
  EXPECT_EQ(PutWithBase(mWindow), Base(time) + LastWindow(time));
}

TEST_P(TimeWindowOf, EqualTimeHasItsWindowAtTheEnd) {
  std::string const time = Text(GetParam(), 3);
  Set(mWindow, time);
  std::uint64_t const base = mWindow.BaseID();
  Set(mWindow, time);
  EXPECT_EQ(Put(mWindow), LastWindow(time));
  EXPECT_EQ(mWindow.BaseID(), base);
}

// Up to four characters, from the first one that is new, and never beyond the end.
TEST_P(TimeWindowOf, BeginsAtTheFirstDifference) {
  std::size_t const length = GetParam();
  for (std::size_t first = 0; first != length; ++first) {
    for (std::size_t second = first; second != length; ++second) {
      SK_TimeWindow window;
      std::string const base = Text(length, 1);
      Set(window, base);
      std::uint64_t const id = window.BaseID();
      std::string time = base;
      time[first] = 'x';
      time[second] = 'x';
      Set(window, time);
      std::size_t const at = std::min(first, length - kSize);
      bool const fits = second < at + kSize;
      ASSERT_EQ(PutWithBase(window), fits ? Base(base) + Window(time, at) : Base(time) + LastWindow(time))
          << first << ' ' << second;
      ASSERT_EQ(window.BaseID() == id, fits) << first << ' ' << second;
    }
  }
}

// A window is one of the base, not of the time before.
TEST_P(TimeWindowOf, BaseCounts) {
  std::size_t const length = GetParam();
  std::string const time = Text(length, 1);
  Set(mWindow, time);
  std::string other = time;
  other[0] = 'x';
  Set(mWindow, other);
  EXPECT_EQ(PutWithBase(mWindow), Base(time) + Window(other, 0));
  if (length > kSize) {
    other[kSize] = 'x';
    Set(mWindow, other);
    EXPECT_EQ(PutWithBase(mWindow), Base(other) + LastWindow(other)) << "that is five characters of it";
    other[0] = 'y';
    Set(mWindow, other);
    EXPECT_EQ(Put(mWindow), Window(other, 0));
    Set(mWindow, time);
    EXPECT_EQ(PutWithBase(mWindow), Base(time) + LastWindow(time));
  }
}

// The lowest bit and the highest one.
TEST_P(TimeWindowOf, EveryBitCounts) {
  std::size_t const length = GetParam();
  for (std::size_t at = 0; at != length; ++at) {
    for (char const other : {'\x31', '\xB0'}) {
      SK_TimeWindow window;
      std::string time(length, '0');
      Set(window, time);
      time[at] = other;
      Set(window, time);
      EXPECT_EQ(Put(window), Window(time, std::min(at, length - kSize))) << at;
    }
  }
}

// Also if it begins with the base.
TEST_P(TimeWindowOf, TimeOfAnotherLengthIsANewBase) {
  Set(mWindow, Text(GetParam(), 1));
  for (std::size_t length = SK_TimeWindow::kShortest; length <= SK_TimeWindow::kLongest; ++length) {
    if (length != GetParam()) {
      SK_TimeWindow window = mWindow;
      std::string const time = Text(length, 1);
      Set(window, time);
      EXPECT_NE(window.BaseID(), mWindow.BaseID());
      EXPECT_EQ(PutWithBase(window), Base(time) + LastWindow(time));
    }
  }
}

TEST_P(TimeWindowOf, TimesComeBack) {
  std::mt19937 random(static_cast<unsigned>(GetParam()));
  std::string time = Text(GetParam(), 0);
  std::uint64_t base = 0;
  int bases = 0;
  for (int i = 0; i != 4000; ++i) {
    std::size_t const from = random() % 3 == 0 ? 0 : time.size() - kSize;
    for (std::size_t changes = random() % 3; changes != 0; --changes) {
      time[from + random() % (time.size() - from)] = static_cast<char>('0' + random() % 10);
    }
    Set(mWindow, time);
    bases += base != mWindow.BaseID() ? 1 : 0;
    ASSERT_EQ(Read(base == mWindow.BaseID() ? Put(mWindow) : PutWithBase(mWindow)), time) << i;
    base = mWindow.BaseID();
  }
  EXPECT_GE(bases, 1);
  EXPECT_LT(bases, 4000) << "some had the base of the one before";
}

TEST_P(TimeWindowOf, OtherFirstBytesAreNothing) {
  std::size_t const last = GetParam() - kSize;
  for (int first = 0; first != 256; ++first) {
    std::string const stored = static_cast<char>(first) + Text(kSize, 0);
    if (first > static_cast<int>(last) && first != 0x7F) {
      EXPECT_EQ(Read(stored), "none") << first;
    } else if (first != 0x7F) {
      EXPECT_NE(Read(stored), "none") << first;
    }
    // Behind a base there has to be a window.
    if (first > static_cast<int>(last)) {
      EXPECT_EQ(Read(Base(Text(GetParam(), 5)) + stored), "none") << first;
    }
  }
}

TEST_P(TimeWindowOf, EveryWindowIsRead) {
  std::size_t const length = GetParam();
  std::string const base = Text(length, 2);
  ASSERT_EQ(Read(Base(base) + LastWindow(base)), base);
  for (std::size_t at = 0; at <= length - kSize; ++at) {
    std::string expected = base;
    std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(at), kSize, 'x');
    EXPECT_EQ(Read(Window(expected, at)), expected);
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, TimeWindowOf, testing::Range(SK_TimeWindow::kShortest, SK_TimeWindow::kLongest + 1));

TEST(TimeWindows, AreForLengthsThatHaveThem) {
  for (std::size_t length = 0; length != 100; ++length) {
    EXPECT_EQ(SK_TimeWindow::AreFor(length), length >= 4 && length <= 32) << length;
  }
}

// A stream may get samples from one thread and then from another.
TEST(TimeWindows, HaveBasesThatNoOtherThreadHas) {
  constexpr int kBases = 20000;
  std::array<std::vector<std::uint64_t>, 4> ids;
  std::vector<std::thread> threads;
  for (std::vector<std::uint64_t>& own : ids) {
    threads.emplace_back([&own] {
      SK_TimeWindow window;
      for (int i = 0; i != kBases; ++i) {
        Set(window, std::string(10, static_cast<char>('0' + i % 10)));
        own.push_back(window.BaseID());
      }
    });
  }
  std::set<std::uint64_t> all;
  for (std::size_t i = 0; i != threads.size(); ++i) {
    threads[i].join();
    all.insert(ids[i].begin(), ids[i].end());
  }
  EXPECT_EQ(all.size(), threads.size() * kBases);
}

}  // namespace
}  // namespace SK_PLUGIN
