#include "SK_Localizer.h"

#include "SK_Assert.h"
#include "SK_UnicodeUtils.h"

namespace SK_NAMESPACE_INT {

std::atomic<SK_Localizer*> SK_Localizer::mLocalizer{nullptr};
std::atomic<bool> SK_Localizer::mIsIntialized{false};

bool SK_Localizer::Initialize(std::string const& locale) {
  bool expected = false;
  if (mIsIntialized.compare_exchange_strong(expected, true)) {
    mLocalizer = new SK_Localizer(locale);
  }
  // The thread that lost the exchange may be here before the winner has stored the instance.
  while (mLocalizer.load() == nullptr) {
  }
  return true;
}

bool SK_Localizer::Terminate() {
  mIsIntialized = false;
  return true;
}

SK_Localizer* SK_Localizer::GetInstance() {
  if (!mIsIntialized) {
    Initialize(ns_sensor::SKEnglishUSCode);
  }
  SK_Localizer* const localizer = mLocalizer;
  if (localizer == nullptr) {
    SK_AssertFailed("mLocalizer", "GetInstance", "source/SK_Localizer", 0);
  }
  return localizer;
}

std::string SK_Localizer::GetLocaleId() const {
  return mLocaleId;
}

std::basic_string<unsigned short> SK_Localizer::GetLocalizedString(char const* literal) const {
  std::string text(literal);
  if (text.compare(0, 4, "$$$/") == 0) {
    std::string::size_type const equals = text.find('=');
    text = equals == std::string::npos ? std::string() : text.substr(equals + 1);
  }
  return SK_UnicodeUtils::UTF8to16(SK_UnicodeUtils::UTF8String(text.begin(), text.end()), nullptr, nullptr);
}

SK_Localizer::SK_Localizer(std::string const& locale) : mLocaleId(locale) {}

}  // namespace SK_NAMESPACE_INT
