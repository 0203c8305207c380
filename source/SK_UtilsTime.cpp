#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "SK_DynamicSampleInfo.h"
#include "SK_Error.h"
#include "SK_IntegerOf.h"
#include "SK_TimeText.h"
#include "SK_TimeUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

void CheckTexts(char const* left, char const* right, char const* operation) {
  if (left != nullptr && right != nullptr) return;
  ThrowError({ns_sensor::kInternalFailure, SK_Message::kInvalidInputTime, -1, -1}, std::string(operation));
}

int OrderOf(std::uint64_t left, std::uint64_t right) {
  return static_cast<int>(left > right) - static_cast<int>(left < right);
}

/// 8 bytes as a number that orders like their text, without the bytes that `mask` leaves out.
std::uint64_t OrderKey(char const* bytes, std::uint64_t mask) {
  return __builtin_bswap64(LoadEight(bytes) & mask);
}

// Which of 8 bytes take part in a comparison, the first byte the lowest.
constexpr std::uint64_t kYearAndMonthMask = 0x00FFFF00FFFFFFFFU;  // "2015-12-"
constexpr std::uint64_t kDayToMinuteMask = 0xFFFF00FFFF00FFFFU;   // "31T23:59"
constexpr std::uint64_t kClockMask = 0xFFFF00FFFF00FFFFU;         // "23:59:59"

/// Orders `width` bytes at `position`; what lies behind the end of a text counts as a byte of 0.
int OrderOfField(std::string_view left, std::string_view right, std::size_t position, std::size_t width) {
  auto const at = [](std::string_view text, std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  std::size_t const end = std::min(position + width, std::max(left.size(), right.size()));
  for (std::size_t i = position; i < end; ++i) {
    if (int const order = OrderOf(at(left, i), at(right, i)); order != 0) return order;
  }
  return 0;
}

struct Field {
  std::size_t position;
  std::size_t width;
};

constexpr Field kDateFields[] = {{0, 4}, {kUTCMonth, 2}, {kUTCDay, 2}, {kUTCHour, 2}, {kUTCMinute, 2}, {kUTCSecond, 2}};
constexpr Field kClockFields[] = {{0, 2}, {3, 2}, {6, 2}};

template <std::size_t kCount>
int OrderOfFields(std::string_view left, std::string_view right, Field const (&fields)[kCount]) {
  for (Field const& field : fields) {
    if (int const order = OrderOfField(left, right, field.position, field.width); order != 0) return order;
  }
  return 0;
}

/// Orders two texts up to the second. Texts of full length take three loads each.
int OrderOfDates(std::string_view left, std::string_view right) {
  if (std::min(left.size(), right.size()) < kUTCSecond + 2) return OrderOfFields(left, right, kDateFields);
  int order = OrderOf(OrderKey(left.data(), kYearAndMonthMask), OrderKey(right.data(), kYearAndMonthMask));
  if (order != 0) return order;
  order =
      OrderOf(OrderKey(left.data() + kUTCDay, kDayToMinuteMask), OrderKey(right.data() + kUTCDay, kDayToMinuteMask));
  return order != 0 ? order : OrderOfField(left, right, kUTCSecond, 2);
}

int OrderOfClocks(std::string_view left, std::string_view right) {
  if (std::min(left.size(), right.size()) < sizeof(std::uint64_t)) return OrderOfFields(left, right, kClockFields);
  return OrderOf(OrderKey(left.data(), kClockMask), OrderKey(right.data(), kClockMask));
}

/// The frame number of a text has a third digit when the text ends behind it.
std::int32_t FrameNumber(std::string_view text) {
  std::size_t const digits = text.size() == kSMPTEFrames + 3 ? 3 : 2;
  return ReadField(text, std::min<std::size_t>(kSMPTEFrames, text.size()), digits);
}

/// What stands between the opening brace of a sample with its value first and its time text, the value
/// itself apart: `{"value":` and `,"time":"`.
constexpr std::uint64_t kAroundValueLength = 18;
/// The same around the text and the digits of the length of a padded string:
/// `{"value":{"str":"`, `","length":` and `},"time":"`.
constexpr std::uint64_t kAroundPaddedLength = 38;

constexpr std::string_view kValueKey = "value";
constexpr std::string_view kTimeKey = "time";
constexpr std::ptrdiff_t kFirstKeyOffset = 2;  // behind brace and quote
constexpr std::uint64_t kTimeFirstOffset = 9;  // `{"time":"`

/// Whether the first key begins with `key` and a byte follows it.
bool FirstKeyIs(std::string_view key, char const* begin, char const* end) {
  if (end - begin <= kFirstKeyOffset + static_cast<std::ptrdiff_t>(key.size())) return false;
  return std::equal(key.begin(), key.end(), begin + kFirstKeyOffset);
}

/// Bytes from the opening brace of a sample with its value first to its time text.
std::uint64_t OffsetBehindValue(SK_DynamicSampleInfo const& info) {
  switch (info.mValueKind) {
    case kNumberStringSamples:
      return AddUpToLimit(kAroundValueLength, info.mNumberLength);
    case kNumberArraySamples: {
      // Two brackets, and one comma less than there are numbers.
      std::uint64_t const punctuation = AddUpToLimit(info.mArraySize, 1);
      std::uint64_t const numbers = MultiplyUpToLimit(info.mNumberLength, info.mArraySize);
      return AddUpToLimit(kAroundValueLength, AddUpToLimit(punctuation, numbers));
    }
    case kPaddedStringSamples:
      return AddUpToLimit(kAroundPaddedLength, AddUpToLimit(info.mMaxDigits, info.mMaxLength));
    default:
      return 0;
  }
}

}  // namespace

