// Opening files that a converter turns into the system's format: where the result goes, and what a failure
// leaves. The converter is the test's own.

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_ConverterRegistry.h"
#include "SK_PluginException.h"
#include "SenmarkImpl.h"
#include "SensorFileHandlerImpl.h"
#include "SmallFiles.h"
#include "TempFolder.h"
#include "senmark/ITdjsonStream.h"

namespace ns_sensor {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::kSmallVersion1;
using senmark_test::kSmallVersion2;
using SK_NAMESPACE_INT::SK_PathInfo;

constexpr char kMark[] = "to convert:";

/// Writes what stands behind the mark of its input to the output, and fails if that says so.
class CopyingConverter : public SK_ConverterHandlerBase {
 public:
  using SK_ConverterHandlerBase::SK_ConverterHandlerBase;

  bool convertToTDJSON() override {
    std::ifstream const input(mPathInfo.filePath, std::ios::binary);
    std::stringstream whole;
    whole << input.rdbuf();
    std::string const content = whole.str().substr(std::string(kMark).size());
    std::ofstream(mPathInfo.outputPath, std::ios::binary) << content;
    if (content == "plugin exception") {
      throw SK_PLUGIN::SK_PluginException(static_cast<eErrorCode>(2001), 12, 3);
    }
    if (content == "no memory") {
      throw std::bad_alloc();
    }
    if (content == "unknown exception") {
      throw 1;
    }
    if (content == "result gone") {
      std::filesystem::remove(mPathInfo.outputPath);
      throw 1;
    }
    return false;  // nobody looks at it
  }
};

bool TakesTest(std::string&, SK_PathInfo const& file) {
  return file.extension == "test";
}

std::shared_ptr<SK_ConverterHandlerBase> MakesTest(std::string&, SK_PathInfo const& file) {
  return std::make_shared<CopyingConverter>(file);
}

class Conversion : public testing::Test {
 protected:
  Conversion() {
    SK_ConverterRegistry::getInstance()->registerPluginConverter("test", "Test", TakesTest, MakesTest);
    std::filesystem::create_directory(mOut);
  }
  ~Conversion() override {
    EXPECT_TRUE(SenmarkImpl::Terminate());
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  /// A file that the converter turns into `result`.
  std::string Input(std::string const& result) const { return mFolder.Write("a.test", kMark + result); }

  ISensorFileHandler* Open(std::string const& path, char const* outputPath) {
    ISensorFileHandler* handler = nullptr;
    mManager->OpenFile(&handler, path.c_str(), outputPath);
    return handler;
  }

  void Close(ISensorFileHandler* handler) {
    mManager->CloseFile(&handler);
    EXPECT_EQ(handler, nullptr);
  }

  /// Names in the folder for outputs, in order.
  std::string OutNames() const {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(mOut)) {
      names.insert(entry.path().filename().string());
    }
    std::string text;
    for (std::string const& name : names) {
      text += name + ' ';
    }
    return text;
  }

  std::size_t const mDescriptors = CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
  std::string const mOut = mFolder.Path("out/");
  SenmarkImpl* const mManager = SenmarkImpl::Initialize(nullptr, nullptr, nullptr);
};

TEST_F(Conversion, ResultLivesOnlyForTheCall) {
  std::string const input = Input(kSmallVersion2);
  for (char const* const noOutput : {static_cast<char const*>(nullptr), ""}) {
    ISensorFileHandler* const handler = Open(input, noOutput);
    EXPECT_EQ(dynamic_cast<SensorFileHandlerImpl&>(*handler).getNativeFilePath(), input);
    std::string const result = dynamic_cast<SensorFileHandlerImpl&>(*handler).getFilePath();
    EXPECT_EQ(result.compare(0, mFolder.TempPath().size(), mFolder.TempPath()), 0);
    EXPECT_FALSE(std::filesystem::exists(result));
    std::vector<SK_DynamicDataSample> samples;
    handler->GetDynamicSamples("a1", {0, 1}, {1, 1}, &samples);
    EXPECT_EQ(samples.size(), 4u);
    Close(handler);
  }
}

TEST_F(Conversion, FirstOpeningGivesTheResultAndTheSecondTheInput) {
  std::string const input = Input(kSmallVersion2);
  ISensorFileHandler* const handler = Open(input, (mOut + "first").c_str());
  std::filesystem::remove(input);
  mFolder.Write("a.test", "changed since");
  EXPECT_EQ(Open(input, (mOut + "second").c_str()), handler);
  EXPECT_EQ(mFolder.Read(mOut + "first"), kSmallVersion2);
  EXPECT_EQ(mFolder.Read(mOut + "second"), "changed since") << "the input itself, not what it was converted to";
  EXPECT_EQ(mFolder.Read(input), "changed since") << "copied, not moved";
  EXPECT_EQ(OutNames(), "first second ");
  EXPECT_EQ(mFolder.TempNames().find(' '), mFolder.TempNames().size() - 1) << "the scratch file alone";
  ISensorFileHandler* stillOpen = handler;
  mManager->CloseFile(&stillOpen);
  EXPECT_EQ(stillOpen, handler);
  Close(handler);
}

TEST_F(Conversion, ResultTakesThePlaceOfAnOldOutput) {
  std::ofstream(mOut + "wanted") << std::string(100000, 'x');
  ISensorFileHandler* const handler = Open(Input(kSmallVersion2), (mOut + "wanted").c_str());
  EXPECT_EQ(mFolder.Read(mOut + "wanted"), kSmallVersion2);
  EXPECT_EQ(OutNames(), "wanted ") << "what stood there before is gone";
  Close(handler);
}

TEST_F(Conversion, FailedMoveLeavesTheFileOpenAndNoResult) {
  std::string const tooLong = mOut + std::string(300, 'n');
  ISensorFileHandler* handler = nullptr;
  std::string const input = Input(kSmallVersion2);
  ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), tooLong.c_str()); }, 22,
              "File_IO::Rename, Rename failure.");
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(OutNames(), "");
  Close(handler);
}

