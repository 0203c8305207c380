/// One sample of an array of numbers as it stands in a data file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_DumpSamplesUtils.h"
#include "SerializerBuffer.h"
#include "SerializerSample.h"

namespace SK_PLUGIN {

/// As `AppendPackedSamples`, of arrays: ends in front of one whose elements are not all packed numbers that fit.
std::uint64_t AppendPackedArrays(SerializerBuffer& out, SK_DumpSamplesUtils& dump, NumberField const& field,
                                 std::size_t room, std::uint64_t most);

/// time   the text of the sample's time.
/// value  as it was parked: numbers with commas between them, each packed or as its text.
void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             NumberField const& field);

}  // namespace SK_PLUGIN
