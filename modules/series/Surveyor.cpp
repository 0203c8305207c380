#include "Surveyor.h"

#include <algorithm>

#include "NumberText.h"
#include "TimeGuess.h"

namespace senmark_series {

namespace {

void Note(TimeTrack& track, bool hasTime, kit::Instant const& time, Row const& row) {
  if (hasTime) {
    track.take(time);
  } else {
    track.takeBad(row);
  }
}

/// Whether a cell is a number, of which nothing has to be noted but that it is there.
bool TellsNothingNew(Cell const& cell, ColumnSurvey const& column) {
  return cell.plain.isThere() && cell.plain.fraction < column.usualFractions &&
         !cell.plain.startsWithZeroes(cell.text.data());
}

void TakeCell(Cell const& cell, char mark, ColumnSurvey& column) {
  if (NumberShape const shape = ShapeOfCell(cell, mark); shape.isNumber) {
    ++column.numbers;
    column.tiny += shape.isTiny ? 1 : 0;
    column.decimals = std::max(column.decimals, shape.decimals);
  } else if (IsGapWord(cell.text)) {
    column.gapWords += cell.text.empty() ? 0 : 1;
  } else if (column.texts++ == 0) {
    column.firstText = cell.text.substr(0, ColumnSurvey::kKept);
  }
  if (column.firstValue.empty()) {
    column.firstValue = cell.text.substr(0, ColumnSurvey::kKept);
  }
  column.usualFractions = column.firstValue.empty() ? 0 : column.decimals + 1;
  column.longest = std::max(column.longest, cell.text.size());
}

void RequireNamedColumns(Layout const& layout) {
  for (auto const& [name, choice] : layout.sidecar.columns) {
    bool const isThere = std::any_of(layout.columns.begin(), layout.columns.end(),
                                     [&key = name](Column const& column) { return column.sidecarKey == key; });
    if (!isThere) {
      throw kit::Failure("sidecar: \"columns." + name + "\" is no column of the table");
    }
  }
}

}  // namespace

void TimeTrack::take(kit::Instant const& time) {
  if (good++ == 0) {
    first = last = before = time;
  }
  if (time < before) {
    isOrdered = false;
    first = std::min(first, time);
  } else if (isOrdered || last < time) {
    // In order, the one before is the last one.
    last = time;
  }
  before = time;
  // Most times have as many digits as those before, and many are whole seconds.
  if (time.nanoseconds != 0 && time.nanoseconds % digitUnit != 0) {
    digits = DigitsOf(time);
    digitUnit = kSecond / static_cast<std::int32_t>(kPowersOfTen[digits]);
  }
}

void TimeTrack::takeBad(Row const& row) {
  if (bad++ == 0) {
    firstBadLine = row.line;
    firstBadOffset = row.offset;
  }
}

Surveyor::Surveyor(Layout const& layout, eDateOrder wanted)
    : mTimes(layout.time, layout.time.order), mOtherTimes(layout.time, eDateOrder::kMonthFirst), mWanted(wanted) {
  mSurvey.layout = layout;
}

bool Surveyor::take(Row const& row, kit::Instant& time) {
  bool hasTime = mTimes.read(row, time);
  Note(mTracks[0], hasTime, time, row);
  bool hasAnyTime = hasTime;
  if (mSurvey.layout.isDateOrderGuessed) {
    RowTime const other = TakeOtherOrder(row, hasTime, time);
    hasAnyTime = hasTime || other.isThere;
    if (mWanted == eDateOrder::kMonthFirst) {
      hasTime = other.isThere;
      time = other.time;
    }
  }
  if (hasAnyTime) {
    TakeCells(row);
  }
  return hasTime;
}

void Surveyor::addColumns(std::vector<std::string> const& names) {
  for (std::size_t i = mSurvey.layout.columns.size(); i < names.size(); ++i) {
    mSurvey.layout.columns.push_back(mSurvey.layout.columnOf(names[i], i, std::string()));
  }
}

Survey Surveyor::survey() const {
  Survey survey = mSurvey;
  RequireNamedColumns(survey.layout);
  CountGaps(survey);
  ChooseDateOrder(survey);
  bool const isOther = survey.layout.isDateOrderGuessed && survey.layout.time.order == eDateOrder::kMonthFirst;
  TimeTrack const& track = mTracks[isOther ? 1 : 0];
  survey.rows = track.good;
  survey.skipped = track.bad;
  survey.firstSkippedLine = track.firstBadLine;
  if (track.good == 0 || !AreFew(track.bad, track.good)) {
    throw kit::Failure(
        std::to_string(track.bad) + " of " + std::to_string(track.good + track.bad) + " rows tell no time",
        track.firstBadOffset, track.bad == 0 ? -1 : track.firstBadLine);
  }
  bool hasSamples = false;
  for (std::size_t i = 0; i != survey.columns.size() && !hasSamples; ++i) {
    hasSamples = survey.hasSamples(i);
  }
  if (!hasSamples) {
    throw kit::Failure("no column but that of the time holds a value");
  }
  survey.isOrdered = track.isOrdered;
  survey.first = track.first;
  survey.last = track.last;
  survey.neededDigits = track.digits;
  unsigned const within = DigitsWithin(track.last.seconds - track.first.seconds);
  survey.digits = std::clamp(std::min(track.digits, within), 1U, 9U);
  return survey;
}

/// The layout begins with the day first.
Surveyor::RowTime Surveyor::TakeOtherOrder(Row const& row, bool hasTime, kit::Instant const& time) {
  TimeForm const& form = mSurvey.layout.time;
  RowTime other{};
  other.isThere = mOtherTimes.read(row, other.time);
  Note(mTracks[1], other.isThere, other.time, row);
  mDiffer = mDiffer || hasTime != other.isThere || (hasTime && !(time == other.time));
  mHasHalves = mHasHalves || HasHalfOfDay(row.cell(form.column).text) || HasHalfOfDay(row.cell(form.clockColumn).text);
  mHasSlashes = mHasSlashes || row.cell(form.column).text.find('/') != std::string_view::npos;
  return other;
}

void Surveyor::TakeCells(Row const& row) {
  if (mSurvey.columns.size() < row.cells.size()) {
    // Gaps of the rows before are made up for in the end.
    mSurvey.columns.resize(row.cells.size());
  }
  ++mRows;
  TimeForm const& form = mSurvey.layout.time;
  char const mark = mSurvey.layout.dialect.decimalMark;
  ColumnSurvey* const columns = mSurvey.columns.data();
  Cell const* const cells = row.cells.data();
  std::size_t const count = row.cells.size();
  for (std::size_t i = 0; i != count; ++i) {
    // Times never come to be usual.
    if (TellsNothingNew(cells[i], columns[i])) {
      ++columns[i].numbers;
    } else if (!form.isTimeColumn(i)) {
      TakeCell(cells[i], mark, columns[i]);
    }
  }
}

/// Those of each column, and what stands behind the last one.
void Surveyor::CountGaps(Survey& survey) const {
  std::size_t const count = survey.layout.columns.size();
  for (std::size_t i = count; i < survey.columns.size(); ++i) {
    survey.surplus += survey.columns[i].numbers + survey.columns[i].texts;
  }
  survey.columns.resize(count);
  for (ColumnSurvey& column : survey.columns) {
    column.gaps = mRows - column.numbers - column.texts;
  }
}

/// The order in which more dates exist. If that is none, the day stands first; but the month does between slashes if
/// the times of day have AM and PM, or if only so no row is earlier than the one before.
void Surveyor::ChooseDateOrder(Survey& survey) const {
  Layout& layout = survey.layout;
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
  survey.dateOrder = (isDayFirst ? "day before month: " : "month before day: ") + reason;
}

}  // namespace senmark_series
