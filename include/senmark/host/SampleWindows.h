/// Inside of the wrapper: how a set of samples is read in pieces.
///
/// The border has no cursor. A range query decodes all samples between two times before it sends the
/// first, so a piece has to be a short span of time. What a span holds can be counted without decoding,
/// and that is what everything here rests on: a `Position` is a time together with the number of the
/// sample that the library's search finds for it, as counted by the library. Pieces are put together by
/// these numbers, never by comparing times, so no sample is lost or told twice: not when many samples
/// have one time, and not when a time could not be told exactly.
///
/// What a search finds for a time t: the first sample at t; else the last one before t; else sample 0.
/// So inside a run of equal times only the first sample can be found, and from behind it the last one: a
/// run longer than a piece comes as one piece.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "senmark/host/Library.h"

namespace senmark::detail {

/// One opening of a file. Shared by all that came from it.
struct OpenFile {
  OpenFile(std::shared_ptr<Session> owner, std::string const& path, std::string const& outputPath)
      : session(std::move(owner)) {
    Receiver receiver;
    {
      BorderLock const lock(session->shared());
      session->manager().openFile(&handler, path.c_str(), outputPath.c_str(), receiver.Client());
    }
    if (receiver.error || receiver.thrown) {
      Close();  // an error of the copy to `outputPath` leaves the file open
    }
    receiver.Raise();
  }
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() { Close(); }

  void Close() noexcept {
    if (handler != nullptr) {
      Receiver receiver;  // nothing can be done about an error here
      BorderLock const lock(session->shared());
      session->manager().closeFile(&handler, receiver.Client());
      handler = nullptr;
    }
  }

  std::shared_ptr<Session> session;
  ns_sensor::ISensorFileHandler* handler = nullptr;
};

/// A time and the sample that the library finds for it.
struct Position {
  Time time;
  std::uint64_t index = 0;
};

/// One set of samples of one file. Does not change; several threads may use it at once.
class SampleWindows {
 public:
  /// data  of the node that the set belongs to; window: samples of a piece, more or less, not 0.
  SampleWindows(std::shared_ptr<OpenFile const> file, DynamicData const& data, std::uint64_t window)
      : mFile(std::move(file)),
        mId(data.sampleSetId),
        mCount(data.extent ? data.sampleCount : 0),
        mWindow(std::max<std::uint64_t>(window, 1)) {
    if (data.extent) {
      mExtent = *data.extent;
    }
  }

  bool IsEmpty() const { return mCount == 0; }
  std::uint64_t LastIndex() const { return mCount - 1; }
  Extent const& GetExtent() const { return mExtent; }

  /// Asks the library which sample it finds for `time`, which must not be negative.
  Position At(Time time) const {
    Receiver receiver;
    ns_sensor::SK_DynamicSampleInfo info;
    mFile->handler->getSampleInfo(mId.data(), mId.size(), 0, 1, time.value, time.scale, &info, 0, receiver.Client(),
                                  receiver.Client());
    receiver.Raise();
    return {time, info.sampleCount == 0 ? 0 : info.sampleCount - 1};
  }

  /// The first sample of the set.
  Position First() const { return {Time{0, 1}, 0}; }

  /// The last sample of the set, or the last one that can be reached. The time is as little behind the
  /// end of the set as need be: time codes begin anew after 24 hours, so a time far behind would not do.
  Position Last() const {
    double const end = mExtent.end.seconds();
    Position last = At(mExtent.end);
    for (std::uint64_t before = ~std::uint64_t{0}; last.index != LastIndex() && last.index != before;) {
      before = last.index;
      last = FirstBeyond(end, end + kFarthest, last);
    }
    return last;
  }

  /// As `At`, for any time: before the set it finds the first sample, behind it the last one.
  Position Clamped(Time time) const {
    if (time <= Time{0, 1}) {
      return First();
    }
    Position const found = At(time);
    // A time code of more than 24 hours begins anew, so that a late time may find an early sample.
    bool const isMistaken = time > mExtent.end && found.index < At(mExtent.end).index;
    return isMistaken ? Last() : found;
  }

