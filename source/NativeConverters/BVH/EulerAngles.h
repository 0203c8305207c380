/// The angles of a joint, brought from the order and the directions of a motion capture file into those of the
/// samples. Every result is the same double on every machine whose sine, cosine and arc tangent are.
#pragma once

#include <array>
#include <vector>

#include "eEulerOrder.h"

namespace ns_sensor {

using Matrix3 = std::array<std::array<double, 3>, 3>;  ///< by rows

/// Brings three angles from the order of the file into that of the axes X, Y, Z. An order that is none is the
/// exception `eBVHError::kBadHierarchy`, here and below.
void ShuffleArray(eEulerOrder order, double* angles);

/// Turns the other way round, about axes of which Y and Z point the other way: appends X, Y and Z of that.
///
/// angles  X, Y, Z in degrees
/// order   in which the file applies them
void CalEulerAngles(double const* angles, std::vector<double>& result, eEulerOrder order);

/// The transpose of the product of the three in this order.
void CalRotationMatrix(Matrix3 const& x, Matrix3 const& y, Matrix3 const& z, Matrix3& result, eEulerOrder order);

/// Each element is summed up from 0, in the order of the left matrix's columns.
void MatrixMultiplication(Matrix3 const& left, Matrix3 const& right, Matrix3& result);
void MatrixTranspose(Matrix3 const& in, Matrix3& out);

}  // namespace ns_sensor
