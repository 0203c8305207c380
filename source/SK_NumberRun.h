/// The numbers of samples that stand behind each other in one layout.
#pragma once

#include <cstdint>

#include "SK_NumberLayout.h"
#include "SK_SampleFrame.h"

namespace SK_NAMESPACE_INT {

struct SK_NumberRun {
  SK_SampleFrame frame;
  SK_NumberLayout layout;
  bool isArray = false;          ///< else one number without brackets
  std::uint64_t textLength = 0;  ///< one number without its quotes
  std::uint64_t count = 0;       ///< numbers in one sample
  std::uint64_t step = 0;        ///< bytes from one sample to the next
  char const* end = nullptr;     ///< behind the last sample that will be wanted, in this part of the run or another
};

/// Decodes the numbers of `most` samples, up to the first sample that is not in the layout, and gives how
/// many it took. Nothing in front of or behind the samples is read. Room for all may be written.
using SK_NumberDecoder = std::uint64_t (*)(SK_NumberRun const& run, char const* first, std::uint64_t most, double* out);

/// With registers of 8 bytes: any layout, on any processor.
std::uint64_t DecodeNumbersByWords(SK_NumberRun const& run, char const* first, std::uint64_t most, double* out);

/// One that is faster for many samples of this layout on this processor, or null.
SK_NumberDecoder FindWideNumberDecoder(SK_NumberRun const& run);

}  // namespace SK_NAMESPACE_INT
