#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>
#include <vector>

#include "WorldPositions.h"
#include "senmark/module/Failure.h"

namespace senmark_motion {
namespace {

constexpr std::size_t kNone = Joint::kNoParent;

/// Joints are added in the order of a file.
class MotionWorld : public testing::Test {
 protected:
  void Add(std::size_t parent, std::array<double, 3> const& offset, std::initializer_list<char const*> channels) {
    Joint joint;
    joint.parent = parent;
    joint.offset = offset;
    joint.firstChannel = mSkeleton.channelCount;
    for (char const* const channel : channels) {
      joint.channels.push_back(MakeChannel(channel));
    }
    mSkeleton.channelCount += joint.channels.size();
    mSkeleton.joints.push_back(joint);
  }

  void Expect(WorldPositions const& world, std::size_t joint, double x, double y, double z) const {
    std::array<double, 3> const& position = world.of(joint);
    EXPECT_NEAR(position[0], x, 1e-12) << "x of " << joint;
    EXPECT_NEAR(position[1], y, 1e-12) << "y of " << joint;
    EXPECT_NEAR(position[2], z, 1e-12) << "z of " << joint;
  }

  Skeleton mSkeleton;
};

TEST_F(MotionWorld, QuarterTurnsFollowTheRightHand) {
  struct Turn {
    char const* channel;
    double x, y, z;
  };
  // Of the child at 1, 2, 3.
  for (Turn const& turn : {Turn{"Xrotation", 1, -3, 2}, Turn{"Yrotation", 3, 2, -1}, Turn{"Zrotation", -2, 1, 3}}) {
    mSkeleton = Skeleton();
    Add(kNone, {0, 0, 0}, {turn.channel});
    Add(0, {1, 2, 3}, {});
    WorldPositions world(mSkeleton, Options());
    world.compute(std::vector<double>{90}.data());
    Expect(world, 0, 0, 0, 0);
    Expect(world, 1, turn.x, turn.y, turn.z);
  }
}

TEST_F(MotionWorld, LastChannelTurnsFirst) {
  // Around x first, y to z, and z stays z when the turn around z follows.
  Add(kNone, {0, 0, 0}, {"Zrotation", "Xrotation"});
  Add(0, {0, 1, 0}, {});
  WorldPositions zx(mSkeleton, Options());
  zx.compute(std::vector<double>{90, 90}.data());
  Expect(zx, 1, 0, 0, 1);

  // The other order: y to -x, which the turn around x leaves.
  mSkeleton = Skeleton();
  Add(kNone, {0, 0, 0}, {"Xrotation", "Zrotation"});
  Add(0, {0, 1, 0}, {});
  WorldPositions xz(mSkeleton, Options());
  xz.compute(std::vector<double>{90, 90}.data());
  Expect(xz, 1, -1, 0, 0);
}

TEST_F(MotionWorld, TurnsAddUpAlongTheChain) {
  Add(kNone, {10, 0, 0}, {"Zrotation"});
  Add(0, {1, 0, 0}, {"Zrotation"});
  Add(1, {1, 0, 0}, {"Zrotation"});
  Add(2, {1, 0, 0}, {});
  WorldPositions world(mSkeleton, Options());
  world.compute(std::vector<double>{90, 90, 45}.data());
  Expect(world, 0, 10, 0, 0);
  Expect(world, 1, 10, 1, 0);
  Expect(world, 2, 9, 1, 0);
  Expect(world, 3, 9 - std::sqrt(0.5), 1 - std::sqrt(0.5), 0);
}

TEST_F(MotionWorld, PositionsOfRootsStandInPlaceOfTheOffset) {
  // Also behind the rotations, which do not turn them, and one axis alone.
  Add(kNone, {7, 8, 9}, {"Zrotation", "Xposition", "Zposition"});
  Add(0, {1, 0, 0}, {});
  WorldPositions world(mSkeleton, Options());
  world.compute(std::vector<double>{90, 1, 2}.data());
  Expect(world, 0, 1, 8, 2);
  Expect(world, 1, 1, 9, 2);
  EXPECT_FALSE(world.hasJointPositions());
}

TEST_F(MotionWorld, PositionsOfRootsAreAddedOnDemand) {
  Add(kNone, {7, 8, 9}, {"Xposition", "Zposition"});
  Options options;
  options.rootPositions = ePositions::kAdd;
  WorldPositions world(mSkeleton, options);
  world.compute(std::vector<double>{1, 2}.data());
  Expect(world, 0, 8, 8, 11);
}

TEST_F(MotionWorld, FirstFrameTellsWhatPositionsOfJointsAre) {
  Add(kNone, {0, 0, 0}, {"Yrotation"});
  Add(0, {0, 10, 0}, {"Xposition", "Yposition", "Zposition"});

  WorldPositions places(mSkeleton, Options());
  EXPECT_TRUE(places.hasJointPositions());
  places.compute(std::vector<double>{0, 0.5, 10.5, 0}.data());
  EXPECT_EQ(places.jointPositions(), ePositions::kReplace);
  Expect(places, 1, 0.5, 10.5, 0);
  // The same for later frames, whatever they hold.
  places.compute(std::vector<double>{0, 0, 0, 0}.data());
  Expect(places, 1, 0, 0, 0);

  WorldPositions ways(mSkeleton, Options());
  ways.compute(std::vector<double>{0, 0.5, 0.5, 0}.data());
  EXPECT_EQ(ways.jointPositions(), ePositions::kAdd);
  Expect(ways, 1, 0.5, 10.5, 0);
  ways.compute(std::vector<double>{0, 0, 10, 0}.data());
  Expect(ways, 1, 0, 20, 0);
}

TEST_F(MotionWorld, OptionsDecideAboutJoints) {
  Add(kNone, {0, 0, 0}, {"Yrotation"});
  Add(0, {0, 10, 0}, {"Yposition"});
  Options options;
  options.jointPositions = ePositions::kAdd;
  WorldPositions adding(mSkeleton, options);
  adding.compute(std::vector<double>{0, 10}.data());
  Expect(adding, 1, 0, 20, 0);
  options.jointPositions = ePositions::kReplace;
  WorldPositions replacing(mSkeleton, options);
  replacing.compute(std::vector<double>{0, 0}.data());
  Expect(replacing, 1, 0, 0, 0);
}

TEST_F(MotionWorld, NotANumberStaysWithWhatHangsFromIt) {
  Add(kNone, {0, 0, 0}, {"Yposition"});
  Add(0, {0, 1, 0}, {"Xrotation"});
  Add(1, {0, 1, 0}, {});
  Add(0, {0, 2, 0}, {});
  WorldPositions world(mSkeleton, Options());
  world.compute(std::vector<double>{0, std::numeric_limits<double>::quiet_NaN()}.data());
  Expect(world, 1, 0, 1, 0);
  EXPECT_TRUE(std::isnan(world.of(2)[1]));
  Expect(world, 3, 0, 2, 0);
}

TEST_F(MotionWorld, OtherChannelsAreRefused) {
  Add(kNone, {0, 0, 0}, {"Xscale"});
  EXPECT_THROW(WorldPositions(mSkeleton, Options()), senmark::kit::Failure);
}

}  // namespace
}  // namespace senmark_motion
