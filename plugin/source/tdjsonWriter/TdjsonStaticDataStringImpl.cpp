#include "TdjsonStaticDataStringImpl.h"

#include <utility>

#include "SK_NumberAnalysis.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

using ns_sensor::SK_StringProperties;

TdjsonStaticDataStringImpl::TdjsonStaticDataStringImpl(void* key, std::string displayName, std::string matchName,
                                                       std::string value)
    : TdjsonStaticDataImpl(std::move(displayName), std::move(matchName)),
      mDataValue(escapeHandling(std::move(value))),
      mConverterKey(key) {}

void TdjsonStaticDataStringImpl::setStringProperties(unsigned long long /*maxLen*/,
                                                     unsigned long long /*maxDigitsInStrLength*/,
                                                     unsigned char eventMarker, void* result) {
  RunAtWriterBorder(result, [&] {
    unsigned long long length = 0;
    unsigned long long digits = 0;
    calcPaddedStringProperties(mDataValue, length, digits);
    mStringProperties.maxLen = length;
    mStringProperties.maxDigitsInStrLength = digits;
    mStringProperties.eventMarkerB = eventMarker != 0;
  });
}

SK_StringProperties const& TdjsonStaticDataStringImpl::GetStringProperties() const {
  return mStringProperties;
}

std::string const& TdjsonStaticDataStringImpl::GetDataValue() const {
  return mDataValue;
}

void TdjsonStaticDataStringImpl::SetStringProperties(SK_StringProperties const& properties) {
  ThrowOnFailure([&](void* result) {
    setStringProperties(properties.maxLen, properties.maxDigitsInStrLength, properties.eventMarkerB ? 1 : 0, result);
  });
}

}  // namespace SK_PLUGIN
