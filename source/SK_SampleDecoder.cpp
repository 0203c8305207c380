#include "SK_SampleDecoder.h"

#include <algorithm>
#include <cstring>

#include "SK_Prefetch.h"

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

constexpr std::uint64_t kPart = 256;            // samples
constexpr std::uint64_t kFewSamples = 4;        // too few to prepare for
constexpr std::uint64_t kMostLengthDigits = 9;  // they fit 32 bits

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
  mRun.step = mInfo.mSampleSize + 1;
  mRun.end = first + most * mRun.step - 1;
  Prefetch(first, first + std::min(kPrefetchDistance, mRun.end - first));
  LearnFrame(first);
  if (mInfo.mValueKind == kPaddedStringSamples) {
    return DecodeTexts(first, most, block);
  }
  if (!LearnNumber(first)) {
    return 0;
  }
  return DecodeNumbers(first, most, block);
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
  SK_SampleFrame& frame = mRun.frame;
  bool const valueFirst = sample[kFirstKeyOffset] == 'v';
  bool const isArray = mInfo.mValueKind == kNumberArraySamples;
  bool const isText = mInfo.mValueKind == kPaddedStringSamples;
  char const valueEnd = isArray ? ']' : (isText ? '}' : '"');
  char const timeEnd = '"';

  std::string_view const head = valueFirst ? kValueFirstHead : kTimeFirstHead;
  frame.head = LoadEight(head.data());
  frame.headEnd = head.back();
  frame.beforeKey = TwoBytes(valueFirst ? valueEnd : timeEnd, ',');
  frame.key = LoadEight(valueFirst ? kValueFirstKey.data() : kTimeFirstKey.data());
  frame.keyOffset = kHeadSize + (valueFirst ? mValueWidth + 1 : mTimeLength + 2);
  frame.tailOffset = mInfo.mSampleSize - 2;
  frame.timeLength = mTimeLength;
  frame.tail = TwoBytes(valueFirst ? timeEnd : valueEnd, '}');
  std::uint64_t const behindKey = frame.keyOffset + kKeySize;
  frame.timeOffset = valueFirst ? behindKey : kHeadSize;
  frame.valueOffset = valueFirst ? kHeadSize : behindKey;
}

bool SK_SampleDecoder::LearnNumber(char const* sample) {
  mRun.isArray = mInfo.mValueKind == kNumberArraySamples;
  mRun.textLength = mInfo.mNumberLength - 2;
  mRun.count = mRun.isArray ? mInfo.mArraySize : 1;
  return mRun.layout.Learn({sample + mRun.frame.valueOffset + (mRun.isArray ? 2 : 1), mRun.textLength});
}

/// Values first and times then, in parts that stay in the first cache in between: so the loop over the values calls
/// nothing.
std::uint64_t SK_SampleDecoder::DecodeNumbers(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  SK_NumberDecoder const wide = most < kFewSamples ? nullptr : FindWideNumberDecoder(mRun);
  SK_NumberDecoder const decode = wide == nullptr ? DecodeNumbersByWords : wide;
  std::uint64_t taken = 0;
  while (taken != most) {
    std::uint64_t const part = std::min(kPart, most - taken);
    char const* const sample = first + taken * mRun.step;
    std::uint64_t const done = decode(mRun, sample, part, block.NextNumbers());
    SK_Time* const times = block.NextTime();
    for (std::uint64_t i = 0; i != done; ++i) {
      mTimeReader.Read({sample + i * mRun.step + mRun.frame.timeOffset, mTimeLength}, times[i]);
    }
    block.Advance(done);
    taken += done;
    if (done != part) {
      break;
    }
  }
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
      !IsPlainText(bytes, mInfo.mMaxLength)) {
    return false;
  }
  text = {bytes, length};
  return true;
}

std::uint64_t SK_SampleDecoder::DecodeTexts(char const* first, std::uint64_t most, SK_SampleBlock& block) {
  std::uint64_t taken = 0;
  for (; taken != most; ++taken) {
    char const* const sample = first + taken * mRun.step;
    PrefetchAhead(sample, static_cast<std::ptrdiff_t>(mRun.step), mRun.end);
    std::string_view text;
    if (!mRun.frame.Fits(sample) || !ReadText(sample + mRun.frame.valueOffset, text)) {
      break;
    }
    block.AddText(mTimeReader.Read({sample + mRun.frame.timeOffset, mTimeLength}), text);
  }
  return taken;
}

}  // namespace SK_NAMESPACE_INT
