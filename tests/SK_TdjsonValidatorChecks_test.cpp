// The primitive checks, the time records, depth, and the host's locale.

#include <gtest/gtest.h>

#include <locale>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "OutlineRows.h"
#include "SK_TdjsonValidator_v1.h"
#include "SK_TdjsonValidator_v2.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::Edited;
using senmark_test::ExpectError;
using senmark_test::NameOfRow;
using senmark_test::Parsed;
using senmark_test::ValidateOutline;
using senmark_test::ValidOutline;

struct RefusedRecord {
  char const* name;
  char const* json;
  int code;
  char const* message;
};

class RefusedUTCInfo : public testing::TestWithParam<RefusedRecord> {};

TEST_P(RefusedUTCInfo, IsReported) {
  JDocument const info = Parsed(GetParam().json);
  ExpectError([&] { SK_TdjsonValidator_v1().ValidateUTCInfo(info, nullptr, nullptr); }, GetParam().code,
              GetParam().message);
}

RefusedRecord const kRefusedUTCInfo[] = {
    {"PrecisionLengthMissing", R"({"isGMT":true})", 28,
     R"(Unable to find mandatory property:"precisionLength" at "utcInfo".)"},
    {"PrecisionLengthNoNumber", R"({"precisionLength":"3","isGMT":1})", 43,
     R"(Invalid "precisionLength" type, expected type:JSON Number at "utcInfo".)"},
    {"IsGMTMissing", R"({"precisionLength":3})", 28, R"(Unable to find mandatory property:"isGMT" at "utcInfo".)"},
    {"IsGMTNoBoolean", R"({"isGMT":1,"precisionLength":3})", 43,
     R"(Invalid "isGMT" type, expected type:JSON Boolean at "utcInfo".)"},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidator, RefusedUTCInfo, testing::ValuesIn(kRefusedUTCInfo), NameOfRow());

class RefusedTimeCodeInfo : public testing::TestWithParam<RefusedRecord> {};

TEST_P(RefusedTimeCodeInfo, IsReported) {
  JDocument const info = Parsed(GetParam().json);
  ExpectError([&] { SK_TdjsonValidator_v1().ValidateTimeCodeInfo(info, nullptr, nullptr); }, GetParam().code,
              GetParam().message);
}

RefusedRecord const kRefusedTimeCodeInfo[] = {
    {"FrameRateMissing", R"({"dropFrame":true})", 28,
     R"(Unable to find mandatory property:"frameRate" at "timecodeInfo".)"},
    {"FrameRateNoObject", R"({"frameRate":30,"dropFrame":1})", 43,
     R"(Invalid "frameRate" type, expected type:JSON Object at "timecodeInfo".)"},
    {"ValueMissing", R"({"frameRate":{"scale":"1"}})", 28,
     R"(Unable to find mandatory property:"value" at "timecodeInfo::frameRate".)"},
    {"ValueNoNumber", R"({"frameRate":{"value":"30"}})", 43,
     R"(Invalid "value" type, expected type:JSON Number at "timecodeInfo::frameRate".)"},
    {"ScaleMissing", R"({"frameRate":{"value":30},"dropFrame":1})", 28,
     R"(Unable to find mandatory property:"scale" at "timecodeInfo::frameRate".)"},
    {"ScaleNoNumber", R"({"frameRate":{"value":30,"scale":true},"dropFrame":1})", 43,
     R"(Invalid "scale" type, expected type:JSON Number at "timecodeInfo::frameRate".)"},
    {"DropFrameMissing", R"({"frameRate":{"value":30,"scale":1}})", 28,
     R"(Unable to find mandatory property:"dropFrame" at "timecodeInfo".)"},
    {"DropFrameNoBoolean", R"({"frameRate":{"value":30,"scale":1},"dropFrame":0})", 43,
     R"(Invalid "dropFrame" type, expected type:JSON Boolean at "timecodeInfo".)"},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidator, RefusedTimeCodeInfo, testing::ValuesIn(kRefusedTimeCodeInfo), NameOfRow());

class RefusedSyncInfo : public testing::TestWithParam<RefusedRecord> {};

TEST_P(RefusedSyncInfo, IsReported) {
  JDocument const list = Parsed(GetParam().json);
  ExpectError([&] { SK_TdjsonValidator_v1().ValidateSyncInfo(list, nullptr, nullptr); }, GetParam().code,
              GetParam().message);
}

