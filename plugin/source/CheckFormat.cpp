#include "CheckFormat.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "SK_FileIO.h"

namespace SK_PLUGIN {

namespace {

constexpr std::int32_t kMaxLength = 1024;
/// Every file system can be asked for this position, whatever the length of the file.
constexpr std::int64_t kFarthestPosition = 0x7FFFFFFF;

/// The value of two hexadecimal digits, as far as they are digits.
unsigned long PairValue(char const* pair) {
  char const digits[] = {pair[0], pair[1], '\0'};
  return std::strtoul(digits, nullptr, 16);
}

bool EqualsHexadecimal(unsigned char const* bytes, std::size_t length, char const* digits) {
  for (std::size_t i = 0; i < length; ++i) {
    if (PairValue(digits + 2 * i) != bytes[i]) {
      return false;
    }
  }
  return true;
}

}  // namespace

void CheckFormat::clear() {
  mOffset = 0;
  mLength = 0;
  mByteSequence.clear();
}

bool CheckFormat::IsIn(int fd) const {
  // No file has bytes before its start or fewer than none.
  if (empty() || mLength < 0 || mOffset < 0) {
    return false;
  }
  if (mOffset > kFarthestPosition && mOffset >= File_IO::Length(fd)) {
    return false;
  }
  auto const length = static_cast<unsigned int>(std::min(mLength, kMaxLength));
  unsigned char bytes[kMaxLength];
  File_IO::Seek(fd, mOffset, File_IO::kSeekFromStart);
  if (File_IO::Read(fd, bytes, length) != length) {
    return false;
  }
  if (mByteSequence.size() == 2 + 2 * std::size_t{length} && mByteSequence.compare(0, 2, "0x") == 0) {
    return EqualsHexadecimal(bytes, length, mByteSequence.data() + 2);
  }
  // As a C string: the NUL behind its last byte counts as one of its bytes.
  return mByteSequence.size() + 1 >= length && std::memcmp(bytes, mByteSequence.c_str(), length) == 0;
}

}  // namespace SK_PLUGIN
