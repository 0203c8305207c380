// The manager through the border: opening, sharing, closing, and where copies go.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

class SenmarkImpl : public testing::Test {
 protected:
  TempFolder mFolder;
  RecordingHost mHost;

  std::string CreatorOf(ISensorFileHandler* handler) {
    ns_sensor::SK_FileInfo info;
    handler->getFileInfo(&info, &mHost, &mHost);
    return info.creator;
  }
};

TEST_F(SenmarkImpl, OnePathHasOneHandlerUntilItsLastClose) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ISensorFileHandler* const first = mHost.Open(path);
  ISensorFileHandler* const second = mHost.Open(path);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_EQ(mHost.Close(first), first);
  first->getRootChildren(&mHost, &mHost);
  EXPECT_NE(mHost.TakeCalls(), "");
  EXPECT_EQ(mHost.Close(second), nullptr);
}

TEST_F(SenmarkImpl, TwoSpellingsOfOneFileHaveTwoHandlers) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ISensorFileHandler* const first = mHost.Open(path);
  ISensorFileHandler* const second = mHost.Open(mFolder.Path("./a.tdjson"));
  EXPECT_NE(first, second);
  EXPECT_EQ(mHost.Close(first), nullptr);
  EXPECT_EQ(mHost.Close(second), nullptr);
}

TEST_F(SenmarkImpl, HandlersLeftOpenGoWithTheManager) {
  {
    RecordingHost other;
    other.Open(mFolder.Write("a.tdjson", kSmallVersion2));
    other.Open(mFolder.Write("b.tdjson", kSmallVersion1));
    EXPECT_NE(mFolder.TempNames(), "");
    // This one still counts: nothing is shut down yet.
  }
  EXPECT_NE(mFolder.TempNames(), "");
  ns_sensor::ISenmark* manager = &mHost.Manager();
  DestroySenmark_1(&manager, &mHost);
  EXPECT_EQ(mFolder.TempNames(), "");
  // The fixture's own destruction is one too many now, and does no harm.
}

TEST_F(SenmarkImpl, InputMayGoOnceItIsOpen) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ISensorFileHandler* const handler = mHost.Open(path);
  ASSERT_NE(handler, nullptr);
  std::filesystem::remove(path);
  handler->getDynamicSamples("n1", 2, 2, 1, 2, 1, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(), "count 1\nsample 2/1 \"a b\" size 3\n");
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

struct RefusedOpen {
  char const* name;
  char const* path;  // below the test's folder if it does not begin with a slash; null stays null
  ReportedError error;
};

class RefusedPath : public SenmarkImpl, public testing::WithParamInterface<RefusedOpen> {};

RefusedOpen const kRefusedOpens[] = {
    {"Null", nullptr, {2, "Input file path is NULL.", -1, -1}},
    {"Empty", "", {2, "Input file path is NULL.", -1, -1}},
    {"Missing", "/no/such/file.tdjson", {4, "File not exist at input path:/no/such/file.tdjson.", -1, -1}},
    {"MissingAndNotAscii", "/no/\xC3\xA4.tdjson", {4, "File not exist at input path:.", -1, -1}},
};

TEST_P(RefusedPath, IsRefusedByOpenFileAndByStreams) {
  RefusedOpen const& row = GetParam();
  auto* handler = reinterpret_cast<ISensorFileHandler*>(&mHost);
  mHost.Manager().openFile(&handler, row.path, nullptr, &mHost);
  EXPECT_EQ(handler, nullptr);
  EXPECT_EQ(mHost.TakeError(), row.error);
  auto* stream = reinterpret_cast<ns_sensor::ITdjsonStream*>(&mHost);
  mHost.Manager().createTdjsonStream(&stream, row.path, 0, &mHost);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(mHost.TakeError(), row.error);
}

