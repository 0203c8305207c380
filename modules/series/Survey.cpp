#include "Survey.h"

#include <algorithm>

#include "Ascii.h"
#include "JsonLines.h"
#include "NumberText.h"
#include "RowTimes.h"
#include "TimeGuess.h"

namespace senmark_series {

namespace {

/// The times of a file, read in one order of dates.
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

  void take(kit::Instant const& time) {
    if (good++ == 0) {
      first = last = before = time;
    }
    isOrdered = isOrdered && !(time < before);
    if (time < first) {
      first = time;
    }
    if (last < time) {
      last = time;
    }
    before = time;
    // Most times have as many digits as those before.
    if (time.nanoseconds % digitUnit != 0) {
      digits = DigitsOf(time);
      digitUnit = kSecond / static_cast<std::int32_t>(kPowersOfTen[digits]);
    }
  }

  void takeBad(Row const& row) {
    if (bad++ == 0) {
      firstBadLine = row.line;
      firstBadOffset = row.offset;
    }
  }
};

class Surveyor {
 public:
  explicit Surveyor(Layout const& layout)
      : mTimes(layout.time, layout.time.order), mOtherTimes(layout.time, eDateOrder::kMonthFirst) {
    mSurvey.layout = layout;
  }

  /// False if the bytes turn out to be no UTF-8.
  bool read(kit::Input const& input) {
    Layout& layout = mSurvey.layout;
    TextBuffer text(input, layout.encoding);
    std::unique_ptr<RowReader> const reader = MakeRowReader(text, layout);
    Row row;
    while (reader->next(row)) {
      if (row.line >= layout.firstDataLine) {
        Take(row);
      }
    }
    if (layout.isEncodingGuessed && !reader->isUtf8()) {
      return false;
    }
    if (layout.isJsonLines) {
      AddColumns(static_cast<JsonLines const&>(*reader).names());
    }
    return true;
  }

  Survey finish() {
    RequireColumns();
    ChooseDateOrder();
    TimeTrack const& track = Track();
    mSurvey.rows = track.good;
    mSurvey.skipped = track.bad;
    mSurvey.firstSkippedLine = track.firstBadLine;
    if (track.good == 0 || !AreFew(track.bad, track.good)) {
      throw kit::Failure(
          std::to_string(track.bad) + " of " + std::to_string(track.good + track.bad) + " rows tell no time",
          track.firstBadOffset, track.bad == 0 ? -1 : track.firstBadLine);
    }
    bool hasSamples = false;
    for (std::size_t i = 0; i != mSurvey.columns.size() && !hasSamples; ++i) {
      hasSamples = mSurvey.hasSamples(i);
    }
    if (!hasSamples) {
      throw kit::Failure("no column but that of the time holds a value");
    }
    mSurvey.isOrdered = track.isOrdered;
    mSurvey.first = track.first;
    mSurvey.last = track.last;
    mSurvey.neededDigits = track.digits;
    unsigned const within = DigitsWithin(track.last.seconds - track.first.seconds);
    mSurvey.digits = std::clamp(std::min(track.digits, within), 1U, 9U);
    return std::move(mSurvey);
  }

 private:
  void Take(Row const& row) {
    kit::Instant time;
    bool hasTime = mTimes.read(row, time);
    Note(mTracks[0], hasTime, time, row);
    if (mSurvey.layout.isDateOrderGuessed) {
      hasTime = TakeOtherOrder(row, hasTime, time) || hasTime;
    }
    if (hasTime) {
      TakeCells(row);
    }
  }

  static void Note(TimeTrack& track, bool hasTime, kit::Instant const& time, Row const& row) {
    if (hasTime) {
      track.take(time);
    } else {
      track.takeBad(row);
    }
  }

  /// The layout begins with the day first.
  bool TakeOtherOrder(Row const& row, bool hasTime, kit::Instant const& time) {
    TimeForm const& form = mSurvey.layout.time;
    kit::Instant other;
    bool const hasOther = mOtherTimes.read(row, other);
    Note(mTracks[1], hasOther, other, row);
    mDiffer = mDiffer || hasTime != hasOther || (hasTime && !(time == other));
    mHasHalves =
        mHasHalves || HasHalfOfDay(row.cell(form.column).text) || HasHalfOfDay(row.cell(form.clockColumn).text);
    mHasSlashes = mHasSlashes || row.cell(form.column).text.find('/') != std::string_view::npos;
    return hasOther;
  }

  void TakeCells(Row const& row) {
    if (mSurvey.columns.size() < row.cells.size()) {
      // Gaps of the rows before are made up for in the end.
      mSurvey.columns.resize(row.cells.size());
    }
    ++mRows;
    TimeForm const& form = mSurvey.layout.time;
    char const mark = mSurvey.layout.dialect.decimalMark;
    ColumnSurvey* column = mSurvey.columns.data();
    std::size_t index = 0;
    for (Cell const& cell : row.cells) {
      if (!form.isTimeColumn(index++)) {
        TakeCell(cell, mark, *column);
      }
      ++column;
    }
  }

