#include "SK_Ladder.h"

#include <new>

#include "SK_ClientTable.h"
#include "SK_Error.h"
#include "SK_PluginException.h"

namespace SK_NAMESPACE_INT {

namespace {

void Report(void* clientErrorObject, eErrorCode code, char const* message, long long offset, long long line) {
  // A host that gave no table still finds the error as the thread's last one.
  if (gClientProcs != nullptr && gClientProcs->error != nullptr) {
    gClientProcs->error(clientErrorObject, code, message, offset, line);
  }
}

void ReportWithoutPlace(void* clientErrorObject, eErrorCode code, char const* literal) {
  std::string const message =
      SubstituteErrorMessage(literal, std::string(), std::string(), std::string(), std::string());
  Report(clientErrorObject, code, message.c_str(), -1, -1);
}

}  // namespace

void RethrowInside() {
  try {
    throw;
  } catch (ns_sensor::SK_Exception const& e) {
    throw ns_sensor::SK_Exception(e);
  } catch (SK_PLUGIN::SK_PluginException const& e) {
    ThrowError({e.GetErrorCode(), SK_Message::kConversionFailure, -1, -1});
  } catch (std::bad_alloc const&) {
    ThrowError({ns_sensor::kNoMemory, SK_Message::kMemoryNotAvailable, -1, -1});
  } catch (...) {
    ThrowError({ns_sensor::kNoMemory, SK_Message::kUnknownExceptionCaught, -1, -1});
  }
}

void ReportAtBorder(void* clientErrorObject) noexcept {
  try {
    throw;
  } catch (ns_sensor::SK_Exception const& e) {
    Report(clientErrorObject, e.GetErrorCode(), e.GetLocalizedErrMsg(), e.GetFileOffset(), e.GetFileLineNo());
  } catch (std::bad_alloc const&) {
    ReportWithoutPlace(clientErrorObject, ns_sensor::kNoMemory, SK_Message::kMemoryNotAvailable);
  } catch (...) {
    ReportWithoutPlace(clientErrorObject, ns_sensor::kUnknownAtBorder, SK_Message::kUnknownExceptionCaught);
  }
}

}  // namespace SK_NAMESPACE_INT
