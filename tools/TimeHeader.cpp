#include "TimeHeader.h"

#include <charconv>
#include <utility>
#include <vector>

namespace senmark_tool {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;
/// Longer texts are no times, and no keys that matter here.
constexpr std::size_t kLongestText = 4096;

/// One byte after the other, with one byte to look ahead.
class Bytes {
 public:
  explicit Bytes(ReadBytes const& read) : mRead(read), mChunk(kChunk) {}

  /// -1 at the end.
  int Peek() {
    if (mPlace == mCount) {
      mCount = mRead(mChunk.data(), mChunk.size());
      mPlace = 0;
    }
    return mCount == 0 ? -1 : static_cast<unsigned char>(mChunk[mPlace]);
  }

  int Take() {
    int const byte = Peek();
    if (byte >= 0) {
      ++mPlace;
    }
    return byte;
  }

  void SkipSpace() {
    while (Peek() == ' ' || Peek() == '\n' || Peek() == '\t' || Peek() == '\r') {
      Take();
    }
  }

  /// Steps over white space and the byte, if it is the next one.
  bool TakeIf(char wanted) {
    SkipSpace();
    if (Peek() != wanted) {
      return false;
    }
    Take();
    return true;
  }

 private:
  ReadBytes const& mRead;
  std::vector<char> mChunk;
  std::size_t mPlace = 0;
  std::size_t mCount = 0;
};

class HeaderReader {
 public:
  explicit HeaderReader(ReadBytes const& read) : mBytes(read) {}

  TimeHeader Read() {
    ReadObject([this](std::string const& key) { return ReadMember(key); });
    return std::move(mHeader);
  }

 private:
  /// Reads the members of an object. `member` reads the value of one key; false from it ends the reading
  /// of everything, as does a text that is no object.
  template <class Member>
  bool ReadObject(Member&& member) {
    if (!mBytes.TakeIf('{')) {
      return false;
    }
    if (mBytes.TakeIf('}')) {
      return true;
    }
    do {
      std::string key;
      if (!ReadString(key) || !mBytes.TakeIf(':') || !member(key)) {
        return false;
      }
    } while (mBytes.TakeIf(','));
    return mBytes.TakeIf('}');
  }

  bool ReadMember(std::string const& key) {
    bool goOn = false;
    if (key == "dynamicDataInfo") {
      goOn = ReadObject([this](std::string const& inner) { return ReadMember(inner); });
    } else if (key == "useTimecodeB") {
      bool flag = false;
      goOn = ReadFlag(flag);
      mHeader.usesTimecode = flag;
    } else if (key == "timecodeInfo") {
      goOn = ReadTimecodeInfo();
    } else if (key == "utcInfo") {
      goOn = ReadUtcInfo();
    } else if (key == "dataDynamicSamples") {
      goOn = ReadSets();
    } else {
      goOn = SkipValue();
    }
    return goOn && !IsComplete();
  }

  bool IsComplete() const {
    if (!mHeader.usesTimecode || mHeader.firstTime.empty()) {
      return false;
    }
    return *mHeader.usesTimecode ? mHeader.hasTimecodeInfo : mHeader.hasUtcInfo;
  }

  bool ReadTimecodeInfo() {
    mHeader.hasTimecodeInfo = true;
    return ReadObject([this](std::string const& key) {
      if (key == "dropFrame") {
        return ReadFlag(mHeader.dropsFrames);
      }
      if (key != "frameRate") {
        return SkipValue();
      }
      return ReadObject([this](std::string const& inner) {
        return inner == "value"   ? ReadNumber(mHeader.rateValue)
               : inner == "scale" ? ReadNumber(mHeader.rateScale)
                                  : SkipValue();
      });
    });
  }

  bool ReadUtcInfo() {
    mHeader.hasUtcInfo = true;
    return ReadObject([this](std::string const& key) {
      return key == "precisionLength" ? ReadNumber(mHeader.precisionLength)
             : key == "isGMT"         ? ReadFlag(mHeader.isGmt)
                                      : SkipValue();
    });
  }

  /// The sets up to the first sample; what is behind it is stepped over, in case more is to be learned.
  bool ReadSets() {
    if (!mBytes.TakeIf('[')) {
      return false;
    }
    do {
      bool const goOn = ReadObject([this](std::string const& key) {
        if (key == "sampleSetID" && mHeader.firstTime.empty()) {
          return ReadString(mHeader.firstSetId);
        }
        return key == "samples" && mHeader.firstTime.empty() ? ReadFirstSample() : SkipValue();
      });
      if (!goOn) {
        return false;
      }
    } while (mBytes.TakeIf(','));
    return mBytes.TakeIf(']');
  }

  bool ReadFirstSample() {
    if (!mBytes.TakeIf('[')) {
      return false;
    }
    if (mBytes.TakeIf(']')) {
      return true;
    }
    bool const goOn = ReadObject(
        [this](std::string const& key) { return key == "time" ? ReadString(mHeader.firstTime) : SkipValue(); });
    if (!goOn || IsComplete()) {
      return false;
    }
    return SkipRest(1);
  }

  bool ReadFlag(bool& flag) {
    mBytes.SkipSpace();
    flag = mBytes.Peek() == 't';
    return SkipValue();
  }

  bool ReadNumber(double& number) {
    mBytes.SkipSpace();
    std::string text;
    while (mBytes.Peek() > ' ' && mBytes.Peek() != ',' && mBytes.Peek() != '}' && text.size() < kLongestText) {
      text += static_cast<char>(mBytes.Take());
    }
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
  }

  /// Escape sequences stay as they are: no text that matters here has any.
  bool ReadString(std::string& text) {
    text.clear();
    if (!mBytes.TakeIf('"')) {
      return false;
    }
    for (int byte = mBytes.Take(); byte != '"'; byte = mBytes.Take()) {
      if (byte < 0) {
        return false;
      }
      Keep(text, byte);
      if (byte == '\\') {
        Keep(text, mBytes.Take());
      }
    }
    return true;
  }

  static void Keep(std::string& text, int byte) {
    if (byte >= 0 && text.size() < kLongestText) {
      text += static_cast<char>(byte);
    }
  }

  /// Steps over one value of any kind.
  bool SkipValue() {
    mBytes.SkipSpace();
    int const first = mBytes.Peek();
    if (first == '"') {
      std::string text;
      return ReadString(text);
    }
    if (first == '{' || first == '[') {
      mBytes.Take();
      return SkipRest(1);
    }
    while (mBytes.Peek() > ' ' && mBytes.Peek() != ',' && mBytes.Peek() != '}' && mBytes.Peek() != ']') {
      mBytes.Take();
    }
    return mBytes.Peek() >= 0;
  }

  /// Steps over what is left of `depth` opened objects and arrays.
  bool SkipRest(std::size_t depth) {
    std::string text;
    while (depth != 0) {
      int const byte = mBytes.Peek();
      if (byte < 0) {
        return false;
      }
      if (byte == '"') {
        if (!ReadString(text)) {
          return false;
        }
        continue;
      }
      depth += byte == '{' || byte == '[' ? 1u : 0u;
      depth -= byte == '}' || byte == ']' ? 1u : 0u;
      mBytes.Take();
    }
    return true;
  }

  Bytes mBytes;
  TimeHeader mHeader;
};

}  // namespace

TimeHeader ReadTimeHeader(ReadBytes const& read) {
  return HeaderReader(read).Read();
}

}  // namespace senmark_tool
