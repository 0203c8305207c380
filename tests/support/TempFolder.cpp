#include "TempFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace senmark_test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::string pattern = (fs::temp_directory_path() / "senmark_test_XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    ADD_FAILURE() << "cannot make " << pattern;
  }
  mRoot = pattern + '/';
  mTempPath = mRoot + "temporary/";
  fs::create_directory(mTempPath);
  setenv("TEMP", mTempPath.c_str(), 1);
}

TempFolder::~TempFolder() {
  EXPECT_EQ(TempNames(), "") << "left behind in the folder for temporary files";
  unsetenv("TEMP");
  std::error_code ignored;
  fs::remove_all(mRoot, ignored);
}

std::string TempFolder::Path(std::string const& name) const {
  return mRoot + name;
}

std::string TempFolder::Write(std::string const& name, std::string const& content) const {
  std::string const path = Path(name);
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  EXPECT_TRUE(file.good()) << path;
  return path;
}

std::string TempFolder::Read(std::string const& path) const {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  // In blocks: byte by byte, this took most of the time of some suites under a sanitizer.
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::string TempFolder::TempNames() const {
  std::string names;
  for (fs::directory_entry const& entry : fs::directory_iterator(mTempPath)) {
    names += entry.path().filename().string() + ' ';
  }
  return names;
}

}  // namespace senmark_test