  /// A position behind `position`, with a time as little behind `time` as need be. The same position when
  /// there is no sample behind it, or none that can be reached.
  Position Beyond(Time time, Position position) const {
    if (position.index >= LastIndex()) {
      return position;
    }
    double const from = time.seconds();
    double const end = mExtent.end.seconds();
    Position found = FirstBeyond(from, end, position);
    if (found.index == position.index) {
      found = Later(position, At(mExtent.end));
    }
    if (found.index == position.index) {
      found = FirstBeyond(end, end + kFarthest, position);
    }
    return found;
  }

  /// A position before `position`, at least the first one of the set.
  Position Before(Position position) const {
    double const from = position.time.seconds();
    for (double step = kFinest; step < from; step *= 4) {
      Position const next = At(GridTime(from - step, kFinest));
      if (next.index < position.index) {
        return next;
      }
    }
    return First();
  }

  /// End of the piece that begins at `from`. `next` is the first sample that is wanted; the result has
  /// it or a later one. Needs from.index <= next <= limit.index.
  Position PieceEnd(Position from, std::uint64_t next, Position limit) const {
    if (limit.index - from.index <= mWindow) {
      return limit;
    }
    std::uint64_t const least = std::max(next, from.index + mWindow / 2);
    Bracket const found = Narrow(from, limit, least, std::max(least, from.index + mWindow));
    return found.low.index >= next && found.low.index > from.index ? found.low : found.high;
  }

  /// Begin of the piece that ends at `to`. `next` is the last sample that is wanted; the result has it or
  /// an earlier one. Needs next <= to.index.
  Position PieceBegin(Position to, std::uint64_t next) const {
    if (to.index <= mWindow) {
      return First();
    }
    std::uint64_t const most = std::min(next, to.index - mWindow / 2);
    Bracket const found = Narrow(First(), to, std::min(most, to.index - mWindow), most);
    return found.high.index <= next && found.high.index < to.index ? found.high : found.low;
  }

  /// Decodes the samples from.index to to.index and keeps those from `first` on.
  ///
  /// Result: how many elements at the begin of `buffer` were filled.
  std::size_t Fetch(Position from, Position to, std::uint64_t first, std::vector<Sample>& buffer) const {
    SampleSink sink;
    sink.expected = to.index - from.index + 1;
    sink.skip = first - from.index;
    sink.buffer = &buffer;
    Receiver receiver;
    receiver.samples = &sink;
    mFile->handler->getDynamicSamples(mId.data(), mId.size(), from.time.value, from.time.scale, to.time.value,
                                      to.time.scale, receiver.Client(), receiver.Client());
    receiver.Raise();
    if (!sink.countIsRight) {
      throw Error(ns_sensor::kInternalFailure, "a range of sample set \"" + mId + "\" has not what was counted");
    }
    return sink.used;
  }

  /// The samples around a time.
  std::vector<Sample> Adjacent(Time time) const {
    if (time > mExtent.end) {
      Position const last = Last();
      return Cut(Fetched(last, last), 1);
    }
    std::vector<Sample> samples;
    SampleSink sink;
    sink.expected = AdjacentCount(time);
    if (sink.expected == 0) {
      // The very time of the only sample, or of a set in which all have one time.
      return Cut(Fetched(First(), Last()), 2);
    }
    sink.buffer = &samples;
    Receiver receiver;
    receiver.samples = &sink;
    mFile->handler->getAdjacentSamples(mId.data(), mId.size(), time.value, time.scale, receiver.Client(),
                                       receiver.Client());
    receiver.Raise();
    return samples;
  }

  /// Throws unless `position` is the last sample: the rest cannot be asked for by time.
  void RequireEnd(Position position) const {
    if (position.index != LastIndex()) {
      throw Error(ns_sensor::kInternalFailure, "sample set \"" + mId + "\" has " + std::to_string(mCount) +
                                                   " samples, of which only " + std::to_string(position.index + 1) +
                                                   " can be reached by time");
    }
  }

