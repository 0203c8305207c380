/// The data type of a static node in a few bytes.
///
/// Tables become millions of static nodes, and as values of rapidjson their data types would be three quarters of the
/// outline: many keys and few numbers. Where one stands in the text letter for letter as the writer puts it, only its
/// numbers are kept. Anything else, a blank or another order of keys, stays with the scanner and the validator.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_RapidJson.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

/// Of version 2. What one of these says has nothing left to validate.
class SK_PackedDataType {
 public:
  /// So many containers lie in each other in the data type of a number, itself included.
  static constexpr unsigned kDepth = 4;

  /// The one that stands for a data type in an outline; null for a data type of values, and for anything else.
  static SK_PackedDataType const* Of(JValue const& value) {
    if (!value.IsUint64() || (value.GetUint64() & kMark) == 0) {
      return nullptr;
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a value of rapidjson has no place for a pointer of others
    return reinterpret_cast<SK_PackedDataType const*>(value.GetUint64() & ~kMark);
  }
  /// Adds to the document what `Of` knows again.
  void AddTo(JDocument& document) const { document.Uint64(reinterpret_cast<std::uintptr_t>(this) | kMark); }

  ns_sensor::eDataValueType GetKind() const { return mKind; }
  /// As the file names the kind.
  std::string_view GetType() const;
  ns_sensor::SK_NumberProperties GetNumberProperties() const;
  ns_sensor::SK_StringProperties GetStringProperties() const;

 private:
  friend class SK_DataTypePacker;

  /// In the integer that stands for an address. All numbers of a file are doubles, so that none is taken for one.
  static constexpr std::uint64_t kMark = std::uint64_t{1} << 63U;
  static constexpr std::size_t kMostNumbers = 4;

  std::size_t GetSize() const { return sizeof(*this) + mNumberCount * sizeof(double); }
  double GetNumber(std::size_t index) const;

  // The numbers of the range stand behind: none, one for all four, or all four in the order of the text. No byte of
  // this is without a name, so that two can be compared as bytes.
  ns_sensor::eDataValueType mKind = ns_sensor::kInvalidValue;
  bool mFlag = false;  ///< of a number whether it is signed, of a text whether it marks an event
  std::uint16_t mNumberCount = 0;
  std::uint16_t mFirst = 0;   ///< digits in front of the point; the longest length
  std::uint16_t mSecond = 0;  ///< digits behind the point; the digits of the longest length
};
static_assert(sizeof(SK_PackedDataType) == 8);

/// Makes them out of text, in the memory of an outline.
class SK_DataTypePacker {
 public:
  /// The allocator must outlive what is packed.
  explicit SK_DataTypePacker(JAllocator& allocator) : mAllocator(allocator) {}

  /// Packs the data type at `p` and moves `p` behind it. Null, with `p` in its place, for one that has to go the long
  /// way; that tells what is wrong with it. Nothing at or behind `end` is read.
  SK_PackedDataType const* Pack(char const*& p, char const* end);

 private:
  JAllocator& mAllocator;
  SK_PackedDataType const* mLast = nullptr;  ///< serves again for the next one that is the same
};

}  // namespace SK_NAMESPACE_INT
