/// Records that hold one of several kinds of value. They need Boost (headers only); hosts that go
/// through the client procs alone do not need this file.
#pragma once

#include <boost/variant.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "senmark/SK_BasicRecords.h"

namespace ns_sensor {

/// Frame rate in frames per second, and whether frame numbers are dropped to follow the clock
/// (SMPTE ST 12-1 counting).
struct SK_TimeCodeInfo {
  SK_TimeCodeInfo() = default;
  SK_TimeCodeInfo(SK_Time rate, unsigned char drop) : frameRate(rate), dropFrame(drop) {}

  SK_Time frameRate;           ///< 0/1: not set
  std::uint8_t dropFrame = 0;  ///< 0 or 1
};

/// How a file writes UTC times.
struct SK_UTCInfo {
  std::uint16_t precisionLength = 0;  ///< digits behind the point of the seconds
  bool isGMT = false;                 ///< true: texts end in a zone letter and carry no offset
};

/// A time code as its four fields.
struct SK_DateTimeSMPTE {
  std::int32_t hours = 0;
  std::int32_t minutes = 0;
  std::int32_t seconds = 0;
  std::int32_t frames = 0;
};
static_assert(sizeof(SK_DateTimeSMPTE) == 16);

/// A calendar time as its fields.
struct SK_DateTimeUTC {
  std::int32_t year = 0;
  std::int32_t month = 0;  ///< 1 to 12
  std::int32_t day = 0;    ///< 1 to 31
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int8_t offsetSign = 0;  ///< '+' or '-': an offset from GMT follows; anything else: none
  std::int32_t offsetHour = 0;
  std::int32_t offsetMinute = 0;
  std::int32_t fraction = 0;  ///< in units of 10 to the minus `SK_UTCInfo::precisionLength` seconds
};
static_assert(sizeof(SK_DateTimeUTC) == 40);

/// One value of a static node or a sample.
struct SK_DataValue {
  boost::variant<double, std::string, std::vector<double>, bool> value;
};

/// How many digits the numbers of a node have. All ones: not set.
struct SK_NumberPattern {
  std::uint64_t digitsInteger = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t digitsDecimal = std::numeric_limits<std::uint64_t>::max();
  bool isSigned = false;
};

/// The smallest and the largest of some numbers. An unset pair is inverted, so that the first number
/// widens both ends.
struct SK_NumberMinMax {
  double min = std::numeric_limits<double>::max();
  double max = std::numeric_limits<double>::lowest();
};

/// Which numbers occur and which would be allowed.
struct SK_NumberRange {
  SK_NumberMinMax occurring;
  SK_NumberMinMax legal;
};

struct SK_NumberProperties {
  SK_NumberPattern pattern;
  SK_NumberRange range;
};

struct SK_NumberArrayProperties {
  SK_NumberPattern pattern;
  std::uint64_t arraySize = 0;                 ///< numbers in each value
  std::vector<std::string> arrayDisplayNames;  ///< as many as the file gives, not always `arraySize`
  std::vector<SK_NumberRange> arrayRanges;     ///< as many as the file gives, not always `arraySize`
  bool isPoint = false;                        ///< true: the numbers are coordinates of one point
};

struct SK_StringProperties {
  std::uint64_t maxLen = 0;                ///< bytes that the text takes in the file
  std::uint64_t maxDigitsInStrLength = 0;  ///< digits of the length in front of it
  bool eventMarkerB = false;               ///< true: each sample marks an event
};

struct SK_DataProperties {
  boost::variant<SK_NumberProperties, SK_NumberArrayProperties, SK_StringProperties> value;
};

struct SK_DataType {
  SK_DataProperties properties;
  eDataValueType type = kInvalidValue;
};

/// A static node: its names, kind, properties and value.
struct SK_StaticDataInfo {
  std::string displayName;
  std::string matchName;
  SK_DataValue value;
  SK_DataType dataType;
};

/// What a dynamic node has beyond its kind.
struct SK_DynamicDataFields {
  std::string displayName;
  std::string matchName;
  std::string sampleSetID;  ///< key of its samples in every sample query
  std::uint64_t sampleCount = 0;
  eInterpolationType interpolation = kNoInterpolation;
  bool hasExpectedFrequencyB = false;
  SK_TemporalExtent temporalExtent;            ///< of its samples; 0/1 twice without any
  std::string expectedMaxInterSampleDuration;  ///< text of the file, empty when it has none
};

struct SK_DynamicDataInfo {
  SK_DataType dataType;
  SK_DynamicDataFields fields;
};

/// One sample: seconds from the file's first sample, and the value.
struct SK_DynamicDataSample {
  SK_Time time;
  SK_DataValue value;
};

/// A moment in a video: a time text, or a frame number.
struct SK_SyncTimeValue {
  SK_SyncTimeValue() : value(0) {}

  boost::variant<std::string, int> value;
};

/// One point at which a video and the samples belong together.
struct SK_VideoSyncTime {
  std::string fileName;
  std::uint8_t kind = 2;
  SK_SyncTimeValue value;
};

/// What a converter tells about time when it creates a file.
struct SK_DynamicFileInfo {
  boost::variant<SK_UTCInfo, SK_TimeCodeInfo> timeInfo;
  std::vector<SK_VideoSyncTime> videoSyncTimes;
};

}  // namespace ns_sensor
