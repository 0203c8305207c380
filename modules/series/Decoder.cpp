#include "Decoder.h"

#include <algorithm>

namespace senmark_series {

namespace {

constexpr unsigned kReplacement = 0xFFFD;

// What Windows-1252 has from 0x80 to 0x9F. The five that it leaves open are the control characters of Latin-1.
constexpr unsigned kWindows1252[] = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178,
};

void AppendCharacter(unsigned code, std::string& text) {
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0 | code >> 6);
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0 | code >> 12);
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    text += static_cast<char>(0xF0 | code >> 18);
    text += static_cast<char>(0x80 | (code >> 12 & 0x3F));
    text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace

void Decoder::append(std::string_view bytes, std::string& text) {
  if (mEncoding == eEncoding::kUtf8) {
    text.append(bytes);
  } else if (mEncoding == eEncoding::kWindows1252) {
    for (char const character : bytes) {
      auto const byte = static_cast<unsigned char>(character);
      AppendCharacter(byte >= 0x80 && byte <= 0x9F ? kWindows1252[byte - 0x80] : byte, text);
    }
  } else {
    AppendUtf16(bytes, text);
  }
}

void Decoder::finish(std::string& text) {
  if (mHighSurrogate != 0 || mHasFirstByte) {
    AppendCharacter(kReplacement, text);
  }
  mHighSurrogate = 0;
  mHasFirstByte = false;
}

std::uint64_t Decoder::sourceSize(std::string_view text) const {
  if (mEncoding == eEncoding::kUtf8) {
    return text.size();
  }
  auto const characters = static_cast<std::uint64_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
  if (mEncoding == eEncoding::kWindows1252) {
    return characters;
  }
  auto const pairs = static_cast<std::uint64_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0xF0; }));
  return 2 * (characters + pairs);
}

void Decoder::AppendUtf16(std::string_view bytes, std::string& text) {
  for (char const character : bytes) {
    auto const byte = static_cast<unsigned char>(character);
    if (!mHasFirstByte) {
      mFirstByte = byte;
      mHasFirstByte = true;
      continue;
    }
    mHasFirstByte = false;
    TakeUnit(
        mEncoding == eEncoding::kUtf16Little ? mFirstByte | static_cast<unsigned>(byte) << 8 : mFirstByte << 8 | byte,
        text);
  }
}

void Decoder::TakeUnit(unsigned unit, std::string& text) {
  bool const isLow = unit >= 0xDC00 && unit <= 0xDFFF;
  if (mHighSurrogate != 0) {
    if (isLow) {
      AppendCharacter(0x10000 + ((mHighSurrogate - 0xD800) << 10) + (unit - 0xDC00), text);
      mHighSurrogate = 0;
      return;
    }
    AppendCharacter(kReplacement, text);
    mHighSurrogate = 0;
  }
  if (unit >= 0xD800 && unit <= 0xDBFF) {
    mHighSurrogate = unit;
  } else {
    AppendCharacter(isLow ? kReplacement : unit, text);
  }
}

}  // namespace senmark_series
