#include "senmark/ISenmark.h"

#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_Ladder.h"
#include "SK_SupportedFormats.h"
#include "SenmarkImpl.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::RunInside;
using SK_NAMESPACE_INT::ThrowInvalidPointer;

void ISenmark::CreateSenmark(ISenmark** manager, char const* pluginFolder, char const* wantedModules,
                             char const* locale) {
  RunInside([&] {
    if (manager == nullptr) {
      ThrowInvalidPointer("ISenmark");
    }
    *manager = SenmarkImpl::Initialize(pluginFolder, wantedModules, locale);
  });
}

void ISenmark::DestroySenmark(ISenmark** manager) {
  RunInside([&] {
    if (manager == nullptr || *manager == nullptr) {
      ThrowInvalidPointer("ISenmark");
    }
    SenmarkImpl::Terminate();
    *manager = nullptr;
  });
}

void ISenmark::GetSupportedFormats(std::vector<SK_SupportedFormats>* formats) {
  RunInside([&] {
    if (formats == nullptr) {
      ThrowInvalidPointer("SK_SupportedFormatList");
    }
    formats->clear();
    for (auto const& [extension, description] : *SK_ConverterRegistry::getInstance()->getConvertersInfo()) {
      formats->push_back({extension, description});
    }
  });
}

}  // namespace ns_sensor
