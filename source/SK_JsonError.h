/// How the scanner raises its errors: code 32, the offset of a byte, no line.
#pragma once

#include "SK_Error.h"
#include "SK_JsonName.h"

namespace SK_NAMESPACE_INT {

/// p     where the input is wrong; base: where offsets are counted from, null for offset -1
/// Names among the values must be quoted by the caller.
[[noreturn]] void ThrowJsonError(char const* literal, char const* p, char const* base,
                                 SK_ReplacementValue const& value1 = SK_ReplacementValue(),
                                 SK_ReplacementValue const& value2 = SK_ReplacementValue());

/// expectedType  like `JSON Number`
[[noreturn]] void ThrowJsonTypeError(char const* p, char const* base, SK_JsonName const& name,
                                     char const* expectedType);

}  // namespace SK_NAMESPACE_INT
