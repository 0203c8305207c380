#include "SkeletonNode.h"

#include <gtest/gtest.h>

namespace ns_sensor {
namespace {

TEST(SkeletonNode, BeginsEmptyAndWithoutChannels) {
  SkeletonNode const node;
  EXPECT_EQ(node.GetName(), "");
  EXPECT_EQ(node.GetParentName(), "");
  EXPECT_EQ(node.GetOffset(), (SkeletonNode::Offset{0, 0, 0}));
  EXPECT_EQ(node.GetPositionOrder(), kNoEulerOrder);
  EXPECT_EQ(node.GetRotationOrder(), kNoEulerOrder);
  EXPECT_TRUE(node.GetChildren().empty());
}

TEST(SkeletonNode, GivesWhatWasSet) {
  SkeletonNode node;
  node.SetName("Hand");
  node.SetParentName("Arm");
  node.SetOffset({1, -2, 3.5});
  node.SetPositionOrder(kEulerZYX);
  node.SetRotationOrder(kEulerYXZ);
  auto const first = std::make_shared<SkeletonNode>();
  auto const second = std::make_shared<SkeletonNode>();
  node.AddChild(first);
  node.AddChild(second);
  EXPECT_EQ(node.GetName(), "Hand");
  EXPECT_EQ(node.GetParentName(), "Arm");
  EXPECT_EQ(node.GetOffset(), (SkeletonNode::Offset{1, -2, 3.5}));
  EXPECT_EQ(node.GetPositionOrder(), kEulerZYX);
  EXPECT_EQ(node.GetRotationOrder(), kEulerYXZ);
  EXPECT_EQ(node.GetChildren(), (SkeletonNode::Children{first, second}));
}

TEST(SkeletonNode, GoesHoweverDeepItIs) {
  auto node = std::make_shared<SkeletonNode>();
  std::weak_ptr<SkeletonNode> const deepest = node;
  for (int depth = 0; depth != 1000000; ++depth) {
    auto parent = std::make_shared<SkeletonNode>();
    // A brother on each side, so that lists of more than one are walked too.
    parent->AddChild(std::make_shared<SkeletonNode>());
    parent->AddChild(std::move(node));
    parent->AddChild(std::make_shared<SkeletonNode>());
    node = std::move(parent);
  }
  ASSERT_FALSE(deepest.expired());
  node.reset();
  EXPECT_TRUE(deepest.expired());
}

TEST(SkeletonNode, LeavesWhatSomebodyElseHoldsWhole) {
  auto const kept = std::make_shared<SkeletonNode>();
  kept->AddChild(std::make_shared<SkeletonNode>());
  {
    SkeletonNode root;
    auto const middle = std::make_shared<SkeletonNode>();
    root.AddChild(middle);
    middle->AddChild(kept);
  }
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_EQ(kept->GetChildren().size(), 1U);
}

}  // namespace
}  // namespace ns_sensor
