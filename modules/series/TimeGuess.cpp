#include "TimeGuess.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "Ascii.h"
#include "CellClass.h"
#include "ColumnName.h"
#include "NumberText.h"

namespace senmark_series {

namespace {

/// Lines in front of the data that are neither comments nor header may be as many as this.
constexpr std::size_t kLatestFirstRow = 64;

/// Columns with dates, and columns with times of day, that are put together to pairs.
constexpr std::size_t kMostInPairs = 16;

/// 2001-09-09 to 2100-01-01 in seconds from 1970.
constexpr std::int64_t kFirstEpochSecond = 1000000000;
constexpr std::int64_t kLastEpochSecond = 4102444800;

class Guesser {
 public:
  Guesser(SampleTable const& table, Sidecar const& sidecar) : mTable(table), mSidecar(sidecar) {
    std::size_t const rows = table.rows.size();
    mClasses.assign(table.width, std::vector<unsigned>(rows, 0));
    for (std::size_t row = 0; row != rows; ++row) {
      for (std::size_t column = 0; column != table.width; ++column) {
        mClasses[column][row] = ClassOf(table.rows[row].cell(column), table.dialect.decimalMark);
      }
    }
    while (sidecar.firstDataRow && mEarliest != rows && table.rows[mEarliest].line < *sidecar.firstDataRow) {
      ++mEarliest;
    }
    std::int64_t const behind = std::max(sidecar.headerRow.value_or(0), sidecar.unitsRow.value_or(0));
    while (mEarliest != rows && table.rows[mEarliest].line <= behind) {
      ++mEarliest;
    }
  }

  std::optional<TimeGuess> guess(std::vector<std::string>& whyNot) {
    if (!mSidecar.timeColumns.empty()) {
      return GuessChosen();
    }
    FindClocks();
    for (std::size_t column = 0; column != mTable.width; ++column) {
      TryColumn(column);
    }
    if (mBest) {
      return std::move(mBest->guess);
    }
    for (std::size_t column = 0; column != mTable.width; ++column) {
      whyNot.push_back(WhyNot(column));
    }
    return std::nullopt;
  }

 private:
  enum eTier { kMoment, kPair, kEpoch, kChangingDate, kElapsed, kConstantDate, kClock };

  struct Candidate {
    std::tuple<int, bool, std::size_t> rank;  ///< the least is best
    TimeGuess guess;
  };

  /// The first row from which on rows with one of the classes are all but few.
  std::optional<std::size_t> FirstRowOf(std::size_t column, unsigned classes) const {
    return FirstRowWhere([&](std::size_t row) { return (mClasses[column][row] & classes) != 0; });
  }
  template <typename Matches>
  std::optional<std::size_t> FirstRowWhere(Matches&& matches) const {
    std::size_t const rows = mTable.rows.size();
    std::size_t good = 0;
    for (std::size_t row = mEarliest; row != rows; ++row) {
      good += matches(row) ? 1 : 0;
    }
    for (std::size_t row = mEarliest; row != rows && row != mEarliest + kLatestFirstRow; ++row) {
      if (matches(row)) {
        if (AreFew(rows - row - good, good)) {
          return row;
        }
        --good;
      }
    }
    return std::nullopt;
  }

  Header const& HeaderOf(std::size_t firstRow) {
    auto const [entry, isNew] = mHeaders.try_emplace(firstRow);
    if (isNew) {
      entry->second = FindHeader(mTable, firstRow, mSidecar);
    }
    return entry->second;
  }
  static std::string NameOf(Header const& header, std::size_t column) {
    return column < header.names.size() ? header.names[column] : std::string();
  }

  void FindClocks() {
    for (std::size_t column = 0; column != mTable.width && mClocks.size() != kMostInPairs; ++column) {
      if (FirstRowOf(column, kAnyClock)) {
        mClocks.push_back(column);
      }
    }
  }

