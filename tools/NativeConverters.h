/// How the library tells files apart without a module.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace senmark_tool {

enum class eOwnFormat : std::uint8_t {
  kNo,
  kVersion1,
  kVersion2,
  kUnreadable,  ///< opening the file fails on the way to the answer
};

/// Whether a file is of the library's own format. `extension`: of the file, as `FileExtension` gives it.
eOwnFormat OwnFormat(std::string const& path, std::string const& extension);

/// The extension as the library sees it when it gets a full path: in lower case, without its point; may be empty.
std::string FileExtension(std::string const& fullPath);

struct Verdict {
  bool takes;
  char const* reason;
};

struct NativeConverter {
  char const* extension;
  char const* name;  ///< in words
  Verdict (*check)(std::string const& path);
};

/// In the order in which the library asks them.
extern std::array<NativeConverter, 5> const kNativeConverters;

}  // namespace senmark_tool
