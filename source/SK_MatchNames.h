/// The match names of the nodes of one outline, of which none may come twice.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace SK_NAMESPACE_INT {

/// The names themselves take long to keep for millions of nodes, and nearly all files are free of repetition. So
/// a first pass keeps numbers made from the names and finds out only whether a name may have come twice; the exact
/// pass then tells which, and runs for few files.
class SK_MatchNames {
 public:
  enum eAccuracy { kNumbers, kNames };

  explicit SK_MatchNames(eAccuracy accuracy) : mAccuracy(accuracy) {}

  /// False if the name is there already, which only the exact pass ever tells. The text of the name must live
  /// as long as this object.
  bool Insert(std::string_view name);
  /// After a pass over the numbers: false if no name came twice for certain.
  bool MayRepeat();

 private:
  void Settle(std::uint64_t number);
  void Grow();

  eAccuracy mAccuracy;
  std::unordered_set<std::string_view> mNames;

  std::vector<std::uint64_t> mSlots;  ///< open addressing; 0 for a free one
  std::size_t mUsed = 0;
  bool mMayRepeat = false;
  /// Numbers whose slots are on their way from memory.
  std::array<std::uint64_t, 16> mPending{};
  std::size_t mNextPending = 0;
};

}  // namespace SK_NAMESPACE_INT
