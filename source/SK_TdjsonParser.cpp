#include "SK_TdjsonParser.h"

#include "SK_FileMapper.h"
#include "SK_IntegerOf.h"
#include "SK_JsonBytes.h"
#include "SK_SampleDataProcessor.h"
#include "SK_SampleOffsets.h"
#include "SK_TdjsonParserUtils.h"
#include "SK_TdjsonValidator.h"
#include "SK_TempFileHandler.h"
#include "SK_TimeUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr std::size_t kOutlineStackCapacity = 1024;

/// Whether a rate of `value` / `scale` frames per second is 29.97 or 59.94.
bool IsDropFrameRate(std::int32_t value, std::uint32_t scale) {
  std::uint32_t const hundredfold = scale == 0 ? 0 : static_cast<std::uint32_t>(value) * 100U / scale;
  return hundredfold == 2997 || hundredfold == 5994;
}

std::string TextOf(JValue const& value) {
  return std::string(value.GetString(), value.GetStringLength());
}

}  // namespace

struct SK_TdjsonParser::SchemaField {
  char const* key;
  char const* (SK_TdjsonParser::*parse)(char const* p, char const* end);
  ePresentProperty bit;
};

SK_TdjsonParser::SK_TdjsonParser() : mDataOutline(rapidjson::kArrayType, &mAllocator, kOutlineStackCapacity) {}

SK_TdjsonParser::~SK_TdjsonParser() {
  mFileSize = 0;
  mDataCache.clear();
}

void SK_TdjsonParser::SetFilePath(char const* path, unsigned long long const& length) {
  mFilePath.assign(path, length);
}

void SK_TdjsonParser::CacheFileData(char const* path, unsigned long long pathLength) {
  SetFilePath(path, pathLength);
  SK_FileMapper const input(mFilePath);
  SetFileStartAddress(input.GetFilePointer());
  SetFileSize(input.GetFileSize());
  ParseTopLevel(mFileStartAddress, mFileStartAddress + mFileSize);
  if (IsPresent(kDataDynamicSamplesPresent)) {
    ProcessDynamicSamples();
  } else {
    // The input goes now, and nothing takes its place.
    SetFileStartAddress(nullptr);
    SetFileSize(0);
  }
}

void SK_TdjsonParser::ParseTopLevel(char const* begin, char const* end) {
  char const* p = SK_TdjsonParserUtils::SkipSpecialCharacters(begin, end);
  if (!PeekIs(p, end, '{')) {
    ThrowAt(p, ns_sensor::kJsonSyntax, SK_Message::kOpeningBracketNotFound);
  }
  ++p;
  bool isClosed = false;
  while (p < end && !isClosed) {
    std::string key;
    p = SK_TdjsonParserUtils::SkipSpecialCharacters(p, end);
    p = SK_TdjsonParserUtils::ParseJsonString(p, end, begin, key, true, "");
    p = SK_TdjsonParserUtils::ConsumeColon(p, end, begin, key);
    p = ParseProperty(p, end, key);
    p = SK_TdjsonParserUtils::SkipSpecialCharacters(p, end);
    if (p >= end) {
      ThrowAt(p, ns_sensor::kJsonSyntax, SK_Message::kInvalidJSON, Quoted(key));
    }
    isClosed = *p == '}';
    if (!isClosed && *p != ',') {
      ThrowAt(p, ns_sensor::kJsonSyntax, SK_Message::kInvalidPropertyMissingCommaOrClosingBracket, Quoted(key));
    }
    ++p;
  }
  if (isClosed) {
    p = SK_TdjsonParserUtils::SkipSpecialCharacters(p, end);
    CheckRequiredProperties();
  }
  if (p < end || !isClosed) {
    ThrowAt(p, ns_sensor::kJsonSyntax, SK_Message::kInvalidJSON, std::string());
  }
}

