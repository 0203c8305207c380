/// The numbers that come with every error. They are part of the interface and never change; the gaps
/// are free and mean nothing.
#pragma once

#include <cstdint>

namespace ns_sensor {

/// Beside these, 1000 to 1999 and 2000 to 2999 come from converters and from the writer.
enum eErrorCode : std::int32_t {
  kNoError = 0,
  kInvalidArgument = 1,           ///< invalid argument: null pointer, bad Unicode, empty data path, zero time scale
  kPathIsNull = 2,                ///< file path argument is null
  kPathTooLong = 3,               ///< file path longer than supported
  kFileNotFound = 4,              ///< file or output path does not exist, or is no file
  kFileSizeUnknown = 5,           ///< size of input file cannot be found
  kCannotOpenFile = 6,            ///< cannot open file
  kCannotCreateFile = 7,          ///< cannot create file
  kCannotCloseFile = 8,           ///< cannot close file
  kCannotDeleteFile = 9,          ///< cannot delete file
  kSeekFailed = 10,               ///< seek or set-end failure
  kReadFailed = 11,               ///< read or length failure
  kNoFilePermission = 13,         ///< no permission on file
  kNoTempFolder = 14,             ///< no directory for temporary files
  kCannotMakeTempFile = 15,       ///< temporary file cannot be made
  kCannotOpenFolder = 16,         ///< cannot open folder
  kCannotCloseFolder = 17,        ///< cannot close folder
  kCannotRemoveFolder = 18,       ///< folder removal failure
  kJsonLibraryAssertion = 19,     ///< assertion in the JSON library
  kInternalFailure = 21,          ///< internal failure of a step
  kRenameFailed = 22,             ///< rename or folder-read failure
  kUnknownAtBorder = 23,          ///< unknown exception, as the exported functions report it
  kFormatNotSupported = 25,       ///< no converter takes this file
  kNoFileOpen = 26,               ///< no file is open
  kForeignHandler = 27,           ///< handler does not belong to this manager
  kPropertyMissing = 28,          ///< mandatory property missing
  kInvalidTopLevelProperty = 30,  ///< property not allowed at top level for this version
  kDependentProperty = 31,        ///< property depends on another
  kJsonSyntax = 32,               ///< JSON syntax or token error
  kPathMismatch = 33,             ///< data path does not match the outline
  kNoMemory = 34,                 ///< out of memory, and unknown exception on the internal ladder
  kUnknownSampleId = 35,          ///< sample id absent from outline
  kSampleSetOutOfRange = 36,      ///< sample set extent out of file range
  kDuplicateSampleId = 37,        ///< sample id used twice
  kNoSamples = 38,                ///< no samples for the sample id
  kMalformedSample = 39,          ///< malformed sample or sample value
  kDuplicateMatchName = 40,       ///< match name used twice
  kUnsupportedFrameRate = 41,     ///< drop-frame rate not supported
  kInvalidMatchName = 42,         ///< match name breaks the format rules
  kWrongPropertyType = 43,        ///< property has wrong JSON type
  kWrongPropertyValue = 44,       ///< property has wrong value
  kPathBracketMissing = 45,       ///< bracket missing in a data path string
  kConditionalProperty = 46,      ///< conditional property present wrongly
  kEmptyArray = 47,               ///< array must not be empty
  kWriterFailure = 48,            ///< writer failure
  kSampleSetWithoutNode = 49,     ///< sample set without dynamic node
  kEmptyFile = 54,                ///< input file is empty
  kWriteFailed = 55,              ///< write failure
  kNoStream = 56,                 ///< no stream exists
  kForeignStream = 57,            ///< stream does not belong to this manager
  kNoOutputFolder = 58,           ///< output directory missing
  kModuleNotLoaded = 1021,        ///< plug-in module not loaded
  kModuleInitFailed = 1500,       ///< plug-in initialisation failed
  kManifestUnreadable = 1503,     ///< manifest parse failure
  kManifestSchema = 1504,         ///< manifest schema violation
  kConversionFailed = 1506,       ///< conversion failed
};

}  // namespace ns_sensor
