// Files that are missing, cut, damaged or hostile, and a machine that has no room: each ends in one error,
// nothing is left behind, and the host goes on with the same manager.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

std::ptrdiff_t OpenDescriptors() {
  auto const entries = std::filesystem::directory_iterator("/proc/self/fd");
  return std::distance(begin(entries), end(entries));
}

std::string Replaced(std::string text, std::string const& from, std::string const& to) {
  std::string::size_type const at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

class BadInput : public testing::Test {
 protected:
  BadInput() : mDescriptors(OpenDescriptors()) {}
  ~BadInput() override {
    // The manager is as good as before.
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("good.tdjson", kSmallVersion2));
    EXPECT_NE(handler, nullptr);
    EXPECT_EQ(mHost.Close(handler), nullptr);
    EXPECT_EQ(OpenDescriptors(), mDescriptors);
  }

  /// The one error of opening `content`, which leaves nothing behind.
  ReportedError ErrorOf(std::string const& content) {
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("bad.tdjson", content));
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mFolder.TempNames(), "");
    return mHost.TakeError();
  }

  TempFolder mFolder;
  RecordingHost mHost;
  std::ptrdiff_t const mDescriptors;
};

struct BadFile {
  char const* name;
  char const* content;
  ReportedError error;
};

class BadContent : public BadInput, public testing::WithParamInterface<BadFile> {};

BadFile const kBadFiles[] = {
    {"Empty", "", {54, "Empty Input file.", -1, -1}},
    {"OneBlank", " ", {32, "Unable to find TDJSON opening '{'.", 1, -1}},
    {"NoJson", "HIERARCHY", {32, "Unable to find TDJSON opening '{'.", 0, -1}},
    {"LoneBrace", "{", {32, "Unable to find enclosing quotes for Tdjson key.", 1, -1}},
    {"EmptyObject", "{}", {32, "Unable to find enclosing quotes for Tdjson key.", 1, -1}},
    {"TopLevelArray", "[1]", {32, "Unable to find TDJSON opening '{'.", 0, -1}},
    {"UnknownKey", "{\"colour\":1}", {32, "Invalid TDJSON key : \"colour\".", 10, -1}},
};

TEST_P(BadContent, IsOneErrorWithItsPlace) {
  EXPECT_EQ(ErrorOf(GetParam().content), GetParam().error);
}

INSTANTIATE_TEST_SUITE_P(BadInput, BadContent, testing::ValuesIn(kBadFiles),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BadInput, EveryCutOfASmallFileIsAnError) {
  for (std::string const whole : {kSmallVersion2, kSmallVersion1}) {
    std::string::size_type const lastBrace = whole.find_last_of('}');
    for (std::string::size_type length = 0; length <= lastBrace; ++length) {
      ReportedError const error = ErrorOf(whole.substr(0, length));
      EXPECT_NE(error.code, 0) << length;
      EXPECT_NE(error.message, "") << length;
      ASSERT_FALSE(HasFailure()) << "cut at " << length;
    }
  }
}

class DamagedFile : public BadInput, public testing::WithParamInterface<std::tuple<char const*, char>> {};

TEST_P(DamagedFile, OpensOrIsOneErrorWhereverTheByteStands) {
  std::string const whole = std::get<0>(GetParam());
  for (std::string::size_type at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = std::get<1>(GetParam());
    ISensorFileHandler* const handler = mHost.Open(mFolder.Write("damaged.tdjson", damaged));
    EXPECT_EQ(mHost.TakeErrors().size(), handler == nullptr ? 1u : 0u);
    if (handler != nullptr) {
      // Whatever opened can be asked; each question ends in an answer or in one error.
      for (std::string const id : {"a1", "p1", "n1", "e1", "lv", "ev", "tr"}) {
        handler->getDynamicSamples(id.c_str(), id.size(), 0, 1, 100, 1, &mHost, &mHost);
        EXPECT_EQ(mHost.TakeErrors().size(), mHost.TakeCalls().empty() ? 1u : 0u);
      }
      EXPECT_EQ(mHost.Close(handler), nullptr);
    }
    ASSERT_FALSE(HasFailure()) << "byte " << at;
  }
}

INSTANTIATE_TEST_SUITE_P(BadInput, DamagedFile,
                         testing::Combine(testing::Values(kSmallVersion2, kSmallVersion1),
                                          testing::Values('\0', '"', '}', '9', '\xFF')),
                         [](auto const& row) {
                           return "Version" + std::string(std::get<0>(row.param) == kSmallVersion2 ? "2" : "1") +
                                  "Byte" + std::to_string(static_cast<unsigned char>(std::get<1>(row.param)));
                         });

TEST_F(BadInput, FolderIsNoFile) {
  ReportedError error{};
  EXPECT_EQ(mHost.Open(mFolder.Path("")), nullptr);
  error = mHost.TakeError();
  EXPECT_EQ(error, (ReportedError{21, "Unable to read file in memory.", -1, -1}));
}

