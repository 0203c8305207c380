#include "TdjsonDynamicDataStringImpl.h"

#include <ostream>
#include <string>
#include <vector>

#include "DynamicNodes.h"
#include "SensorFileHandlerImpl.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::Add;
using senmark_test::DynamicNodes;
using senmark_test::kTimeCodeHead;
using senmark_test::SK_DateTimeSMPTE;
using senmark_test::SK_DateTimeUTC;
using senmark_test::TimeCode;

class DynamicString : public DynamicNodes {
 protected:
  struct Text {
    std::string length;
    std::string padded;
  };
  /// What stands behind the head: one set with these texts at 00:00:00:00 and the frames behind it.
  static std::string SetText(std::vector<Text> const& texts) {
    std::string text = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
    for (std::size_t index = 0; index < texts.size(); ++index) {
      text += (index == 0 ? "" : ",") + std::string(R"({"time":"00:00:00:0)") + std::to_string(index) +
              R"(","value":{"length":")" + texts[index].length + R"(","str":")" + texts[index].padded + R"("}})";
    }
    return text + "]}";
  }

  SK_PluginResult mResult;
};

TEST_F(DynamicString, WidthIsThatOfTheLongestEscapedText) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "ab"));
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 2u);
  EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, 1u);
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, "\b\t\n\f\r\"\\"));
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 14u);
  EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, 2u);
  EXPECT_TRUE(Add(*node, TimeCode(2), mResult, "\xC3\xA4\x01\xFF"));
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 14u);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(FileText(),
            SetText({{"02", "ab            "}, {"14", R"(\b\t\n\f\r\"\\)"}, {"04", "\xC3\xA4\x01\xFF          "}}));
}

TEST_F(DynamicString, StatedWidthsAreNotLookedAt) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = OwnNewObject(new TdjsonDynamicDataStringImpl(Key()));
  node->setDynamicDataInfo("Arm", "arm", "Sarm", 0, 1, 0, "", &mResult);
  node->setStringProperties(100, 5, 2, &mResult);
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 0u);
  EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, 0u);
  EXPECT_TRUE(node->GetPaddedStringProperties().eventMarkerB);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "abc"));
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText({{"3", "abc"}}));
}

TEST_F(DynamicString, TextEndsAtItsFirstNul) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_TRUE(node->AddSample(TimeCode(0), std::string("ab\0cd", 5)));
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 2u);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({{"2", "ab"}}));
}

TEST_F(DynamicString, EmptyTextIsTakenAndFailsTheCommit) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "ab"));
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, ""));
  EXPECT_EQ(mResult.mErrorCode, 0);
  node->commit(&mResult);
  EXPECT_EQ(mResult.mErrorCode, 2014);
  EXPECT_FALSE(node->isDirty());
  EXPECT_EQ(FileText(), kTimeCodeHead);
}

TEST_F(DynamicString, NullTextIsAFailure) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "ab"));
  // Not looked at if the time is of the other kind.
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 0}, mResult, nullptr));
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_FALSE(Add(*node, TimeCode(1), mResult, nullptr));
  EXPECT_EQ(mResult.mErrorCode, 1023);
  EXPECT_TRUE(node->isDirty());
}

TEST_F(DynamicString, NullTextIsToldBeforeATimeThatDoesNotFit) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 1000}, mResult, nullptr));
  EXPECT_EQ(mResult.mErrorCode, 1023);
  EXPECT_TRUE(node->isDirty());
}

TEST_F(DynamicString, SampleThatIsNotTakenLeavesNoTrace) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "ab"));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 1000}, mResult, "longer than ten"));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{100, 0, 0, 0}, mResult, "longer than ten"));
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 0}, mResult, "longer than ten"));
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 2u);
  EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, 1u);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({{"2", "ab"}}));
}

