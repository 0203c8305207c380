#include "WorldPositions.h"

#include <cmath>
#include <utility>

#include "senmark/module/Failure.h"

namespace senmark_motion {
namespace {

constexpr double kRadiansOfDegree = 0.017453292519943295;

bool IsRoot(Joint const& joint) {
  return joint.parent == Joint::kNoParent;
}

/// matrix = matrix R, where R turns by an angle around an axis: the two columns beside the axis mix.
template <typename Matrix>
void TurnBy(Matrix& matrix, std::size_t axis, double degrees) {
  double const cosine = std::cos(degrees * kRadiansOfDegree);
  double const sine = std::sin(degrees * kRadiansOfDegree);
  std::size_t const first = (axis + 1) % 3;
  std::size_t const second = (axis + 2) % 3;
  for (auto& row : matrix) {
    double const left = row[first];
    double const right = row[second];
    row[first] = left * cosine + right * sine;
    row[second] = right * cosine - left * sine;
  }
}

}  // namespace

WorldPositions::WorldPositions(Skeleton const& skeleton, Options const& options)
    : mSkeleton(skeleton),
      mRootPositions(options.rootPositions),
      mJointPositions(options.jointPositions),
      mPoses(skeleton.joints.size()) {
  for (Joint const& joint : skeleton.joints) {
    for (Channel const& channel : joint.channels) {
      if (channel.kind == eChannelKind::kOther) {
        throw senmark::kit::Failure("world positions are not defined with the channel " + channel.name);
      }
      mHasJointPositions = mHasJointPositions || (channel.kind == eChannelKind::kPosition && !IsRoot(joint));
    }
  }
}

void WorldPositions::compute(double const* frame) {
  if (mJointPositions == ePositions::kByFile) {
    DecideJointPositions(frame);
  }
  static constexpr Pose kAboveRoots = {{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {0, 0, 0}};
  for (std::size_t i = 0; i != mPoses.size(); ++i) {
    Joint const& joint = mSkeleton.joints[i];
    Pose const& parent = IsRoot(joint) ? kAboveRoots : mPoses[joint.parent];
    Pose& pose = mPoses[i];
    pose = parent;
    Vector const translation = TranslationOf(joint, frame);
    for (std::size_t row = 0; row != 3; ++row) {
      for (std::size_t column = 0; column != 3; ++column) {
        pose.position[row] += parent.rotation[row][column] * translation[column];
      }
    }
    for (std::size_t c = 0; c != joint.channels.size(); ++c) {
      if (joint.channels[c].kind == eChannelKind::kRotation) {
        TurnBy(pose.rotation, joint.channels[c].axis, frame[joint.firstChannel + c]);
      }
    }
  }
}

/// Exporters differ in what they write for joints other than roots: places beside the parent, near the offsets, or ways
/// from the offset, near 0. The joints of the first frame together tell which.
void WorldPositions::DecideJointPositions(double const* frame) {
  double fromOffset = 0;
  double fromZero = 0;
  for (Joint const& joint : mSkeleton.joints) {
    for (std::size_t c = 0; c != joint.channels.size(); ++c) {
      Channel const& channel = joint.channels[c];
      double const value = frame[joint.firstChannel + c];
      if (channel.kind == eChannelKind::kPosition && !IsRoot(joint) && std::isfinite(value)) {
        fromOffset += std::fabs(value - joint.offset[channel.axis]);
        fromZero += std::fabs(value);
      }
    }
  }
  mJointPositions = fromOffset <= fromZero ? ePositions::kReplace : ePositions::kAdd;
}

WorldPositions::Vector WorldPositions::TranslationOf(Joint const& joint, double const* frame) const {
  Vector translation = joint.offset;
  bool const adds = (IsRoot(joint) ? mRootPositions : mJointPositions) == ePositions::kAdd;
  for (std::size_t c = 0; c != joint.channels.size(); ++c) {
    Channel const& channel = joint.channels[c];
    if (channel.kind == eChannelKind::kPosition) {
      double const value = frame[joint.firstChannel + c];
      translation[channel.axis] = adds ? translation[channel.axis] + value : value;
    }
  }
  return translation;
}

}  // namespace senmark_motion
