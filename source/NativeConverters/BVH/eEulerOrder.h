/// In which order a joint lists the three axes of its position or of its rotation.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ns_sensor {

enum eEulerOrder : std::int8_t {
  kNoEulerOrder = -1,  ///< the joint has no such channels
  kEulerXYZ = 0,
  kEulerXZY = 1,
  kEulerYZX = 2,
  kEulerYXZ = 3,
  kEulerZXY = 4,
  kEulerZYX = 5,
};

/// The order that a channel line spells, wherever on the line it does. None for words in any other order.
eEulerOrder GetPositionOrder(std::string_view line);
eEulerOrder GetRotationOrder(std::string_view line);

/// Appends `X_`, `Y_` and `Z_`, each with `name` behind it, in this order of axes. Nothing for no order.
void FillDisplayNames(eEulerOrder order, std::string const& name, std::vector<std::string>& displayNames);

}  // namespace ns_sensor
