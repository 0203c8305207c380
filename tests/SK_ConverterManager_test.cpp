#include "SK_ConverterManager.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "SK_ConversionInfo.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_ConverterRegistry.h"
#include "SK_Exception.h"
#include "SK_PathInfo.h"
#include "SmallFiles.h"
#include "TdjsonStreamImpl.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::SK_ConversionInfo;
using SK_NAMESPACE_INT::SK_PathInfo;

/// What the converter of the test writes; "throw" makes it fail behind its first byte.
std::string gResult;
SK_PathInfo gAskedFor;

class TestConverter : public SK_ConverterHandlerBase {
 public:
  using SK_ConverterHandlerBase::SK_ConverterHandlerBase;

  bool convertToTDJSON() override {
    gAskedFor = mPathInfo;
    std::ofstream(mPathInfo.outputPath, std::ios::binary) << gResult;
    if (gResult == "throw") {
      throw 1;
    }
    return false;  // nobody looks at it
  }
};

bool TakesTest(std::string&, SK_PathInfo const& file) {
  return file.extension == "test";
}

std::shared_ptr<SK_ConverterHandlerBase> MakesTest(std::string&, SK_PathInfo const& file) {
  return std::make_shared<TestConverter>(file);
}

class ConverterManager : public testing::Test {
 protected:
  void SetUp() override {
    SK_ConverterManager::Terminate();
    mManager = SK_ConverterManager::GetInstance();
    SK_ConverterRegistry::getInstance()->registerPluginConverter("test", "Test", TakesTest, MakesTest);
    gResult = senmark_test::kSmallVersion2;
    mInput = mFolder.Write("input.test", "any");
  }
  void TearDown() override { SK_ConverterManager::Terminate(); }

  int CodeOf(std::string const& path, char const* output) {
    try {
      mManager->ConvertNative(path.c_str(), output);
    } catch (SK_Exception const& e) {
      return e.GetErrorCode();
    }
    return 0;
  }

  senmark_test::TempFolder mFolder;
  SK_ConverterManager* mManager = nullptr;
  std::string mInput;
};

TEST_F(ConverterManager, SystemsOwnFormatIsReadWhereItStands) {
  std::string const path = mFolder.Write("own.txt", senmark_test::kSmallVersion2);
  std::shared_ptr<SK_ConversionInfo> const info = mManager->ConvertNative(path.c_str(), "/no/such/folder/out");
  EXPECT_EQ(info->filePath, path);
  EXPECT_FALSE(info->isTemporary);
  EXPECT_EQ(info->version, SK_NAMESPACE_INT::kTdjsonVersion2);
}

TEST_F(ConverterManager, Version1IsToldByItsExtensionAlone) {
  std::string const path = mFolder.Write("own.TDJSON", senmark_test::kSmallVersion1);
  EXPECT_EQ(mManager->ConvertNative(path.c_str(), nullptr)->version, SK_NAMESPACE_INT::kTdjsonVersion1);
  // Under another name it is an input like any other, here JSON, and comes back as version 2.
  std::shared_ptr<SK_ConversionInfo> const converted =
      mManager->ConvertNative(mFolder.Write("own.json", senmark_test::kSmallVersion1).c_str(), nullptr);
  EXPECT_TRUE(converted->isTemporary);
  EXPECT_EQ(converted->version, SK_NAMESPACE_INT::kTdjsonVersion2);
}

