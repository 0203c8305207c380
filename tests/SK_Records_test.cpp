// States of new records, the numbers that stand for kinds, and how a failed query's record is reset.

#include "senmark/SK_Records.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

#include "SK_DateTime.h"
#include "SK_DynamicSampleInfo.h"
#include "SK_RecordReset.h"
#include "SK_TimeFormat.h"

namespace ns_sensor {
namespace {

constexpr std::uint64_t kAllOnes = 0xFFFFFFFFFFFFFFFFu;

void ExpectTime(SK_Time const& time, std::int32_t value, std::uint32_t scale) {
  EXPECT_EQ(time.value, value);
  EXPECT_EQ(time.scale, scale);
}

void ExpectNoPattern(SK_NumberPattern const& pattern) {
  EXPECT_EQ(pattern.digitsInteger, kAllOnes);
  EXPECT_EQ(pattern.digitsDecimal, kAllOnes);
  EXPECT_FALSE(pattern.isSigned);
}

void ExpectNewDataType(SK_DataType const& dataType) {
  EXPECT_EQ(dataType.type, kInvalidValue);
  ASSERT_EQ(dataType.properties.value.which(), 0);
  ExpectNoPattern(boost::get<SK_NumberProperties>(dataType.properties.value).pattern);
}

void ExpectNewValue(SK_DataValue const& value) {
  ASSERT_EQ(value.value.which(), 0);
  EXPECT_EQ(boost::get<double>(value.value), 0.0);
}

TEST(Records, NewTimeIsZeroSeconds) {
  ExpectTime(SK_Time(), 0, 1);
  ExpectTime(SK_TemporalExtent().startTime, 0, 1);
  ExpectTime(SK_TemporalExtent().duration, 0, 1);
  EXPECT_LT(offsetof(SK_Time, value), offsetof(SK_Time, scale));
  EXPECT_LT(offsetof(SK_TemporalExtent, startTime), offsetof(SK_TemporalExtent, duration));
}

TEST(Records, TimeFormatsStartUnset) {
  SK_TimeCodeInfo const timeCode({30000, 1001}, 1);
  ExpectTime(timeCode.frameRate, 30000, 1001);
  EXPECT_EQ(timeCode.dropFrame, 1);
  EXPECT_EQ(SK_UTCInfo().precisionLength, 0);
  EXPECT_FALSE(SK_UTCInfo().isGMT);
  ExpectTime(SK_NAMESPACE_INT::SK_TimeCodeInfo().frameRate, 0, 1);
  EXPECT_EQ(SK_NAMESPACE_INT::SK_TimeCodeInfo().dropFrame, 0);
}

TEST(Records, DatesStartAtZeroInFixedOrder) {
  SK_DateTimeSMPTE const smpte{1, 2, 3, 4};
  EXPECT_EQ(smpte.hours, 1);
  EXPECT_EQ(smpte.minutes, 2);
  EXPECT_EQ(smpte.seconds, 3);
  EXPECT_EQ(smpte.frames, 4);
  EXPECT_EQ(SK_DateTimeSMPTE().hours + SK_DateTimeSMPTE().minutes, 0);
  EXPECT_EQ(SK_DateTimeSMPTE().seconds + SK_DateTimeSMPTE().frames, 0);

  SK_DateTimeUTC const utc{2024, 2, 29, 23, 59, 58, '-', 5, 30, 999};
  EXPECT_EQ(utc.year, 2024);
  EXPECT_EQ(utc.month, 2);
  EXPECT_EQ(utc.day, 29);
  EXPECT_EQ(utc.hour, 23);
  EXPECT_EQ(utc.minute, 59);
  EXPECT_EQ(utc.second, 58);
  EXPECT_EQ(utc.offsetSign, '-');
  EXPECT_EQ(utc.offsetHour, 5);
  EXPECT_EQ(utc.offsetMinute, 30);
  EXPECT_EQ(utc.fraction, 999);

  SK_NAMESPACE_INT::SK_DateTime const parsed;
  EXPECT_EQ(parsed.year | parsed.month | parsed.day | parsed.hour | parsed.minute | parsed.second, 0);
  EXPECT_EQ(parsed.hasOffset | parsed.offsetSign, 0);
  EXPECT_EQ(parsed.offsetHour | parsed.offsetMinute | parsed.fraction, 0);
}

TEST(Records, NewPathSegmentHasNeitherNameNorIndex) {
  EXPECT_EQ(SK_PathSegment().matchName, "");
  EXPECT_EQ(SK_PathSegment().index, -1);
  EXPECT_TRUE((std::is_same_v<SK_DataPath, std::vector<SK_PathSegment>>));
}

TEST(Records, KindsHaveFixedNumbersOfOneByte) {
  EXPECT_EQ(sizeof(eGroupChildType), 1u);
  EXPECT_EQ(static_cast<int>(kGroupChild), 0);
  EXPECT_EQ(static_cast<int>(kDynamicChild), 1);
  EXPECT_EQ(static_cast<int>(kStaticChild), 2);
  EXPECT_EQ(static_cast<int>(kInvalidChild), 3);

  EXPECT_EQ(sizeof(eDataValueType), 1u);
  EXPECT_EQ(static_cast<int>(kNumberValue), 0);
  EXPECT_EQ(static_cast<int>(kStringValue), 1);
  EXPECT_EQ(static_cast<int>(kNumberArrayValue), 2);
  EXPECT_EQ(static_cast<int>(kBooleanValue), 3);
  EXPECT_EQ(static_cast<int>(kInvalidValue), 4);

  EXPECT_EQ(sizeof(eInterpolationType), 1u);
  EXPECT_EQ(static_cast<int>(kNoInterpolation), 0);
  EXPECT_EQ(static_cast<int>(kLinearInterpolation), 1);
  EXPECT_EQ(static_cast<int>(kHoldInterpolation), 2);
}

// The place of an alternative is the number of the value's kind.
TEST(Records, ValuesHoldTheAlternativeOfTheirKind) {
  SK_DataValue value;
  ExpectNewValue(value);
  value.value = std::string("text");
  EXPECT_EQ(value.value.which(), kStringValue);
  value.value = std::vector<double>{1, 2};
  EXPECT_EQ(value.value.which(), kNumberArrayValue);
  value.value = true;
  EXPECT_EQ(value.value.which(), kBooleanValue);
  value.value = 1.5;
  EXPECT_EQ(value.value.which(), kNumberValue);
}

TEST(Records, NewPatternIsNotSet) {
  ExpectNoPattern(SK_NumberPattern());
  ExpectNoPattern(SK_NumberProperties().pattern);
  ExpectNoPattern(SK_NumberArrayProperties().pattern);
}

TEST(Records, NewMinMaxIsInvertedAndWidenedByTheFirstNumber) {
  SK_NumberMinMax const minMax;
  EXPECT_EQ(minMax.min, std::numeric_limits<double>::max());
  EXPECT_EQ(minMax.max, -std::numeric_limits<double>::max());
  EXPECT_GT(minMax.min, minMax.max);
  EXPECT_LT(offsetof(SK_NumberMinMax, min), offsetof(SK_NumberMinMax, max));
  EXPECT_LT(offsetof(SK_NumberRange, occurring), offsetof(SK_NumberRange, legal));
  EXPECT_GT(SK_NumberRange().legal.min, SK_NumberRange().legal.max);
}

TEST(Records, NewPropertiesAreEmpty) {
  SK_NumberArrayProperties const array;
  EXPECT_EQ(array.arraySize, 0u);
  EXPECT_TRUE(array.arrayDisplayNames.empty());
  EXPECT_TRUE(array.arrayRanges.empty());
  EXPECT_FALSE(array.isPoint);
  SK_StringProperties const text;
  EXPECT_EQ(text.maxLen, 0u);
  EXPECT_EQ(text.maxDigitsInStrLength, 0u);
  EXPECT_FALSE(text.eventMarkerB);
}

TEST(Records, PropertiesStandInFixedOrder) {
  SK_DataProperties properties;
  EXPECT_EQ(properties.value.which(), 0);
  EXPECT_NO_THROW(boost::get<SK_NumberProperties>(properties.value));
  properties.value = SK_NumberArrayProperties();
  EXPECT_EQ(properties.value.which(), 1);
  properties.value = SK_StringProperties();
  EXPECT_EQ(properties.value.which(), 2);
}

TEST(Records, NewNodeDescriptionsAreEmpty) {
  ExpectNewDataType(SK_DataType());
  SK_DynamicDataFields const fields;
  EXPECT_EQ(fields.displayName + fields.matchName + fields.sampleSetID + fields.expectedMaxInterSampleDuration, "");
  EXPECT_EQ(fields.sampleCount, 0u);
  EXPECT_EQ(fields.interpolation, kNoInterpolation);
  EXPECT_FALSE(fields.hasExpectedFrequencyB);
  ExpectTime(fields.temporalExtent.startTime, 0, 1);
  EXPECT_EQ(SK_GroupChildInfo().type, kInvalidChild);
  EXPECT_EQ(SK_DynamicSampleInfo().sampleCount, 0u);
  EXPECT_EQ(SK_DynamicSampleInfo().valueType, kInvalidValue);
}

TEST(Records, SamplesAreMovedNotCopied) {
  SK_DynamicDataSample sample;
  ExpectTime(sample.time, 0, 1);
  ExpectNewValue(sample.value);
  sample.value.value = std::vector<double>(1000, 1.5);
  double const* const numbers = boost::get<std::vector<double>>(sample.value.value).data();
  SK_DynamicDataSample const moved = std::move(sample);
  EXPECT_EQ(boost::get<std::vector<double>>(moved.value.value).data(), numbers);
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<SK_DynamicDataSample>);
}

TEST(Records, NewSyncTimeIsFrameZero) {
  SK_VideoSyncTime const sync;
  EXPECT_EQ(sync.fileName, "");
  EXPECT_EQ(sync.kind, 2);
  ASSERT_EQ(sync.value.value.which(), 1);
  EXPECT_EQ(boost::get<int>(sync.value.value), 0);
}

TEST(Records, NewDynamicFileInfoIsUTC) {
  SK_DynamicFileInfo info;
  EXPECT_NO_THROW(boost::get<SK_UTCInfo>(info.timeInfo));
  EXPECT_TRUE(info.videoSyncTimes.empty());
  info.timeInfo = SK_TimeCodeInfo({25, 1}, 0);
  EXPECT_EQ(info.timeInfo.which(), 1);
}

TEST(Records, NewTemporalRangeIsEmpty) {
  SK_NAMESPACE_INT::TemporalRange const range;
  EXPECT_EQ(range.mStartTime + range.mEndTime, "");
}

TEST(RecordReset, GroupChildInfoIsNew) {
  SK_GroupChildInfo info{kStaticChild, "Speed", "speed"};
  SK_NAMESPACE_INT::ResetGroupChildInfo(info);
  EXPECT_EQ(info.type, kInvalidChild);
  EXPECT_EQ(info.displayName, "");
  EXPECT_EQ(info.matchName, "");
}

TEST(RecordReset, StaticDataInfoIsNew) {
  SK_StaticDataInfo info;
  info.displayName = "Speed";
  info.matchName = "speed";
  info.value.value = true;
  info.dataType.type = kBooleanValue;
  info.dataType.properties.value = SK_StringProperties();
  SK_NAMESPACE_INT::ResetStaticDataInfo(info);
  EXPECT_EQ(info.displayName, "");
  EXPECT_EQ(info.matchName, "");
  ExpectNewValue(info.value);
  ExpectNewDataType(info.dataType);
}

TEST(RecordReset, DynamicDataInfoIsNew) {
  SK_DynamicDataInfo info;
  info.dataType.type = kStringValue;
  info.dataType.properties.value = SK_StringProperties();
  info.fields = {"Track", "track", "id", 5, kHoldInterpolation, true, {{1, 2}, {3, 4}}, "1.5"};
  SK_NAMESPACE_INT::ResetDynamicDataInfo(info);
  ExpectNewDataType(info.dataType);
  SK_DynamicDataFields const& fields = info.fields;
  EXPECT_EQ(fields.displayName + fields.matchName + fields.sampleSetID + fields.expectedMaxInterSampleDuration, "");
  EXPECT_EQ(fields.sampleCount, 0u);
  EXPECT_EQ(fields.interpolation, kNoInterpolation);
  EXPECT_FALSE(fields.hasExpectedFrequencyB);
  ExpectTime(fields.temporalExtent.startTime, 0, 1);
  ExpectTime(fields.temporalExtent.duration, 0, 1);
}

TEST(RecordReset, FileInfoIsNew) {
  SK_FileInfo info{{5, 2}, "tdjson2.0.0", "me"};
  SK_NAMESPACE_INT::ResetFileInfo(info);
  ExpectTime(info.duration, 0, 1);
  EXPECT_EQ(info.version, "");
  EXPECT_EQ(info.creator, "");
}

TEST(RecordReset, VideoSyncTimeListIsEmpty) {
  std::vector<SK_VideoSyncTime> list(3);
  SK_NAMESPACE_INT::ResetVideoSyncTimeList(list);
  EXPECT_TRUE(list.empty());
}

}  // namespace
}  // namespace ns_sensor
