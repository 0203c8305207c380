/// Writes one data file in three stages: the head, the sample sets as they are committed, the tail with the
/// outline. Only after the last one it is one JSON text, without any white space.
///
/// Failures are `SK_PluginException`s: the codes of file operations plus 1000, those told here, and 2005 for a
/// serializer without a root. Memory that is missing while text is made is `std::bad_alloc`.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ns_sensor {
struct SK_NumberArrayProperties;
struct SK_NumberProperties;
struct SK_StringProperties;
}  // namespace ns_sensor

namespace SK_PLUGIN {

class SK_DumpSamplesUtils;
class SerializerBuffer;
class TdjsonRootImpl;

/// Lives by value beside its root in the registry; copies of one must not both write.
class Serializer {
 public:
  Serializer() = default;
  explicit Serializer(std::shared_ptr<TdjsonRootImpl> root);

  /// The head: creates the file, or empties it. 2024 without time information that the samples need.
  void serializeVersionToFile();

  /// One sample set, appended to the file. `sampleCount` is of the samples that the node took, not of those it
  /// claims; none leave no trace. 2014 for a sample of which just one of time and value is empty.
  void serialize_NumDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump, std::uint64_t sampleCount,
                                   ns_sensor::SK_NumberProperties const& properties);
  void serialize_NumArrDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump,
                                      std::uint64_t sampleCount, ns_sensor::SK_NumberArrayProperties const& properties);
  void serialize_PaddedStrDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump,
                                         std::uint64_t sampleCount, ns_sensor::SK_StringProperties const& properties);

  /// The tail: creator and outline. 2000, 2016, 2020, 2021, 2023, 2026.
  void serializeRootToFile();

  /// Cuts a failed set off the file again. 2004 if that fails too; the file is then empty.
  void clearDynamicSamples();
  /// Begins anew with an empty file and a root without children.
  void clearFile();

 private:
  void RequireRoot() const;
  void serialize_version(SerializerBuffer& text) const;
  void serialize_DynamicInfo(SerializerBuffer& text) const;
  void DropPromiseOfSamples();
  template <typename AppendSample, typename AppendMany>
  void serializeSet(std::string const& sampleSetID, SK_DumpSamplesUtils& dump, std::uint64_t sampleCount,
                    AppendSample const& appendSample, AppendMany const& appendMany);
  template <typename AppendSample>
  void addToBuffer(SerializerBuffer& buffer, AppendSample const& appendSample);
  void serializeSamplesToFile(std::string_view text, bool last);
  void reserveBlocks(std::size_t size);

  std::shared_ptr<TdjsonRootImpl> mRoot;
  std::int32_t mFileDescriptor = -1;
  std::string mFilePath;
  bool mVersionWritten = false;
  bool mSamplesStarted = false;        ///< the array of sets is open and one set is in it
  std::int64_t mSetStartOffset = -1;   ///< length of the file before the set that is being written
  std::int64_t mLength = 0;            ///< of the file with what of that set has been written
  std::int64_t mReservedLength = 0;    ///< of the file, for which blocks have been set aside
  std::uint64_t mLikelySetSize = 0;    ///< of the text of that set's samples
  std::size_t mBytesToPieceEnd = 0;    ///< of its samples, so many make the next piece
  std::int64_t mHeaderEndOffset = -1;  ///< length of the opening brace and the version
};

}  // namespace SK_PLUGIN
