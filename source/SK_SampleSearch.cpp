#include "SK_SampleSearch.h"

#include <algorithm>
#include <exception>

#include "SK_EightBytes.h"
#include "SK_Prefetch.h"
#include "SK_TimeTarget.h"

namespace SK_NAMESPACE_INT {
namespace {

/// Sets up to here are found in a cache sooner than a guess is made.
constexpr std::uint64_t kSmallSet = 1024;

// How a sample begins that has its time first: `{"time":"`, as far as the search looks. Behind it stands a digit.
constexpr std::string_view kTimeFirst = R"({"time":")";
constexpr std::uint64_t kLookedAt = 0x0000FFFFFFFF00FFU;  // the brace and the letters

std::int64_t MiddleOf(std::int64_t low, std::int64_t high) {
  return low + (high - low + 1) / 2;
}

/// Goes on behind a middle or in front of it. The way is as good as random, so there is no branch here.
inline void Narrow(bool goesBehind, std::int64_t middle, std::int64_t& low, std::int64_t& high) {
  std::int64_t const behind = -static_cast<std::int64_t>(goesBehind);  // all bits, or none
  low += (middle + 1 - low) & behind;
  high += (middle - 1 - high) & ~behind;
}

double Seconds(SK_Time const& time) {
  return static_cast<double>(time.value) / time.scale;
}

}  // namespace

SK_SampleSearch::SK_SampleSearch(SK_SampleSet const& set, SK_TimeFormat const& timeFormat,
                                 SK_RelativeTimeReader& timeReader)
    : mSet(set), mTimeFormat(timeFormat), mTimeReader(timeReader) {}

/// What `SK_SampleSet::TimeOf` gives, without a call for the usual form.
inline std::string_view SK_SampleSearch::TimeAt(std::uint64_t index) const {
  char const* const sample = mSet.Address(index);
  std::uint16_t const length = mTimeFormat.GetTimeStrLength();
  if (mSet.info->mSampleSize > kTimeFirst.size() + length) {
    std::uint64_t const difference = (LoadEight(sample) ^ LoadEight(kTimeFirst.data())) & kLookedAt;
    char const* const text = sample + kTimeFirst.size();
    if (difference == 0 && *text >= '0' && *text <= '9') {
      return {text, length};
    }
  }
  return mSet.TimeOf(index, length);
}

std::uint64_t SK_SampleSearch::DoBinarySearch(std::string_view target, std::int64_t guess) const {
  constexpr std::int64_t kNone = -1;
  SK_TimeTarget const time(target, mTimeFormat);
  std::int64_t low = 0;
  auto high = static_cast<std::int64_t>(mSet.LastIndex());
  std::int64_t result = kNone;
  bool exact = false;
  auto const orderAt = [&](std::int64_t index) { return time.Order(TimeAt(static_cast<std::uint64_t>(index))); };

  // While the guess is right about the way, the processor need not wait for the text to know where to look
  // next. Behind each sample so far was more of the way, or else it was no result.
  while (low < high && guess != kNoGuess) {
    std::int64_t const middle = MiddleOf(low, high);
    bool const goesBehind = guess > middle;
    int const order = orderAt(middle);
    if (order == 0 || (order > 0) != goesBehind) {
      break;
    }
    result += (middle - result) & -static_cast<std::int64_t>(goesBehind);
    Narrow(goesBehind, middle, low, high);
  }
  while (low <= high) {
    std::int64_t const middle = MiddleOf(low, high);
    int const order = orderAt(middle);
    if (order > 0) {
      if (!exact) {
        result = middle;
      }
      low = middle + 1;
      continue;
    }
    if (order == 0) {
      exact = true;
      result = middle;
    } else if (low == high && result == kNone) {
      result = middle;
    }
    high = middle - 1;
  }
  return static_cast<std::uint64_t>(result);
}

/// Where the target would be if all samples were equally far apart, as they mostly are.
std::int64_t SK_SampleSearch::Guess(std::string_view target) {
  TemporalRange const& extent = mSet.info->mTemporalRange;
  try {
    double const start = Seconds(mTimeReader.Read(extent.mStartTime));
    double const end = Seconds(mTimeReader.Read(extent.mEndTime));
    double const part = (Seconds(mTimeReader.Read(target)) - start) / (end - start);
    bool const isInside = part >= 0 && part <= 1;
    return isInside ? static_cast<std::int64_t>(part * static_cast<double>(mSet.LastIndex()) + 0.5) : kNoGuess;
  } catch (std::exception const&) {
    return kNoGuess;  // a time that is none: the search itself tells
  }
}

std::int64_t SK_SampleSearch::PrefetchFor(std::string_view target, std::uint64_t samples) {
  if (mSet.info->mSampleCount <= kSmallSet) {
    return kNoGuess;
  }
  std::int64_t const guess = Guess(target);
  if (guess == kNoGuess) {
    return kNoGuess;
  }
  std::int64_t low = 0;
  auto high = static_cast<std::int64_t>(mSet.LastIndex());
  while (low <= high) {
    std::int64_t const middle = MiddleOf(low, high);
    __builtin_prefetch(mSet.Address(static_cast<std::uint64_t>(middle)));
    Narrow(guess > middle, middle, low, high);
  }
  auto const found = static_cast<std::uint64_t>(guess);
  std::uint64_t const behind = std::min(mSet.info->mSampleCount - found, samples);
  std::uint64_t const bytes = std::min<std::uint64_t>(behind * mSet.step - 1, kPrefetchDistance);
  Prefetch(mSet.Address(found), mSet.Address(found) + bytes);
  return guess;
}

}  // namespace SK_NAMESPACE_INT
