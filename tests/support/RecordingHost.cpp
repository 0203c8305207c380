#include "RecordingHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <charconv>
#include <ostream>

namespace senmark_test {

namespace {

RecordingHost& HostOf(void* client) {
  return *static_cast<RecordingHost*>(client);
}

std::string Quote(std::string const& text) {
  return '"' + text + '"';
}

/// The shortest text that reads back as the same double.
std::string NumberText(double number) {
  char buffer[64];
  return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, number).ptr);
}

std::string TimeText(std::int32_t value, std::uint32_t scale) {
  return std::to_string(value) + '/' + std::to_string(scale);
}

std::string RangeText(double const* occurringMin, double const* occurringMax, double const* legalMin,
                      double const* legalMax) {
  return NumberText(*occurringMin) + ".." + NumberText(*occurringMax) + " legal " + NumberText(*legalMin) + ".." +
         NumberText(*legalMax);
}

std::string PatternText(std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal, bool const* isSigned) {
  return std::to_string(*digitsInteger) + '.' + std::to_string(*digitsDecimal) + (*isSigned ? " signed" : " unsigned");
}

void FetchProperties(RecordingHost& host, std::uint8_t dataType, void* properties) {
  if (!host.fetchProperties) {
    return;
  }
  ns_sensor::SK_HostPropertyAPI const& api = host.PropertyAPI();
  switch (dataType) {
    case ns_sensor::kNumberValue:
      api.pushNumber(properties, &host);
      break;
    case ns_sensor::kStringValue:
      api.pushString(properties, &host);
      break;
    case ns_sensor::kNumberArrayValue:
      api.pushNumberArray(properties, &host);
      break;
    default:
      break;
  }
}

void PathSegment(void* client, char const* matchName, std::int32_t index, std::uint64_t pathCount,
                 std::uint8_t isLast) {
  HostOf(client).AddCall(std::string(isLast != 0 ? "leaf " : "prefix ") + Quote(matchName) + ' ' +
                         std::to_string(index) + " of " + std::to_string(pathCount));
}

void Number(void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal, bool const* isSigned,
            double const* occurringMin, double const* occurringMax, double const* legalMin, double const* legalMax) {
  HostOf(client).AddCall("  number " + PatternText(digitsInteger, digitsDecimal, isSigned) + " range " +
                         RangeText(occurringMin, occurringMax, legalMin, legalMax));
}

void String(void* client, std::uint64_t const* maxLen, std::uint64_t const* maxDigitsInStrLength,
            bool const* eventMarkerB) {
  HostOf(client).AddCall("  string " + std::to_string(*maxLen) + " bytes, " + std::to_string(*maxDigitsInStrLength) +
                         " digits" + (*eventMarkerB ? ", events" : ""));
}

void NumberArray(void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal,
                 bool const* isSigned, std::uint64_t const* arraySize, bool const* isPoint) {
  HostOf(client).AddCall("  array of " + std::to_string(*arraySize) + ' ' +
                         PatternText(digitsInteger, digitsDecimal, isSigned) + (*isPoint ? " point" : ""));
}

void NumberArrayDisplayName(void* client, char const* name, std::uint64_t length) {
  HostOf(client).AddCall("  name " + Quote(std::string(name, length)));
}

void NumberArrayRange(void* client, double const* occurringMin, double const* occurringMax, double const* legalMin,
                      double const* legalMax) {
  HostOf(client).AddCall("  range " + RangeText(occurringMin, occurringMax, legalMin, legalMax));
}

void StaticDataInfo(void* client, char const* displayName, char const* matchName, void* properties,
                    std::uint8_t dataType, void const* value, std::uint64_t valueSize) {
  HostOf(client).AddCall("static " + Quote(displayName) + ' ' + Quote(matchName) + " type " + std::to_string(dataType) +
                         " value " + ValueText(dataType, value, valueSize));
  FetchProperties(HostOf(client), dataType, properties);
}

void DynamicDataInfo(void* client, char const* displayName, char const* matchName, std::uint8_t dataType,
                     void* properties, char const* sampleSetID, std::uint64_t sampleCount, std::uint8_t interpolation,
                     bool hasExpectedFrequency, std::int32_t startValue, std::uint32_t startScale,
                     std::int32_t durationValue, std::uint32_t durationScale,
                     char const* expectedMaxInterSampleDuration) {
  HostOf(client).AddCall(
      "dynamic " + Quote(displayName) + ' ' + Quote(matchName) + " type " + std::to_string(dataType) + " set " +
      Quote(sampleSetID) + " count " + std::to_string(sampleCount) + " interpolation " + std::to_string(interpolation) +
      (hasExpectedFrequency ? " frequency" : "") + " start " + TimeText(startValue, startScale) + " duration " +
      TimeText(durationValue, durationScale) + " max " + Quote(expectedMaxInterSampleDuration));
  FetchProperties(HostOf(client), dataType, properties);
}

void GroupChildInfo(void* client, std::uint8_t childType, char const* displayName, char const* matchName) {
  HostOf(client).AddCall("child type " + std::to_string(childType) + ' ' + Quote(displayName) + ' ' + Quote(matchName));
}

