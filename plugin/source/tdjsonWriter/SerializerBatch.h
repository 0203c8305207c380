/// Samples that go from where they wait to their text many at a time: short ones, behind the first one of their set.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "SK_DumpSamplesUtils.h"
#include "SK_TimeWindowReader.h"
#include "SerializerBuffer.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

/// What stands in front of the value in a sample behind the first one of its set. With the base of the times in it, so
/// that for each sample it is copied as one piece, and the window over the base.
class SampleFrame {
 public:
  /// opening: of the value, all that its samples have in common. At most `kLongestOpening` bytes.
  explicit SampleFrame(std::string_view opening) : mOpening(opening) {}

  void SetBase(SK_TimeWindowReader const& times) {
    times.CopyBaseTo(CopyLiteral(CopyLiteral(mFront, ","), kBeforeTime));
    char* const behindTime = mFront + kTimeAt + times.Length();
    char* const value = CopyLiteral(behindTime, kBeforeValue);
    mSize = static_cast<std::size_t>(std::copy(mOpening.begin(), mOpening.end(), value) - mFront);
  }

  /// The frame with a time's window as it is stored, to where there is room for `kRoom` bytes, all of which may change.
  /// Gives the end.
  char* Put(char* out, char const* window) const {
    std::memcpy(out, mFront, sizeof(mFront));
    SK_TimeWindowReader::CopyWindowTo(out + kTimeAt, window);
    return out + mSize;
  }

  static constexpr std::size_t kLongestOpening = 11;
  static constexpr std::size_t kRoom = 1 + TimeRoom(SK_TimeWindow::kLongest) + kLongestOpening;

 private:
  static constexpr std::size_t kTimeAt = 1 + sizeof(kBeforeTime) - 1;

  std::string_view mOpening;
  char mFront[kRoom] = {};
  std::size_t mSize = 0;
};

/// Appends samples of `dump`, a comma in front of each: at most `most`, within `room` bytes, for which the buffer has
/// the memory. Ends in front of one that has no short record or is left; the caller reads that by itself. Gives their
/// number.
///
/// opening  of the value, see `SampleFrame`.
/// sizeOf   gives the bytes that a value and all behind it may change at most, 0 for one that is left.
/// put      stores a value and all behind it, and gives the end; null for one that is left.
template <typename SizeOf, typename PutValue>
std::uint64_t AppendShortSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, std::string_view opening,
                                 std::size_t room, std::uint64_t most, SizeOf&& sizeOf, PutValue&& put) {
  SampleFrame frame(opening);
  std::size_t const sizeBefore = out.Size();
  char* const start = out.Grow(room);
  char const* const end = start + room;
  char* p = start;
  auto const useBase = [&](SK_TimeWindowReader const& times) { frame.SetBase(times); };
  auto const use = [&](char const* window, std::string_view value) {
    std::size_t const size = sizeOf(value);
    if (size == 0 || static_cast<std::size_t>(end - p) < SampleFrame::kRoom + size) {
      return false;
    }
    char* const behind = put(frame.Put(p, window), value);
    p = behind != nullptr ? behind : p;
    return behind != nullptr;
  };
  std::uint64_t const count = dump.ReadShortSamples(most, useBase, use);
  out.Truncate(sizeBefore + static_cast<std::size_t>(p - start));
  return count;
}

}  // namespace SK_PLUGIN
