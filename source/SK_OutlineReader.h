/// Reads the properties and values of outline nodes into the public records.
///
/// The outline has been validated when it comes here. Where it still lacks something, the record keeps what it
/// had, and the result is `kPropertyMissing`; else results are `kNoError`.
#pragma once

#include <cstdint>
#include <string>

#include "SK_FormatVersion.h"
#include "SK_RapidJson.h"
#include "senmark/SK_ErrorCode.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::eErrorCode;

class SK_OutlineReader {
 public:
  explicit SK_OutlineReader(eTDJSONVersion version) : mVersion(version) {}

  /// Kind and properties of a node.
  eErrorCode GetDataType(JValue const& node, ns_sensor::SK_DataType& out, bool isDynamic) const;
  /// The value of a static node. `std::stod`'s exceptions pass for a text of version 1 that is no number.
  eErrorCode GetValue(JValue const& node, ns_sensor::eDataValueType kind, ns_sensor::SK_DataValue& out) const;
  ns_sensor::eDataValueType GetValueType(char const* type, bool isDynamic) const;

  static ns_sensor::eGroupChildType GetGroupType(std::string const& objectType);
  static char const* GetNodeTypeStr(ns_sensor::eGroupChildType type);
  static ns_sensor::eInterpolationType GetInterPolationType(std::string const& interpolation);

  /// The member with this key, null without one.
  static JValue const* Find(JValue const& node, char const* key);
  /// `kPropertyMissing` for a missing key and for a value of another type.
  static eErrorCode GetStringValue(JValue const& node, char const* key, std::string& out);
  static eErrorCode GetIntValue(JValue const& node, char const* key, std::uint64_t& out);  ///< cut off
  static eErrorCode GetNumberValue(JValue const& node, char const* key, double& out);
  static eErrorCode GetBoolValue(JValue const& node, char const* key, bool& out);

 private:
  double NumberOf(JValue const& value) const;

  eTDJSONVersion mVersion;
};

}  // namespace SK_NAMESPACE_INT