TEST_F(Conversion, SwapWithoutAThirdNameLeavesTheOldOutput) {
  std::ofstream(mOut + "wanted") << "old";
  for (int i = 0; i != 100; ++i) {
    std::ofstream(mOut + "wanted._" + std::to_string(i / 10) + std::to_string(i % 10) + '_');
  }
  std::string const before = OutNames();
  ISensorFileHandler* handler = nullptr;
  std::string const input = Input(kSmallVersion2);
  ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), (mOut + "wanted").c_str()); }, 15,
              "File_IO::SwapData, Cannot create temp file path.");
  EXPECT_EQ(mFolder.Read(mOut + "wanted"), "old");
  EXPECT_EQ(OutNames(), before);
  Close(handler);
}

struct Failure {
  char const* name;
  char const* result;
  int code;
  char const* message;
  long long offset;
};

void PrintTo(Failure const& row, std::ostream* out) {
  *out << row.name;
}

class FailedConversion : public Conversion, public testing::WithParamInterface<Failure> {};

TEST_P(FailedConversion, LeavesAnOldOutputAndNothingElse) {
  Failure const& row = GetParam();
  std::string const input = Input(row.result);
  std::ofstream(mOut + "wanted") << "old";
  for (std::string const& output : {mOut + "wanted", std::string()}) {
    auto* handler = reinterpret_cast<ISensorFileHandler*>(this);
    ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), output.c_str()); }, row.code, row.message,
                row.offset);
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mFolder.Read(mOut + "wanted"), "old");
    EXPECT_EQ(OutNames(), "wanted ");
    EXPECT_EQ(mFolder.TempNames(), "");
  }
  ITdjsonStream* stream = nullptr;
  ExpectError([&] { mManager->CreateTdjsonStream(&stream, input.c_str(), true); }, row.code, row.message, row.offset);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(mFolder.TempNames(), "");
  ISensorFileHandler* none = reinterpret_cast<ISensorFileHandler*>(this);
  ExpectError([&] { mManager->CloseFile(&none); }, 26, "No file is opened by Senmark.");
}

Failure const kFailures[] = {
    {"PluginException", "plugin exception", 2001, "File Cannot be converted.", -1},
    {"NoMemory", "no memory", 34, "Unable to allocate memory.", -1},
    {"UnknownException", "unknown exception", 34, "Unknown exception occurred.", -1},
    // What was thrown first is lost: there is nothing to delete any more.
    {"DeletionThatFails", "result gone", 9, "File_IO::Delete, failure.", -1},
    {"EmptyResult", "", 54, "Empty Input file.", -1},
    {"ResultThatIsNoJson", "[]", 32, "Unable to find TDJSON opening '{'.", 0},
};

INSTANTIATE_TEST_SUITE_P(Conversion, FailedConversion, testing::ValuesIn(kFailures),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(Conversion, ResultMayBeOfVersion1) {
  ISensorFileHandler* const handler = Open(Input(kSmallVersion1), nullptr);
  SK_FileInfo info;
  handler->GetFileInfo(&info);
  EXPECT_EQ(info.version, "anything");
  Close(handler);
}

TEST_F(Conversion, OutputNeedsAFolderThatExists) {
  std::string const input = Input(kSmallVersion2);
  ISensorFileHandler* handler = nullptr;
  for (std::string const& output : {std::string("bare name"), mOut + "none/wanted", input + "/wanted"}) {
    ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), output.c_str()); }, 58,
                "TDJSON output directory does not exists.");
    EXPECT_EQ(handler, nullptr);
  }
}

