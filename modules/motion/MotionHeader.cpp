#include "MotionHeader.h"

#include <optional>

#include "MotionNumber.h"
#include "Words.h"

namespace senmark_motion {
namespace {

void SkipBlanks(std::string_view& text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
}

/// Takes a keyword of one or two words and the colon behind it from the front of a line; blanks may stand in between.
bool TakeKey(std::string_view& line, std::string_view first, std::string_view second) {
  std::string_view rest = line;
  for (std::string_view const word : {first, second}) {
    if (!IsSameWord(rest.substr(0, word.size()), word)) {
      return false;
    }
    rest = rest.substr(word.size());
    SkipBlanks(rest);
  }
  if (rest.empty() || rest.front() != ':') {
    return false;
  }
  line = rest.substr(1);
  return true;
}

std::string_view TakeWord(std::string_view& line) {
  SkipBlanks(line);
  std::size_t length = 0;
  while (length != line.size() && !IsBlank(line[length])) {
    ++length;
  }
  std::string_view const word = line.substr(0, length);
  line.remove_prefix(length);
  return word;
}

std::optional<std::uint64_t> ParseCount(std::string_view word) {
  constexpr std::size_t kMostDigits = 15;
  std::uint64_t count = 0;
  for (char const byte : word) {
    if (!detail::IsDigit(byte)) {
      return std::nullopt;
    }
    count = count * 10 + static_cast<std::uint64_t>(byte - '0');
  }
  return word.empty() || word.size() > kMostDigits ? std::nullopt : std::optional<std::uint64_t>(count);
}

class HeaderReader {
 public:
  explicit HeaderReader(Source& source) : mSource(source) {}

  MotionHeader Read() {
    while (!mHasCount || !mHasTime) {
      FindText();
      if (TakeKey(mRest, "frames", "")) {
        TakeCount();
      } else if (TakeKey(mRest, "frame", "time")) {
        TakeTime();
      } else {
        throw mSource.failure(std::string("no \"") + (mHasCount ? "Frame Time:" : "Frames:") + "\" before the motion",
                              OffsetOf(mRest));
      }
    }
    mSource.giveBack(mRest.size());
    return mHeader;
  }

 private:
  /// Goes on to what is neither blank nor a comment.
  void FindText() {
    SkipBlanks(mRest);
    while (mRest.empty() || mRest.front() == '#' || mRest.substr(0, 2) == "//") {
      if (!mSource.nextLine(mLine)) {
        throw mSource.failure("the file ends before its motion", mSource.offset());
      }
      mRest = mLine;
      SkipBlanks(mRest);
    }
  }

  void TakeCount() {
    RequireFirst(mHasCount, "Frames");
    std::string_view const word = TakeWord(mRest);
    std::optional<std::uint64_t> const count = ParseCount(word);
    if (!count) {
      throw mSource.failure("the number of frames is none", OffsetOf(word));
    }
    mHeader.frameCount = *count;
  }

  void TakeTime() {
    RequireFirst(mHasTime, "Frame Time");
    std::string_view const word = TakeWord(mRest);
    std::optional<FrameTime> const time = ParseFrameTime(word);
    if (!time) {
      throw mSource.failure("the frame time is no number", OffsetOf(word));
    }
    mHeader.frameTime = *time;
    mHeader.frameTimeOffset = OffsetOf(word);
  }

  void RequireFirst(bool& has, char const* what) const {
    if (has) {
      throw mSource.failure(std::string("a second \"") + what + "\"", OffsetOf(mRest));
    }
    has = true;
  }

  std::int64_t OffsetOf(std::string_view part) const { return mSource.lineOffset() + (part.data() - mLine.data()); }

  Source& mSource;
  MotionHeader mHeader;
  std::string_view mLine;
  std::string_view mRest;  ///< always up to the end of the line
  bool mHasCount = false;
  bool mHasTime = false;
};

}  // namespace

MotionHeader ReadMotionHeader(Source& source) {
  return HeaderReader(source).Read();
}

}  // namespace senmark_motion
