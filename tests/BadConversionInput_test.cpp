// Files to convert that are cut, damaged or hostile, places where no file can be made, and a disk that is full at every
// moment of a conversion: each ends in one error, nothing is left behind, what stood at the output is unharmed, and the
// host goes on with the same manager.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>

#include "FailingCalls.h"
#include "RecordingHost.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

using ns_sensor::ISensorFileHandler;

constexpr char kOld[] = "what stood there before";

constexpr char kSmallTable[] = "a,b\n1,x\n2,y\n";
constexpr char kSmallDocument[] = R"({"a": 1, "b": [1, 2], "c": {"d": "x"}, "f": true})";
constexpr char kSmallMotion[] =
    "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\n"
    "CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\nJOINT Knee\n{\nOFFSET 1 2 3\n"
    "CHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\nOFFSET 0 1 0\n}\n}\n}\n"
    "MOTION\nFrames: 2\nFrame Time: 0.04\n1 2 3 10 20 30 5 6 7\n4 5 6 11 21 31 8 9 10\n";

ReportedError NotConverted(int code) {
  return {code, "File Cannot be converted.", -1, -1};
}

class BadConversionInput : public testing::Test {
 protected:
  BadConversionInput() {
    fs::create_directory(mOut);
    mFolder.Write("out/wanted", kOld);
  }
  ~BadConversionInput() override {
    // The manager is as good as before.
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("good.csv", kSmallTable));
    EXPECT_NE(handler, nullptr);
    EXPECT_EQ(mHost.Close(handler), nullptr);
    ExpectNothingChanged();
  }

  void ExpectNothingChanged() {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mOut)) {
      names.insert(entry.path().filename().string());
    }
    EXPECT_EQ(names, std::set<std::string>{"wanted"});
    EXPECT_EQ(mFolder.Read(mOut + "wanted"), kOld);
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  /// The error of each way to convert a file, which is the same for all.
  ReportedError ErrorOf(std::string const& path) {
    EXPECT_EQ(mHost.Open(path, (mOut + "wanted").c_str()), nullptr);
    ReportedError const error = mHost.TakeError();
    ExpectNothingChanged();
    EXPECT_EQ(mHost.Open(path, (mOut + "new").c_str()), nullptr);
    EXPECT_EQ(mHost.TakeError(), error);
    ExpectNothingChanged();
    EXPECT_EQ(mHost.Open(path), nullptr);
    EXPECT_EQ(mHost.TakeError(), error);
    ns_sensor::ITdjsonStream* stream = nullptr;
    mHost.Manager().createTdjsonStream(&stream, path.c_str(), 1, &mHost);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(mHost.TakeError(), error);
    ExpectNothingChanged();
    return error;
  }

  ReportedError ErrorOf(std::string const& name, std::string const& content) {
    return ErrorOf(mFolder.Write(name, content));
  }

  std::size_t const mDescriptors = CountOpenDescriptors();
  TempFolder mFolder;
  std::string const mOut = mFolder.Path("out/");
  RecordingHost mHost;
};

struct BadFile {
  char const* name;
  char const* file;
  std::string content;
  ReportedError error;
};

void PrintTo(BadFile const& row, std::ostream* out) {
  *out << row.name;
}

class BadConversionContent : public BadConversionInput, public testing::WithParamInterface<BadFile> {};

TEST_P(BadConversionContent, IsOneErrorAndLeavesNothing) {
  EXPECT_EQ(ErrorOf(GetParam().file, GetParam().content), GetParam().error);
}

ReportedError const kEmptyFile{54, "Empty Input file.", -1, -1};
ReportedError const kNoMemory{34, "Unable to allocate memory.", -1, -1};
ReportedError const kTooDeep{32, "SK does not support TDJSON dataGroup with nesting more than 100", -1, -1};

std::string Repeated(std::size_t count, std::string const& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::size_t i = 0; i != count; ++i) {
    all += text;
  }
  return all;
}

std::string Motion(std::string const& joints, std::string const& motion) {
  return "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\n" + joints + "}\nMOTION\n" + motion;
}

constexpr char kChannels[] = "CHANNELS 3 Zrotation Xrotation Yrotation\n";
constexpr std::size_t kDeep = 100000;

