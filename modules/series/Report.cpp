#include "Report.h"

#include <cstdio>

#include "TableWriter.h"

namespace senmark_series {

namespace {

constexpr std::size_t kLongestQuotation = 40;
static_assert(kLongestQuotation < ColumnSurvey::kKept, "what is longer shows that it is");

std::string Quoted(std::string const& text) {
  std::string quoted = kit::Utf8(text.substr(0, kLongestQuotation));
  for (char& character : quoted) {
    character = static_cast<unsigned char>(character) < 0x20 ? ' ' : character;
  }
  return '"' + quoted + (text.size() > kLongestQuotation ? "...\"" : "\"");
}

std::string TimeText(kit::Instant const& instant) {
  kit::CivilTime const time = kit::MakeCivilTime(instant);
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d", time.year, time.month, time.day, time.hour,
                time.minute, time.second);
  return std::string(text) + 'Z';
}

std::string Count(std::uint64_t count, char const* one, char const* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

void ReportColumn(Survey const& survey, std::size_t index, kit::Explanation& explanation) {
  Column const& column = survey.layout.columns[index];
  ColumnSurvey const& counts = survey.columns[index];
  std::string text = "column " + std::to_string(index + 1) + ' ' + Quoted(column.name);
  text += column.unit.empty() ? "" : " in " + Quoted(column.unit);
  if (survey.layout.time.isTimeColumn(index)) {
    explanation.add(text + ": time");
    return;
  }
  if (!survey.hasSamples(index)) {
    explanation.add(text + (column.isSkipped ? ": skipped by the sidecar" : ": left out, it has no values"));
    return;
  }
  bool const isNumber = survey.kindOf(index) == eColumnKind::kNumber;
  text += isNumber ? ": number with " + Count(survey.decimalsOf(index), "decimal", "decimals") : std::string(": text");
  text += ", first " + Quoted(counts.firstValue);
  text += ", " + Count(isNumber ? counts.gaps : counts.gaps - counts.gapWords, "gap", "gaps");
  if (isNumber && counts.texts != 0) {
    text += ", and " + Count(counts.texts, "text", "texts") + " that become gaps, first " + Quoted(counts.firstText);
  }
  if (!isNumber && counts.numbers != 0) {
    text += ", " + Count(counts.numbers, "number", "numbers") + " among them";
  }
  if (isNumber && counts.tiny != 0) {
    text += ", " + Count(counts.tiny, "value", "values") + " nearer to 0 than 0.0001, which become 0 or 0.0001";
  }
  if (!isNumber && counts.longest > LongestText(counts)) {
    text += ", cut to " + std::to_string(LongestText(counts)) + " bytes";
  }
  explanation.add(text);
}

}  // namespace

void ReportLayout(Layout const& layout, kit::Explanation& explanation) {
  std::string text =
      layout.isJsonLines ? "lines of JSON objects" : "a table, delimiter: " + NameOfDelimiter(layout.dialect.delimiter);
  if (!layout.isJsonLines && layout.dialect.decimalMark == ',') {
    text += ", decimal comma";
  }
  text += std::string(", ") + NameOf(layout.encoding);
  explanation.add(text);
  if (!layout.isJsonLines) {
    text = layout.headerLine == 0 ? std::string("no header") : "header in line " + std::to_string(layout.headerLine);
    text += layout.isHeaderComment ? ", a comment" : "";
    text += layout.unitsLine == 0 ? "" : ", units in line " + std::to_string(layout.unitsLine);
    explanation.add(text + ", data from line " + std::to_string(layout.firstDataLine) + " on");
  }
  text = "time: column " + Quoted(layout.columns[layout.time.column].source);
  if (layout.time.clockColumn != TimeForm::kNoColumn) {
    text += " and column " + Quoted(layout.columns[layout.time.clockColumn].source);
  }
  explanation.add(text + ", " + NameOf(layout.time));
}

void ReportSurvey(Survey const& survey, kit::Explanation& explanation) {
  ReportLayout(survey.layout, explanation);
  if (!survey.dateOrder.empty()) {
    explanation.add("dates: " + survey.dateOrder);
  }
  std::string text = Count(survey.rows, "row", "rows") + " from " + TimeText(survey.first) + " to " +
                     TimeText(survey.last) + (survey.isOrdered ? ", in order" : ", not in order: they are sorted");
  explanation.add(text);
  if (survey.layout.time.countsFromStart()) {
    explanation.add("times count from the start, which stands as 1970-01-01T00:00:00Z");
  }
  if (survey.digits < survey.neededDigits) {
    explanation.add("times have " + Count(survey.neededDigits, "digit", "digits") + " behind the second, " +
                    std::to_string(survey.digits) + " are kept: more cannot be told apart over so long a time");
  }
  if (survey.skipped != 0) {
    explanation.add("skipped: " + Count(survey.skipped, "row", "rows") + " without a time, first in line " +
                    std::to_string(survey.firstSkippedLine));
  }
  if (survey.surplus != 0) {
    explanation.add("left out: " + Count(survey.surplus, "cell", "cells") + " behind the last column");
  }
  for (std::size_t i = 0; i != survey.layout.columns.size(); ++i) {
    ReportColumn(survey, i, explanation);
  }
}

}  // namespace senmark_series
