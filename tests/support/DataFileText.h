/// Texts of small data files and their parts, and what became of reading one.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "SK_Exception.h"

namespace senmark_test {

inline std::string Joined(std::vector<std::string> const& parts, char const* separator = ",") {
  std::string text;
  for (std::string const& part : parts) {
    text += (text.empty() ? "" : separator) + part;
  }
  return text;
}

/// Properties of numbers with a sign, two digits before the point and one behind it: 7 bytes with quotes.
inline std::string const kPattern = R"("pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1})";
inline std::string const kRange = R"({"occurring":{"min":0,"max":1},"legal":{"min":0,"max":1}})";

inline std::string NumberType() {
  return R"({"type":"numberString","numberStringProperties":{)" + kPattern + R"(,"range":)" + kRange + "}}";
}

/// The name of the type differs between the versions.
inline std::string ArrayType(std::string const& typeName, int arraySize) {
  return R"({"type":")" + typeName + R"(","numberArrayProperties":{)" + kPattern + R"(,"arraySize":)" +
         std::to_string(arraySize) + R"(,"arrayDisplayNames":["x"],"arrayRanges":{"ranges":[)" + kRange + "]}}}";
}

inline std::string PaddedType(int maxLen, int maxDigits) {
  return R"({"type":"paddedString","paddedStringProperties":{"maxLen":)" + std::to_string(maxLen) +
         R"(,"maxDigitsInStrLength":)" + std::to_string(maxDigits) + R"(,"eventMarkerB":false}})";
}

inline std::string DynamicNode(std::string const& matchName, std::string const& id, std::string const& sampleCount,
                               std::string const& dataType) {
  return R"({"objectType":"dataDynamic","displayName":"D","matchName":")" + matchName + R"(","dataType":)" + dataType +
         R"(,"sampleSetID":")" + id + R"(","interpolation":"hold","hasExpectedFrequencyB":false,"sampleCount":)" +
         sampleCount + "}";
}

inline std::string NumberNode(std::string const& matchName, std::string const& id, int sampleCount) {
  return DynamicNode(matchName, id, std::to_string(sampleCount), NumberType());
}

inline std::string Group(std::string const& matchName, std::string const& children) {
  return R"({"objectType":"dataGroup","displayName":"G","matchName":")" + matchName + R"(","children":[)" + children +
         "]}";
}

inline std::string NumberSample(std::string const& time, std::string const& value = "+01.5") {
  return R"({"time":")" + time + R"(","value":")" + value + R"("})";
}

inline std::string SampleSet(std::string const& id, std::vector<std::string> const& samples) {
  return R"({"sampleSetID":")" + id + R"(","samples":[)" + Joined(samples) + "]}";
}

/// A set of one number at each time.
inline std::string NumberSet(std::string const& id, std::vector<std::string> const& times) {
  std::vector<std::string> samples;
  for (std::string const& time : times) {
    samples.push_back(NumberSample(time));
  }
  return SampleSet(id, samples);
}

inline std::string Array(std::string const& key, std::vector<std::string> const& items) {
  return '"' + key + R"(":[)" + Joined(items) + "]";
}

inline std::string const kTimecodeInfo = R"({"frameRate":{"value":30,"scale":1},"dropFrame":false})";

/// A top level of the parts that are given.
inline std::string TopLevel(std::vector<std::string> const& parts) {
  return "{" + Joined(parts) + "}";
}

/// The parts in front of outline and samples, for 30 frames a second.
inline std::string Version1Head() {
  return R"("useTimecodeB":true,"timecodeInfo":)" + kTimecodeInfo;
}

inline std::string Version2Head() {
  return R"("version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":)" +
         kTimecodeInfo + "}";
}

/// `marked` without its '@', and where that stood: -1 for none.
struct MarkedText {
  explicit MarkedText(std::string const& marked) : text(marked) {
    std::string::size_type const at = marked.find('@');
    if (at != std::string::npos) {
      text.erase(at, 1);
      offset = static_cast<long long>(at);
    }
  }

  std::string text;
  long long offset = -1;
};

/// How an error looks in a comparison: code, offset, line and message.
inline std::string ErrorText(int code, long long offset, std::string const& message, long long line = -1) {
  return std::to_string(code) + " at " + std::to_string(offset) + "," + std::to_string(line) + ": " + message;
}

/// What `body` ends in: "fine", or its error.
template <typename Body>
std::string OutcomeOf(Body&& body) {
  try {
    std::forward<Body>(body)();
  } catch (ns_sensor::SK_Exception const& error) {
    return ErrorText(error.GetErrorCode(), error.GetFileOffset(), error.GetLocalizedErrMsg(), error.GetFileLineNo());
  }
  return "fine";
}

/// What reading a file with this parser ends in.
template <typename Parser>
std::string OutcomeOfReading(Parser& parser, std::string const& path) {
  return OutcomeOf([&] { parser.CacheFileData(path.c_str(), path.size()); });
}

}  // namespace senmark_test
