#include "SK_MatchNames.h"

#include <cstring>
#include <utility>

#include "SK_Prefetch.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr std::size_t kFirstSlots = 1024;
// Names may be chosen so that their numbers crowd together; the exact pass minds that less.
constexpr std::size_t kLongestSearch = 64;

/// Any function would do whose values seldom agree: each step is a product with an odd number and a fold.
std::uint64_t NumberOf(std::string_view name) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;  // 2^64 divided by the golden ratio
  std::uint64_t number = name.size() * kFactor;
  for (std::size_t at = 0; at < name.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t bytes = 0;
    std::size_t const left = name.size() - at;
    std::memcpy(&bytes, name.data() + at, left < sizeof(bytes) ? left : sizeof(bytes));
    number = (number ^ bytes) * kFactor;
    number ^= number >> 29;
  }
  number = number * kFactor;
  number ^= number >> 32;
  return number != 0 ? number : 1;
}

}  // namespace

bool SK_MatchNames::InsertUnordered(std::string_view name) {
  if (mAccuracy == kNames) {
    return mNames.insert(name).second;
  }
  if (mSlots.size() < 2 * (mUsed + mPending.size())) {
    Grow();
  }
  std::uint64_t const number = NumberOf(name);
  PrefetchForWriting(&mSlots[number & (mSlots.size() - 1)]);
  std::uint64_t const settled = mPending[mNextPending];
  mPending[mNextPending] = number;
  mNextPending = (mNextPending + 1) % mPending.size();
  Settle(settled);
  return true;
}

bool SK_MatchNames::MayRepeat() {
  for (std::uint64_t& number : mPending) {
    Settle(number);
    number = 0;
  }
  return mMayRepeat || mIsOutOfOrder;
}

void SK_MatchNames::Settle(std::uint64_t number) {
  if (number == 0) {
    return;
  }
  std::size_t const mask = mSlots.size() - 1;
  for (std::size_t step = 0; step != kLongestSearch; ++step) {
    std::uint64_t& slot = mSlots[(number + step) & mask];
    if (slot == 0) {
      slot = number;
      ++mUsed;
      return;
    }
    if (slot == number) {
      break;
    }
  }
  mMayRepeat = true;
}

void SK_MatchNames::Grow() {
  std::vector<std::uint64_t> const narrower =
      std::exchange(mSlots, std::vector<std::uint64_t>(mSlots.empty() ? kFirstSlots : 2 * mSlots.size()));
  mUsed = 0;
  for (std::uint64_t const number : narrower) {
    Settle(number);
  }
}

}  // namespace SK_NAMESPACE_INT
