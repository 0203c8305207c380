/// Damaged forms of a file, the same ones each time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace senmark_tool {

struct Variant {
  std::string name;  ///< what was done, like "cut to 16 bytes"
  std::string bytes;
};

/// Some 40 beginnings of a file: none of it, 1 byte, powers of two, lengths near the end, and others between them.
std::vector<Variant> Truncated(std::string const& bytes);

/// Some 60 copies of a file with bytes that are changed, lost, doubled or added. None of an empty file.
std::vector<Variant> Mutated(std::string const& bytes);

}  // namespace senmark_tool