struct LengthRow {
  std::size_t length;
  int code;
  std::string digits;
  std::size_t kept;  ///< bytes of the text that come back
};
void PrintTo(LengthRow const& row, std::ostream* out) {
  *out << row.length;
}
class LongText : public DynamicString, public testing::WithParamInterface<LengthRow> {};

/// The width counts all bytes of a text, but beyond 65,535 of them some do not come back.
TEST_P(LongText, IsKeptUpTo65535Bytes) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  LengthRow const& row = GetParam();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, std::string(row.length, 'x').c_str()));
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, row.length);
  node->commit(&mResult);
  EXPECT_EQ(mResult.mErrorCode, row.code);
  EXPECT_TRUE(FileText() ==
              (row.code != 0
                   ? std::string(kTimeCodeHead)
                   : SetText({{row.digits, std::string(row.kept, 'x') + std::string(row.length - row.kept, ' ')}})));
}

LengthRow const kLengthRows[] = {
    {65'534, 0, "65534", 65'534}, {65'535, 0, "65535", 65'535}, {65'536, 2014, "", 0},
    {65'537, 0, "00001", 1},      {70'000, 0, "04464", 4'464},
};
INSTANTIATE_TEST_SUITE_P(Lengths, LongText, testing::ValuesIn(kLengthRows));

// What stands behind the kept bytes is taken for the next records: times and lengths of "x", as far as they go.
TEST_F(DynamicString, TextBeyond65535BytesTakesTheTextsBehindItAlong) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  constexpr std::size_t kLength = 65'537;
  constexpr std::size_t kAstray = 'x' << 8 | 'x';
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, "before"));
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, std::string(kLength, 'x').c_str()));
  EXPECT_TRUE(Add(*node, TimeCode(2), mResult, "behind"));
  EXPECT_TRUE(Add(*node, TimeCode(3), mResult, "last"));
  EXPECT_TRUE(node->Commit());
  std::string expected =
      SetText({{"00006", "before" + std::string(kLength - 6, ' ')}, {"00001", "x" + std::string(kLength - 1, ' ')}});
  expected.resize(expected.size() - 2);
  for (int i = 0; i != 2; ++i) {
    expected += R"(,{"time":"xxxxxxxxxxx","value":{"length":"30840","str":")" + std::string(kAstray, 'x') +
                std::string(kLength - kAstray, ' ') + R"("}})";
  }
  EXPECT_TRUE(FileText() == expected + "]}");
}

TEST_F(DynamicString, WidthsAreThoseOfAllTextsSinceTheyWereSet) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  auto const expect = [&](char const* text, unsigned maxLen, unsigned maxDigits) {
    EXPECT_TRUE(Add(*node, TimeCode(0), mResult, text));
    EXPECT_EQ(node->GetPaddedStringProperties().maxLen, maxLen) << text;
    EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, maxDigits) << text;
  };
  expect("", 0, 1);
  expect("0123456789", 10, 2);
  expect("abc", 10, 2);
  node->setStringProperties(0, 0, 0, &mResult);
  expect("abc", 3, 1);
  expect("", 3, 1);
}

