/// A static node that is true or false.
#pragma once

#include <string>

#include "ITdjsonStaticDataBool_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonStaticDataImpl.h"

namespace SK_PLUGIN {

class TdjsonStaticDataBoolImpl : public virtual ITdjsonStaticDataBool_I,
                                 public virtual TdjsonStaticDataImpl,
                                 public virtual SharedObjectImpl {
 public:
  TdjsonStaticDataBoolImpl(void* key, std::string displayName, std::string matchName, bool value);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kBooleanValue; }

  virtual bool GetDataValue() const;

 private:
  bool mDataValue;
  [[maybe_unused]] void* mConverterKey;
};

}  // namespace SK_PLUGIN
