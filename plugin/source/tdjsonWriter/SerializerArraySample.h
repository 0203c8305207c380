/// One sample of an array of numbers as it stands in a data file.
#pragma once

#include <string_view>

#include "SerializerBuffer.h"
#include "SerializerSample.h"

namespace SK_PLUGIN {

/// time   the text of the sample's time.
/// value  as it was parked: numbers with commas between them, each packed or as its text.
void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             NumberField const& field);

}  // namespace SK_PLUGIN
