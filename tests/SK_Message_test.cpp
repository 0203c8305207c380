#include "SK_Message.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Literal {
  char const* name;
  char const* constant;
  char const* text;
};

void PrintTo(Literal const& row, std::ostream* out) {
  *out << row.name;
}

// What hosts see and compare. Misspellings, double blanks and uneven punctuation are wanted.
// clang-format off
Literal const kLiterals[] = {
    {"kBadCodePoint", SK_Message::kBadCodePoint, "$$$/SKError/BadCodePoint=Bad UTF-32 - surrogate code point"},
    {"kBadUTF16Low", SK_Message::kBadUTF16Low, "$$$/SKError/BadUTF16Low=Bad UTF-16 - leading low surrogate"},
    {"kBadUTF16Missing", SK_Message::kBadUTF16Missing, "$$$/SKError/BadUTF16Missing=Bad UTF-16 - missing low surrogate"},
    {"kBadUTF", SK_Message::kBadUTF, "$$$/SKError/BadUTF=Bad UTF-32 - out of range."},
    {"kBadUnicode", SK_Message::kBadUnicode, "$$$/SKError/BadUnicode=Incomplete Unicode at end of string"},
    {"kEmptyDataPathString", SK_Message::kEmptyDataPathString, "$$$/SKError/EmptyDataPathString=Empty SK_DataPath string."},
    {"kInvalidPointer", SK_Message::kInvalidPointer, "$$$/SKError/InvalidPointer=Invalid pointer to ^1."},
    {"kZeroScaleValue", SK_Message::kZeroScaleValue, "$$$/SKError/InvalidSKTime/ZeroScaleValue=scale value cannot be zero for parameter ^1."},
    {"kInvalidFilePath", SK_Message::kInvalidFilePath, "$$$/SKError/InvalidFilePath=Input file path is NULL."},
    {"kFilePathTooLarge", SK_Message::kFilePathTooLarge, "$$$/SKError/FilePathTooLarge=Input file path length is greater than the supported file path length."},
    {"kFileNotExist", SK_Message::kFileNotExist, "$$$/SKError/FileNotExist=File not exist at input path:^1."},
    {"kNotAFile", SK_Message::kNotAFile, "$$$/SKError/File_IO/NotAFile=^1, path exists but is not a file."},
    {"kCorruptFile", SK_Message::kCorruptFile, "$$$/SKError/FileMapper/CorruptFile=Unable to calculate size of input file:^1, probably file is corrupt"},
    {"kOperationFailed", SK_Message::kOperationFailed, "$$$/SKError/Failure1=^1, failure."},
    {"kSystemCallFailed", SK_Message::kSystemCallFailed, "$$$/SKError/Failure=^1, ^2 failure."},
    {"kFailureOpeningFile", SK_Message::kFailureOpeningFile, "$$$/SKError/FileMapper/FailureOpeningFile=Unable to open input file:^1."},
    {"kCannotCreateFile", SK_Message::kCannotCreateFile, "$$$/SKError/File_IO/CreateFile=^1, Cannot create file."},
    {"kCannotCloseFile", SK_Message::kCannotCloseFile, "$$$/SKError/File_IO/CloseFile=^1, Cannot close file."},
    {"kInvalidSeekMode", SK_Message::kInvalidSeekMode, "$$$/SKError/File_IO/SeekFileMode=^1, Invalid Seek mode."},
    {"kLengthFailed", SK_Message::kLengthFailed, "$$$/SKError/File_IO/Length=^1, failure."},
    {"kReadRequestTooLarge", SK_Message::kReadRequestTooLarge, "$$$/SKError/File_IO/ReadFile/LargeRequest=^1, request too large."},
    {"kFilePermission", SK_Message::kFilePermission, "$$$/SKError/File_IO/FilePermission=^1, file permission error"},
    {"kTempDirNotFound", SK_Message::kTempDirNotFound, "$$$/SKError/TempFileHandler/TempDirNotFound=Unable to find directory for temporary file."},
    {"kSwapDataNoTempPath", SK_Message::kSwapDataNoTempPath, "$$$/SKError/File_IO/SwapData=^1, Cannot create temp file path."},
    {"kTempFileOpen", SK_Message::kTempFileOpen, "$$$/SKError/File_IO/TempFileOpen=^1, Unable to open temporary file."},
    {"kFailureOpeningTempFile", SK_Message::kFailureOpeningTempFile, "$$$/SKError/TempFileHandler/FailureOpeningTempFile=Unable to open temporary file."},
    {"kNotAFolder", SK_Message::kNotAFolder, "$$$/SKError/File_IO/OpenFolder=^1,  path is not a folder."},
    {"kAssertionFailure", SK_Message::kAssertionFailure, "$$$/SKError/AssertionFailure=Assertion failure:^1."},
    {"kCannotCreateParserObject", SK_Message::kCannotCreateParserObject, "$$$/SKError/CannotCreateParserObject=Unable to create TDJSON parser object."},
    {"kClientAPIsNotSet", SK_Message::kClientAPIsNotSet, "$$$/SKError/ClientAPIsNotSet=Client APIs not set."},
    {"kFetchDynamicSampleFailure", SK_Message::kFetchDynamicSampleFailure, "$$$/SKError/FetchDynamicSampleFailure=Unable to fetch dynamic samples for SampleId:^1."},
    {"kFailureFileMapping", SK_Message::kFailureFileMapping, "$$$/SKError/FileMapper/FailureFileMapping=Unable to read file in memory."},
    {"kRenameTargetExists", SK_Message::kRenameTargetExists, "$$$/SKError/File_IO/Rename=^1, New path does not exists."},
    {"kInvalidInputTime", SK_Message::kInvalidInputTime, "$$$/SKError/SKUtils/InvalidInputTime=^1 : invalid left or right time string."},
    {"kFailureWritingTempFile", SK_Message::kFailureWritingTempFile, "$$$/SKError/TempFileHandler/FailureWritingTempFile=Unable to write in temporary file."},
    {"kRenameFailed", SK_Message::kRenameFailed, "$$$/SKError/File_IO/Rename=^1, Rename failure."},
    {"kFileFormatNotSupported", SK_Message::kFileFormatNotSupported, "$$$/SKError/FileFormatNotSupported=File Format Not Supported."},
    {"kNoFileOpened", SK_Message::kNoFileOpened, "$$$/SKError/NoFileOpened=No file is opened by Senmark."},
    {"kInvalidFileHandler", SK_Message::kInvalidFileHandler, "$$$/SKError/InvalidFileHandler=File handler is not created by this Senmark instance."},
    {"kMissingRequiredProperty", SK_Message::kMissingRequiredProperty, "$$$/SKError/TDJSONParser/MissingRequiredProperty=Unable to find mandatory property:^1."},
    {"kMissingRequiredPropertyAtPath", SK_Message::kMissingRequiredPropertyAtPath, "$$$/SKError/TDJSONParser/MissingRequiredPropertyAtPath=Unable to find mandatory property:^1 at ^2."},
    {"kInvalidTopLevelProperty", SK_Message::kInvalidTopLevelProperty, "$$$/SKError/TDJSONParser/InvalidTopLevelProperty=Invalid top level property. ^1 not defined as a top level property in TDJSON schema version ^2."},
    {"kDependentPropertyNotFound", SK_Message::kDependentPropertyNotFound, "$$$/SKError/TDJSONParser/DependentPropertyNotFound=^1 must be present before ^2 in TDJSON file."},
    {"kInvalidInfo", SK_Message::kInvalidInfo, "$$$/SKError/TDJSONParser/InvalidInfo=^1 can be present if and only if ^2 is set to ^3."},
    {"kFoundUnrecognisedKey", SK_Message::kFoundUnrecognisedKey, "$$$/SKError/TDJSONParser/FoundUnrecognisedKey=Invalid TDJSON key : ^1."},
    {"kInvalidJSON", SK_Message::kInvalidJSON, "$$$/SKError/TDJSONParser/InvalidJSON=Parsing error:^1, Invalid JSON."},
    {"kInvalidJSONObject", SK_Message::kInvalidJSONObject, "$$$/SKError/TDJSONParser/InvalidJSONObject=Parsing error:^1, Invalid JSON Object."},
    {"kInvalidKeyMissingQuotes", SK_Message::kInvalidKeyMissingQuotes, "$$$/SKError/TDJSONParser/InvalidKeyMissingQuotes=Unable to find enclosing quotes for Tdjson key."},
    {"kInvalidPropertyMissingColon", SK_Message::kInvalidPropertyMissingColon, "$$$/SKError/TDJSONParser/InvalidPropertyMissingColon=Unable to find Colon(:) in between key and value for property:^1."},
    {"kInvalidPropertyMissingCommaOrClosingBracket", SK_Message::kInvalidPropertyMissingCommaOrClosingBracket, "$$$/SKError/TDJSONParser/InvalidPropertyMissingCommaOrClosingBracket=Unable to find Comma or Closing bracket after property:^1."},
    {"kInvalidPropertyType", SK_Message::kInvalidPropertyType, "$$$/SKError/TDJSONParser/InvalidPropertyType=Invalid ^1 type, expected type:^2."},
    {"kInvalidPropertyValueMissingQuotes", SK_Message::kInvalidPropertyValueMissingQuotes, "$$$/SKError/TDJSONParser/InvalidPropertyValueMissingQuotes=Unable to find enclosing quotes for property value:^1."},
    {"kExponentTooBig", SK_Message::kExponentTooBig, "$$$/SKError/TDJSONParser/MIssingExponent=Number too big to be stored in double."},
    {"kMissingExponent", SK_Message::kMissingExponent, "$$$/SKError/TDJSONParser/MissingExponent=Miss exponent in number"},
    {"kMissingFractionPart", SK_Message::kMissingFractionPart, "$$$/SKError/TDJSONParser/MissingFractionPart=Missing fraction part in number"},
    {"kMissingRequiredProperties", SK_Message::kMissingRequiredProperties, "$$$/SKError/TDJSONParser/MissingRequiredProperties=Unable to find mandatory properties : ^1."},
    {"kNumberTooBig", SK_Message::kNumberTooBig, "$$$/SKError/TDJSONParser/NumberTooBig=Number too big to be stored in double."},
    {"kOpeningBracketNotFound", SK_Message::kOpeningBracketNotFound, "$$$/SKError/TDJSONParser/OpeningBracketNotFound=Unable to find TDJSON opening '{'."},
    {"kTooDeepNesting", SK_Message::kTooDeepNesting, "$$$/SKError/TDJSONParser/TooDeepNesting=SK does not support TDJSON dataGroup with nesting more than ^1"},
    {"kIntermediateNodeNotGroupNode", SK_Message::kIntermediateNodeNotGroupNode, "$$$/SKError/InvalidSKDataPath/IntermediateNodeNotGroupNode=Node at path item:^1 is not of type dataGroup. All intermediate nodes must be of type dataGroup."},
    {"kInvalidIndex", SK_Message::kInvalidIndex, "$$$/SKError/InvalidSKDataPath/InvalidIndex=Invalid node index, ^1 child nodes present for node at path item :^2. Input index : ^3."},
    {"kInvalidNodeType", SK_Message::kInvalidNodeType, "$$$/SKError/InvalidSKDataPath/InvalidNodeType=^1 not found at input path, Found node type: ^2."},
    {"kLastNodeNotGroupNode", SK_Message::kLastNodeNotGroupNode, "$$$/SKError/InvalidSKDataPath/LastNodeNotGroupNode=Leaf node is not a group node."},
    {"kMatchNameNotFound", SK_Message::kMatchNameNotFound, "$$$/SKError/InvalidSKDataPath/MatchNameNotFound=No node found with match name : ^1."},
    {"kMatchNameNotMatching", SK_Message::kMatchNameNotMatching, "$$$/SKError/InvalidSKDataPath/MatchNameNotMatching=^1:Match name found for child Node at index ^2 for path item ^3,Input match name:^4."},
    {"kMissingBothIndexAndMatchName", SK_Message::kMissingBothIndexAndMatchName, "$$$/SKError/InvalidSKDataPath/MissingBothIndexAndMatchName=Either index or match name must be present, both are missing at path item ^1."},
    {"kMissingOpeningOrClosingBracket", SK_Message::kMissingOpeningOrClosingBracket, "$$$/SKError/InvalidSKDataPath/MissingOpeningOrClosingBracket=Missing ^1 at or after index :^2."},
    {"kMissingRootInfo", SK_Message::kMissingRootInfo, "$$$/SKError/InvalidSKDataPath/MissingRootInfo=Missing SK_DataPath ROOT_INDEX or ROOT_MATCHNAME. Path must start with ROOT_INDEX or ROOT_MATCHNAME"},
    {"kSampleMemoryNotAvailable", SK_Message::kSampleMemoryNotAvailable, "$$$/SKError/DynamicSample/MemoryNotAvailable=Unable to allocate memory for ^1."},
    {"kMemoryNotAvailable", SK_Message::kMemoryNotAvailable, "$$$/SKError/MemoryNotAvailable=Unable to allocate memory."},
    {"kUnknownExceptionCaught", SK_Message::kUnknownExceptionCaught, "$$$/SKError/UnknownExceptionCaught=Unknown exception occurred."},
    {"kDiskFull", SK_Message::kDiskFull, "$$$/SKErrorFile_IO/Write/Failure=^1, Disk Full."},
    {"kSampleIdNotFound", SK_Message::kSampleIdNotFound, "$$$/SKError/SampleData/SampleIdNotFound=Data Outline does not contain any dynamic node for sample id : ^1."},
    {"kInvalidSampleSetInfo", SK_Message::kInvalidSampleSetInfo, "$$$/SKError/SampleData/InvalidSampleSetInfo=Invalid  dynamic node info in data outline for sample set:^1.Calculated sample set size is out of file offset range."},
    {"kDuplicateSampleId", SK_Message::kDuplicateSampleId, "$$$/SKError/TDJSONParser/DynamicSample/DuplicateSampleId=Duplicate sample id found. Sample Id:^1 is assigned to more than one dynamic node in data outline."},
    {"kSamplesNotFound", SK_Message::kSamplesNotFound, "$$$/SKError/SampleData/SamplesNotFound=No dynamic sample data present for sample id : ^1."},
    {"kInvalidSampleSetData", SK_Message::kInvalidSampleSetData, "$$$/SKError/TDJSONParser/DynamicSample/InvalidSampleSetData=Invalid sample set data for sample id:^1. Either information in dataOutline is incorrect or sample set data is malformed."},
    {"kInvalidPaddedStringLength", SK_Message::kInvalidPaddedStringLength, "$$$/SKError/TDJSONParser/InvalidPaddedStringLength=Padded string length cannot be greater than max length."},
    {"kInvalidNumberArrayInvalidArrayCount", SK_Message::kInvalidNumberArrayInvalidArrayCount, "$$$/SKError/SampleData/InvalidNumberArrayInvalidArrayCount=Number array does not contains enough elements at ^1."},
    {"kInvalidSample", SK_Message::kInvalidSample, "$$$/SKError/SampleData/InvalidSample=Invalid sample:^1"},
    {"kInvalidSampleTime", SK_Message::kInvalidSampleTime, "$$$/SKError/SampleData/InvalidSampleTime=Invalid sample time:^1"},
    {"kInvalidTimeValueFor", SK_Message::kInvalidTimeValueFor, "$$$/SKError/SampleData/InvalidSampleTime=Invalid time value for :^1."},
    {"kInvalidTimeValueForSampleId", SK_Message::kInvalidTimeValueForSampleId, "$$$/SKError/SampleData/InvalidSampleTime=Invalid time value for sample id:^1."},
    {"kInvalidSampleValue", SK_Message::kInvalidSampleValue, "$$$/SKError/SampleData/InvalidSampleValue=Invalid sample value:^1"},
    {"kDuplicateMatchName", SK_Message::kDuplicateMatchName, "$$$/SKError/TDJSONParser/DuplicateMatchName=Duplicate MatchName:^1 at ^2. MatchName must be unique for every node in \"dataOutline\"."},
    {"kNonSuppportedFrameRate", SK_Message::kNonSuppportedFrameRate, "$$$/SKError/TDJSONParser/NonSuppportedFrameRate=Only 29.97 and 59.94 drop frame rate supported."},
    {"kInvalidMatchName", SK_Message::kInvalidMatchName, "$$$/SKError/TDJSONParser/InvalidMatchName=Invalid ^1 at ^2. Not following TDJSON guidelines."},
    {"kInvalidArrayItem", SK_Message::kInvalidArrayItem, "$$$/SKError/TDJSONParser/DynamicSample/InvalidArrayItem=Invalid array item at index ^1 for property ^2, expected type : ^3."},
    {"kInvalidPropertyTypeInSampleSet", SK_Message::kInvalidPropertyTypeInSampleSet, "$$$/SKError/TDJSONParser/DynamicSample/InvalidPropertyType=Unable to find ^1, Invalid ^2 property, expected type : ^3 in dynamic set with sample id:^4."},
    {"kInvalidPropertyTypeAtPath", SK_Message::kInvalidPropertyTypeAtPath, "$$$/SKError/TDJSONParser/InvalidPropertyTypeAtPath=Invalid ^1 type, expected type:^2 at ^3."},
    {"kTopPropertyNotTimeInfo", SK_Message::kTopPropertyNotTimeInfo, "$$$/SKError/TDJSONParser/InvalidDynamicDataInfo/TopPropertyNotTimeInfo=First property of ^1 must be ^2, found ^3."},
    {"kInvalidPropertyValueAtPath", SK_Message::kInvalidPropertyValueAtPath, "$$$/SKError/TDJSONParser/InvalidPropertyValueAtPath=Invalid value for ^1 at ^2, expected:^3."},
    {"kBothTSAndFNMissing", SK_Message::kBothTSAndFNMissing, "$$$/SKError/TDJSONParser/InvalidSyncInfo/BothTSAndFNMissing=Invalid ^1, one of ^2 or ^3 must be present at ^4."},
    {"kBothTSAndFNPPresent", SK_Message::kBothTSAndFNPPresent, "$$$/SKError/TDJSONParser/InvalidSyncInfo/BothTSAndFNPPresent=Invalid ^1, only one of ^2 or ^3 can be present at ^4."},
    {"kEmptyArray", SK_Message::kEmptyArray, "$$$/SKError/TDJSONParser/EmptyArray=Invalid ^1, expected atleast 1 array item, found 0."},
    {"kEmptyArrayAtPath", SK_Message::kEmptyArrayAtPath, "$$$/SKError/TDJSONParser/EmptyArrayAtPath=Invalid ^1, expected atleast 1 array item, found 0 at ^2."},
    {"kWriterFailure", SK_Message::kWriterFailure, "$$$/SKError/WriterFailure=Writer failure."},
    {"kDynamicNodeNotPresent", SK_Message::kDynamicNodeNotPresent, "$$$/SKError/TDJSONParser/DynamicSample/DynamicNodeNotPresent=No dynamic data node is present in data outline with sample id:^1."},
    {"kEmptyFile", SK_Message::kEmptyFile, "$$$/SKError/FileMapper/EmptyFile=Empty Input file."},
    {"kCopyFailed", SK_Message::kCopyFailed, "$$$/SKError/File_IO/=^1, fails."},
    {"kWriteRequestTooLarge", SK_Message::kWriteRequestTooLarge, "$$$/SKError/File_IO/Write/LargeRequest=^1, request too large."},
    {"kWriteFailed", SK_Message::kWriteFailed, "$$$/SKErrorFile_IO/Write/Failure=^1,WriteFile failure."},
    {"kNoStreamCreated", SK_Message::kNoStreamCreated, "$$$/SKError/NoStreamCreated=No stream created by Senmark."},
    {"kInvalidStream", SK_Message::kInvalidStream, "$$$/SKError/InvalidStream=TDJSON Stream is not created by this Senmark instance."},
    {"kDirectoryDoesNotExists", SK_Message::kDirectoryDoesNotExists, "$$$/SKError/DirectoryDoesNotExists=TDJSON output directory does not exists."},
    {"kLoadModule", SK_Message::kLoadModule, "$$$/SKError/LoadModule=Failed to load module."},
    {"kModuleLoadingFailed", SK_Message::kModuleLoadingFailed, "$$$/SKError/SKPlugin/ModuleLoadingFailed=Can't load module."},
    {"kPluginLoadFailure", SK_Message::kPluginLoadFailure, "$$$/SKError/SKPlugin/PluginLoadFailure=Plugin ^1 not loaded."},
    {"kPluginNotLoaded", SK_Message::kPluginNotLoaded, "$$$/SKError/SKPlugin/PluginNotLoaded=Plugin not loaded."},
    {"kPluginInitializeFailed", SK_Message::kPluginInitializeFailed, "$$$/SKError/SKPlugin/PluginInitializeFailed=Initialization of plugin with id ^1 failed."},
    {"kMandatoryPropertyNotPresent", SK_Message::kMandatoryPropertyNotPresent, "$$$/SKError/SKPlugin/MandatoryPropertyNotPresent=Mandatory property not present."},
    {"kManifestParseFailed", SK_Message::kManifestParseFailed, "$$$/SKError/SKPlugin/ManifestParseFailed=Manifest Parsing Failed."},
    {"kInvalidManifestPropertyType", SK_Message::kInvalidManifestPropertyType, "$$$/SKError/SKPlugin/InvalidPropertyType=Invalid : ^1 type, expected type : ^2."},
    {"kManifestSchemaViolation", SK_Message::kManifestSchemaViolation, "$$$/SKError/SKPlugin/SchemaViolation=Schema violation of Property: ^1."},
    {"kConversionFailure", SK_Message::kConversionFailure, "$$$/SKError/ConversionFailure=File Cannot be converted."},
    {"kPluginConversionFailed", SK_Message::kPluginConversionFailed, "$$$/SKError/SKPlugin/Converter=Conversion to TDJSON using converter ^1 with id ^2 failed."},
    {"kConverterFailure", SK_Message::kConverterFailure, "$$$/SKError/ConverterFailure=Internal converter failure"},
    {"kIntialzeSessionFailed", SK_Message::kIntialzeSessionFailed, "$$$/SKError/SKPlugin/IntialzeSessionFailed=Initialize Session Failed of converter ^1 with id ^2."},
    {"kPluginCheckFileFormatFailed", SK_Message::kPluginCheckFileFormatFailed, "$$$/SKError/SKPlugin/CheckFileFormat=Error in Plugin Check File Format of converter ^1 with id ^2."},
    {"kTerminatePluginFailed", SK_Message::kTerminatePluginFailed, "$$$/SKError/SKPlugin/TerminatePluginFailed=Terminate of Plugin with id ^1 failed"},
};
// clang-format on

