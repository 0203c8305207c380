#include "SK_ConversionInfo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>

#include "SK_PathInfo.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::TempFolder;

TEST(ConversionInfo, StartsAsNoFileOfUnknownVersion) {
  SK_ConversionInfo const info;
  EXPECT_EQ(info.filePath, "");
  EXPECT_FALSE(info.isTemporary);
  EXPECT_EQ(static_cast<int>(info.version), 2);
  EXPECT_FALSE(std::is_copy_constructible_v<SK_ConversionInfo>);
}

TEST(ConversionInfo, FormatVersionsHaveFixedNumbers) {
  EXPECT_EQ(sizeof(eTDJSONVersion), 1u);
  EXPECT_EQ(static_cast<int>(kTdjsonVersion1), 0);
  EXPECT_EQ(static_cast<int>(kTdjsonVersion2), 1);
  EXPECT_EQ(static_cast<int>(kNotTdjson), 2);
}

TEST(ConversionInfo, TemporaryFileGoesWithTheLastOwner) {
  TempFolder const folder;
  std::string const path = folder.Write("result.tdjson", "x");
  auto first = std::make_shared<SK_ConversionInfo>();
  first->filePath = path;
  first->isTemporary = true;
  std::shared_ptr<SK_ConversionInfo> last = first;
  first.reset();
  EXPECT_TRUE(std::filesystem::exists(path));
  last.reset();
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(ConversionInfo, FileThatIsNotTemporaryStays) {
  TempFolder const folder;
  std::string const path = folder.Write("input.tdjson", "x");
  {
    SK_ConversionInfo info;
    info.filePath = path;
  }
  EXPECT_TRUE(std::filesystem::exists(path));
}

TEST(ConversionInfo, MovedTemporaryFileIsNoError) {
  TempFolder const folder;
  std::string const path = folder.Write("result.tdjson", "x");
  EXPECT_NO_THROW({
    SK_ConversionInfo info;
    info.filePath = path;
    info.isTemporary = true;
    std::filesystem::rename(path, folder.Path("wanted.tdjson"));
  });
  EXPECT_TRUE(std::filesystem::exists(folder.Path("wanted.tdjson")));
}

TEST(ConversionInfo, TemporaryWithoutAPathIsNoError) {
  EXPECT_NO_THROW({
    SK_ConversionInfo info;
    info.isTemporary = true;
  });
}

TEST(PathInfo, HoldsThreeTexts) {
  SK_PathInfo const empty;
  EXPECT_EQ(empty.filePath + empty.extension + empty.outputPath, "");
  SK_PathInfo const info("dir/a.csv", "csv");
  EXPECT_EQ(info.filePath, "dir/a.csv");
  EXPECT_EQ(info.extension, "csv");
  EXPECT_EQ(info.outputPath, "");
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
