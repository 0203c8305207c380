/// Conversions among ASCII, UTF-8 and UTF-16 on strings of fixed-width units.
///
/// The first group serves messages and never fails on bad text; the second is strict and raises code 1.
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
UTF8String UTF16to8(unsigned short const* text);  ///< up to its zero unit

/// Replaces `out` with the text in UTF-8, lone surrogates as sequences of three bytes. From a `length`
/// of 4 units on, the text's zero unit ends it and `length` counts no further, so the text must have
/// one.
void UTF16StringtoUTF8String(unsigned short const* text, unsigned long length, UTF8String& out);

}  // namespace SK_UnicodeUtils
