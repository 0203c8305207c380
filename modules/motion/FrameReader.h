/// The numbers of a motion, frame by frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Source.h"

namespace senmark_motion {

/// Reads what stands behind the header. A frame has the numbers of one line, or of several; a line may hold several
/// whole frames. So a number too many or too few is found where it is missing, and does not shift what follows. Empty
/// lines are left out, and lines that begin with `#` or `//`.
class FrameReader {
 public:
  /// channels: numbers of a frame; without any there must be no number in the file.
  FrameReader(Source& source, std::size_t channels) : mSource(source), mChannels(channels) {}

  /// Appends the numbers of a frame to `values`; NaN and infinity are among them if the file has them. False behind the
  /// last frame. Errors: `Failure` with a place for what is no number, for one of 1e16 or more, which no data file can
  /// hold, and for numbers that are not whole frames.
  bool next(std::vector<double>& values);

  /// Bytes of the file before the frame that `next` read last.
  std::int64_t offset() const { return mFrameOffset; }

 private:
  bool FindNumber();
  bool HasBytes();
  void EndLine();
  double ReadNumber();
  void ReadShortNumbers(double* frame);
  void BeginFrame();
  std::int64_t Here() const { return mSource.offset() + (mNext - mStart); }

  Source& mSource;
  std::size_t mChannels;
  std::size_t mCount = 0;  ///< numbers of the frame that were read
  std::int64_t mFrameOffset = 0;
  char const* mNext = nullptr;  ///< in what the source gave
  char const* mEnd = nullptr;
  char const* mStart = nullptr;
  bool mIsInComment = false;
  bool mHasFrameOnLine = false;  ///< one ended on this line
  bool mIsBroken = false;        ///< the frame goes on from a line before
  bool mMustEndLine = false;     ///< it did, and has ended
};

}  // namespace senmark_motion
