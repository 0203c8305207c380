#include "SK_SampleSearch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "SK_Exception.h"
#include "SK_Utils.h"
#include "ScratchSamples.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::NumberAt;
using senmark_test::NumberWidths;
using senmark_test::ThirtyFrames;

/// One set of numbers of one digit, in a buffer of its exact size.
class SetUnderSearch {
 public:
  explicit SetUnderSearch(std::vector<std::string> const& samples) : mInfo(NumberWidths(1)) {
    for (std::string const& sample : samples) {
      mText += (mText.empty() ? "" : ",") + sample;
    }
    mInfo.mSampleSize += 20 + 11;
    mInfo.mSampleCount = samples.size();
    mInfo.mSampleOffset = kInFront;
    mInfo.mTemporalRange = {samples.front().substr(9, 11), samples.back().substr(9, 11)};
    mBuffer = std::make_unique<char[]>(kInFront + mText.size());
    std::memcpy(mBuffer.get() + kInFront, mText.data(), mText.size());
    mSet = {&mId, &mInfo, mBuffer.get(), mBuffer.get() + kInFront, mInfo.mSampleSize + 1};
  }

  SK_SampleSet const& Set() const { return mSet; }

  /// Index of what is found, or the message: the same for every guess.
  std::string Find(std::string const& target) {
    SK_TimeFormat const format = ThirtyFrames();
    SK_RelativeTimeReader reader(format);
    SK_SampleSearch search(mSet, format, reader);
    std::string const found = FindWith(search, target, SK_SampleSearch::kNoGuess);
    auto const last = static_cast<std::int64_t>(mSet.LastIndex());
    for (std::int64_t const guess : {search.PrefetchFor(target, 3), std::int64_t{0}, last / 3, last / 2, last}) {
      EXPECT_EQ(FindWith(search, target, guess), found) << "guessed " << guess;
    }
    return found;
  }

 private:
  static std::string FindWith(SK_SampleSearch const& search, std::string const& target, std::int64_t guess) {
    try {
      return std::to_string(search.DoBinarySearch(target, guess));
    } catch (ns_sensor::SK_Exception const& error) {
      EXPECT_EQ(error.GetErrorCode(), ns_sensor::kMalformedSample);
      EXPECT_EQ(error.GetFileOffset(), -1);
      EXPECT_EQ(error.GetFileLineNo(), -1);
      return error.GetLocalizedErrMsg();
    }
  }

  static constexpr std::size_t kInFront = 50;
  std::string const mId = "s1";
  SK_DynamicSampleInfo mInfo;
  std::string mText;
  std::unique_ptr<char[]> mBuffer;
  SK_SampleSet mSet;
};

std::string TimeText(unsigned frames) {
  char text[32];
  std::snprintf(text, sizeof(text), "00:00:%02u:%02u", frames / 30, frames % 30);
  return text;
}

std::vector<std::string> SamplesAt(std::vector<unsigned> const& frames) {
  std::vector<std::string> samples;
  for (unsigned const frame : frames) {
    samples.push_back(NumberAt(TimeText(frame), "1"));
  }
  return samples;
}

struct Found {
  char const* name;
  std::vector<unsigned> frames;
  unsigned target;
  char const* index;
};

class FoundSample : public testing::TestWithParam<Found> {};

