/// Static nodes that nobody but their group holds, and small groups of such nodes, as bytes one behind the other: a
/// table becomes millions of them, and none is an object.
///
/// Display names and texts are escaped as they come in, match names are not looked at, as in the classes of the
/// nodes. Digits, signs, ranges and lengths are found out when a node is written. `std::bad_alloc` adds nothing.
#pragma once

#include <string>
#include <string_view>

#include "SK_BytePieces.h"

namespace SK_PLUGIN {

class SK_StaticRecords {
 public:
  enum eKind : unsigned char {
    kNumber,
    kString,
    kBool,
    kGroup,       ///< begins: what follows is in it, up to its own end
    kEndOfGroup,  ///< without names
  };

  /// One of its values counts, or none. Its texts live in the records.
  struct Record {
    eKind kind = kEndOfGroup;
    bool flag = false;
    double number = 0;
    std::string_view matchName;
    std::string_view displayName;
    std::string_view text;
  };

  void AddNumber(std::string_view matchName, std::string_view displayName, double value);
  void AddString(std::string_view matchName, std::string_view displayName, std::string_view value);
  void AddBool(std::string_view matchName, std::string_view displayName, bool value);

  /// Copies a group with all that is in it, if that takes so few bytes that groups in groups do not add up to much
  /// copying. The display name is escaped already. Else false, with nothing done.
  bool AddSmallGroup(std::string_view matchName, std::string_view displayName, SK_StaticRecords const& children);

  /// Gives the records in the order in which they came, as often as wanted.
  class Reader {
   public:
    explicit Reader(SK_StaticRecords const& records) : mRecords(&records) {}
    /// There must be one more.
    Record Next();

   private:
    SK_StaticRecords const* mRecords;
    SK_NAMESPACE_INT::SK_BytePieces::Place mPlace;
  };

 private:
  /// With its text escaped, but not its display name.
  void Add(Record const& record);

  SK_NAMESPACE_INT::SK_BytePieces mPieces;
};

}  // namespace SK_PLUGIN
