/// Samples in the order of their times, however they came.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <queue>
#include <string>
#include <string_view>
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

class SampleSorter;

/// What the sorters of one file share: the memory that they may use together, and the file for what is beyond it.
struct SortRoom {
  std::size_t limit;     ///< bytes
  std::size_t used = 0;  ///< bytes
  SpillFile spill;
  std::vector<SampleSorter*> sorters;

  explicit SortRoom(std::size_t memory) : limit(memory) {}

  /// Has the sorters that use most write what they have to the file, until half of the memory in use is free.
  inline void free();

  /// Begins anew. The sorters are gone already.
  void clear() {
    used = 0;
    spill.clear();
    sorters.clear();
  }
};

/// Collects samples and gives them back by time; those of the same time in the order in which they came. What is more
/// than memory can take goes to the spill file, in sorted runs.
class SampleSorter {
 public:
  /// room  lives longer.
  explicit SampleSorter(SortRoom& room) : mRoom(room) { room.sorters.push_back(this); }
  SampleSorter(SampleSorter const&) = delete;
  SampleSorter& operator=(SampleSorter const&) = delete;

  void add(SampleKey const& key, std::string_view payload) {
    Head const head{key.major, key.minor, static_cast<std::uint32_t>(payload.size())};
    std::size_t const size = sizeof(head) + payload.size();
    if (mRecords.size() - mFilled < size) {
      Grow(size);
    }
    mIsOrdered = mIsOrdered && (mFilled == 0 || !(key < mLast));
    mLast = key;
    std::memcpy(mRecords.data() + mFilled, &head, sizeof(head));
    // An empty payload may have no address.
    if (!payload.empty()) {
      std::memcpy(mRecords.data() + mFilled + sizeof(head), payload.data(), payload.size());
    }
    mFilled += size;
    ++mCount;
  }

  /// Calls `take` with the key and the payload of each sample, which are valid during the call. The sorter is empty
  /// afterwards.
  template <typename Take>
  void drain(Take&& take) {
    if (mRuns.empty()) {
      ForEachInOrder([&](SampleKey const& key, std::string_view record) { take(key, record.substr(sizeof(Head))); });
      Clear();
    } else {
      spill();
      Merge(take);
      mRuns = {};
    }
  }

  /// Bytes of memory.
  std::size_t used() const { return mRecords.size(); }

  /// Writes what is in memory to the file, as one run, and frees the memory.
  void spill() {
    if (mFilled != 0) {
      std::uint64_t const start = mRoom.spill.size();
      WriteInOrder();
      mRuns.push_back({start, mRoom.spill.size()});
    }
    Clear();
  }

 private:
  /// What stands before each payload, in memory and on the disk.
  struct Head {
    std::int64_t major;
    std::int32_t minor;
    std::uint32_t size;
  };
  static_assert(sizeof(Head) == 16);

  /// Where a record stands, when they are to be put in order.
  struct Place {
    SampleKey key;
    std::size_t offset;
  };
  struct Run {
    std::uint64_t start;
    std::uint64_t end;
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
    SampleKey key() const { return {mHead.major, mHead.minor}; }
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

  /// Makes room for `size` more bytes, twice as much as there is if memory allows.
  void Grow(std::size_t size) {
    auto const wanted = [&] { return std::max({mFilled + size, mRecords.size() * 2, kSmallest}); };
    if (mRoom.used - mRecords.size() + wanted() > mRoom.limit) {
      mRoom.free();
    }
    std::size_t const before = mRecords.size();
    mRecords.resize(wanted());
    mRoom.used += mRecords.size() - before;
  }

  void Clear() {
    mRoom.used -= mRecords.size();
    mRecords = {};
    mFilled = 0;
    mCount = 0;
    mIsOrdered = true;
  }

  Head HeadAt(std::size_t offset) const {
    Head head;
    std::memcpy(&head, mRecords.data() + offset, sizeof(head));
    return head;
  }

  /// Calls `take` with key and record, head and payload.
  template <typename Take>
  void ForEachInOrder(Take&& take) const {
    auto const record = [&](std::size_t offset, Head const& head) {
      return std::string_view(mRecords.data() + offset, sizeof(Head) + head.size);
    };
    if (mIsOrdered) {
      for (std::size_t offset = 0; offset != mFilled;) {
        Head const head = HeadAt(offset);
        take(SampleKey{head.major, head.minor}, record(offset, head));
        offset += sizeof(Head) + head.size;
      }
      return;
    }
    std::vector<Place> places;
    places.reserve(mCount);
    for (std::size_t offset = 0; offset != mFilled;) {
      Head const head = HeadAt(offset);
      places.push_back({{head.major, head.minor}, offset});
      offset += sizeof(Head) + head.size;
    }
    // With the offset to decide between equal keys, no sort needs memory of its own to be stable.
    std::sort(places.begin(), places.end(), [](Place const& left, Place const& right) {
      return left.key < right.key || (!(right.key < left.key) && left.offset < right.offset);
    });
    for (Place const& place : places) {
      take(place.key, record(place.offset, HeadAt(place.offset)));
    }
  }

  void WriteInOrder() {
    if (mIsOrdered) {
      mRoom.spill.append({mRecords.data(), mFilled});
      return;
    }
    constexpr std::size_t kPiece = std::size_t{64} << 10;
    std::string piece;
    ForEachInOrder([&](SampleKey const& /*key*/, std::string_view record) {
      if (piece.size() + record.size() > kPiece && !piece.empty()) {
        mRoom.spill.append(piece);
        piece.clear();
      }
      piece.append(record);
    });
    mRoom.spill.append(piece);
  }

  template <typename Take>
  void Merge(Take&& take) {
    constexpr std::size_t kAllBuffers = std::size_t{4} << 20;
    std::size_t const bufferSize = std::clamp<std::size_t>(kAllBuffers / mRuns.size(), 4096, 262144);
    std::vector<Reader> readers;
    readers.reserve(mRuns.size());
    // An earlier run holds the earlier ones of samples with the same time.
    auto const later = [&](std::size_t left, std::size_t right) {
      SampleKey const leftKey = readers[left].key();
      SampleKey const rightKey = readers[right].key();
      return rightKey < leftKey || (!(leftKey < rightKey) && left > right);
    };
    std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(later)> queue(later);
    for (Run const& run : mRuns) {
      readers.emplace_back(mRoom.spill, run, bufferSize);
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

  static constexpr std::size_t kSmallest = 256;

  SortRoom& mRoom;
  std::vector<char> mRecords;  ///< heads and payloads, up to `mFilled`
  std::size_t mFilled = 0;
  std::size_t mCount = 0;  ///< of records in memory
  std::vector<Run> mRuns;
  SampleKey mLast;
  bool mIsOrdered = true;  ///< what is in memory
};

inline void SortRoom::free() {
  // Those with less than half of the average have less than half of all together.
  std::size_t const most = used / std::max<std::size_t>(sorters.size(), 1) / 2;
  for (SampleSorter* const sorter : sorters) {
    if (sorter->used() >= most && sorter->used() != 0) {
      sorter->spill();
    }
  }
}

}  // namespace senmark::kit::detail
