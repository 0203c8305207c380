#include "FrameReader.h"

#include "MotionNumber.h"

namespace senmark_motion {

bool FrameReader::next() {
  mCount = 0;
  mIsBroken = false;
  do {
    if (!FindNumber()) {
      if (mCount != 0) {
        throw mSource.failure(
            "the last frame has " + std::to_string(mCount) + " of " + std::to_string(mValues.size()) + " numbers",
            mFrameOffset);
      }
      return false;
    }
    ReadNumber();
  } while (mCount != mValues.size());
  mHasFrameOnLine = true;
  mMustEndLine = mIsBroken;
  return true;
}

/// Moves to the next number. False at the end of the file.
bool FrameReader::FindNumber() {
  for (;;) {
    if (mNext == mEnd && !HasBytes()) {
      EndLine();
      return false;
    }
    char const byte = *mNext;
    if (IsLineEnd(byte)) {
      EndLine();
      ++mNext;
    } else if (mIsInComment || IsBlank(byte)) {
      ++mNext;
    } else if (byte == '#' || (byte == '/' && mNext + 1 != mEnd && mNext[1] == '/')) {
      mIsInComment = true;
    } else {
      return true;
    }
  }
}

bool FrameReader::HasBytes() {
  mSource.consume(static_cast<std::size_t>(mNext - mStart));
  std::string_view const tokens = mSource.tokens();
  mStart = tokens.data();
  mNext = mStart;
  mEnd = mStart + tokens.size();
  return !tokens.empty();
}

void FrameReader::EndLine() {
  if (mCount != 0 && mCount != mValues.size()) {
    if (mHasFrameOnLine) {
      throw mSource.failure("a line has more numbers than its frames: the last one has " + std::to_string(mCount) +
                                " of " + std::to_string(mValues.size()),
                            mFrameOffset);
    }
    mIsBroken = true;
  }
  mHasFrameOnLine = false;
  mMustEndLine = false;
  mIsInComment = false;
}

void FrameReader::ReadNumber() {
  if (mCount == 0) {
    if (mMustEndLine) {
      throw mSource.failure(
          "the frame that begins here has not " + std::to_string(mValues.size()) + " numbers: it ends within a line",
          mFrameOffset);
    }
    if (mValues.empty()) {
      throw FailureHere("a number, and the joints have no channels");
    }
    mFrameOffset = mSource.offset() + (mNext - mStart);
  }
  double& value = mValues[mCount];
  if (!ReadPlainNumber(mNext, value)) {
    char const* end = mNext;
    while (end != mEnd && !IsSpace(*end)) {
      ++end;
    }
    std::optional<double> const number = ParseNumber(std::string_view(mNext, static_cast<std::size_t>(end - mNext)));
    if (!number) {
      throw FailureHere("a number is expected");
    }
    value = *number;
    mNext = end;
  }
  ++mCount;
}

kit::Failure FrameReader::FailureHere(char const* message) const {
  return mSource.failure(message, mSource.offset() + (mNext - mStart));
}

}  // namespace senmark_motion
