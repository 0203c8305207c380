#include "SK_UnicodeConversion.h"

#include <cstring>

namespace SK_UnicodeUtils {

namespace {

// Length of a sequence as its first byte announces it; 5 and 6 are forms that no legal text holds.
int AnnouncedLength(UTF8 first) {
  if (first < 0xC0) {
    return 1;
  }
  if (first < 0xE0) {
    return 2;
  }
  if (first < 0xF0) {
    return 3;
  }
  if (first < 0xF8) {
    return 4;
  }
  return first < 0xFC ? 5 : 6;
}

bool IsContinuation(UTF8 byte) {
  return (byte & 0xC0) == 0x80;
}

// The second byte carries what the first leaves open: longer forms than needed (E0, F0), surrogates (ED)
// and code points above the last (F4).
bool IsLegalSecondByte(UTF8 first, UTF8 second) {
  switch (first) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return IsContinuation(second);
  }
}

// The Read functions take one character off a source that is not empty, and move it only on success.

ConversionResult ReadUTF8(UTF8 const*& source, UTF8 const* sourceEnd, ConversionFlags, UTF32& codePoint) {
  int const length = AnnouncedLength(*source);
  if (length > sourceEnd - source) {
    return sourceExhausted;
  }
  if (length > 4 || !isLegalUTF8(source, length)) {
    return sourceIllegal;
  }
  constexpr UTF32 kFirstByteBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
  codePoint = *source++ & kFirstByteBits[length];
  for (int i = 1; i < length; ++i) {
    codePoint = codePoint << 6 | (*source++ & 0x3Fu);
  }
  return conversionOK;
}

ConversionResult ReadUTF16(UTF16 const*& source, UTF16 const* sourceEnd, ConversionFlags flags, UTF32& codePoint) {
  codePoint = *source;
  if (!IsSurrogate(codePoint)) {
    ++source;
    return conversionOK;
  }
  if (IsHighSurrogate(codePoint)) {
    if (sourceEnd - source < 2) {
      return sourceExhausted;
    }
    if (IsLowSurrogate(source[1])) {
      codePoint = CombineSurrogates(codePoint, source[1]);
      source += 2;
      return conversionOK;
    }
  }
  if (flags == strictConversion) {
    return sourceIllegal;
  }
  ++source;
  return conversionOK;
}

ConversionResult ReadUTF32(UTF32 const*& source, UTF32 const*, ConversionFlags flags, UTF32& codePoint) {
  codePoint = *source;
  bool const tooLarge = codePoint > kMaxCodePoint;
  if (flags == strictConversion && (tooLarge || IsSurrogate(codePoint))) {
    return sourceIllegal;
  }
  if (tooLarge) {
    codePoint = kReplacementCharacter;
  }
  ++source;
  return conversionOK;
}

// The Write functions append one character, or nothing when it does not fit as a whole.

ConversionResult WriteUTF8(UTF32 codePoint, UTF8*& target, UTF8* targetEnd) {
  UTF8 sequence[4];
  int const length = EncodeUTF8(codePoint, sequence);
  if (length > targetEnd - target) {
    return targetExhausted;
  }
  std::memcpy(target, sequence, static_cast<std::size_t>(length));
  target += length;
  return conversionOK;
}

ConversionResult WriteUTF16(UTF32 codePoint, UTF16*& target, UTF16* targetEnd) {
  int const length = codePoint > 0xFFFF ? 2 : 1;
  if (length > targetEnd - target) {
    return targetExhausted;
  }
  if (length == 2) {
    UTF32 const bits = codePoint - 0x10000;
    *target++ = static_cast<UTF16>(0xD800 + (bits >> 10));
    *target++ = static_cast<UTF16>(0xDC00 + (bits & 0x3FF));
  } else {
    *target++ = static_cast<UTF16>(IsSurrogate(codePoint) ? kReplacementCharacter : codePoint);
  }
  return conversionOK;
}

ConversionResult WriteUTF32(UTF32 codePoint, UTF32*& target, UTF32* targetEnd) {
  if (target == targetEnd) {
    return targetExhausted;
  }
  *target++ = codePoint;
  return conversionOK;
}

template <typename Source, typename Target, typename Read, typename Write>
ConversionResult Convert(Source const** source, Source const* sourceEnd, Target** target, Target* targetEnd,
                         ConversionFlags flags, Read read, Write write) {
  ConversionResult result = conversionOK;
  while (result == conversionOK && *source != sourceEnd) {
    Source const* next = *source;
    UTF32 codePoint = 0;
    result = read(next, sourceEnd, flags, codePoint);
    if (result == conversionOK) {
      result = write(codePoint, *target, targetEnd);
    }
    if (result == conversionOK) {
      *source = next;
    }
  }
  return result;
}

}  // namespace

ConversionResult ConvertUTF8toUTF16(UTF8 const** source, UTF8 const* sourceEnd, UTF16** target, UTF16* targetEnd,
                                    ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF8, WriteUTF16);
}

ConversionResult ConvertUTF16toUTF8(UTF16 const** source, UTF16 const* sourceEnd, UTF8** target, UTF8* targetEnd,
                                    ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF16, WriteUTF8);
}

ConversionResult ConvertUTF8toUTF32(UTF8 const** source, UTF8 const* sourceEnd, UTF32** target, UTF32* targetEnd,
                                    ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF8, WriteUTF32);
}

ConversionResult ConvertUTF32toUTF8(UTF32 const** source, UTF32 const* sourceEnd, UTF8** target, UTF8* targetEnd,
                                    ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF32, WriteUTF8);
}

ConversionResult ConvertUTF16toUTF32(UTF16 const** source, UTF16 const* sourceEnd, UTF32** target, UTF32* targetEnd,
                                     ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF16, WriteUTF32);
}

ConversionResult ConvertUTF32toUTF16(UTF32 const** source, UTF32 const* sourceEnd, UTF16** target, UTF16* targetEnd,
                                     ConversionFlags flags) {
  return Convert(source, sourceEnd, target, targetEnd, flags, ReadUTF32, WriteUTF16);
}

bool isLegalUTF8(UTF8 const* source, int length) {
  if (length < 1 || length > 4 || AnnouncedLength(source[0]) != length) {
    return false;
  }
  if (length == 1) {
    return source[0] < 0x80;
  }
  // C0 and C1 could only begin forms longer than needed; nothing above F4 stays within U+10FFFF.
  if (source[0] < 0xC2 || source[0] > 0xF4 || !IsLegalSecondByte(source[0], source[1])) {
    return false;
  }
  for (int i = 2; i < length; ++i) {
    if (!IsContinuation(source[i])) {
      return false;
    }
  }
  return true;
}

bool isLegalUTF8Sequence(UTF8 const* source, UTF8 const* sourceEnd) {
  if (source == sourceEnd) {
    return false;
  }
  int const length = AnnouncedLength(*source);
  return length <= sourceEnd - source && isLegalUTF8(source, length);
}

int EncodeUTF8(UTF32 codePoint, UTF8 (&sequence)[4]) {
  if (codePoint < 0x80) {
    sequence[0] = static_cast<UTF8>(codePoint);
    return 1;
  }
  int const length = codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
  for (int i = length - 1; i > 0; --i) {
    sequence[i] = static_cast<UTF8>(0x80 | (codePoint & 0x3F));
    codePoint >>= 6;
  }
  constexpr UTF32 kFirstByteMark[] = {0, 0, 0xC0, 0xE0, 0xF0};
  sequence[0] = static_cast<UTF8>(kFirstByteMark[length] | codePoint);
  return length;
}

}  // namespace SK_UnicodeUtils
