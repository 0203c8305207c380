#pragma once

#include "SK_TdjsonValidator.h"

namespace SK_NAMESPACE_INT {

/// The rules for nodes in format version 2, and for its "dynamicDataInfo".
class SK_TdjsonValidator_v2 : public SK_TdjsonValidator {
 public:
  void ValidateDynamicDataInfo(JValue const& value, char const* begin, char const* end) const;
};

}  // namespace SK_NAMESPACE_INT