RefusedRecord const kRefusedSyncInfo[] = {
    {"EntryNoObject", R"([{"fileName":"a","frameNumber":1},"b"])", 43,
     R"(Invalid "videoSyncTimeList" type, expected type:JSON Object at "videoSyncTimeList[1]".)"},
    {"FileNameMissing", R"([{"frameNumber":"1"}])", 28,
     R"(Unable to find mandatory property:"fileName" at "videoSyncTimeList[0]".)"},
    {"FileNameNoString", R"([{"fileName":1,"frameNumber":"1"}])", 43,
     R"(Invalid "fileName" type, expected type:JSON String at "videoSyncTimeList[0]".)"},
    {"TimeStringNoString", R"([{"fileName":"a","timeString":1}])", 43,
     R"(Invalid "timeString" type, expected type:JSON String at "videoSyncTimeList[0]".)"},
    {"TypeOfTimeStringBeforeBothPresent", R"([{"fileName":"a","timeString":1,"frameNumber":2}])", 43,
     R"(Invalid "timeString" type, expected type:JSON String at "videoSyncTimeList[0]".)"},
    {"BothPresent", R"([{"fileName":"a","timeString":"0","frameNumber":2}])", 44,
     R"(Invalid "videoSyncTimeList", only one of "timeString" or "frameNumber" can be present at "videoSyncTimeList[0]".)"},
    {"BothPresentBeforeTypeOfFrameNumber", R"([{"fileName":"a","timeString":"0","frameNumber":"2"}])", 44,
     R"(Invalid "videoSyncTimeList", only one of "timeString" or "frameNumber" can be present at "videoSyncTimeList[0]".)"},
    {"FrameNumberNoNumber", R"([{"fileName":"a","frameNumber":"2"}])", 43,
     R"(Invalid "frameNumber" type, expected type:JSON Number at "videoSyncTimeList[0]".)"},
    {"BothMissing", R"([{"fileName":"a","timeString":"0"},{"fileName":"b"}])", 44,
     R"(Invalid "videoSyncTimeList", one of "timeString" or "frameNumber" must be present at "videoSyncTimeList[1]".)"},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidator, RefusedSyncInfo, testing::ValuesIn(kRefusedSyncInfo), NameOfRow());

TEST(TdjsonValidator, AcceptsTimeRecords) {
  SK_TdjsonValidator_v2 const validator;
  EXPECT_NO_THROW(validator.ValidateUTCInfo(Parsed(R"({"precisionLength":-1.5,"isGMT":false})"), nullptr, nullptr));
  EXPECT_NO_THROW(validator.ValidateTimeCodeInfo(Parsed(R"({"frameRate":{"value":0,"scale":0},"dropFrame":true})"),
                                                 nullptr, nullptr));
  EXPECT_NO_THROW(validator.ValidateSyncInfo(
      Parsed(R"([{"fileName":"","timeString":""},{"fileName":"b","frameNumber":1.5}])"), nullptr, nullptr));
  EXPECT_NO_THROW(validator.ValidateSyncInfo(Parsed("[]"), nullptr, nullptr));
}

/// The primitive checks by themselves, with and without a place.
class Primitives : public SK_TdjsonValidator_v1, public testing::Test {
 protected:
  SK_OutlinePath const mNone;
  SK_OutlinePath const mSomewhere{"list", 3};
  JDocument const mEmptyObject = Parsed("{}");
  JDocument const mEmptyArray = Parsed("[]");
};

TEST_F(Primitives, MissingPropertyIsNamed) {
  ExpectError([&] { FindProperty(mEmptyObject, "key", mNone); }, 28, R"(Unable to find mandatory property:"key".)");
  ExpectError([&] { FindProperty(mEmptyObject, "key", mSomewhere); }, 28,
              R"(Unable to find mandatory property:"key" at "list[3]".)");
}

TEST_F(Primitives, MissingPairIsNamedByItsFirstSpelling) {
  ExpectError([&] { FindPropertyEither(mEmptyObject, "first", "second", mNone); }, 28,
              R"(Unable to find mandatory property:"first".)");
  ExpectError([&] { FindPropertyEither(mEmptyObject, "first", "second", mSomewhere); }, 28,
              R"(Unable to find mandatory property:"first" at "list[3]".)");
}

TEST_F(Primitives, FirstSpellingOfAPairIsPreferred) {
  JDocument const both = Parsed(R"({"second":2,"first":1})");
  EXPECT_EQ(FindPropertyEither(both, "first", "second", mNone).value.GetInt(), 1);
  EXPECT_STREQ(FindPropertyEither(both, "third", "second", mNone).name.GetString(), "second");
}

