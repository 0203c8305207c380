#include "SK_ClientTable.h"
#include "SK_Error.h"
#include "SK_HostAPI.h"
#include "SK_Ladder.h"
#include "SK_SupportedFormats.h"
#include "senmark/Senmark.h"

using SK_NAMESPACE_INT::gClientProcs;
using SK_NAMESPACE_INT::gLastException;
using SK_NAMESPACE_INT::InitializeClientProcs;
using SK_NAMESPACE_INT::RunAtBorder;

void CreateSenmark_1(ns_sensor::ISenmark** manager, char const* pluginFolder, char const* wantedModules,
                     char const* locale, void* clientErrorObject, void* clientProcs, void** hostAPI) {
  RunAtBorder(clientErrorObject, [&] {
    InitializeClientProcs(clientProcs);
    ns_sensor::ISenmark::CreateSenmark(manager, pluginFolder, wantedModules, locale);
    *hostAPI = SK_NAMESPACE_INT::GetHostAPI();
  });
}

void DestroySenmark_1(ns_sensor::ISenmark** manager, void* clientErrorObject) {
  RunAtBorder(clientErrorObject, [&] { ns_sensor::ISenmark::DestroySenmark(manager); });
}

void GetLastException_1(void* clientObject,
                        void (*proc)(void* clientObject, std::int32_t code, char const* message, std::int64_t offset,
                                     std::int64_t line),
                        bool clear) {
  proc(clientObject, gLastException.GetErrorCode(), gLastException.GetLocalizedErrMsg(), gLastException.GetFileOffset(),
       gLastException.GetFileLineNo());
  if (clear) {
    gLastException = ns_sensor::SK_Exception();
  }
}

void GetSupportedFormats_1(void* clientObject, void* clientErrorObject, void* clientProcs) {
  RunAtBorder(clientErrorObject, [&] {
    InitializeClientProcs(clientProcs);
    std::vector<ns_sensor::SK_SupportedFormats> formats;
    ns_sensor::ISenmark::GetSupportedFormats(&formats);
    for (ns_sensor::SK_SupportedFormats const& format : formats) {
      gClientProcs->supportedFormat(clientObject, format.extension.c_str(), format.description.c_str());
    }
  });
}

void GetLocalizedErrorMsg_1(char const* literal, char const* value1, char const* value2, char const* value3,
                            char const* value4, void* clientObject) {
  auto const text = [](char const* value) { return std::string(value == nullptr ? "" : value); };
  std::string const message =
      SK_NAMESPACE_INT::SubstituteErrorMessage(literal, text(value1), text(value2), text(value3), text(value4));
  gClientProcs->string(clientObject, message.c_str(), message.size());
}