class MessageLiteral : public testing::TestWithParam<Literal> {};

TEST_P(MessageLiteral, IsWrittenAsEver) {
  EXPECT_STREQ(GetParam().constant, GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Message, MessageLiteral, testing::ValuesIn(kLiterals),
                         [](auto const& row) { return std::string(row.param.name); });

std::string ReadAll(fs::path const& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Names of the constants in the order of the header.
std::vector<std::string> DeclaredNames() {
  std::string const header = ReadAll(fs::path(SENMARK_SOURCE_DIR) / "source" / "SK_Message.h");
  std::regex const declaration(R"(constexpr char (\w+)\[\] =)");
  std::vector<std::string> names;
  for (std::sregex_iterator it(header.begin(), header.end(), declaration); it != std::sregex_iterator(); ++it) {
    names.push_back((*it)[1]);
  }
  return names;
}

TEST(Message, ListHereIsComplete) {
  std::vector<std::string> listed;
  for (Literal const& row : kLiterals) {
    listed.push_back(row.name);
  }
  EXPECT_EQ(DeclaredNames(), listed);
}

TEST(Message, NoLiteralStandsTwice) {
  std::map<std::string, char const*> names;
  for (Literal const& row : kLiterals) {
    auto const [known, isNew] = names.emplace(row.text, row.name);
    EXPECT_TRUE(isNew) << row.name << " repeats " << known->second;
  }
}

bool IsSource(fs::path const& path) {
  return path.extension() == ".h" || path.extension() == ".cpp";
}

// A literal begins with this and goes on; the bare prefix between quotes is none.
bool HoldsALiteral(std::string const& text) {
  std::string const start = "\"$$$/";
  for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
    std::size_t const behind = at + start.size();
    if (behind < text.size() && text[behind] != '"') {
      return true;
    }
  }
  return false;
}

TEST(Message, NoOtherFileHoldsALiteral) {
  std::size_t filesSeen = 0;
  std::vector<std::string> holders;
  for (char const* const folder : {"source", "plugin", "include"}) {
    for (fs::directory_entry const& entry : fs::recursive_directory_iterator(fs::path(SENMARK_SOURCE_DIR) / folder)) {
      if (entry.is_regular_file() && IsSource(entry.path())) {
        ++filesSeen;
        if (HoldsALiteral(ReadAll(entry.path()))) {
          holders.push_back(entry.path().filename().string());
        }
      }
    }
  }
  EXPECT_EQ(holders, std::vector<std::string>{"SK_Message.h"});
  EXPECT_GT(filesSeen, 20u);
}

}  // namespace