INSTANTIATE_TEST_SUITE_P(SenmarkImpl, RefusedPath, testing::ValuesIn(kRefusedOpens),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(SenmarkImpl, PathLengthIsLimited) {
  ReportedError const tooLong{3, "Input file path length is greater than the supported file path length.", -1, -1};
  EXPECT_EQ(mHost.Open(std::string(65536, 'a')), nullptr);
  EXPECT_EQ(mHost.TakeError(), tooLong);
  EXPECT_EQ(mHost.Open(std::string(65535, 'a')), nullptr);
  EXPECT_EQ(mHost.TakeError(), tooLong);
  EXPECT_EQ(mHost.Open(std::string(65534, 'a')), nullptr);
  EXPECT_EQ(mHost.TakeError().code, 4);
}

TEST_F(SenmarkImpl, OutputPathLengthIsLimited) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  EXPECT_EQ(mHost.Open(path, std::string(65535, 'a').c_str()), nullptr);
  EXPECT_EQ(mHost.TakeError(),
            (ReportedError{3, "Input file path length is greater than the supported file path length.", -1, -1}));
  ISensorFileHandler* const handler = mHost.Open(path, std::string(65534, 'a').c_str());
  EXPECT_EQ(mHost.TakeError(), (ReportedError{7, "File_IO::Create, Cannot create file.", -1, -1}));
  ASSERT_NE(handler, nullptr) << "the file is open, only the copy failed";
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(SenmarkImpl, NullPointersAreCodeOne) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ReportedError const noHandler{1, "Invalid pointer to \"ISensorFileHandler\".", -1, -1};
  mHost.Manager().openFile(nullptr, path.c_str(), nullptr, &mHost);
  EXPECT_EQ(mHost.TakeError(), noHandler);
  mHost.Manager().closeFile(nullptr, &mHost);
  EXPECT_EQ(mHost.TakeError(), noHandler);
  EXPECT_EQ(mHost.Close(nullptr), nullptr);
  EXPECT_EQ(mHost.TakeError(), noHandler);
  mHost.Manager().createTdjsonStream(nullptr, path.c_str(), 0, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{1, "Invalid pointer to \"ISenmark\".", -1, -1}));
  ReportedError const noStream{1, "Invalid pointer to \"ITdjsonStream\".", -1, -1};
  mHost.Manager().destroyTdjsonStream(nullptr, &mHost);
  EXPECT_EQ(mHost.TakeError(), noStream);
  ns_sensor::ITdjsonStream* null = nullptr;
  mHost.Manager().destroyTdjsonStream(&null, &mHost);
  EXPECT_EQ(mHost.TakeError(), noStream);
}

TEST_F(SenmarkImpl, ClosingWithoutAnOpenFileIsCode26WhateverThePointer) {
  auto* const foreign = reinterpret_cast<ISensorFileHandler*>(&mHost);
  EXPECT_EQ(mHost.Close(foreign), foreign);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{26, "No file is opened by Senmark.", -1, -1}));
}

TEST_F(SenmarkImpl, DestroyingWithoutAStreamIsCode56WhateverThePointer) {
  auto* foreign = reinterpret_cast<ns_sensor::ITdjsonStream*>(&mHost);
  mHost.Manager().destroyTdjsonStream(&foreign, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{56, "No stream created by Senmark.", -1, -1}));
}

TEST_F(SenmarkImpl, DestroyingAForeignStreamIsCode57) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ns_sensor::ITdjsonStream* stream = nullptr;
  mHost.Manager().createTdjsonStream(&stream, path.c_str(), 0, &mHost);
  ASSERT_NE(stream, nullptr);
  auto* foreign = reinterpret_cast<ns_sensor::ITdjsonStream*>(&mHost);
  mHost.Manager().destroyTdjsonStream(&foreign, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{57, "TDJSON Stream is not created by this Senmark instance.", -1, -1}));
  ns_sensor::ITdjsonStream* copy = stream;
  mHost.Manager().createTdjsonStream(&foreign, path.c_str(), 0, &mHost);
  mHost.Manager().destroyTdjsonStream(&stream, &mHost);
  EXPECT_EQ(stream, nullptr);
  mHost.Manager().destroyTdjsonStream(&copy, &mHost);
  EXPECT_EQ(mHost.TakeError().code, 57) << "destroyed a second time";
  mHost.Manager().destroyTdjsonStream(&foreign, &mHost);
}

