#include "Encoding.h"

#include "Ascii.h"
#include "EightBytes.h"

namespace senmark_series {

char const* NameOf(eEncoding encoding) {
  switch (encoding) {
    case eEncoding::kUtf8:
      return "UTF-8";
    case eEncoding::kUtf16Little:
      return "UTF-16, low byte first";
    case eEncoding::kUtf16Big:
      return "UTF-16, high byte first";
    default:
      return "Windows-1252";
  }
}

std::optional<eEncoding> EncodingOf(std::string_view name) {
  struct Entry {
    char const* name;
    eEncoding encoding;
  };
  static constexpr Entry kEntries[] = {
      {"utf-8", eEncoding::kUtf8},
      {"utf-16le", eEncoding::kUtf16Little},
      {"utf-16be", eEncoding::kUtf16Big},
      {"windows-1252", eEncoding::kWindows1252},
      {"cp1252", eEncoding::kWindows1252},
      {"latin-1", eEncoding::kWindows1252},
      {"iso-8859-1", eEncoding::kWindows1252},
  };
  for (Entry const& entry : kEntries) {
    if (EqualsLower(name, entry.name)) {
      return entry.encoding;
    }
  }
  return std::nullopt;
}

ByteOrderMark MarkOf(std::string_view head) {
  if (StartsWith(head, "\xEF\xBB\xBF")) {
    return {eEncoding::kUtf8, 3};
  }
  if (StartsWith(head, "\xFF\xFE")) {
    return {eEncoding::kUtf16Little, 2};
  }
  if (StartsWith(head, "\xFE\xFF")) {
    return {eEncoding::kUtf16Big, 2};
  }
  return {};
}

namespace {

/// Steps over blocks of nothing but ASCII.
char const* SkipAscii(char const* p, char const* end) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  for (; end - p >= 32; p += 32) {
    if (((LoadEight(p) | LoadEight(p + 8) | LoadEight(p + 16) | LoadEight(p + 24)) & kHighBits) != 0) {
      break;
    }
  }
  for (; end - p >= 8 && (LoadEight(p) & kHighBits) == 0; p += 8) {
  }
  return p;
}

}  // namespace

bool Utf8Check::feed(std::string_view piece) {
  char const* p = piece.data();
  char const* const end = p + piece.size();
  while (p != end && mIsValid) {
    if (mMissing == 0) {
      // Most tables are ASCII throughout.
      p = SkipAscii(p, end);
      if (p == end) {
        break;
      }
    }
    auto const byte = static_cast<unsigned char>(*p++);
    if (mMissing != 0) {
      mIsValid = byte >= mLowest && byte <= mHighest;
      --mMissing;
      mLowest = 0x80;
      mHighest = 0xBF;
    } else if (byte >= 0xC2 && byte <= 0xDF) {
      mMissing = 1;
    } else if (byte >= 0xE0 && byte <= 0xEF) {
      // Neither overlong forms nor surrogates.
      mMissing = 2;
      mLowest = byte == 0xE0 ? 0xA0 : 0x80;
      mHighest = byte == 0xED ? 0x9F : 0xBF;
    } else if (byte >= 0xF0 && byte <= 0xF4) {
      mMissing = 3;
      mLowest = byte == 0xF0 ? 0x90 : 0x80;
      mHighest = byte == 0xF4 ? 0x8F : 0xBF;
    } else {
      mIsValid = byte < 0x80;
    }
  }
  return mIsValid;
}

}  // namespace senmark_series
