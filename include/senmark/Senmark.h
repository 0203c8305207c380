/// The five functions that the library exports. Everything else is reached through what they give.
///
/// Order of calls: `CreateSenmark_1`, work through the manager, `DestroySenmark_1`. Creations nest by
/// count: each one needs its destruction, and all of them give the same manager. The other three may be
/// called at any time.
///
/// `SK_ClientProcs.h` tells the rules that hold for every call.
#pragma once

#include <cstdint>

#include "senmark/ISenmark.h"
#include "senmark/ISensorFileHandler.h"
#include "senmark/ITdjsonStream.h"
#include "senmark/SK_ClientProcs.h"
#include "senmark/SK_ErrorCode.h"

#if defined(SENMARK_BUILDING)
#define SENMARK_EXPORT __attribute__((visibility("default")))
#else
#define SENMARK_EXPORT
#endif

extern "C" {

/// Gives the manager, and makes it on the first call.
///
/// manager           receives the manager; owned by the library.
/// pluginFolder      folder of converter modules, or null for none. Only the first creation counts.
/// wantedModules     comma-separated names of the modules to use, or null for all.
/// locale            recorded only, like "en_US"; null counts as "en_US".
/// clientErrorObject first argument of the error proc.
/// clientProcs       an `ns_sensor::SK_ClientProcs`, kept by its address. Only the first table that the
///                   process gives counts, here or in `GetSupportedFormats_1`.
/// hostAPI           receives an `ns_sensor::SK_HostPropertyAPI*`; must not be null.
///
/// Errors: 1 null manager.
SENMARK_EXPORT void CreateSenmark_1(ns_sensor::ISenmark** manager, char const* pluginFolder, char const* wantedModules,
                                    char const* locale, void* clientErrorObject, void* clientProcs, void** hostAPI);

/// Gives back one creation and sets `*manager` to null. The last one destroys all open handlers and
/// streams.
///
/// Errors: 1 null manager, or one that is null already.
SENMARK_EXPORT void DestroySenmark_1(ns_sensor::ISenmark** manager, void* clientErrorObject);

/// Tells the last error of the calling thread, through `proc` alone; needs no manager and no table.
/// Before any error: code 0, an empty message, offset 0 and line 0.
///
/// clear true: forgets the error afterwards.
SENMARK_EXPORT void GetLastException_1(void* clientObject,
                                       void (*proc)(void* clientObject, std::int32_t code, char const* message,
                                                    std::int64_t offset, std::int64_t line),
                                       bool clear);

/// Sends the file formats that can be opened through entry 8, in the order of their extensions.
SENMARK_EXPORT void GetSupportedFormats_1(void* clientObject, void* clientErrorObject, void* clientProcs);

/// Renders a message literal with up to four values and sends the text through entry 10.
///
/// literal  plain text, or "$$$/", a key, "=" and the text, in UTF-8, with the marks ^1 to ^4.
/// value1.. replace the marks; null counts as an empty text, and so does any text that is not ASCII.
SENMARK_EXPORT void GetLocalizedErrorMsg_1(char const* literal, char const* value1, char const* value2,
                                           char const* value3, char const* value4, void* clientObject);

}  // extern "C"
