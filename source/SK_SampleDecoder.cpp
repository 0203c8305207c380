#include "SK_SampleDecoder.h"

#include <algorithm>
#include <cstring>

#include "SK_EightBytes.h"

namespace SK_NAMESPACE_INT {
namespace {

// A frame begins with 9 bytes before the first text or value. The second key takes 8 bytes, and 2 more that
// belong to what stands before it.
constexpr std::string_view kTimeFirstHead = R"({"time":")";
constexpr std::string_view kTimeFirstKey = R"("value":)";
constexpr std::string_view kValueFirstHead = R"({"value":)";
constexpr std::string_view kValueFirstKey = R"("time":")";
constexpr std::uint64_t kHeadSize = 9;
constexpr std::uint64_t kKeySize = 8;
constexpr std::uint64_t kFrameSize = 20;      // a sample without its time text and value
constexpr std::uint64_t kFirstKeyOffset = 2;  // behind brace and quote

// Around the length and the text of a padded string: a number in version 1, a string in version 2.
struct PaddedPieces {
  std::string_view before;
  std::string_view between;
  std::string_view behind;
};
constexpr PaddedPieces kPaddedVersion1 = {R"({"length":)", R"(,"str":")", R"("})"};
constexpr PaddedPieces kPaddedVersion2 = {R"({"length":")", R"(","str":")", R"("})"};

constexpr std::uint64_t kPart = 64;  // samples
constexpr std::uint64_t kChunk = 8;
constexpr std::uint64_t kMostLengthDigits = 9;  // they fit 32 bits

std::uint16_t TwoBytes(char const* bytes) {
  return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[0]) | static_cast<unsigned char>(bytes[1]) << 8U);
}

std::uint16_t TwoBytes(char first, char second) {
  char const bytes[] = {first, second};
  return TwoBytes(bytes);
}

/// Whether a JSON string of these bytes means just them.
inline bool IsPlain(char const* text, std::uint64_t size) {
  std::uint64_t special = 0;
  std::uint64_t done = 0;
  for (; size - done >= kChunk; done += kChunk) {
    special |= AnySpecial(LoadEight(text + done));
  }
  if (size >= kChunk) {
    return (special | AnySpecial(LoadEight(text + size - kChunk))) == 0;
  }
  char rest[kChunk] = {'0', '0', '0', '0', '0', '0', '0', '0'};
  std::memcpy(rest, text, size);
  return AnySpecial(LoadEight(rest)) == 0;
}

bool Matches(char const* bytes, std::string_view literal) {
  return std::memcmp(bytes, literal.data(), literal.size()) == 0;
}

/// Reads the length of a padded string. False for anything but a few digits.
bool ReadLength(char const* digits, std::uint64_t count, std::uint64_t& length) {
  length = 0;
  for (std::uint64_t i = 0; i < count; ++i) {
    if (digits[i] < '0' || digits[i] > '9') {
      return false;
    }
    length = length * 10 + static_cast<std::uint64_t>(digits[i] - '0');
  }
  return count != 0;
}

}  // namespace

SK_SampleDecoder::SK_SampleDecoder(SK_DynamicSampleInfo const& info, SK_RelativeTimeReader const& timeReader,
                                   std::uint16_t timeLength, eTDJSONVersion version)
    : mInfo(info), mTimeReader(timeReader), mTimeLength(timeLength), mIsVersion2(version == kTdjsonVersion2) {
  if (info.mSampleSize > kFrameSize + mTimeLength) {
    mValueWidth = info.mSampleSize - kFrameSize - mTimeLength;
  }
}

std::uint64_t SK_SampleDecoder::Decode(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  if (most == 0 || !WidthsFit()) {
    return 0;
  }
  LearnFrame(first);
  if (mInfo.mValueKind == kPaddedStringSamples) {
    return DecodeTexts(first, most, block);
  }
  if (!LearnNumber(first)) {
    return 0;
  }
  // In parts that stay in the first cache between values and times.
  std::uint64_t taken = 0;
  while (taken != most) {
    std::uint64_t const part = std::min(kPart, most - taken);
    std::uint64_t const done = DecodePart(first + taken * (mInfo.mSampleSize + 1), part, block);
    taken += done;
    if (done != part) {
      break;
    }
  }
  return taken;
}