TEST_F(ConverterManager, ResultStandsInTheTemporaryFolderAndGoesWithItsOwner) {
  std::shared_ptr<SK_ConversionInfo> info = mManager->ConvertNative(mInput.c_str(), nullptr);
  EXPECT_TRUE(info->isTemporary);
  EXPECT_EQ(info->version, SK_NAMESPACE_INT::kTdjsonVersion2);
  EXPECT_EQ(info->filePath.compare(0, mFolder.TempPath().size(), mFolder.TempPath()), 0);
  EXPECT_EQ(gAskedFor.filePath, mInput);
  EXPECT_EQ(gAskedFor.extension, "test");
  EXPECT_EQ(gAskedFor.outputPath, info->filePath);
  EXPECT_NE(mFolder.TempNames(), "");
  info.reset();
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(ConverterManager, ResultStandsBesideTheWantedOutput) {
  std::string const folder = mFolder.Path("out/");
  std::filesystem::create_directory(folder);
  std::shared_ptr<SK_ConversionInfo> info = mManager->ConvertNative(mInput.c_str(), (folder + "wanted").c_str());
  EXPECT_EQ(info->filePath.compare(0, folder.size(), folder), 0);
  EXPECT_EQ(info->filePath.size(), folder.size() + 6);
  info.reset();
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(ConverterManager, OutputFolderMustExistAndBeNamed) {
  EXPECT_EQ(CodeOf(mInput, "wanted.tdjson"), kNoOutputFolder);
  EXPECT_EQ(CodeOf(mInput, mFolder.Path("none/wanted.tdjson").c_str()), kNoOutputFolder);
  EXPECT_EQ(CodeOf(mInput, (mInput + "/wanted.tdjson").c_str()), kNoOutputFolder) << "a file is no folder";
}

TEST_F(ConverterManager, ResultOfVersion1IsNotToldByItsName) {
  gResult = senmark_test::kSmallVersion1;
  EXPECT_EQ(mManager->ConvertNative(mInput.c_str(), nullptr)->version, SK_NAMESPACE_INT::kNotTdjson);
}

TEST_F(ConverterManager, FailedConversionLeavesNothingBehind) {
  gResult = "throw";
  std::string const folder = mFolder.Path("out/");
  std::filesystem::create_directory(folder);
  EXPECT_THROW(mManager->ConvertNative(mInput.c_str(), nullptr), int);
  EXPECT_THROW(mManager->ConvertNative(mInput.c_str(), (folder + "wanted").c_str()), int);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_EQ(mFolder.TempNames(), "");
  gResult.clear();
  EXPECT_EQ(CodeOf(mInput, nullptr), kEmptyFile) << "what the converter left is looked at";
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(ConverterManager, StreamOwnsTheTemporaryResult) {
  TdjsonStreamImpl* const stream = mManager->ConvertNative(mInput.c_str(), true);
  EXPECT_NE(mFolder.TempNames(), "");
  EXPECT_EQ(stream->GetStreamSize(), gResult.size());
  EXPECT_EQ(mManager->FindStream(stream), stream);
  mManager->RemoveStreamFromSet(stream);
  EXPECT_EQ(mManager->FindStream(stream), nullptr);
  delete stream;
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(ConverterManager, UnknownExceptionOfAConverterIsCode34ForAStream) {
  gResult = "throw";
  try {
    mManager->ConvertNative(mInput.c_str(), false);
    FAIL();
  } catch (SK_Exception const& e) {
    EXPECT_EQ(e.GetErrorCode(), kNoMemory);
    EXPECT_STREQ(e.GetLocalizedErrMsg(), "Unknown exception occurred.");
  }
}

TEST_F(ConverterManager, StreamsLeftOverGoWithTheInstance) {
  mManager->ConvertNative(mInput.c_str(), false);
  mManager->ConvertNative(mInput.c_str(), false);
  SK_ConverterManager::Terminate();
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(ConverterManager, RemovingTellsNoStreamFromAForeignOne) {
  auto* const foreign = reinterpret_cast<TdjsonStreamImpl*>(this);
  auto const remove = [&] {
    try {
      mManager->RemoveStreamFromSet(foreign);
    } catch (SK_Exception const& e) {
      return static_cast<int>(e.GetErrorCode());
    }
    return 0;
  };
  EXPECT_EQ(remove(), kNoStream);
  mManager->ConvertNative(mInput.c_str(), false);
  EXPECT_EQ(remove(), kForeignStream);
}

}  // namespace
}  // namespace ns_sensor
