/// Samples of one set, by time, in memory that does not grow with the set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "senmark/host/SampleWindows.h"

namespace senmark {

namespace detail {

/// What a pass over samples covers.
struct RangeSpec {
  enum class eKind : std::uint8_t {
    kEmpty,
    kAll,       ///< every sample
    kCovering,  ///< from what the library finds for the start to what it finds for the end
    kWithin,    ///< only times from start to end
    kReversed,  ///< the same, last sample first
  };
  eKind kind = eKind::kEmpty;
  Time start;
  Time end;
};

/// One pass over a range: holds one piece of it at a time.
class SampleCursor {
 public:
  SampleCursor(std::shared_ptr<SampleWindows const> windows, RangeSpec const& spec)
      : mWindows(std::move(windows)), mSpec(spec) {}

  /// Goes to the next sample, at first to the first one. False: there is none.
  bool Next() {
    if (mPlace != mUsed) {
      ++mPlace;
    }
    while (mPlace == mUsed) {
      if (mDone || !Refill()) {
        mDone = true;
        return false;
      }
    }
    return true;
  }

  /// The sample that `Next` went to.
  Sample const& Current() const {
    return mBuffer[mSpec.kind == RangeSpec::eKind::kReversed ? mUsed - 1 - mPlace : mPlace];
  }

 private:
  bool IsFiltered() const {
    return mSpec.kind == RangeSpec::eKind::kWithin || mSpec.kind == RangeSpec::eKind::kReversed;
  }

  bool Refill() {
    bool const first = !mStarted;
    mStarted = true;
    if (mSpec.kind == RangeSpec::eKind::kReversed) {
      return first ? StartBackward() : ContinueBackward();
    }
    return first ? StartForward() : ContinueForward();
  }

  bool StartForward() {
    switch (mSpec.kind) {
      case RangeSpec::eKind::kAll:
        mFrom = mWindows->First();
        mLimit = mWindows->Last();
        break;
      case RangeSpec::eKind::kCovering:
      case RangeSpec::eKind::kWithin:
        mFrom = mWindows->Clamped(mSpec.start);
        mLimit = mWindows->Clamped(mSpec.end);
        break;
      case RangeSpec::eKind::kReversed:
      case RangeSpec::eKind::kEmpty:
        return false;
    }
    if (mLimit.index < mFrom.index) {
      mLimit = mFrom;
    }
    mNext = mFrom.index;
    FetchForward();
    while (IsFiltered() && mFrom.index != 0 && mFirstTime > mSpec.start) {
      // The library took the start for a later time than it is.
      mFrom = mWindows->Before(mFrom);
      mNext = mFrom.index;
      FetchForward();
    }
    FinishForward();
    return true;
  }

  bool ContinueForward() {
    if (mNext > mLimit.index && !ExtendForward()) {
      return false;
    }
    FetchForward();
    FinishForward();
    return true;
  }

  /// Fetches one piece, from sample `mNext` on. `mTo` is its end.
  void FetchForward() {
    mTo = mWindows->PieceEnd(mFrom, mNext, mLimit);
    FetchPiece(mFrom, mTo, mNext);
  }

  void FinishForward() {
    mFrom = mTo;
    mNext = mTo.index + 1;
    Filter();
  }

  /// Behind the limit there may be more samples of the end time, or of one that the library took for it.
  bool ExtendForward() {
    if (mSpec.kind == RangeSpec::eKind::kAll) {
      mWindows->RequireEnd(mLimit);
      return false;
    }
    if (mSpec.kind == RangeSpec::eKind::kCovering || mLastTime > mSpec.end) {
      return false;
    }
    Position const further = mWindows->Beyond(mSpec.end, mLimit);
    if (further.index == mLimit.index) {
      mWindows->RequireEnd(mLimit);
      return false;
    }
    mLimit = further;
    return true;
  }

