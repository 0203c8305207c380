/// One sample of a text as it stands in a data file. All samples of a set come out equally wide.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_DumpSamplesUtils.h"
#include "SerializerBuffer.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// How the texts of a set are padded.
struct StringField {
  /// Up to so many digits of a length are stored at once, in samples of texts that have no more bytes than this.
  static constexpr unsigned kMostDigits = 8;
  static constexpr std::size_t kLongest = 99999;

  // NOLINTNEXTLINE(google-explicit-constructor): it is the properties, looked at once for all samples
  StringField(ns_sensor::SK_StringProperties const& stringProperties);

  /// Whether a length with these digits, as numbers, the lowest byte the first, has no more than there are places;
  /// never with widths that are too large for stores.
  bool Fits(std::uint64_t lengthDigits) const { return (lengthDigits & otherDigits) == 0 && otherDigits != kNone; }

  static constexpr std::uint64_t kNone = ~std::uint64_t{0};

  std::uint64_t maxLength;
  std::uint64_t maxDigits;
  unsigned digitsShift = 0;           ///< bits, of digits that have no place
  std::uint64_t otherDigits = kNone;  ///< the digits for which there is no place
};

/// Appends samples of `dump` behind its first one, a comma in front of each: at most `most`, within `room` bytes, for
/// which the buffer has the memory. Ends in front of one that is empty, whose length does not fit into its field, or
/// that has no short record; the caller reads that by itself. Gives their number.
std::uint64_t AppendShortTextSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, StringField const& field,
                                     std::size_t room, std::uint64_t most);

/// time   the text of the sample's time.
/// value  the escaped text, as it was parked.
void AppendStringSample(SerializerBuffer& out, std::string_view time, std::string_view value, StringField const& field);

}  // namespace SK_PLUGIN
