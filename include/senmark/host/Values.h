/// Nodes, properties and samples as values: copied freely, owning what they hold.
///
/// Numbers of bytes, digits and samples are plain counts; texts are UTF-8 as the file has them, which
/// means that a file with other bytes in a text gives just these bytes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "senmark/SK_BasicRecords.h"
#include "senmark/host/Time.h"

namespace senmark {

/// Kind of a node in the tree.
enum class eNodeKind : std::uint8_t {
  kGroup = ns_sensor::kGroupChild,
  kDynamic = ns_sensor::kDynamicChild,
  kStatic = ns_sensor::kStaticChild,
  kInvalid = ns_sensor::kInvalidChild,  ///< a kind that the library does not know
};

/// Kind of a value.
enum class eValueType : std::uint8_t {
  kNumber = ns_sensor::kNumberValue,
  kString = ns_sensor::kStringValue,
  kNumberArray = ns_sensor::kNumberArrayValue,
  kBoolean = ns_sensor::kBooleanValue,
  kInvalid = ns_sensor::kInvalidValue,  ///< a kind that the library does not know
};

/// How values between two samples are to be understood.
enum class eInterpolation : std::uint8_t {
  kNone = ns_sensor::kNoInterpolation,
  kLinear = ns_sensor::kLinearInterpolation,
  kHold = ns_sensor::kHoldInterpolation,  ///< the earlier value stays until the next sample
};

/// A number, a text, some numbers, or a flag.
using Value = std::variant<double, std::string, std::vector<double>, bool>;

/// One sample.
struct Sample {
  Time time;  ///< seconds from the file's first sample
  Value value;
};

/// How the numbers of a node are written, in characters.
struct NumberPattern {
  std::optional<std::uint64_t> digitsInteger;  ///< before the point; none: not told
  std::optional<std::uint64_t> digitsDecimal;  ///< behind the point; none: not told
  bool isSigned = false;                       ///< true: one more place, for a sign
};

/// Smallest and largest of some numbers.
struct MinMax {
  double min = 0;
  double max = 0;
};

/// Which numbers occur and which would be allowed, as the file claims. None: not told.
struct NumberRange {
  std::optional<MinMax> occurring;
  std::optional<MinMax> legal;
};

struct NumberProperties {
  NumberPattern pattern;
  NumberRange range;
};

struct NumberArrayProperties {
  NumberPattern pattern;
  std::uint64_t arraySize = 0;            ///< numbers in each value
  bool isPoint = false;                   ///< true: the numbers are coordinates of one point
  std::vector<std::string> displayNames;  ///< as many as the file gives, not always `arraySize`
  std::vector<NumberRange> ranges;        ///< as many as the file gives, not always `arraySize`
};

struct StringProperties {
  std::uint64_t maxLength = 0;     ///< bytes that the text takes in the file
  std::uint64_t lengthDigits = 0;  ///< digits of the length in front of it
  bool marksEvents = false;        ///< true: each sample marks an event
};

/// Of a flag, or of a kind that is not known, there are no properties.
using Properties = std::variant<std::monostate, NumberProperties, NumberArrayProperties, StringProperties>;

/// What only a static node has.
struct StaticData {
  eValueType type = eValueType::kInvalid;
  Properties properties;
  Value value;  ///< of a version 1 file, a text has its filler still behind it
};

/// What only a dynamic node has.
struct DynamicData {
  eValueType type = eValueType::kInvalid;
  Properties properties;
  std::string sampleSetId;        ///< key of its samples
  std::uint64_t sampleCount = 0;  ///< as the outline tells; a file may lack the samples all the same
  eInterpolation interpolation = eInterpolation::kNone;
  bool hasExpectedFrequency = false;
  std::optional<Extent> extent;                ///< none: the set has no samples
  std::string expectedMaxInterSampleDuration;  ///< text of the file, empty when it has none
};

/// One node of the tree.
struct Node {
  eNodeKind kind = eNodeKind::kInvalid;
  std::string path;                    ///< what `File::node` takes, like `["arm"]["hand"]`
  std::string displayName;             ///< for people
  std::string matchName;               ///< letters and digits, unique in the file, possibly empty
  std::optional<StaticData> fixed;     ///< of a static node only
  std::optional<DynamicData> dynamic;  ///< of a dynamic node only
};

/// Where a child stands and how it is reached.
struct ChildPath {
  std::string path;
  std::string matchName;
  std::int32_t index = -1;  ///< position among its siblings, from 0
};

/// What a file says about itself.
struct FileInfo {
  /// Seconds from the first sample of the file to the last that the library looked at, which may be
  /// earlier than the last one of all: see `File::extent`.
  Time duration;
  std::string version;  ///< empty when the file has none
  std::string creator;  ///< empty when the file has none
};

/// A moment of a video at which it belongs together with the samples.
struct VideoSyncTime {
  std::string fileName;
  std::uint8_t kind = 2;                       ///< as the library tells it; 2: not set
  std::variant<std::string, std::int32_t> at;  ///< a time text of the file, or a frame number
};

/// A kind of file that can be opened.
struct Format {
  std::string extension;  ///< without its point
  std::string description;
};

}  // namespace senmark
