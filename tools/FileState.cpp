#include "FileState.h"

#include <filesystem>
#include <fstream>

namespace senmark_tool {

namespace fs = std::filesystem;

FileState::FileState(std::string const& path) {
  constexpr std::size_t kCompared = 65536;
  std::error_code ignored;
  if (!fs::is_regular_file(path, ignored)) {
    return;
  }
  mSize = fs::file_size(path, ignored);
  mTime = fs::last_write_time(path, ignored).time_since_epoch().count();
  mStart.resize(kCompared);
  std::ifstream file(path, std::ios::binary);
  file.read(mStart.data(), static_cast<std::streamsize>(mStart.size()));
  mStart.resize(static_cast<std::size_t>(file.gcount()));
}

}  // namespace senmark_tool
