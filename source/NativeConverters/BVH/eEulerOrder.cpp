#include "eEulerOrder.h"

#include <array>
#include <cstddef>

namespace ns_sensor {
namespace {

constexpr std::size_t kOrderCount = 6;
using Texts = std::array<std::string_view, kOrderCount>;

constexpr Texts kPositions = {
    "Xposition Yposition Zposition", "Xposition Zposition Yposition", "Yposition Zposition Xposition",
    "Yposition Xposition Zposition", "Zposition Xposition Yposition", "Zposition Yposition Xposition",
};
constexpr Texts kRotations = {
    "Xrotation Yrotation Zrotation", "Xrotation Zrotation Yrotation", "Yrotation Zrotation Xrotation",
    "Yrotation Xrotation Zrotation", "Zrotation Xrotation Yrotation", "Zrotation Yrotation Xrotation",
};
constexpr Texts kAxes = {"XYZ", "XZY", "YZX", "YXZ", "ZXY", "ZYX"};

/// The first order in the list, not the first on the line, that the line spells.
eEulerOrder FindOrder(std::string_view line, Texts const& texts) {
  for (std::size_t i = 0; i != texts.size(); ++i) {
    if (line.find(texts[i]) != std::string_view::npos) {
      return static_cast<eEulerOrder>(i);
    }
  }
  return kNoEulerOrder;
}

}  // namespace

eEulerOrder GetPositionOrder(std::string_view line) {
  return FindOrder(line, kPositions);
}

eEulerOrder GetRotationOrder(std::string_view line) {
  return FindOrder(line, kRotations);
}

void FillDisplayNames(eEulerOrder order, std::string const& name, std::vector<std::string>& displayNames) {
  if (order < kEulerXYZ || order > kEulerZYX) {
    return;
  }
  for (char const axis : kAxes[static_cast<std::size_t>(order)]) {
    displayNames.push_back(std::string{axis, '_'} + name);
  }
}

}  // namespace ns_sensor
