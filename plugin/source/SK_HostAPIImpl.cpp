#include "SK_HostAPIImpl.h"

#include "SK_Assert.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {

namespace {

/// A null record is a mistake in the module's code, which no record could tell it.
void AssertRecord(void const* record, char const* expression, char const* function, unsigned line) {
  if (record == nullptr) {
    SK_NAMESPACE_INT::SK_AssertFailed(expression, function, "plugin/source/SK_HostAPIImpl", line);
  }
}

void CheckRequest(void* const* out, unsigned version, unsigned knownVersion) {
  if (out == nullptr) {
    ThrowWriterError(kNoPlaceForResult);
  }
  if (version > knownVersion) {
    ThrowWriterError(kVersionTooHigh);
  }
  if (version != 1) {
    ThrowWriterError(kVersionUnknown);
  }
}

/// Hands an object to a module, with a reference in advance that outlives the caller's own.
template <typename Interface, typename Impl>
void Lend(std::shared_ptr<Impl> const& object, void** out) {
  object->GetISharedObject_I()->AcquireInternal();
  *out = static_cast<Interface*>(object.get());
}

/// One creation for a module: the checks, then the object that `make` gives.
template <typename Interface, typename Make>
void CreateForModule(char const* function, unsigned line, void** out, unsigned version, void* errResultP, Make make) {
  AssertRecord(errResultP, "errResultP != 0", function, line);
  RunAtWriterBorder(errResultP, [&] {
    CheckRequest(out, version, Interface::GetInterfaceVersion());
    Lend<Interface>(MakeSharedPointer(make()), out);
  });
}

}  // namespace

void GetTDJSONWriterAPI(TDJSONWriter_API* api) {
  if (api == nullptr) {
    return;
  }
  api->Static_CreateRoot = Static_CreateRoot;
  api->Static_CreateGroup = Static_CreateGroup;
  api->Static_CreateDynamicDataNumArr = Static_CreateDynamicDataNumArr;
  api->Static_CreateDynamicDataNum = Static_CreateDynamicDataNum;
  api->Static_CreateDynamicDataString = Static_CreateDynamicDataString;
  api->Static_CreateStaticDataNum = Static_CreateStaticDataNum;
  api->Static_CreateStaticDataNumArr = Static_CreateStaticDataNumArr;
  api->Static_CreateStaticDataString = Static_CreateStaticDataString;
  api->Static_CreateStaticDataBool = Static_CreateStaticDataBool;
}

void GetHandleExceptionAPI(HandleException_API* api) {
  if (api != nullptr) {
    api->Static_SetPluginErrorObj = Static_SetPluginErrorObj;
  }
}

void GetHandleMemoryAPI(HandleMemory_API* api) {
  if (api != nullptr) {
    api->Static_RemoveConverterFromMap = Static_RemoveConverterFromMap;
  }
}

void Static_CreateRoot(void* key, char const* path, SetErrorProc setErrorProc, void** outRoot,
                       unsigned char* outExisted, unsigned version, void* errResultP) {
  AssertRecord(errResultP, "errResultP != 0", "Static_CreateRoot", __LINE__);
  RunAtWriterBorder(errResultP, [&] {
    CheckRequest(outRoot, version, ITdjsonRoot_v1::GetInterfaceVersion());
    if (outExisted == nullptr) {
      ThrowWriterError(kNoPlaceForResult);
    }
    gSetWriterErrorObjectProc = setErrorProc;
    *outExisted = 1;
    std::shared_ptr<TdjsonRootImpl> root = TdjsonRootImpl::GetRoot(key);
    if (!root) {
      root = MakeSharedPointer(new TdjsonRootImpl(key, path));
      TdjsonRootImpl::RegisterInstance(key, root);
      *outExisted = 0;
    }
    Lend<ITdjsonRoot_v1>(root, outRoot);
  });
}

