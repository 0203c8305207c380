/// Text of a data file on its way to the disk: nodes and samples come by the million, so that what is appended
/// costs little more than its bytes.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace SK_PLUGIN {

/// Grows as it needs to and keeps its memory when it is emptied. `std::bad_alloc` without memory, and for more
/// than `kLargestSize`; the text is then as before.
class SerializerBuffer {
 public:
  /// No system writes more at once, so that a longer text is of no use. It also stops paddings of any width
  /// that a host has asked for.
  static constexpr std::size_t kLargestSize = 0x7fffffff;

  std::size_t Size() const { return mSize; }
  /// Bytes by which it can grow without more memory.
  std::size_t Free() const { return mCapacity - mSize; }
  std::string_view View() const { return std::string_view(mText.get(), mSize); }

  void Clear() { mSize = 0; }
  /// Keeps the first `size` bytes.
  void Truncate(std::size_t size) { mSize = size; }

  /// Takes the first `count` bytes away.
  void DropFront(std::size_t count) {
    mSize -= count;
    std::memmove(mText.get(), mText.get() + count, mSize);
  }

  /// Appends `count` bytes, which the caller has to fill at the address that is returned.
  char* Grow(std::size_t count) {
    if (count > mCapacity - mSize) {
      Enlarge(count);
    }
    char* const end = mText.get() + mSize;
    mSize += count;
    return end;
  }

  void Put(char character) { *Grow(1) = character; }
  void Put(std::string_view text) {
    if (!text.empty()) {
      std::memcpy(Grow(text.size()), text.data(), text.size());
    }
  }
  /// A literal: its length is known, and so no call is needed to copy it.
  template <std::size_t N>
  void Put(char const (&literal)[N]) {
    std::memcpy(Grow(N - 1), literal, N - 1);
  }

 private:
  void Enlarge(std::size_t count);

  std::unique_ptr<char[]> mText;  // not cleared: what is not written is never touched
  std::size_t mSize = 0;
  std::size_t mCapacity = 0;
};

}  // namespace SK_PLUGIN
