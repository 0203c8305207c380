#include "SK_BytePieces.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "FailingMemory.h"

namespace SK_NAMESPACE_INT {
namespace {

void Put(SK_BytePieces& pieces, std::string const& text) {
  std::memcpy(pieces.Extend(text.size()), text.data(), text.size());
}

std::string Take(SK_BytePieces const& pieces, SK_BytePieces::Place& place, std::size_t size) {
  std::string const text(pieces.At(place), size);
  place.offset += size;
  return text;
}

TEST(SK_BytePieces, GiveInOrderWhatWasPutAsOftenAsWanted) {
  std::vector<std::string> texts;
  for (std::size_t const size : {1, 62, 1, 1, 64, 65, 127, 128, 1000, 65535, 1, 65536, 65537, 3, 200000, 2}) {
    texts.emplace_back(size, static_cast<char>('a' + texts.size()));
  }
  SK_BytePieces pieces;
  for (std::string const& text : texts) {
    Put(pieces, text);
  }
  std::string all;
  for (std::string const& text : texts) {
    all += text;
  }
  ASSERT_EQ(pieces.GetSize(), all.size());
  std::string copy(all.size(), '\0');
  EXPECT_EQ(pieces.CopyTo(copy.data()), copy.data() + copy.size());
  EXPECT_TRUE(copy == all);
  for (int round = 0; round < 2; ++round) {
    SK_BytePieces::Place place;
    for (std::string const& text : texts) {
      ASSERT_TRUE(Take(pieces, place, text.size()) == text) << text.size();
    }
  }
}

TEST(SK_BytePieces, WhatWasPutStaysWhereItIs) {
  SK_BytePieces pieces;
  char* const first = pieces.Extend(5);
  std::memcpy(first, "first", 5);
  for (int i = 0; i < 10000; ++i) {
    Put(pieces, "other");
  }
  SK_BytePieces::Place place;
  EXPECT_EQ(pieces.At(place), first);
  EXPECT_EQ(std::string(first, 5), "first");
}

TEST(SK_BytePieces, APieceCanGoWhileTheOthersAreRead) {
  SK_BytePieces pieces;
  for (int i = 0; i < 100; ++i) {
    Put(pieces, std::string(64, static_cast<char>(i)));
  }
  SK_BytePieces::Place place;
  std::size_t piece = 0;
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(Take(pieces, place, 64), std::string(64, static_cast<char>(i)));
    if (place.piece != piece) {
      pieces.FreePiece(piece);
      piece = place.piece;
    }
  }
  EXPECT_GT(piece, 1U);
}

TEST(SK_BytePieces, WithoutMemoryNothingIsAdded) {
  SK_BytePieces pieces;
  Put(pieces, std::string(60, 'a'));
  for (std::uint64_t const failing : {1, 2}) {  // the piece, and its place in the list
    senmark_test::FailingMemory const memory(failing);
    EXPECT_THROW(pieces.Extend(100), std::bad_alloc);
    EXPECT_TRUE(memory.HasFailed());
  }
  Put(pieces, "bbbb");
  SK_BytePieces::Place place;
  EXPECT_EQ(Take(pieces, place, 60), std::string(60, 'a'));
  EXPECT_EQ(Take(pieces, place, 4), "bbbb");
}

TEST(SK_BytePieces, LengthsTakeAByteForEachSevenBits) {
  struct {
    std::size_t length;
    std::string bytes;
  } const rows[] = {{0, std::string(1, '\0')},
                    {1, "\x01"},
                    {127, "\x7F"},
                    {128, "\x80\x01"},
                    {16383, "\xFF\x7F"},
                    {16384, "\x80\x80\x01"},
                    {std::numeric_limits<std::size_t>::max(), std::string(9, '\xFF') + '\x01'}};
  for (auto const& row : rows) {
    char bytes[16] = {};
    EXPECT_EQ(CountLengthBytes(row.length), row.bytes.size());
    EXPECT_EQ(PutLength(bytes, row.length), bytes + row.bytes.size());
    EXPECT_EQ(std::string(bytes, row.bytes.size()), row.bytes);
    char const* from = bytes;
    EXPECT_EQ(TakeLength(from), row.length);
    EXPECT_EQ(from, bytes + row.bytes.size());
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