void Sample(void* client, std::int32_t timeValue, std::uint32_t timeScale, void const* value, std::uint64_t valueSize,
            std::uint8_t valueType) {
  HostOf(client).AddCall("sample " + TimeText(timeValue, timeScale) + ' ' + ValueText(valueType, value, valueSize));
}

void FileInfo(void* client, std::int32_t durationValue, std::uint32_t durationScale, char const* version,
              std::uint64_t versionLength, char const* creator, std::uint64_t creatorLength) {
  HostOf(client).AddCall("file " + TimeText(durationValue, durationScale) + " version " +
                         Quote(std::string(version, versionLength)) + " creator " +
                         Quote(std::string(creator, creatorLength)));
}

void VideoSyncTime(void* client, char const* fileName, std::uint8_t kind, void const* value, std::uint64_t valueSize,
                   std::uint8_t valueKind) {
  std::string const text = valueKind == 0 ? std::to_string(*static_cast<int const*>(value))
                                          : Quote(std::string(static_cast<char const*>(value), valueSize));
  HostOf(client).AddCall("sync " + Quote(fileName) + " kind " + std::to_string(kind) + " value " + text + " size " +
                         std::to_string(valueSize));
}

void SupportedFormat(void* client, char const* extension, char const* description) {
  HostOf(client).AddCall("format " + Quote(extension) + ' ' + Quote(description));
}

void SampleCount(void* client, std::uint64_t* count) {
  HostOf(client).AddCall("count " + std::to_string(*count));
  if (HostOf(client).wantedSamples != RecordingHost::kAllSamples) {
    *count = HostOf(client).wantedSamples;
  }
}

void Text(void* client, char const* text, std::uint64_t length) {
  HostOf(client).AddCall("text " + Quote(std::string(text, length)));
}

void Error(void* clientError, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
  HostOf(clientError).AddError({code, message, offset, line});
}

}  // namespace

std::ostream& operator<<(std::ostream& out, ReportedError const& error) {
  return out << error.code << " \"" << error.message << "\" at " << error.offset << ", line " << error.line;
}

ns_sensor::SK_ClientProcs* RecordingHost::Procs() {
  static ns_sensor::SK_PathProcs path = {PathSegment};
  static ns_sensor::SK_PropertyProcs property = {Number, String, NumberArray, NumberArrayDisplayName, NumberArrayRange};
  static ns_sensor::SK_ClientProcs table = {&path,           &property,   StaticDataInfo, DynamicDataInfo,
                                            GroupChildInfo,  Sample,      FileInfo,       VideoSyncTime,
                                            SupportedFormat, SampleCount, Text,           Error};
  return &table;
}

RecordingHost::RecordingHost() {
  void* api = nullptr;
  CreateSenmark_1(&mManager, nullptr, nullptr, nullptr, this, Procs(), &api);
  EXPECT_NE(mManager, nullptr);
  EXPECT_NE(api, nullptr);
  mPropertyAPI = static_cast<ns_sensor::SK_HostPropertyAPI*>(api);
}

RecordingHost::~RecordingHost() {
  DestroySenmark_1(&mManager, this);
  EXPECT_THAT(mErrors, testing::IsEmpty());
}

ns_sensor::ISensorFileHandler* RecordingHost::Open(std::string const& path, char const* outputPath) {
  ns_sensor::ISensorFileHandler* handler = nullptr;
  mManager->openFile(&handler, path.c_str(), outputPath, this);
  return handler;
}

ns_sensor::ISensorFileHandler* RecordingHost::Close(ns_sensor::ISensorFileHandler* handler) {
  mManager->closeFile(&handler, this);
  return handler;
}

std::string RecordingHost::TakeCalls() {
  std::string calls;
  calls.swap(mCalls);
  return calls;
}

std::vector<ReportedError> RecordingHost::TakeErrors() {
  std::vector<ReportedError> errors;
  errors.swap(mErrors);
  return errors;
}

ReportedError RecordingHost::TakeError() {
  std::vector<ReportedError> const errors = TakeErrors();
  EXPECT_EQ(errors.size(), 1u);
  return errors.empty() ? ReportedError{0, "no error was reported", 0, 0} : errors.front();
}

ReportedError LastError(bool clear) {
  ReportedError last{-1, "not called", -1, -1};
  GetLastException_1(
      &last,
      [](void* kept, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
        *static_cast<ReportedError*>(kept) = {code, message, offset, line};
      },
      clear);
  return last;
}

std::string ValueText(std::uint8_t kind, void const* value, std::uint64_t size) {
  switch (kind) {
    case ns_sensor::kNumberValue:
      return NumberText(*static_cast<double const*>(value)) + " size " + std::to_string(size);
    case ns_sensor::kStringValue:
      // An empty text has an address too.
      return value == nullptr
                 ? "null"
                 : Quote(std::string(static_cast<char const*>(value), size)) + " size " + std::to_string(size);
    case ns_sensor::kNumberArrayValue: {
      std::string text = "[";
      for (std::uint64_t i = 0; i != size; ++i) {
        text += (i == 0 ? "" : " ") + NumberText(static_cast<double const*>(value)[i]);
      }
      return text + ']';
    }
    case ns_sensor::kBooleanValue:
      return std::string(*static_cast<bool const*>(value) ? "true" : "false") + " size " + std::to_string(size);
    default:
      return "?";
  }
}

}  // namespace senmark_test
