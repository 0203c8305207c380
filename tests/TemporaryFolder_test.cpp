#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "TempFolder.h"

namespace senmark_tool {
namespace {

std::string Value(char const* name) {
  char const* const value = getenv(name);
  return value == nullptr ? "none" : value;
}

TEST(TemporaryFolder, TakesWhatIsMadeInIt) {
  senmark_test::TempFolder const folder;
  std::string const before = Value("TEMP");
  {
    TemporaryFolder const own;
    std::string const place = Value("TEMP");
    EXPECT_EQ(place.rfind(folder.TempPath() + "senmark_", 0), 0u) << place;
    EXPECT_EQ(place.back(), '/');
    EXPECT_EQ(Value("TMP"), place);
    EXPECT_EQ(Value("TMPDIR"), place);
    std::ofstream(place + "file") << "text";
    EXPECT_TRUE(std::filesystem::exists(place + "file"));
  }
  EXPECT_EQ(folder.TempNames(), "");
  EXPECT_EQ(Value("TEMP"), before);
}

TEST(TemporaryFolder, VariablesAreAsBefore) {
  senmark_test::TempFolder const folder;
  std::string const ofTheSystem = Value("TMPDIR");
  setenv("TMPDIR", "one", 1);
  unsetenv("TMP");
  { TemporaryFolder const own; }
  EXPECT_EQ(Value("TMPDIR"), "one");
  EXPECT_EQ(Value("TMP"), "none");
  if (ofTheSystem == "none") {
    unsetenv("TMPDIR");
  } else {
    setenv("TMPDIR", ofTheSystem.c_str(), 1);
  }
}

/// A name that is not too long in the usual place is none in a folder of it.
TEST(TemporaryFolder, LongPlacesStay) {
  senmark_test::TempFolder const folder;
  std::string place = folder.Path("");
  while (place.size() < PATH_MAX - 150) {
    place += std::string(100, 'x') + '/';
  }
  std::filesystem::create_directories(place);
  setenv("TEMP", place.c_str(), 1);
  TemporaryFolder const own;
  EXPECT_EQ(Value("TEMP"), place);
  EXPECT_TRUE(std::filesystem::is_empty(place));
}

TEST(TemporaryFolder, WithoutAPlaceNothingChanges) {
  senmark_test::TempFolder const folder;
  std::string const missing = folder.Path("none");
  setenv("TEMP", missing.c_str(), 1);
  TemporaryFolder const own;
  EXPECT_EQ(Value("TEMP"), missing);
}

}  // namespace
}  // namespace senmark_tool
