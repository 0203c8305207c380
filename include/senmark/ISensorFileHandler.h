/// One opened file: its tree of nodes, its values and its samples.
///
/// Hosts call the operations with a lower-case initial, which never throw: results go to the entries
/// of `SK_ClientProcs`, failures to its entry 11. The others throw and are for callers inside the
/// library. Queries change nothing and take no lock, so several threads may ask one handler at once.
///
/// Three arguments are the same everywhere:
/// path    text form of a data path below the root, like `["arm"][2]["hand"]`: per segment a match name
///         in double quotes or an index from 0. UTF-8, `length` bytes; no NUL is needed behind it.
/// client  passed on unchanged as the first argument of the procs; error: the same for entry 11.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "senmark/SK_BasicRecords.h"

namespace ns_sensor {

struct SK_DynamicDataInfo;
struct SK_DynamicDataSample;
struct SK_StaticDataInfo;
struct SK_VideoSyncTime;

/// Binary interface: the order of the virtual functions is fixed.
class ISensorFileHandler {
 public:
  virtual void GetRootChildren(std::vector<SK_DataPath>* children) = 0;
  virtual void GetGroupChildren(std::string const& path, std::vector<SK_DataPath>* children) = 0;
  virtual void GetGroupChildInfo(std::string const& path, SK_GroupChildInfo* info) = 0;
  virtual void GetStaticDataInfo(std::string const& path, SK_StaticDataInfo* info) = 0;
  virtual void GetDynamicDataInfo(std::string const& path, SK_DynamicDataInfo* info) = 0;
  virtual void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                 std::vector<SK_DynamicDataSample>* samples) = 0;
  virtual void GetAdjacentSamples(std::string const& id, SK_Time const& time,
                                  std::vector<SK_DynamicDataSample>* samples) = 0;
  virtual void GetFileInfo(SK_FileInfo* info) = 0;
  virtual void GetVideoSyncTime(std::vector<SK_VideoSyncTime>* list) = 0;
  virtual void GetSampleInfo(std::string const& id, SK_Time const& start, SK_Time const& end,
                             SK_DynamicSampleInfo* info, bool adjacent) = 0;

  /// Never called by a host: `ISenmark::closeFile` ends a handler.
  virtual ~ISensorFileHandler() = default;

  /// Names the children of the outline through the path proc (entry 0).
  ///
  /// Calls:  the root once, with isLast 0; then one call per child, isLast 1.
  /// Errors: 21 no client procs.
  virtual void getRootChildren(void* client, void* error) = 0;

  /// Names the children of one group, in the order of the file, through the path proc (entry 0).
  ///
  /// Calls:  the root and the group's own segments once, isLast 0; then one call per child, isLast 1.
  /// Errors: 1 empty path; 33 no such node, not a group, or no "[" where one must be; 45 no "]";
  ///         34 an index that is no number; 21 no client procs.
  virtual void getGroupChildren(char const* path, std::uint64_t length, void* client, void* error) = 0;

  /// Tells kind and names of one node, of any kind, through entry 4.
  ///
  /// Errors: as `getGroupChildren`.
  virtual void getGroupChildInfo(char const* path, std::uint64_t length, void* client, void* error) = 0;

  /// Tells names, properties and value of one static node through entry 2.
  ///
  /// Errors: as `getGroupChildren`, with 33 also for a node of another kind; 34 a number whose text
  ///         cannot be read.
  virtual void getStaticDataInfo(char const* path, std::uint64_t length, void* client, void* error) = 0;

  /// Tells names, properties, sample set and time extent of one dynamic node through entry 3.
  ///
  /// Errors: as `getGroupChildren`, with 33 also for a node of another kind.
  virtual void getDynamicDataInfo(char const* path, std::uint64_t length, void* client, void* error) = 0;

  /// Sends the samples of one set in a range of time through entries 9 and 5.
  ///
  /// id          "sampleSetID" of the dynamic node, `length` bytes.
  /// start, end  seconds as value and scale, from the file's first sample.
  ///
  /// The first sample sent is the one at `start`, or the last one before it; before all samples: the
  /// first. The last sample sent is found from `end` in the same way. Where several samples have one
  /// time, the first of them counts. With `start` later than `end` the samples come in reverse order.
  ///
  /// Errors:  1 a scale of 0; 21 the range has no samples, or no client procs; 34 no memory, or a number
  ///          that cannot be read; 35 no node has this id; 36 the set ends behind the file; 38 the set
  ///          has no samples; 39 a sample is malformed. All samples of the range are read before the
  ///          first one is sent, so an error comes alone.
  /// Memory:  in proportion to the samples of the range.
  virtual void getDynamicSamples(char const* id, std::uint64_t length, std::int32_t startValue,
                                 std::uint32_t startScale, std::int32_t endValue, std::uint32_t endScale, void* client,
                                 void* error) = 0;

  /// Sends the samples around one time through entries 9 and 5: with a sample at that time, it and its
  /// two neighbours; otherwise the two around it. At or beyond an end of the set: what there is.
  ///
  /// Errors: as `getDynamicSamples`; 21 also for the very time of the only sample of a set.
  virtual void getAdjacentSamples(char const* id, std::uint64_t length, std::int32_t timeValue, std::uint32_t timeScale,
                                  void* client, void* error) = 0;

  /// Fills `*info`, which must not be null, and tells the same through entry 6.
  ///
  /// The record holds standard strings: host and library must share one C++ standard library.
  /// Errors: 1 null `info`; 21 no client procs.
  virtual void getFileInfo(SK_FileInfo* info, void* client, void* error) = 0;

  /// Fills `*list`, which must not be null, and sends each entry through entry 7.
  ///
  /// The list holds standard members: host and library must share one C++ standard library, and the
  /// records of `SK_Records.h`.
  /// Errors: 1 null `list`; 21 no client procs.
  virtual void getVideoSyncTime(std::vector<SK_VideoSyncTime>* list, void* client, void* error) = 0;

  /// Tells in `*info` how many samples `getDynamicSamples` would send (`adjacent` 0), or
  /// `getAdjacentSamples` for `start` (otherwise), and of which kind. No sample is read, and a count of
  /// 0 is no error here.
  ///
  /// Errors: 1 null `info` or a scale of 0; 35, 36, 38, 39 as `getDynamicSamples`.
  virtual void getSampleInfo(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                             std::int32_t endValue, std::uint32_t endScale, SK_DynamicSampleInfo* info,
                             unsigned char adjacent, void* client, void* error) = 0;

  /// The samples as an array from `new[]`, which the caller owns. Null with a count of 0 when there are
  /// none. `reversed`: the caller is to read it from the end.
  virtual void GetDynamicSamples_I(std::string const& id, SK_Time const& start, SK_Time const& end,
                                   SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed) = 0;
  virtual void GetAdjacentSamples_I(std::string const& id, SK_Time const& time, SK_DynamicDataSample*& samples,
                                    unsigned long long& count) = 0;
};

}  // namespace ns_sensor
