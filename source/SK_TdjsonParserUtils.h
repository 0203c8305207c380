/// A JSON scanner that works straight on a range of bytes and reports byte offsets.
///
/// It is no general JSON reader: containers are never empty, `null` does not exist, `\u` escapes are not
/// decoded, and numbers follow rules of their own, all of them fixed behaviour of the format.
///
/// Every operation takes the position `p` and `end`, the first byte behind the range, and reads nothing
/// at or behind `end`. `base` is where offsets are counted from; null gives -1. `name` is the text that
/// messages show for the value. Errors carry code 32 and the offset, where nothing else is said.
#pragma once

#include <string>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

class SK_TdjsonParserUtils {
 public:
  /// Containers may be nested this deep; one level more is refused.
  static constexpr unsigned short kMaxNestingDepth = 100;

  static char const* SkipSpecialCharacters(char const* p, char const* end);
  static long long GetOffset(char const* p, char const* base);

  /// Each gives the position behind what it read.
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

  /// d times 10 to the p, with the precision of one division or multiplication.
  static double StrtodNormalPrecision(double d, int p);
  static double FastPath(double d, int p);
  static double Pow10(int n);  ///< n from 0 to 308
};

}  // namespace SK_NAMESPACE_INT
