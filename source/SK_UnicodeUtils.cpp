#include "SK_UnicodeUtils.h"

#include <cstring>
#include <vector>

#include "SK_Error.h"

namespace SK_UnicodeUtils {

namespace {

// Texts up to this length, messages for one, are converted without the heap.
constexpr std::size_t kShortTextUnits = 256;
constexpr std::size_t kPassUnits = 8192;
constexpr std::size_t kPassBytes = 16384;

[[noreturn]] void ThrowBadUnicode(char const* literal) {
  SK_NAMESPACE_INT::ThrowError({ns_sensor::kInvalidArgument, literal, -1, -1});
}

UTF16String ConvertInto(UTF16* buffer, std::size_t room, UTF8String const& text, ConversionResult& status,
                        unsigned long& consumed) {
  UTF8 const* source = text.data();
  UTF16* target = buffer;
  status = ConvertUTF8toUTF16(&source, text.data() + text.size(), &target, buffer + room, strictConversion);
  consumed = static_cast<unsigned long>(source - text.data());
  return UTF16String(buffer, target);
}

// Appends one character to `out` and gives how many units it took. Only units before `end` are read.
std::size_t AppendCharacter(UTF16 const* unit, UTF16 const* end, UTF8String& out) {
  bool const isPair = IsHighSurrogate(unit[0]) && end - unit >= 2 && IsLowSurrogate(unit[1]);
  UTF8 sequence[4];
  int const length = EncodeUTF8(isPair ? CombineSurrogates(unit[0], unit[1]) : unit[0], sequence);
  out.append(sequence, static_cast<std::size_t>(length));
  return isPair ? 2 : 1;
}

// Units up to the first zero unit.
std::size_t CountUnits(UTF16 const* text) {
  std::size_t count = 0;
  while (text[count] != 0) {
    ++count;
  }
  return count;
}

void SetUnit(UTF16& unit, UTF8 first, UTF8 second) {
  UTF8 const bytes[2] = {first, second};
  std::memcpy(&unit, bytes, sizeof unit);
}

// Converts as much as fits; the units are in this machine's byte order.
void UTF8_to_UTF16Nat(UTF8 const* text, unsigned long length, UTF16* out, unsigned long room, unsigned long* bytesRead,
                      unsigned long* unitsWritten) {
  UTF8 const* source = text;
  UTF16* target = out;
  ConvertUTF8toUTF16(&source, text + length, &target, out + room, strictConversion);
  *bytesRead = static_cast<unsigned long>(source - text);
  *unitsWritten = static_cast<unsigned long>(target - out);
}

}  // namespace

bool IsAscii(int character) {
  return character >= 0 && character <= 127;
}

bool AsciiCheck(char const* text) {
  if (text == nullptr) {
    return false;
  }
  while (*text != '\0' && IsAscii(static_cast<unsigned char>(*text))) {
    ++text;
  }
  return *text == '\0';
}

UTF16String AsciiToUTF16(char const* text, unsigned long length) {
  if (!AsciiCheck(text)) {
    return UTF16String();
  }
  UTF8 const* const bytes = CharAsUTF8(text);
  return UTF16String(bytes, bytes + length);
}

unsigned char const* CharAsUTF8(char const* text) {
  return reinterpret_cast<unsigned char const*>(text);
}

char const* UTF8AsChar(unsigned char const* text) {
  return reinterpret_cast<char const*>(text);
}

UTF16String UTF8to16(UTF8String const& text, ConversionResult* status, unsigned long* consumed) {
  ConversionResult reached = conversionOK;
  unsigned long used = 0;
  UTF16String result;
  // No byte gives more than one unit, so that a target of the source's length always suffices.
  if (text.size() <= kShortTextUnits) {
    UTF16 buffer[kShortTextUnits];
    result = ConvertInto(buffer, kShortTextUnits, text, reached, used);
  } else {
    std::vector<UTF16> buffer(text.size());
    result = ConvertInto(buffer.data(), buffer.size(), text, reached, used);
  }
  if (status != nullptr) {
    *status = reached;
  }
  if (consumed != nullptr) {
    *consumed = used;
  }
  return result;
}

UTF8String UTF16to8(UTF16String const& text) {
  UTF8String result;
  UTF16StringtoUTF8String(text.c_str(), text.size(), result);
  return result;
}

UTF8String UTF16to8(unsigned short const* text) {
  UTF8String result;
  if (text != nullptr) {
    UTF16StringtoUTF8String(text, CountUnits(text), result);
  }
  return result;
}

void UTF16StringtoUTF8String(unsigned short const* text, unsigned long length, UTF8String& out) {
  constexpr unsigned long kShortestTerminated = 4;
  if (text == nullptr || length == 0) {
    return;
  }
  UTF16 const* const end = text + (length < kShortestTerminated ? length : CountUnits(text));
  out.clear();
  out.reserve(static_cast<std::size_t>(end - text));
  while (text != end) {
    text += AppendCharacter(text, end, out);
  }
}

void FromUTF16Native(unsigned short const* text, unsigned long length, std::string* out) {
  out->clear();
  out->reserve(2 * length);
  while (length > 0) {
    UTF8 buffer[kPassBytes];
    unsigned long unitsRead = 0;
    unsigned long bytesWritten = 0;
    UTF16Nat_to_UTF8(text, length, buffer, kPassBytes, &unitsRead, &bytesWritten);
    if (unitsRead == 0) {
      ThrowBadUnicode(SK_Message::kBadUnicode);
    }
    out->append(UTF8AsChar(buffer), bytesWritten);
    text += unitsRead;
    length -= unitsRead;
  }
}

void ToUTF16(unsigned char const* text, unsigned long length, std::string* out, bool bigEndian) {
  auto const convert = bigEndian ? UTF8_to_UTF16BE : UTF8_to_UTF16LE;
  out->clear();
  out->reserve(2 * length);
  while (length > 0) {
    UTF16 buffer[kPassUnits];
    unsigned long bytesRead = 0;
    unsigned long unitsWritten = 0;
    convert(text, length, buffer, kPassUnits, &bytesRead, &unitsWritten);
    if (bytesRead == 0) {
      ThrowBadUnicode(SK_Message::kBadUnicode);
    }
    out->append(reinterpret_cast<char const*>(buffer), unitsWritten * sizeof(UTF16));
    text += bytesRead;
    length -= bytesRead;
  }
}

void UTF16Nat_to_UTF8(unsigned short const* text, unsigned long length, unsigned char* out, unsigned long room,
                      unsigned long* unitsRead, unsigned long* bytesWritten) {
  unsigned long from = 0;
  unsigned long to = 0;
  while (from < length && to < room) {
    if (text[from] < 0x80) {
      out[to++] = static_cast<UTF8>(text[from++]);
      continue;
    }
    UTF32 codePoint = text[from];
    unsigned long unitsUsed = 1;
    if (IsSurrogate(codePoint)) {
      CodePoint_from_UTF16Nat_Surrogate(text + from, length - from, &codePoint, &unitsUsed);
    }
    unsigned long bytesUsed = 0;
    if (unitsUsed > 0) {
      CodePoint_to_UTF8_Multi(codePoint, out + to, room - to, &bytesUsed);
    }
    if (bytesUsed == 0) {
      break;  // half a pair at the end, or no room for the whole sequence
    }
    from += unitsUsed;
    to += bytesUsed;
  }
  *unitsRead = from;
  *bytesWritten = to;
}

void UTF8_to_UTF16LE(unsigned char const* text, unsigned long length, unsigned short* out, unsigned long room,
                     unsigned long* bytesRead, unsigned long* unitsWritten) {
  UTF8_to_UTF16Nat(text, length, out, room, bytesRead, unitsWritten);
  for (unsigned long i = 0; i < *unitsWritten; ++i) {
    SetUnit(out[i], static_cast<UTF8>(out[i] & 0xFF), static_cast<UTF8>(out[i] >> 8));
  }
}

void UTF8_to_UTF16BE(unsigned char const* text, unsigned long length, unsigned short* out, unsigned long room,
                     unsigned long* bytesRead, unsigned long* unitsWritten) {
  UTF8_to_UTF16Nat(text, length, out, room, bytesRead, unitsWritten);
  for (unsigned long i = 0; i < *unitsWritten; ++i) {
    SetUnit(out[i], static_cast<UTF8>(out[i] >> 8), static_cast<UTF8>(out[i] & 0xFF));
  }
}

void CodePoint_to_UTF8_Multi(unsigned int codePoint, unsigned char* out, unsigned long room,
                             unsigned long* bytesWritten) {
  if (codePoint > kMaxCodePoint) {
    ThrowBadUnicode(SK_Message::kBadUTF);
  }
  if (IsSurrogate(codePoint)) {
    ThrowBadUnicode(SK_Message::kBadCodePoint);
  }
  UTF8 sequence[4];
  unsigned long const length = static_cast<unsigned long>(EncodeUTF8(codePoint, sequence));
  *bytesWritten = 0;
  if (length <= room) {
    std::memcpy(out, sequence, length);
    *bytesWritten = length;
  }
}

void CodePoint_from_UTF16Nat_Surrogate(unsigned short const* text, unsigned long length, unsigned int* codePoint,
                                       unsigned long* unitsRead) {
  *unitsRead = 0;
  if (text[0] > 0xDBFF) {
    ThrowBadUnicode(SK_Message::kBadUTF16Low);
  }
  if (length < 2) {
    return;
  }
  if (!IsLowSurrogate(text[1])) {
    ThrowBadUnicode(SK_Message::kBadUTF16Missing);
  }
  *codePoint = CombineSurrogates(text[0], text[1]);
  *unitsRead = 2;
}

}  // namespace SK_UnicodeUtils
