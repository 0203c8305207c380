/// Numbers of many kinds, for all that has to do with the writer's texts of them.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <ostream>
#include <random>
#include <string>

namespace senmark_test {

using Random = std::mt19937_64;

inline double FromBits(std::uint64_t bits) {
  double value = 0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

inline std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return bits;
}

/// Doubles of one kind at random, among them those that are hard to print.
struct NumberKind {
  char const* name;
  std::function<double(Random&)> make;
};

inline void PrintTo(NumberKind const& kind, std::ostream* out) {
  *out << kind.name;
}

inline double PowerOfTen(int exponent) {
  return std::stod("1e" + std::to_string(exponent));
}

// A value with random fraction bits and an exponent of two from `first` on, one of `count`.
inline double InBinades(Random& random, int first, int count) {
  double const mantissa = FromBits((random() >> 12U) | BitsOf(1.0));
  return std::ldexp(mantissa, first + static_cast<int>(random() % static_cast<unsigned>(count)));
}

inline NumberKind const kNumberKinds[] = {
    {"AnyBits", [](Random& random) { return FromBits(random()); }},
    {"UsualSizes", [](Random& random) { return InBinades(random, -16, 44); }},
    {"AllScaledSizesAndTheirNeighbours", [](Random& random) { return InBinades(random, -136, 196); }},
    {"FewDigits",
     [](Random& random) {
       return static_cast<double>(random() % 1000000000) / PowerOfTen(static_cast<int>(random() % 12));
     }},
    {"ManyDecimals",  // 9 to 17 of them, behind up to four digits
     [](Random& random) {
       double const end = PowerOfTen(9 + static_cast<int>(random() % 9));
       double const value = std::floor(static_cast<double>(random() >> 11U) * 0x1p-53 * end) / end;
       return random() % 2 == 0 ? value / PowerOfTen(static_cast<int>(random() % 5)) : value + double(random() % 2000);
     }},
    {"AroundTheSmallestWithoutExponent", [](Random& random) { return InBinades(random, -15, 3); }},
    {"Millionths", [](Random& random) { return static_cast<double>(random() % 2000000000) / 1e6; }},
    {"NeighboursOfMillionths",
     [](Random& random) {
       // Of any number of digits.
       std::uint64_t const end = std::uint64_t{1} << (1 + random() % 31);
       return FromBits(BitsOf(static_cast<double>(1 + random() % end) / 1e6) + random() % 5 - 2);
     }},
    {"SumsOfDecimals",
     [](Random& random) {
       return static_cast<double>(random() % 1000) / 10 + static_cast<double>(random() % 100000) / 1000;
     }},
    {"ShortBinaryFractions",  // many of them lie halfway between two texts
     [](Random& random) {
       return std::ldexp(static_cast<double>(random() >> (11 + random() % 53)), -static_cast<int>(random() % 64));
     }},
    {"TiesOfSeventeenDigits",  // an odd multiple of 2^-k below 10^(17-k) has 17 digits, the last a 5
     [](Random& random) {
       int const decimals = 1 + static_cast<int>(random() % 17);
       double const bound = PowerOfTen(17 - decimals);
       double const lowest = std::ldexp(bound / 10, decimals);
       double const above = lowest + std::floor(static_cast<double>(random() >> 12U) * 0x1p-52 * lowest * 8);
       return std::ldexp(2 * std::floor(above / 2) + 1, -decimals);
     }},
    {"SinglePrecision",
     [](Random& random) { return static_cast<double>(static_cast<float>(InBinades(random, -30, 60))); }},
    {"Integers", [](Random& random) { return static_cast<double>(random() >> (random() % 64)); }},
    {"LargeIntegers",  // 10^15 to 10^17, where texts begin to have exponents
     [](Random& random) { return static_cast<double>(1000000000000000 + random() % 99000000000000000); }},
    {"LargeHalves", [](Random& random) { return 1e15 + static_cast<double>(random() % 40000000000000000) / 8; }},
    {"Denormals", [](Random& random) { return FromBits(random() >> (12 + random() % 52)); }},
};

}  // namespace senmark_test
