#include "SK_Localizer.h"

#include <mutex>

#include "SK_Assert.h"
#include "SK_UnicodeUtils.h"

namespace SK_NAMESPACE_INT {

namespace {

// Lets one thread set up the instance while others wait for it.
std::mutex gSetUpMutex;

}  // namespace

std::atomic<SK_Localizer*> SK_Localizer::mLocalizer{nullptr};
std::atomic<bool> SK_Localizer::mIsIntialized{false};

bool SK_Localizer::Initialize(std::string const& locale) {
  if (!mIsIntialized) {
    std::lock_guard<std::mutex> const lock(gSetUpMutex);
    if (!mIsIntialized) {
      mLocalizer = new SK_Localizer(locale, mLocalizer);
      mIsIntialized = true;  // behind the instance, so that whoever sees the flag finds the right one
    }
  }
  CheckedInstance("Initialize");
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
  return CheckedInstance("GetInstance");
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

SK_Localizer::SK_Localizer(std::string const& locale, SK_Localizer* replaced)
    : mLocaleId(locale), mReplaced(replaced) {}

SK_Localizer* SK_Localizer::CheckedInstance(char const* function) {
  SK_Localizer* const localizer = mLocalizer;
  if (localizer == nullptr) {
    SK_AssertFailed("mLocalizer", function, "source/SK_Localizer", __LINE__);
  }
  return localizer;
}

}  // namespace SK_NAMESPACE_INT
