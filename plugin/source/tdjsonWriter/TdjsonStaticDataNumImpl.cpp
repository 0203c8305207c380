#include "TdjsonStaticDataNumImpl.h"

#include <utility>

#include "SK_NumberPropertyRules.h"
#include "SK_WriterFailure.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_NumberRange;

TdjsonStaticDataNumImpl::TdjsonStaticDataNumImpl(void* key, std::string displayName, std::string matchName,
                                                 double value)
    : TdjsonStaticDataImpl(std::move(displayName), std::move(matchName)), mDataValue(value), mConverterKey(key) {}

void TdjsonStaticDataNumImpl::setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                               unsigned char isSigned, void* result) {
  RunAtWriterBorder(result, [&] {
    StorePatternOfValue(mNumberProperties.pattern, digitsInteger, digitsDecimal, isSigned, mDataValue,
                        SK_WriterNumberText(mDataValue).View());
  });
}

void TdjsonStaticDataNumImpl::setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                                             void* result) {
  RunAtWriterBorder(result, [&] {
    mNumberProperties.range = MakeNumberRange(legalMin, legalMax, occurringMin, occurringMax);
    FillRangeOfValue(mNumberProperties.range, mDataValue);
  });
}

SK_NumberProperties const& TdjsonStaticDataNumImpl::GetNumberProperties() const {
  return mNumberProperties;
}

double TdjsonStaticDataNumImpl::GetDataValue() const {
  return mDataValue;
}

void TdjsonStaticDataNumImpl::SetNumberPattern(SK_NumberPattern const& pattern) {
  ThrowOnFailure([&](void* result) {
    setNumberPattern(pattern.digitsInteger, pattern.digitsDecimal, pattern.isSigned ? 1 : 0, result);
  });
}

void TdjsonStaticDataNumImpl::SetNumberRange(SK_NumberRange const& range) {
  ThrowOnFailure([&](void* result) {
    setNumberRange(range.legal.min, range.legal.max, range.occurring.min, range.occurring.max, result);
  });
}

}  // namespace SK_PLUGIN
