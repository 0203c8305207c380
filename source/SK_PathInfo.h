#pragma once

#include <string>
#include <utility>

namespace SK_NAMESPACE_INT {

/// What a converter is told about the file that it converts.
struct SK_PathInfo {
  SK_PathInfo() = default;
  SK_PathInfo(std::string path, std::string pathExtension)
      : filePath(std::move(path)), extension(std::move(pathExtension)) {}

  std::string filePath;    ///< the file to convert
  std::string extension;   ///< of that file, in lower case, without its point
  std::string outputPath;  ///< where the converter writes
};

}  // namespace SK_NAMESPACE_INT
