/// Conversions among ASCII, UTF-8 and UTF-16 on strings of fixed-width units.
///
/// The first group serves messages and never fails on bad text; the second is strict and raises code 1.
/// No function keeps state.
#pragma once

#include <string>

#include "SK_UnicodeConversion.h"

namespace SK_UnicodeUtils {

using UTF8String = std::basic_string<unsigned char>;
using UTF16String = std::basic_string<unsigned short>;

bool IsAscii(int character);
/// False for null; else true if every byte up to the terminator is ASCII.
bool AsciiCheck(char const* text);
/// `length` bytes widened one by one; empty if `AsciiCheck` fails.
UTF16String AsciiToUTF16(char const* text, unsigned long length);

unsigned char const* CharAsUTF8(char const* text);
char const* UTF8AsChar(unsigned char const* text);

/// Converts up to the first bad sequence; what was converted until then is the result.
///
/// status, consumed  may be null; receive how the conversion ended and how many bytes it used.
UTF16String UTF8to16(UTF8String const& text, ConversionResult* status, unsigned long* consumed);

UTF8String UTF16to8(UTF16String const& text);
UTF8String UTF16to8(unsigned short const* text);  ///< up to its zero unit; empty for null

/// Replaces `out` with the text in UTF-8, lone surrogates as sequences of three bytes. From a `length`
/// of 4 units on, the text's zero unit ends it and `length` counts no further, so the text must have
/// one. Null or a `length` of 0 leaves `out` as it is.
void UTF16StringtoUTF8String(unsigned short const* text, unsigned long length, UTF8String& out);

/// Replaces `out` with `length` units, in this machine's byte order, as UTF-8. Fails on a lone surrogate.
void FromUTF16Native(unsigned short const* text, unsigned long length, std::string* out);

/// Replaces `out` with `length` bytes of UTF-8 as UTF-16 in the wanted byte order, two bytes for each
/// unit. Fails on bad UTF-8.
void ToUTF16(unsigned char const* text, unsigned long length, std::string* out, bool bigEndian);

// The steps of the two above. Each converts as much as fits and tells how many units of the source and
// of the target that took; an incomplete character at the end of the source is left there.

void UTF16Nat_to_UTF8(unsigned short const* text, unsigned long length, unsigned char* out, unsigned long room,
                      unsigned long* unitsRead, unsigned long* bytesWritten);
/// Stops at bad UTF-8.
void UTF8_to_UTF16LE(unsigned char const* text, unsigned long length, unsigned short* out, unsigned long room,
                     unsigned long* bytesRead, unsigned long* unitsWritten);
/// Stops at bad UTF-8.
void UTF8_to_UTF16BE(unsigned char const* text, unsigned long length, unsigned short* out, unsigned long room,
                     unsigned long* bytesRead, unsigned long* unitsWritten);
/// bytesWritten  receives 0 if the sequence does not fit.
void CodePoint_to_UTF8_Multi(unsigned int codePoint, unsigned char* out, unsigned long room,
                             unsigned long* bytesWritten);
/// text  begins with a surrogate; unitsRead: receives 2, or 0 if there is no second unit.
void CodePoint_from_UTF16Nat_Surrogate(unsigned short const* text, unsigned long length, unsigned int* codePoint,
                                       unsigned long* unitsRead);

}  // namespace SK_UnicodeUtils