  void TryColumn(std::size_t column) {
    if (auto const first = FirstRowOf(column, kIsoMoment)) {
      Offer(kMoment, eTimeKind::kIso, column, *first);
    } else if (auto const dated = FirstRowOf(column, kDateMoment)) {
      Offer(kMoment, eTimeKind::kDate, column, *dated);
    }
    if (FirstRowOf(column, kPlainDate | kDigitDate)) {
      TryDate(column);
    }
    if (auto const first = FirstRowOf(column, kNumber)) {
      TryNumber(column, *first);
    }
    if (auto const first = FirstRowOf(column, kColonClock); first && ClockAscends(column, *first)) {
      Offer(kClock, eTimeKind::kClock, column, *first);
    }
  }

  void TryDate(std::size_t column) {
    for (std::size_t const clock : mDates++ < kMostInPairs ? mClocks : std::vector<std::size_t>()) {
      auto const first = FirstRowWhere([&](std::size_t row) {
        return (mClasses[column][row] & (kPlainDate | kDigitDate)) != 0 && (mClasses[clock][row] & kAnyClock) != 0;
      });
      if (clock != column && first && IsPair(column, clock, *first)) {
        std::size_t const distance = clock > column ? clock - column : column - clock;
        Offer(kPair, eTimeKind::kPair, column, *first, clock, distance);
      }
    }
    bool const isDigits = !FirstRowOf(column, kPlainDate);
    std::size_t const first = FirstRowOf(column, kPlainDate | kDigitDate).value_or(0);
    if (isDigits && !SpeaksOfDate(NameOf(HeaderOf(first), column))) {
      return;
    }
    bool const isIso = FirstRowOf(column, kIsoDate).has_value();
    std::string_view const value = mTable.rows[first].cell(column);
    bool const changes = first + 1 == mTable.rows.size() ||
                         std::any_of(mTable.rows.begin() + static_cast<std::ptrdiff_t>(first), mTable.rows.end(),
                                     [&](Row const& row) { return row.cell(column) != value; });
    Offer(changes ? kChangingDate : kConstantDate, isIso ? eTimeKind::kIso : eTimeKind::kDate, column, first);
  }

  /// Digits alone are a date or a clock only by their names, and so is 10.11.12.
  bool IsPair(std::size_t date, std::size_t clock, std::size_t first) {
    Header const& header = HeaderOf(first);
    std::string const dateName = NameOf(header, date);
    std::string const clockName = NameOf(header, clock);
    bool const isDate = (mClasses[date][first] & (kAnyClock | kDigitDate)) == 0 || SpeaksOfDate(dateName);
    bool const isClock = (mClasses[clock][first] & kColonClock) != 0 ||
                         (SpeaksOfTime(clockName) && !(SpeaksOfDate(clockName) && !SpeaksOfDate(dateName)));
    return isDate && isClock;
  }

  void TryNumber(std::size_t column, std::size_t first) {
    Header const& header = HeaderOf(first);
    NameAndUnit const name = SplitUnit(NameOf(header, column));
    std::string const unit = column < header.units.size() && !BareUnit(header.units[column]).empty()
                                 ? std::string(BareUnit(header.units[column]))
                                 : name.unit;
    std::optional<CountedTimeName> counted = CountedTimeOf(name.name, unit);
    bool const isNameless = header.names.empty() && column == 0;
    if (!counted && !isNameless) {
      return;
    }
    CountedTimeName const told = counted ? *counted : CountedTimeName();
    if (std::optional<unsigned> const digits = EpochUnit(column, first, told)) {
      bool const isSure = counted.has_value() || (Ascends(column, first) && mTable.rows.size() - first >= 2);
      if (isSure) {
        Offer(kEpoch, eTimeKind::kEpoch, column, first, TimeForm::kNoColumn, 0, *digits);
      }
    } else if (counted && !counted->isEpoch && Ascends(column, first)) {
      Offer(kElapsed, eTimeKind::kElapsed, column, first, TimeForm::kNoColumn, 0, counted->unitDigits.value_or(0));
    }
  }

