/// Plain records and enumerations that need nothing but the C++ standard library.
///
/// All of them are values: copied freely, owning what they hold, without behaviour of their own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ns_sensor {

/// A rational time in seconds: `value` divided by `scale`. A `scale` of 0 is no time and is refused
/// (error 1) wherever a time enters the library.
struct SK_Time {
  std::int32_t value = 0;   ///< numerator, seconds times `scale`
  std::uint32_t scale = 1;  ///< denominator, ticks per second
};
static_assert(sizeof(SK_Time) == 8);

/// Where something begins and where it ends, in seconds from the file's first sample. The name of the second is
/// fixed: it holds the time of the last sample, not the difference of the two.
struct SK_TemporalExtent {
  SK_Time startTime;
  SK_Time duration;
};
static_assert(sizeof(SK_TemporalExtent) == 16);

/// One step from a node to a child: by `matchName`, or by `index` where that is not negative.
/// Where both are given they must name the same child.
struct SK_PathSegment {
  std::string matchName;
  std::int32_t index = -1;  ///< position among the siblings, from 0; -1: the name decides
};

/// The way from the outline to a node. The first segment is the outline itself.
using SK_DataPath = std::vector<SK_PathSegment>;

/// Kind of a node in the outline.
enum eGroupChildType : std::uint8_t {
  kGroupChild = 0,
  kDynamicChild = 1,
  kStaticChild = 2,
  kInvalidChild = 3,  ///< not set, or a kind that this library does not know
};

/// Kind of a value.
enum eDataValueType : std::uint8_t {
  kNumberValue = 0,
  kStringValue = 1,
  kNumberArrayValue = 2,
  kBooleanValue = 3,
  kInvalidValue = 4,  ///< not set, or a kind that this library does not know
};

/// How values between two samples are to be understood.
enum eInterpolationType : std::uint8_t {
  kNoInterpolation = 0,
  kLinearInterpolation = 1,
  kHoldInterpolation = 2,  ///< the earlier value stays until the next sample
};

/// What a group says about one of its children.
struct SK_GroupChildInfo {
  eGroupChildType type = kInvalidChild;
  std::string displayName;  ///< UTF-8, for people
  std::string matchName;    ///< ASCII letters and digits, unique in the file
};

/// What a file says about itself.
struct SK_FileInfo {
  SK_Time duration;     ///< seconds from the file's first sample to its last; 0/1 without samples
  std::string version;  ///< text of the version key, empty when the file has none
  std::string creator;  ///< text of the creator key, empty when the file has none
};

/// What a query would return: the answer of `getSampleInfo`.
struct SK_DynamicSampleInfo {
  std::uint64_t sampleCount = 0;
  eDataValueType valueType = kInvalidValue;
};
static_assert(sizeof(SK_DynamicSampleInfo) == 16);

}  // namespace ns_sensor
