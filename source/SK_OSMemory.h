/// Memory straight from the system, in stretches that are as large as they are aligned.
#pragma once

#include <cstddef>

namespace SK_NAMESPACE_INT {

/// `size` bytes of zeroes at a multiple of `size`, which is a power of two and at least a page. Null if there are none.
void* MapStretch(std::size_t size) noexcept;
/// The whole stretch.
void UnmapStretch(void* stretch, std::size_t size) noexcept;
/// Asks for pages larger than usual, which are cheaper to come by if most of the stretch will be used. Where the
/// system has none, nothing happens.
void PreferLargePages(void* stretch, std::size_t size) noexcept;

}  // namespace SK_NAMESPACE_INT
