#include "SK_WriterFailure.h"

#include <new>

#include "SK_Error.h"
#include "SK_HostAPIImpl.h"
#include "SK_WriterCode.h"

namespace SK_PLUGIN {

namespace {

// What lies between the code of a failed file operation and the code that the writer reports for it.
constexpr int kFileFailureDistance = 1000;

void Report(void* result, eErrorCode code, long long offset, long long line) {
  // A module that set no procedure of its own loses no failure.
  SetErrorProc const proc = gSetWriterErrorObjectProc != nullptr ? gSetWriterErrorObjectProc : Static_SetPluginErrorObj;
  proc(result, code, offset, line);
}

}  // namespace

SetErrorProc gSetWriterErrorObjectProc = Static_SetPluginErrorObj;

void ThrowWriterError(eErrorCode code) {
  throw SK_PluginException(code, -1, -1);
}

void ThrowNoText() {
  ThrowWriterError(kWriterUnknownException);
}

void RethrowInWriter() {
  try {
    throw;
  } catch (SK_PluginException const& e) {
    throw SK_PluginException(e);
  } catch (ns_sensor::SK_Exception const& e) {
    throw SK_PluginException(static_cast<eErrorCode>(e.GetErrorCode() + kFileFailureDistance), e.GetFileOffset(),
                             e.GetFileLineNo());
  } catch (std::bad_alloc const&) {
    ThrowWriterError(kWriterNoMemory);
  } catch (...) {
    ThrowWriterError(kWriterUnknownException);
  }
}

void ReportInWriter(void* result) noexcept {
  try {
    throw;
  } catch (SK_PluginException const& e) {
    Report(result, e.GetErrorCode(), e.GetFileOffset(), e.GetFileLineNo());
  } catch (std::bad_alloc const&) {
    Report(result, kWriterNoMemory, -1, -1);
  } catch (...) {
    Report(result, kWriterUnknownException, -1, -1);
  }
}

void ThrowIfFailed(SK_PluginResult const& result) {
  if (result.mErrorCode != ns_sensor::kNoError) {
    SK_NAMESPACE_INT::ThrowError(
        {result.mErrorCode, SK_Message::kConverterFailure, result.mFileOffset, result.mFileLineNo});
  }
}

}  // namespace SK_PLUGIN
