#include "MotionTree.h"

#include <limits>
#include <set>
#include <string>
#include <utility>

namespace senmark_motion {
namespace {

/// Groups in one another, at most, with room for one of streams in the innermost. What hangs deeper stays in the last
/// group that fits, and says who its parent is.
constexpr std::size_t kDeepestGroup = kit::Group::kDeepest - 1;

/// Streams that may hand their samples on at once. The writer keeps some of each in memory, so that those of more are
/// collected by the kit, which has one share of memory for all.
constexpr std::size_t kMostDirectStreams = 400;

std::vector<std::string> const kAxisNames = {"X", "Y", "Z"};

std::size_t CountStreams(Skeleton const& skeleton, bool hasWorld) {
  std::size_t count = 0;
  for (Joint const& joint : skeleton.joints) {
    count += (joint.channels.size() > 3 ? 2 : 1) + (hasWorld ? 1 : 0);
  }
  return count;
}

}  // namespace

MotionTree::MotionTree(Skeleton const& skeleton, kit::Output& output, WorldPositions* world)
    : mChannels(skeleton.channelCount), mWorld(world) {
  mFormat.decimals = kDecimals;
  mFormat.keepsGaps = true;
  bool const isDirect = CountStreams(skeleton, world != nullptr) <= kMostDirectStreams;
  mFormat.order = isDirect ? kit::eOrder::kAsGiven : kit::eOrder::kSorted;

  // Of each joint: the group in which its children go, and how deep that lies.
  std::vector<std::pair<kit::Group*, std::size_t>> homes;
  for (Joint const& joint : skeleton.joints) {
    bool const isRoot = joint.parent == Joint::kNoParent;
    auto const [home, depth] = isRoot ? std::pair(&output.top(), std::size_t{0}) : homes[joint.parent];
    kit::Group& group = home->group(joint.name);
    homes.emplace_back(depth < kDeepestGroup ? std::pair(&group, depth + 1) : std::pair(home, depth));
    if (depth == kDeepestGroup && skeleton.joints[joint.parent].parent != Joint::kNoParent) {
      group.text(joint.name + " parent", skeleton.joints[joint.parent].name);
    }
    if (joint.hasOffset) {
      group.numbers(joint.name + " offset", {joint.offset.begin(), joint.offset.end()}, mFormat, kAxisNames, true);
    }
    MakeStreams(group, joint);
  }
}

void MotionTree::MakeStreams(kit::Group& group, Joint const& joint) {
  group.text(joint.name + " channels", ChannelList(joint));
  group.text(joint.name + " rotation order", RotationOrder(joint));
  MakePart(group, joint, eChannelKind::kPosition, " position", mFormat);
  kit::StreamFormat degrees = mFormat;
  degrees.unit = "deg";
  MakePart(group, joint, eChannelKind::kRotation, " rotation", degrees);
  for (std::size_t c = 0; c != joint.channels.size(); ++c) {
    Channel const& channel = joint.channels[c];
    if (channel.kind == eChannelKind::kOther) {
      mOthers.push_back({&group.numberStream(joint.name + ' ' + channel.name, mFormat), joint.firstChannel + c});
    }
  }
  if (mWorld != nullptr) {
    kit::StreamFormat point = mFormat;
    point.isPoint = true;
    mWorldStreams.push_back(&group.arrayStream(joint.name + " world position", kAxisNames, point));
  }
}

void MotionTree::MakePart(kit::Group& group, Joint const& joint, eChannelKind kind, std::string_view name,
                          kit::StreamFormat format) {
  std::vector<std::size_t> channels;
  std::vector<std::string> names;
  std::set<std::uint8_t> axes;
  for (std::size_t c = 0; c != joint.channels.size(); ++c) {
    if (joint.channels[c].kind == kind) {
      channels.push_back(joint.firstChannel + c);
      names.push_back(joint.channels[c].name);
      axes.insert(joint.channels[c].axis);
    }
  }
  if (channels.empty()) {
    return;
  }
  format.isPoint = kind == eChannelKind::kPosition && names.size() == 3 && axes.size() == 3;
  kit::ArrayGroup streams(group, joint.name + std::string(name), names, format);
  std::vector<double> values(channels.size());
  mParts.push_back({std::move(streams), std::move(channels), std::move(values)});
}

template <typename Time>
void MotionTree::AddAt(std::vector<Time> const& times, std::vector<double> const& values) {
  for (Part& part : mParts) {
    AddPart(part, times, values);
  }
  for (Other const& other : mOthers) {
    for (std::size_t frame = 0; frame != times.size(); ++frame) {
      other.stream->add(times[frame], values[frame * mChannels + other.channel]);
    }
  }
  if (mWorld != nullptr) {
    AddWorld(times, values);
  }
}

template <typename Time>
void MotionTree::AddPart(Part& part, std::vector<Time> const& times, std::vector<double> const& values) {
  double const* frame = values.data();
  for (Time const& time : times) {
    for (std::size_t i = 0; i != part.channels.size(); ++i) {
      part.values[i] = frame[part.channels[i]];
    }
    part.streams.add(time, part.values);
    frame += mChannels;
  }
}

template <typename Time>
void MotionTree::AddWorld(std::vector<Time> const& times, std::vector<double> const& values) {
  double const* frame = values.data();
  for (Time const& time : times) {
    mWorld->compute(frame);
    for (std::size_t joint = 0; joint != mWorldStreams.size(); ++joint) {
      std::array<double, 3> const& position = mWorld->of(joint);
      mWorldStreams[joint]->add(time, position.data(), position.size());
    }
    frame += mChannels;
  }
}

template void MotionTree::AddAt(std::vector<kit::Frame> const& times, std::vector<double> const& values);
template void MotionTree::AddAt(std::vector<kit::Instant> const& times, std::vector<double> const& values);

}  // namespace senmark_motion
