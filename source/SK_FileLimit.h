/// How long a file of the process may be.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

/// In bytes: the limit of the process if it has one, else what a position in a file can be.
std::uint64_t LongestFile() noexcept;

}  // namespace SK_NAMESPACE_INT
