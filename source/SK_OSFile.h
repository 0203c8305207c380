/// What file systems offer beyond POSIX, under another name on each platform.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

/// Sets blocks aside for the next `size` bytes of an open file that ends at `end`, without changing its length. They
/// stay with the file until it is cut. Where the system cannot, or the process may not have so long a file, nothing
/// happens.
void ReserveFileBlocks(int fd, std::uint64_t end, std::uint64_t size) noexcept;

}  // namespace SK_NAMESPACE_INT
