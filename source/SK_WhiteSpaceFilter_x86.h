/// The white space filters for x86-64, each for processors that have its instructions.
#pragma once

#include "SK_WhiteSpaceFilter.h"

namespace SK_NAMESPACE_INT {

/// AVX2, BMI1, BMI2.
SK_FilterResult FilterAVX2(char const* p, char const* end, char* out, SK_FilterState& state);
/// AVX-512 with byte operations and byte compression (BW, VBMI2).
SK_FilterResult FilterAVX512(char const* p, char const* end, char* out, SK_FilterState& state);

}  // namespace SK_NAMESPACE_INT
