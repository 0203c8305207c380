/// A shared object as the system's loader sees it, read without loading it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace senmark_tool {

struct ElfImage {
  std::vector<std::string> exported;  ///< names that it defines for others
  /// Names that another one has to define, apart from those that may be left undefined and those whose library is
  /// told by a version.
  std::vector<std::string> undefined;
  std::vector<std::string> needed;       ///< libraries, by the names that the loader searches for
  std::vector<std::string> searchPaths;  ///< of its own, as they are written
};

/// Reads what a file exports and needs. None: it cannot be loaded on this machine, and `obstacle` says why.
///
/// bytes  of the whole file. Nothing in them is trusted.
std::optional<ElfImage> ReadElfImage(std::string const& bytes, std::string& obstacle);

}  // namespace senmark_tool
