#include "SK_Localizer.h"

#include <memory>
#include <thread>

#include "SK_Assert.h"
#include "SK_UnicodeUtils.h"

namespace SK_NAMESPACE_INT {

std::atomic<SK_Localizer*> SK_Localizer::mLocalizer{nullptr};
std::atomic<bool> SK_Localizer::mIsIntialized{false};

bool SK_Localizer::Initialize(std::string const& locale) {
  if (!mIsIntialized) {
    // Made before the exchange, so that nothing can fail between the flag and the instance.
    std::unique_ptr<SK_Localizer> created(new SK_Localizer(locale));
    bool expected = false;
    if (mIsIntialized.compare_exchange_strong(expected, true)) {
      created->mReplaced = mLocalizer;
      mLocalizer = created.release();
    }
  }
  AwaitInstance("Initialize");
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
  return AwaitInstance("GetInstance");
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

SK_Localizer::SK_Localizer(std::string const& locale) : mLocaleId(locale), mReplaced(nullptr) {}

SK_Localizer* SK_Localizer::AwaitInstance(char const* function) {
  // Another thread may have set the flag and not yet stored the instance.
  while (mLocalizer == nullptr && mIsIntialized) {
    std::this_thread::yield();
  }
  SK_Localizer* const localizer = mLocalizer;
  if (localizer == nullptr) {
    SK_AssertFailed("mLocalizer", function, "source/SK_Localizer", __LINE__);
  }
  return localizer;
}

}  // namespace SK_NAMESPACE_INT
