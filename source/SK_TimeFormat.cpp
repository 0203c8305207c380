#include "SK_TimeFormat.h"

#include "SK_TimeText.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr unsigned kDateAndZoneLength = 20;      // "2015-12-31T23:59:59Z"
constexpr unsigned kPointLength = 1;             // before a fraction
constexpr unsigned kOffsetBehindSignLength = 5;  // "02:00"

}  // namespace

void SK_TimeFormat::SetUTCInfo(SK_UTCInfo const& info) {
  mUTCInfo = info;
  mKind = kUTC;
  SetUTCTimeLength();
}

void SK_TimeFormat::SetUTCInfo(std::uint16_t precisionLength, std::uint8_t isGMT) {
  SetUTCInfo(SK_UTCInfo{precisionLength, isGMT});
}

void SK_TimeFormat::SetUTCTimeLength() {
  unsigned length = kDateAndZoneLength;
  if (mUTCInfo.precisionLength != 0) length += mUTCInfo.precisionLength + kPointLength;
  if (mUTCInfo.isGMT == 0) length += kOffsetBehindSignLength;
  mTimeStrLength = static_cast<std::uint16_t>(length);
}

void SK_TimeFormat::SetSMPTEInfo(SK_TimeCodeInfo const& info) {
  mTimeCodeInfo = info;
  mKind = kSMPTE;
  mTimeStrLength = static_cast<std::uint16_t>(kSMPTEFrames + FrameDigits(info.frameRate));
}

void SK_TimeFormat::SetSMPTEInfo(SK_Time const& frameRate, std::uint8_t dropFrame) {
  SetSMPTEInfo(SK_TimeCodeInfo{frameRate, dropFrame});
}

void SK_TimeFormat::SetSMPTEInfo(std::int32_t rateValue, std::uint32_t rateScale, std::uint8_t dropFrame) {
  mTimeCodeInfo = {{rateValue, rateScale}, dropFrame};
  mKind = kSMPTE;
}

}  // namespace SK_NAMESPACE_INT
