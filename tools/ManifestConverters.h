/// The converters that a manifest lists, as the library reads them.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "FileSignature.h"

namespace senmark_tool {

struct ManifestConverter {
  std::string uid;
  std::string name;  ///< for people, in the language of the program; may be empty
  double version = 0;
  bool isForced = false;
  std::vector<FileSignature> signatures;  ///< none: the module's check function is asked
  std::set<std::string> extensions;       ///< in lower case, at least one
};

struct ManifestConverters {
  std::vector<ManifestConverter> list;  ///< up to the first fault
  std::string fault;                    ///< what keeps the library from reading on; empty: nothing
};

ManifestConverters ReadManifest(std::string const& text);

/// ASCII letters in lower case, as the library compares extensions and names.
std::string LowerCase(std::string text);

}  // namespace senmark_tool
