/// Turns a motion capture file (Biovision Hierarchy) into a data file: joints into groups, their offsets into
/// static nodes, their channels into dynamic ones, and each line of motion into one sample of each.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "BVHInput.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_LongNames.h"
#include "SkeletonNode.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {

class BVHConverter : public SK_ConverterHandlerBase {
 public:
  /// namesLimit  bytes that the long names of all joints and nodes may have together
  explicit BVHConverter(SK_NAMESPACE_INT::SK_PathInfo const& pathInfo, std::uint64_t namesLimit = SK_LongNames::kLimit)
      : SK_ConverterHandlerBase(pathInfo), mNames(namesLimit) {}
  /// What was not committed leaves the writer.
  ~BVHConverter() override;
  BVHConverter(BVHConverter const&) = delete;
  BVHConverter& operator=(BVHConverter const&) = delete;

  /// True, or an `SK_PLUGIN::SK_PluginException` (`eBVHError`), or what the writer throws. Too many long names end
  /// in `std::bad_alloc`.
  bool convertToTDJSON() override;

 private:
  using Group = std::shared_ptr<SK_PLUGIN::ITdjsonGroup_v1>;
  using Channels = std::shared_ptr<SK_PLUGIN::ITdjsonDynamicDataNumArr_v1>;

  void CreateRoot();
  /// The group of a joint, with its nodes and the groups of all joints below it.
  Group CreateTdjsonNode(SkeletonNode const& skeleton);
  Group CreateJointGroup(SkeletonNode const& joint);
  std::string MatchNameOf(std::string const& displayName);
  Channels CreateChannels(std::string const& name, SK_NumberArrayProperties const& properties);
  std::string GetNextSampleSetID();

  void ParseChannelData(BVHInput& input);
  /// The numbers of one line of motion. False if it has none.
  bool ReadFrame(std::string_view line);
  void AddFrame();

  std::shared_ptr<SK_PLUGIN::ITdjsonRoot_v1> mRoot;
  double mFrameRate = 0;
  std::uint32_t mSampleSetCounter = 0;
  SK_DateTimeSMPTE mCurrentTime;  ///< of the next line of motion
  /// In the order of the numbers on a line, three for each. Without an order: a position.
  std::vector<std::pair<Channels, eEulerOrder>> mChannelNodes;
  std::shared_ptr<SkeletonNode> mSkeleton;
  SK_LongNames mNames;          ///< those of the skeleton and of its nodes in the writer
  std::vector<double> mFrame;   ///< the numbers of one line
  std::vector<double> mSample;  ///< those of one node
};

/// For the registry. The uid is not looked at.
bool BVH_CheckFormat(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);
std::shared_ptr<SK_ConverterHandlerBase> BVHConverter_CTor(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

}  // namespace ns_sensor
