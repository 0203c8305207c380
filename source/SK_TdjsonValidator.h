/// Checks scanned values against the schema of the format, and fails with a message that says where.
///
/// The first check that fails throws: code 28 for a missing key, 40 and 42 for match names, 43 for a
/// wrong type, 44 for a wrong value, 47 for an empty array; without positions. No value is changed.
#pragma once

#include <set>
#include <string>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

class SK_TdjsonValidator {
 public:
  virtual ~SK_TdjsonValidator() = default;

  /// `begin` and `end` are where the value stands in the file; messages do not use them.
  virtual void ValidateUTCInfo(JValue const& value, char const* begin, char const* end) const;
  virtual void ValidateTimeCodeInfo(JValue const& value, char const* begin, char const* end) const;
  virtual void ValidateOutline(JValue const& value, char const* begin, char const* end) const;
  virtual void ValidateSyncInfo(JValue const& value, char const* begin, char const* end) const;
};

}  // namespace SK_NAMESPACE_INT
