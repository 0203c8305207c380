#include "SK_NumberPropertyRules.h"

#include <algorithm>
#include <limits>
#include <new>

#include "SK_NumberAnalysis.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

using ns_sensor::SK_NumberMinMax;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberRange;

namespace {

constexpr unsigned long long kAutomaticDigits = std::numeric_limits<unsigned long long>::max();

/// How many of the two bounds are marks. Infinities and a NaN are ordinary bounds.
int CountMarks(SK_NumberMinMax const& pair) {
  constexpr SK_NumberMinMax kMarks;
  return (pair.min == kMarks.min ? 1 : 0) + (pair.max == kMarks.max ? 1 : 0);
}

bool IsAutomatic(SK_NumberMinMax const& pair, eErrorCode halfMarked) {
  int const marks = CountMarks(pair);
  if (marks == 1) {
    ThrowWriterError(halfMarked);
  }
  return marks == 2;
}

void AgreeWithEarlierRanges(bool automatic, bool isFirst, bool& allAutomatic, eErrorCode mixed) {
  if (automatic ? !isFirst && !allAutomatic : allAutomatic) {
    ThrowWriterError(mixed);
  }
  allAutomatic = automatic;
}

}  // namespace

bool StoreNumberPattern(SK_NumberPattern& pattern, unsigned long long digitsInteger, unsigned long long digitsDecimal,
                        unsigned char isSigned) {
  pattern.digitsInteger = digitsInteger;
  pattern.digitsDecimal = digitsDecimal;
  pattern.isSigned = isSigned != 0;
  bool const automatic = digitsInteger == kAutomaticDigits;
  if (automatic != (digitsDecimal == kAutomaticDigits)) {
    ThrowWriterError(kHalfAutomaticPattern);
  }
  if (automatic) {
    pattern.digitsInteger = 0;
    pattern.digitsDecimal = 0;
  }
  return automatic;
}

void WidenNumberPattern(SK_NumberPattern& pattern, bool automatic, double const& value) {
  WidenNumberPattern(pattern, automatic, value, SK_WriterNumberText(value).View());
}

void WidenNumberPattern(SK_NumberPattern& pattern, bool automatic, double const& value, std::string_view text) {
  if (automatic) {
    unsigned long long digitsInteger = pattern.digitsInteger;
    unsigned long long digitsDecimal = pattern.digitsDecimal;
    calcNumberPatternForText(text, digitsInteger, digitsDecimal);
    pattern.digitsInteger = digitsInteger;
    pattern.digitsDecimal = digitsDecimal;
  }
  if (!pattern.isSigned) {
    unsigned char isSigned = 0;
    calcSign(value, isSigned);
    pattern.isSigned = isSigned != 0;
  }
}

void StorePatternOfValue(SK_NumberPattern& pattern, unsigned long long digitsInteger, unsigned long long digitsDecimal,
                         unsigned char isSigned, double const& value, std::string_view text) {
  bool const automatic = StoreNumberPattern(pattern, digitsInteger, digitsDecimal, isSigned);
  WidenNumberPattern(pattern, automatic, value, text);
}

SK_NumberRange MakeNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax) {
  SK_NumberRange range;
  range.occurring.min = occurringMin;
  range.occurring.max = occurringMax;
  range.legal.min = legalMin;
  range.legal.max = legalMax;
  return range;
}

bool IsOccurringAutomatic(SK_NumberMinMax const& occurring) {
  return IsAutomatic(occurring, kMixedOccurringRange);
}

bool IsLegalAutomatic(SK_NumberMinMax const& legal) {
  return IsAutomatic(legal, kMixedLegalRange);
}

void FillRangeOfValue(SK_NumberRange& range, double const& value) {
  if (IsOccurringAutomatic(range.occurring)) {
    calcOccurringRangeForSet(value, range.occurring.min, range.occurring.max);
  }
  if (IsLegalAutomatic(range.legal)) {
    range.legal = range.occurring;
  }
}

void AppendNumberRange(std::vector<SK_NumberRange>& ranges, SK_NumberRange const& range, bool& occurringAutomatic,
                       bool& legalAutomatic) {
  bool const isFirst = ranges.empty();
  ranges.push_back(range);
  AgreeWithEarlierRanges(IsOccurringAutomatic(range.occurring), isFirst, occurringAutomatic, kMixedOccurringRange);
  AgreeWithEarlierRanges(IsLegalAutomatic(range.legal), isFirst, legalAutomatic, kMixedLegalRange);
}

void WidenOccurringRanges(std::vector<SK_NumberRange>& ranges, std::vector<double> const& elements) {
  std::size_t const count = std::min(ranges.size(), elements.size());
  for (std::size_t at = 0; at < count; ++at) {
    SK_NumberMinMax& occurring = ranges[at].occurring;
    calcOccurringRangeForSet(elements[at], occurring.min, occurring.max);
  }
}

void CopyOccurringToLegal(std::vector<SK_NumberRange>& ranges) {
  for (SK_NumberRange& range : ranges) {
    range.legal = range.occurring;
  }
}

void AppendNumberedNames(std::vector<std::string>& names, std::string const& displayName, std::uint64_t count) {
  // A count beyond all memory fails at once, not after having taken all there is.
  if (count > names.max_size() - names.size()) {
    throw std::bad_alloc();
  }
  names.reserve(names.size() + count);
  for (std::uint64_t at = 0; at < count; ++at) {
    names.push_back(displayName + "_" + std::to_string(at));
  }
}

}  // namespace SK_PLUGIN
