#include "BVHParser.h"

#include <new>
#include <vector>

#include "BVHError.h"
#include "BVHLine.h"

namespace ns_sensor {
namespace {

constexpr std::size_t kLongName = 1024;
constexpr std::size_t kLongNamesLimit = std::size_t{1} << 25U;

/// Counts the names that joints get from the joint above them: as that of an end, which holds the whole name above, and
/// as that of the parent. A file of some kilobytes could ask for gigabytes of them, and is given up before.
class InheritedNames {
 public:
  std::string const& Count(std::string const& name) {
    mLongNames += name.size() > kLongName ? name.size() : 0;
    if (mLongNames > kLongNamesLimit) {
      throw std::bad_alloc();
    }
    return name;
  }

 private:
  std::size_t mLongNames = 0;
};

/// A joint whose closing brace has not come yet.
struct OpenJoint {
  std::shared_ptr<SkeletonNode> node;
  bool isEndSite;
};

OpenJoint BeginJoint(BVHInput& input, std::string const& name, bool isEndSite) {
  OpenJoint joint{std::make_shared<SkeletonNode>(), isEndSite};
  joint.node->SetName(name);
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

void HangOn(SkeletonNode& parent, std::shared_ptr<SkeletonNode> child, InheritedNames& inherited) {
  child->SetParentName(inherited.Count(parent.GetName()));
  parent.AddChild(std::move(child));
}

/// Reads one more line of the innermost joint. A joint that begins there becomes the innermost one.
///
/// Gives whether the line closed it.
bool ReadJointLine(BVHInput& input, std::vector<OpenJoint>& joints, InheritedNames& inherited) {
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
    joints.push_back(BeginJoint(input, name, false));
  } else if (word == "End") {
    std::string site;
    line.Read(site);
    if (site != "Site") {
      ThrowBVHError(eBVHError::kBadHierarchy);
    }
    joints.push_back(BeginJoint(input, inherited.Count(node.GetName() + "End"), true));
  }
  return word == "}";
}

}  // namespace

std::shared_ptr<SkeletonNode> ParseSkeleton(BVHInput& input) {
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
  return IterativeNodeBuilder(input, name, false);
}

std::shared_ptr<SkeletonNode> IterativeNodeBuilder(BVHInput& input, std::string const& name, bool isEndSite) {
  std::vector<OpenJoint> joints = {BeginJoint(input, name, isEndSite)};
  InheritedNames inherited;
  while (true) {
    std::size_t const depth = joints.size();
    bool const isClosed = ReadJointLine(input, joints, inherited);
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
      HangOn(*joints.back().node, std::move(node), inherited);
      ends = !input.IsGood();
    }
  }
}

}  // namespace ns_sensor