std::uint64_t SK_SampleDecoder::DecodePart(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  switch (mNumber.DecimalChunks()) {
    case 0:
      return DecodeNumbers<0>(first, most, block);
    case 1:
      return DecodeNumbers<1>(first, most, block);
    case 2:
      return DecodeNumbers<2>(first, most, block);
    default:
      return DecodeNumbers<SK_NumberLayout::kMostDecimalChunks>(first, most, block);
  }
}

/// Whether the widths of the set's entry are those of the layout. They come from the file.
bool SK_SampleDecoder::WidthsFit() const {
  std::uint64_t const number = mInfo.mNumberLength;
  std::uint64_t const around = mIsVersion2 ? 22 : 20;
  switch (mInfo.mValueKind) {
    case kNumberStringSamples:
      return number > 2 && number == mValueWidth;
    case kNumberArraySamples:
      return number > 2 && number < mValueWidth && mInfo.mArraySize != 0 && (mValueWidth - 1) % mInfo.mArraySize == 0 &&
             (mValueWidth - 1) / mInfo.mArraySize == number + 1;
    case kPaddedStringSamples:
      return mValueWidth > around && mInfo.mMaxDigits <= kMostLengthDigits &&
             mInfo.mMaxDigits <= mValueWidth - around && mInfo.mMaxLength == mValueWidth - around - mInfo.mMaxDigits;
    default:
      return false;
  }
}

/// Takes from one sample which member comes first. Whether it really has that frame shows when it is read.
void SK_SampleDecoder::LearnFrame(char const* sample) {
  bool const valueFirst = sample[kFirstKeyOffset] == 'v';
  bool const isArray = mInfo.mValueKind == kNumberArraySamples;
  bool const isText = mInfo.mValueKind == kPaddedStringSamples;
  char const valueEnd = isArray ? ']' : (isText ? '}' : '"');
  char const timeEnd = '"';

  std::string_view const head = valueFirst ? kValueFirstHead : kTimeFirstHead;
  mFrame.head = LoadEight(head.data());
  mFrame.headEnd = head.back();
  mFrame.beforeKey = TwoBytes(valueFirst ? valueEnd : timeEnd, ',');
  mFrame.key = LoadEight(valueFirst ? kValueFirstKey.data() : kTimeFirstKey.data());
  mFrame.keyOffset = kHeadSize + (valueFirst ? mValueWidth + 1 : mTimeLength + 2);
  mFrame.tailOffset = mInfo.mSampleSize - 2;
  mFrame.timeLength = mTimeLength;
  mFrame.tail = TwoBytes(valueFirst ? timeEnd : valueEnd, '}');
  std::uint64_t const behindKey = mFrame.keyOffset + kKeySize;
  mFrame.timeOffset = valueFirst ? behindKey : kHeadSize;
  mFrame.valueOffset = valueFirst ? kHeadSize : behindKey;
}

bool SK_SampleDecoder::LearnNumber(char const* sample) {
  std::uint64_t const firstNumber = mInfo.mValueKind == kNumberArraySamples ? 2 : 1;
  return mNumber.Learn({sample + mFrame.valueOffset + firstNumber, mInfo.mNumberLength - 2});
}

inline bool SK_SampleDecoder::HasFrame(Frame const& frame, char const* sample) {
  std::uint64_t difference = (LoadEight(sample) ^ frame.head) | (LoadEight(sample + frame.keyOffset) ^ frame.key);
  difference |= static_cast<std::uint64_t>(sample[kHeadSize - 1] != frame.headEnd);
  difference |= static_cast<std::uint64_t>(TwoBytes(sample + frame.keyOffset - 2) ^ frame.beforeKey);
  difference |= static_cast<std::uint64_t>(TwoBytes(sample + frame.tailOffset) ^ frame.tail);
  return difference == 0 && IsPlain(sample + frame.timeOffset, frame.timeLength);
}

