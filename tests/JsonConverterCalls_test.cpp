// What the JSON converter asks of the writer, call by call. The writer is the test's own.

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "JsonConverter.h"
#include "RecordingWriter.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using senmark_test::ExpectError;
using senmark_test::TakeWriterCalls;
using SK_NAMESPACE_INT::SK_PathInfo;

class JsonCalls : public testing::Test {
 protected:
  ~JsonCalls() override {
    senmark_test::KeepWriterCalls(true);
    senmark_test::LetCommitSay(true);
    EXPECT_EQ(senmark_test::CountWriterObjects(), 0);
    EXPECT_EQ(senmark_test::CountOpenDescriptors(), mDescriptors);
  }

  /// Checks and converts a file of this text, as the manager does.
  bool Convert(std::string const& text) {
    SK_PathInfo file(mFolder.Write("in.json", text), "json");
    file.outputPath = "out.tdjson";
    std::string uid = "json";
    EXPECT_TRUE(JSON_CheckFormat(uid, file));
    return JSONConverter_CTor(uid, file)->convertToTDJSON();
  }

  /// The calls between the creator and the end for a text.
  std::string Calls(std::string const& text) {
    bool const hasCommitted = Convert(text);
    std::string calls = TakeWriterCalls();
    std::string const head = "root \"out.tdjson\"\ncreator \"com.velmo.sensor.json\"\n";
    std::string const end = hasCommitted ? "commit\nremove\n" : "remove\n";
    EXPECT_EQ(calls.substr(0, head.size()), head);
    EXPECT_GE(calls.size(), head.size() + end.size());
    EXPECT_EQ(calls.substr(calls.size() - end.size()), end);
    calls = calls.substr(head.size(), calls.size() - head.size() - end.size());
    EXPECT_EQ(hasCommitted, calls.find(" to root\n") != std::string::npos);
    return calls;
  }

  std::size_t const mDescriptors = senmark_test::CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
};

TEST_F(JsonCalls, WholeRunInItsOrder) {
  EXPECT_TRUE(Convert(R"({"a": 1, "b": [1, 2], "c": {"d": "x"}, "e": null, "f": true})"));
  EXPECT_EQ(TakeWriterCalls(),
            "root \"out.tdjson\"\n"
            "creator \"com.velmo.sensor.json\"\n"
            "number matchName0 \"a\" 1\n"
            "add matchName0 to root\n"
            "group matchName1 \"b\"\n"
            "number matchName2 \"b 0\" 1\n"
            "add matchName2 to matchName1\n"
            "number matchName3 \"b 1\" 2\n"
            "add matchName3 to matchName1\n"
            "add matchName1 to root\n"
            "group matchName4 \"c\"\n"
            "string matchName5 \"d\" \"x\"\n"
            "add matchName5 to matchName4\n"
            "add matchName4 to root\n"
            "bool matchName6 \"f\" true\n"
            "add matchName6 to root\n"
            "commit\n"
            "remove\n");
}

struct Document {
  char const* name;
  std::string text;
  std::string calls;
};

std::string NameOfRow(testing::TestParamInfo<Document> const& row) {
  return row.param.name;
}

class JsonCallsOf : public JsonCalls, public testing::WithParamInterface<Document> {};

TEST_P(JsonCallsOf, AreTheseInTheirOrder) {
  EXPECT_EQ(Calls(GetParam().text), GetParam().calls);
}

