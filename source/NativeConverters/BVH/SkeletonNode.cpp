#include "SkeletonNode.h"

namespace ns_sensor {

SkeletonNode::~SkeletonNode() {
  std::shared_ptr<SkeletonNode> list;
  DetachChildren(list);
  while (list != nullptr) {
    std::shared_ptr<SkeletonNode> const node = std::move(list);
    list = std::move(node->mNextToGo);
    node->DetachChildren(list);
  }
}

void SkeletonNode::DetachChildren(std::shared_ptr<SkeletonNode>& list) {
  for (std::shared_ptr<SkeletonNode>& child : mChildren) {
    if (child.use_count() == 1) {
      child->mNextToGo = std::move(list);
      list = std::move(child);
    }
  }
}

}  // namespace ns_sensor
