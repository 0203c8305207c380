#include "SK_HostAPIImpl.h"

#include "SK_Assert.h"
#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {

void Static_SetPluginErrorObj(void* result, eErrorCode code, long long offset, long long line) {
  if (result == nullptr) {
    SK_NAMESPACE_INT::SK_AssertFailed("result != 0", "Static_SetPluginErrorObj", "plugin/source/SK_HostAPIImpl",
                                      __LINE__);
  }
  auto* const record = static_cast<SK_PluginResult*>(result);
  record->mErrorCode = code;
  record->mFileOffset = offset;
  record->mFileLineNo = line;
}

}  // namespace SK_PLUGIN
