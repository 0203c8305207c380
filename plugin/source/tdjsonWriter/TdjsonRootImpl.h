/// The root of one output file, and the registry of all roots by converter key.
///
/// The registry takes no lock: two conversions must not overlap in time.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ITdjsonRoot_I.h"
#include "Serializer.h"
#include "TdjsonGroupImpl.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonRootImpl : public virtual ITdjsonRoot_I, public virtual TdjsonGroupImpl, public virtual SharedObjectImpl {
 public:
  /// Throws an `SK_PluginException` with code 1505 for a path that is null or empty.
  TdjsonRootImpl(void* key, char const* path);

  /// A failed commit leaves an empty file and no children.
  bool Commit() override;
  void SetCreator(std::string const& creator) override;
  void setSMPTETimeInfo(unsigned char dropFrame, unsigned value, unsigned scale, void* result) override;
  void setUTCTimeInfo(unsigned precision, unsigned char isGMT, void* result) override;
  void addSyncTimeFrameNum(char const* fileName, int frameNumber, void* result) override;
  void addSyncTimeStr(char const* fileName, char const* timeString, unsigned long long length, void* result) override;
  void writeVersionToFile(void* result) override;

  virtual std::string const& GetTDJSONPath() const;
  virtual boost::variant<ns_sensor::SK_UTCInfo, ns_sensor::SK_TimeCodeInfo> const& GetTimeInfo() const;
  virtual std::vector<ns_sensor::SK_VideoSyncTime> const& GetVideoSyncTimeList() const;
  virtual bool IsTimeCodeUsed() const;
  virtual bool IsDynamicSamplesPresent() const;
  virtual std::string const& GetCreator() const;  ///< escaped
  /// True once: for the first sample set of the file.
  virtual bool SetHasFirstSetArrived();
  /// Lets go of the children and begins anew; time base, creator and sync times stay.
  virtual void ResetRoot();
  virtual unsigned short GetTimeLength() const;  ///< characters of every sample time
  virtual unsigned short GetUTCPrecision() const;

  /// The mirrors of the border forms; each throws an `SK_Exception`.
  void SetSMPTETimeInfo(bool dropFrame, std::uint32_t value, std::uint32_t scale);
  void SetUTCTimeInfo(std::uint16_t precision, bool isGMT);
  void AddSyncTimeFrameNum(std::string const& fileName, int frameNumber);
  void AddSyncTimeStr(std::string const& fileName, std::string const& timeString);
  void WriteVersionToFile();

  /// Empty without a root under `key`.
  static std::shared_ptr<TdjsonRootImpl> GetRoot(void* key);
  /// A root that is there already stays.
  static void RegisterInstance(void* key, std::shared_ptr<TdjsonRootImpl> const& root);
  /// Of an unknown key: one without a root.
  static Serializer& GetSerializer(void* key);
  static void RemoveInstance(void* key);
  /// Those whose output file this is, whatever their keys, and what calls for unknown keys have left.
  static void RemoveInstancesOf(std::string const& path);

 private:
  void* mConverterKey;
  bool mHasFirstSetArrived = false;
  std::string mCreator;
  std::string mTdjsonPath;
  bool mDynamicSamplesPresent = false;
  bool mTimeCodeUsed = false;
  unsigned short mTimeLength = 0;
  unsigned short mUTCPrecision = 0;
  boost::variant<ns_sensor::SK_UTCInfo, ns_sensor::SK_TimeCodeInfo> mTimeInfo;
  std::vector<ns_sensor::SK_VideoSyncTime> mVideoSyncTimeList;
  bool mCommitted = false;

  /// Owns every living root. Native converters and modules hold references beside it.
  static std::map<void*, std::pair<std::shared_ptr<TdjsonRootImpl>, Serializer>> mRootMap;
};

}  // namespace SK_PLUGIN
