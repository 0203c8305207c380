#include "SK_EightBytes.h"

#include <gtest/gtest.h>

#include <string>

#include "ExactRange.h"

namespace SK_NAMESPACE_INT {
namespace {

// Each byte is another one, and a sanitizer sees what is read behind them.
TEST(EightBytes, ShortTextsHaveTheFillerBehindThem) {
  std::string const bytes = "\x81\xFF\x01zZ\x7F\x80~more";
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    ExactRange const text(std::string_view(bytes).substr(0, size));
    for (char const filler : {' ', '\0', '\xEE'}) {
      char found[8];
      StoreEight(found, LoadUpToEight(std::string_view(text.begin(), size), filler));
      std::string expected = bytes.substr(0, size);
      expected.resize(8, filler);
      EXPECT_EQ(std::string(found, 8), expected) << size;
    }
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
