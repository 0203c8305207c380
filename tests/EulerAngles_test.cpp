#include "EulerAngles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "SK_PluginException.h"

namespace ns_sensor {
namespace {

/// The described way, with matrices of separately allocated rows.
namespace reference {

double** AllocMatrix(int size) {
  auto** const matrix = new double*[static_cast<std::size_t>(size)];
  for (int i = 0; i < size; ++i) {
    matrix[i] = new double[static_cast<std::size_t>(size)];
  }
  return matrix;
}

void FreeMatrix(double** matrix, int size) {
  for (int i = 0; i < size; ++i) {
    delete[] matrix[i];
  }
  delete[] matrix;
}

double** NewMatrix(std::initializer_list<double> elements) {
  double** const matrix = AllocMatrix(3);
  int i = 0;
  for (double const element : elements) {
    matrix[i / 3][i % 3] = element;
    ++i;
  }
  return matrix;
}

// Not inlined, so that nothing that is known of the elements changes how they are computed.
__attribute__((noinline)) void MatrixMultiplication(double** a, double** b, double** result, int size) {
  for (int i = 0; i < size; ++i) {
    for (int j = 0; j < size; ++j) {
      result[i][j] = 0;
      for (int k = 0; k < size; ++k) {
        result[i][j] += a[i][k] * b[k][j];
      }
    }
  }
}

__attribute__((noinline)) void MatrixTranspose(double** in, double** out, int size) {
  for (int i = 0; i < size; ++i) {
    for (int j = 0; j < size; ++j) {
      out[i][j] = in[j][i];
    }
  }
}

void CalRotationMatrix(double** x, double** y, double** z, double** result, int order) {
  double** const factors[6][3] = {{x, y, z}, {x, z, y}, {y, z, x}, {y, x, z}, {z, x, y}, {z, y, x}};
  double** const temporary = AllocMatrix(3);
  double** const product = AllocMatrix(3);
  MatrixMultiplication(factors[order][0], factors[order][1], temporary, 3);
  MatrixMultiplication(temporary, factors[order][2], product, 3);
  MatrixTranspose(product, result, 3);
  FreeMatrix(temporary, 3);
  FreeMatrix(product, 3);
}

std::vector<double> CalEulerAngles(double const* angles, int order) {
  double const x = angles[0] * 0.017453292519943295;
  double const y = angles[1] * 0.017453292519943295;
  double const z = angles[2] * 0.017453292519943295;
  std::uint64_t const bits = 0x404CA5DC1A63C2E7;
  double toDegrees = 0;
  std::memcpy(&toDegrees, &bits, sizeof(bits));
  double** const rx = NewMatrix({1, 0, 0, 0, std::cos(x), -std::sin(x), 0, std::sin(x), std::cos(x)});
  double** const ry = NewMatrix({std::cos(y), 0, std::sin(y), 0, 1, 0, -std::sin(y), 0, std::cos(y)});
  double** const rz = NewMatrix({std::cos(z), -std::sin(z), 0, std::sin(z), std::cos(z), 0, 0, 0, 1});
  double** const r = AllocMatrix(3);
  CalRotationMatrix(rx, ry, rz, r, order);
  std::vector<double> const result = {
      -std::atan2(r[2][1], r[2][2]) * toDegrees,
      std::atan2(-r[2][0], std::sqrt(r[2][1] * r[2][1] + r[2][2] * r[2][2])) * toDegrees,
      std::atan2(r[1][0], r[0][0]) * toDegrees,
  };
  for (double** const matrix : {rx, ry, rz, r}) {
    FreeMatrix(matrix, 3);
  }
  return result;
}

}  // namespace reference

/// Which sign comes of two that are no numbers is the compiler's choice, and no file leads to one.
std::string BitsOf(std::vector<double> const& numbers) {
  std::string text;
  for (double const number : numbers) {
    if (std::isnan(number)) {
      text += "nan ";
      continue;
    }
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof(bits));
    char word[20];
    std::snprintf(word, sizeof(word), "%016llx ", static_cast<unsigned long long>(bits));
    text += word;
  }
  return text;
}

constexpr int kOrderCount = 6;

eEulerOrder OrderAt(int i) {
  return static_cast<eEulerOrder>(i);
}

std::vector<double> Converted(std::vector<double> const& angles, eEulerOrder order) {
  std::vector<double> result;
  CalEulerAngles(angles.data(), result, order);
  return result;
}

void ExpectLikeReference(std::vector<double> const& angles) {
  for (int order = 0; order != kOrderCount; ++order) {
    ASSERT_EQ(BitsOf(Converted(angles, OrderAt(order))), BitsOf(reference::CalEulerAngles(angles.data(), order)))
        << angles[0] << ' ' << angles[1] << ' ' << angles[2] << " in order " << order;
  }
}

TEST(EulerAngles, SingleAxesInOrderZYX) {
  EXPECT_EQ(Converted({10, 0, 0}, kEulerZYX), (std::vector<double>{10.000000000000297, 0, 0}));
  EXPECT_EQ(Converted({0, 10, 0}, kEulerZYX), (std::vector<double>{0, -10.000000000000297, 0}));
  EXPECT_EQ(Converted({0, 0, 10}, kEulerZYX), (std::vector<double>{0, 0, -10.000000000000297}));
}

TEST(EulerAngles, ThreeAxesInTwoOrders) {
  std::vector<double> const forward = Converted({10, 20, 30}, kEulerXYZ);
  ASSERT_EQ(forward.size(), 3U);
  EXPECT_NEAR(forward[0], 10.0000000000003, 6e-14);
  EXPECT_NEAR(forward[1], -20.0000000000006, 6e-14);
  EXPECT_NEAR(forward[2], -30.0000000000009, 6e-14);
  std::vector<double> const backward = Converted({10, 20, 30}, kEulerZYX);
  EXPECT_NEAR(backward[0], -1.116, 5e-4);
  EXPECT_NEAR(backward[1], -22.242, 5e-4);
  EXPECT_NEAR(backward[2], -28.452, 5e-4);
}

TEST(EulerAngles, AreAppended) {
  std::vector<double> result = {7};
  double const angles[] = {0, 0, 0};
  CalEulerAngles(angles, result, kEulerXYZ);
  EXPECT_EQ(result, (std::vector<double>{7, 0, 0, 0}));
}

/// The sum from 0 turns the sign of some zeros; the minus sign in front of the first result turns another.
TEST(EulerAngles, SignsOfZerosAreThoseOfThePlainLoop) {
  EXPECT_EQ(BitsOf(Converted({0, 0, 0}, kEulerXYZ)), BitsOf({-0.0, -0.0, 0.0}));
  ExpectLikeReference({0, 0, 0});
  ExpectLikeReference({-0.0, -0.0, -0.0});
}

TEST(EulerAngles, LikeTheDescribedWayForSpecialAngles) {
  double const infinity = std::numeric_limits<double>::infinity();
  double const specials[] = {0.0,      -0.0,      45,
                             90,       -90,       180,
                             -180,     270,       360,
                             720,      1e-300,    -1e-300,
                             4.9e-324, 1e10,      -1e15,
                             1e22,     1e300,     std::numeric_limits<double>::max(),
                             infinity, -infinity, std::numeric_limits<double>::quiet_NaN()};
  for (double const x : specials) {
    for (double const y : specials) {
      for (double const z : specials) {
        ExpectLikeReference({x, y, z});
      }
    }
  }
}

TEST(EulerAngles, LikeTheDescribedWayForRandomAngles) {
  std::mt19937_64 random(5);
  std::uniform_real_distribution<double> angle(-360, 360);
  for (int i = 0; i != 150000; ++i) {
    ExpectLikeReference({angle(random), angle(random), angle(random)});
  }
}

TEST(EulerAngles, LikeTheDescribedWayForShortDecimals) {
  std::mt19937_64 random(6);
  std::uniform_int_distribution<int> angle(-1800000, 1800000);
  for (int i = 0; i != 50000; ++i) {
    ExpectLikeReference({angle(random) / 1e4, angle(random) / 1e4, angle(random) / 1e4});
    ExpectLikeReference({90.0 * (angle(random) % 9), 90.0 * (angle(random) % 9), angle(random) / 1e4});
  }
}

TEST(EulerAngles, LikeTheDescribedWayForAnyBits) {
  std::mt19937_64 random(7);
  for (int i = 0; i != 80000; ++i) {
    std::vector<double> angles(3);
    for (double& angle : angles) {
      std::uint64_t const bits = random();
      std::memcpy(&angle, &bits, sizeof(bits));
    }
    ExpectLikeReference(angles);
  }
}

struct Shuffle {
  char const* name;
  eEulerOrder order;
  std::vector<double> fileOrder;  ///< with 1 for X, 2 for Y, 3 for Z
};

std::ostream& operator<<(std::ostream& out, Shuffle const& row) {
  return out << row.name;
}

class ShuffledAngles : public testing::TestWithParam<Shuffle> {};

TEST_P(ShuffledAngles, ComeAsXYZ) {
  std::vector<double> angles = GetParam().fileOrder;
  ShuffleArray(GetParam().order, angles.data());
  EXPECT_EQ(angles, (std::vector<double>{1, 2, 3}));
}

Shuffle const kShuffles[] = {
    {"XYZ", kEulerXYZ, {1, 2, 3}}, {"XZY", kEulerXZY, {1, 3, 2}}, {"YZX", kEulerYZX, {2, 3, 1}},
    {"YXZ", kEulerYXZ, {2, 1, 3}}, {"ZXY", kEulerZXY, {3, 1, 2}}, {"ZYX", kEulerZYX, {3, 2, 1}},
};
INSTANTIATE_TEST_SUITE_P(Table, ShuffledAngles, testing::ValuesIn(kShuffles),
                         [](auto const& row) { return std::string(row.param.name); });

int CodeOf(void (*work)(eEulerOrder), int order) {
  try {
    work(OrderAt(order));
  } catch (SK_PLUGIN::SK_PluginException const& error) {
    EXPECT_EQ(error.GetFileOffset(), -1);
    EXPECT_EQ(error.GetFileLineNo(), -1);
    return error.GetErrorCode();
  }
  return 0;
}

TEST(EulerAngles, OrdersOutsideTheSixAreRefused) {
  for (int const order : {-128, -2, -1, 6, 7, 127}) {
    EXPECT_EQ(CodeOf(
                  [](eEulerOrder bad) {
                    double angles[3] = {1, 2, 3};
                    ShuffleArray(bad, angles);
                  },
                  order),
              1509);
    EXPECT_EQ(CodeOf([](eEulerOrder bad) { Converted({1, 2, 3}, bad); }, order), 1509);
    EXPECT_EQ(CodeOf(
                  [](eEulerOrder bad) {
                    Matrix3 const matrix{};
                    Matrix3 result;
                    CalRotationMatrix(matrix, matrix, matrix, result, bad);
                  },
                  order),
              1509);
  }
}

TEST(EulerAngles, RotationIsTheTransposedProductInTheOrder) {
  Matrix3 const x = {{{1, 2, 0}, {0, 1, 0}, {0, 0, 1}}};
  Matrix3 const y = {{{1, 0, 0}, {0, 1, 3}, {0, 0, 1}}};
  Matrix3 const z = {{{1, 0, 0}, {0, 1, 0}, {5, 0, 1}}};
  Matrix3 const products[] = {
      {{{31, 2, 6}, {15, 1, 3}, {5, 0, 1}}},   // X Y Z
      {{{1, 2, 6}, {0, 1, 3}, {5, 0, 1}}},     // X Z Y
      {{{1, 2, 0}, {15, 31, 3}, {5, 10, 1}}},  // Y Z X
      {{{1, 2, 0}, {15, 1, 3}, {5, 0, 1}}},    // Y X Z
      {{{1, 2, 6}, {0, 1, 3}, {5, 10, 31}}},   // Z X Y
      {{{1, 2, 0}, {0, 1, 3}, {5, 10, 1}}},    // Z Y X
  };
  for (int order = 0; order != kOrderCount; ++order) {
    Matrix3 result;
    CalRotationMatrix(x, y, z, result, OrderAt(order));
    Matrix3 transposed;
    MatrixTranspose(result, transposed);
    EXPECT_EQ(transposed, products[order]) << order;
  }
}

TEST(EulerAngles, MatrixElementsAreSummedUpFromZero) {
  double const infinity = std::numeric_limits<double>::infinity();
  Matrix3 const left = {{{-0.0, 0, 0}, {1, 1e16, -1e16}, {0, 0, infinity}}};
  Matrix3 const right = {{{1, 1, 0}, {-0.0, 1, 0}, {-0.0, 1, 0}}};
  Matrix3 result;
  MatrixMultiplication(left, right, result);
  EXPECT_FALSE(std::signbit(result[0][0])) << "a sum that begins with its first term would be -0";
  EXPECT_EQ(result[1][1], 0) << "in another order of the terms 1 would be left";
  EXPECT_TRUE(std::isnan(result[2][0])) << "zero times infinity is not left out";
  EXPECT_TRUE(std::isnan(result[2][2]));
}

}  // namespace
}  // namespace ns_sensor
