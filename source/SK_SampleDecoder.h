/// The fast way to read samples: where their text keeps to one fixed layout, byte for byte, values are
/// decoded in place.
///
/// The layout is what every writer of this format makes: `{"time":"T","value":V}`, or the two members the
/// other way round, and numbers whose point stands at the same place in all of them. A sample of any other
/// shape, broken ones included, is left to the reader that knows the whole grammar. For a sample that is taken
/// both give the same.
#pragma once

#include <cstdint>
#include <string_view>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"
#include "SK_NumberRun.h"
#include "SK_RelativeTimeReader.h"
#include "SK_SampleBlock.h"

namespace SK_NAMESPACE_INT {

class SK_SampleDecoder {
 public:
  /// `info` must outlive the object. `timeLength` is that of the time texts, in bytes.
  SK_SampleDecoder(SK_DynamicSampleInfo const& info, SK_RelativeTimeReader const& timeReader, std::uint16_t timeLength,
                   eTDJSONVersion version);

  /// Decodes samples from `first` on, up to the first that does not keep to the layout, and adds them to
  /// `block`, which must have room. Gives how many it took. `std::stoi`'s exceptions on times pass.
  ///
  /// first  the first of `most` samples, all of the set's width, one comma behind each but the last.
  ///        Nothing behind them is read.
  std::uint64_t Decode(char const* first, std::uint64_t most, SK_SampleBlock& block);

 private:
  bool WidthsFit() const;
  void LearnFrame(char const* sample);
  bool LearnNumber(char const* sample);
  std::uint64_t DecodeNumbers(char const* first, std::uint64_t most, SK_SampleBlock& block);
  bool ReadText(char const* value, std::string_view& text) const;
  std::uint64_t DecodeTexts(char const* first, std::uint64_t most, SK_SampleBlock& block);

  SK_DynamicSampleInfo const& mInfo;
  SK_RelativeTimeReader mTimeReader;
  std::uint64_t mTimeLength;
  bool mIsVersion2;
  std::uint64_t mValueWidth = 0;
  SK_NumberRun mRun;
};

}  // namespace SK_NAMESPACE_INT
