/// A copy of some bytes that ends where its heap block ends, so that an address sanitizer sees every read
/// behind the range.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>

class ExactRange {
 public:
  explicit ExactRange(std::string_view bytes) : mSize(bytes.size()), mBytes(new char[bytes.size()]) {
    std::copy(bytes.begin(), bytes.end(), mBytes.get());
  }

  char* begin() const { return mBytes.get(); }
  char* end() const { return mBytes.get() + mSize; }
  std::size_t GetSize() const { return mSize; }

 private:
  std::size_t mSize;
  std::unique_ptr<char[]> mBytes;
};
