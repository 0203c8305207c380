/// Samples in the order of their times, however they came.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <queue>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "senmark/module/SpillFile.h"

namespace senmark::kit::detail {

/// A time as the file will hold it, in an order.
struct SampleKey {
  std::int64_t major = 0;  ///< frames, or seconds since 1970
  std::int32_t minor = 0;  ///< 0, or the fraction in units of the last digit
};

inline bool operator<(SampleKey const& left, SampleKey const& right) {
  return left.major != right.major ? left.major < right.major : left.minor < right.minor;
}

/// Collects samples and gives them back by time; those of the same time in the order in which they came. What is more
/// than its share of memory goes to the spill file, in sorted runs.
class SampleSorter {
 public:
  explicit SampleSorter(SpillFile& spill) : mSpill(spill) {}

  /// memory  bytes that may be kept from now on.
  void add(SampleKey const& key, std::string_view payload, std::size_t memory) {
    mIsOrdered = mIsOrdered && (mEntries.empty() || !(key < mEntries.back().key));
    mEntries.push_back({key, mPayloads.size(), static_cast<std::uint32_t>(payload.size())});
    mPayloads.append(payload);
    if (mEntries.size() * sizeof(Entry) + mPayloads.size() > memory) {
      Spill();
    }
  }

  /// Calls `take` with the key and the payload of each sample, which are valid during the call. The sorter is empty
  /// afterwards.
  template <typename Take>
  void drain(Take&& take) {
    if (mRuns.empty()) {
      Sort();
      for (Entry const& entry : mEntries) {
        take(entry.key, PayloadOf(entry));
      }
    } else {
      Spill();
      Merge(take);
    }
    mEntries = {};
    mPayloads = {};
    mRuns = {};
  }

 private:
  struct Entry {
    SampleKey key;
    std::size_t offset;  ///< in `mPayloads`
    std::uint32_t size;
  };
  struct Run {
    std::uint64_t start;
    std::uint64_t end;
  };
  /// What stands before each payload on the disk.
  struct Head {
    SampleKey key;
    std::uint32_t size;
  };

  /// Reads one run.
  class Reader {
   public:
    Reader(SpillFile const& spill, Run const& run, std::size_t bufferSize)
        : mSpill(&spill), mNext(run.start), mEnd(run.end), mBuffer(bufferSize) {}

    /// False at the end of the run.
    bool next() {
      if (mPosition == mFilled && mNext == mEnd) {
        return false;
      }
      Need(sizeof(Head));
      std::memcpy(&mHead, mBuffer.data() + mPosition, sizeof(Head));
      Need(sizeof(Head) + mHead.size);
      mPayload = std::string_view(mBuffer.data() + mPosition + sizeof(Head), mHead.size);
      mPosition += sizeof(Head) + mHead.size;
      return true;
    }
    SampleKey const& key() const { return mHead.key; }
    std::string_view payload() const { return mPayload; }

   private:
    void Need(std::size_t size) {
      if (mFilled - mPosition >= size) {
        return;
      }
      std::memmove(mBuffer.data(), mBuffer.data() + mPosition, mFilled - mPosition);
      mFilled -= mPosition;
      mPosition = 0;
      mBuffer.resize(std::max(mBuffer.size(), size));
      std::size_t const count = std::min<std::uint64_t>(mBuffer.size() - mFilled, mEnd - mNext);
      mSpill->read(mNext, mBuffer.data() + mFilled, count);
      mNext += count;
      mFilled += count;
    }

    SpillFile const* mSpill;
    std::uint64_t mNext;  ///< in the file
    std::uint64_t mEnd;
    std::vector<char> mBuffer;
    std::size_t mPosition = 0;
    std::size_t mFilled = 0;
    Head mHead{};
    std::string_view mPayload;
  };

  std::string_view PayloadOf(Entry const& entry) const {
    return std::string_view(mPayloads).substr(entry.offset, entry.size);
  }

  void Sort() {
    if (!mIsOrdered) {
      std::stable_sort(mEntries.begin(), mEntries.end(),
                       [](Entry const& left, Entry const& right) { return left.key < right.key; });
    }
  }

  void Spill() {
    if (mEntries.empty()) {
      return;
    }
    Sort();
    std::string bytes;
    bytes.reserve(mEntries.size() * sizeof(Head) + mPayloads.size());
    for (Entry const& entry : mEntries) {
      Head const head{entry.key, entry.size};
      bytes.append(reinterpret_cast<char const*>(&head), sizeof(head));
      bytes.append(PayloadOf(entry));
    }
    std::uint64_t const start = mSpill.append(bytes);
    mRuns.push_back({start, start + bytes.size()});
    mEntries.clear();
    mPayloads.clear();
    mIsOrdered = true;
  }

  template <typename Take>
  void Merge(Take&& take) {
    constexpr std::size_t kAllBuffers = std::size_t{4} << 20;
    std::size_t const bufferSize = std::clamp<std::size_t>(kAllBuffers / mRuns.size(), 4096, 262144);
    std::vector<Reader> readers;
    readers.reserve(mRuns.size());
    // An earlier run holds the earlier ones of samples with the same time.
    auto const later = [&](std::size_t left, std::size_t right) {
      SampleKey const& leftKey = readers[left].key();
      SampleKey const& rightKey = readers[right].key();
      return rightKey < leftKey || (!(leftKey < rightKey) && left > right);
    };
    std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(later)> queue(later);
    for (Run const& run : mRuns) {
      readers.emplace_back(mSpill, run, bufferSize);
      readers.back().next();
      queue.push(readers.size() - 1);
    }
    while (!queue.empty()) {
      std::size_t const first = queue.top();
      queue.pop();
      take(readers[first].key(), readers[first].payload());
      if (readers[first].next()) {
        queue.push(first);
      }
    }
  }

  SpillFile& mSpill;
  std::vector<Entry> mEntries;
  std::string mPayloads;
  std::vector<Run> mRuns;
  bool mIsOrdered = true;
};

}  // namespace senmark::kit::detail
