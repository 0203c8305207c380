#include "BVHConverter.h"

#include "BVHError.h"
#include "BVHFrameRate.h"
#include "BVHLine.h"
#include "BVHParser.h"
#include "EulerAngles.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::SK_PathInfo;
using SK_PLUGIN::Writer_Wrapper;

namespace {

constexpr double kShortestFrameTime = 0.001;  ///< seconds; a frame takes longer than that
constexpr std::size_t kAxes = 3;

SK_NumberArrayProperties ThreeNumbers(eEulerOrder order, std::string const& kind, bool isPoint) {
  SK_NumberArrayProperties properties;
  properties.arraySize = kAxes;
  properties.isPoint = isPoint;
  FillDisplayNames(order, kind, properties.arrayDisplayNames);
  return properties;
}

/// A joint whose children are being made.
struct OpenGroup {
  SkeletonNode const* joint;
  std::shared_ptr<SK_PLUGIN::ITdjsonGroup_v1> group;
  std::size_t nextChild;
};

}  // namespace

BVHConverter::~BVHConverter() {
  Writer_Wrapper::RemoveRoot_Wrapper(this);
}

bool BVHConverter::convertToTDJSON() {
  BVHInput input(mPathInfo.filePath);
  if (!input.IsOpen()) {
    ThrowBVHError(eBVHError::kCannotOpen);
  }
  mSkeleton = ParseSkeleton(input, mNames);
  // The count is not needed, for lines of motion go on to the end of the file. But the frame time stands
  // behind it.
  std::uint64_t frameCount = 0;
  StraightUntilYouHit(input, "Frames:", frameCount);
  double frameTime = 0;
  StraightUntilYouHit(input, "Frame Time:", frameTime);
  if (!(frameTime > kShortestFrameTime)) {
    ThrowBVHError(eBVHError::kBadFrameTime);
  }
  mFrameRate = GetFrameRate(frameTime);
  CreateRoot();
  mRoot->AddGroup(CreateTdjsonNode(*mSkeleton));
  ParseChannelData(input);
  mRoot->Commit();
  return true;
}

void BVHConverter::CreateRoot() {
  SK_DynamicFileInfo info;
  info.timeInfo = CalculateTimeCode(mFrameRate);
  mRoot = Writer_Wrapper::CreateRoot_Wrapper(this, mPathInfo.outputPath.c_str(), &info);
  mRoot->SetCreator("com.velmo.sensor.bvh");
}

BVHConverter::Group BVHConverter::CreateTdjsonNode(SkeletonNode const& skeleton) {
  // Joints nest as deep as the file likes, so that the way back up is kept here and not by nested calls.
  std::vector<OpenGroup> open = {{&skeleton, CreateJointGroup(skeleton), 0}};
  while (true) {
    OpenGroup& innermost = open.back();
    SkeletonNode::Children const& children = innermost.joint->GetChildren();
    if (innermost.nextChild != children.size()) {
      SkeletonNode const& child = *children[innermost.nextChild++];
      open.push_back({&child, CreateJointGroup(child), 0});
      continue;
    }
    Group group = std::move(innermost.group);
    open.pop_back();
    if (open.empty()) {
      return group;
    }
    open.back().group->AddGroup(group);
  }
}

BVHConverter::Group BVHConverter::CreateJointGroup(SkeletonNode const& joint) {
  std::string const& name = joint.GetName();
  Group group = Writer_Wrapper::CreateGroup_Wrapper(this, MatchNameOf(name), mNames.Counted(name));

  std::string const offsetName = mNames.Counted(name + "OFFSET");
  SkeletonNode::Offset const& offset = joint.GetOffset();
  group->AddStaticData(Writer_Wrapper::CreateStaticDataNumArr_Wrapper(this, MatchNameOf(offsetName), offsetName,
                                                                      {offset.begin(), offset.end()},
                                                                      ThreeNumbers(kEulerXYZ, "OFFSET", true)));
  // A line of motion has positions first, as long as the channel lines list them first.
  if (joint.GetPositionOrder() != kNoEulerOrder) {
    Channels const channels =
        CreateChannels(name + "POSITION", ThreeNumbers(joint.GetPositionOrder(), "POSITION", true));
    group->AddDynamicData(channels);
    mChannelNodes.emplace_back(channels, kNoEulerOrder);
  }
  if (joint.GetRotationOrder() != kNoEulerOrder) {
    // Angles are computed as X, Y, Z whatever their order in the file.
    Channels const channels = CreateChannels(name + "ROTATION", ThreeNumbers(kEulerXYZ, "ROTATION", false));
    group->AddDynamicData(channels);
    mChannelNodes.emplace_back(channels, joint.GetRotationOrder());
  }
  return group;
}

