/// Where this process has its temporary files.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>

#include "ScratchFolder.h"

namespace senmark_tool {

/// As long as it lives, the library, modules and what they start make their temporary files in a folder of the
/// program's own, and nothing is left of them, however they end. Where that cannot be made, or names in it might be too
/// long, all stays as it is.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(TemporaryFolder const&) = delete;
  TemporaryFolder& operator=(TemporaryFolder const&) = delete;

 private:
  std::unique_ptr<ScratchFolder> mScratch;
  std::array<std::optional<std::string>, kTemporaryVariables.size()> mBefore;  ///< values of the variables that name it
};

}  // namespace senmark_tool
