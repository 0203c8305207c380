#include "SK_SampleSectionCopy.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "SK_Error.h"

namespace SK_NAMESPACE_INT {

namespace {

/// Small enough to stay in the processor's cache until the sink takes it.
constexpr std::size_t kPieceSize = std::size_t{256} * 1024;
/// The least that is filtered at once, so that a piece that is almost full takes no series of tiny steps.
constexpr std::size_t kLeastStep = std::size_t{16} * 1024;
/// More brackets than a file can close.
constexpr std::uint64_t kNeverCloses = std::uint64_t{1} << 62;

/// Filtered bytes on their way to the sink, which gets them in pieces of one size, so that they fill whole
/// pages of a file.
class PieceWriter {
 public:
  PieceWriter(SK_FilterFunction filter, SK_SampleSectionCopy::Sink const& sink)
      : mFilter(filter), mSink(sink), mBytes(new char[kPieceSize + kLeastStep + kFilterSlack]) {}

  /// Gives `end`, or the bracket at which the depth of `state` reaches 0.
  char const* Filter(char const* p, char const* end, SK_FilterState& state) {
    while (p < end) {
      std::size_t const step = std::max(kPieceSize - mUsed, kLeastStep);
      std::size_t const size = std::min(step, static_cast<std::size_t>(end - p));
      SK_FilterResult const filtered = mFilter(p, p + size, mBytes.get() + mUsed, state);
      p = filtered.in;
      mUsed = static_cast<std::size_t>(filtered.out - mBytes.get());
      if (state.depth == 0) {
        break;
      }
      if (mUsed >= kPieceSize) {
        Write(kPieceSize, false);
      }
    }
    return p;
  }

  void Finish() { Write(mUsed, true); }

 private:
  void Write(std::size_t size, bool isLast) {
    if (!mSink(mBytes.get(), size, isLast)) {
      ThrowError({ns_sensor::kInternalFailure, SK_Message::kFailureWritingTempFile, -1, -1});
    }
    mUsed -= size;
    std::memmove(mBytes.get(), mBytes.get() + size, mUsed);
  }

  SK_FilterFunction mFilter;
  SK_SampleSectionCopy::Sink const& mSink;
  std::unique_ptr<char[]> mBytes;  // not cleared: what is not written is never touched
  std::size_t mUsed = 0;
};

}  // namespace

SK_SampleSectionCopy::SK_SampleSectionCopy(SK_FilterFunction filter, std::uint64_t chunkLimit)
    : mFilter(filter), mChunkLimit(chunkLimit) {}

char const* SK_SampleSectionCopy::Copy(char const* begin, char const* end, Sink const& sink) {
  PieceWriter writer(mFilter, sink);
  SK_FilterState state;
  state.insideString = mInsideString;
  char const* p = begin;
  for (bool isDone = false; !isDone;) {
    std::uint64_t const remaining = static_cast<std::uint64_t>(end - p);
    isDone = remaining < mChunkLimit;
    char const* const chunkEnd = p + std::min(remaining, mChunkLimit);
    if (state.depth == 1 && p < chunkEnd && *p == ']') {
      state.depth = kNeverCloses;
      isDone = true;
    }
    p = writer.Filter(p, chunkEnd, state);
    if (state.depth == 0) {
      ++p;
      isDone = true;
    }
  }
  writer.Finish();
  mInsideString = state.insideString;
  return p;
}

}  // namespace SK_NAMESPACE_INT
