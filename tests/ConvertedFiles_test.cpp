// Small files of every format that is converted, each against the result that a script outside the library makes of
// it (tests/reference): the file at the output path and the stream byte for byte, or the code of the error.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

#include "RecordingHost.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

std::string DataPath(std::string const& name) {
  return std::string(SENMARK_TEST_DATA) + "/convert/" + name;
}

std::string FileBytes(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::set<std::string> NamesIn(std::string const& folder) {
  std::set<std::string> names;
  for (fs::directory_entry const& entry : fs::directory_iterator(folder)) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

/// The bytes around a place, with all that cannot be shown as \xNN.
std::string Excerpt(std::string const& bytes, std::size_t at) {
  constexpr std::size_t kBefore = 60;
  constexpr std::size_t kBehind = 40;
  std::string shown;
  for (std::size_t i = at - std::min(at, kBefore); i < std::min(bytes.size(), at + kBehind); ++i) {
    if (i == at) {
      shown += " >> ";
    }
    auto const byte = static_cast<unsigned char>(bytes[i]);
    if (byte >= 0x20 && byte < 0x7F) {
      shown += bytes[i];
    } else {
      char const* const digits = "0123456789ABCDEF";
      shown += {'\\', 'x', digits[byte / 16], digits[byte % 16]};
    }
  }
  return at < bytes.size() ? shown : shown + " >> (end)";
}

testing::AssertionResult SameBytes(std::string const& actual, std::string const& expected) {
  if (actual == expected) {
    return testing::AssertionSuccess();
  }
  std::size_t at = 0;
  while (at < actual.size() && at < expected.size() && actual[at] == expected[at]) {
    ++at;
  }
  return testing::AssertionFailure() << "first difference at byte " << at << " (" << actual.size()
                                     << " bytes, expected " << expected.size()
                                     << ")\n  actual:   " << Excerpt(actual, at)
                                     << "\n  expected: " << Excerpt(expected, at);
}

class ConvertedFile : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    mInput = DataPath("inputs/" + GetParam());
    mOutput = mFolder.Path("out.tdjson");
    std::string const expected = DataPath("expected/" + GetParam());
    if (fs::exists(expected + ".code")) {
      mCode = std::stoi(FileBytes(expected + ".code"));
    } else {
      mExpected = FileBytes(expected + ".tdjson");
    }
  }
  void TearDown() override {
    // Beside the folder for temporary files only the result is left, and after an error nothing.
    std::set<std::string> left = NamesIn(mFolder.Path(""));
    left.erase("temporary");
    left.erase(mCode == 0 ? "out.tdjson" : "");
    EXPECT_EQ(left, std::set<std::string>());
  }

  TempFolder mFolder;
  RecordingHost mHost;
  std::string mInput;
  std::string mOutput;
  int mCode = 0;
  std::string mExpected;
};

TEST_P(ConvertedFile, OpensAsExpected) {
  ns_sensor::ISensorFileHandler* const handler = mHost.Open(mInput, mOutput.c_str());
  if (mCode != 0) {
    EXPECT_EQ(mHost.TakeError().code, mCode);
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mFolder.TempNames(), "");
    return;
  }
  EXPECT_EQ(mHost.TakeErrors(), std::vector<ReportedError>());
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(mHost.Close(handler), nullptr);
  ASSERT_TRUE(fs::exists(mOutput));
  EXPECT_TRUE(SameBytes(mFolder.Read(mOutput), mExpected));
}

TEST_P(ConvertedFile, StreamsTheSame) {
  ns_sensor::ITdjsonStream* stream = nullptr;
  mHost.Manager().createTdjsonStream(&stream, mInput.c_str(), 1, &mHost);
  if (mCode != 0) {
    EXPECT_EQ(mHost.TakeError().code, mCode);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(mFolder.TempNames(), "");
    return;
  }
  EXPECT_EQ(mHost.TakeErrors(), std::vector<ReportedError>());
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(stream->GetStreamSize(), mExpected.size());
  std::string read;
  char buffer[1000];
  while (unsigned const count = stream->readStream(buffer, sizeof buffer, &mHost)) {
    read.append(buffer, count);
  }
  mHost.Manager().destroyTdjsonStream(&stream, &mHost);
  EXPECT_EQ(mHost.TakeErrors(), std::vector<ReportedError>());
  EXPECT_TRUE(SameBytes(read, mExpected));
}

