/// What file systems offer beyond POSIX, under another name on each platform.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

/// Sets blocks aside for the first `size` bytes of an open file without changing its length. Where the
/// system cannot, nothing happens.
void ReserveFileBlocks(int fd, std::uint64_t size) noexcept;

}  // namespace SK_NAMESPACE_INT
