/// What the nodes with numbers, static and dynamic, have in common: when a pattern or a range is to be taken
/// from the values, and how a value goes into it.
///
/// The automatic marks are the values of a default record: all ones in both digit counts, the largest double
/// as minimum with the lowest one as maximum. Failures are `SK_PluginException`s; what was passed is stored
/// before it is looked at, and stays.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SK_WriterNumberText.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// True for two marks, whose place zeroes take. 2006 for one mark.
bool StoreNumberPattern(ns_sensor::SK_NumberPattern& pattern, unsigned long long digitsInteger,
                        unsigned long long digitsDecimal, unsigned char isSigned);
/// Raises the digit counts to what `value` needs if they are automatic; its sign counts in any case.
void WidenNumberPattern(ns_sensor::SK_NumberPattern& pattern, bool automatic, double const& value);
/// The same for callers that have the text of the number at hand.
void WidenNumberPattern(ns_sensor::SK_NumberPattern& pattern, bool automatic, double const& value,
                        std::string_view text);
/// The same by the digits of such a text. Here, because it is done for every number of every sample.
inline void WidenNumberPattern(ns_sensor::SK_NumberPattern& pattern, bool automatic, double const& value,
                               SK_WriterNumberText::Digits const& digits) {
  if (automatic) {
    pattern.digitsInteger = std::max<std::uint64_t>(pattern.digitsInteger, digits.integer);
    pattern.digitsDecimal = std::max<std::uint64_t>(pattern.digitsDecimal, digits.decimal);
  }
  pattern.isSigned = pattern.isSigned || std::signbit(value);
}

/// Stores the pattern of a static number, `text` being that of its value.
void StorePatternOfValue(ns_sensor::SK_NumberPattern& pattern, unsigned long long digitsInteger,
                         unsigned long long digitsDecimal, unsigned char isSigned, double const& value,
                         std::string_view text);

/// The four bounds as the border forms pass them.
ns_sensor::SK_NumberRange MakeNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax);
/// Whether both bounds are marks. 2007 for one mark.
bool IsOccurringAutomatic(ns_sensor::SK_NumberMinMax const& occurring);
/// The same for a legal range. 2008.
bool IsLegalAutomatic(ns_sensor::SK_NumberMinMax const& legal);
/// Takes what is automatic in the range of a static number from its value.
void FillRangeOfValue(ns_sensor::SK_NumberRange& range, double const& value);
/// One element more. All ranges of an array are automatic or none is: the first one decides, and raises the
/// flag, which is never lowered. 2007 before 2008 for a mark on one side or a range of the other kind.
void AppendNumberRange(std::vector<ns_sensor::SK_NumberRange>& ranges, ns_sensor::SK_NumberRange const& range,
                       bool& occurringAutomatic, bool& legalAutomatic);
/// Each element widens the occurring range of its own place; one without a range has no place.
void WidenOccurringRanges(std::vector<ns_sensor::SK_NumberRange>& ranges, std::vector<double> const& elements);
/// What occurs is what is legal.
void CopyOccurringToLegal(std::vector<ns_sensor::SK_NumberRange>& ranges);

/// name_0, name_1, ... for an array whose elements have no names of their own.
void AppendNumberedNames(std::vector<std::string>& names, std::string const& displayName, std::uint64_t count);

}  // namespace SK_PLUGIN
