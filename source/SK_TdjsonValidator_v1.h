#pragma once

#include "SK_TdjsonValidator.h"

namespace SK_NAMESPACE_INT {

/// The rules for nodes in format version 1: static and dynamic nodes have the same kinds of data, and
/// numbers are strings.
class SK_TdjsonValidator_v1 : public SK_TdjsonValidator {
 protected:
  void ValidateDataStatic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const override;
  void ValidateDataDynamic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const override;

  void ValidateDataType(JValue const& node, SK_OutlinePath const& path) const;
  void CheckForValidDataTypeProperties(std::string_view type, JValue const& dataType, SK_OutlinePath const& path) const;
  /// Checks "value" by the type that the node's "dataType" names.
  void ValidateDataValue(JValue const& node, SK_OutlinePath const& path) const;
  void ValidateNumberArray(JValue const& value, SK_OutlinePath const& path) const;
  void ValidatePaddedString(JValue const& value, SK_OutlinePath const& path) const;
};

}  // namespace SK_NAMESPACE_INT
