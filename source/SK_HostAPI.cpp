#include "SK_HostAPI.h"

#include "SK_ClientTable.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

void* GetHostAPI() {
  static ns_sensor::SK_HostPropertyAPI table = {PushNumberProperties, PushNumberArrayProperties, PushStringProperties};
  return &table;
}

void PushNumberProperties(void* properties, void* client) {
  auto const& number = *static_cast<ns_sensor::SK_NumberProperties const*>(properties);
  gClientProcs->property->number(client, &number.pattern.digitsInteger, &number.pattern.digitsDecimal,
                                 &number.pattern.isSigned, &number.range.occurring.min, &number.range.occurring.max,
                                 &number.range.legal.min, &number.range.legal.max);
}

void PushNumberArrayProperties(void* properties, void* client) {
  auto const& array = *static_cast<ns_sensor::SK_NumberArrayProperties const*>(properties);
  ns_sensor::SK_PropertyProcs const& procs = *gClientProcs->property;
  procs.numberArray(client, &array.pattern.digitsInteger, &array.pattern.digitsDecimal, &array.pattern.isSigned,
                    &array.arraySize, &array.isPoint);
  for (std::string const& name : array.arrayDisplayNames) {
    procs.numberArrayDisplayName(client, name.c_str(), name.size());
  }
  for (ns_sensor::SK_NumberRange const& range : array.arrayRanges) {
    procs.numberArrayRange(client, &range.occurring.min, &range.occurring.max, &range.legal.min, &range.legal.max);
  }
}

void PushStringProperties(void* properties, void* client) {
  auto const& text = *static_cast<ns_sensor::SK_StringProperties const*>(properties);
  gClientProcs->property->string(client, &text.maxLen, &text.maxDigitsInStrLength, &text.eventMarkerB);
}

}  // namespace SK_NAMESPACE_INT
