/// What the two iterators tell of the value that they stand at.
#pragma once

#include <cstdint>
#include <string>

#include "JsonIterator.h"
#include "SK_RapidJson.h"

namespace ns_sensor {

eJsonValueKind JsonKindOf(SK_NAMESPACE_INT::JValue const& value);

/// The text of a string or of a member's name, with every byte.
std::string JsonTextOf(SK_NAMESPACE_INT::JValue const& text);

/// False for a number that has none of the five forms in which one is kept.
bool ReadJsonNumber(SK_NAMESPACE_INT::JValue const& value, double& number);

/// How many items an object or an array has.
std::uint32_t JsonCountOf(SK_NAMESPACE_INT::JValue const& container);

}  // namespace ns_sensor
