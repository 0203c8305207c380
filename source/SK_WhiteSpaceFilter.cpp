#include "SK_WhiteSpaceFilter.h"

namespace SK_NAMESPACE_INT {

SK_FilterResult FilterBytes(char const* p, char const* end, char* out, SK_FilterState& state) {
  for (; p < end; ++p) {
    bool keep = true;
    switch (*p) {
      case ' ':
        keep = state.insideString;
        break;
      case '\n':
      case '\t':
      case '\r':
        keep = false;
        break;
      case '"':
        state.insideString = !state.insideString;
        break;
      case '[':
        ++state.depth;
        break;
      case ']':
        if (--state.depth == 0) {
          return {p, out};
        }
        break;
      default:
        break;
    }
    // Stored either way, so that the common bytes take no branch.
    *out = *p;
    out += keep ? 1 : 0;
  }
  return {p, out};
}

}  // namespace SK_NAMESPACE_INT
