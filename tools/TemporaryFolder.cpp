#include "TemporaryFolder.h"

#include <limits.h>

#include <cstdlib>
#include <system_error>

namespace senmark_tool {

TemporaryFolder::TemporaryFolder() {
  try {
    mScratch = std::make_unique<ScratchFolder>();
  } catch (std::system_error const&) {
    return;  // what needs one will tell
  }
  // The library puts names right behind the value.
  std::string const folder = mScratch->Path("");
  constexpr std::size_t kRoomForNames = NAME_MAX + 1;
  if (folder.size() + kRoomForNames > PATH_MAX) {
    mScratch.reset();  // what had room in the usual place might have none here
    return;
  }
  for (std::size_t i = 0; i != kTemporaryVariables.size(); ++i) {
    if (char const* const value = std::getenv(kTemporaryVariables[i])) {
      mBefore[i] = value;
    }
    setenv(kTemporaryVariables[i], folder.c_str(), 1);
  }
}

TemporaryFolder::~TemporaryFolder() {
  if (!mScratch) {
    return;
  }
  for (std::size_t i = 0; i != kTemporaryVariables.size(); ++i) {
    if (mBefore[i]) {
      setenv(kTemporaryVariables[i], mBefore[i]->c_str(), 1);
    } else {
      unsetenv(kTemporaryVariables[i]);
    }
  }
}

}  // namespace senmark_tool