TEST_F(DynamicString, TextsBeyondOneMebibyteStayInOrder) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  std::vector<Text> expected;
  for (int index = 0; index < 9; ++index) {
    std::string const text(60'000, static_cast<char>('a' + index));
    EXPECT_TRUE(Add(*node, TimeCode(index), mResult, text.c_str()));
    expected.push_back({"60000", text});
  }
  EXPECT_EQ(mFolder.TempNames(), "");
  std::shared_ptr<TdjsonDynamicDataStringImpl> const larger = Make<TdjsonDynamicDataStringImpl>("other");
  for (int index = 0; index < 25; ++index) {
    EXPECT_TRUE(Add(*larger, TimeCode(index), mResult, std::string(60'000, 'z').c_str()));
  }
  EXPECT_NE(mFolder.TempNames(), "");
  EXPECT_TRUE(node->Commit());
  EXPECT_TRUE(FileText() == SetText(expected));
  EXPECT_TRUE(larger->Commit());
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(DynamicString, CapitalisedFormsTakeSamplesOfBothKinds) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const withTimeCode = Make<TdjsonDynamicDataStringImpl>("a");
  EXPECT_TRUE(withTimeCode->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, "x"));
  EXPECT_FALSE(withTimeCode->AddSample(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 5, 30, 7}, "x"));
  UseUTC(2, false);
  std::shared_ptr<TdjsonDynamicDataStringImpl> const withUTC = Make<TdjsonDynamicDataStringImpl>("b");
  EXPECT_TRUE(withUTC->AddSample(SK_DateTimeUTC{2021, 11, 12, 13, 14, 15, '-', 16, 45, 89}, "y"));
  EXPECT_FALSE(withUTC->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, "y"));
  EXPECT_TRUE(withUTC->Commit());
  EXPECT_EQ(FileText(),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
            R"("utcInfo":{"precisionLength":2,"isGMT":false}},"dataDynamicSamples":[{"sampleSetID":"Sb","samples":[)"
            R"({"time":"2021-11-12T13:14:15.89-16:45","value":{"length":"1","str":"y"}}]})");
}

TEST_F(DynamicString, MirrorPassesTheMarker) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  ns_sensor::SK_StringProperties properties;
  properties.maxLen = 9;
  properties.maxDigitsInStrLength = 9;
  properties.eventMarkerB = true;
  node->SetStringProperties(properties);
  EXPECT_TRUE(node->GetPaddedStringProperties().eventMarkerB);
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 0u);
  properties.eventMarkerB = false;
  node->SetStringProperties(properties);
  EXPECT_FALSE(node->GetPaddedStringProperties().eventMarkerB);
}

TEST_F(DynamicString, ReaderGivesBackWhatWasWritten) {
  UseTimeCode(120, 1);
  std::shared_ptr<TdjsonDynamicDataStringImpl> const node = Make<TdjsonDynamicDataStringImpl>();
  std::vector<std::string> const values = {"one", "say \"hi\"\n", "a",
                                           "gr\xC3\xBC\xC3\x9F"
                                           "e"};
  for (std::size_t index = 0; index < values.size(); ++index) {
    EXPECT_TRUE(node->AddSample(SK_DateTimeSMPTE{0, 0, 0, static_cast<std::int32_t>(index) * 30}, values[index]));
  }
  EXPECT_TRUE(node->Commit());
  mRoot->AddDynamicData(node);
  EXPECT_TRUE(mRoot->Commit());

  ns_sensor::SensorFileHandlerImpl reader(mPath.c_str(), mPath.size(), mPath.c_str(), mPath.size(),
                                          SK_NAMESPACE_INT::kNotTdjson);
  ns_sensor::SK_DynamicDataInfo info;
  reader.GetDynamicDataInfo("[0]", &info);
  EXPECT_EQ(info.fields.sampleCount, values.size());
  auto const& properties = boost::get<ns_sensor::SK_StringProperties>(info.dataType.properties.value);
  EXPECT_EQ(properties.maxLen, 12u);
  EXPECT_EQ(properties.maxDigitsInStrLength, 2u);
  EXPECT_FALSE(properties.eventMarkerB);
  std::vector<ns_sensor::SK_DynamicDataSample> samples;
  ns_sensor::SK_Time start;
  ns_sensor::SK_Time end;
  end.value = 1;
  reader.GetDynamicSamples("Sarm", start, end, &samples);
  ASSERT_EQ(samples.size(), values.size());
  for (std::size_t index = 0; index < values.size(); ++index) {
    EXPECT_EQ(boost::get<std::string>(samples[index].value.value), values[index]);
    // Thirty frames of a hundred and twentieth of a second each.
    EXPECT_EQ(std::int64_t{samples[index].time.value} * 4,
              static_cast<std::int64_t>(index) * samples[index].time.scale);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