std::string NameOfFile(testing::TestParamInfo<std::string> const& row) {
  std::string name = row.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char byte) { return std::isalnum(byte) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(ConvertedFiles, ConvertedFile, testing::ValuesIn(NamesIn(DataPath("inputs"))), NameOfFile);

TEST(ConvertedFiles, EachInputHasOneExpectedFile) {
  std::set<std::string> inputs;
  for (std::string const& name : NamesIn(DataPath("expected"))) {
    EXPECT_TRUE(inputs.insert(name.substr(0, name.rfind('.'))).second) << name;
  }
  EXPECT_EQ(inputs, NamesIn(DataPath("inputs")));
}

/// Too long to be kept as a file: every line of the motion is the same, and times are looked at in some places.
struct LongRecording {
  char const* name;
  char const* frameTime;
  std::size_t frames;
  std::vector<std::pair<std::size_t, char const*>> times;
};

std::ostream& operator<<(std::ostream& out, LongRecording const& row) {
  return out << row.name;
}

class LongMotion : public testing::TestWithParam<LongRecording> {};

TEST_P(LongMotion, CountsTime) {
  LongRecording const& row = GetParam();
  std::string text =
      "HIERARCHY\nROOT Hips\n{\nCHANNELS 3 Zrotation Xrotation Yrotation\n}\nMOTION\nFrames: 1\nFrame Time: ";
  text += row.frameTime;
  for (std::size_t i = 0; i != row.frames; ++i) {
    text += "\n0 0 0";
  }
  TempFolder folder;
  RecordingHost host;
  std::string const output = folder.Path("out.tdjson");
  ns_sensor::ISensorFileHandler* const handler = host.Open(folder.Write("long.bvh", text), output.c_str());
  EXPECT_EQ(host.TakeErrors(), std::vector<ReportedError>());
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(host.Close(handler), nullptr);

  std::string const result = folder.Read(output);
  std::string const key = R"({"time":")";
  std::string const behind = R"(","value":["-0","-0","+0"]})";
  std::size_t const width = key.size() + 11 + behind.size() + 1;
  std::size_t const first = result.find(key);
  ASSERT_NE(first, std::string::npos);
  ASSERT_GE(result.size(), first + width * row.frames);
  std::string const closing = result.substr(first + width * row.frames - 1, 3);
  EXPECT_EQ(closing, "]}]");
  for (auto const& [index, time] : row.times) {
    EXPECT_EQ(result.substr(first + width * index, width - 1), key + time + behind) << index;
  }
}

LongRecording const kLongRecordings[] = {
    {"At29_97",
     "0.033366",
     107894,
     {{0, "00:00:00:00"},
      {29, "00:00:00:29"},
      {30, "00:00:01:00"},
      {1799, "00:00:59:29"},
      {1800, "00:01:00:02"},
      {3597, "00:01:59:29"},
      {3598, "00:02:00:02"},
      {17981, "00:09:59:29"},
      {17982, "00:10:00:00"},
      {17982 + 1800, "00:11:00:02"},
      {107891, "00:59:59:29"},
      {107892, "01:00:00:00"},
      {107893, "01:00:00:01"}}},
    {"At59_94",
     "0.0166833",
     35966,
     {{59, "00:00:00:59"},
      {60, "00:00:01:00"},
      {3599, "00:00:59:59"},
      {3600, "00:01:00:04"},
      {7195, "00:01:59:59"},
      {7196, "00:02:00:04"},
      {35963, "00:09:59:59"},
      {35964, "00:10:00:00"},
      {35965, "00:10:00:01"}}},
    {"OneFrameASecond",
     "1",
     7201,
     {{59, "00:00:59:00"},
      {60, "00:01:00:00"},
      {599, "00:09:59:00"},
      {600, "00:10:00:00"},
      {3599, "00:59:59:00"},
      {3600, "01:00:00:00"},
      {7200, "02:00:00:00"}}},
    {"At25", "0.04", 1502, {{24, "00:00:00:24"}, {25, "00:00:01:00"}, {1499, "00:00:59:24"}, {1500, "00:01:00:00"}}},
};

INSTANTIATE_TEST_SUITE_P(ConvertedFiles, LongMotion, testing::ValuesIn(kLongRecordings),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace senmark_test
