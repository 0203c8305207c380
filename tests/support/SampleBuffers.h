/// Samples that are appended to a buffer. For programs with `FailingMemory`.
#pragma once

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <string_view>

#include "FailingMemory.h"
#include "SerializerBuffer.h"

namespace senmark_test {

/// What is appended to a buffer, as a text.
template <typename Append>
std::string TextOf(Append&& append) {
  SK_PLUGIN::SerializerBuffer buffer;
  append(buffer);
  return std::string(buffer.View());
}

/// For widths that no memory is asked for, and that no text comes out of.
template <typename Append>
void ExpectTooWide(Append&& append) {
  SK_PLUGIN::SerializerBuffer buffer;
  buffer.Put(std::string_view("room for what stands in front of the padding"));
  bool isRefused = false;
  FailingMemory const memory(1, FailingMemory::kAll);
  try {
    append(buffer);
  } catch (std::bad_alloc const&) {
    isRefused = !memory.HasFailed();
  }
  EXPECT_TRUE(isRefused);
}

}  // namespace senmark_test
