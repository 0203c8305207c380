/// The tables that the library hands to a module: how a module makes the objects of the writer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "senmark/SK_ErrorCode.h"

namespace SK_PLUGIN {

using ns_sensor::eErrorCode;

/// Fills in an error record; `result` is the address of an `SK_PluginResult`.
using SetErrorProc = void (*)(void* result, eErrorCode code, long long offset, long long line);

/// Makes one object for the conversion `key`, any address that stands for one run of a converter.
///
/// version     of the interface that the module was compiled for: 1.
/// matchName   ASCII letters and digits, no digit first, unique in the file; not looked at here, a file with
///             another one is refused when it is read. displayName: for people.
/// outNode     receives a pointer to the `_v1` interface of the family, with one reference taken in advance
///             (see ISharedObject.h); after a failure it keeps what it held, so test the record first.
/// errResultP  address of an `SK_PluginResult`. Null stops the process.
/// Errors:     in this order: 2027 no place for the result, 2029 version too high, 2030 version 0; then 2005 no root
///             under `key` and 2028 a root without a time base, both of dynamic nodes; 1034 no memory, 1023 a null
///             text.
struct TDJSONWriter_API {
  std::uint64_t mReserved;
  /// path          of the output file, which `writeVersionToFile` creates. Kept as it is.
  /// setErrorProc  how failures are reported from now on, in the whole process; it must not throw. Null: as
  ///               `Static_SetPluginErrorObj` does it.
  /// outExisted    receives 1 if a root lives under `key`, which is then given, whatever the path; else 0.
  /// Errors:       also 2027 for no place for `outExisted`, 1505 for a path that is null or empty.
  void (*Static_CreateRoot)(void* key, char const* path, SetErrorProc setErrorProc, void** outRoot,
                            unsigned char* outExisted, unsigned version, void* errResultP);
  void (*Static_CreateGroup)(void* key, void** outGroup, char const* matchName, char const* displayName,
                             unsigned version, void* errResultP);
  void (*Static_CreateDynamicDataNumArr)(void* key, void** outNode, unsigned version, void* errResultP);
  void (*Static_CreateDynamicDataNum)(void* key, void** outNode, unsigned version, void* errResultP);
  void (*Static_CreateDynamicDataString)(void* key, void** outNode, unsigned version, void* errResultP);
  void (*Static_CreateStaticDataNum)(void* key, void** outNode, char const* matchName, char const* displayName,
                                     double value, unsigned version, void* errResultP);
  void (*Static_CreateStaticDataNumArr)(void* key, void** outNode, char const* matchName, char const* displayName,
                                        unsigned version, void* errResultP);
  void (*Static_CreateStaticDataString)(void* key, void** outNode, char const* matchName, char const* displayName,
                                        char const* value, unsigned version, void* errResultP);
  void (*Static_CreateStaticDataBool)(void* key, void** outNode, char const* matchName, char const* displayName,
                                      unsigned char value, unsigned version, void* errResultP);
};
static_assert(sizeof(TDJSONWriter_API) == 80);
static_assert(offsetof(TDJSONWriter_API, Static_CreateRoot) == 8);
static_assert(offsetof(TDJSONWriter_API, Static_CreateGroup) == 16);
static_assert(offsetof(TDJSONWriter_API, Static_CreateDynamicDataNumArr) == 24);
static_assert(offsetof(TDJSONWriter_API, Static_CreateDynamicDataNum) == 32);
static_assert(offsetof(TDJSONWriter_API, Static_CreateDynamicDataString) == 40);
static_assert(offsetof(TDJSONWriter_API, Static_CreateStaticDataNum) == 48);
static_assert(offsetof(TDJSONWriter_API, Static_CreateStaticDataNumArr) == 56);
static_assert(offsetof(TDJSONWriter_API, Static_CreateStaticDataString) == 64);
static_assert(offsetof(TDJSONWriter_API, Static_CreateStaticDataBool) == 72);

struct HandleException_API {
  std::uint64_t mReserved;
  /// Fills in the record `result`; null stops the process. Good as `setErrorProc` of `Static_CreateRoot`.
  void (*Static_SetPluginErrorObj)(void* result, eErrorCode code, long long offset, long long line);
};
static_assert(sizeof(HandleException_API) == 16);
static_assert(offsetof(HandleException_API, Static_SetPluginErrorObj) == 8);

struct HandleMemory_API {
  std::uint64_t mReserved;
  /// Ends the conversion `key`: the library lets go of its root. What the module still holds of that conversion
  /// lives on but reaches no file any more (error 2005). To be called once a conversion is over, however it went;
  /// for a root whose output is that of a session the library does so itself when the session has ended.
  void (*Static_RemoveConverterFromMap)(void* key, void* errResultP);
};
static_assert(sizeof(HandleMemory_API) == 16);
static_assert(offsetof(HandleMemory_API, Static_RemoveConverterFromMap) == 8);

/// Lives as long as the library is in use.
struct HostAPI {
  std::uint32_t mSize;     ///< 32, the bytes of this record
  std::uint32_t mVersion;  ///< 1
  TDJSONWriter_API* mTdjsonWriterAPI;
  HandleException_API* mHandleExceptionAPI;
  HandleMemory_API* mHandleMemoryAPI;
};
static_assert(sizeof(HostAPI) == 32);
static_assert(offsetof(HostAPI, mVersion) == 4);
static_assert(offsetof(HostAPI, mTdjsonWriterAPI) == 8);
static_assert(offsetof(HostAPI, mHandleExceptionAPI) == 16);
static_assert(offsetof(HostAPI, mHandleMemoryAPI) == 24);

}  // namespace SK_PLUGIN
