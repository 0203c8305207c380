/// Feeds one text to every operation of the scanner. An `SK_Exception` is an expected end; anything else, a read
/// outside the text or a position outside it is a finding. So is an outline with packed data types that ends elsewhere
/// than one without.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "SK_Exception.h"
#include "SK_TdjsonParserUtils.h"

namespace {

using SK_NAMESPACE_INT::JAllocator;
using SK_NAMESPACE_INT::JValue;
using SK_NAMESPACE_INT::SK_TdjsonParserUtils;

/// Where it ended, and the message of an error.
struct End {
  std::string message;
  long long offset;
};

/// parse  gives the position that it reached
template <typename Parse>
End Run(char const* begin, char const* end, Parse parse) {
  try {
    char const* const next = parse();
    if (next < begin || next > end) {
      __builtin_trap();
    }
    return {std::string(), next - begin};
  } catch (ns_sensor::SK_Exception const& error) {
    if (error.GetErrorCode() != ns_sensor::kJsonSyntax || error.GetFileOffset() > end - begin) {
      __builtin_trap();
    }
    return {error.GetLocalizedErrMsg(), error.GetFileOffset()};
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  // A block that ends where the text ends: the address sanitizer sees every read behind it.
  std::unique_ptr<char[]> const text(new char[size]);
  if (size > 0) {
    std::memcpy(text.get(), data, size);
  }
  char const* const begin = text.get();
  char const* const end = begin + size;
  std::string const name = "value";
  JAllocator allocator;
  JValue value;
  std::string string;
  double number = 0;
  char const* p = begin;
  End const plain = Run(
      begin, end, [&] { return SK_TdjsonParserUtils::ParseJsonArray(begin, end, begin, name, value, allocator, 0); });
  End const packed =
      Run(begin, end, [&] { return SK_TdjsonParserUtils::ParseOutline(begin, end, begin, name, value, allocator); });
  if (plain.message != packed.message || plain.offset != packed.offset) {
    __builtin_trap();
  }
  Run(begin, end, [&] { return SK_TdjsonParserUtils::ParseJsonObject(begin, end, begin, name, value, allocator, 0); });
  Run(begin, end,
      [&] { return SK_TdjsonParserUtils::ParseJsonString(begin, end, begin, string, false, name.c_str()); });
  Run(begin, end, [&] { return SK_TdjsonParserUtils::ConsumeColon(begin, end, begin, name); });
  Run(begin, end, [&] {
    p = begin;
    return SK_TdjsonParserUtils::ParseJsonNumber(p, end, begin, name, number);
  });
  Run(begin, end, [&] {
    p = begin;
    SK_TdjsonParserUtils::ParseJsonBool(p, end, begin, name);
    return p;
  });
  return 0;
}
