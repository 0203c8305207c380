/// Checks scanned values against the schema of the format, and fails with a message that says where.
///
/// The first check that fails throws: code 28 for a missing key, 40 and 42 for match names, 43 for a
/// wrong type, 44 for a wrong value, 47 for an empty array; without positions. No value is changed.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "SK_JsonMember.h"
#include "SK_OutlinePath.h"
#include "SK_OutlineWalk.h"
#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

/// What both format versions share. The versions differ in the kinds of data a node may have, and so in
/// the checks of static and dynamic nodes.
class SK_TdjsonValidator {
 public:
  virtual ~SK_TdjsonValidator() = default;

  /// `begin` and `end` are where the value stands in the file; messages do not use them.
  virtual void ValidateUTCInfo(JValue const& value, char const* begin, char const* end) const;
  virtual void ValidateTimeCodeInfo(JValue const& value, char const* begin, char const* end) const;
  /// Gives the dynamic nodes, in the order of the outline.
  virtual std::vector<JValue const*> ValidateOutline(JValue const& value, char const* begin, char const* end) const;
  virtual void ValidateSyncInfo(JValue const& value, char const* begin, char const* end) const;

 protected:
  // The primitive checks. `name` is what messages call the value; `path` is where it lies.

  virtual JValue::Member const& FindProperty(JValue const& object, char const* key, SK_OutlinePath const& path) const;
  /// The member under `key`, or else the one under `otherKey`. Messages name `key`.
  virtual JValue::Member const& FindPropertyEither(JValue const& object, char const* key, char const* otherKey,
                                                   SK_OutlinePath const& path) const;
  virtual void CheckForObjectType(JValue const& value, char const* name, SK_OutlinePath const& path) const;
  virtual void CheckForArrayType(JValue const& value, char const* name, SK_OutlinePath const& path) const;
  virtual void CheckForStringType(JValue const& value, char const* name, SK_OutlinePath const& path) const;
  virtual void CheckForNumberType(JValue const& value, char const* name, SK_OutlinePath const& path) const;
  virtual void CheckForBoolType(JValue const& value, char const* name, SK_OutlinePath const& path) const;
  virtual void CheckForEmptyArray(JValue const& array, char const* name, SK_OutlinePath const& path) const;

  // Whole nodes. Each adds the node's display name to `path`.

  virtual void ValidateDataGroup(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const;
  virtual void ValidateDataStatic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const = 0;
  virtual void ValidateDataDynamic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const = 0;

  // Parts of nodes. `path` is where the object lies that holds the checked key.

  virtual void ValidateDisplayName(JValue const& node, SK_OutlinePath& path) const;
  virtual void ValidateMatchName(JValue const& node, SK_OutlinePath const& path, SK_OutlineWalk& walk) const;
  virtual void ValidateNumberStringProperties(JValue const& dataType, SK_OutlinePath const& path) const;
  virtual void ValidatePaddedStringProperties(JValue const& dataType, SK_OutlinePath const& path) const;
  virtual void ValidateNumberArrayProperties(JValue const& dataType, SK_OutlinePath const& path) const;
  virtual void ValidatePattern(JValue const& properties, SK_OutlinePath const& path) const;
  virtual void ValidateArraySize(JValue const& properties, SK_OutlinePath const& path) const;
  virtual void ValidateArrayDisplayName(JValue const& properties, SK_OutlinePath const& path) const;
  virtual void ValidateArrayRanges(JValue const& properties, SK_OutlinePath const& path) const;
  virtual void ValidateNumberRange(JValue const& range, SK_OutlinePath const& path) const;
  virtual void ValidateMinMax(JValue const& minMax, SK_OutlinePath const& path) const;
  virtual void ValidateSampleId(JValue const& node, SK_OutlinePath const& path) const;
  virtual void ValidateInterpolation(JValue const& node, SK_OutlinePath const& path) const;
  virtual void ValidateExpectedFrequency(JValue const& node, SK_OutlinePath const& path) const;
  virtual void ValidateSampleCount(JValue const& node, SK_OutlinePath const& path) const;

  // `FindProperty` and the check of its type in one step; each gives the value. What is in order costs no call.

  template <std::size_t kSize>
  JValue const& RequireObject(JValue const& object, char const (&key)[kSize], SK_OutlinePath const& path) const {
    JValue const* const value = FindValue(object, key);
    return value != nullptr && value->IsObject() ? *value : RefuseObject(object, key, path);
  }
  template <std::size_t kSize>
  JValue const& RequireString(JValue const& object, char const (&key)[kSize], SK_OutlinePath const& path) const {
    JValue const* const value = FindValue(object, key);
    return value != nullptr && value->IsString() ? *value : RefuseString(object, key, path);
  }
  template <std::size_t kSize>
  void RequireNumber(JValue const& object, char const (&key)[kSize], SK_OutlinePath const& path) const {
    JValue const* const value = FindValue(object, key);
    if (value == nullptr || !value->IsNumber()) {
      CheckForNumberType(FindProperty(object, key, path).value, key, path);
    }
  }
  template <std::size_t kSize>
  void RequireBool(JValue const& object, char const (&key)[kSize], SK_OutlinePath const& path) const {
    JValue const* const value = FindValue(object, key);
    if (value == nullptr || !value->IsBool()) {
      CheckForBoolType(FindProperty(object, key, path).value, key, path);
    }
  }
  JValue const& RequireFilledArray(JValue const& object, char const* key, SK_OutlinePath const& path) const;

  /// An array with one element at least.
  void CheckForFilledArray(JValue const& value, char const* name, SK_OutlinePath const& path) const;

  /// What a dynamic node holds beyond names and data type.
  void ValidateDynamicFields(JValue const& node, SK_OutlinePath const& path) const;

  static std::string_view TextOf(JValue const& string);
  /// Code 44. `expected` is shown as it stands.
  [[noreturn]] static void ThrowInvalidValue(char const* name, SK_OutlinePath const& path, char const* expected);

 private:
  JValue const& RefuseObject(JValue const& object, char const* key, SK_OutlinePath const& path) const;
  JValue const& RefuseString(JValue const& object, char const* key, SK_OutlinePath const& path) const;
  void ValidateNodes(JValue const& outline, SK_OutlineWalk& walk) const;
  void ValidateNode(JValue const& node, char const* arrayName, SK_OutlinePath& path, SK_OutlineWalk& walk) const;
};

}  // namespace SK_NAMESPACE_INT
