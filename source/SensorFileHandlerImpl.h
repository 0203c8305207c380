/// One opened data file: owns its parser and the queries over it, and checks what a client passes.
///
/// The object exists only for a file that has been parsed and validated; from then on nothing in it
/// changes, so that threads may ask it at once.
#pragma once

#include <memory>
#include <string>

#include "ISensorFileHandler_I.h"
#include "SK_DataQuery.h"
#include "SK_FormatVersion.h"

namespace SK_NAMESPACE_INT {
class SK_TdjsonParser;
}

namespace ns_sensor {

class SensorFileHandlerImpl : public ISensorFileHandler_I {
 public:
  /// nativePath  what the client opened; filePath: the file in the system's format to read, which is the
  ///             same unless it was converted. version: as far as it is known.
  /// Errors of parsing pass to the caller, as `SK_Exception`.
  SensorFileHandlerImpl(char const* nativePath, unsigned long long nativePathLength, char const* filePath,
                        unsigned long long filePathLength, SK_NAMESPACE_INT::eTDJSONVersion version);
  ~SensorFileHandlerImpl() override;
  SensorFileHandlerImpl(SensorFileHandlerImpl const&) = delete;
  SensorFileHandlerImpl& operator=(SensorFileHandlerImpl const&) = delete;

  std::string const& getFilePath() const { return mFilePath; }
  std::string const& getNativeFilePath() const { return mNativeFilePath; }

  void GetRootChildren(std::vector<SK_DataPath>* children) override;
  void GetGroupChildren(std::string const& path, std::vector<SK_DataPath>* children) override;
  void GetGroupChildInfo(std::string const& path, SK_GroupChildInfo* info) override;
  void GetStaticDataInfo(std::string const& path, SK_StaticDataInfo* info) override;
  void GetDynamicDataInfo(std::string const& path, SK_DynamicDataInfo* info) override;
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         std::vector<SK_DynamicDataSample>* samples) override;
  void GetAdjacentSamples(std::string const& id, SK_Time const& time,
                          std::vector<SK_DynamicDataSample>* samples) override;
  void GetFileInfo(SK_FileInfo* info) override;
  void GetVideoSyncTime(std::vector<SK_VideoSyncTime>* list) override;
  void GetSampleInfo(std::string const& id, SK_Time const& start, SK_Time const& end, SK_DynamicSampleInfo* info,
                     bool adjacent) override;
  void GetDynamicSamples_I(std::string const& id, SK_Time const& start, SK_Time const& end,
                           SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed) override;
  void GetAdjacentSamples_I(std::string const& id, SK_Time const& time, SK_DynamicDataSample*& samples,
                            unsigned long long& count) override;

 protected:
  void ReadDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                          SK_NAMESPACE_INT::SK_SampleBlock& samples, bool& reversed) override;
  void ReadAdjacentSamples(std::string const& id, SK_Time const& time,
                           SK_NAMESPACE_INT::SK_SampleBlock& samples) override;

 private:
  void Parse();

  std::string mNativeFilePath;  // the key of the manager's map
  std::string mFilePath;
  std::unique_ptr<SK_NAMESPACE_INT::SK_DataQuery> mDataQuery;
  std::shared_ptr<SK_NAMESPACE_INT::SK_TdjsonParser> mParser;
  SK_NAMESPACE_INT::eTDJSONVersion mVersion;
};

}  // namespace ns_sensor
