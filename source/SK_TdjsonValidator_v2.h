#pragma once

#include "SK_TdjsonValidator.h"

namespace SK_NAMESPACE_INT {

/// The rules for nodes in format version 2, and for its "dynamicDataInfo". Static nodes have kinds of
/// data of their own, with values in plain JSON; dynamic nodes keep texts of fixed width.
class SK_TdjsonValidator_v2 : public SK_TdjsonValidator {
 public:
  void ValidateDynamicDataInfo(JValue const& value, char const* begin, char const* end) const;

 protected:
  void ValidateDataStatic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const override;
  void ValidateDataDynamic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const override;

  void ValidateDataType(JValue const& node, SK_OutlinePath const& path, bool isStatic) const;
  void CheckForValidStaticDataType(std::string_view type, JValue const& dataType, SK_OutlinePath const& path) const;
  void CheckForValidDynamicDataType(std::string_view type, JValue const& dataType, SK_OutlinePath const& path) const;
  /// Checks "value" by the type that the node's "dataType" names.
  void ValidateDataValue(JValue const& node, SK_OutlinePath const& path) const;
  void ValidateNumberArray(JValue const& value, SK_OutlinePath const& path) const;
};

}  // namespace SK_NAMESPACE_INT