  bool StartBackward() {
    mTo = mWindows->Clamped(mSpec.end);
    do {
      mTo = mWindows->Beyond(mSpec.end, mTo);
      mNext = mTo.index;
      FetchBackward();
      if (mLastTime <= mSpec.end && mTo.index != mWindows->LastIndex()) {
        Position const further = mWindows->Beyond(mSpec.end, mTo);
        if (further.index == mTo.index) {
          mWindows->RequireEnd(mTo);
        }
        mTo = further;
        continue;
      }
      break;
    } while (true);
    FinishBackward();
    return true;
  }

  bool ContinueBackward() {
    if (mFrom.index == 0 || mFirstTime < mSpec.start) {
      return false;
    }
    FetchBackward();
    FinishBackward();
    return true;
  }

  /// Fetches one piece, up to sample `mNext`. `mFrom` is its begin.
  void FetchBackward() {
    mFrom = mWindows->PieceBegin(mTo, mNext);
    FetchPiece(mFrom, mTo, mFrom.index);
    mUsed = std::min<std::size_t>(mUsed, static_cast<std::size_t>(mNext - mFrom.index + 1));
  }

  void FinishBackward() {
    mTo = mFrom;
    mNext = mFrom.index == 0 ? 0 : mFrom.index - 1;
    Filter();
  }

  void FetchPiece(Position from, Position to, std::uint64_t first) {
    mPlace = 0;
    mUsed = 0;  // for the case that the fetch throws
    mUsed = mWindows->Fetch(from, to, first, mBuffer);
    mFirstTime = mBuffer[0].time;
    mLastTime = mBuffer[mUsed - 1].time;
  }

  /// Drops what lies outside the range, and keeps the order of the rest.
  void Filter() {
    if (!IsFiltered()) {
      return;
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i != mUsed; ++i) {
      if (mBuffer[i].time >= mSpec.start && mBuffer[i].time <= mSpec.end) {
        std::swap(mBuffer[kept], mBuffer[i]);
        ++kept;
      }
    }
    mUsed = kept;
  }

  std::shared_ptr<SampleWindows const> mWindows;
  RangeSpec mSpec;
  bool mStarted = false;
  bool mDone = false;

  Position mFrom;           ///< forward: where the next piece is asked from; backward: begin of the last one
  Position mTo;             ///< forward: end of the last piece; backward: where the next one is asked to
  Position mLimit;          ///< forward: end of the last piece of all
  std::uint64_t mNext = 0;  ///< the sample that the next piece goes on with
  Time mFirstTime;          ///< of the last piece, before it was filtered
  Time mLastTime;

  std::vector<Sample> mBuffer;
  std::size_t mPlace = 0;  ///< samples of the piece that were given out
  std::size_t mUsed = 0;   ///< samples of the piece
};

}  // namespace detail

/// Some samples of a set. Holds no sample itself: each `begin()` starts a pass of its own, which fetches
/// piece by piece. Keeps its file open.
///
///     for (senmark::Sample const& sample : file.samples("arm").within(from, to)) Use(sample);
///
/// Memory:   of two pieces at most, one here and one inside the library. A piece has about as many samples
///           as `File::samples` was told, more only where more samples have one time, or times closer
///           together than the library can be asked for.
/// Lifetime: the reference that an iterator gives is good until it moves.
/// Errors:   34, 39 a sample that cannot be read; thrown by `begin()` and `++`.
/// Threads:  a pass belongs to one thread; several threads may each have one.
class SampleRange {
 public:
  /// A single pass: copies of an iterator move together.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Sample;
    using difference_type = std::ptrdiff_t;
    using pointer = Sample const*;
    using reference = Sample const&;

    Iterator() = default;
    reference operator*() const { return mCursor->Current(); }
    pointer operator->() const { return &mCursor->Current(); }
    Iterator& operator++() {
      Advance();
      return *this;
    }
    void operator++(int) { Advance(); }
    friend bool operator==(Iterator const& a, Iterator const& b) { return a.mCursor == b.mCursor; }
    friend bool operator!=(Iterator const& a, Iterator const& b) { return a.mCursor != b.mCursor; }

