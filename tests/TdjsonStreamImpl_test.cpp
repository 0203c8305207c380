// A stream through the border.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <filesystem>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

class TdjsonStreamImpl : public testing::Test {
 protected:
  void SetUp() override {
    mPath = mFolder.Write("a.tdjson", kSmallVersion2);
    mHost.Manager().createTdjsonStream(&mStream, mPath.c_str(), 0, &mHost);
    ASSERT_NE(mStream, nullptr);
  }
  void TearDown() override {
    mHost.Manager().destroyTdjsonStream(&mStream, &mHost);
    EXPECT_EQ(mStream, nullptr);
  }

  TempFolder mFolder;
  RecordingHost mHost;
  std::string mPath;
  std::string const mContent = kSmallVersion2;
  ns_sensor::ITdjsonStream* mStream = nullptr;
};

TEST_F(TdjsonStreamImpl, DeliversTheFileInPieces) {
  EXPECT_EQ(mStream->GetStreamSize(), mContent.size());
  std::string read;
  unsigned count = 0;
  char buffer[1000];
  while ((count = mStream->readStream(buffer, 1000, &mHost)) != 0) {
    read.append(buffer, count);
    EXPECT_EQ(mStream->GetRemainingStreamSize(), mContent.size() - read.size());
  }
  EXPECT_EQ(read, mContent);
  EXPECT_EQ(mStream->GetStreamSize(), mContent.size());
}

TEST_F(TdjsonStreamImpl, TailOfAShortReadIsZero) {
  std::string first(mContent.size() - 4, '\xFF');
  EXPECT_EQ(mStream->readStream(first.data(), static_cast<unsigned>(first.size()), &mHost), first.size());
  std::string buffer(11, '\xFF');
  EXPECT_EQ(mStream->readStream(buffer.data(), 10, &mHost), 4u);
  EXPECT_EQ(buffer, mContent.substr(mContent.size() - 4) + std::string(6, '\0') + '\xFF');
  buffer.assign(11, '\xFF');
  EXPECT_EQ(mStream->readStream(buffer.data(), 10, &mHost), 0u);
  EXPECT_EQ(buffer, std::string(10, '\0') + '\xFF');
}

TEST_F(TdjsonStreamImpl, ResetGoesBackButRestoresNoCount) {
  std::string buffer(mContent.size(), '\0');
  unsigned const all = static_cast<unsigned>(buffer.size());
  EXPECT_EQ(mStream->readStream(buffer.data(), all - 3, &mHost), all - 3);
  mStream->resetStream(&mHost);
  EXPECT_EQ(mStream->GetRemainingStreamSize(), 3u);
  EXPECT_EQ(mStream->readStream(buffer.data(), all, &mHost), 3u);
  EXPECT_EQ(buffer.substr(0, 3), mContent.substr(0, 3));
  mStream->resetStream(&mHost);
  EXPECT_EQ(mStream->GetRemainingStreamSize(), 0u);
  EXPECT_EQ(mStream->readStream(buffer.data(), all, &mHost), 0u);
}

TEST_F(TdjsonStreamImpl, SizeIsCutTo32Bits) {
  std::filesystem::resize_file(mPath, (std::uintmax_t{1} << 32U) + 7);
  ns_sensor::ITdjsonStream* large = nullptr;
  mHost.Manager().createTdjsonStream(&large, mPath.c_str(), 0, &mHost);
  ASSERT_NE(large, nullptr);
  EXPECT_EQ(large->GetStreamSize(), 7U);
  EXPECT_EQ(large->GetRemainingStreamSize(), 7U);
  std::string buffer(10, '\xFF');
  EXPECT_EQ(large->readStream(buffer.data(), 10, &mHost), 7U);
  EXPECT_EQ(buffer, mContent.substr(0, 7) + std::string(3, '\0'));
  EXPECT_EQ(large->readStream(buffer.data(), 10, &mHost), 0U);
  mHost.Manager().destroyTdjsonStream(&large, &mHost);
}

