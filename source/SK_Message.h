/// Every message of the library, once and whole.
///
/// A literal is a key, "=", and the English text; only the text is ever shown. The marks ^1 to ^4 are
/// replaced by values. The wording, with its misspellings and double blanks, is what hosts see and
/// compare: it is fixed. Some keys stand for several texts; each throw site uses its own text.
#pragma once

// clang-format off
namespace SK_Message {

inline constexpr char kBadCodePoint[] = "$$$/SKError/BadCodePoint=Bad UTF-32 - surrogate code point";
inline constexpr char kBadUTF16Low[] = "$$$/SKError/BadUTF16Low=Bad UTF-16 - leading low surrogate";
inline constexpr char kBadUTF16Missing[] = "$$$/SKError/BadUTF16Missing=Bad UTF-16 - missing low surrogate";
inline constexpr char kBadUTF[] = "$$$/SKError/BadUTF=Bad UTF-32 - out of range.";
inline constexpr char kBadUnicode[] = "$$$/SKError/BadUnicode=Incomplete Unicode at end of string";
inline constexpr char kEmptyDataPathString[] = "$$$/SKError/EmptyDataPathString=Empty SK_DataPath string.";
inline constexpr char kInvalidPointer[] = "$$$/SKError/InvalidPointer=Invalid pointer to ^1.";
inline constexpr char kZeroScaleValue[] = "$$$/SKError/InvalidSKTime/ZeroScaleValue=scale value cannot be zero for parameter ^1.";
inline constexpr char kInvalidFilePath[] = "$$$/SKError/InvalidFilePath=Input file path is NULL.";
inline constexpr char kFilePathTooLarge[] = "$$$/SKError/FilePathTooLarge=Input file path length is greater than the supported file path length.";
inline constexpr char kFileNotExist[] = "$$$/SKError/FileNotExist=File not exist at input path:^1.";
inline constexpr char kNotAFile[] = "$$$/SKError/File_IO/NotAFile=^1, path exists but is not a file.";
inline constexpr char kCorruptFile[] = "$$$/SKError/FileMapper/CorruptFile=Unable to calculate size of input file:^1, probably file is corrupt";
inline constexpr char kOperationFailed[] = "$$$/SKError/Failure1=^1, failure.";
inline constexpr char kSystemCallFailed[] = "$$$/SKError/Failure=^1, ^2 failure.";
inline constexpr char kFailureOpeningFile[] = "$$$/SKError/FileMapper/FailureOpeningFile=Unable to open input file:^1.";
inline constexpr char kCannotCreateFile[] = "$$$/SKError/File_IO/CreateFile=^1, Cannot create file.";
inline constexpr char kCannotCloseFile[] = "$$$/SKError/File_IO/CloseFile=^1, Cannot close file.";
inline constexpr char kInvalidSeekMode[] = "$$$/SKError/File_IO/SeekFileMode=^1, Invalid Seek mode.";
inline constexpr char kLengthFailed[] = "$$$/SKError/File_IO/Length=^1, failure.";
inline constexpr char kReadRequestTooLarge[] = "$$$/SKError/File_IO/ReadFile/LargeRequest=^1, request too large.";
inline constexpr char kFilePermission[] = "$$$/SKError/File_IO/FilePermission=^1, file permission error";
inline constexpr char kTempDirNotFound[] = "$$$/SKError/TempFileHandler/TempDirNotFound=Unable to find directory for temporary file.";
inline constexpr char kSwapDataNoTempPath[] = "$$$/SKError/File_IO/SwapData=^1, Cannot create temp file path.";
inline constexpr char kTempFileOpen[] = "$$$/SKError/File_IO/TempFileOpen=^1, Unable to open temporary file.";
inline constexpr char kFailureOpeningTempFile[] = "$$$/SKError/TempFileHandler/FailureOpeningTempFile=Unable to open temporary file.";
inline constexpr char kNotAFolder[] = "$$$/SKError/File_IO/OpenFolder=^1,  path is not a folder.";
inline constexpr char kAssertionFailure[] = "$$$/SKError/AssertionFailure=Assertion failure:^1.";
inline constexpr char kCannotCreateParserObject[] = "$$$/SKError/CannotCreateParserObject=Unable to create TDJSON parser object.";
inline constexpr char kClientAPIsNotSet[] = "$$$/SKError/ClientAPIsNotSet=Client APIs not set.";
inline constexpr char kFetchDynamicSampleFailure[] = "$$$/SKError/FetchDynamicSampleFailure=Unable to fetch dynamic samples for SampleId:^1.";
inline constexpr char kFailureFileMapping[] = "$$$/SKError/FileMapper/FailureFileMapping=Unable to read file in memory.";
inline constexpr char kRenameTargetExists[] = "$$$/SKError/File_IO/Rename=^1, New path does not exists.";
inline constexpr char kInvalidInputTime[] = "$$$/SKError/SKUtils/InvalidInputTime=^1 : invalid left or right time string.";
inline constexpr char kFailureWritingTempFile[] = "$$$/SKError/TempFileHandler/FailureWritingTempFile=Unable to write in temporary file.";
inline constexpr char kRenameFailed[] = "$$$/SKError/File_IO/Rename=^1, Rename failure.";
inline constexpr char kFileFormatNotSupported[] = "$$$/SKError/FileFormatNotSupported=File Format Not Supported.";
inline constexpr char kNoFileOpened[] = "$$$/SKError/NoFileOpened=No file is opened by Senmark.";
inline constexpr char kInvalidFileHandler[] = "$$$/SKError/InvalidFileHandler=File handler is not created by this Senmark instance.";
inline constexpr char kMissingRequiredProperty[] = "$$$/SKError/TDJSONParser/MissingRequiredProperty=Unable to find mandatory property:^1.";
inline constexpr char kMissingRequiredPropertyAtPath[] = "$$$/SKError/TDJSONParser/MissingRequiredPropertyAtPath=Unable to find mandatory property:^1 at ^2.";
inline constexpr char kInvalidTopLevelProperty[] = "$$$/SKError/TDJSONParser/InvalidTopLevelProperty=Invalid top level property. ^1 not defined as a top level property in TDJSON schema version ^2.";
inline constexpr char kDependentPropertyNotFound[] = "$$$/SKError/TDJSONParser/DependentPropertyNotFound=^1 must be present before ^2 in TDJSON file.";
inline constexpr char kInvalidInfo[] = "$$$/SKError/TDJSONParser/InvalidInfo=^1 can be present if and only if ^2 is set to ^3.";
inline constexpr char kFoundUnrecognisedKey[] = "$$$/SKError/TDJSONParser/FoundUnrecognisedKey=Invalid TDJSON key : ^1.";
inline constexpr char kInvalidJSON[] = "$$$/SKError/TDJSONParser/InvalidJSON=Parsing error:^1, Invalid JSON.";
inline constexpr char kInvalidJSONObject[] = "$$$/SKError/TDJSONParser/InvalidJSONObject=Parsing error:^1, Invalid JSON Object.";
inline constexpr char kInvalidKeyMissingQuotes[] = "$$$/SKError/TDJSONParser/InvalidKeyMissingQuotes=Unable to find enclosing quotes for Tdjson key.";
inline constexpr char kInvalidPropertyMissingColon[] = "$$$/SKError/TDJSONParser/InvalidPropertyMissingColon=Unable to find Colon(:) in between key and value for property:^1.";
inline constexpr char kInvalidPropertyMissingCommaOrClosingBracket[] = "$$$/SKError/TDJSONParser/InvalidPropertyMissingCommaOrClosingBracket=Unable to find Comma or Closing bracket after property:^1.";
inline constexpr char kInvalidPropertyType[] = "$$$/SKError/TDJSONParser/InvalidPropertyType=Invalid ^1 type, expected type:^2.";
inline constexpr char kInvalidPropertyValueMissingQuotes[] = "$$$/SKError/TDJSONParser/InvalidPropertyValueMissingQuotes=Unable to find enclosing quotes for property value:^1.";
inline constexpr char kExponentTooBig[] = "$$$/SKError/TDJSONParser/MIssingExponent=Number too big to be stored in double.";
inline constexpr char kMissingExponent[] = "$$$/SKError/TDJSONParser/MissingExponent=Miss exponent in number";
inline constexpr char kMissingFractionPart[] = "$$$/SKError/TDJSONParser/MissingFractionPart=Missing fraction part in number";
inline constexpr char kMissingRequiredProperties[] = "$$$/SKError/TDJSONParser/MissingRequiredProperties=Unable to find mandatory properties : ^1.";
inline constexpr char kNumberTooBig[] = "$$$/SKError/TDJSONParser/NumberTooBig=Number too big to be stored in double.";
inline constexpr char kOpeningBracketNotFound[] = "$$$/SKError/TDJSONParser/OpeningBracketNotFound=Unable to find TDJSON opening '{'.";
inline constexpr char kTooDeepNesting[] = "$$$/SKError/TDJSONParser/TooDeepNesting=SK does not support TDJSON dataGroup with nesting more than ^1";
inline constexpr char kIntermediateNodeNotGroupNode[] = "$$$/SKError/InvalidSKDataPath/IntermediateNodeNotGroupNode=Node at path item:^1 is not of type dataGroup. All intermediate nodes must be of type dataGroup.";
inline constexpr char kInvalidIndex[] = "$$$/SKError/InvalidSKDataPath/InvalidIndex=Invalid node index, ^1 child nodes present for node at path item :^2. Input index : ^3.";
inline constexpr char kInvalidNodeType[] = "$$$/SKError/InvalidSKDataPath/InvalidNodeType=^1 not found at input path, Found node type: ^2.";
inline constexpr char kLastNodeNotGroupNode[] = "$$$/SKError/InvalidSKDataPath/LastNodeNotGroupNode=Leaf node is not a group node.";
inline constexpr char kMatchNameNotFound[] = "$$$/SKError/InvalidSKDataPath/MatchNameNotFound=No node found with match name : ^1.";
inline constexpr char kMatchNameNotMatching[] = "$$$/SKError/InvalidSKDataPath/MatchNameNotMatching=^1:Match name found for child Node at index ^2 for path item ^3,Input match name:^4.";
inline constexpr char kMissingBothIndexAndMatchName[] = "$$$/SKError/InvalidSKDataPath/MissingBothIndexAndMatchName=Either index or match name must be present, both are missing at path item ^1.";
inline constexpr char kMissingOpeningOrClosingBracket[] = "$$$/SKError/InvalidSKDataPath/MissingOpeningOrClosingBracket=Missing ^1 at or after index :^2.";
inline constexpr char kMissingRootInfo[] = "$$$/SKError/InvalidSKDataPath/MissingRootInfo=Missing SK_DataPath ROOT_INDEX or ROOT_MATCHNAME. Path must start with ROOT_INDEX or ROOT_MATCHNAME";
inline constexpr char kSampleMemoryNotAvailable[] = "$$$/SKError/DynamicSample/MemoryNotAvailable=Unable to allocate memory for ^1.";
inline constexpr char kMemoryNotAvailable[] = "$$$/SKError/MemoryNotAvailable=Unable to allocate memory.";
inline constexpr char kUnknownExceptionCaught[] = "$$$/SKError/UnknownExceptionCaught=Unknown exception occurred.";
inline constexpr char kDiskFull[] = "$$$/SKErrorFile_IO/Write/Failure=^1, Disk Full.";
inline constexpr char kSampleIdNotFound[] = "$$$/SKError/SampleData/SampleIdNotFound=Data Outline does not contain any dynamic node for sample id : ^1.";
inline constexpr char kInvalidSampleSetInfo[] = "$$$/SKError/SampleData/InvalidSampleSetInfo=Invalid  dynamic node info in data outline for sample set:^1.Calculated sample set size is out of file offset range.";
inline constexpr char kDuplicateSampleId[] = "$$$/SKError/TDJSONParser/DynamicSample/DuplicateSampleId=Duplicate sample id found. Sample Id:^1 is assigned to more than one dynamic node in data outline.";
inline constexpr char kSamplesNotFound[] = "$$$/SKError/SampleData/SamplesNotFound=No dynamic sample data present for sample id : ^1.";
inline constexpr char kInvalidSampleSetData[] = "$$$/SKError/TDJSONParser/DynamicSample/InvalidSampleSetData=Invalid sample set data for sample id:^1. Either information in dataOutline is incorrect or sample set data is malformed.";
inline constexpr char kInvalidPaddedStringLength[] = "$$$/SKError/TDJSONParser/InvalidPaddedStringLength=Padded string length cannot be greater than max length.";
inline constexpr char kInvalidNumberArrayInvalidArrayCount[] = "$$$/SKError/SampleData/InvalidNumberArrayInvalidArrayCount=Number array does not contains enough elements at ^1.";
inline constexpr char kInvalidSample[] = "$$$/SKError/SampleData/InvalidSample=Invalid sample:^1";
inline constexpr char kInvalidSampleTime[] = "$$$/SKError/SampleData/InvalidSampleTime=Invalid sample time:^1";
inline constexpr char kInvalidTimeValueFor[] = "$$$/SKError/SampleData/InvalidSampleTime=Invalid time value for :^1.";
inline constexpr char kInvalidTimeValueForSampleId[] = "$$$/SKError/SampleData/InvalidSampleTime=Invalid time value for sample id:^1.";
inline constexpr char kInvalidSampleValue[] = "$$$/SKError/SampleData/InvalidSampleValue=Invalid sample value:^1";
inline constexpr char kDuplicateMatchName[] = "$$$/SKError/TDJSONParser/DuplicateMatchName=Duplicate MatchName:^1 at ^2. MatchName must be unique for every node in \"dataOutline\".";
inline constexpr char kNonSuppportedFrameRate[] = "$$$/SKError/TDJSONParser/NonSuppportedFrameRate=Only 29.97 and 59.94 drop frame rate supported.";
inline constexpr char kInvalidMatchName[] = "$$$/SKError/TDJSONParser/InvalidMatchName=Invalid ^1 at ^2. Not following TDJSON guidelines.";
inline constexpr char kInvalidArrayItem[] = "$$$/SKError/TDJSONParser/DynamicSample/InvalidArrayItem=Invalid array item at index ^1 for property ^2, expected type : ^3.";
inline constexpr char kInvalidPropertyTypeInSampleSet[] = "$$$/SKError/TDJSONParser/DynamicSample/InvalidPropertyType=Unable to find ^1, Invalid ^2 property, expected type : ^3 in dynamic set with sample id:^4.";
inline constexpr char kInvalidPropertyTypeAtPath[] = "$$$/SKError/TDJSONParser/InvalidPropertyTypeAtPath=Invalid ^1 type, expected type:^2 at ^3.";
inline constexpr char kTopPropertyNotTimeInfo[] = "$$$/SKError/TDJSONParser/InvalidDynamicDataInfo/TopPropertyNotTimeInfo=First property of ^1 must be ^2, found ^3.";
inline constexpr char kInvalidPropertyValueAtPath[] = "$$$/SKError/TDJSONParser/InvalidPropertyValueAtPath=Invalid value for ^1 at ^2, expected:^3.";
inline constexpr char kBothTSAndFNMissing[] = "$$$/SKError/TDJSONParser/InvalidSyncInfo/BothTSAndFNMissing=Invalid ^1, one of ^2 or ^3 must be present at ^4.";
inline constexpr char kBothTSAndFNPPresent[] = "$$$/SKError/TDJSONParser/InvalidSyncInfo/BothTSAndFNPPresent=Invalid ^1, only one of ^2 or ^3 can be present at ^4.";
inline constexpr char kEmptyArray[] = "$$$/SKError/TDJSONParser/EmptyArray=Invalid ^1, expected atleast 1 array item, found 0.";
inline constexpr char kEmptyArrayAtPath[] = "$$$/SKError/TDJSONParser/EmptyArrayAtPath=Invalid ^1, expected atleast 1 array item, found 0 at ^2.";
inline constexpr char kWriterFailure[] = "$$$/SKError/WriterFailure=Writer failure.";
inline constexpr char kDynamicNodeNotPresent[] = "$$$/SKError/TDJSONParser/DynamicSample/DynamicNodeNotPresent=No dynamic data node is present in data outline with sample id:^1.";
inline constexpr char kEmptyFile[] = "$$$/SKError/FileMapper/EmptyFile=Empty Input file.";
inline constexpr char kCopyFailed[] = "$$$/SKError/File_IO/=^1, fails.";
inline constexpr char kWriteRequestTooLarge[] = "$$$/SKError/File_IO/Write/LargeRequest=^1, request too large.";
inline constexpr char kWriteFailed[] = "$$$/SKErrorFile_IO/Write/Failure=^1,WriteFile failure.";
inline constexpr char kNoStreamCreated[] = "$$$/SKError/NoStreamCreated=No stream created by Senmark.";
inline constexpr char kInvalidStream[] = "$$$/SKError/InvalidStream=TDJSON Stream is not created by this Senmark instance.";
inline constexpr char kDirectoryDoesNotExists[] = "$$$/SKError/DirectoryDoesNotExists=TDJSON output directory does not exists.";
inline constexpr char kLoadModule[] = "$$$/SKError/LoadModule=Failed to load module.";
inline constexpr char kModuleLoadingFailed[] = "$$$/SKError/SKPlugin/ModuleLoadingFailed=Can't load module.";
inline constexpr char kPluginLoadFailure[] = "$$$/SKError/SKPlugin/PluginLoadFailure=Plugin ^1 not loaded.";
inline constexpr char kPluginNotLoaded[] = "$$$/SKError/SKPlugin/PluginNotLoaded=Plugin not loaded.";
inline constexpr char kPluginInitializeFailed[] = "$$$/SKError/SKPlugin/PluginInitializeFailed=Initialization of plugin with id ^1 failed.";
inline constexpr char kMandatoryPropertyNotPresent[] = "$$$/SKError/SKPlugin/MandatoryPropertyNotPresent=Mandatory property not present.";
inline constexpr char kManifestParseFailed[] = "$$$/SKError/SKPlugin/ManifestParseFailed=Manifest Parsing Failed.";
inline constexpr char kInvalidManifestPropertyType[] = "$$$/SKError/SKPlugin/InvalidPropertyType=Invalid : ^1 type, expected type : ^2.";
inline constexpr char kManifestSchemaViolation[] = "$$$/SKError/SKPlugin/SchemaViolation=Schema violation of Property: ^1.";
inline constexpr char kConversionFailure[] = "$$$/SKError/ConversionFailure=File Cannot be converted.";
inline constexpr char kPluginConversionFailed[] = "$$$/SKError/SKPlugin/Converter=Conversion to TDJSON using converter ^1 with id ^2 failed.";
inline constexpr char kConverterFailure[] = "$$$/SKError/ConverterFailure=Internal converter failure";
inline constexpr char kIntialzeSessionFailed[] = "$$$/SKError/SKPlugin/IntialzeSessionFailed=Initialize Session Failed of converter ^1 with id ^2.";
inline constexpr char kPluginCheckFileFormatFailed[] = "$$$/SKError/SKPlugin/CheckFileFormat=Error in Plugin Check File Format of converter ^1 with id ^2.";
inline constexpr char kTerminatePluginFailed[] = "$$$/SKError/SKPlugin/TerminatePluginFailed=Terminate of Plugin with id ^1 failed";

}  // namespace SK_Message
// clang-format on