BadFile const kBadFiles[] = {
    {"EmptyTable", "a.csv", "", kEmptyFile},
    {"EmptyTabbedTable", "a.tsv", "", kEmptyFile},
    {"EmptyText", "a.txt", "", kEmptyFile},
    {"EmptyDocument", "a.json", "", kEmptyFile},
    {"EmptyMotion", "a.bvh", "", kEmptyFile},
    // A letter is the name of a column of a table without rows, whatever the extension.
    {"OneLetterTable", "a.csv", "a", NotConverted(2000)},
    {"OneLetterTabbedTable", "a.tsv", "a", NotConverted(2000)},
    {"OneLetterText", "a.txt", "a", NotConverted(2000)},
    {"OneLetterDocument", "a.json", "a", NotConverted(2000)},
    {"OneLetterMotion", "a.bvh", "H", NotConverted(2000)},
    {"OneBracket", "a.json", "[", NotConverted(2000)},
    {"OneBrace", "a.json", "{", {32, "Unable to find enclosing quotes for Tdjson key.", 1, -1}},
    {"OneLineFeed", "a.csv", "\n", NotConverted(2021)},
    {"OneQuote", "a.csv", "\"", NotConverted(2021)},
    {"OneZeroByte", "a.csv", std::string(1, '\0'), NotConverted(2000)},

    {"HeaderWithoutRows", "a.csv", "a,b\n", NotConverted(2000)},
    {"HeaderWithoutRowsInTabs", "a.tsv", "a\tb\r\n", NotConverted(2000)},
    {"RowsWithoutColumns", "a.csv", ",a\n1,2\n", NotConverted(2021)},
    {"LoneSurrogate", "a.csv", std::string("\xFE\xFF\0a\0\n\xD8\0\0b", 10), kEmptyFile},
    {"LoneSurrogateLowByteFirst", "a.csv",
     std::string("\xFF\xFE"
                 "a\0\n\0\0\xDC"
                 "b\0",
                 10),
     kEmptyFile},
    {"LoneSurrogateInTheHeader", "a.tsv", std::string("\xFE\xFF\xDC\0\0\n\0b", 8), kEmptyFile},

    {"CutDocument", "a.json", R"({"a": [1, 2)", NotConverted(1506)},
    {"TextWithoutEnd", "a.json", R"(["abc)", NotConverted(1506)},
    {"WordCut", "a.json", "[tru]", NotConverted(1506)},
    {"NumberOutOfRange", "a.json", "[1e400]", NotConverted(1506)},
    {"LoneSurrogateEscape", "a.json", R"(["\ud800x"])", NotConverted(1506)},
    {"NothingInTheDocument",
     "a.json",
     R"([null, [], {"a": {}}])",
     {32, "Invalid \"dynamicSamplesPresentB\" type, expected type:JSON Boolean.", 50, -1}},

    {"TooFewNumbers", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: 0.04\n1 2\n"), NotConverted(1509)},
    {"TooManyNumbers", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: 0.04\n1 2 3 4\n"), NotConverted(1509)},
    {"WrongCountInTheLastLine", "a.bvh", Motion(kChannels, "Frames: 2\nFrame Time: 0.04\n1 2 3\n1 2"),
     NotConverted(1509)},
    {"LettersForNumbers", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: 0.04\n1 two 3\n"), NotConverted(1509)},
    {"MotionWithoutChannels", "a.bvh", Motion("", "Frames: 1\nFrame Time: 0.04\n1 2 3\n"), NotConverted(1509)},
    {"FramesMissing", "a.bvh", Motion(kChannels, "Frame Time: 0.04\n1 2 3\n"), NotConverted(1508)},
    {"FrameTimeMissing", "a.bvh", Motion(kChannels, "Frames: 1\n1 2 3\n"), NotConverted(1508)},
    {"FrameTimeTooSmall", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: 0.001\n1 2 3\n"), NotConverted(1508)},
    {"FrameTimeZero", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: 0\n1 2 3\n"), NotConverted(1508)},
    {"FrameTimeNegative", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: -0.04\n1 2 3\n"), NotConverted(1508)},
    {"FrameTimeNoNumber", "a.bvh", Motion(kChannels, "Frames: 1\nFrame Time: soon\n1 2 3\n"), NotConverted(1508)},
    {"BraceMissing", "a.bvh", "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n", NotConverted(1509)},
    {"SiteMissing", "a.bvh", Motion("End\n{\n}\n", ""), NotConverted(1509)},
    {"OffsetOfFour", "a.bvh", Motion("OFFSET 1 2 3 4\n", ""), NotConverted(1509)},
    {"ChannelsOfFour", "a.bvh", Motion("CHANNELS 4 Xposition Zrotation Xrotation Yrotation\n", ""), NotConverted(1509)},
    {"CutInAJoint", "a.bvh", "HIERARCHY\nROOT Hips\n{\nJOINT Knee\n{\n", NotConverted(1509)},
    {"JointThatIsNoName",
     "a.bvh",
     Motion(kChannels + std::string("JOINT left knee\n{\n}\nJOINT a_b\n{\n") + kChannels + "}\n",
            "Frames: 1\nFrame Time: 0.04\n1 2 3 4 5 6\n"),
     {2022, "Internal converter failure", -1, -1}},

    {"DeepObjects", "a.json", Repeated(kDeep, "{\"a\":") + '1' + std::string(kDeep, '}'), kTooDeep},
    {"DeepUnclosedObjects", "a.json", Repeated(kDeep, "{\"a\":"), NotConverted(1506)},
    {"DeepUnclosedArrays", "a.json", std::string(kDeep, '['), NotConverted(1506)},
    {"DeepJoints", "a.bvh",
     Motion(Repeated(kDeep, "JOINT J\n{\n") + Repeated(kDeep, "}\n"), "Frames: 0\nFrame Time: 0.04\n"), kTooDeep},
    // The name of each end holds the whole name above it: together they are beyond all measure.
    {"DeepEnds", "a.bvh", Motion(Repeated(kDeep, "End Site\n{\n") + Repeated(kDeep, "}\n"), ""), kNoMemory},
    {"DeepEndsInMeasure", "a.bvh",
     Motion(Repeated(1000, "End Site\n{\n") + Repeated(1000, "}\n"), "Frames: 0\nFrame Time: 0.04\n"), kTooDeep},
    {"DeepUnclosedJoints", "a.bvh", Motion(Repeated(kDeep, "JOINT J\n{\n"), ""), NotConverted(1509)},
};

INSTANTIATE_TEST_SUITE_P(BadConversionInput, BadConversionContent, testing::ValuesIn(kBadFiles),
                         [](auto const& row) { return std::string(row.param.name); });

/// Each array's name holds the whole name of the one around it: together they are beyond all measure. Only once, for
/// the library takes more than a gibibyte before it gives up.
TEST_F(BadConversionInput, DeepArraysAreGivenUp) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "takes four times as much with the address sanitizer; the suite JsonConverterCalls has the limit";
#endif
  std::string const input = mFolder.Write("a.json", std::string(kDeep, '[') + '1' + std::string(kDeep, ']'));
  EXPECT_EQ(mHost.Open(input, (mOut + "wanted").c_str()), nullptr);
  EXPECT_EQ(mHost.TakeError(), kNoMemory);
}

TEST_F(BadConversionInput, QuotationWithoutEndGoesToTheEndOfTheFile) {
  std::string const output = mFolder.Path("made.tdjson");
  ISensorFileHandler* const handler = mHost.Open(mFolder.Write("a.csv", "a,b\n1,\"x\n2,y\n"), output.c_str());
  ASSERT_NE(handler, nullptr);
  handler->getStaticDataInfo(R"(["data2"]["data3"])", 18, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls().substr(0, 58), "static \"b 0\" \"data3\" type 1 value \"x\n2,y\n\" size 6\n  string");
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(BadConversionInput, MissingFirstKeywordsMakeATable) {
  for (std::string const& content : {std::string("ROOT Hips\n{\n}\n"), std::string("HIERARCHY\nHips\n{\n}\n")}) {
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("a.bvh", content));
    ASSERT_NE(handler, nullptr) << mHost.TakeError();
    EXPECT_EQ(mHost.Close(handler), nullptr);
  }
}

TEST_F(BadConversionInput, EveryCutOfASmallFileOpensOrIsOneError) {
  for (auto const& [name, whole] : {std::pair<char const*, std::string>("cut.csv", kSmallTable),
                                    {"cut.json", kSmallDocument},
                                    {"cut.bvh", kSmallMotion}}) {
    for (std::string::size_type length = 0; length != whole.size(); ++length) {
      ISensorFileHandler* const handler = mHost.Open(mFolder.Write(name, whole.substr(0, length)));
      EXPECT_EQ(mHost.TakeErrors().size(), handler == nullptr ? 1u : 0u);
      if (handler != nullptr) {
        EXPECT_EQ(mHost.Close(handler), nullptr);
      }
      ExpectNothingChanged();
      ASSERT_FALSE(HasFailure()) << name << " cut at " << length;
    }
  }
}

TEST_F(BadConversionInput, FolderIsNoFile) {
  for (char const* const name : {"folder", "folder.csv", "folder.tsv", "folder.txt", "folder.json", "folder.bvh"}) {
    fs::create_directory(mFolder.Path(name));
    EXPECT_EQ(ErrorOf(mFolder.Path(name)), (ReportedError{21, "Unable to read file in memory.", -1, -1})) << name;
  }
}

TEST_F(BadConversionInput, OutputNeedsAFolderThatExists) {
  std::string const input = mFolder.Write("a.csv", kSmallTable);
  for (std::string const& output : {mOut + "none/wanted", input + "/wanted", std::string("wanted")}) {
    EXPECT_EQ(mHost.Open(input, output.c_str()), nullptr);
    EXPECT_EQ(mHost.TakeError(), (ReportedError{58, "TDJSON output directory does not exists.", -1, -1})) << output;
    ExpectNothingChanged();
  }
}

TEST_F(BadConversionInput, FolderWithoutWritePermissionIsTold) {
  fs::perms const readable = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                             fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;
  fs::permissions(mFolder.Path(""), readable | fs::perms::owner_write);
  fs::permissions(mOut, readable);
  for (auto const& [name, content] : {std::pair<char const*, char const*>("a.csv", kSmallTable),
                                      {"a.json", kSmallDocument},
                                      {"a.bvh", kSmallMotion}}) {
    std::string const input = mFolder.Write(name, content);
    for (char const* const output : {"wanted", "new"}) {
      ISensorFileHandler* handler = nullptr;
      {
        OrdinaryUser const user;
        handler = mHost.Open(input, (mOut + output).c_str());
      }
      EXPECT_EQ(handler, nullptr);
      EXPECT_EQ(mHost.TakeError(), (ReportedError{15, "File_IO::GetTempFile, Unable to open temporary file.", -1, -1}));
      ExpectNothingChanged();
    }
  }
  fs::permissions(mOut, readable | fs::perms::owner_write);
}

TEST_F(BadConversionInput, MissingFolderForTemporaryFilesIsTold) {
  KeptVariable const temp("TEMP");
  temp.Set(mFolder.Path("absent/"));
  std::string const input = mFolder.Write("a.csv", kSmallTable);
  EXPECT_EQ(mHost.Open(input), nullptr);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{15, "File_IO::GetTempFile, Unable to open temporary file.", -1, -1}));
}

/// A recording so long that the samples of a node pass through a file of their own.
std::string LongMotion() {
  std::string text = Motion(kChannels, "Frames: 40000\nFrame Time: 0.04\n");
  for (int i = 0; i != 40000; ++i) {
    text += std::to_string(i % 90) + ".1234567 1.5 -2.25\n";
  }
  return text;
}

struct Conversion {
  char const* name;
  char const* file;
  std::string content;
  int tempFiles;  ///< the result, what holds samples while they are read, and what holds a node's samples before
};

void PrintTo(Conversion const& row, std::ostream* out) {
  *out << row.name;
}

class FailingConversion : public BadConversionInput, public testing::WithParamInterface<Conversion> {
 protected:
  FailingConversion() : mInput(mFolder.Write(GetParam().file, GetParam().content)) {}

  /// Converts to an output that is there. Gives the error, with code 0 if there is none: then the output was replaced,
  /// and stands as before again.
  template <typename Fault>
  ReportedError ErrorUnder(Fault const& makeFault) {
    ISensorFileHandler* handler = nullptr;
    {
      auto const fault = makeFault();
      handler = mHost.Open(mInput, (mOut + "wanted").c_str());
    }
    std::vector<ReportedError> const errors = mHost.TakeErrors();
    EXPECT_EQ(errors.size(), handler == nullptr ? 1u : 0u);
    if (handler != nullptr) {
      EXPECT_EQ(mHost.Close(handler), nullptr);
      EXPECT_EQ(mFolder.Read(mOut + "wanted"), Result());
      mFolder.Write("out/wanted", kOld);
    }
    ExpectNothingChanged();
    return errors.empty() ? ReportedError{0, "", -1, -1} : errors.front();
  }

  /// What comes out when nothing fails.
  std::string const& Result() {
    if (mResult.empty()) {
      std::string const path = mFolder.Path("result");
      EXPECT_EQ(mHost.Close(mHost.Open(mInput, path.c_str())), nullptr);
      mResult = mFolder.Read(path);
      fs::remove(path);
    }
    return mResult;
  }

 private:
  std::string const mInput;
  std::string mResult;
};

TEST_P(FailingConversion, FullDiskAtEveryWriteIsTold) {
  ReportedError const atTheHead{1034, "Internal converter failure", -1, -1};
  ReportedError const behindIt = NotConverted(1034);
  ReportedError const atTheReader{21, "Unable to write in temporary file.", -1, -1};
  std::vector<ReportedError> stages;
  for (int passed = 0;; ++passed) {
    ReportedError const error = ErrorUnder([&] { return FailingCall(kWrite, ENOSPC, passed); });
    ASSERT_FALSE(HasFailure()) << "write " << passed + 1;
    if (error.code == 0) {
      EXPECT_GE(passed, 2);
      break;
    }
    if (stages.empty() || !(stages.back() == error)) {
      stages.push_back(error);
    }
  }
  std::vector<ReportedError> expected = {atTheHead, behindIt};
  if (GetParam().tempFiles > 1) {
    expected.push_back(atTheReader);
  }
  EXPECT_EQ(stages, expected);
}

TEST_P(FailingConversion, DiskThatIsFullAtAnyLengthIsTold) {
  std::size_t const size = Result().size();
  std::size_t const step = std::max<std::size_t>(1, size / 25);
  for (std::size_t limit = 0; limit < size; limit += step) {
    ReportedError const error = ErrorUnder([&] { return FileSizeLimit(limit); });
    EXPECT_EQ(error.code, 1055) << "limit " << limit;
    ASSERT_FALSE(HasFailure()) << "limit " << limit;
  }
  EXPECT_EQ(ErrorUnder([&] { return FileSizeLimit(size); }).code, 0);
}

struct FailingStep {
  eCall call;
  int reason;
};

TEST_P(FailingConversion, EveryCallThatFailsIsOneErrorOrNone) {
  for (auto const& [call, reason] :
       {FailingStep{kOpen, EMFILE}, {kMkostemp, EACCES}, {kFtruncate, EIO}, {kClose, EIO}, {kMmap, ENOMEM}}) {
    bool const isShort = GetParam().content.size() < 10000;  // a long one takes its time
    int failures = 0;
    for (int passed = 0; passed != (isShort ? 40 : 8); ++passed) {
      ReportedError const error =
          ErrorUnder([call = call, reason = reason, passed] { return FailingCall(call, reason, passed); });
      failures += error.code == 0 ? 0 : 1;
      ASSERT_FALSE(HasFailure()) << "call " << call << ", number " << passed + 1;
    }
    EXPECT_EQ(failures == 0, call == kFtruncate) << "call " << call;
    if (call == kMkostemp) {
      EXPECT_EQ(failures, GetParam().tempFiles);
    }
  }
}

Conversion const kConversions[] = {
    {"Table", "a.csv", kSmallTable, 1},        {"TabbedTable", "a.tsv", "a\tb\n1\tx\n", 1},
    {"Document", "a.json", kSmallDocument, 1}, {"Motion", "a.bvh", kSmallMotion, 2},
    {"LongMotion", "a.bvh", LongMotion(), 3},
};

INSTANTIATE_TEST_SUITE_P(BadConversionInput, FailingConversion, testing::ValuesIn(kConversions),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace senmark_test