BVHConverter::Channels BVHConverter::CreateChannels(std::string const& name,
                                                    SK_NumberArrayProperties const& properties) {
  SK_DynamicDataFields fields;
  fields.displayName = mNames.Counted(name);
  fields.matchName = MatchNameOf(name);
  fields.sampleSetID = GetNextSampleSetID();
  fields.interpolation = kLinearInterpolation;
  return Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, fields, properties);
}

std::string BVHConverter::MatchNameOf(std::string const& displayName) {
  return mNames.Counted("mn" + displayName);
}

std::string BVHConverter::GetNextSampleSetID() {
  return std::to_string(mSampleSetCounter++);
}

void BVHConverter::ParseChannelData(BVHInput& input) {
  while (input.IsGood()) {
    if (ReadFrame(input.ReadLine())) {
      AddFrame();
      IncrementSmpteTime(mCurrentTime, mFrameRate);
    }
  }
  for (auto const& [channels, order] : mChannelNodes) {
    channels->Commit();
  }
}

bool BVHConverter::ReadFrame(std::string_view line) {
  mFrame.clear();
  std::size_t const wanted = mChannelNodes.size() * kAxes;
  BVHLine numbers(line);
  double number = 0;
  while (mFrame.size() <= wanted && numbers.Read(number)) {
    mFrame.push_back(number);
  }
  if (!mFrame.empty() && mFrame.size() != wanted) {
    ThrowBVHError(eBVHError::kBadHierarchy);
  }
  return !mFrame.empty();
}

void BVHConverter::AddFrame() {
  SK_PLUGIN::SampleTime const time = mCurrentTime;
  double* numbers = mFrame.data();
  for (auto const& [channels, order] : mChannelNodes) {
    mSample.clear();
    if (order == kNoEulerOrder) {
      mSample.insert(mSample.end(), {numbers[0], -numbers[1], -numbers[2]});
    } else {
      ShuffleArray(order, numbers);
      CalEulerAngles(numbers, mSample, order);
    }
    channels->AddSample(time, mSample);
    numbers += kAxes;
  }
}

namespace {

/// Takes the first word of a line if it is this one. A file of another kind can be one long line, so nothing
/// is kept, and nothing read behind the first byte that differs.
bool TakeWord(SK_InputBytes& bytes, std::string_view word) {
  while (bytes.Peek() != '\n' && IsWordSpace(bytes.Peek())) {
    bytes.Skip(1);
  }
  for (char const letter : word) {
    if (bytes.Get() != static_cast<unsigned char>(letter)) {
      return false;
    }
  }
  return bytes.Peek() == SK_InputBytes::kEnd || IsWordSpace(bytes.Peek());
}

void SkipLine(SK_InputBytes& bytes) {
  for (std::string_view window = bytes.Window(); !window.empty(); window = bytes.Window()) {
    std::size_t const lineEnd = window.find('\n');
    if (lineEnd != std::string_view::npos) {
      bytes.Skip(lineEnd + 1);
      return;
    }
    bytes.Skip(window.size());
  }
}

}  // namespace

bool BVH_CheckFormat(std::string&, SK_PathInfo const& file) {
  SK_InputBytes bytes(file.filePath);
  if (!bytes.IsOpen()) {
    ThrowBVHError(eBVHError::kCannotOpen);
  }
  if (!TakeWord(bytes, "HIERARCHY")) {
    return false;
  }
  SkipLine(bytes);
  return TakeWord(bytes, "ROOT");
}

std::shared_ptr<SK_ConverterHandlerBase> BVHConverter_CTor(std::string&, SK_PathInfo const& file) {
  return std::make_shared<BVHConverter>(file);
}

}  // namespace ns_sensor
