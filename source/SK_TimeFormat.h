/// Which notation a file uses for its times, how long each time text is, and the time that counts as 0.
#pragma once

#include <cstdint>

#include "SK_DateTime.h"
#include "senmark/SK_BasicRecords.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_Time;

/// Frame rate in frames per second, 0/1 until it is set.
struct SK_TimeCodeInfo {
  SK_Time frameRate = {0, 1};
  std::uint8_t dropFrame = 0;
};

struct SK_UTCInfo {
  std::uint16_t precisionLength = 0;  ///< digits of the fraction of a second
  std::uint8_t isGMT = 0;
};

class SK_TimeFormat {
 public:
  bool IsTimeFormatUTC() const { return mKind == kUTC; }
  bool IsTimeFormatSMPTE() const { return mKind == kSMPTE; }

  SK_UTCInfo const& GetUTCInfo() const { return mUTCInfo; }
  SK_TimeCodeInfo const& GetSMPTEInfo() const { return mTimeCodeInfo; }
  std::uint16_t GetTimeStrLength() const { return mTimeStrLength; }  ///< bytes of a time text
  SK_DateTime const& GetUTCBaseTime() const { return mUTCBaseTime; }
  SK_Time const& GetSMPTEBaseTime() const { return mSMPTEBaseTime; }

  void SetUTCBaseTime(SK_DateTime const& base) { mUTCBaseTime = base; }
  void SetSMPTEBaseTime(SK_Time const& base) { mSMPTEBaseTime = base; }

  void SetUTCInfo(SK_UTCInfo const& info);
  void SetUTCInfo(std::uint16_t precisionLength, std::uint8_t isGMT);
  void SetUTCTimeLength();

  void SetSMPTEInfo(SK_TimeCodeInfo const& info);
  void SetSMPTEInfo(SK_Time const& frameRate, std::uint8_t dropFrame);
  /// Leaves the length of a time text as it is, unlike the other two.
  void SetSMPTEInfo(std::int32_t rateValue, std::uint32_t rateScale, std::uint8_t dropFrame);

 private:
  enum eKind : std::uint8_t { kUTC = 0, kSMPTE = 1, kNeither = 2 };

  SK_UTCInfo mUTCInfo;
  SK_TimeCodeInfo mTimeCodeInfo;
  eKind mKind = kNeither;
  std::uint16_t mTimeStrLength = 0;
  SK_DateTime mUTCBaseTime;
  SK_Time mSMPTEBaseTime;
};

}  // namespace SK_NAMESPACE_INT
