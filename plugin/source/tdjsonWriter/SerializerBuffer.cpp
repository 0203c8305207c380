#include "SerializerBuffer.h"

#include <algorithm>
#include <new>
#include <utility>

namespace SK_PLUGIN {

namespace {

constexpr std::size_t kFirstCapacity = 4096;

}  // namespace

void SerializerBuffer::Enlarge(std::size_t count) {
  if (count > kLargestSize - mSize) {
    throw std::bad_alloc();
  }
  std::size_t const capacity = std::max({mSize + count, 2 * mCapacity, kFirstCapacity});
  std::unique_ptr<char[]> text(new char[capacity]);
  if (mSize != 0) {
    std::memcpy(text.get(), mText.get(), mSize);
  }
  mText = std::move(text);
  mCapacity = capacity;
}

}  // namespace SK_PLUGIN