Document const kDocuments[] = {
    {"TopArray", "[1, 2]",
     "number matchName0 \"dataOutline 0\" 1\n"
     "add matchName0 to root\n"
     "number matchName1 \"dataOutline 1\" 2\n"
     "add matchName1 to root\n"},
    {"ArrayInTopArray", "[[1]]",
     "group matchName0 \"dataOutline 0\"\n"
     "number matchName1 \"dataOutline 0 0\" 1\n"
     "add matchName1 to matchName0\n"
     "add matchName0 to root\n"},
    {"ObjectInTopArray", "[{\"k\": false}]",
     "group matchName0 \"dataOutline 0\"\n"
     "bool matchName1 \"k\" false\n"
     "add matchName1 to matchName0\n"
     "add matchName0 to root\n"},
    {"EmptyObject", "{}", ""},
    {"EmptyArray", "[]", ""},
    {"NullsAlone", "[null, null]", ""},
    {"EmptyContainersTakeNoMatchName", "{\"a\": {}, \"b\": [], \"c\": 1}",
     "number matchName0 \"c\" 1\n"
     "add matchName0 to root\n"},
    {"OnlyAnEmptyContainer", "{\"a\": {}}", ""},
    {"VanishedGroupKeepsItsMatchName", "{\"a\": {\"b\": null}, \"c\": 1}",
     "group matchName0 \"a\"\n"
     "number matchName1 \"c\" 1\n"
     "add matchName1 to root\n"},
    {"ContainerOfEmptyContainersVanishes", "[[[], {}], [[null], 2], {\"k\": {\"l\": [null, {}]}}]",
     "group matchName0 \"dataOutline 0\"\n"
     "group matchName1 \"dataOutline 1\"\n"
     "group matchName2 \"dataOutline 1 0\"\n"
     "number matchName3 \"dataOutline 1 1\" 2\n"
     "add matchName3 to matchName1\n"
     "add matchName1 to root\n"
     "group matchName4 \"dataOutline 2\"\n"
     "group matchName5 \"k\"\n"
     "group matchName6 \"l\"\n"},
    {"ArrayBehindArrayInAnObjectInAnArray", "[{\"a\": [[true]], \"b\": [false]}]",
     "group matchName0 \"dataOutline 0\"\n"
     "group matchName1 \"a\"\n"
     "group matchName2 \"a 0\"\n"
     "bool matchName3 \"a 0 0\" true\n"
     "add matchName3 to matchName2\n"
     "add matchName2 to matchName1\n"
     "add matchName1 to matchName0\n"
     "group matchName4 \"b\"\n"
     "bool matchName5 \"b 0\" false\n"
     "add matchName5 to matchName4\n"
     "add matchName4 to matchName0\n"
     "add matchName0 to root\n"},
    {"KeyThatComesTwice", "{\"a\": 1, \"a\": 2}",
     "number matchName0 \"a\" 1\n"
     "add matchName0 to root\n"
     "number matchName1 \"a\" 2\n"
     "add matchName1 to root\n"},
    {"EmptyNamesAndTexts", "{\"\": \"\", \"x\": {\"\": [\"\"]}}",
     "string matchName0 \"\" \"\"\n"
     "add matchName0 to root\n"
     "group matchName1 \"x\"\n"
     "group matchName2 \"\"\n"
     "string matchName3 \" 0\" \"\"\n"
     "add matchName3 to matchName2\n"
     "add matchName2 to matchName1\n"
     "add matchName1 to root\n"},
    {"NulInNamesAndTexts", R"({"a\u0000b": "c\u0000d"})",
     "string matchName0 \"a\\x00b\" \"c\\x00d\"\n"
     "add matchName0 to root\n"},
    {"BytesThatAreNoText", "{\"\xFF\": \"\xC3\x28\"}",
     "string matchName0 \"\xFF\" \"\xC3\x28\"\n"
     "add matchName0 to root\n"},
    {"IntegerAboveTheSignedRange", "[9223372036854775808, 18446744073709551615]",
     "number matchName0 \"dataOutline 0\" 9.2233720368547758e+18\n"
     "add matchName0 to root\n"
     "number matchName1 \"dataOutline 1\" 1.8446744073709552e+19\n"
     "add matchName1 to root\n"},
    {"WhiteSpaceInFront", " \n\t\r{\"a\": 1}",
     "number matchName0 \"a\" 1\n"
     "add matchName0 to root\n"},
};

INSTANTIATE_TEST_SUITE_P(Documents, JsonCallsOf, testing::ValuesIn(kDocuments), NameOfRow);

TEST_F(JsonCalls, ResultIsTrueWhateverTheCommitSays) {
  senmark_test::LetCommitSay(false);
  EXPECT_TRUE(Convert("[1]"));
  TakeWriterCalls();
}

TEST_F(JsonCalls, InvalidTextIsFoundBehindTheRootAndWithoutACommit) {
  ExpectError([&] { Convert("[1, 2"); }, 1506, "File Cannot be converted.");
  EXPECT_EQ(TakeWriterCalls(), "root \"out.tdjson\"\ncreator \"com.velmo.sensor.json\"\nremove\n");
}

TEST_F(JsonCalls, MatchNamesCountPerConversion) {
  EXPECT_EQ(Calls("[1]"), Calls("[1]"));
}

TEST_F(JsonCalls, NamesAreTakenInOrder) {
  JsonConverter converter{SK_PathInfo()};
  for (char const* const name : {"matchName0", "matchName1", "matchName2"}) {
    EXPECT_EQ(converter.GetNewMatchName(), name);
  }
}

std::string Nested(std::size_t depth, std::string const& innermost) {
  std::string text;
  for (std::size_t i = 0; i < depth; ++i) {
    text += "{\"k\":";
  }
  return text + innermost + std::string(depth, '}');
}

TEST_F(JsonCalls, MillionObjectsInEachOtherTakeNoStack) {
  senmark_test::KeepWriterCalls(false);
  EXPECT_TRUE(Convert(Nested(1000000, "1")));
  EXPECT_FALSE(Convert(Nested(200000, "null")));
}

