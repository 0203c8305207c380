/// The whole library with a folder of modules, as a host has it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "RecordingHost.h"
#include "TempFolder.h"

namespace senmark_test {

inline constexpr char kNativeFormats[] =
    "format \"bvh\" \"Biovision Hierarchy\"\n"
    "format \"csv\" \"Comma Seperated Value\"\n"
    "format \"json\" \"JSON\"\n"
    "format \"tdjson\" \"Timed Data JSON\"\n"
    "format \"tsv\" \"Tab Seperated Value\"\n"
    "format \"txt\" \"Tab Seperated Value\"\n";

/// What the test's module makes of the bytes 1 and 2.
inline constexpr char kConverted[] =
    R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
    R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}},"dataDynamicSamples":[)"
    R"({"sampleSetID":"bytes","samples":[{"time":"00:00:00:00","value":"001"},)"
    R"({"time":"00:00:00:01","value":"002"}]}],"dataOutline":[)"
    R"({"objectType":"dataDynamic","matchName":"bytes","displayName":"Bytes","sampleSetID":"bytes",)"
    R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
    R"("dataType":{"type":"numberString","numberStringProperties":{)"
    R"("pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":3},)"
    R"("range":{"occurring":{"min":0,"max":255},"legal":{"min":0,"max":255}}}}}]})";

/// The library with a folder of modules, until the object goes.
class ModuleHost {
 public:
  explicit ModuleHost(std::string const& folder, char const* wanted = nullptr, char const* locale = nullptr) {
    void* api = nullptr;
    CreateSenmark_1(&mManager, folder.c_str(), wanted, locale, nullptr, RecordingHost::Procs(), &api);
    mHost = std::make_unique<RecordingHost>();
  }
  ~ModuleHost() {
    mHost.reset();
    DestroySenmark_1(&mManager, nullptr);
  }
  ModuleHost(ModuleHost const&) = delete;
  ModuleHost& operator=(ModuleHost const&) = delete;

  std::string Formats() const {
    mHost->TakeCalls();
    GetSupportedFormats_1(mHost.get(), mHost.get(), RecordingHost::Procs());
    return mHost->TakeCalls();
  }

  /// Converts a file and gives the bytes of the result, or the error.
  std::string Convert(TempFolder const& folder, std::string const& path) const {
    std::string const output = folder.Path("output.tdjson");
    std::filesystem::remove(output);
    ns_sensor::ISensorFileHandler* const handler = mHost->Open(path, output.c_str());
    if (handler == nullptr) {
      EXPECT_FALSE(std::filesystem::exists(output));
      ReportedError const error = mHost->TakeError();
      return std::to_string(error.code) + ' ' + error.message + ' ' + std::to_string(error.offset) + ' ' +
             std::to_string(error.line);
    }
    mHost->Close(handler);
    return folder.Read(output);
  }

  RecordingHost& Host() const { return *mHost; }

 private:
  ns_sensor::ISenmark* mManager = nullptr;
  std::unique_ptr<RecordingHost> mHost;
};

}  // namespace senmark_test
