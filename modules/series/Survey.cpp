#include "Survey.h"

#include "JsonLines.h"
#include "Surveyor.h"

namespace senmark_series {

namespace {

/// False if the bytes turn out to be no UTF-8.
bool SurveyRows(kit::Input const& input, Layout const& layout, Surveyor& surveyor) {
  TextBuffer text(input, layout.encoding);
  std::unique_ptr<RowReader> const reader = MakeRowReader(text, layout);
  Row row;
  kit::Instant time;
  while (reader->next(row)) {
    if (row.line >= layout.firstDataLine) {
      surveyor.take(row, time);
    }
  }
  if (layout.isEncodingGuessed && !reader->isUtf8()) {
    return false;
  }
  if (layout.isJsonLines) {
    surveyor.addColumns(static_cast<JsonLines const&>(*reader).names());
  }
  return true;
}

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
  if (SurveyRows(input, layout, surveyor)) {
    return surveyor.survey();
  }
  Layout changed = layout;
  changed.encoding = eEncoding::kWindows1252;
  changed.isEncodingGuessed = false;
  Surveyor again(changed);
  SurveyRows(input, changed, again);
  return again.survey();
}

}  // namespace senmark_series