 private:
  /// Two positions next to each other, as far as can be told.
  struct Bracket {
    Position low;
    Position high;
  };

  /// Smallest step between two times that are asked for, in seconds.
  static constexpr double kFinest = 1.0 / (1 << 20);
  /// How far behind the end of a set a time is tried, in seconds.
  static constexpr double kFarthest = 4096;
  static constexpr int kMostSteps = 96;

  /// A time near `seconds`, which is not negative: off by `tolerance` at most, unless the width of a time
  /// forbids it. The scale is the smallest power of two that will do, so that the library, which counts
  /// the ticks of a fraction in 32 bits, loses none.
  static Time GridTime(double seconds, double tolerance) {
    double scale = 1;
    double ticks = std::nearbyint(seconds);
    while (std::fabs(ticks / scale - seconds) > tolerance && ticks < double{1 << 29} && scale < 1 / kFinest) {
      scale *= 2;
      ticks = std::nearbyint(seconds * scale);
    }
    Time time;
    time.value = static_cast<std::int32_t>(std::min(ticks, 2147483647.0));
    time.scale = static_cast<std::uint32_t>(scale);
    return time;
  }

  /// Looks between `low` and `high` for a position from `least` to `most`. If there is one, both ends of
  /// the result are it; else it lies between them, but cannot be asked for.
  /// Needs low.index < least or low.index == least, and high.index > most.
  Bracket Narrow(Position low, Position high, std::uint64_t least, std::uint64_t most) const {
    double coarseness = 0.25;  // of a time, as a share of the room around it
    for (int step = 0; step != kMostSteps; ++step) {
      double const from = low.time.seconds();
      double const to = high.time.seconds();
      double share = 0.5;  // by turns where the wanted sample would be in a regular set, and the middle
      if (step % 2 == 0) {
        double const wanted =
            static_cast<double>(least - std::min(low.index, least)) + static_cast<double>(most - least) / 2;
        share = std::clamp(wanted / static_cast<double>(high.index - low.index), 0.001, 0.999);
      }
      double const tolerance = (to - from) * std::min(share, 1 - share) * coarseness;
      Time const time = GridTime(from + (to - from) * share, tolerance);
      if (!(low.time < time && time < high.time)) {
        if (step % 2 == 0) {
          continue;
        }
        break;
      }
      Position const found = At(time);
      if (found.index >= least && found.index <= most) {
        return {found, found};
      }
      if (found.index < low.index || found.index > high.index) {
        coarseness *= 4;  // taken for another time: one with a smaller scale may not be
        continue;
      }
      (found.index < least ? low : high) = found;
    }
    return {low, high};
  }

  static Position Later(Position a, Position b) { return b.index > a.index ? b : a; }

  /// Tries times behind `from` and before `to`, at first close to `from`, then in ever larger steps.
  Position FirstBeyond(double from, double to, Position position) const {
    Position found = position;
    for (double step = kFinest; found.index == position.index && from + step < to; step *= 4) {
      found = Later(position, At(GridTime(from + step, kFinest)));
    }
    return found;
  }

  std::vector<Sample> Fetched(Position from, Position to) const {
    std::vector<Sample> samples;
    Fetch(from, to, from.index, samples);
    return samples;
  }

  static std::vector<Sample> Cut(std::vector<Sample> samples, std::size_t most) {
    if (samples.size() > most) {
      samples.resize(most);
    }
    return samples;
  }

  std::uint64_t AdjacentCount(Time time) const {
    Receiver receiver;
    ns_sensor::SK_DynamicSampleInfo info;
    mFile->handler->getSampleInfo(mId.data(), mId.size(), time.value, time.scale, time.value, time.scale, &info, 1,
                                  receiver.Client(), receiver.Client());
    receiver.Raise();
    return info.sampleCount;
  }

  std::shared_ptr<OpenFile const> mFile;
  std::string mId;
  std::uint64_t mCount;
  std::uint64_t mWindow;
  Extent mExtent;
};

}  // namespace senmark::detail