SK_TdjsonParser::SchemaField const* SK_TdjsonParser::FindSchemaField(std::string const& key) {
  static constexpr SchemaField kFields[] = {
      {"version", &SK_TdjsonParser::ParseVersion, kVersionPresent},
      {"useTimecodeB", &SK_TdjsonParser::ParseUseTimecodeB, kUseTimecodePresent},
      {"timecodeInfo", &SK_TdjsonParser::ParseTimecodeInfo, kTimecodeInfoPresent},
      {"utcInfo", &SK_TdjsonParser::ParseUTCInfo, kUtcInfoPresent},
      {"dataOutline", &SK_TdjsonParser::ParseDataOutline, kDataOutlinePresent},
      {"dataDynamicSamples", &SK_TdjsonParser::ParseDynamicSamples, kDataDynamicSamplesPresent},
      {"videoSyncTimeList", &SK_TdjsonParser::ParseSyncInfo, kVideoSyncTimeListPresent},
      {"creator", &SK_TdjsonParser::ParseCreator, kCreatorPresent},
      {"dynamicSamplesPresentB", &SK_TdjsonParser::ParseDynamicSamplesPresentB, kDynamicSamplesFlagPresent},
      {"dynamicDataInfo", &SK_TdjsonParser::ParseDynamicDataInfo, kDynamicDataInfoPresent},
  };
  for (SchemaField const& field : kFields) {
    if (key == field.key) {
      return &field;
    }
  }
  return nullptr;
}

char const* SK_TdjsonParser::ParseProperty(char const* p, char const* end, std::string const& key) {
  SchemaField const* const field = FindSchemaField(key);
  if (field == nullptr) {
    ThrowAt(p, ns_sensor::kJsonSyntax, SK_Message::kFoundUnrecognisedKey, Quoted(key));
  }
  p = (this->*field->parse)(p, end);
  mPresentProperties = static_cast<std::uint16_t>(mPresentProperties | field->bit);
  return p;
}

void SK_TdjsonParser::CheckRequiredProperties() const {
  std::string const missing = FindMissingRequiredProperties();
  if (!missing.empty()) {
    ThrowError({ns_sensor::kJsonSyntax, SK_Message::kMissingRequiredProperties, -1, -1}, missing);
  }
}

char const* SK_TdjsonParser::ParseVersion(char const* p, char const* end) {
  return SK_TdjsonParserUtils::ParseJsonString(p, end, mFileStartAddress, mVersion, false, "version");
}

char const* SK_TdjsonParser::ParseCreator(char const* p, char const* end) {
  return SK_TdjsonParserUtils::ParseJsonString(p, end, mFileStartAddress, mCreator, false, "creator");
}

char const* SK_TdjsonParser::ParseDataOutline(char const* p, char const* end) {
  JAllocator& allocator = mDataOutline.GetAllocator();
  char const* const behind =
      GetTDJSONVersion() == kTdjsonVersion2
          ? SK_TdjsonParserUtils::ParseOutline(p, end, mFileStartAddress, "dataOutline", mDataOutline, allocator)
          : SK_TdjsonParserUtils::ParseJsonArray(p, end, mFileStartAddress, "dataOutline", mDataOutline, allocator, 0);
  CacheDynamicDataOutline(GetValidator().ValidateOutline(mDataOutline, p, behind));
  return behind;
}

void SK_TdjsonParser::CacheDynamicDataOutline(std::vector<JValue const*> const& dynamicNodes) {
  for (JValue const* const node : dynamicNodes) {
    std::string const id = TextOf((*node)["sampleSetID"]);
    auto const inserted = mDataCache.emplace(id, SK_DynamicSampleInfo(node));
    if (!inserted.second) {
      ThrowError({ns_sensor::kDuplicateSampleId, SK_Message::kDuplicateSampleId, -1, -1}, Quoted(id));
    }
    mSetsInOrder.push_back(&*inserted.first);
  }
}

char const* SK_TdjsonParser::ParseDynamicSamples(char const* p, char const* end) {
  if (!PeekIs(p, end, '[')) {
    ThrowAt(p, ns_sensor::kWrongPropertyType, SK_Message::kInvalidPropertyType, Quoted("dataDynamicSamples"),
            std::string("JSON Array"));
  }
  return CreateAndPopulateTempFile(p);
}

char const* SK_TdjsonParser::CreateAndPopulateTempFile(char const* p) {
  char const* const begin = p + 1;
  char const* const end = mFileStartAddress + mFileSize;
  mTempFileHandler = std::make_unique<SK_TempFileHandler>(SK_Utils::GetFileName(mFilePath.c_str()));
  mTempFileHandler->Reserve(static_cast<std::uint64_t>(end - begin));
  return mSectionCopy.Copy(begin, end, [this](char const* data, std::uint64_t size, bool isLast) {
    return mTempFileHandler->WriteToTempFile(data, size, isLast);
  });
}

