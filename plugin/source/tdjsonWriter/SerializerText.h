/// The pieces of JSON text that a data file is made of. Each is appended to a buffer, without white space.
///
/// Nothing is escaped here: texts are escaped when they enter the writer. Bytes pass unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SerializerBuffer.h"
#include "senmark/SK_BasicRecords.h"

namespace SK_PLUGIN {

/// A text in double quotes.
void JSON_STR(SerializerBuffer& out, std::string_view text);
/// A key and a value; the number in the writer's one form, not quoted.
void JSON_StrObj(SerializerBuffer& out, std::string_view key, std::string_view value);
void JSON_NumObj(SerializerBuffer& out, std::string_view key, double value);
void JSON_BoolObj(SerializerBuffer& out, std::string_view key, bool value);
/// A key and an array of texts.
void JSON_StrArrObj(SerializerBuffer& out, std::string_view key, std::vector<std::string> const& list);

/// A count has the text of the double next to it: above 2 to the power of 53 it is rounded, and from ten to the
/// power of 16 it has an exponent.
void AppendCount(SerializerBuffer& out, std::uint64_t count);
/// The same, to where there is room for `SK_WriterNumberText::kLongest` bytes. Gives the end of the text.
char* CopyCount(char* out, std::uint64_t count);

/// The names of kinds in a file. An `SK_PluginException` with code 2026 for any other.
std::string_view GetStaticType(ns_sensor::eDataValueType type);
std::string_view GetDynamicType(ns_sensor::eDataValueType type);
std::string_view GetInterpolationStr(ns_sensor::eInterpolationType interpolation);

}  // namespace SK_PLUGIN
