#include "SK_TdjsonParser_v2.h"

#include "SK_MissingKeys.h"
#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {

char const* SK_TdjsonParser_v2::ParseDynamicSamples(char const* p, char const* end) {
  CheckSamplesFlag(p, "dataDynamicSamples");
  if (!IsPresent(kDynamicDataInfoPresent)) {
    ThrowDependentNotFound(p, "dynamicDataInfo", "dataDynamicSamples");
  }
  return SK_TdjsonParser::ParseDynamicSamples(p, end);
}

char const* SK_TdjsonParser_v2::ParseDynamicSamplesPresentB(char const* p, char const* end) {
  mDynamicSamplesPresentB =
      SK_TdjsonParserUtils::ParseJsonBool(p, end, GetFileStartAddress(), "dynamicSamplesPresentB");
  return p;
}

char const* SK_TdjsonParser_v2::ParseDynamicDataInfo(char const* p, char const* end) {
  CheckSamplesFlag(p, "dynamicDataInfo");
  JAllocator allocator;
  JValue info;
  char const* const behind =
      SK_TdjsonParserUtils::ParseJsonObject(p, end, GetFileStartAddress(), "dynamicDataInfo", info, allocator, 0);
  mValidator.ValidateDynamicDataInfo(info, p, behind);
  SetUseTimecodeB(info["useTimecodeB"].GetBool());
  if (GetUseTimecodeB()) {
    CacheTimeCode(info["timecodeInfo"]);
  } else {
    CacheUtcInfo(info["utcInfo"]);
  }
  if (info.HasMember("videoSyncTimeList")) {
    CacheSyncTime(info["videoSyncTimeList"]);
  }
  return behind;
}

char const* SK_TdjsonParser_v2::ParseUseTimecodeB(char const* p, char const*) {
  RejectKey(p, "useTimecodeB");
}

char const* SK_TdjsonParser_v2::ParseTimecodeInfo(char const* p, char const*) {
  RejectKey(p, "timecodeInfo");
}

char const* SK_TdjsonParser_v2::ParseUTCInfo(char const* p, char const*) {
  RejectKey(p, "utcInfo");
}

char const* SK_TdjsonParser_v2::ParseSyncInfo(char const* p, char const*) {
  RejectKey(p, "videoSyncTimeList");
}

std::string SK_TdjsonParser_v2::FindMissingRequiredProperties() const {
  SK_MissingKeys missing;
  missing.AddIf(!IsPresent(kVersionPresent), "version");
  missing.AddIf(!IsPresent(kDataOutlinePresent), "dataOutline");
  missing.AddIf(!IsPresent(kDynamicSamplesFlagPresent), "dynamicSamplesPresentB");
  missing.AddIf(mDynamicSamplesPresentB && !IsPresent(kDynamicDataInfoPresent), "dynamicDataInfo");
  return missing.GetText();
}

void SK_TdjsonParser_v2::CheckSamplesFlag(char const* p, char const* key) const {
  if (!IsPresent(kDynamicSamplesFlagPresent)) {
    ThrowDependentNotFound(p, "dynamicSamplesPresentB", key);
  }
  if (!mDynamicSamplesPresentB) {
    ThrowAt(p, ns_sensor::kDependentProperty, SK_Message::kInvalidInfo, Quoted(key), Quoted("dynamicSamplesPresentB"),
            std::string("true"));
  }
}

void SK_TdjsonParser_v2::ThrowDependentNotFound(char const* p, char const* missing, char const* key) const {
  ThrowAt(p, ns_sensor::kDependentProperty, SK_Message::kDependentPropertyNotFound, Quoted(missing), Quoted(key));
}

}  // namespace SK_NAMESPACE_INT
