/// The procs of the tables that the library hands to a module, and the filling in of those tables.
#pragma once

#include <string>

#include "senmark/HostAPI.h"

namespace SK_PLUGIN {

/// Each fills in one zeroed table; a null one is left alone.
void GetTDJSONWriterAPI(TDJSONWriter_API* api);
void GetHandleExceptionAPI(HandleException_API* api);
void GetHandleMemoryAPI(HandleMemory_API* api);

/// What the entries of `TDJSONWriter_API` promise. A null `errResultP` stops the process.
void Static_CreateRoot(void* key, char const* path, SetErrorProc setErrorProc, void** outRoot,
                       unsigned char* outExisted, unsigned version, void* errResultP);
void Static_CreateGroup(void* key, void** outGroup, char const* matchName, char const* displayName, unsigned version,
                        void* errResultP);
void Static_CreateDynamicDataNumArr(void* key, void** outNode, unsigned version, void* errResultP);
void Static_CreateDynamicDataNum(void* key, void** outNode, unsigned version, void* errResultP);
void Static_CreateDynamicDataString(void* key, void** outNode, unsigned version, void* errResultP);
void Static_CreateStaticDataNum(void* key, void** outNode, char const* matchName, char const* displayName, double value,
                                unsigned version, void* errResultP);
void Static_CreateStaticDataNumArr(void* key, void** outNode, char const* matchName, char const* displayName,
                                   unsigned version, void* errResultP);
void Static_CreateStaticDataString(void* key, void** outNode, char const* matchName, char const* displayName,
                                   char const* value, unsigned version, void* errResultP);
void Static_CreateStaticDataBool(void* key, void** outNode, char const* matchName, char const* displayName,
                                 unsigned char value, unsigned version, void* errResultP);

/// Fills in the error record at `result`, an `SK_PluginResult`. A null address stops the process.
void Static_SetPluginErrorObj(void* result, eErrorCode code, long long offset, long long line);

/// Lets go of the root under `key`. A null `errResultP` stops the process.
void Static_RemoveConverterFromMap(void* key, void* errResultP);

/// Lets go of what a module has left of the conversion into the file `outputPath`. The keys are addresses of the
/// module, which the next conversion may have again: it would get the root of the file that is gone.
void RemoveLeftRoots(std::string const& outputPath);

}  // namespace SK_PLUGIN