TEST_F(Primitives, FirstOfARepeatedKeyIsFound) {
  EXPECT_EQ(FindProperty(Parsed(R"({"key":1,"key":2})"), "key", mNone).value.GetInt(), 1);
}

TEST_F(Primitives, WrongTypesAreNamedWithoutAPlace) {
  ExpectError([&] { CheckForObjectType(mEmptyArray, "key", mNone); }, 43,
              R"(Invalid "key" type, expected type:JSON Object.)");
  ExpectError([&] { CheckForArrayType(mEmptyObject, "key", mNone); }, 43,
              R"(Invalid "key" type, expected type:JSON Array.)");
  ExpectError([&] { CheckForStringType(mEmptyObject, "key", mNone); }, 43,
              R"(Invalid "key" type, expected type:JSON String.)");
  ExpectError([&] { CheckForNumberType(mEmptyObject, "key", mNone); }, 43,
              R"(Invalid "key" type, expected type:JSON Number.)");
  ExpectError([&] { CheckForBoolType(mEmptyObject, "key", mNone); }, 43,
              R"(Invalid "key" type, expected type:JSON Boolean.)");
}

TEST_F(Primitives, EmptyArrayIsNamed) {
  ExpectError([&] { CheckForEmptyArray(mEmptyArray, "key", mNone); }, 47,
              R"(Invalid "key", expected atleast 1 array item, found 0.)");
  ExpectError([&] { CheckForEmptyArray(mEmptyArray, "key", mSomewhere); }, 47,
              R"(Invalid "key", expected atleast 1 array item, found 0 at "list[3]".)");
}

TEST_F(Primitives, RightTypesPass) {
  JDocument const values = Parsed(R"([{}, [0], "", 1, 1.5, -1, true, false])");
  EXPECT_NO_THROW(CheckForObjectType(values[0], "key", mNone));
  EXPECT_NO_THROW(CheckForArrayType(values[1], "key", mNone));
  EXPECT_NO_THROW(CheckForEmptyArray(values[1], "key", mNone));
  EXPECT_NO_THROW(CheckForStringType(values[2], "key", mNone));
  for (rapidjson::SizeType i = 3; i < 6; ++i) {
    EXPECT_NO_THROW(CheckForNumberType(values[i], "key", mNone));
  }
  EXPECT_NO_THROW(CheckForBoolType(values[6], "key", mNone));
  EXPECT_NO_THROW(CheckForBoolType(values[7], "key", mNone));
}

TEST_F(Primitives, MinMaxHasALabelOfItsOwn) {
  ExpectError([&] { ValidateMinMax(mEmptyArray, mSomewhere); }, 43,
              R"(Invalid "numberMinMax" type, expected type:JSON Object at "list[3]".)");
}

TEST(TdjsonValidator, GroupsMayBeNestedAsDeepAsTheyCome) {
  std::string const node = R"({"objectType":"dataGroup","displayName":"","matchName":")";
  std::string json = "[";
  for (int depth = 0; depth < 500; ++depth) {
    json += node + "n" + std::to_string(depth) + R"(","children":[)";
  }
  json += "5";
  for (int depth = 0; depth < 500; ++depth) {
    json += "]}";
  }
  json += "]";
  std::string path = "dataOutline[0]:";
  for (int depth = 0; depth < 499; ++depth) {
    path += "/children[0]:";
  }
  path += "/children[0]";
  JDocument const outline = Parsed(json);
  ExpectError([&] { ValidateOutline(1, outline); }, 43,
              R"(Invalid "children" type, expected type:JSON Object at ")" + path + R"(".)");
}

/// The classic locale in which an underscore counts as a letter, and capitals do not.
class OddLetters : public std::ctype<char> {
 public:
  OddLetters() : std::ctype<char>(Table()) {}

 private:
  static mask const* Table() {
    static std::vector<mask> const table = [] {
      std::vector<mask> masks(classic_table(), classic_table() + table_size);
      masks['_'] = alpha;
      masks['S'] = punct;
      return masks;
    }();
    return table.data();
  }
};

TEST(TdjsonValidator, TheGlobalLocaleDecidesWhatALetterIs) {
  std::locale const before = std::locale::global(std::locale(std::locale::classic(), new OddLetters));
  EXPECT_NO_THROW(ValidateOutline(1, Edited(ValidOutline(1), {{"/0/matchName", R"("a_b")"}})));
  ExpectError(
      [&] {
        ValidateOutline(1, Edited(ValidOutline(1), {{"/0/matchName", R"("Speed")"}}));
      },
      42, R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)");
  std::locale::global(before);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
