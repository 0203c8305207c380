#include "SK_TdjsonParser_v1.h"

#include "SK_MissingKeys.h"
#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {

char const* SK_TdjsonParser_v1::ParseDynamicSamplesPresentB(char const* p, char const*) {
  RejectKey(p, "dynamicSamplesPresentB");
}

char const* SK_TdjsonParser_v1::ParseDynamicDataInfo(char const* p, char const*) {
  RejectKey(p, "dynamicDataInfo");
}

char const* SK_TdjsonParser_v1::ParseUseTimecodeB(char const* p, char const* end) {
  // The flag and the info that belongs to it may come in any order: whichever is second is checked.
  char const* const value = p;
  bool const useTimecode = SK_TdjsonParserUtils::ParseJsonBool(p, end, GetFileStartAddress(), "useTimecodeB");
  if (!useTimecode && GetTimeFormat().IsTimeFormatSMPTE()) {
    ThrowInvalidInfo(value, "timecodeInfo", "true");
  }
  if (useTimecode && GetTimeFormat().IsTimeFormatUTC()) {
    ThrowInvalidInfo(value, "utcInfo", "false");
  }
  SetUseTimecodeB(useTimecode);
  return p;
}

char const* SK_TdjsonParser_v1::ParseTimecodeInfo(char const* p, char const* end) {
  if (IsPresent(kUseTimecodePresent) && !GetUseTimecodeB()) {
    ThrowInvalidInfo(p, "timecodeInfo", "true");
  }
  JAllocator allocator;
  JValue info;
  char const* const behind =
      SK_TdjsonParserUtils::ParseJsonObject(p, end, GetFileStartAddress(), "timecodeInfo", info, allocator, 0);
  mValidator.ValidateTimeCodeInfo(info, p, behind);
  CacheTimeCode(info);
  return behind;
}

char const* SK_TdjsonParser_v1::ParseUTCInfo(char const* p, char const* end) {
  if (IsPresent(kUseTimecodePresent) && GetUseTimecodeB()) {
    ThrowInvalidInfo(p, "utcInfo", "false");
  }
  JAllocator allocator;
  JValue info;
  char const* const behind =
      SK_TdjsonParserUtils::ParseJsonObject(p, end, GetFileStartAddress(), "utcInfo", info, allocator, 0);
  mValidator.ValidateUTCInfo(info, p, behind);
  CacheUtcInfo(info);
  return behind;
}

char const* SK_TdjsonParser_v1::ParseSyncInfo(char const* p, char const* end) {
  JAllocator allocator;
  JValue list;
  char const* const behind =
      SK_TdjsonParserUtils::ParseJsonArray(p, end, GetFileStartAddress(), "videoSyncTimeList", list, allocator, 0);
  mValidator.ValidateSyncInfo(list, p, behind);
  CacheSyncTime(list);
  return behind;
}

std::string SK_TdjsonParser_v1::FindMissingRequiredProperties() const {
  bool const isFlagPresent = IsPresent(kUseTimecodePresent);
  SK_MissingKeys missing;
  missing.AddIf(!isFlagPresent, "useTimecodeB");
  missing.AddIf(isFlagPresent && !GetUseTimecodeB() && !IsPresent(kUtcInfoPresent), "utcInfo");
  missing.AddIf(isFlagPresent && GetUseTimecodeB() && !IsPresent(kTimecodeInfoPresent), "timecodeInfo");
  missing.AddIf(!IsPresent(kDataOutlinePresent), "dataOutline");
  return missing.GetText();
}

void SK_TdjsonParser_v1::ThrowInvalidInfo(char const* p, char const* key, char const* flagValue) const {
  ThrowAt(p, ns_sensor::kConditionalProperty, SK_Message::kInvalidInfo, Quoted(key), Quoted("useTimecodeB"),
          std::string(flagValue));
}

}  // namespace SK_NAMESPACE_INT