  static void TakeCell(Cell const& cell, char mark, ColumnSurvey& column) {
    NumberShape const shape = ShapeOfCell(cell, mark);
    if (shape.isNumber) {
      ++column.numbers;
      column.tiny += shape.isTiny ? 1 : 0;
      column.decimals = std::max(column.decimals, shape.decimals);
    } else if (IsGapWord(cell.text)) {
      column.gapWords += cell.text.empty() ? 0 : 1;
    } else if (column.texts++ == 0) {
      column.firstText = cell.text;
    }
    if (column.firstValue.empty()) {
      column.firstValue = cell.text;
    }
    column.longest = std::max(column.longest, cell.text.size());
  }

  void AddColumns(std::vector<std::string> const& names) {
    for (std::size_t i = mSurvey.layout.columns.size(); i < names.size(); ++i) {
      mSurvey.layout.columns.push_back(mSurvey.layout.columnOf(names[i], i, std::string()));
    }
  }

  void RequireColumns() {
    Layout const& layout = mSurvey.layout;
    for (auto const& [name, choice] : layout.sidecar.columns) {
      bool const isThere = std::any_of(layout.columns.begin(), layout.columns.end(),
                                       [&key = name](Column const& column) { return column.sidecarKey == key; });
      if (!isThere) {
        throw kit::Failure("sidecar: \"columns." + name + "\" is no column of the table");
      }
    }
    for (std::size_t i = layout.columns.size(); i < mSurvey.columns.size(); ++i) {
      mSurvey.surplus += mSurvey.columns[i].numbers + mSurvey.columns[i].texts;
    }
    mSurvey.columns.resize(layout.columns.size());
    for (ColumnSurvey& column : mSurvey.columns) {
      column.gaps = mRows - column.numbers - column.texts;
    }
  }

  /// The order in which more dates exist. If that is none, the day stands first; but the month does between slashes if
  /// the times of day have AM and PM, or if only so no row is earlier than the one before.
  void ChooseDateOrder() {
    Layout& layout = mSurvey.layout;
    if (!layout.isDateOrderGuessed || !mDiffer) {
      return;
    }
    TimeTrack const& day = mTracks[0];
    TimeTrack const& month = mTracks[1];
    std::string reason;
    if (day.bad != month.bad) {
      bool const isMonth = month.bad < day.bad;
      layout.time.order = isMonth ? eDateOrder::kMonthFirst : eDateOrder::kDayFirst;
      reason = "line " + std::to_string((isMonth ? day : month).firstBadLine) + " can be read in no other way";
    } else if (mHasSlashes && mHasHalves) {
      layout.time.order = eDateOrder::kMonthFirst;
      reason = "ambiguous, so taken for its slashes with AM and PM";
    } else if (mHasSlashes && month.isOrdered && !day.isOrdered) {
      layout.time.order = eDateOrder::kMonthFirst;
      reason = "ambiguous, so taken for its slashes, and because the rows ascend only this way";
    } else {
      reason = "ambiguous, so taken without further evidence";
    }
    bool const isDayFirst = layout.time.order == eDateOrder::kDayFirst;
    mSurvey.dateOrder = (isDayFirst ? "day before month: " : "month before day: ") + reason;
  }

  TimeTrack const& Track() const {
    bool const isOther = mSurvey.layout.isDateOrderGuessed && mSurvey.layout.time.order == eDateOrder::kMonthFirst;
    return mTracks[isOther ? 1 : 0];
  }

  Survey mSurvey;
  RowTimes mTimes;
  RowTimes mOtherTimes;
  TimeTrack mTracks[2];  ///< the second with the month first, if the order is not known
  std::uint64_t mRows = 0;
  bool mDiffer = false;  ///< a row means another time in the other order
  bool mHasHalves = false;
  bool mHasSlashes = false;
};

}  // namespace

eColumnKind Survey::kindOf(std::size_t column) const {
  return layout.columns[column].kind.value_or(columns[column].isNumeric() ? eColumnKind::kNumber : eColumnKind::kText);
}

unsigned Survey::decimalsOf(std::size_t column) const {
  return layout.columns[column].decimals.value_or(columns[column].decimals);
}

bool Survey::hasSamples(std::size_t column) const {
  ColumnSurvey const& survey = columns[column];
  return !layout.time.isTimeColumn(column) && !layout.columns[column].isSkipped &&
         survey.numbers + (kindOf(column) == eColumnKind::kText ? survey.texts : 0) != 0;
}

Survey SurveyFile(kit::Input const& input, Layout const& layout) {
  Surveyor surveyor(layout);
  if (surveyor.read(input)) {
    return surveyor.finish();
  }
  Layout changed = layout;
  changed.encoding = eEncoding::kWindows1252;
  changed.isEncodingGuessed = false;
  Surveyor again(changed);
  again.read(input);
  return again.finish();
}

}  // namespace senmark_series
