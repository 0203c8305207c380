/// The nodes of the data file that a motion becomes.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "Skeleton.h"
#include "WorldPositions.h"
#include "senmark/module/Output.h"

namespace senmark_motion {

namespace kit = senmark::kit;

/// Digits kept behind the point of every number.
constexpr unsigned kDecimals = 6;

class MotionTree {
 public:
  /// Makes a group for each joint, inside that of its parent, with what does not change and with the streams. The
  /// time base has to be set. world: for a stream of positions in each group, or null; it has to outlive the object.
  MotionTree(Skeleton const& skeleton, kit::Output& output, WorldPositions* world);

  /// Adds a frame, which has as many numbers as there are channels. What is no number is left out together with the
  /// others of its stream. Errors: `Failure` with code 1507 for numbers of 1e16 and more and for times out of range.
  void add(kit::Frame time, std::vector<double> const& values) { AddAt(time, values); }
  void add(kit::Instant const& time, std::vector<double> const& values) { AddAt(time, values); }

 private:
  /// Channels of a joint that make a stream, or a group of streams if they are more than three.
  struct Part {
    kit::ArrayGroup streams;
    std::vector<std::size_t> channels;  ///< places in a frame
    std::vector<double> values;         ///< room for one sample
  };
  struct Other {
    kit::NumberStream* stream;
    std::size_t channel;
  };

  void MakeStreams(kit::Group& group, Joint const& joint);
  void MakePart(kit::Group& group, Joint const& joint, eChannelKind kind, std::string_view name,
                kit::StreamFormat format);
  template <typename Time>
  void AddAt(Time const& time, std::vector<double> const& values);

  kit::StreamFormat mFormat;
  std::vector<Part> mParts;
  std::vector<Other> mOthers;
  WorldPositions* mWorld;
  std::vector<kit::ArrayStream*> mWorldStreams;  ///< by joint
};

}  // namespace senmark_motion