/// An array whose elements all have names of 1 MiB, with a member before and behind it.
std::string LongNames(std::string const& elements) {
  std::string const index = " 0000";
  return "{\"" + std::string((std::size_t{1} << 20) - index.size(), 'n') + "\": [" + elements + "]}";
}

std::string Repeated(std::string const& element, int count) {
  std::string text = element;
  for (int i = 1; i < count; ++i) {
    text += ',' + element;
  }
  return text;
}

TEST_F(JsonCalls, LongNamesMayHaveOneGibibyteTogether) {
  senmark_test::KeepWriterCalls(false);
  EXPECT_TRUE(Convert(LongNames(Repeated("1", 1023))));
  // 1030 names: those of no kind of node can be missing from the count. A group brings two.
  EXPECT_THROW(Convert(LongNames(Repeated("1,\"s\",true,[1]", 206))), std::bad_alloc);
}

TEST_F(JsonCalls, NamesOfGroupsThatVanishDoNotCount) {
  senmark_test::KeepWriterCalls(false);
  EXPECT_FALSE(Convert(LongNames(Repeated("[null]", 1100))));
}

struct Checked {
  char const* name;
  std::string text;
  bool isTaken;
};

std::string NameOfCheck(testing::TestParamInfo<Checked> const& row) {
  return row.param.name;
}

class JsonCheckFormat : public JsonCalls, public testing::WithParamInterface<Checked> {};

TEST_P(JsonCheckFormat, LooksAtTheFirstBracketOnly) {
  std::string uid = "json";
  SK_PathInfo const file(mFolder.Write("in", GetParam().text), "");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(JSON_CheckFormat(uid, file), GetParam().isTaken);
  }
}

Checked const kChecked[] = {
    {"Array", "[]", true},
    {"Object", "{}", true},
    {"NoJsonBehindTheBracket", "[HIERARCHY", true},
    {"EverySpaceInFront", " \n\t\r[1]", true},
    {"BracketOfOneByte", "[", false},
    {"BraceOfOneByte", "{", false},
    {"BracketAsLastByte", "  \n[", false},
    {"BracketBeforeTheLastByte", "  \n[ ", true},
    {"OneSpace", " ", false},
    {"SpacesAlone", " \n\t\r  ", false},
    {"OtherSpaceInFront", "\v[1]", false},
    {"FormFeedInFront", "\f[1]", false},
    {"ByteOrderMark", "\xEF\xBB\xBF[1]", false},
    {"Text", "a,b\n1,2\n", false},
    {"ClosingBracket", "][", false},
    {"String", "\"[1]\"", false},
    {"Number", "12", false},
    {"NulInFront", std::string("\0[1]", 4), false},
};

INSTANTIATE_TEST_SUITE_P(Files, JsonCheckFormat, testing::ValuesIn(kChecked), NameOfCheck);

TEST_F(JsonCalls, CheckLetsErrorsOfTheMapperPass) {
  std::string uid = "json";
  ExpectError([&] { JSON_CheckFormat(uid, SK_PathInfo(mFolder.Write("in", ""), "json")); }, 54, "Empty Input file.");
  ExpectError([&] { JSON_CheckFormat(uid, SK_PathInfo(mFolder.Path("absent"), "json")); }, 6,
              "Unable to open input file:" + mFolder.Path("absent") + ".");
  ExpectError([&] { JSON_CheckFormat(uid, SK_PathInfo(mFolder.Path(""), "json")); }, 21,
              "Unable to read file in memory.");
}

TEST_F(JsonCalls, LastCheckDecidesAboutTheTopLevel) {
  std::string uid = "json";
  SK_PathInfo const object(mFolder.Write("object", "{\"a\": 1}"), "json");
  SK_PathInfo const array(mFolder.Write("array", "[1]"), "json");
  SK_PathInfo const neither(mFolder.Write("neither", "a,b"), "json");
  EXPECT_TRUE(JSON_CheckFormat(uid, array));
  EXPECT_FALSE(JSON_CheckFormat(uid, neither)) << "a refusal leaves the note of the check before";
  EXPECT_TRUE(JSONConverter_CTor(uid, array)->convertToTDJSON());
  ExpectError([&] { JSONConverter_CTor(uid, object)->convertToTDJSON(); }, 19, "Assertion failure:RapidJSON.");
  EXPECT_TRUE(JSON_CheckFormat(uid, object));
  EXPECT_TRUE(JSONConverter_CTor(uid, object)->convertToTDJSON());
  TakeWriterCalls();
}

}  // namespace
}  // namespace ns_sensor
