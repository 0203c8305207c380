/// The match names of the nodes of one outline, of which none may come twice.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace SK_NAMESPACE_INT {

/// The names themselves take long to keep for millions of nodes, and nearly all files are free of repetition. So the
/// exact pass, which tells the name that comes twice, runs only where a pass in front of it could not rule that out.
/// Where each name follows the one before, as in files whose names are numbered, a pass keeps only the last; for other
/// files one keeps numbers made from the names.
class SK_MatchNames {
 public:
  enum eAccuracy { kOrder, kNumbers, kNames };

  explicit SK_MatchNames(eAccuracy accuracy) : mAccuracy(accuracy) {}

  /// False if the name is there already, which only the exact pass ever tells. The text of the name must live
  /// as long as this object.
  bool Insert(std::string_view name) {
    if (mAccuracy != kOrder) {
      return InsertUnordered(name);
    }
    mIsOutOfOrder |= mHasLast && !IsBefore(mLast, name);
    mHasLast = true;
    mLast = name;
    return true;
  }
  /// True in a pass over the order that has no more to find out: a name did not follow the one before it.
  bool IsOutOfOrder() const { return mIsOutOfOrder; }
  /// After a pass over order or numbers: false if no name came twice for certain.
  bool MayRepeat();

 private:
  /// Shorter ones first: so `data9` is before `data10`.
  static bool IsBefore(std::string_view name, std::string_view other) {
    return name.size() != other.size() ? name.size() < other.size()
                                       : std::memcmp(name.data(), other.data(), name.size()) < 0;
  }

  bool InsertUnordered(std::string_view name);
  void Settle(std::uint64_t number);
  void Grow();

  eAccuracy mAccuracy;

  bool mHasLast = false;
  bool mIsOutOfOrder = false;
  std::string_view mLast;

  std::unordered_set<std::string_view> mNames;

  std::vector<std::uint64_t> mSlots;  ///< open addressing; 0 for a free one
  std::size_t mUsed = 0;
  bool mMayRepeat = false;
  /// Numbers whose slots are on their way from memory.
  std::array<std::uint64_t, 16> mPending{};
  std::size_t mNextPending = 0;
};

}  // namespace SK_NAMESPACE_INT
