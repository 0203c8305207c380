/// JSON text of the format as a value, for tests.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "ExactRange.h"
#include "SK_TdjsonParserUtils.h"

/// A value of the format, parsed by the operation that its first byte asks for.
class ParsedJson {
 public:
  explicit ParsedJson(std::string const& text, unsigned short depth = 0) {
    ExactRange const range(text);
    bool const isObject = text.find_first_of("{[") != std::string::npos && text[text.find_first_of("{[")] == '{';
    using SK_NAMESPACE_INT::SK_TdjsonParserUtils;
    auto* const parse = isObject ? &SK_TdjsonParserUtils::ParseJsonObject : &SK_TdjsonParserUtils::ParseJsonArray;
    char const* const next = parse(range.begin(), range.end(), range.begin(), "top", value, mAllocator, depth);
    length = static_cast<std::size_t>(next - range.begin());
    // What was parsed keeps nothing of the input.
    std::fill(range.begin(), range.end(), '#');
  }

  std::size_t GetAllocatedBytes() const { return mAllocator.Size(); }

 private:
  SK_NAMESPACE_INT::JAllocator mAllocator;

 public:
  SK_NAMESPACE_INT::JValue value;
  std::size_t length;
};
