#pragma once

#include "SK_TdjsonParser.h"
#include "SK_TdjsonValidator_v2.h"

namespace SK_NAMESPACE_INT {

/// Reads format version 2: a flag tells whether there are samples, then comes the time base, then they.
class SK_TdjsonParser_v2 : public SK_TdjsonParser {
 public:
  eTDJSONVersion GetTDJSONVersion() const override { return kTdjsonVersion2; }

 protected:
  char const* ParseDynamicSamples(char const* p, char const* end) override;
  char const* ParseDynamicSamplesPresentB(char const* p, char const* end) override;
  char const* ParseDynamicDataInfo(char const* p, char const* end) override;
  char const* ParseUseTimecodeB(char const* p, char const* end) override;
  char const* ParseTimecodeInfo(char const* p, char const* end) override;
  char const* ParseUTCInfo(char const* p, char const* end) override;
  char const* ParseSyncInfo(char const* p, char const* end) override;
  SK_TdjsonValidator const& GetValidator() const override { return mValidator; }
  std::string FindMissingRequiredProperties() const override;

 private:
  /// `key`, whose value stands at `p`, needs the flag for samples before it, and set.
  void CheckSamplesFlag(char const* p, char const* key) const;
  [[noreturn]] void ThrowDependentNotFound(char const* p, char const* missing, char const* key) const;

  SK_TdjsonValidator_v2 mValidator;
  bool mDynamicSamplesPresentB = false;
};

}  // namespace SK_NAMESPACE_INT
