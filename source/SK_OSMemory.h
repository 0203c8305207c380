/// Pages of memory straight from the system, for what is too large for `malloc`'s pages of 4 KiB.
#pragma once

#include <cstddef>

namespace SK_NAMESPACE_INT {

inline constexpr std::size_t kLargePage = std::size_t{2} << 20U;

/// `size` bytes of zeros that begin at a multiple of `kLargePage`; `size` is a multiple of it too. Null if there is no
/// memory.
void* MapLargePages(std::size_t size) noexcept;
/// Gives back what `MapLargePages` gave, whole.
void UnmapLargePages(void* pages, std::size_t size) noexcept;

/// Asks for large pages behind a range of addresses, which are cheaper to come by if most of the range will be used. A
/// wish: where the system cannot, nothing happens.
void PreferLargePages(void* pages, std::size_t size) noexcept;

}  // namespace SK_NAMESPACE_INT