  std::optional<kit::Instant> Counted(std::size_t row, std::size_t column, unsigned digits) const {
    return CountedTime(mTable.rows[row].cell(column), digits, mTable.dialect.decimalMark);
  }

  /// By the size of the numbers, unless the name tells the unit.
  std::optional<unsigned> EpochUnit(std::size_t column, std::size_t first, CountedTimeName const& name) const {
    for (unsigned const digits : {0U, 3U, 6U, 9U}) {
      if (name.unitDigits && *name.unitDigits != digits) {
        continue;
      }
      std::size_t good = 0;
      std::size_t bad = 0;
      for (std::size_t row = first; row != mTable.rows.size(); ++row) {
        std::optional<kit::Instant> const time = Counted(row, column, digits);
        // What is said to count from 1970 may begin there.
        std::int64_t const least = name.isEpoch && (name.unitDigits || digits == 0) ? 0 : kFirstEpochSecond;
        bool const isIn = time && time->seconds >= least && time->seconds <= kLastEpochSecond;
        ++(isIn ? good : bad);
      }
      if (AreFew(bad, good) && good != 0) {
        return digits;
      }
    }
    return std::nullopt;
  }

  bool Ascends(std::size_t column, std::size_t first) const {
    return AscendWhere(first, [&](std::size_t row) { return Counted(row, column, 0); });
  }
  bool ClockAscends(std::size_t column, std::size_t first) const {
    TimeForm form;
    form.kind = eTimeKind::kClock;
    form.column = column;
    return AscendWhere(first, [&](std::size_t row) { return TimeOf(mTable.rows[row], form, form.order); });
  }
  /// Never back, and not at one value.
  template <typename Time>
  bool AscendWhere(std::size_t first, Time&& timeOf) const {
    std::optional<kit::Instant> start;
    std::optional<kit::Instant> last;
    for (std::size_t row = first; row != mTable.rows.size(); ++row) {
      std::optional<kit::Instant> const time = timeOf(row);
      if (time && last && *time < *last) {
        return false;
      }
      last = time ? time : last;
      start = start ? start : time;
    }
    return start && (*start < *last || first + 1 == mTable.rows.size());
  }

  void Offer(eTier tier, eTimeKind kind, std::size_t column, std::size_t first, std::size_t clock = TimeForm::kNoColumn,
             std::size_t distance = 0, unsigned unitDigits = 0) {
    Header const& header = HeaderOf(first);
    bool const isNamed = SpeaksOfTime(NameOf(header, column));
    std::tuple<int, bool, std::size_t> const rank(tier, !isNamed, column + distance * mTable.width);
    if (mBest && !(rank < mBest->rank)) {
      return;
    }
    TimeGuess guess;
    guess.form.kind = kind;
    guess.form.column = column;
    guess.form.clockColumn = clock;
    guess.form.unitDigits = unitDigits;
    guess.firstRow = first;
    guess.header = header;
    mBest = Candidate{rank, std::move(guess)};
  }

  std::string WhyNot(std::size_t column) const {
    std::size_t numbers = 0;
    std::size_t times = 0;
    for (unsigned const classes : mClasses[column]) {
      bool const isTime = (classes & (kIsoMoment | kDateMoment | kPlainDate | kColonClock)) != 0;
      times += isTime ? 1 : 0;
      numbers += (classes & kNumber) != 0 && !isTime ? 1 : 0;
    }
    std::size_t const rows = mTable.rows.size();
    // A table that has no times begins with a header or not; its first row tells the names if it has any.
    std::string text = "column " + std::to_string(column + 1);
    std::string const name = mTable.isJsonLines ? mTable.names[column] : std::string(mTable.rows[0].cell(column));
    text += " \"" + name.substr(0, 40) + "\": ";
    if (times != 0) {
      return text + "a time in " + std::to_string(times) + " of " + std::to_string(rows) + " rows";
    }
    if (numbers * 2 > rows) {
      return text + (CountedTimeOf(SplitUnit(name).name, SplitUnit(name).unit)
                         ? "numbers that do not ascend like a time"
                         : "numbers, and its name does not say that they count time");
    }
    return text + "no times";
  }

