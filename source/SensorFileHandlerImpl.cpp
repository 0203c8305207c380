#include "SensorFileHandlerImpl.h"

#include "SK_Error.h"
#include "SK_Ladder.h"
#include "SK_RecordReset.h"
#include "SK_SampleBlock.h"
#include "SK_TdjsonParserFactory.h"
#include "SK_TdjsonParser_v1.h"
#include "SK_TdjsonParser_v2.h"
#include "SK_Utils.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::ResetDynamicDataInfo;
using SK_NAMESPACE_INT::ResetFileInfo;
using SK_NAMESPACE_INT::ResetGroupChildInfo;
using SK_NAMESPACE_INT::ResetStaticDataInfo;
using SK_NAMESPACE_INT::ResetVideoSyncTimeList;
using SK_NAMESPACE_INT::RunInside;
using SK_NAMESPACE_INT::SK_SampleBlock;
using SK_NAMESPACE_INT::SK_Utils;
using SK_NAMESPACE_INT::ThrowError;
using SK_NAMESPACE_INT::ThrowInvalidPointer;

namespace {

void CheckResult(void const* result, char const* what) {
  if (result == nullptr) {
    ThrowInvalidPointer(what);
  }
}

SK_DataPath ReadPath(std::string const& text) {
  SK_DataPath path;
  SK_Utils::DeSerialize(text, path);
  return path;
}

}  // namespace

SensorFileHandlerImpl::SensorFileHandlerImpl(char const* nativePath, unsigned long long nativePathLength,
                                             char const* filePath, unsigned long long filePathLength,
                                             SK_NAMESPACE_INT::eTDJSONVersion version)
    : mVersion(version) {
  RunInside([&] {
    mNativeFilePath.assign(nativePath, nativePathLength);
    mFilePath.assign(filePath, filePathLength);
    Parse();
    mDataQuery = std::make_unique<SK_NAMESPACE_INT::SK_DataQuery>(mParser);
  });
}

SensorFileHandlerImpl::~SensorFileHandlerImpl() = default;

void SensorFileHandlerImpl::GetRootChildren(std::vector<SK_DataPath>* children) {
  RunInside([&] {
    CheckResult(children, "SK_GroupChildren");
    children->clear();
    mDataQuery->GetRootChildren(children);
  });
}

void SensorFileHandlerImpl::GetGroupChildren(std::string const& path, std::vector<SK_DataPath>* children) {
  RunInside([&] {
    CheckResult(children, "SK_GroupChildren");
    children->clear();
    mDataQuery->GetGroupChildren(ReadPath(path), children);
  });
}

void SensorFileHandlerImpl::GetGroupChildInfo(std::string const& path, SK_GroupChildInfo* info) {
  RunInside([&] {
    CheckResult(info, "SK_GroupChildInfo");
    ResetGroupChildInfo(*info);
    mDataQuery->GetGroupChildInfo(ReadPath(path), info);
  });
}

void SensorFileHandlerImpl::GetStaticDataInfo(std::string const& path, SK_StaticDataInfo* info) {
  RunInside([&] {
    CheckResult(info, "SK_StaticDataInfo");
    ResetStaticDataInfo(*info);
    mDataQuery->GetStaticDataInfo(ReadPath(path), info);
  });
}

void SensorFileHandlerImpl::GetDynamicDataInfo(std::string const& path, SK_DynamicDataInfo* info) {
  RunInside([&] {
    CheckResult(info, "SK_DynamicDataInfo");
    ResetDynamicDataInfo(*info);
    mDataQuery->GetDynamicDataInfo(ReadPath(path), info);
  });
}

void SensorFileHandlerImpl::GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                              std::vector<SK_DynamicDataSample>* samples) {
  RunInside([&] {
    CheckResult(samples, "DynamicDataSampleSet");
    samples->clear();
    mDataQuery->GetDynamicSamples(id, start, end, samples);
  });
}

