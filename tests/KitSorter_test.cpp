// Samples come out in the order of their times, whatever order they came in and however little memory there is.
#include "senmark/module/SampleSorter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <memory>
#include <random>

#include "FailingCalls.h"
#include "TempFolder.h"

namespace senmark::kit::detail {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::FailingCall;
using senmark_test::TempFolder;

struct Row {
  SampleKey key;
  std::string payload;
};

std::vector<Row> Rows(unsigned seed, std::size_t count, std::size_t longest) {
  std::mt19937 random(seed);
  std::vector<Row> rows;
  for (std::size_t i = 0; i != count; ++i) {
    // Few different times, so that many are equal.
    SampleKey const key{static_cast<std::int64_t>(random() % 50) - 25, static_cast<std::int32_t>(random() % 3)};
    rows.push_back({key, std::to_string(i) + ':' + std::string(random() % (longest + 1), 'p')});
  }
  return rows;
}

void ExpectSorted(SampleSorter& sorter, std::vector<Row> rows) {
  std::stable_sort(rows.begin(), rows.end(), [](Row const& left, Row const& right) { return left.key < right.key; });
  std::size_t next = 0;
  sorter.drain([&](SampleKey const& key, std::string_view payload) {
    ASSERT_LT(next, rows.size());
    ASSERT_TRUE(key.major == rows[next].key.major && key.minor == rows[next].key.minor) << next;
    ASSERT_EQ(payload, rows[next].payload);
    ++next;
  });
  EXPECT_EQ(next, rows.size());
}

class KitSorter : public testing::Test {
 protected:
  TempFolder mFolder;
};

TEST_F(KitSorter, PutsSamplesInOrderAtEveryBudget) {
  for (std::size_t const memory : {0, 1, 300, 1000, 5000, 100000, 10000000}) {
    for (unsigned seed = 0; seed != 5; ++seed) {
      SortRoom room(memory);
      SampleSorter sorter(room);
      std::vector<Row> const rows = Rows(seed, 2000, seed * 20);
      for (Row const& row : rows) {
        sorter.add(row.key, row.payload);
      }
      EXPECT_TRUE(memory == 100000 || (room.spill.size() != 0) == (memory <= 5000)) << memory;
      ExpectSorted(sorter, rows);
      EXPECT_EQ(room.used, 0U);
      // And again, with what is drained.
      for (Row const& row : rows) {
        sorter.add(row.key, row.payload);
      }
      ExpectSorted(sorter, rows);
    }
  }
}

TEST_F(KitSorter, KeepsWhatCameInOrder) {
  SortRoom room(2000);
  SampleSorter sorter(room);
  std::vector<Row> rows;
  for (int i = 0; i != 5000; ++i) {
    rows.push_back({{i / 2, 0}, std::to_string(i)});
    sorter.add(rows.back().key, rows.back().payload);
  }
  EXPECT_GT(room.spill.size(), 0U);
  ExpectSorted(sorter, rows);
}

TEST_F(KitSorter, AnEmptyOneGivesNothing) {
  SortRoom room(100);
  SampleSorter sorter(room);
  ExpectSorted(sorter, {});
  sorter.add({1, 2}, {});
  ExpectSorted(sorter, {{{1, 2}, ""}});
}

TEST_F(KitSorter, ManyShareOneBudget) {
  constexpr std::size_t kMemory = 20000;
  SortRoom room(kMemory);
  std::vector<std::unique_ptr<SampleSorter>> sorters;
  std::vector<std::vector<Row>> rows(50);
  std::mt19937 random(1);
  std::size_t most = 0;
  for (int i = 0; i != 40; ++i) {
    sorters.push_back(std::make_unique<SampleSorter>(room));
  }
  for (int i = 0; i != 50000; ++i) {
    if (i % 5000 == 4999 && sorters.size() < rows.size()) {
      sorters.push_back(std::make_unique<SampleSorter>(room));
    }
    // The first ones get most.
    std::size_t const at = std::min(random() % sorters.size(), random() % sorters.size());
    rows[at].push_back({{static_cast<std::int64_t>(random() % 1000), 0}, std::to_string(i)});
    sorters[at]->add(rows[at].back().key, rows[at].back().payload);
    most = std::max(most, room.used);
  }
  EXPECT_LE(most, kMemory);
  EXPECT_GT(room.spill.size(), 0U);
  for (std::size_t i = 0; i != sorters.size(); ++i) {
    ExpectSorted(*sorters[i], rows[i]);
  }
  EXPECT_EQ(room.used, 0U);
}

TEST_F(KitSorter, TheSpillFileHasNoName) {
  std::size_t const open = CountOpenDescriptors();
  {
    SortRoom room(0);
    SampleSorter sorter(room);
    EXPECT_EQ(CountOpenDescriptors(), open);
    sorter.add({2, 0}, std::string(300, 'a'));
    sorter.add({1, 0}, std::string(300, 'b'));
    EXPECT_EQ(CountOpenDescriptors(), open + 1);
    EXPECT_EQ(mFolder.TempNames(), "");
  }
  EXPECT_EQ(CountOpenDescriptors(), open);
}

TEST_F(KitSorter, TheSpillFileLiesWhereTheLibrarysFilesLie) {
  senmark_test::KeptVariable const temp("TEMP");
  temp.Set(mFolder.Path("none"));
  SpillFile none;
  try {
    none.append("text");
    ADD_FAILURE();
  } catch (Failure const& failure) {
    EXPECT_EQ(failure.code(), 1015);
  }
  senmark_test::KeptVariable const other("TMP");
  temp.Set("");
  other.Set(mFolder.Path("none"));
  EXPECT_THROW(none.append("text"), Failure);
  other.Set(mFolder.TempPath());
  none.append("text");
  EXPECT_EQ(none.size(), 4U);
}

TEST_F(KitSorter, AFullDiskIsAFailure) {
  struct Fault {
    int reason;
    int code;
  };
  for (Fault const& fault : {Fault{ENOSPC, 1034}, Fault{EDQUOT, 1055}, Fault{EIO, 1055}}) {
    SortRoom room(0);
    SampleSorter sorter(room);
    std::string const payload(60000, 'p');
    try {
      FailingCall const failing(senmark_test::kWrite, fault.reason, 2);
      for (int i = 10; i != 0; --i) {
        sorter.add({i, 0}, payload);
      }
      ADD_FAILURE();
    } catch (Failure const& failure) {
      EXPECT_EQ(failure.code(), fault.code);
    }
  }
}

TEST_F(KitSorter, WritesThatAreCutOrInterruptedGoOn) {
  FailingCall const failing(senmark_test::kWrite, EINTR, 0, 2);
  SortRoom room(0);
  SampleSorter sorter(room);
  for (int i = 3; i != 0; --i) {
    sorter.add({i, 0}, std::string(1000, static_cast<char>('a' + i)));
  }
  EXPECT_TRUE(failing.HasFailed());
  ExpectSorted(sorter,
               {{{3, 0}, std::string(1000, 'd')}, {{2, 0}, std::string(1000, 'c')}, {{1, 0}, std::string(1000, 'b')}});
}

TEST_F(KitSorter, AFileThatWasCutIsAFailure) {
  SpillFile spill;
  spill.append("0123");
  char bytes[8];
  spill.read(1, bytes, 3);
  EXPECT_EQ(std::string(bytes, 3), "123");
  try {
    spill.read(2, bytes, 3);
    ADD_FAILURE();
  } catch (Failure const& failure) {
    EXPECT_EQ(failure.code(), 1011);
  }
}

}  // namespace
}  // namespace senmark::kit::detail
