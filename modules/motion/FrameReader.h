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
  FrameReader(Source& source, std::size_t channels) : mSource(source), mValues(channels) {}

  /// False behind the last frame. Errors: `Failure` with a place for what is no number, and for numbers that are not
  /// whole frames.
  bool next();

  /// Of the frame that `next` read last; NaN and infinity are among them if the file has them.
  std::vector<double> const& values() const { return mValues; }
  /// Bytes of the file before it.
  std::int64_t offset() const { return mFrameOffset; }

 private:
  bool FindNumber();
  bool HasBytes();
  void EndLine();
  void ReadNumber();
  kit::Failure FailureHere(char const* message) const;

  Source& mSource;
  std::vector<double> mValues;
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