TEST_F(SenmarkImpl, OutputPathGetsACopy) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  std::string const output = mFolder.Path("copy.tdjson");
  ISensorFileHandler* const handler = mHost.Open(path, output.c_str());
  EXPECT_EQ(mFolder.Read(output), kSmallVersion2);
  EXPECT_EQ(mFolder.Read(path), kSmallVersion2);
  std::string const longer = mFolder.Write("longer.tdjson", std::string(100000, 'x'));
  EXPECT_EQ(mHost.Open(path, longer.c_str()), handler);
  EXPECT_EQ(mFolder.Read(longer), kSmallVersion2) << "no tail of the old file is left";
  EXPECT_EQ(mFolder.Read(path), kSmallVersion2) << "copied, not exchanged";
  EXPECT_EQ(mHost.Open(path, ""), handler);
  EXPECT_EQ(mHost.Close(handler), handler);
  EXPECT_EQ(mHost.Close(handler), handler);
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(SenmarkImpl, OutputPathMayBeTheInput) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  ISensorFileHandler* const handler = mHost.Open(path, path.c_str());
  EXPECT_EQ(mFolder.Read(path), kSmallVersion2);
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(SenmarkImpl, OutputThatMayNotBeWrittenLeavesTheFileOpen) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  std::string const output = mFolder.Write("protected.tdjson", "keep me");
  chmod(output.c_str(), 0444);
  ISensorFileHandler* const handler = mHost.Open(path, output.c_str());
  EXPECT_EQ(mHost.TakeError(), (ReportedError{13, "File_IO::Open, file permission error", -1, -1}));
  EXPECT_EQ(mFolder.Read(output), "keep me");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(SenmarkImpl, FormatIsToldByContentOrByExtension) {
  struct Row {
    char const* name;
    char const* content;
    char const* creator;  // the file's own, or that of the converter
  };
  constexpr char kOfTables[] = "com.velmo.sensor.csv";
  constexpr char kMotion[] =
      "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nCHANNELS 3 Xrotation Yrotation Zrotation\n}\n"
      "MOTION\nFrames: 1\nFrame Time: 0.04\n1 2 3\n";
  for (Row const& row :
       {Row{"two.txt", kSmallVersion2, "by hand"}, Row{"two", kSmallVersion2, "by hand"},
        Row{"one.TDJSON", kSmallVersion1, "by hand, too"}, Row{"one.txt", kSmallVersion1, "com.velmo.sensor.tsv"},
        Row{"one", kSmallVersion1, kOfTables}, Row{"table.csv", "a,b\n1,2\n", kOfTables},
        Row{"table.xyz", "a,b\n1,2\n", kOfTables}, Row{"text.json", "a\n1\n", kOfTables},
        Row{"body.bvh", kMotion, "com.velmo.sensor.bvh"}, Row{"body.xyz", kMotion, "com.velmo.sensor.bvh"},
        Row{"list.json", "[1]", "com.velmo.sensor.json"}}) {
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write(row.name, row.content));
    ASSERT_NE(handler, nullptr) << row.name << ": " << mHost.TakeError().message;
    EXPECT_EQ(CreatorOf(handler), row.creator) << row.name;
    EXPECT_EQ(mHost.Close(handler), nullptr);
  }
}

/// Whatever was cleaned up after it.
TEST_F(SenmarkImpl, FailedConversionIsTheLastError) {
  ReportedError const notConverted{1506, "File Cannot be converted.", -1, -1};
  std::string const path = mFolder.Write("cut.json", "[1");
  std::string const output = mFolder.Path("out.tdjson");
  for (char const* const wanted : {static_cast<char const*>(nullptr), output.c_str()}) {
    EXPECT_EQ(mHost.Open(path, wanted), nullptr);
    EXPECT_EQ(mHost.TakeError(), notConverted);
    EXPECT_EQ(LastError(true), notConverted);
  }
  ns_sensor::ITdjsonStream* stream = nullptr;
  mHost.Manager().createTdjsonStream(&stream, path.c_str(), 0, &mHost);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(mHost.TakeError(), notConverted);
  EXPECT_EQ(LastError(true), notConverted);
}

TEST_F(SenmarkImpl, BareNameOfVersion1HasNoExtension) {
  mFolder.Write("bare.tdjson", kSmallVersion1);
  std::filesystem::path const before = std::filesystem::current_path();
  std::filesystem::current_path(mFolder.Path(""));
  ISensorFileHandler* const bare = mHost.Open("bare.tdjson");
  ISensorFileHandler* const inFolder = mHost.Open("./bare.tdjson");
  std::filesystem::current_path(before);
  EXPECT_EQ(CreatorOf(bare), "com.velmo.sensor.csv");
  EXPECT_EQ(CreatorOf(inFolder), "by hand, too");
  mHost.Close(bare);
  EXPECT_EQ(mHost.Close(inFolder), nullptr);
}

}  // namespace
}  // namespace senmark_test
