/// The bytes of an input file in their order, read in pieces, so that a file of any size takes the same memory.
#pragma once

#include <cstddef>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

namespace ns_sensor {

class SK_InputBytes {
 public:
  static constexpr int kEnd = -1;

  /// A file that cannot be opened is no error here: `IsOpen` tells it, and there are no bytes.
  explicit SK_InputBytes(std::string const& path);

  bool IsOpen() const { return mIsOpen; }

  /// The next byte as 0 to 255, or `kEnd`. What cannot be read, like a folder, ends there.
  int Peek() { return HasByte() ? static_cast<unsigned char>(*mNext) : kEnd; }
  int Get() { return HasByte() ? static_cast<unsigned char>(*mNext++) : kEnd; }

  /// The bytes at hand, at least one unless the file ends here. Good until the next call of anything but `Skip`.
  std::string_view Window() {
    return HasByte() ? std::string_view(mNext, static_cast<std::size_t>(mLast - mNext)) : std::string_view();
  }
  /// Steps over bytes of the window.
  void Skip(std::size_t count) { mNext += count; }

 private:
  bool HasByte() { return mNext != mLast || Refill(); }
  bool Refill();

  std::filebuf mFile;
  bool mIsOpen;
  std::unique_ptr<char[]> mPiece;
  char const* mNext = nullptr;
  char const* mLast = nullptr;
};

}  // namespace ns_sensor
