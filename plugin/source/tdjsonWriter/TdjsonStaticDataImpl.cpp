#include "TdjsonStaticDataImpl.h"

#include <utility>

#include "SK_NumberAnalysis.h"

namespace SK_PLUGIN {

TdjsonStaticDataImpl::TdjsonStaticDataImpl(std::string displayName, std::string matchName)
    : mDisplayName(escapeHandling(std::move(displayName))), mMatchName(std::move(matchName)) {}

std::string const& TdjsonStaticDataImpl::GetDisplayName() const {
  return mDisplayName;
}

std::string const& TdjsonStaticDataImpl::GetMatchName() const {
  return mMatchName;
}

}  // namespace SK_PLUGIN