TEST_P(FoundSample, IsTheExpectedOne) {
  SetUnderSearch set(SamplesAt(GetParam().frames));
  EXPECT_EQ(set.Find(TimeText(GetParam().target)), GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(SampleSearch, FoundSample,
                         testing::Values(Found{"ExactTime", {10, 20, 30, 40}, 30, "2"},
                                         Found{"LastBeforeTheTime", {10, 20, 30, 40}, 39, "2"},
                                         Found{"FirstWhenAllAreLater", {10, 20, 30, 40}, 9, "0"},
                                         Found{"LastWhenAllAreEarlier", {10, 20, 30, 40}, 41, "3"},
                                         Found{"FirstOfEqualTimesWins", {10, 20, 20, 20, 30}, 20, "1"},
                                         Found{"FirstOfAllEqualTimesWins", {20, 20, 20, 20}, 20, "0"},
                                         Found{"LastOfEqualTimesBeforeTheTime", {10, 20, 20, 20, 30}, 21, "3"},
                                         Found{"OnlySampleAtTime", {20}, 20, "0"},
                                         Found{"OnlySampleIsLater", {20}, 19, "0"},
                                         Found{"OnlySampleIsEarlier", {20}, 21, "0"}),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SampleSearch, EmptyTargetFindsTheFirst) {
  SetUnderSearch set(SamplesAt({10, 20, 30}));
  EXPECT_EQ(set.Find(""), "0");
}

/// The search as it is defined: by addresses, recursive, with one sample handled on its own and once more.
class ReferenceSearch {
 public:
  ReferenceSearch(SK_SampleSet const& set, std::string const& target)
      : mSet(set),
        mTarget(target),
        mFormat(ThirtyFrames()),
        mSize(static_cast<std::ptrdiff_t>(set.info->mSampleSize)) {}

  std::string Find() {
    char const* const last = mSet.first + static_cast<std::ptrdiff_t>(mSet.LastIndex()) * (mSize + 1);
    if (!Search(mSet.first, last, false)) {
      return "Invalid sample:\"sampleSetID:s1/sample[" + std::to_string(Label()) + "]\"";
    }
    return std::to_string((*mResult - mSet.first) / (mSize + 1));
  }

 private:
  bool Search(char const* low, char const* high, bool exact) {
    if (low > high) {
      return true;
    }
    int order = 0;
    if (low == high) {
      if (!Compare(low, high + mSize, order)) {
        return false;
      }
      if (order == 0 || !mResult || (order > 0 && !exact)) {
        mResult = low;
      }
    }
    std::ptrdiff_t const samples = (high - low) / (mSize + 1);
    char const* const middle = low + (samples + 1) / 2 * (mSize + 1);
    mProbed = middle;
    if (*middle != '{' || !Compare(middle, high + mSize, order)) {
      mResult.reset();
      return false;
    }
    if (order == 0) {
      mResult = middle;
      return Search(low, middle - mSize - 1, true);
    }
    if (order < 0) {
      return Search(low, middle - mSize - 1, exact);
    }
    if (!mResult || !exact) {
      mResult = middle;
    }
    return Search(middle + mSize + 1, high, exact);
  }

  bool Compare(char const* sample, char const* end, int& order) {
    mProbed = sample;
    char const* const time = SK_Utils::GetTimeValueOffset(*mSet.info, sample, end);
    if (time == nullptr) {
      return false;
    }
    order = SK_Utils::CompareTimeStrings(std::string_view(mTarget), std::string_view(time, 11), mFormat);
    return true;
  }

  std::uint64_t Label() const {
    auto const offset = static_cast<std::uint64_t>(mProbed - mSet.fileStart);
    return (offset + mSet.info->mSampleOffset - mSet.info->mSampleSize) / (mSet.info->mSampleSize + 1);
  }

  SK_SampleSet const& mSet;
  std::string mTarget;
  SK_TimeFormat mFormat;
  std::ptrdiff_t mSize;
  std::optional<char const*> mResult;
  char const* mProbed = nullptr;
};

TEST(SampleSearch, LooksAtTheSameSamplesAsDefinedWhateverTheOrder) {
  std::mt19937 random(4);
  int failures = 0;
  for (int i = 0; i < 20000; ++i) {
    std::vector<unsigned> frames(1 + random() % 40);
    for (unsigned& frame : frames) {
      frame = static_cast<unsigned>(random() % 60);
    }
    if (random() % 2 == 0) {
      std::sort(frames.begin(), frames.end());
    }
    std::vector<std::string> samples = SamplesAt(frames);
    for (auto damaged = random() % 3; damaged != 0; --damaged) {
      std::string& sample = samples[random() % samples.size()];
      sample[random() % 10] = "x{9"[random() % 3];  // the brace, the key, or the time's first digit
    }
    SetUnderSearch set(samples);
    std::string const target = TimeText(static_cast<unsigned>(random() % 62));
    std::string const expected = ReferenceSearch(set.Set(), target).Find();
    ASSERT_EQ(set.Find(target), expected) << target << " in " << samples.size();
    failures += expected[0] == 'I' ? 1 : 0;
  }
  EXPECT_GT(failures, 1000);
}

TEST(SampleSearch, GuessesChangeNothingInLargeSets) {
  std::mt19937 random(6);
  std::vector<unsigned> frames(1700);
  for (bool const isSorted : {true, false}) {
    for (unsigned& frame : frames) {
      frame = static_cast<unsigned>(random() % 1800);
    }
    if (isSorted) {
      std::sort(frames.begin(), frames.end());
    }
    SetUnderSearch set(SamplesAt(frames));
    for (unsigned target = 0; target < 1800; target += 7) {
      ASSERT_EQ(set.Find(TimeText(target)), ReferenceSearch(set.Set(), TimeText(target)).Find());
    }
  }
}

TEST(SampleSearch, TimesThatAreNoneStopNoGuess) {
  std::vector<std::string> samples(1500, NumberAt("00:00:01:00", "1"));
  samples.front() = NumberAt("0x:yy:zz:ww", "1");
  samples.back() = NumberAt("0x:yy:zz:ww", "1");
  SetUnderSearch set(samples);
  EXPECT_EQ(set.Find("00:00:01:00"), "1");
}

TEST(SampleSearch, ValueFirstIsFoundToo) {
  std::vector<std::string> samples;
  for (unsigned const frame : {3U, 6U, 9U}) {
    samples.push_back(senmark_test::ValueFirst(TimeText(frame), "\"1\""));
  }
  SetUnderSearch set(samples);
  EXPECT_EQ(set.Find(TimeText(6)), "1");
  EXPECT_EQ(set.Find(TimeText(10)), "2");
}

TEST(SampleSearch, LabelWrapsWhereItComesOutBelowZero) {
  // Offset 50 twice is less than a sample of 34 bytes only when the set starts nearer to the file's start.
  std::string const sample = "x" + NumberAt("00:00:00:01", "1").substr(1);
  SK_DynamicSampleInfo info = NumberWidths(1);
  info.mSampleSize = sample.size();
  info.mSampleCount = 1;
  info.mSampleOffset = 3;
  std::string const text = "[[[" + sample;
  std::string const id = "w";
  SK_SampleSet const set = {&id, &info, text.data(), text.data() + 3, sample.size() + 1};
  SK_TimeFormat const format = ThirtyFrames();
  SK_RelativeTimeReader reader(format);
  std::uint64_t const label = (std::uint64_t{6} - 34) / 35;
  try {
    SK_SampleSearch(set, format, reader).DoBinarySearch("00:00:00:01", SK_SampleSearch::kNoGuess);
    FAIL();
  } catch (ns_sensor::SK_Exception const& error) {
    EXPECT_EQ(error.GetLocalizedErrMsg(), "Invalid sample:\"sampleSetID:w/sample[" + std::to_string(label) + "]\"");
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
