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

  /// Adds frames that follow each other, each as many numbers as there are channels. What is no number is left out
  /// together with the others of its stream. One stream is served after the other, which is faster than frame by frame,
  /// for what belongs to a stream stays in the processor's caches. Errors: `Failure` with code 1507 for numbers of 1e16
  /// and more and for times out of range.
  void add(std::vector<kit::Frame> const& times, std::vector<double> const& values) { AddAt(times, values); }
  void add(std::vector<kit::Instant> const& times, std::vector<double> const& values) { AddAt(times, values); }

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
  void AddAt(std::vector<Time> const& times, std::vector<double> const& values);
  template <typename Time>
  void AddPart(Part& part, std::vector<Time> const& times, std::vector<double> const& values);
  template <typename Time>
  void AddWorld(std::vector<Time> const& times, std::vector<double> const& values);

  kit::StreamFormat mFormat;
  std::size_t mChannels;  ///< of a frame
  std::vector<Part> mParts;
  std::vector<Other> mOthers;
  WorldPositions* mWorld;
  std::vector<kit::ArrayStream*> mWorldStreams;  ///< by joint
};

}  // namespace senmark_motion
