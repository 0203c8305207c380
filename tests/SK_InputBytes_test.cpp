#include "SK_InputBytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "FailingCalls.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

/// A text in which no stretch of some length comes twice soon.
std::string Pattern(std::size_t size) {
  std::string text(size, '\0');
  for (std::size_t i = 0; i != size; ++i) {
    text[i] = static_cast<char>((i * 2654435761U) >> 13U);
  }
  return text;
}

class InputBytes : public testing::Test {
 protected:
  senmark_test::TempFolder mFolder;
};

constexpr std::size_t kPiece = 256 * 1024;
constexpr std::size_t kSizes[] = {0, 1, 2, kPiece - 1, kPiece, kPiece + 1, 2 * kPiece - 1, 2 * kPiece, 2 * kPiece + 1};

TEST_F(InputBytes, GiveEveryByteOnce) {
  for (std::size_t const size : kSizes) {
    std::string const text = Pattern(size);
    SK_InputBytes input(mFolder.Write("input", text));
    ASSERT_TRUE(input.IsOpen());
    std::string read;
    for (int byte = input.Get(); byte != SK_InputBytes::kEnd; byte = input.Get()) {
      read += static_cast<char>(byte);
    }
    EXPECT_TRUE(read == text) << size;
    EXPECT_EQ(input.Get(), SK_InputBytes::kEnd) << size;
    EXPECT_EQ(input.Peek(), SK_InputBytes::kEnd) << size;
    EXPECT_TRUE(input.Window().empty()) << size;
  }
}

TEST_F(InputBytes, WindowsGiveEveryByteOnce) {
  for (std::size_t const size : kSizes) {
    std::string const text = Pattern(size);
    SK_InputBytes input(mFolder.Write("input", text));
    std::string read;
    for (std::string_view window = input.Window(); !window.empty(); window = input.Window()) {
      // In uneven steps, with single bytes between them.
      std::size_t const count = std::min<std::size_t>(window.size(), 70001);
      read += window.substr(0, count);
      input.Skip(count);
      int const byte = input.Get();
      if (byte != SK_InputBytes::kEnd) {
        read += static_cast<char>(byte);
      }
    }
    EXPECT_TRUE(read == text) << size;
  }
}

TEST_F(InputBytes, PeekStepsOverNothing) {
  SK_InputBytes input(mFolder.Write("input", "ab"));
  EXPECT_EQ(input.Peek(), 'a');
  EXPECT_EQ(input.Peek(), 'a');
  EXPECT_EQ(input.Get(), 'a');
  EXPECT_EQ(input.Peek(), 'b');
  EXPECT_EQ(input.Window(), "b");
  EXPECT_EQ(input.Get(), 'b');
  EXPECT_EQ(input.Peek(), SK_InputBytes::kEnd);
}

TEST_F(InputBytes, BytesAreNotSigned) {
  SK_InputBytes input(mFolder.Write("input", "\xFF\x80"));
  EXPECT_EQ(input.Peek(), 0xFF);
  EXPECT_EQ(input.Get(), 0xFF);
  EXPECT_EQ(input.Get(), 0x80);
  EXPECT_EQ(input.Get(), SK_InputBytes::kEnd);
}

TEST_F(InputBytes, MissingFileIsNotOpenAndHasNoBytes) {
  SK_InputBytes input(mFolder.Path("missing"));
  EXPECT_FALSE(input.IsOpen());
  EXPECT_EQ(input.Peek(), SK_InputBytes::kEnd);
  EXPECT_EQ(input.Get(), SK_InputBytes::kEnd);
  EXPECT_TRUE(input.Window().empty());
}

TEST_F(InputBytes, FileThatMayNotBeReadIsNotOpen) {
  std::string const path = mFolder.Write("secret", "a");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  senmark_test::OrdinaryUser const user;
  EXPECT_FALSE(SK_InputBytes(path).IsOpen());
}

TEST_F(InputBytes, FolderEndsAtOnce) {
  SK_InputBytes input(mFolder.Path(""));
  EXPECT_TRUE(input.IsOpen());
  EXPECT_EQ(input.Peek(), SK_InputBytes::kEnd);
  EXPECT_EQ(input.Get(), SK_InputBytes::kEnd);
  EXPECT_TRUE(input.Window().empty());
}

TEST_F(InputBytes, NoDescriptorStaysOpen) {
  std::size_t const before = senmark_test::CountOpenDescriptors();
  {
    SK_InputBytes file(mFolder.Write("input", "a"));
    SK_InputBytes folder(mFolder.Path(""));
    folder.Get();
    EXPECT_EQ(senmark_test::CountOpenDescriptors(), before + 2);
  }
  EXPECT_EQ(senmark_test::CountOpenDescriptors(), before);
}

}  // namespace
}  // namespace ns_sensor
