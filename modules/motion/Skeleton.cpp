#include "Skeleton.h"

#include "Words.h"

namespace senmark_motion {
namespace {

constexpr std::string_view kAxes = "XYZ";

}  // namespace

Channel MakeChannel(std::string_view name) {
  Channel channel{std::string(name), eChannelKind::kOther, 0};
  for (std::size_t axis = 0; axis != kAxes.size(); ++axis) {
    if (IsSameWord(name.substr(0, 1), kAxes.substr(axis, 1))) {
      bool const isPosition = IsSameWord(name.substr(1), "position");
      bool const isRotation = IsSameWord(name.substr(1), "rotation");
      channel.axis = static_cast<std::uint8_t>(axis);
      channel.kind = isPosition ? eChannelKind::kPosition : isRotation ? eChannelKind::kRotation : eChannelKind::kOther;
    }
  }
  return channel;
}

std::string ChannelList(Joint const& joint) {
  std::string list;
  for (Channel const& channel : joint.channels) {
    list += (list.empty() ? "" : " ") + channel.name;
  }
  return list;
}

std::string RotationOrder(Joint const& joint) {
  std::string order;
  for (Channel const& channel : joint.channels) {
    if (channel.kind == eChannelKind::kRotation) {
      order += kAxes[channel.axis];
    }
  }
  return order;
}

}  // namespace senmark_motion
