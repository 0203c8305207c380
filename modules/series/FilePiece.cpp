#include "FilePiece.h"

#include <unistd.h>

#include <cerrno>

namespace senmark_series {

namespace {

/// Fewer bytes at the end of the file.
std::string ReadAt(kit::Input const& input, std::uint64_t offset, std::size_t size) {
  kit::Bytes const bytes(input, 1);
  std::string piece(size, '\0');
  std::size_t count = 0;
  while (count != size) {
    ssize_t const got =
        ::pread(bytes.descriptor(), piece.data() + count, size - count, static_cast<off_t>(offset + count));
    if (got > 0) {
      count += static_cast<std::size_t>(got);
    } else if (got == 0) {
      break;
    } else if (errno != EINTR) {
      throw kit::Failure("cannot read", static_cast<std::int64_t>(offset), -1, ns_sensor::kReadFailed);
    }
  }
  piece.resize(count);
  return piece;
}

}  // namespace

void ForEachRowOfPiece(kit::Input const& input, Layout const& layout, std::uint64_t offset, std::size_t size,
                       std::function<void(Row const&)> const& take) {
  TextBuffer text(ReadAt(input, offset, size), layout.encoding, static_cast<std::int64_t>(offset), false);
  std::unique_ptr<RowReader> const reader = MakeRowReader(text, layout);
  std::int64_t const firstLine = offset == 0 ? layout.firstDataLine : 1;
  Row row;
  if (offset != 0) {
    reader->next(row);
  }
  while (reader->next(row)) {
    if (row.line >= firstLine) {
      take(row);
    }
  }
}

}  // namespace senmark_series
