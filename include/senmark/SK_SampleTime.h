/// The time of one sample on its way into a file.
#pragma once

#include <boost/variant.hpp>

#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// A time code for a file with a frame rate, a calendar time for one with UTC times. A sample whose time is
/// of the other kind is not taken.
using SampleTime = boost::variant<ns_sensor::SK_DateTimeSMPTE, ns_sensor::SK_DateTimeUTC>;

}  // namespace SK_PLUGIN
