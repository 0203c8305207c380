/// rapidjson as it comes: default flags, its own assertions, which a release build leaves out. It stands
/// in a namespace of its own because the library compiles rapidjson with other assertions.
#pragma once

#include <cstddef>
#include <string>

/// Parses `text` into a document. Gives the bytes of memory that the document takes, 0 if `text` is no JSON.
std::size_t ParseWithPlainRapidJson(std::string const& text);

/// Seconds that `Parse` takes, without those to free the document; negative if `text` is no JSON.
double SecondsToParseWithPlainRapidJson(std::string const& text);
