/// What a survey of a file will most likely say, so that the file can be written while it is surveyed.
#pragma once

#include <optional>

#include "Survey.h"

namespace senmark_series {

/// The survey of some pieces of the file, from its start to its end. None where they make no table.
std::optional<Survey> ForetellSurvey(kit::Input const& input, Layout const& layout);

/// What is written by the survey that was foretold is the same, byte for byte, as what is written by the one that was
/// found.
///
/// Decimals are not asked for: a number comes out as its cell has it with any number of them that suffices.
bool HasComeTrue(Survey const& foretold, Survey const& found);

/// False once that has become unlikely by the rows `soFar`. Wrong either way it costs time and nothing else.
bool MayComeTrue(Survey const& foretold, Survey const& soFar);

}  // namespace senmark_series
