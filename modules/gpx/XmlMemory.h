/// The memory of one XML parser, which has a bound.
///
/// The parser keeps every name of an element or an attribute that it has met, and every tag and comment as a whole. A
/// file made for it could take any amount.
#pragma once

#include <expat.h>

#include <cstddef>

namespace senmark_gpx {

class XmlMemory {
 public:
  /// Bytes that a parser may hold at once.
  static constexpr std::size_t kLimit = std::size_t{16} << 20;

  /// What a parser is made with. Its functions serve calls of the parser within the life of a `Use` alone.
  static XML_Memory_Handling_Suite const* Functions();

  /// Has this memory serve the calls of its thread for as long as it lives.
  class Use {
   public:
    explicit Use(XmlMemory& memory);
    ~Use();
    Use(Use const&) = delete;
    Use& operator=(Use const&) = delete;

   private:
    XmlMemory* mBefore;
  };

  bool isExhausted() const { return mIsExhausted; }

 private:
  static void* Allocate(std::size_t size);
  static void* Reallocate(void* block, std::size_t size);
  static void Free(void* block);

  /// False if so many bytes more are too many.
  bool Take(std::size_t size);

  std::size_t mHeld = 0;
  bool mIsExhausted = false;
};

}  // namespace senmark_gpx