void Static_CreateGroup(void* key, void** outGroup, char const* matchName, char const* displayName, unsigned version,
                        void* errResultP) {
  CreateForModule<ITdjsonGroup_v1>("Static_CreateGroup", __LINE__, outGroup, version, errResultP, [&] {
    return new TdjsonGroupImpl(key, RequireText(displayName), RequireText(matchName));
  });
}

void Static_CreateDynamicDataNumArr(void* key, void** outNode, unsigned version, void* errResultP) {
  CreateForModule<ITdjsonDynamicDataNumArr_v1>("Static_CreateDynamicDataNumArr", __LINE__, outNode, version, errResultP,
                                               [&] { return new TdjsonDynamicDataNumArrImpl(key); });
}

void Static_CreateDynamicDataNum(void* key, void** outNode, unsigned version, void* errResultP) {
  CreateForModule<ITdjsonDynamicDataNum_v1>("Static_CreateDynamicDataNum", __LINE__, outNode, version, errResultP,
                                            [&] { return new TdjsonDynamicDataNumImpl(key); });
}

void Static_CreateDynamicDataString(void* key, void** outNode, unsigned version, void* errResultP) {
  CreateForModule<ITdjsonDynamicDataString_v1>("Static_CreateDynamicDataString", __LINE__, outNode, version, errResultP,
                                               [&] { return new TdjsonDynamicDataStringImpl(key); });
}

void Static_CreateStaticDataNum(void* key, void** outNode, char const* matchName, char const* displayName, double value,
                                unsigned version, void* errResultP) {
  CreateForModule<ITdjsonStaticDataNum_v1>("Static_CreateStaticDataNum", __LINE__, outNode, version, errResultP, [&] {
    return new TdjsonStaticDataNumImpl(key, RequireText(displayName), RequireText(matchName), value);
  });
}

void Static_CreateStaticDataNumArr(void* key, void** outNode, char const* matchName, char const* displayName,
                                   unsigned version, void* errResultP) {
  CreateForModule<ITdjsonStaticDataNumArr_v1>(
      "Static_CreateStaticDataNumArr", __LINE__, outNode, version, errResultP,
      [&] { return new TdjsonStaticDataNumArrImpl(key, RequireText(displayName), RequireText(matchName)); });
}

void Static_CreateStaticDataString(void* key, void** outNode, char const* matchName, char const* displayName,
                                   char const* value, unsigned version, void* errResultP) {
  CreateForModule<ITdjsonStaticDataString_v1>(
      "Static_CreateStaticDataString", __LINE__, outNode, version, errResultP, [&] {
        return new TdjsonStaticDataStringImpl(key, RequireText(displayName), RequireText(matchName),
                                              RequireText(value));
      });
}

void Static_CreateStaticDataBool(void* key, void** outNode, char const* matchName, char const* displayName,
                                 unsigned char value, unsigned version, void* errResultP) {
  CreateForModule<ITdjsonStaticDataBool_v1>("Static_CreateStaticDataBool", __LINE__, outNode, version, errResultP, [&] {
    return new TdjsonStaticDataBoolImpl(key, RequireText(displayName), RequireText(matchName), value != 0);
  });
}

void Static_SetPluginErrorObj(void* result, eErrorCode code, long long offset, long long line) {
  AssertRecord(result, "result != 0", "Static_SetPluginErrorObj", __LINE__);
  auto* const record = static_cast<SK_PluginResult*>(result);
  record->mErrorCode = code;
  record->mFileOffset = offset;
  record->mFileLineNo = line;
}

void Static_RemoveConverterFromMap(void* key, void* errResultP) {
  AssertRecord(errResultP, "errResultP != 0", "Static_RemoveConverterFromMap", __LINE__);
  TdjsonRootImpl::RemoveInstance(key);
}

void RemoveLeftRoots(std::string const& outputPath) {
  TdjsonRootImpl::RemoveInstancesOf(outputPath);
}

}  // namespace SK_PLUGIN
