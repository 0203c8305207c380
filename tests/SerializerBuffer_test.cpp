#include "SerializerBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "FailingMemory.h"

namespace SK_PLUGIN {
namespace {

TEST(SerializerBuffer, BeginsEmpty) {
  SerializerBuffer const buffer;
  EXPECT_EQ(buffer.Size(), 0u);
  EXPECT_EQ(buffer.View(), "");
}

TEST(SerializerBuffer, AppendsCharactersLiteralsAndTexts) {
  SerializerBuffer buffer;
  buffer.Put('a');
  buffer.Put("literal");
  buffer.Put(std::string_view("text\0with a zero", 16));
  buffer.Put(std::string_view());
  EXPECT_EQ(buffer.View(), std::string("aliteraltext\0with a zero", 24));
}

TEST(SerializerBuffer, GrowGivesRoomForTheCallerToFill) {
  SerializerBuffer buffer;
  buffer.Put("ab");
  std::fill_n(buffer.Grow(3), 3, 'x');
  buffer.Grow(0);
  EXPECT_EQ(buffer.View(), "abxxx");
}

TEST(SerializerBuffer, KeepsItsTextWhileItGrows) {
  SerializerBuffer buffer;
  std::string expected;
  for (int i = 0; i != 20000; ++i) {
    std::string const piece = std::to_string(i);
    buffer.Put(std::string_view(piece));
    expected += piece;
  }
  EXPECT_EQ(buffer.View(), expected);
}

TEST(SerializerBuffer, TruncateKeepsTheFrontAndDropFrontTheRest) {
  SerializerBuffer buffer;
  buffer.Put("0123456789");
  buffer.Truncate(8);
  buffer.DropFront(3);
  EXPECT_EQ(buffer.View(), "34567");
  buffer.DropFront(5);
  EXPECT_EQ(buffer.View(), "");
  buffer.Put("new");
  buffer.Clear();
  EXPECT_EQ(buffer.View(), "");
}

TEST(SerializerBuffer, RefusesMoreThanOneWriteTakesWithoutAskingForMemory) {
  for (std::size_t const count : {SerializerBuffer::kLargestSize, std::numeric_limits<std::size_t>::max()}) {
    SerializerBuffer buffer;
    buffer.Put('a');
    // Were it asked for, most machines would give the first of these.
    senmark_test::FailingMemory const memory(1);
    EXPECT_THROW(buffer.Grow(count), std::bad_alloc);
    EXPECT_FALSE(memory.HasFailed());
    EXPECT_EQ(buffer.View(), "a");
  }
}

TEST(SerializerBuffer, IsAsBeforeWhenThereIsNoMemory) {
  SerializerBuffer buffer;
  buffer.Put("ab");
  {
    senmark_test::FailingMemory const memory(1);
    EXPECT_THROW(buffer.Grow(1 << 20), std::bad_alloc);
    EXPECT_TRUE(memory.HasFailed());
  }
  EXPECT_EQ(buffer.View(), "ab");
  buffer.Put('c');
  EXPECT_EQ(buffer.View(), "abc");
}

}  // namespace
}  // namespace SK_PLUGIN
