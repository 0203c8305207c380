/// One pass over a data file: keeps its header and outline, copies its samples to a scratch file without
/// white space, and leaves behind what later queries need. The two format versions derive from it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"
#include "SK_RapidJson.h"
#include "SK_TimeFormat.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleDataProcessor;
class SK_TdjsonValidator;
class SK_TempFileHandler;

/// Sample sets by "sampleSetID".
using SK_DataCache = std::unordered_map<std::string, SK_DynamicSampleInfo>;

class SK_TdjsonParser {
 public:
  SK_TdjsonParser();

  /// Reads the whole file. Called once. An object whose reading has thrown is only fit to be destroyed.
  virtual void CacheFileData(char const* path, unsigned long long pathLength);
  virtual eTDJSONVersion GetTDJSONVersion() const = 0;
  virtual ~SK_TdjsonParser();

  SK_TdjsonParser(SK_TdjsonParser const&) = delete;
  SK_TdjsonParser& operator=(SK_TdjsonParser const&) = delete;

  std::string const& GetFilePath() const { return mFilePath; }
  bool GetUseTimecodeB() const { return mUseTimecodeB; }
  ns_sensor::SK_Time const& GetFileDuration() const { return mFileDuration; }
  std::string const& GetFileCreator() const { return mCreator; }
  std::string const& GetFileVersion() const { return mVersion; }
  std::vector<ns_sensor::SK_VideoSyncTime> const& GetSyncInfo() const { return mSyncInfo; }
  JDocument const& GetDataOutline() const { return mDataOutline; }
  SK_DataCache const& GetDataCache() const { return mDataCache; }
  SK_TimeFormat const& GetTimeInfo() const { return mTimeFormat; }
  /// Empty for a file without a sample section.
  std::shared_ptr<SK_SampleDataProcessor> const& GetSampleDataProcessor() const { return mSampleDataProcessor; }

 private:
  std::string mFilePath;
  bool mUseTimecodeB = false;
  ns_sensor::SK_Time mFileDuration;
  std::string mCreator;
  std::string mVersion;
  std::vector<ns_sensor::SK_VideoSyncTime> mSyncInfo;
  JDocument mDataOutline;
  SK_DataCache mDataCache;
  SK_TimeFormat mTimeFormat;
  std::shared_ptr<SK_SampleDataProcessor> mSampleDataProcessor;
};

}  // namespace SK_NAMESPACE_INT
