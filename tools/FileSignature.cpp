#include "FileSignature.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <istream>

namespace senmark_tool {

namespace {

constexpr std::int32_t kMaxLength = 1024;
constexpr std::size_t kShownLength = 16;

bool IsPrintable(std::string const& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

/// A text in quotes, other bytes as hexadecimal digits.
std::string Shown(std::string const& bytes) {
  std::string const begin = bytes.substr(0, kShownLength);
  std::string const more = begin.size() < bytes.size() ? "..." : "";
  if (IsPrintable(begin)) {
    return '"' + begin + more + '"';
  }
  std::string digits = "0x";
  for (char const c : begin) {
    auto const byte = static_cast<unsigned char>(c);
    digits += "0123456789ABCDEF"[byte >> 4];
    digits += "0123456789ABCDEF"[byte & 15];
  }
  return digits + more;
}

/// The value of two digits, as far as they are digits: the library reads other texts so, too.
char PairValue(char const* pair) {
  char const digits[] = {pair[0], pair[1], '\0'};
  return static_cast<char>(std::strtoul(digits, nullptr, 16));
}

std::size_t ComparedLength(std::int32_t length) {
  return static_cast<std::size_t>(std::clamp(length, 0, kMaxLength));
}

/// The bytes that the file must have; fewer than the length if the manifest gives fewer.
std::string WantedBytes(FileSignature const& signature) {
  std::size_t const length = ComparedLength(signature.length);
  std::string const& text = signature.bytes;
  if (text.size() != 2 + 2 * length || text.compare(0, 2, "0x") != 0) {
    return text.substr(0, length);
  }
  std::string bytes;
  for (std::size_t i = 2; i < text.size(); i += 2) {
    bytes += PairValue(&text[i]);
  }
  return bytes;
}

}  // namespace

std::string FileSignature::Mismatch(std::istream& file) const {
  if (length == 0 || bytes.empty()) {
    return "the manifest gives an empty signature, which no file has";
  }
  if (length < 0 || offset < 0) {
    return "the manifest gives a signature with a negative length or offset, which no file has";
  }
  std::string const wanted = WantedBytes(*this);
  std::size_t const count = ComparedLength(length);
  std::string found(count, '\0');
  file.clear();
  file.seekg(offset);
  file.read(found.data(), static_cast<std::streamsize>(count));
  found.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  std::string const place = "signature " + Text() + ": ";
  if (found.size() < count) {
    return place + "the file ends before byte " + std::to_string(static_cast<std::uint64_t>(offset) + count);
  }
  if (wanted.size() < count) {
    return place + "the manifest gives fewer bytes than its \"length\" says";
  }
  return found == wanted ? std::string() : place + "there stands " + Shown(found);
}

std::string FileSignature::Text() const {
  return Shown(WantedBytes(*this)) + " at byte " + std::to_string(offset);
}

}  // namespace senmark_tool
