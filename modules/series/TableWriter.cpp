#include "TableWriter.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Foretelling.h"
#include "NumberText.h"
#include "RowTimes.h"
#include "Surveyor.h"

namespace senmark_series {

namespace {

/// Few enough to notice soon what is not as foretold, many enough for the look to cost nothing.
constexpr std::size_t kRowsBetweenLooks = 4096;

constexpr std::size_t kLongestTextEver = 10000;
constexpr std::size_t kShortestLimit = 256;
constexpr std::uint64_t kPaddedTexts = std::uint64_t{512} << 20;

struct Target {
  std::size_t column;
  kit::NumberStream* numbers = nullptr;
  kit::TextStream* texts = nullptr;
  std::size_t longest = 0;  ///< of a text
};

/// Cuts between two characters.
std::string_view CutTo(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) {
    return text;
  }
  std::size_t end = longest;
  while (end != 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
    --end;
  }
  return text.substr(0, end);
}

/// Decimals that suffice for all cells leave each number as it is, however many they are, so that only the sidecar's
/// make a difference.
unsigned DecimalsOf(Column const& column) {
  return column.decimals.value_or(kMostDecimals);
}

Target MakeTarget(Survey const& survey, std::size_t index, kit::Group& group) {
  Column const& column = survey.layout.columns[index];
  kit::StreamFormat format;
  format.unit = column.unit;
  format.order = survey.isOrdered ? kit::eOrder::kAsGiven : kit::eOrder::kSorted;
  Target target;
  target.column = index;
  if (survey.kindOf(index) == eColumnKind::kNumber) {
    format.decimals = DecimalsOf(column);
    target.numbers = &group.numberStream(column.name, format);
  } else {
    format.holds = true;
    format.marksEvents = true;
    target.texts = &group.textStream(column.name, format);
    target.longest = LongestText(survey.columns[index]);
  }
  return target;
}

void AddCell(Target const& target, kit::Moment const& time, Cell const& cell, char decimalMark) {
  if (target.numbers != nullptr) {
    if (cell.plain.isThere()) {
      target.numbers->add(time, DecimalOf(cell));
    } else if (std::optional<double> const value = ToNumber(cell.text, decimalMark)) {
      target.numbers->add(time, *value);
    }
  } else if (!cell.text.empty()) {
    target.texts->add(time, CutTo(cell.text, target.longest));
  }
}

void AddRow(std::vector<Target> const& targets, kit::Instant const& time, Row const& row, char decimalMark,
            kit::Output const& output) {
  try {
    kit::Moment const moment = output.moment(time);
    std::size_t const width = row.cells.size();
    for (Target const& target : targets) {
      // They are in the order of their columns.
      if (target.column >= width) {
        break;
      }
      AddCell(target, moment, row.cells[target.column], decimalMark);
    }
  } catch (kit::Failure const& failure) {
    throw failure.at(row.offset, row.line);
  }
}

void WriteColumns(kit::Input const& input, Survey const& survey, std::vector<Target> const& targets,
                  kit::Output const& output) {
  Layout const& layout = survey.layout;
  TextBuffer text(input, layout.encoding, false);
  std::unique_ptr<RowReader> const reader = MakeRowReader(text, layout);
  RowTimes times(layout.time, layout.time.order);
  Row row;
  kit::Instant time;
  while (reader->next(row)) {
    if (row.line >= layout.firstDataLine && times.read(row, time)) {
      AddRow(targets, time, row, layout.dialect.decimalMark, output);
    }
  }
}

/// The same, with what all rows tell; none as soon as that is not what was foretold.
std::optional<Survey> SurveyColumns(kit::Input const& input, Layout const& layout, Survey const& foretold,
                                    std::vector<Target> const& targets, kit::Output const& output) {
  TextBuffer text(input, layout.encoding, layout.isEncodingGuessed);
  std::unique_ptr<RowReader> const reader = MakeRowReader(text, layout);
  Surveyor surveyor(layout, foretold.layout.time.order);
  Row row;
  kit::Instant time;
  for (std::size_t untilLook = kRowsBetweenLooks; reader->next(row);) {
    if (row.line < layout.firstDataLine) {
      continue;
    }
    if (surveyor.take(row, time)) {
      AddRow(targets, time, row, layout.dialect.decimalMark, output);
    }
    if (--untilLook == 0) {
      untilLook = kRowsBetweenLooks;
      if (!reader->isUtf8() || !MayComeTrue(foretold, surveyor.survey())) {
        return std::nullopt;
      }
    }
  }
  Survey found = surveyor.survey();
  return reader->isUtf8() && HasComeTrue(foretold, found) ? std::optional<Survey>(std::move(found)) : std::nullopt;
}

void Finish(std::vector<Target> const& targets) {
  for (Target const& target : targets) {
    kit::Stream& stream = target.numbers != nullptr ? static_cast<kit::Stream&>(*target.numbers) : *target.texts;
    stream.finish();
  }
}

void Begin(Survey const& survey, kit::Output& output) {
  output.setTimeBase(kit::TimeBase::gmt(survey.digits));
  output.setCreator("senmark series");
}

std::string TimeColumns(Survey const& survey) {
  TimeForm const& form = survey.layout.time;
  std::string text = survey.layout.columns[form.column].source;
  if (form.clockColumn != TimeForm::kNoColumn) {
    text += ", " + survey.layout.columns[form.clockColumn].source;
  }
  return text;
}

void WriteImport(Survey const& survey, kit::Output& output) {
  kit::NumberFormat const whole{{}, 0, false};
  kit::Group& import = output.top().group("import");
  Layout const& layout = survey.layout;
  import.text("delimiter", layout.isJsonLines ? "JSON lines" : NameOfDelimiter(layout.dialect.delimiter));
  import.text("encoding", NameOf(layout.encoding));
  import.text("time column", TimeColumns(survey));
  import.text("time form", NameOf(layout.time));
  if (!survey.dateOrder.empty()) {
    import.text("date order", survey.dateOrder);
  }
  if (layout.time.countsFromStart()) {
    import.text("time start", "times count from the start of the recording, which stands as 1970-01-01T00:00:00Z");
  }
  import.number("rows", static_cast<double>(survey.rows), whole);
  import.number("skipped rows", static_cast<double>(survey.skipped), whole);
}

}  // namespace

