/// The six conversions between UTF-8, UTF-16 and UTF-32 on ranges of units, to the contract of the
/// well-known public conversion routines: both ranges are given by pointers, and the starts are moved to
/// where the conversion stopped.
#pragma once

namespace SK_UnicodeUtils {

using UTF8 = unsigned char;
using UTF16 = unsigned short;
using UTF32 = unsigned int;

enum ConversionResult {
  conversionOK,
  sourceExhausted,  ///< the source ends inside a character
  targetExhausted,  ///< the target is full; the source stands at the character that did not fit
  sourceIllegal,    ///< the source stands at a sequence that is not legal
};

/// Strict stops at a lone surrogate; lenient passes it in UTF-16 and UTF-8, and replaces it by U+FFFD
/// where the target is UTF-32 or comes from it.
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

}  // namespace SK_UnicodeUtils
