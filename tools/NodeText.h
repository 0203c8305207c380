/// Nodes, values and times as text and as JSON.
#pragma once

#include <string>

#include "JsonWriter.h"
#include "senmark/host/Values.h"

namespace senmark_tool {

char const* NameOf(senmark::eNodeKind kind);
char const* NameOf(senmark::eValueType type);
char const* NameOf(senmark::eInterpolation interpolation);

/// The shortest text that reads back as the same number.
std::string NumberText(double number);
/// Numbers in brackets, texts in quotes; without control characters.
std::string ValueText(senmark::Value const& value);
/// Seconds, and the fraction behind them where they do not tell all.
std::string TimeText(senmark::Time const& time);

/// An object with "value", "scale" and "seconds".
void WriteTime(JsonWriter& json, senmark::Time const& time);
void WriteValue(JsonWriter& json, senmark::Value const& value);
/// Members of an opened object: names, kind, and all that the kind has beyond that.
void WriteNodeMembers(JsonWriter& json, senmark::Node const& node);

}  // namespace senmark_tool
