/// Finds out about rows as they come.
#pragma once

#include <string>
#include <vector>

#include "RowTimes.h"
#include "Survey.h"

namespace senmark_series {

/// The times of rows, read in one order of dates.
struct TimeTrack {
  std::uint64_t good = 0;
  std::uint64_t bad = 0;
  std::int64_t firstBadLine = 0;
  std::int64_t firstBadOffset = -1;
  bool isOrdered = true;
  kit::Instant first;
  kit::Instant last;
  kit::Instant before;
  unsigned digits = 0;
  std::int32_t digitUnit = kSecond;  ///< nanoseconds of the last of them

  static constexpr std::int32_t kSecond = 1000000000;

  void take(kit::Instant const& time);
  void takeBad(Row const& row);
};

class Surveyor {
 public:
  explicit Surveyor(Layout const& layout) : Surveyor(layout, layout.time.order) {}
  /// wanted  the order of dates in which `take` gives times, where the layout leaves it to the rows.
  Surveyor(Layout const& layout, eDateOrder wanted);

  /// False for a row that tells no time.
  bool take(Row const& row, kit::Instant& time);

  /// Columns that came with the rows.
  void addColumns(std::vector<std::string> const& names);

  /// What the rows so far tell. Errors: as those of `SurveyFile`.
  Survey survey() const;

 private:
  struct RowTime {
    bool isThere;
    kit::Instant time;
  };

  RowTime TakeOtherOrder(Row const& row, bool hasTime, kit::Instant const& time);
  void TakeCells(Row const& row);
  void CountGaps(Survey& survey) const;
  void ChooseDateOrder(Survey& survey) const;

  Survey mSurvey;  ///< layout and columns
  RowTimes mTimes;
  RowTimes mOtherTimes;
  eDateOrder mWanted;
  TimeTrack mTracks[2];  ///< the second with the month first, if the order is not known
  std::uint64_t mRows = 0;
  bool mDiffer = false;  ///< a row means another time in the other order
  bool mHasHalves = false;
  bool mHasSlashes = false;
};

}  // namespace senmark_series