void SensorFileHandlerImpl::GetAdjacentSamples(std::string const& id, SK_Time const& time,
                                               std::vector<SK_DynamicDataSample>* samples) {
  RunInside([&] {
    CheckResult(samples, "DynamicDataSampleSet");
    samples->clear();
    mDataQuery->GetAdjacentSamples(id, time, samples);
  });
}

void SensorFileHandlerImpl::GetFileInfo(SK_FileInfo* info) {
  RunInside([&] {
    CheckResult(info, "SK_FileInfo");
    ResetFileInfo(*info);
    info->version = mParser->GetFileVersion();
    info->duration = mParser->GetFileDuration();
    info->creator = mParser->GetFileCreator();
  });
}

void SensorFileHandlerImpl::GetVideoSyncTime(std::vector<SK_VideoSyncTime>* list) {
  RunInside([&] {
    CheckResult(list, "SK_VideoSyncTimeList");
    ResetVideoSyncTimeList(*list);
    *list = mParser->GetSyncInfo();
  });
}

void SensorFileHandlerImpl::GetSampleInfo(std::string const& id, SK_Time const& start, SK_Time const& end,
                                          SK_DynamicSampleInfo* info, bool adjacent) {
  RunInside([&] {
    CheckResult(info, "SK_DynamicSampleInfo");
    SK_DynamicDataSample* none = nullptr;
    unsigned long long count = 0;
    if (adjacent) {
      mDataQuery->GetAdjacentSamples(id, start, none, count, true);
    } else {
      bool reversed = false;
      mDataQuery->GetDynamicSamples(id, start, end, none, count, reversed, true);
    }
    info->sampleCount = count;
    auto const& cache = mParser->GetDataCache();
    auto const entry = cache.find(id);
    if (entry != cache.end()) {
      info->valueType = static_cast<eDataValueType>(entry->second.mValueKind);
    }
  });
}

void SensorFileHandlerImpl::GetDynamicSamples_I(std::string const& id, SK_Time const& start, SK_Time const& end,
                                                SK_DynamicDataSample*& samples, unsigned long long& count,
                                                bool& reversed) {
  RunInside([&] { mDataQuery->GetDynamicSamples(id, start, end, samples, count, reversed, false); });
}

void SensorFileHandlerImpl::GetAdjacentSamples_I(std::string const& id, SK_Time const& time,
                                                 SK_DynamicDataSample*& samples, unsigned long long& count) {
  RunInside([&] { mDataQuery->GetAdjacentSamples(id, time, samples, count, false); });
}

void SensorFileHandlerImpl::ReadDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                               SK_SampleBlock& samples, bool& reversed) {
  RunInside([&] { mDataQuery->ReadDynamicSamples(id, start, end, samples, reversed); });
}

void SensorFileHandlerImpl::ReadAdjacentSamples(std::string const& id, SK_Time const& time, SK_SampleBlock& samples) {
  RunInside([&] { mDataQuery->ReadAdjacentSamples(id, time, samples); });
}

void SensorFileHandlerImpl::Parse() {
  switch (mVersion) {
    case SK_NAMESPACE_INT::kTdjsonVersion2:
      mParser = std::make_shared<SK_NAMESPACE_INT::SK_TdjsonParser_v2>();
      break;
    case SK_NAMESPACE_INT::kTdjsonVersion1:
      mParser = std::make_shared<SK_NAMESPACE_INT::SK_TdjsonParser_v1>();
      break;
    case SK_NAMESPACE_INT::kNotTdjson:
      mParser = SK_NAMESPACE_INT::SK_TdjsonParserFactory::GetParser(mFilePath.c_str());
      break;
  }
  if (!mParser) {
    ThrowError({kInternalFailure, SK_Message::kCannotCreateParserObject, -1, -1});
  }
  mParser->CacheFileData(mFilePath.c_str(), mFilePath.size());
}

}  // namespace ns_sensor
