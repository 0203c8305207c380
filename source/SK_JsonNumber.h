/// Numbers of the scanner: their text, and the scaling of doubles by powers of ten.
///
/// The rules are those of the format and differ from JSON's in ways that files and hosts rely on: integers
/// wrap in 32 bits before they grow to 64, the byte behind an exponent's letter never counts as a digit,
/// and exponents below -9 are for the most part refused.
#pragma once

#include "SK_JsonName.h"

namespace SK_NAMESPACE_INT {

/// The number at `p`, which moves behind it. Offsets count from `base`; nothing at or behind `end` is read.
double ScanJsonNumber(char const*& p, char const* end, char const* base, SK_JsonName const& name);

}  // namespace SK_NAMESPACE_INT
