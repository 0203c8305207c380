#include "MeantWord.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

#include "ManifestConverters.h"

namespace senmark_tool {

namespace {

/// Letters to change, to add or to take away until one word is the other.
std::size_t Distance(std::string const& from, std::string const& to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= from.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= to.size(); ++j) {
      std::size_t const replaced = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string MeantWord(std::string const& word, std::vector<std::string> const& known) {
  constexpr std::size_t kFarthest = 3;
  constexpr std::size_t kLongest = 40;
  if (word.size() > kLongest) {
    return std::string();
  }
  std::string meant;
  std::size_t nearest = kFarthest + 1;
  for (std::string const& candidate : known) {
    std::size_t const distance = Distance(LowerCase(word), LowerCase(candidate));
    if (distance < nearest && distance < candidate.size() / 2) {
      nearest = distance;
      meant = candidate;
    }
  }
  return meant;
}

}  // namespace senmark_tool
