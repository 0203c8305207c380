#include "TdjsonStaticDataBoolImpl.h"

#include <utility>

namespace SK_PLUGIN {

TdjsonStaticDataBoolImpl::TdjsonStaticDataBoolImpl(void* key, std::string displayName, std::string matchName,
                                                   bool value)
    : TdjsonStaticDataImpl(std::move(displayName), std::move(matchName)), mDataValue(value), mConverterKey(key) {}

bool TdjsonStaticDataBoolImpl::GetDataValue() const {
  return mDataValue;
}

}  // namespace SK_PLUGIN
