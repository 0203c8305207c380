/// The border of a handler: asks it for a result in the ordinary way, then hands the result to the host
/// field by field through its procs. All memory stays the library's.
#pragma once

#include "senmark/ISensorFileHandler.h"

namespace SK_NAMESPACE_INT {
class SK_SampleBlock;
}

namespace ns_sensor {

class ISensorFileHandler_I : public virtual ISensorFileHandler {
 public:
  void getRootChildren(void* client, void* error) override;
  void getGroupChildren(char const* path, std::uint64_t length, void* client, void* error) override;
  void getGroupChildInfo(char const* path, std::uint64_t length, void* client, void* error) override;
  void getStaticDataInfo(char const* path, std::uint64_t length, void* client, void* error) override;
  void getDynamicDataInfo(char const* path, std::uint64_t length, void* client, void* error) override;
  void getDynamicSamples(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                         std::int32_t endValue, std::uint32_t endScale, void* client, void* error) override;
  void getAdjacentSamples(char const* id, std::uint64_t length, std::int32_t timeValue, std::uint32_t timeScale,
                          void* client, void* error) override;
  void getFileInfo(SK_FileInfo* info, void* client, void* error) override;
  void getVideoSyncTime(std::vector<SK_VideoSyncTime>* list, void* client, void* error) override;
  void getSampleInfo(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                     std::int32_t endValue, std::uint32_t endScale, SK_DynamicSampleInfo* info, unsigned char adjacent,
                     void* client, void* error) override;

 protected:
  /// The samples of a query, column by column: what the border reads, without a record for each sample.
  /// Results and errors are those of `GetDynamicSamples_I` and `GetAdjacentSamples_I`.
  virtual void ReadDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                  SK_NAMESPACE_INT::SK_SampleBlock& samples, bool& reversed) = 0;
  virtual void ReadAdjacentSamples(std::string const& id, SK_Time const& time,
                                   SK_NAMESPACE_INT::SK_SampleBlock& samples) = 0;
};

}  // namespace ns_sensor
