/// The full way to read a sample: through the scanner and a document of its own, whatever its shape. It alone
/// raises the errors of malformed samples.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"
#include "SK_RapidJson.h"
#include "SK_SampleBlock.h"
#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

/// What stands in a block of samples of this kind.
ns_sensor::eDataValueType ValueTypeOf(SK_DynamicSampleInfo const& info);
/// Numbers in one value: 0 for a text.
std::uint64_t NumbersPerSample(SK_DynamicSampleInfo const& info);

class SK_SampleJsonReader {
 public:
  /// Both records must outlive the object.
  SK_SampleJsonReader(SK_DynamicSampleInfo const& info, SK_TimeFormat const& timeFormat, eTDJSONVersion version);

  /// Adds the sample at `p` to `block` and gives the position behind its closing brace. Reads nothing at or
  /// behind `end`. `name` is the sample's in messages. Codes 39, and 32 from the scanner; exceptions of
  /// `std::stod` and `std::stoi` pass.
  char const* Read(char const* p, char const* end, std::string const& name, SK_SampleBlock& block) const;

 private:
  SK_Time GetTime(JValue const& sample, std::string const& name) const;
  double GetNumberStringValue(JValue const& value, std::string const& name) const;
  void GetNumberArrayValue(JValue const& value, std::string const& name, double* out) const;
  std::string_view GetpaddedStringValue(JValue const& value, std::string const& name) const;
  std::uint64_t GetPaddedLength(JValue const& value, std::string const& name) const;

  SK_DynamicSampleInfo const& mInfo;
  SK_TimeFormat const& mTimeFormat;
  eTDJSONVersion mVersion;
};

}  // namespace SK_NAMESPACE_INT
