// The five exported functions, as a host calls them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "RecordingHost.h"
#include "senmark/Senmark.h"

namespace senmark_test {
namespace {

using ns_sensor::ISenmark;

ReportedError const kNothing{0, "", 0, 0};

TEST(SenmarkExports, CreationsNestAndGiveOneManager) {
  ISenmark* first = nullptr;
  ISenmark* second = nullptr;
  void* api = nullptr;
  CreateSenmark_1(&first, nullptr, nullptr, "en_US", nullptr, RecordingHost::Procs(), &api);
  CreateSenmark_1(&second, "/no/such/folder", "nothing", "de_DE", nullptr, RecordingHost::Procs(), &api);
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  DestroySenmark_1(&second, nullptr);
  EXPECT_EQ(second, nullptr);
  DestroySenmark_1(&first, nullptr);
  EXPECT_EQ(first, nullptr);
}

TEST(SenmarkExports, OnlyTheFirstTableCounts) {
  RecordingHost host;
  ns_sensor::SK_ClientProcs other{};
  other.error = [](void*, std::int32_t, char const*, std::int64_t, std::int64_t) { FAIL() << "the second table"; };
  other.supportedFormat = [](void*, char const*, char const*) { FAIL() << "the second table"; };
  ISenmark* manager = nullptr;
  void* api = nullptr;
  CreateSenmark_1(&manager, nullptr, nullptr, nullptr, &host, &other, &api);
  GetSupportedFormats_1(&host, &host, &other);
  EXPECT_NE(host.TakeCalls(), "");
  EXPECT_EQ(host.Open("/no/such/file.tdjson"), nullptr);
  EXPECT_EQ(host.TakeError().code, 4);
  DestroySenmark_1(&manager, &host);
}

TEST(SenmarkExports, TheFirstTableStaysAfterTheManagerIsGone) {
  { RecordingHost const host; }
  RecordingHost again;
  EXPECT_EQ(again.Open(""), nullptr);
  EXPECT_EQ(again.TakeError().code, 2);
}

TEST(SenmarkExports, NullArgumentsOfCreationAndDestructionAreCodeOne) {
  RecordingHost host;
  ReportedError const expected{1, "Invalid pointer to \"ISenmark\".", -1, -1};
  void* api = nullptr;
  CreateSenmark_1(nullptr, nullptr, nullptr, nullptr, &host, RecordingHost::Procs(), &api);
  EXPECT_EQ(host.TakeError(), expected);
  DestroySenmark_1(nullptr, &host);
  EXPECT_EQ(host.TakeError(), expected);
  ISenmark* null = nullptr;
  DestroySenmark_1(&null, &host);
  EXPECT_EQ(host.TakeError(), expected);
}

TEST(SenmarkExports, OneDestructionTooManyChangesNothing) {
  RecordingHost* const host = new RecordingHost();
  ISenmark* copy = &host->Manager();
  delete host;
  DestroySenmark_1(&copy, nullptr);
  RecordingHost again;
  EXPECT_EQ(again.Open(""), nullptr);
  EXPECT_EQ(again.TakeError().code, 2);
}

TEST(SenmarkExports, LastErrorIsToldAgainUntilItIsCleared) {
  RecordingHost host;
  host.Open("");
  ReportedError const expected{2, "Input file path is NULL.", -1, -1};
  EXPECT_EQ(host.TakeError(), expected);
  EXPECT_EQ(LastError(false), expected);
  EXPECT_EQ(LastError(true), expected);
  EXPECT_EQ(LastError(false), kNothing);
}

TEST(SenmarkExports, LastErrorNeedsNoManager) {
  EXPECT_EQ(LastError(false), kNothing);
}

TEST(SenmarkExports, LastErrorBelongsToItsThread) {
  RecordingHost host;
  std::thread([] {
    RecordingHost inThread;
    inThread.Open("");
    EXPECT_EQ(inThread.TakeError().code, 2);
    EXPECT_EQ(LastError(false).code, 2);
  }).join();
  EXPECT_EQ(LastError(false), kNothing);
}

TEST(SenmarkExports, SupportedFormatsComeInOrderOfTheirExtensions) {
  RecordingHost host;
  GetSupportedFormats_1(&host, &host, RecordingHost::Procs());
  EXPECT_EQ(host.TakeCalls(),
            "format \"bvh\" \"Biovision Hierarchy\"\n"
            "format \"csv\" \"Comma Seperated Value\"\n"
            "format \"json\" \"JSON\"\n"
            "format \"tdjson\" \"Timed Data JSON\"\n"
            "format \"tsv\" \"Tab Seperated Value\"\n"
            "format \"txt\" \"Tab Seperated Value\"\n");
}

struct Rendered {
  char const* name;
  char const* literal;
  char const* values[4];
  char const* text;
};

class RenderedMessage : public testing::TestWithParam<Rendered> {};

Rendered const kRendered[] = {
    {"KeyIsNotShown", "$$$/A/B=text", {nullptr, nullptr, nullptr, nullptr}, "text"},
    {"NullValueIsAnEmptyText", "$$$/A=pointer to ^1.", {nullptr, nullptr, nullptr, nullptr}, "pointer to ."},
    {"FourValues", "$$$/A=^4^3^2^1", {"a", "b", "c", "d"}, "dcba"},
    {"NoEqualsSignIsEmpty", "$$$/A/B", {"a", "b", "c", "d"}, ""},
    {"PrefixAloneIsEmpty", "$$$/", {nullptr, nullptr, nullptr, nullptr}, ""},
    {"OnlyTheFirstEqualsSignCounts", "$$$/A=b=c", {nullptr, nullptr, nullptr, nullptr}, "b=c"},
    {"PlainTextIsItself", "plain ^1 text = all", {"x", nullptr, nullptr, nullptr}, "plain x text = all"},
    {"ThreeBytesArePlainText", "$$$", {nullptr, nullptr, nullptr, nullptr}, "$$$"},
    {"EmptyText", "", {"a", nullptr, nullptr, nullptr}, ""},
    {"OnlyTheFirstMarkIsReplaced", "^1 ^1", {"a", nullptr, nullptr, nullptr}, "a ^1"},
    {"ValueWithLaterMarkIsReplacedInItsTurn", "^1 and ^2", {"^2", "b", nullptr, nullptr}, "b and ^2"},
    {"ValueWithEarlierMarkStays", "^1 and ^2", {"a", "^1", nullptr, nullptr}, "a and ^1"},
    {"ValueThatIsNotAsciiVanishes", "at:^1.", {"/tmp/\xC3\xA4.csv", nullptr, nullptr, nullptr}, "at:."},
    {"TextThatIsNotAsciiStays",
     "\xC3\xA4 ^1 \xE2\x82\xAC",
     {"x", nullptr, nullptr, nullptr},
     "\xC3\xA4 x \xE2\x82\xAC"},
    {"BadUtf8EndsTheText", "ab\xFFzz", {nullptr, nullptr, nullptr, nullptr}, "ab"},
};

TEST_P(RenderedMessage, IsSentAsText) {
  RecordingHost host;
  Rendered const& row = GetParam();
  GetLocalizedErrorMsg_1(row.literal, row.values[0], row.values[1], row.values[2], row.values[3], &host);
  EXPECT_EQ(host.TakeCalls(), "text \"" + std::string(row.text) + "\"\n");
}

INSTANTIATE_TEST_SUITE_P(SenmarkExports, RenderedMessage, testing::ValuesIn(kRendered),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace senmark_test
