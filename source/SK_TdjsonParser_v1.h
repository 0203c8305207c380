#pragma once

#include "SK_TdjsonParser.h"
#include "SK_TdjsonValidator_v1.h"

namespace SK_NAMESPACE_INT {

/// Reads format version 1: time base and synchronisation stand at the top level, in any order.
class SK_TdjsonParser_v1 : public SK_TdjsonParser {
 public:
  eTDJSONVersion GetTDJSONVersion() const override { return kTdjsonVersion1; }

 protected:
  char const* ParseDynamicSamplesPresentB(char const* p, char const* end) override;
  char const* ParseDynamicDataInfo(char const* p, char const* end) override;
  char const* ParseUseTimecodeB(char const* p, char const* end) override;
  char const* ParseTimecodeInfo(char const* p, char const* end) override;
  char const* ParseUTCInfo(char const* p, char const* end) override;
  char const* ParseSyncInfo(char const* p, char const* end) override;
  SK_TdjsonValidator const& GetValidator() const override { return mValidator; }
  std::string FindMissingRequiredProperties() const override;

 private:
  [[noreturn]] void ThrowInvalidInfo(char const* p, char const* key, char const* flagValue) const;

  SK_TdjsonValidator_v1 mValidator;
};

}  // namespace SK_NAMESPACE_INT
