#include "BVHParser.h"

#include <vector>

#include "BVHError.h"
#include "BVHLine.h"

namespace ns_sensor {
namespace {

/// A joint whose closing brace has not come yet.
struct OpenJoint {
  std::shared_ptr<SkeletonNode> node;
  bool isEndSite;
};

OpenJoint BeginJoint(BVHInput& input, std::string const& name, bool isEndSite, SK_LongNames& names) {
  OpenJoint joint{std::make_shared<SkeletonNode>(), isEndSite};
  joint.node->SetName(names.Counted(name));
  if (input.ReadLine().find('{') == std::string_view::npos) {
    ThrowBVHError(eBVHError::kBadHierarchy);
  }
  return joint;
}

/// Three numbers and nothing behind them. Missing ones are 0, for then nothing stands behind them either.
void ReadOffset(BVHLine& line, SkeletonNode& node) {
  SkeletonNode::Offset offset{};
  for (double& number : offset) {
    line.Read(number);
  }
  std::string more;
  line.Read(more);
  if (!more.empty()) {
    ThrowBVHError(eBVHError::kBadHierarchy);
  }
  node.SetOffset(offset);
}

void ReadChannels(BVHLine& line, std::string_view text, SkeletonNode& node) {
  std::int32_t count = 0;
  line.Read(count);
  if (count != 3 && count != 6) {
    ThrowBVHError(eBVHError::kBadHierarchy);
  }
  if (count == 6) {
    node.SetPositionOrder(GetPositionOrder(text));
  }
  node.SetRotationOrder(GetRotationOrder(text));
}

void HangOn(SkeletonNode& parent, std::shared_ptr<SkeletonNode> child, SK_LongNames& names) {
  child->SetParentName(names.Counted(parent.GetName()));
  parent.AddChild(std::move(child));
}

/// Reads one more line of the innermost joint. A joint that begins there becomes the innermost one.
///
/// Gives whether the line closed it.
bool ReadJointLine(BVHInput& input, std::vector<OpenJoint>& joints, SK_LongNames& names) {
  SkeletonNode& node = *joints.back().node;
  bool const isEndSite = joints.back().isEndSite;
  std::string_view const text = input.ReadLine();
  BVHLine line(text);
  std::string word;
  line.Read(word);
  if (word == "OFFSET") {
    ReadOffset(line, node);
  } else if (word == "CHANNELS" && !isEndSite) {
    ReadChannels(line, text, node);
  } else if (word == "JOINT" && !isEndSite) {
    std::string name;
    line.Read(name);
    joints.push_back(BeginJoint(input, name, false, names));
  } else if (word == "End") {
    std::string site;
    line.Read(site);
    if (site != "Site") {
      ThrowBVHError(eBVHError::kBadHierarchy);
    }
    joints.push_back(BeginJoint(input, node.GetName() + "End", true, names));
  }
  return word == "}";
}

}  // namespace

std::shared_ptr<SkeletonNode> ParseSkeleton(BVHInput& input, SK_LongNames& names) {
  std::string word;
  BVHLine(input.ReadLine()).Read(word);
  if (word != "HIERARCHY") {
    ThrowBVHError(eBVHError::kNoHierarchy);
  }
  BVHLine line(input.ReadLine());
  word.clear();
  line.Read(word);
  if (word != "ROOT") {
    ThrowBVHError(eBVHError::kNoHierarchy);
  }
  std::string name;
  line.Read(name);
  return IterativeNodeBuilder(input, name, false, names);
}

std::shared_ptr<SkeletonNode> IterativeNodeBuilder(BVHInput& input, std::string const& name, bool isEndSite,
                                                   SK_LongNames& names) {
  std::vector<OpenJoint> joints = {BeginJoint(input, name, isEndSite, names)};
  while (true) {
    std::size_t const depth = joints.size();
    bool const isClosed = ReadJointLine(input, joints, names);
    if (joints.size() != depth) {
      continue;
    }
    // A last line without line end closes all joints that are open.
    bool ends = isClosed || !input.IsGood();
    while (ends) {
      if (input.HasFailed()) {
        ThrowBVHError(eBVHError::kBadHierarchy);
      }
      std::shared_ptr<SkeletonNode> node = std::move(joints.back().node);
      joints.pop_back();
      if (joints.empty()) {
        return node;
      }
      HangOn(*joints.back().node, std::move(node), names);
      ends = !input.IsGood();
    }
  }
}

}  // namespace ns_sensor