int SK_Utils::CompareUTCTime(char const* left, char const* right, std::uint16_t precision) {
  CheckTexts(left, right, "CompareUTCTime");
  return CompareUTCTime(std::string_view(left), std::string_view(right), precision);
}

int SK_Utils::CompareUTCTime(std::string_view left, std::string_view right, std::uint16_t precision) {
  if (left.empty() || right.empty()) return OrderOf(left.size(), right.size());
  int const order = OrderOfDates(left, right);
  return order != 0 ? order : OrderOfField(left, right, kUTCFraction, precision);
}

int SK_Utils::CompareSMPTETime(char const* left, char const* right) {
  CheckTexts(left, right, "CompareSMPTETime");
  return CompareSMPTETime(std::string_view(left), std::string_view(right));
}

int SK_Utils::CompareSMPTETime(std::string_view left, std::string_view right) {
  if (left.empty() || right.empty()) return OrderOf(left.size(), right.size());
  int const order = OrderOfClocks(left, right);
  return order != 0 ? order : FrameNumber(left) - FrameNumber(right);
}

int SK_Utils::CompareTimeStrings(char const* left, char const* right, SK_TimeFormat const& format) {
  if (format.IsTimeFormatUTC()) return CompareUTCTime(left, right, format.GetUTCInfo().precisionLength);
  return format.IsTimeFormatSMPTE() ? CompareSMPTETime(left, right) : 0;
}

int SK_Utils::CompareTimeStrings(std::string_view left, std::string_view right, SK_TimeFormat const& format) {
  if (format.IsTimeFormatUTC()) return CompareUTCTime(left, right, format.GetUTCInfo().precisionLength);
  return format.IsTimeFormatSMPTE() ? CompareSMPTETime(left, right) : 0;
}

char const* SK_Utils::GetTimeValueOffset(SK_DynamicSampleInfo const& info, char const* begin, char const* end) {
  if (begin >= end) return nullptr;
  auto const size = static_cast<std::uint64_t>(end - begin);
  std::uint64_t offset = 0;
  if (FirstKeyIs(kValueKey, begin, end)) {
    offset = OffsetBehindValue(info);
  } else if (FirstKeyIs(kTimeKey, begin, end)) {
    offset = kTimeFirstOffset;
  }
  return offset < size && IsDigit(begin[offset]) ? begin + offset : nullptr;
}

void SK_Utils::ConvertTimeStrToRelativeSKTime(std::string_view text, SK_Time& out, SK_TimeFormat const& format) {
  if (text.empty()) {
    out = {0, 1};
  } else if (format.IsTimeFormatSMPTE()) {
    SK_Time time;
    SK_TimeUtils::ConvertSMPTETimeToSKTime(text, format.GetSMPTEInfo(), time);
    SK_TimeUtils::SK_SubTime2(&time, &format.GetSMPTEBaseTime(), &out);
  } else if (format.IsTimeFormatUTC()) {
    std::uint16_t const precision = format.GetUTCInfo().precisionLength;
    SK_DateTime date;
    SK_TimeUtils::ParseUTCDateTime(text, precision, date);
    SK_TimeUtils::DiffUTCTime(date, format.GetUTCBaseTime(), precision, out);
  }
}

void SK_Utils::ConvertSKTimeToRelativeStr(SK_Time const& time, std::string& out, SK_TimeFormat const& format) {
  if (time.value < 0) return;
  if (format.IsTimeFormatSMPTE()) {
    SK_TimeUtils::ComputeRelativeTime(format.GetSMPTEBaseTime(), time, format.GetSMPTEInfo(), out);
  } else if (format.IsTimeFormatUTC()) {
    SK_TimeUtils::ComputeRelativeTime(format.GetUTCBaseTime(), time, format.GetUTCInfo().precisionLength, out);
  }
}

}  // namespace SK_NAMESPACE_INT
