/// Where a value lies in the outline, for messages: `dataOutline[2]:Speed/dataType/pattern`.
#pragma once

#include <string>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

/// A chain of pieces that live on the stack of the checks. Going down a level costs no allocation; the
/// text is made only when a message needs it.
class SK_OutlinePath {
 public:
  /// No place: messages leave their "at ..." part out.
  SK_OutlinePath() = default;
  /// The start of a path. Texts are kept by pointer and must outlive this object.
  explicit SK_OutlinePath(char const* name) : mName(name) {}
  /// The start of a path, at one element of an array.
  SK_OutlinePath(char const* arrayName, rapidjson::SizeType index)
      : mName(arrayName), mIsElement(true), mIndex(index) {}

  /// One level below `parent`, which must outlive this object.
  SK_OutlinePath(SK_OutlinePath const& parent, char const* name) : mParent(&parent), mName(name) {}
  SK_OutlinePath(SK_OutlinePath const& parent, char const* arrayName, rapidjson::SizeType index)
      : mParent(&parent), mName(arrayName), mIsElement(true), mIndex(index) {}
  SK_OutlinePath(SK_OutlinePath const&& parent, char const* name) = delete;
  SK_OutlinePath(SK_OutlinePath const&& parent, char const* arrayName, rapidjson::SizeType index) = delete;

  SK_OutlinePath(SK_OutlinePath const&) = delete;
  SK_OutlinePath& operator=(SK_OutlinePath const&) = delete;

  /// Shows the node's name from here on, also in the paths of what lies below. `name` is a string value
  /// that outlives this object.
  void SetDisplayName(JValue const& name) { mDisplayName = &name; }

  bool IsNone() const { return mName == nullptr; }
  std::string Text() const;

 private:
  void AppendTo(std::string& text) const;

  SK_OutlinePath const* mParent = nullptr;
  char const* mName = nullptr;
  bool mIsElement = false;
  rapidjson::SizeType mIndex = 0;
  JValue const* mDisplayName = nullptr;
};

}  // namespace SK_NAMESPACE_INT