  std::size_t ColumnOf(Sidecar::ColumnReference const& reference) {
    if (reference.number != 0) {
      if (reference.number > mTable.width) {
        throw kit::Failure("sidecar: there is no column " + std::to_string(reference.number));
      }
      return reference.number - 1;
    }
    // Any row in front of the data may be the header; comments, too.
    for (std::size_t first = 0; first <= std::min(mTable.rows.size(), kLatestFirstRow); ++first) {
      Header const& header = HeaderOf(first);
      for (std::size_t column = 0; column < std::min(header.names.size(), mTable.width); ++column) {
        if (header.names[column] == reference.name || SplitUnit(header.names[column]).name == reference.name) {
          return column;
        }
      }
    }
    throw kit::Failure("sidecar: there is no column \"" + reference.name + "\"");
  }

  /// The columns, and perhaps the form, that the sidecar names.
  std::optional<TimeGuess> GuessChosen() {
    std::size_t const column = ColumnOf(mSidecar.timeColumns[0]);
    std::size_t const clock =
        mSidecar.timeColumns.size() == 2 ? ColumnOf(mSidecar.timeColumns[1]) : TimeForm::kNoColumn;
    if (clock != TimeForm::kNoColumn) {
      OfferForm(eTimeKind::kPair, column, clock, 0);
    } else if (mSidecar.timeForm) {
      OfferForm(mSidecar.timeForm->kind, column, clock, mSidecar.timeForm->unitDigits);
    } else {
      TryColumn(column);
      // Its name is known to be that of a time.
      if (!mBest) {
        OfferForm(eTimeKind::kElapsed, column, clock, 0);
      }
    }
    if (!mBest) {
      throw kit::Failure("sidecar: the rows tell no time in the column that it names");
    }
    return std::move(mBest->guess);
  }

  void OfferForm(eTimeKind kind, std::size_t column, std::size_t clock, unsigned unitDigits) {
    TimeForm form;
    form.kind = kind;
    form.column = column;
    form.clockColumn = clock;
    form.unitDigits = unitDigits;
    form.decimalMark = mTable.dialect.decimalMark;
    auto const first = FirstRowWhere([&](std::size_t row) {
      Row const& cells = mTable.rows[row];
      return TimeOf(cells, form, eDateOrder::kDayFirst) || TimeOf(cells, form, eDateOrder::kMonthFirst);
    });
    if (first) {
      Offer(kMoment, kind, column, *first, clock, 0, unitDigits);
    }
  }

  SampleTable const& mTable;
  Sidecar const& mSidecar;
  std::vector<std::vector<unsigned>> mClasses;  ///< by column and row
  std::size_t mEarliest = 0;                    ///< row that may hold data
  std::map<std::size_t, Header> mHeaders;       ///< by the first row of data
  std::vector<std::size_t> mClocks;             ///< columns that may be the second one of a pair
  std::size_t mDates = 0;                       ///< columns that were tried as the first one
  std::optional<Candidate> mBest;
};

}  // namespace

std::optional<TimeGuess> GuessTime(SampleTable const& table, Sidecar const& sidecar, std::vector<std::string>& whyNot) {
  std::optional<TimeGuess> guess = Guesser(table, sidecar).guess(whyNot);
  if (guess) {
    guess->form.decimalMark = table.dialect.decimalMark;
    guess->form.zoneMinutes = sidecar.zoneMinutes.value_or(0);
    guess->form.order = sidecar.dateOrder.value_or(eDateOrder::kDayFirst);
  }
  return guess;
}

}  // namespace senmark_series