TEST_F(BadInput, UnreadableFileIsTold) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "needs the right to change the user";
  }
  std::string const path = mFolder.Write("secret.tdjson", kSmallVersion2);
  std::filesystem::permissions(path, std::filesystem::perms::none);
  std::filesystem::permissions(mFolder.Path(""), std::filesystem::perms::all);
  ASSERT_EQ(seteuid(65534), 0);
  ISensorFileHandler* const handler = mHost.Open(path);
  ASSERT_EQ(seteuid(0), 0);
  EXPECT_EQ(handler, nullptr);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{6, "Unable to open input file:" + path + ".", -1, -1}));
}

TEST_F(BadInput, NestingBeyondAHundredIsRefused) {
  std::string const deep(200, '[');
  EXPECT_EQ(ErrorOf("{\"dataOutline\":" + deep),
            (ReportedError{32, "SK does not support TDJSON dataGroup with nesting more than 100", -1, -1}));
}

TEST_F(BadInput, WrongWidthAndWrongCountAreTold) {
  ReportedError const expected{39,
                               "Invalid sample set data for sample id:\"a1\". Either information in dataOutline is "
                               "incorrect or sample set data is malformed.",
                               -1, -1};
  EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"+01.5\"", "\"+001.5\"")), expected);
  EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"sampleCount\":4", "\"sampleCount\":3")), expected);
  EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"sampleCount\":4", "\"sampleCount\":5")), expected);
}

TEST_F(BadInput, CountsWithoutMeasureAreRefused) {
  for (char const* const count :
       {"1000000000", "1000000000000000000", "18446744073709551615", "1e+300", "-1", "-5e+9"}) {
    EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"sampleCount\":4", std::string("\"sampleCount\":") + count)).code, 39)
        << count;
  }
  for (char const* const digits : {"1000000000000000000", "1e+300", "-7"}) {
    EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"digitsInteger\":2,\"digitsDecimal\":1},\n   \"range\":{\"occuring\"",
                               std::string("\"digitsInteger\":") + digits +
                                   ",\"digitsDecimal\":1},\n   \"range\":{\"occuring\""))
                  .code,
              39)
        << digits;
  }
}

TEST_F(BadInput, SampleIdUsedTwiceIsTold) {
  EXPECT_EQ(ErrorOf(Replaced(kSmallVersion2, "\"sampleSetID\":\"p1\",\"inter", "\"sampleSetID\":\"a1\",\"inter")),
            (ReportedError{37,
                           "Duplicate sample id found. Sample Id:\"a1\" is assigned to more than one dynamic node in "
                           "data outline.",
                           -1, -1}));
}

TEST_F(BadInput, SampleSetWithoutANodeIsTold) {
  EXPECT_EQ(
      ErrorOf(Replaced(kSmallVersion2, "{\"sampleSetID\":\"p1\",\"samples\"", "{\"sampleSetID\":\"zz\",\"samples\"")),
      (ReportedError{49, "No dynamic data node is present in data outline with sample id:\"zz\".", -1, -1}));
}

TEST_F(BadInput, NumberThatCannotBeReadIsCode34WhenItIsAskedFor) {
  ISensorFileHandler* const handler =
      mHost.Open(mFolder.Write("text.tdjson", Replaced(kSmallVersion2, "\"-02.5\"", "\"hello\"")));
  ASSERT_NE(handler, nullptr);
  handler->getDynamicSamples("a1", 2, 0, 1, 2, 1, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{34, "Unknown exception occurred.", -1, -1}));
  EXPECT_EQ(mHost.TakeCalls(), "");
  handler->getDynamicSamples("a1", 2, 2, 3, 2, 1, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(), "count 2\nsample 2/3 10 size 0\nsample 1/1 99.5 size 0\n");
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(BadInput, TimeThatCannotBeReadIsCode34WhenItIsAskedFor) {
  ISensorFileHandler* const handler = mHost.Open(mFolder.Write(
      "text.tdjson", Replaced(kSmallVersion2, "\"00:00:00:10\",\"value\":\"-", "\"0x:00:00:10\",\"value\":\"-")));
  ASSERT_NE(handler, nullptr);
  handler->getDynamicSamples("a1", 2, 0, 1, 2, 1, &mHost, &mHost);
  mHost.TakeErrors();
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(BadInput, MissingTemporaryFolderIsTold) {
  std::string const old = mFolder.TempPath();
  setenv("TEMP", "/no/such/folder/", 1);
  EXPECT_EQ(ErrorOf(kSmallVersion2), (ReportedError{15, "Unable to open temporary file.", -1, -1}));
  setenv("TEMP", old.c_str(), 1);
}

TEST_F(BadInput, FullTemporaryFolderIsTold) {
  std::string const path = mFolder.Write("good.tdjson", kSmallVersion2);
  auto* const oldHandler = signal(SIGXFSZ, SIG_IGN);
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  for (rlim_t const room : {rlim_t{0}, rlim_t{1}, rlim_t{100}}) {
    rlimit const limited{room, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
    ISensorFileHandler* const handler = mHost.Open(path);
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mHost.TakeError(), (ReportedError{21, "Unable to write in temporary file.", -1, -1}));
    EXPECT_EQ(mFolder.TempNames(), "");
  }
  signal(SIGXFSZ, oldHandler);
}

}  // namespace
}  // namespace senmark_test
