/// Joints and their channels.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace senmark_motion {

enum class eChannelKind : std::uint8_t { kPosition, kRotation, kOther };

/// One number of each frame.
struct Channel {
  std::string name;  ///< as the file spells it
  eChannelKind kind = eChannelKind::kOther;
  std::uint8_t axis = 0;  ///< 0 to 2 for X to Z; of a position or a rotation
};

/// A root, a joint or an end site.
struct Joint {
  static constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

  std::string name;  ///< of an end site without a name: that of its parent and "End Site"
  std::size_t parent = kNoParent;
  bool isEndSite = false;
  bool hasOffset = false;
  std::array<double, 3> offset{};  ///< from the parent, in the file's unit
  bool hasChannels = false;        ///< the file says so, be it that there are none
  std::vector<Channel> channels;
  std::size_t firstChannel = 0;  ///< where its numbers begin in a frame
};

/// All roots of a file with what hangs from them, in the order of the file: parents stand before their children.
struct Skeleton {
  std::vector<Joint> joints;
  std::size_t channelCount = 0;  ///< numbers of a frame
};

/// A channel by its name: `Xposition`, `Zrotation` and the like in any case; any other is of the kind `kOther`.
Channel MakeChannel(std::string_view name);

/// The names of all channels with a blank between each two.
std::string ChannelList(Joint const& joint);

/// The axes of the rotations as letters, like ZXY; empty without rotations.
std::string RotationOrder(Joint const& joint);

}  // namespace senmark_motion
