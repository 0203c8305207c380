/// A JSON scanner that works straight on a range of bytes and reports byte offsets.
///
/// It is no general JSON reader: containers are never empty, `null` does not exist, `\u` escapes are not
/// decoded, and numbers follow rules of their own, all of them fixed behaviour of the format.
///
/// Every operation takes the position `p` and `end`, the first byte behind the range, and reads nothing
/// at or behind `end`. `base` is where offsets are counted from; null gives -1. `name` is the text that
/// messages show for the value, without quotes. Errors carry code 32, the offset and no line; only that of too
/// deep nesting has no offset either. A text or container that needs more than 4 GiB ends in `std::bad_alloc`.
#pragma once

#include <string>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

class SK_TdjsonParserUtils {
 public:
  /// Containers may be nested this deep; one level more is refused.
  static constexpr unsigned short kMaxNestingDepth = 100;

  /// First position from `p` on that is no space, line feed, tab or carriage return; null stays null.
  static char const* SkipSpecialCharacters(char const* p, char const* end);
  /// Bytes from `base` to `p`.
  static long long GetOffset(char const* p, char const* base);

  /// Each gives the position behind what it read, or moves `p` there. The values of containers keep nothing of the
  /// range; their memory is the allocator's, exactly as much as they need. All numbers are doubles. After an error
  /// `out` of a container is as before. Outer callers pass depth 0.
  static char const* ConsumeColon(char const* p, char const* end, char const* base, std::string const& key);
  static char const* ParseJsonString(char const* p, char const* end, char const* base, std::string& out, bool isKey,
                                     char const* name);
  static bool ParseJsonBool(char const*& p, char const* end, char const* base, std::string const& name);
  static char const* ParseJsonNumber(char const*& p, char const* end, char const* base, std::string const& name,
                                     double& out);
  static char const* ParseJsonObject(char const* p, char const* end, char const* base, std::string const& name,
                                     JValue& out, JAllocator& allocator, unsigned short depth);
  static char const* ParseJsonArray(char const* p, char const* end, char const* base, std::string const& name,
                                    JValue& out, JAllocator& allocator, unsigned short depth);
  /// An array of nodes of version 2. Data types of its static nodes may be `SK_PackedDataType`s.
  static char const* ParseOutline(char const* p, char const* end, char const* base, std::string const& name,
                                  JValue& out, JAllocator& allocator);

  /// d times 10 to the p, for p up to 308, by one multiplication or division. Below -308 the first divides twice and
  /// the second gives 0.
  static double StrtodNormalPrecision(double d, int p);
  static double FastPath(double d, int p);
  static double Pow10(int n);  ///< n from 0 to 308, infinity for all others
};

}  // namespace SK_NAMESPACE_INT
