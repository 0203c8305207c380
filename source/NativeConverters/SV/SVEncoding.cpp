#include "SVEncoding.h"

#include "SK_InputBytes.h"

namespace ns_sensor {

FileEncodingType GetFileEncoding(std::string const& path) {
  SK_InputBytes input(path);
  if (!input.IsOpen()) {
    return kFileNotOpened;
  }
  if (MatchOptionalPattern(input, UTF8_MARK.data(), UTF8_MARK.size())) {
    return kUTF8Mark;
  }
  if (MatchOptionalPattern(input, UTF16_BIG_E_MARK.data(), UTF16_BIG_E_MARK.size())) {
    return kUTF16BigEndian;
  }
  if (MatchOptionalPattern(input, UTF16_LIL_E_MARK.data(), UTF16_LIL_E_MARK.size())) {
    return kUTF16LittleEndian;
  }
  return kNoEncodingMark;
}

bool MatchOptionalPattern(SK_InputBytes& input, unsigned char const* pattern, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (input.Peek() != pattern[i]) {
      return false;
    }
    input.Get();
  }
  return true;
}

}  // namespace ns_sensor
