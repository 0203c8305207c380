#include "SVCells.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace ns_sensor {
namespace {

TEST(SVCells, ComeOutAsTheyWentIn) {
  SVCells cells;
  std::vector<std::string> all;
  std::mt19937 random(9);
  for (std::size_t const size : {0,     1,     62,    63,    64,    65,      126,     127, 128, 129, 16383,
                                 16384, 65534, 65535, 65536, 65537, 2097151, 2097152, 0,   0,   3}) {
    all.emplace_back(size, static_cast<char>('a' + random() % 26));
  }
  for (int i = 0; i < 100000; ++i) {
    all.emplace_back(random() % 12, static_cast<char>(random()));
  }
  for (std::string const& cell : all) {
    cells.Append(cell);
  }
  for (std::size_t i = 0; i != all.size(); ++i) {
    ASSERT_TRUE(cells.Take() == all[i]) << i;
  }
}

TEST(SVCells, TakenBetweenAppends) {
  SVCells cells;
  for (int i = 0; i < 1000; ++i) {
    cells.Append(std::to_string(2 * i));
    cells.Append(std::to_string(2 * i + 1));
    ASSERT_EQ(cells.Take(), std::to_string(i));
  }
  for (int i = 1000; i < 2000; ++i) {
    ASSERT_EQ(cells.Take(), std::to_string(i));
  }
}

}  // namespace
}  // namespace ns_sensor