TEST_F(TdjsonStreamImpl, NullBufferIsCodeOne) {
  EXPECT_EQ(mStream->readStream(nullptr, 10, &mHost), 0u);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{1, "Invalid pointer to \"GetTDJSONStream\".", -1, -1}));
}

TEST_F(TdjsonStreamImpl, TellsThePathAsItWasGiven) {
  mStream->getNativeFilePath(&mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(), "text \"" + mPath + "\"\n");
}

TEST_F(TdjsonStreamImpl, NativePathIsAppended) {
  std::string path = "file:";
  mStream->GetNativeFilePath(path);
  EXPECT_EQ(path, "file:" + mPath);
}

TEST_F(TdjsonStreamImpl, SavingCopiesTheWholeFileAndKeepsThePosition) {
  char buffer[8];
  EXPECT_EQ(mStream->readStream(buffer, 8, &mHost), 8u);
  std::string const fresh = mFolder.Path("fresh.tdjson");
  mStream->saveStream(fresh.c_str(), &mHost);
  EXPECT_EQ(mFolder.Read(fresh), mContent);
  std::string const old = mFolder.Write("old.tdjson", std::string(70000, 'x'));
  mStream->saveStream(old.c_str(), &mHost);
  EXPECT_EQ(mFolder.Read(old), mContent);
  EXPECT_EQ(mStream->readStream(buffer, 8, &mHost), 8u);
  EXPECT_EQ(std::string(buffer, 8), mContent.substr(8, 8));
}

TEST_F(TdjsonStreamImpl, SavingToItsOwnPathKeepsTheFile) {
  mStream->saveStream(mPath.c_str(), &mHost);
  EXPECT_EQ(mFolder.Read(mPath), mContent);
}

TEST_F(TdjsonStreamImpl, FailedSaveLeavesAnOldFileEmptyAndNoNewOne) {
  std::string const old = mFolder.Write("old.tdjson", "old content");
  std::string const fresh = mFolder.Path("fresh.tdjson");
  std::filesystem::remove(mPath);
  ReportedError const expected{6, "File_IO::Open, failure.", -1, -1};
  mStream->saveStream(old.c_str(), &mHost);
  EXPECT_EQ(mHost.TakeError(), expected);
  EXPECT_EQ(mFolder.Read(old), "");
  mStream->saveStream(fresh.c_str(), &mHost);
  EXPECT_EQ(mHost.TakeError(), expected);
  EXPECT_FALSE(std::filesystem::exists(fresh));
}

TEST_F(TdjsonStreamImpl, SavingChecksItsPath) {
  mStream->saveStream(nullptr, &mHost);
  EXPECT_EQ(mHost.TakeError().code, 2);
  mStream->saveStream("", &mHost);
  EXPECT_EQ(mHost.TakeError().code, 2);
  mStream->saveStream(std::string(65535, 'a').c_str(), &mHost);
  EXPECT_EQ(mHost.TakeError().code, 3);
  mStream->saveStream("/no/such/folder/a.tdjson", &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{7, "File_IO::Create, Cannot create file.", -1, -1}));
}

TEST_F(TdjsonStreamImpl, ValidationReportsWhatIsWrongInside) {
  std::string broken = mContent;
  broken.replace(broken.find("+01.5"), 5, "+01.55");
  std::string const path = mFolder.Write("broken.tdjson", broken);
  ns_sensor::ITdjsonStream* stream = nullptr;
  mHost.Manager().createTdjsonStream(&stream, path.c_str(), 1, &mHost);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(mHost.TakeError().code, 39);
  mHost.Manager().createTdjsonStream(&stream, path.c_str(), 0, &mHost);
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->GetStreamSize(), broken.size());
  mHost.Manager().destroyTdjsonStream(&stream, &mHost);
}

TEST_F(TdjsonStreamImpl, StreamsLeftOverGoWithTheManager) {
  ns_sensor::ITdjsonStream* left = nullptr;
  mHost.Manager().createTdjsonStream(&left, mPath.c_str(), 1, &mHost);
  EXPECT_NE(left, nullptr);
}

}  // namespace
}  // namespace senmark_test
