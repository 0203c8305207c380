#include "TdjsonStaticDataNumArrImpl.h"

#include <utility>

#include "SK_NumberAnalysis.h"
#include "SK_NumberPropertyRules.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberRange;

TdjsonStaticDataNumArrImpl::TdjsonStaticDataNumArrImpl(void* key, std::string displayName, std::string matchName)
    : TdjsonStaticDataImpl(std::move(displayName), std::move(matchName)), mConverterKey(key) {}

bool TdjsonStaticDataNumArrImpl::addElement(double value, void* result) {
  return RunAtWriterBorder(result, [&] { mElements.push_back(value); });
}

void TdjsonStaticDataNumArrImpl::addDisplayName(char const* name, void* result) {
  RunAtWriterBorder(result,
                    [&] { mNumberArrayProperties.arrayDisplayNames.push_back(escapeHandling(RequireText(name))); });
}

void TdjsonStaticDataNumArrImpl::setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                                  unsigned char isSigned, void* result) {
  RunAtWriterBorder(result, [&] {
    if (StoreNumberPattern(mNumberArrayProperties.pattern, digitsInteger, digitsDecimal, isSigned)) {
      mPatternAutomatic = true;
    }
    SetPattern();
  });
}

void TdjsonStaticDataNumArrImpl::setNumberRange(double legalMin, double legalMax, double occurringMin,
                                                double occurringMax, void* result) {
  RunAtWriterBorder(result, [&] {
    AppendNumberRange(mNumberArrayProperties.arrayRanges,
                      MakeNumberRange(legalMin, legalMax, occurringMin, occurringMax), mOccurringAutomatic,
                      mLegalAutomatic);
  });
}

void TdjsonStaticDataNumArrImpl::setArrCount(unsigned long long count, void* result) {
  RunAtWriterBorder(result, [&] {
    mNumberArrayProperties.arraySize = count;
    SetRangeOccuring();
    if (mLegalAutomatic) {
      CopyOccurringToLegal(mNumberArrayProperties.arrayRanges);
    }
    if (mNumberArrayProperties.arrayDisplayNames.empty()) {
      SetDisplayNames();
    }
  });
}

void TdjsonStaticDataNumArrImpl::setIsPoint(unsigned char isPoint, void* result) {
  RunAtWriterBorder(result, [&] { mNumberArrayProperties.isPoint = isPoint != 0; });
}

SK_NumberArrayProperties const& TdjsonStaticDataNumArrImpl::GetNumArrayProperties() const {
  return mNumberArrayProperties;
}

std::vector<double> const& TdjsonStaticDataNumArrImpl::GetDataValue() const {
  return mElements;
}

void TdjsonStaticDataNumArrImpl::AddElement(double value) {
  ThrowOnFailure([&](void* result) { return addElement(value, result); });
}

void TdjsonStaticDataNumArrImpl::AddDisplayName(std::string const& name) {
  ThrowOnFailure([&](void* result) { addDisplayName(name.c_str(), result); });
}

void TdjsonStaticDataNumArrImpl::SetNumberPattern(SK_NumberPattern const& pattern) {
  ThrowOnFailure([&](void* result) {
    setNumberPattern(pattern.digitsInteger, pattern.digitsDecimal, pattern.isSigned ? 1 : 0, result);
  });
}

void TdjsonStaticDataNumArrImpl::SetNumberRange(SK_NumberRange const& range) {
  ThrowOnFailure([&](void* result) {
    setNumberRange(range.legal.min, range.legal.max, range.occurring.min, range.occurring.max, result);
  });
}

void TdjsonStaticDataNumArrImpl::SetArrCount(std::uint64_t count) {
  ThrowOnFailure([&](void* result) { setArrCount(count, result); });
}

void TdjsonStaticDataNumArrImpl::SetIsPoint(bool isPoint) {
  ThrowOnFailure([&](void* result) { setIsPoint(isPoint ? 1 : 0, result); });
}

void TdjsonStaticDataNumArrImpl::SetPattern() {
  for (double const element : mElements) {
    WidenNumberPattern(mNumberArrayProperties.pattern, mPatternAutomatic, element);
  }
}

void TdjsonStaticDataNumArrImpl::SetRangeOccuring() {
  if (mOccurringAutomatic) {
    WidenOccurringRanges(mNumberArrayProperties.arrayRanges, mElements);
  }
}

void TdjsonStaticDataNumArrImpl::SetDisplayNames() {
  AppendNumberedNames(mNumberArrayProperties.arrayDisplayNames, GetDisplayName(), mNumberArrayProperties.arraySize);
}

}  // namespace SK_PLUGIN