void SK_TdjsonParser::ProcessDynamicSamples() {
  mTempFileHandler->CreateTempFileMapping();
  SetFileStartAddress(mTempFileHandler->GetTempFileMappingAddress());
  SetFileSize(mTempFileHandler->GetTempFileSize());
  SK_ScratchRange const file = {mFileStartAddress, mFileStartAddress + mFileSize};
  SK_SampleOffsets offsets(mDataCache, mTimeFormat, GetTDJSONVersion(), file);
  offsets.CacheDynamicSamplesOffset(file.begin, file.end);
  mTemporalRange = offsets.FindFileTemporalExtents(mSetsInOrder);
  ComputeStartTimeAndDuration();
  mSampleDataProcessor =
      std::make_shared<SK_SampleDataProcessor>(mDataCache, mTimeFormat, file.begin, file.end, GetTDJSONVersion());
}

void SK_TdjsonParser::ComputeStartTimeAndDuration() {
  if (mTemporalRange.mStartTime.empty() || mTemporalRange.mEndTime.empty()) {
    return;
  }
  if (mTimeFormat.IsTimeFormatSMPTE()) {
    SK_TimeCodeInfo const& info = mTimeFormat.GetSMPTEInfo();
    SK_Time start;
    SK_Time end;
    SK_TimeUtils::ConvertSMPTETimeToSKTime(mTemporalRange.mStartTime, info, start);
    SK_TimeUtils::ConvertSMPTETimeToSKTime(mTemporalRange.mEndTime, info, end);
    SK_TimeUtils::SK_SubTime2(&end, &start, &mFileDuration);
    mTimeFormat.SetSMPTEBaseTime(start);
  } else if (mTimeFormat.IsTimeFormatUTC()) {
    std::uint16_t const precision = mTimeFormat.GetUTCInfo().precisionLength;
    SK_DateTime start;
    SK_DateTime end;
    SK_TimeUtils::ParseUTCDateTime(mTemporalRange.mStartTime, precision, start);
    SK_TimeUtils::ParseUTCDateTime(mTemporalRange.mEndTime, precision, end);
    SK_TimeUtils::DiffUTCTime(end, start, precision, mFileDuration);
    mTimeFormat.SetUTCBaseTime(start);
  }
}

void SK_TdjsonParser::CacheTimeCode(JValue const& timecodeInfo) {
  JValue const& frameRate = timecodeInfo["frameRate"];
  auto const value = LowBitsOf<std::int32_t>(frameRate["value"].GetDouble());
  auto const scale = LowBitsOf<std::uint32_t>(frameRate["scale"].GetDouble());
  bool const dropFrame = timecodeInfo["dropFrame"].GetBool();
  if (dropFrame && !IsDropFrameRate(value, scale)) {
    ThrowError({ns_sensor::kUnsupportedFrameRate, SK_Message::kNonSuppportedFrameRate, -1, -1});
  }
  mTimeFormat.SetSMPTEInfo(SK_Time{value, scale}, dropFrame ? 1 : 0);
}

void SK_TdjsonParser::CacheUtcInfo(JValue const& utcInfo) {
  auto const precisionLength = LowBitsOf<std::uint16_t>(utcInfo["precisionLength"].GetDouble());
  mTimeFormat.SetUTCInfo(precisionLength, utcInfo["isGMT"].GetBool() ? 1 : 0);
}

void SK_TdjsonParser::CacheSyncTime(JValue const& syncTimes) {
  for (JValue const& entry : syncTimes.GetArray()) {
    ns_sensor::SK_VideoSyncTime syncTime;
    if (entry.HasMember("timeString")) {
      syncTime.value.value = TextOf(entry["timeString"]);
    }
    if (entry.HasMember("frameNumber")) {
      decltype(syncTime.value.value) const frameNumber(LowBitsOf<int>(entry["frameNumber"].GetDouble()));
      syncTime.value.value = frameNumber;
    }
    syncTime.fileName = TextOf(entry["fileName"]);
    mSyncInfo.push_back(std::move(syncTime));
  }
}

void SK_TdjsonParser::RejectKey(char const* p, char const* key) const {
  // The version named is the same in both: fixed wording.
  ThrowAt(p, ns_sensor::kInvalidTopLevelProperty, SK_Message::kInvalidTopLevelProperty, Quoted(key),
          std::string("2.0.0"));
}

}  // namespace SK_NAMESPACE_INT
