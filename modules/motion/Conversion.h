/// A motion file as a whole.
#pragma once

#include <functional>
#include <string>

#include "senmark/module/Input.h"
#include "senmark/module/Output.h"

namespace senmark_motion {

namespace kit = senmark::kit;

/// Whether the file's name ends in bvh and its first word is HIERARCHY. Errors: as `Source`.
bool Accepts(kit::Input const& input);

/// Writes the motion into `output`. What a user wants besides stands in a file of the same name with `.senmark.json`
/// behind it: see `ReadOptions`. Errors: `Failure`, with a place for what is wrong in the file.
void Convert(kit::Input const& input, kit::Output& output);

/// Tells in lines what the file is, or why it is not taken or not read.
void Explain(kit::Input const& input, std::function<void(std::string const&)> const& line);

}  // namespace senmark_motion
