/// What a user wants beyond what the file says.
#pragma once

#include <cstdint>
#include <string>

namespace senmark_motion {

/// What a joint's position channels are to its OFFSET.
enum class ePositions : std::uint8_t {
  kByFile,   ///< what the first frame tells
  kReplace,  ///< they stand in its place
  kAdd,      ///< they are added to it
};

struct Options {
  bool worldPositions = false;
  ePositions rootPositions = ePositions::kReplace;
  ePositions jointPositions = ePositions::kByFile;
};

/// Reads the options from a file of JSON: an object with any of "worldPositions" (true, false), "rootPositions" and
/// "jointPositions" ("replace", "add"). No file, no options. Errors: `Failure` for anything else, with the key.
Options ReadOptions(std::string const& path);

}  // namespace senmark_motion