TEST_F(Conversion, ResultThatCannotBeMadeIsCode15) {
  senmark_test::KeptVariable const temp("TEMP");
  temp.Set(mFolder.Path("absent/"));
  std::string const input = Input(kSmallVersion2);
  ISensorFileHandler* handler = nullptr;
  ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), nullptr); }, 15,
              "File_IO::GetTempFile, Unable to open temporary file.");
}

TEST_F(Conversion, ResultThatCannotBeClosedIsDeleted) {
  std::string const input = Input(kSmallVersion2);
  for (std::string const& output : {mOut + "wanted", std::string()}) {
    ISensorFileHandler* handler = nullptr;
    // The first close is that of the look at the input's format.
    senmark_test::FailingCall const failing(senmark_test::kClose, EIO, 1, 1);
    ExpectError([&] { mManager->OpenFile(&handler, input.c_str(), output.c_str()); }, 8,
                "File_IO::Close, Cannot close file.");
    EXPECT_TRUE(failing.HasFailed());
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(OutNames(), "");
    EXPECT_EQ(mFolder.TempNames(), "");
  }
}

/// The result takes the place of the input, which was read by then.
TEST_F(Conversion, OutputMayBeTheInput) {
  std::string const input = Input(kSmallVersion2);
  ISensorFileHandler* const handler = Open(input, input.c_str());
  EXPECT_EQ(mFolder.Read(input), kSmallVersion2);
  Close(handler);
}

/// Its pointer is compared and never followed.
TEST_F(Conversion, StreamOfAnEarlierManagerIsUnknown) {
  ITdjsonStream* stream = nullptr;
  mManager->CreateTdjsonStream(&stream, Input(kSmallVersion2).c_str(), true);
  EXPECT_TRUE(SenmarkImpl::Terminate());
  EXPECT_EQ(mFolder.TempNames(), "");
  SenmarkImpl* const later = SenmarkImpl::Initialize(nullptr, nullptr, nullptr);
  ExpectError([&] { later->DestroyTdjsonStream(&stream); }, 56, "No stream created by Senmark.");
  EXPECT_NE(stream, nullptr);
}

TEST_F(Conversion, StreamGivesTheResultUnderTheNameOfTheInput) {
  std::string const input = Input(kSmallVersion2);
  ITdjsonStream* stream = nullptr;
  mManager->CreateTdjsonStream(&stream, input.c_str(), true);
  std::filesystem::remove(input);
  EXPECT_NE(mFolder.TempNames(), "");
  std::string path;
  stream->GetNativeFilePath(path);
  EXPECT_EQ(path, input);
  std::string content(stream->GetStreamSize(), '\0');
  EXPECT_EQ(stream->ReadStream(content.data(), stream->GetStreamSize()), content.size());
  EXPECT_EQ(content, kSmallVersion2);
  stream->SaveStream((mOut + "saved").c_str());
  EXPECT_EQ(mFolder.Read(mOut + "saved"), kSmallVersion2);
  mManager->DestroyTdjsonStream(&stream);
  EXPECT_EQ(stream, nullptr);
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(Conversion, StreamLeftOverTakesItsResultAlong) {
  ITdjsonStream* stream = nullptr;
  mManager->CreateTdjsonStream(&stream, Input(kSmallVersion2).c_str(), false);
  EXPECT_NE(mFolder.TempNames(), "");
}

/// A file of the system's own format stays where it is, whatever its name says.
TEST_F(Conversion, OwnFormatNeedsNoConverter) {
  ISensorFileHandler* const handler = Open(mFolder.Write("a.txt", kSmallVersion2), (mOut + "copy").c_str());
  EXPECT_EQ(mFolder.Read(mOut + "copy"), kSmallVersion2);
  EXPECT_EQ(mFolder.Read(mFolder.Path("a.txt")), kSmallVersion2);
  Close(handler);
  // Of version 1 without its extension goes to the converters like any other file.
  ISensorFileHandler* const old = Open(mFolder.Write("old.txt", kSmallVersion1), nullptr);
  SK_FileInfo info;
  old->GetFileInfo(&info);
  EXPECT_EQ(info.creator, "com.velmo.sensor.tsv");
  Close(old);
}

}  // namespace
}  // namespace ns_sensor
