/// The white space filter for processors that look at 64 bytes at once. Included by one source for each
/// instruction set, which is compiled for it and brings the class `Block`; all here is private to that
/// source, so that no code for a newer processor can end up elsewhere.
#pragma once

#include <cstdint>

#include "SK_WhiteSpaceFilter.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::ptrdiff_t kBlockSize = 64;

/// How far ahead the bytes are called from memory. Without it the filter waits for memory wherever the
/// processor does not look ahead by itself, as on most virtual machines.
constexpr std::uintptr_t kPrefetchDistance = 2048;

/// A hint and no read: what it names may lie behind the end of the range, or nowhere.
inline void PrefetchAhead(char const* p) {
  // Added as a number: a pointer may not be moved behind its range. NOLINTNEXTLINE(performance-no-int-to-ptr)
  __builtin_prefetch(reinterpret_cast<void const*>(reinterpret_cast<std::uintptr_t>(p) + kPrefetchDistance));
}

inline std::uint64_t CountBits(std::uint64_t mask) {
  return static_cast<std::uint64_t>(__builtin_popcountll(mask));
}

/// Bit i of the result is the parity of the bits 0 to i of `mask`.
inline std::uint64_t PrefixParity(std::uint64_t mask) {
  for (int shift = 1; shift < 64; shift *= 2) {
    mask ^= mask << shift;
  }
  return mask;
}

/// Whether the depth reaches 0 at one of the `close` brackets.
inline bool ClosesSection(std::uint64_t open, std::uint64_t close, std::uint64_t depth) {
  for (std::uint64_t left = close; left != 0; left &= left - 1) {
    std::uint64_t const upToHere = left ^ (left - 1);
    if (depth + CountBits(open & upToHere) == CountBits(close & upToHere)) {
      return true;
    }
  }
  return false;
}

/// Filters whole blocks, up to the last whole one or to the one in which the section closes.
///
/// A `Block` is made from the address of 64 bytes. It gives one bit per byte, the first byte lowest:
/// White (all four kinds), Space, Quote, Open and Close; StoreAll keeps the block as it is, and StoreKept
/// keeps the bytes of a mask and gives the place behind them.
template <typename Block>
SK_FilterResult FilterBlocks(char const* p, char const* end, char* out, SK_FilterState& state) {
  std::uint64_t depth = state.depth;
  std::uint64_t inside = state.insideString ? ~std::uint64_t{0} : 0;
  for (; end - p >= kBlockSize; p += kBlockSize) {
    PrefetchAhead(p);
    Block const block(p);
    std::uint64_t const open = block.Open();
    std::uint64_t const close = block.Close();
    if (CountBits(close) >= depth && ClosesSection(open, close, depth)) {
      break;
    }
    depth += CountBits(open) - CountBits(close);
    std::uint64_t const white = block.White();
    std::uint64_t const quote = block.Quote();
    if (white == 0) {
      block.StoreAll(out);
      out += kBlockSize;
    } else {
      std::uint64_t const insideHere = PrefixParity(quote) ^ inside;
      out = block.StoreKept(out, ~white | (block.Space() & insideHere));
    }
    inside ^= std::uint64_t{0} - (CountBits(quote) & 1);
  }
  state.depth = depth;
  state.insideString = inside != 0;
  return {p, out};
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
