/// A data file that is made bad by one change of a good one.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace senmark_test {

/// A file with one thing wrong: `from` stands in the good file, `to` in its place in the bad one.
struct Edit {
  char const* whole;
  char const* from;
  char const* to;

  std::string Text() const {
    std::string text = whole;
    std::string::size_type const at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, std::string(from).size(), to);
  }
};

}  // namespace senmark_test
