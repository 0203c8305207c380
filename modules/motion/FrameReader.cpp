#include "FrameReader.h"

#include <cmath>
#include <optional>

#include "MotionNumber.h"
#include "senmark/module/Number.h"

namespace senmark_motion {

bool FrameReader::next(std::vector<double>& values) {
  mCount = 0;
  mIsBroken = false;
  do {
    if (!FindNumber()) {
      if (mCount != 0) {
        throw mSource.failure(
            "the last frame has " + std::to_string(mCount) + " of " + std::to_string(mChannels) + " numbers",
            mFrameOffset);
      }
      return false;
    }
    if (mCount == 0) {
      BeginFrame();
      values.resize(values.size() + mChannels);
    }
    double* const frame = values.data() + (values.size() - mChannels);
    frame[mCount++] = ReadNumber();
    ReadShortNumbers(frame);
  } while (mCount != mChannels);
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
  if (mCount != 0 && mCount != mChannels) {
    if (mHasFrameOnLine) {
      throw mSource.failure("a line has more numbers than its frames: the last one has " + std::to_string(mCount) +
                                " of " + std::to_string(mChannels),
                            mFrameOffset);
    }
    mIsBroken = true;
  }
  mHasFrameOnLine = false;
  mMustEndLine = false;
  mIsInComment = false;
}

void FrameReader::BeginFrame() {
  if (mMustEndLine) {
    throw mSource.failure(
        "the frame that begins here has not " + std::to_string(mChannels) + " numbers: it ends within a line",
        mFrameOffset);
  }
  if (mChannels == 0) {
    throw mSource.failure("a number, and the joints have no channels", Here());
  }
  mFrameOffset = Here();
}

double FrameReader::ReadNumber() {
  double value = 0;
  char const* const start = mNext;
  if (!ReadPlainNumber(mNext, value)) {
    while (mNext != mEnd && !IsSpace(*mNext)) {
      ++mNext;
    }
    std::string_view const word(start, static_cast<std::size_t>(mNext - start));
    std::optional<double> const number = ParseNumber(word);
    mNext = start;
    if (!number) {
      throw mSource.failure("a number is expected", Here());
    }
    value = *number;
    if (std::isfinite(value) && std::fabs(value) >= kit::kNumberLimit) {
      throw mSource.failure("a number of 1e16 or more", Here(), kit::Failure::kRefused);
    }
    mNext = start + word.size();
  }
  return value;
}

/// Goes on behind a number for as long as numbers of the frame stand one blank apart, which is what lines are full of.
void FrameReader::ReadShortNumbers(double* frame) {
  // In variables, as a number that is stored could be one of the object's members.
  char const* next = mNext;
  std::size_t count = mCount;
  while (count != mChannels && mEnd - next > kShortNumberReach && (*next == ' ' || *next == '\t')) {
    char const* number = next + 1;
    if (!ReadShortNumber(number, frame[count])) {
      break;
    }
    ++count;
    next = number;
  }
  mNext = next;
  mCount = count;
}

}  // namespace senmark_motion
