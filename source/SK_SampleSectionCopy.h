/// Copies the sample section of a data file without its white space, in bounded memory.
#pragma once

#include <cstdint>
#include <functional>

#include "SK_WhiteSpaceFilter.h"

namespace SK_NAMESPACE_INT {

class SK_SampleSectionCopy {
 public:
  /// The section is looked at in chunks of so many bytes. Only where an empty section ends depends on it.
  static constexpr std::uint64_t kChunkLimit = 0x40000000;

  /// Takes the next bytes of the copy; `isLast` is set once, with the last of them. False: not taken.
  using Sink = std::function<bool(char const* data, std::uint64_t size, bool isLast)>;

  explicit SK_SampleSectionCopy(SK_FilterFunction filter = GetWhiteSpaceFilters().back().run,
                                std::uint64_t chunkLimit = kChunkLimit);

  /// Copies from `begin`, the byte behind the opening bracket, to the closing bracket, and gives the
  /// position behind that; or to `end`, where no bracket closes the section. The copy holds neither
  /// bracket. Code 21 when the sink fails.
  ///
  /// A closing bracket that is the first byte of a chunk counts as none: all of that chunk is copied, and
  /// the position behind the chunk is the result. So `[]` is no empty section, while `[ ]` is one.
  char const* Copy(char const* begin, char const* end, Sink const& sink);

 private:
  SK_FilterFunction mFilter;
  std::uint64_t mChunkLimit;
  // Whether an odd number of quotes has been met, in this section and in all that this object has copied
  // before: a file may have several, and an escaped quote in one turns the others inside out.
  bool mInsideString = false;
};

}  // namespace SK_NAMESPACE_INT
