/// The six conversions between UTF-8, UTF-16 and UTF-32 on ranges of units, to the contract of the
/// well-known public conversion routines: both ranges are given by pointers, and the starts are moved to
/// where the conversion stopped.
#pragma once

namespace SK_UnicodeUtils {

using UTF8 = unsigned char;
using UTF16 = unsigned short;
using UTF32 = unsigned int;

inline constexpr UTF32 kMaxCodePoint = 0x10FFFF;
inline constexpr UTF32 kReplacementCharacter = 0xFFFD;

enum ConversionResult {
  conversionOK,
  sourceExhausted,  ///< the source ends inside a character, at whose first unit it now stands
  targetExhausted,  ///< the target is full; the source stands at the character that did not fit
  sourceIllegal,    ///< the source stands at a sequence that is not legal
};

/// Strict stops at a lone surrogate and at a code point above U+10FFFF. Lenient passes the surrogate,
/// except from UTF-32 to UTF-16, where it becomes U+FFFD, as does such a code point everywhere. Bad UTF-8
/// is illegal either way, and so are surrogates that are encoded in it.
enum ConversionFlags { strictConversion, lenientConversion };

ConversionResult ConvertUTF8toUTF16(UTF8 const** source, UTF8 const* sourceEnd, UTF16** target, UTF16* targetEnd,
                                    ConversionFlags flags);
ConversionResult ConvertUTF16toUTF8(UTF16 const** source, UTF16 const* sourceEnd, UTF8** target, UTF8* targetEnd,
                                    ConversionFlags flags);
ConversionResult ConvertUTF8toUTF32(UTF8 const** source, UTF8 const* sourceEnd, UTF32** target, UTF32* targetEnd,
                                    ConversionFlags flags);
ConversionResult ConvertUTF32toUTF8(UTF32 const** source, UTF32 const* sourceEnd, UTF8** target, UTF8* targetEnd,
                                    ConversionFlags flags);
ConversionResult ConvertUTF16toUTF32(UTF16 const** source, UTF16 const* sourceEnd, UTF32** target, UTF32* targetEnd,
                                     ConversionFlags flags);
ConversionResult ConvertUTF32toUTF16(UTF32 const** source, UTF32 const* sourceEnd, UTF16** target, UTF16* targetEnd,
                                     ConversionFlags flags);

/// Whether the first `length` bytes, 1 to 4, are one legal sequence: the shortest form, no surrogate,
/// at most U+10FFFF.
bool isLegalUTF8(UTF8 const* source, int length);
/// The same for the sequence whose first byte stands at `source`; false when it passes `sourceEnd`.
bool isLegalUTF8Sequence(UTF8 const* source, UTF8 const* sourceEnd);

inline bool IsHighSurrogate(UTF32 unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
inline bool IsLowSurrogate(UTF32 unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}
inline bool IsSurrogate(UTF32 unit) {
  return unit >= 0xD800 && unit <= 0xDFFF;
}
/// The code point of a high and a low surrogate, from the low ten bits of each.
inline UTF32 CombineSurrogates(UTF32 high, UTF32 low) {
  return 0x10000 + ((high & 0x3FF) << 10) + (low & 0x3FF);
}
/// Writes the sequence of a code point of at most U+10FFFF, a surrogate as it stands, and gives its
/// length: 1 to 4 bytes.
int EncodeUTF8(UTF32 codePoint, UTF8 (&sequence)[4]);

}  // namespace SK_UnicodeUtils
