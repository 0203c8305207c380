#include "Excerpt.h"

#include <algorithm>
#include <fstream>
#include <string_view>
#include <vector>

#include "Utf8.h"

namespace senmark_tool {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 16;

/// Reads up to `offset` and counts lines. False: the file ends before.
bool CountLines(std::istream& file, Place& place) {
  std::vector<char> chunk(kChunk);
  std::uint64_t lineStart = 0;
  for (std::uint64_t position = 0; position < place.offset;) {
    std::uint64_t const wanted = std::min<std::uint64_t>(kChunk, place.offset - position);
    file.read(chunk.data(), static_cast<std::streamsize>(wanted));
    std::uint64_t const got = static_cast<std::uint64_t>(file.gcount());
    if (got != wanted) {
      return false;
    }
    for (std::uint64_t i = 0; i != got; ++i) {
      if (chunk[i] == '\n') {
        ++place.line;
        lineStart = position + i + 1;
      }
    }
    position += got;
  }
  place.column = place.offset - lineStart + 1;
  return true;
}

std::string ReadSome(std::istream& file, std::uint64_t from, std::size_t count) {
  std::string bytes(count, '\0');
  file.clear();
  file.seekg(static_cast<std::streamoff>(from));
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
  return bytes;
}

/// Bytes at the begin of `text` that continue a character whose begin was cut off.
std::size_t ContinuationBytes(std::string_view text) {
  std::size_t count = 0;
  while (count < text.size() && count < 3 && (static_cast<unsigned char>(text[count]) & 0xC0) == 0x80) {
    ++count;
  }
  return count;
}

}  // namespace

std::optional<Place> FindPlace(std::string const& path, std::uint64_t offset, std::size_t width) {
  std::ifstream file(path, std::ios::binary);
  Place place;
  place.offset = offset;
  if (!file || !CountLines(file, place)) {
    return std::nullopt;
  }
  // Half of the width before the byte, or less where the line begins, and the rest behind it.
  std::size_t const before = static_cast<std::size_t>(std::min<std::uint64_t>(width / 2, place.column - 1));
  std::string const bytes = ReadSome(file, offset - before, width);
  std::string_view head = std::string_view(bytes).substr(0, before);
  std::string_view tail = std::string_view(bytes).substr(std::min(before, bytes.size()));
  tail = tail.substr(0, tail.find_first_of("\r\n"));
  if (before < place.column - 1) {
    head.remove_prefix(ContinuationBytes(head));
  }
  std::string const shownHead = Printable(head);
  place.caret = Columns(shownHead);
  place.excerpt = shownHead + Printable(tail);
  return place;
}

}  // namespace senmark_tool
