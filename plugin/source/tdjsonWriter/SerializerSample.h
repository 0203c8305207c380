/// One sample as it stands in a data file. All samples of a set come out equally wide, unless a number is wider
/// than its pattern: nothing checks that, and the number is written whole.
#pragma once

#include <string_view>

#include "SerializerBuffer.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// The text of one number with zeroes on both sides up to the digits of the pattern, and with a plus if the
/// pattern has a place for the sign. An exponent is treated like digits.
void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern);

/// time   the text of the sample's time.
/// value  as it was parked: the text of a number; those of several, with commas between them; an escaped text.
void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        ns_sensor::SK_NumberPattern const& pattern);
void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             ns_sensor::SK_NumberPattern const& pattern);
void AppendStringSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        ns_sensor::SK_StringProperties const& properties);

}  // namespace SK_PLUGIN
