/// One sample of numbers as it stands in a data file. All samples of a set come out equally wide, unless a number is
/// wider than its pattern: nothing checks that, and the number is written whole.
#pragma once

#include <cstdint>
#include <string_view>

#include "SK_DumpSamplesUtils.h"
#include "SerializerBuffer.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// The text of one number with zeroes on both sides up to the digits of the pattern, and with a plus if the
/// pattern has a place for the sign. An exponent is treated like digits.
void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern);

/// How the numbers of a set are padded.
struct NumberField {
  /// Up to these widths a packed number is padded by stores of eight bytes.
  static constexpr unsigned kMostIntegers = 8;
  static constexpr unsigned kMostDecimals = 24;

  // NOLINTNEXTLINE(google-explicit-constructor): it is a pattern, looked at once for all samples
  NumberField(ns_sensor::SK_NumberPattern const& numberPattern);

  /// Whether a number with eight digits in front of the point and twice eight behind it, as numbers, the lowest byte
  /// the first, has no more than there are places; never with a pattern that is too wide for stores.
  bool Fits(std::uint64_t integer, std::uint64_t decimals, std::uint64_t finer) const {
    return ((integer & otherIntegers) | (decimals & otherDecimals) | (finer & otherFiner)) == 0 &&
           otherIntegers != kNone;
  }

  static constexpr std::uint64_t kNone = ~std::uint64_t{0};

  ns_sensor::SK_NumberPattern pattern;
  unsigned integerShift = 0;            ///< bits, of digits that have no place in front of the point
  unsigned sizeBehind = 0;              ///< of the decimals with their point
  std::uint64_t otherIntegers = kNone;  ///< the digits for which there is no place
  std::uint64_t otherDecimals = kNone;
  std::uint64_t otherFiner = kNone;
};

/// Appends samples of `dump` behind its first one, a comma in front of each: at most `most`, within `room` bytes, for
/// which the buffer has the memory. Ends in front of one that is no packed number, does not fit into its field, or has
/// no short record; the caller reads that by itself. Gives their number.
std::uint64_t AppendPackedSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, NumberField const& field,
                                  std::size_t room, std::uint64_t most);

/// time   the text of the sample's time.
/// value  as it was parked: a number, packed or as its text.
void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value, NumberField const& field);

}  // namespace SK_PLUGIN