namespace {

/// The numbers of an array. The frame has shown its last byte.
template <unsigned kChunks>
inline bool ReadArray(SK_NumberLayout const& layout, std::uint64_t textLength, std::uint64_t count, char const* value,
                      double* out) {
  if (TwoBytes(value) != TwoBytes('[', '"')) {
    return false;
  }
  char const* text = value + 2;
  for (std::uint64_t left = count; left != 0; --left) {
    if (!layout.Read<kChunks>(text, *out++) || text[textLength] != '"') {
      return false;
    }
    text += textLength + 1;
    if (left != 1 && TwoBytes(text) != TwoBytes(',', '"')) {
      return false;
    }
    text += 2;
  }
  return true;
}

}  // namespace

/// Values first and times then, so that the loop over the values calls nothing.
template <unsigned kChunks>
std::uint64_t SK_SampleDecoder::DecodeNumbers(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  Frame const frame = mFrame;
  SK_NumberLayout const layout = mNumber;
  bool const isArray = mInfo.mValueKind == kNumberArraySamples;
  std::uint64_t const textLength = mInfo.mNumberLength - 2;
  std::uint64_t const count = isArray ? mInfo.mArraySize : 1;
  std::uint64_t const step = mInfo.mSampleSize + 1;
  double* const numbers = block.NextNumbers();
  std::uint64_t taken = 0;
  for (; taken != most; ++taken) {
    char const* const sample = first + taken * step;
    char const* const value = sample + frame.valueOffset;
    double* const out = numbers + taken * count;
    if (!HasFrame(frame, sample)) {
      break;
    }
    bool const isRead = isArray ? ReadArray<kChunks>(layout, textLength, count, value, out)
                                : *value == '"' && layout.Read<kChunks>(value + 1, *out);
    if (!isRead) {
      break;
    }
  }
  SK_Time* const times = block.NextTime();
  for (std::uint64_t i = 0; i != taken; ++i) {
    times[i] = mTimeReader.Read({first + i * step + frame.timeOffset, frame.timeLength});
  }
  block.Advance(taken);
  return taken;
}

bool SK_SampleDecoder::ReadText(char const* value, std::string_view& text) const {
  PaddedPieces const& pieces = mIsVersion2 ? kPaddedVersion2 : kPaddedVersion1;
  char const* const digits = value + pieces.before.size();
  char const* const between = digits + mInfo.mMaxDigits;
  char const* const bytes = between + pieces.between.size();
  std::uint64_t length = 0;
  if (!Matches(value, pieces.before) || !ReadLength(digits, mInfo.mMaxDigits, length) ||
      !Matches(between, pieces.between) || !Matches(bytes + mInfo.mMaxLength, pieces.behind)) {
    return false;
  }
  // A JSON number has no zeros in front, a text of digits may.
  if ((!mIsVersion2 && digits[0] == '0' && mInfo.mMaxDigits > 1) || length > mInfo.mMaxLength ||
      !IsPlain(bytes, mInfo.mMaxLength)) {
    return false;
  }
  text = {bytes, length};
  return true;
}

std::uint64_t SK_SampleDecoder::DecodeTexts(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  std::uint64_t const step = mInfo.mSampleSize + 1;
  std::uint64_t taken = 0;
  for (; taken != most; ++taken) {
    char const* const sample = first + taken * step;
    std::string_view text;
    if (!HasFrame(mFrame, sample) || !ReadText(sample + mFrame.valueOffset, text)) {
      break;
    }
    block.AddText(mTimeReader.Read({sample + mFrame.timeOffset, mTimeLength}), text);
  }
  return taken;
}

}  // namespace SK_NAMESPACE_INT
