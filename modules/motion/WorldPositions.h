/// Where joints are in space.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "Options.h"
#include "Skeleton.h"

namespace senmark_motion {

/// Positions of all joints and end sites in the coordinates of the file, from its offsets and the channels of a frame.
///
/// With the rotation matrices R of a joint's rotation channels in their order in the file, and vectors as columns:
///
///     M(joint) = M(parent) R1 R2 R3 ...
///     p(joint) = p(parent) + M(parent) t(joint)
///
/// where M is the identity and p is 0 above a root. So the last channel turns first (Meredith and Maddock, "Motion
/// Capture File Formats Explained", University of Sheffield, 2001). t is OFFSET; position channels stand in the place
/// of its coordinates, or are added to them. They move along the axes of the parent wherever in the list they stand.
class WorldPositions {
 public:
  /// The joints have to outlive the object. Errors: `Failure` for a channel that is neither a position nor a rotation:
  /// nobody tells what it does.
  WorldPositions(Skeleton const& skeleton, Options const& options);

  /// frame: as many numbers as there are channels. NaN and infinity make NaN of what depends on them.
  void compute(double const* frame);

  /// Of a joint in the last frame: x, y, z in the unit of the offsets.
  std::array<double, 3> const& of(std::size_t joint) const { return mPoses[joint].position; }

  /// Whether joints other than roots have position channels, and what these are to the offsets; known after the first
  /// frame.
  bool hasJointPositions() const { return mHasJointPositions; }
  ePositions jointPositions() const { return mJointPositions; }

 private:
  using Vector = std::array<double, 3>;
  using Matrix = std::array<Vector, 3>;  ///< rows

  struct Pose {
    Matrix rotation;
    Vector position;
  };

  void DecideJointPositions(double const* frame);
  Vector TranslationOf(Joint const& joint, double const* frame) const;

  Skeleton const& mSkeleton;
  ePositions mRootPositions;
  ePositions mJointPositions;
  bool mHasJointPositions = false;
  std::vector<Pose> mPoses;
};

}  // namespace senmark_motion
