/// One joint of a motion capture skeleton, or the end of a limb, with what hangs on it.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "eEulerOrder.h"

namespace ns_sensor {

class SkeletonNode {
 public:
  using Offset = std::array<double, 3>;  ///< X, Y, Z
  using Children = std::vector<std::shared_ptr<SkeletonNode>>;

  SkeletonNode() = default;
  /// Skeletons can be deep: what hangs below goes one by one, without nested calls and without new memory.
  ~SkeletonNode();
  SkeletonNode(SkeletonNode const&) = delete;
  SkeletonNode& operator=(SkeletonNode const&) = delete;

  void SetName(std::string name) { mName = std::move(name); }
  void SetParentName(std::string name) { mParentName = std::move(name); }
  void SetOffset(Offset const& offset) { mOffset = offset; }
  void SetPositionOrder(eEulerOrder order) { mPositionOrder = order; }
  void SetRotationOrder(eEulerOrder order) { mRotationOrder = order; }
  void AddChild(std::shared_ptr<SkeletonNode> child) { mChildren.push_back(std::move(child)); }

  std::string const& GetName() const { return mName; }
  std::string const& GetParentName() const { return mParentName; }
  Offset const& GetOffset() const { return mOffset; }
  /// The order of the channels of this kind; none if the joint has none.
  eEulerOrder GetPositionOrder() const { return mPositionOrder; }
  eEulerOrder GetRotationOrder() const { return mRotationOrder; }
  Children const& GetChildren() const { return mChildren; }

 private:
  /// Puts the children that nobody else holds in front of a list of nodes that are to go.
  void DetachChildren(std::shared_ptr<SkeletonNode>& list);

  std::string mName;
  std::string mParentName;
  Offset mOffset{};  ///< from the parent, in the units of the file
  eEulerOrder mRotationOrder = kNoEulerOrder;
  eEulerOrder mPositionOrder = kNoEulerOrder;
  Children mChildren;
  std::shared_ptr<SkeletonNode> mNextToGo;  ///< only while a skeleton goes
};

}  // namespace ns_sensor
