/// Names for nodes, made from any text.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>

namespace senmark::kit {

/// Text that a file can hold: U+FFFD stands for each byte that is not of a valid UTF-8 character, and for each control
/// character but tab, line feed, carriage return, backspace and form feed.
inline std::string Utf8(std::string_view text);

/// The same for a text of a sample. A reader finds the end of the samples by their square brackets, and their white
/// space by their quotes, also by those within texts: quotes are replaced by their full-width forms, and so are the
/// brackets of a text in which they do not come in pairs.
inline std::string SampleText(std::string_view text);

/// Makes match names, valid and unique in one file: ASCII letters and digits, no digit first.
class MatchNames {
 public:
  /// A name that reminds of `text`: its letters and digits, and "node" where there are none. A name that was given
  /// before gets a number behind it.
  std::string make(std::string_view text) {
    std::string name;
    for (char const character : text) {
      bool const isDigit = character >= '0' && character <= '9';
      bool const isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
      if (isDigit && name.empty()) {
        name = "n";
      }
      if ((isDigit || isLetter) && name.size() < kLongest) {
        name += character;
      }
    }
    if (name.empty()) {
      name = "node";
    }
    // References to elements stay valid when the table grows.
    std::size_t& count = mCounts[name];
    if (count == 0) {
      count = 1;
      return name;
    }
    for (;;) {
      // The numbered name of one text may be the plain name of another.
      std::string numbered = name + 'x' + std::to_string(++count);
      if (mCounts.try_emplace(numbered, 1).second) {
        return numbered;
      }
    }
  }

 private:
  static constexpr std::size_t kLongest = 200;

  std::unordered_map<std::string, std::size_t> mCounts;  ///< by name: the last number that was given out
};

/// The display name with its unit, `name [unit]`; just the name without a unit.
inline std::string WithUnit(std::string_view name, std::string_view unit) {
  std::string text = Utf8(name);
  if (!unit.empty()) {
    text += " [" + Utf8(unit) + ']';
  }
  return text;
}

namespace detail {

/// Bytes of the UTF-8 character at the start of `text` that can be written; 0 if there is none.
inline std::size_t CharacterSize(std::string_view text) {
  auto const byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
  auto const follows = [&](std::size_t i, unsigned low = 0x80, unsigned high = 0xBF) {
    return byte(i) >= low && byte(i) <= high;
  };
  unsigned const first = byte(0);
  if (first < 0x80) {
    // The control characters that the writer escapes.
    bool const isWritten = first >= 0x20 || (first >= '\b' && first <= '\r' && first != '\v');
    return isWritten ? 1 : 0;
  }
  if (first >= 0xC2 && first <= 0xDF) {
    return follows(1) ? 2 : 0;
  }
  if (first >= 0xE0 && first <= 0xEF) {
    // Neither overlong forms nor surrogates.
    return follows(1, first == 0xE0 ? 0xA0 : 0x80, first == 0xED ? 0x9F : 0xBF) && follows(2) ? 3 : 0;
  }
  if (first >= 0xF0 && first <= 0xF4) {
    return follows(1, first == 0xF0 ? 0x90 : 0x80, first == 0xF4 ? 0x8F : 0xBF) && follows(2) && follows(3) ? 4 : 0;
  }
  return 0;
}

/// Appends what `Utf8` gives.
inline void AppendUtf8(std::string_view text, std::string& clean) {
  clean.reserve(clean.size() + text.size());
  while (!text.empty()) {
    std::size_t plain = 0;
    while (plain != text.size() && text[plain] >= ' ' && static_cast<unsigned char>(text[plain]) < 0x80) {
      ++plain;
    }
    clean.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (!text.empty()) {
      std::size_t const size = CharacterSize(text);
      clean.append(size == 0 ? std::string_view("\xEF\xBF\xBD") : text.substr(0, size));
      text.remove_prefix(size == 0 ? 1 : size);
    }
  }
}

/// Texts of up to so many bytes are short.
constexpr std::size_t kShortText = 120;

/// Not 0 when one of 8 bytes is no plain ASCII: a byte from 0x80 on, a control character, a quote, a backslash or
/// a square bracket. The sums and differences are right for bytes below 0x80, and the others need no more than a look.
inline std::uint64_t AnyNotPlain(std::uint64_t bytes) {
  constexpr std::uint64_t kEach = 0x0101010101010101U;
  static_assert('[' + 1 == '\\' && '\\' + 1 == ']');
  std::uint64_t const controls = bytes - kEach * ' ';
  std::uint64_t const quotes = (bytes ^ (kEach * '"')) - kEach;
  std::uint64_t const brackets = (bytes + kEach * (0x80 - '[')) & ~(bytes + kEach * (0x7F - ']'));
  return (bytes | controls | quotes | brackets) & (kEach * 0x80);
}

/// Copies a text while looking at it, eight bytes at a time. False if a file does not hold it byte for byte; of the
/// copy nothing is to be used then. copy: room for the text and eight bytes, all of which may change.
inline bool CopyPlain(std::string_view text, char* copy) {
  constexpr std::size_t kStep = sizeof(std::uint64_t);
  std::uint64_t others = 0;
  auto const take = [&](std::size_t at, std::size_t count) {
    std::uint64_t bytes = 0x2020202020202020U;
    std::memcpy(&bytes, text.data() + at, count);
    std::memcpy(copy + at, &bytes, kStep);
    others |= AnyNotPlain(bytes);
  };
  std::size_t at = 0;
  for (; text.size() - at >= kStep; at += kStep) {
    take(at, kStep);
  }
  if (text.size() >= kStep) {
    // Some bytes for the second time: a count that is known needs no call.
    take(text.size() - kStep, kStep);
  } else {
    take(at, text.size());
  }
  return others == 0;
}

/// Whether each square bracket has its partner.
inline bool BracketsNest(std::string_view text) {
  std::size_t depth = 0;
  for (char const character : text) {
    if (character == '[') {
      ++depth;
    } else if (character == ']' && depth-- == 0) {
      return false;
    }
  }
  return depth == 0;
}

/// Appends what `SampleText` gives.
inline void AppendSampleText(std::string_view text, std::string& clean) {
  std::size_t const start = clean.size();
  AppendUtf8(text, clean);
  auto const isSpecial = [](char character) { return character == '"' || character == '[' || character == ']'; };
  if (std::none_of(clean.begin() + static_cast<std::ptrdiff_t>(start), clean.end(), isSpecial)) {
    return;
  }
  std::string const counted = clean.substr(start);
  bool const keepsBrackets = BracketsNest(counted);
  clean.resize(start);
  for (char const character : counted) {
    if (character == '"') {
      clean += "\uFF02";
    } else if (character == '[' && !keepsBrackets) {
      clean += "\uFF3B";
    } else if (character == ']' && !keepsBrackets) {
      clean += "\uFF3D";
    } else {
      clean += character;
    }
  }
}

}  // namespace detail

inline std::string Utf8(std::string_view text) {
  std::string clean;
  detail::AppendUtf8(text, clean);
  return clean;
}

inline std::string SampleText(std::string_view text) {
  std::string clean;
  detail::AppendSampleText(text, clean);
  return clean;
}

}  // namespace senmark::kit