   private:
    friend class SampleRange;
    explicit Iterator(std::shared_ptr<detail::SampleCursor> cursor) : mCursor(std::move(cursor)) { Advance(); }
    void Advance() {
      if (!mCursor->Next()) {
        mCursor.reset();
      }
    }

    std::shared_ptr<detail::SampleCursor> mCursor;  ///< null at the end
  };

  Iterator begin() const {
    return mSpec.kind == detail::RangeSpec::eKind::kEmpty
               ? Iterator()
               : Iterator(std::make_shared<detail::SampleCursor>(mWindows, mSpec));
  }
  Iterator end() const { return Iterator(); }

  /// All samples of the range at once, in memory that grows with it.
  std::vector<Sample> collect() const {
    std::vector<Sample> samples;
    for (Sample const& sample : *this) {
      samples.push_back(sample);
    }
    return samples;
  }

 private:
  friend class Samples;
  SampleRange(std::shared_ptr<detail::SampleWindows const> windows, detail::RangeSpec const& spec)
      : mWindows(std::move(windows)), mSpec(spec) {}

  std::shared_ptr<detail::SampleWindows const> mWindows;
  detail::RangeSpec mSpec;
};

/// One set of samples. Cheap to copy; keeps its file open.
///
/// Times are seconds from the file's first sample; a time before it or behind the set is no error. A set
/// or a file without samples gives empty ranges. Two samples may have one time: all of them are told, in
/// the order of the file.
class Samples {
 public:
  /// Every sample.
  SampleRange all() const { return Range(detail::RangeSpec::eKind::kAll, Time(), Time()); }

  /// The samples with start <= time <= end. Empty when there are none, and when `start` is later.
  SampleRange within(Time start, Time end) const {
    return Range(start <= end ? detail::RangeSpec::eKind::kWithin : detail::RangeSpec::eKind::kEmpty, start, end);
  }

  /// What is needed to know the value at every time from `start` to `end`: `within`, and before it the
  /// last sample before `start` when none is at `start`. This is the library's own range query with its
  /// own rules: times are cut to the ticks of the file, from before the set it begins with the first
  /// sample, and of several samples at `end` it gives only the first. Empty when `start` is later.
  SampleRange covering(Time start, Time end) const {
    return Range(start <= end ? detail::RangeSpec::eKind::kCovering : detail::RangeSpec::eKind::kEmpty, start, end);
  }

  /// What `within(earlier, later)` gives, last sample first. Empty when `later` is the earlier one.
  SampleRange reversed(Time later, Time earlier) const {
    return Range(earlier <= later ? detail::RangeSpec::eKind::kReversed : detail::RangeSpec::eKind::kEmpty, earlier,
                 later);
  }

  /// The samples around a time: with one at that time, it and its two neighbours; otherwise the two
  /// around it. At or beyond an end of the set: what there is. The time is cut to the ticks of the file.
  std::vector<Sample> adjacent(Time time) const {
    return mWindows->IsEmpty() ? std::vector<Sample>() : mWindows->Adjacent(time);
  }

  /// What the outline tells about the set.
  DynamicData const& data() const { return *mData; }

 private:
  friend class File;
  Samples(std::shared_ptr<detail::OpenFile const> file, std::shared_ptr<DynamicData const> data, std::uint64_t window)
      : mData(std::move(data)), mWindows(std::make_shared<detail::SampleWindows>(std::move(file), *mData, window)) {}

  SampleRange Range(detail::RangeSpec::eKind kind, Time start, Time end) const {
    detail::RangeSpec spec{mWindows->IsEmpty() ? detail::RangeSpec::eKind::kEmpty : kind, start, end};
    if (spec.kind == detail::RangeSpec::eKind::kWithin || spec.kind == detail::RangeSpec::eKind::kReversed) {
      Extent const& extent = mWindows->GetExtent();
      if (end < Time{0, 1} || start > extent.end) {
        spec.kind = detail::RangeSpec::eKind::kEmpty;
      }
    }
    return SampleRange(mWindows, spec);
  }

  std::shared_ptr<DynamicData const> mData;
  std::shared_ptr<detail::SampleWindows const> mWindows;
};

}  // namespace senmark