std::size_t LongestText(ColumnSurvey const& column) {
  std::uint64_t const share = kPaddedTexts / std::max<std::uint64_t>(column.texts + column.numbers, 1);
  return std::clamp<std::uint64_t>(share, kShortestLimit, kLongestTextEver);
}

void WriteTable(kit::Input const& input, Survey const& survey, kit::Output& output) {
  Begin(survey, output);
  std::vector<Target> targets;
  auto const write = [&] {
    WriteColumns(input, survey, targets, output);
    Finish(targets);
    targets.clear();
  };
  for (std::size_t i = 0; i != survey.layout.columns.size(); ++i) {
    if (!survey.hasSamples(i)) {
      continue;
    }
    targets.push_back(MakeTarget(survey, i, output.top()));
    if (targets.size() == kStreamsAtOnce) {
      write();
    }
  }
  if (!targets.empty()) {
    write();
  }
  WriteImport(survey, output);
}

bool WriteForetoldTable(kit::Input const& input, Layout const& layout, Survey const& foretold, kit::Output& output) {
  Begin(foretold, output);
  std::vector<Target> targets;
  for (std::size_t i = 0; i != layout.columns.size(); ++i) {
    if (foretold.hasSamples(i)) {
      targets.push_back(MakeTarget(foretold, i, output.top()));
    }
  }
  std::optional<Survey> const found = SurveyColumns(input, layout, foretold, targets, output);
  if (!found) {
    return false;
  }
  Finish(targets);
  WriteImport(*found, output);
  return true;
}

}  // namespace senmark_series
