/// One pass over a data file: keeps its header and outline, copies its samples to a scratch file without
/// white space, and leaves behind what later queries need. The two format versions derive from it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "SK_DynamicSampleInfo.h"
#include "SK_Error.h"
#include "SK_FormatVersion.h"
#include "SK_RapidJson.h"
#include "SK_SampleSectionCopy.h"
#include "SK_TimeFormat.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleDataProcessor;
class SK_TdjsonValidator;
class SK_TempFileHandler;

class SK_TdjsonParser {
 public:
  SK_TdjsonParser();

  /// Reads the whole file. Called once. An object whose reading has thrown is only fit to be destroyed.
  ///
  /// Errors: those of `SK_FileMapper` and `SK_TempFileHandler`, of the scanner and of the validator; 32
  /// for a broken top level, 30, 31 and 46 for keys that the version does not have there, 37 and 41; those
  /// of `SK_SampleOffsets`. Offsets are bytes from the start of the file.
  virtual void CacheFileData(char const* path, unsigned long long pathLength);
  virtual eTDJSONVersion GetTDJSONVersion() const = 0;
  virtual ~SK_TdjsonParser();

  SK_TdjsonParser(SK_TdjsonParser const&) = delete;
  SK_TdjsonParser& operator=(SK_TdjsonParser const&) = delete;

  void SetFilePath(char const* path, unsigned long long const& length);
  std::string const& GetFilePath() const { return mFilePath; }
  /// First byte of the input while it is read, later of the scratch file; null where there is neither.
  char const* GetFileStartAddress() const { return mFileStartAddress; }
  void SetFileStartAddress(char const* address) { mFileStartAddress = address; }
  void SetFileSize(std::uint64_t size) { mFileSize = size; }  ///< bytes from the start address on
  void SetUseTimecodeB(bool useTimecode) { mUseTimecodeB = useTimecode; }
  bool GetUseTimecodeB() const { return mUseTimecodeB; }

  /// From the first to the last sample, in seconds; 0/1 without samples.
  ns_sensor::SK_Time const& GetFileDuration() const { return mFileDuration; }
  std::string const& GetFileCreator() const { return mCreator; }
  std::string const& GetFileVersion() const { return mVersion; }
  std::vector<ns_sensor::SK_VideoSyncTime> const& GetSyncInfo() const { return mSyncInfo; }
  JDocument const& GetDataOutline() const { return mDataOutline; }
  SK_DataCache const& GetDataCache() const { return mDataCache; }
  SK_TimeFormat const& GetTimeInfo() const { return mTimeFormat; }
  /// Empty for a file without a sample section.
  std::shared_ptr<SK_SampleDataProcessor> const& GetSampleDataProcessor() const { return mSampleDataProcessor; }

 protected:
  /// Keys of the top level, as bits of what has been read.
  enum ePresentProperty : std::uint16_t {
    kVersionPresent = 1,
    kCreatorPresent = 2,
    kUseTimecodePresent = 4,
    kUtcInfoPresent = 8,
    kTimecodeInfoPresent = 16,
    kDataOutlinePresent = 32,
    kDataDynamicSamplesPresent = 64,
    kVideoSyncTimeListPresent = 128,
    kDynamicSamplesFlagPresent = 256,
    kDynamicDataInfoPresent = 512,
  };

  // Each reads the value of one key, from its position `p`, and gives the position behind it.

  virtual char const* ParseVersion(char const* p, char const* end);
  virtual char const* ParseCreator(char const* p, char const* end);
  virtual char const* ParseDataOutline(char const* p, char const* end);
  virtual char const* ParseDynamicSamples(char const* p, char const* end);
  /// Turns from the input to the scratch file, and finds samples and times in it.
  virtual void ProcessDynamicSamples();
  virtual char const* ParseDynamicSamplesPresentB(char const* p, char const* end) = 0;
  virtual char const* ParseDynamicDataInfo(char const* p, char const* end) = 0;
  virtual char const* ParseUseTimecodeB(char const* p, char const* end) = 0;
  virtual char const* ParseTimecodeInfo(char const* p, char const* end) = 0;
  virtual char const* ParseUTCInfo(char const* p, char const* end) = 0;
  virtual char const* ParseSyncInfo(char const* p, char const* end) = 0;
  virtual SK_TdjsonValidator const& GetValidator() const = 0;
  /// The keys that the version requires and the file does not have, each in double quotes, separated by
  /// commas. Empty for none.
  virtual std::string FindMissingRequiredProperties() const = 0;

  bool IsPresent(ePresentProperty property) const { return (mPresentProperties & property) != 0; }
  SK_TimeFormat const& GetTimeFormat() const { return mTimeFormat; }

  // Each stores a value that the validator has passed.

  /// Code 41 for a drop frame rate other than 29.97 and 59.94.
  void CacheTimeCode(JValue const& timecodeInfo);
  void CacheUtcInfo(JValue const& utcInfo);
  void CacheSyncTime(JValue const& syncTimes);

  /// Raises an error at the position `p` of the input.
  template <typename... Values>
  [[noreturn]] void ThrowAt(char const* p, eErrorCode code, char const* literal, Values const&... values) const {
    ThrowError({code, literal, p - mFileStartAddress, -1}, values...);
  }
  /// `key` is no key of the top level in this version; its value stands at `p`.
  [[noreturn]] void RejectKey(char const* p, char const* key) const;

 private:
  struct SchemaField;
  static SchemaField const* FindSchemaField(std::string const& key);

  void ParseTopLevel(char const* begin, char const* end);
  char const* ParseProperty(char const* p, char const* end, std::string const& key);
  void CheckRequiredProperties() const;
  /// An entry of the cache for each dynamic node. Code 37 for an id that comes twice.
  void CacheDynamicDataOutline(std::vector<JValue const*> const& dynamicNodes);
  char const* CreateAndPopulateTempFile(char const* p);
  void ComputeStartTimeAndDuration();

  std::uint16_t mPresentProperties = 0;  // bits of ePresentProperty
  JDocument mDataOutline;
  JAllocator mAllocator;  // of mDataOutline, which neither takes from it nor gives back when made or destroyed
  char const* mFileStartAddress = nullptr;
  std::string mFilePath;
  std::uint64_t mFileSize = 0;
  SK_DataCache mDataCache;
  std::vector<SK_DataCache::value_type*> mSetsInOrder;  // of mDataCache, in the order of the outline
  std::vector<ns_sensor::SK_VideoSyncTime> mSyncInfo;
  TemporalRange mTemporalRange;  // first and last time text of the file
  ns_sensor::SK_Time mFileDuration;
  std::string mCreator;
  std::string mVersion;
  SK_SampleSectionCopy mSectionCopy;
  std::unique_ptr<SK_TempFileHandler> mTempFileHandler;  // empty until samples are met
  std::shared_ptr<SK_SampleDataProcessor> mSampleDataProcessor;
  SK_TimeFormat mTimeFormat;
  bool mUseTimecodeB = false;
};

}  // namespace SK_NAMESPACE_INT
