// A module that was compiled with the public headers alone writes whole files through the tables of the host.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "FailingCalls.h"
#include "SK_HostAPIImpl.h"
#include "TdjsonRootImpl.h"
#include "TempFolder.h"
#include "WriterModule.h"

namespace senmark_test {
namespace {

using namespace SK_PLUGIN;

std::string gComplaints;

class WriterModule : public testing::Test {
 protected:
  WriterModule() : mModule(dlopen(SENMARK_WRITER_MODULE, RTLD_NOW | RTLD_LOCAL)) {
    GetTDJSONWriterAPI(&mWriter);
    GetHandleExceptionAPI(&mException);
    GetHandleMemoryAPI(&mMemory);
    gComplaints.clear();
  }
  ~WriterModule() override {
    if (mModule != nullptr) {
      dlclose(mModule);
    }
  }

  void Run(char const* door) {
    ASSERT_NE(mModule, nullptr) << dlerror();
    auto const run = reinterpret_cast<WriterModuleRun>(dlsym(mModule, door));
    ASSERT_NE(run, nullptr) << door;
    std::size_t const open = CountOpenDescriptors();
    run(&mApi, this, mPath.c_str(), [](char const* line) { gComplaints += std::string(line) + '\n'; });
    EXPECT_EQ(gComplaints, "");
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
    EXPECT_EQ(CountOpenDescriptors(), open);
  }

  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  void* mModule;
  TDJSONWriter_API mWriter{};
  HandleException_API mException{};
  HandleMemory_API mMemory{};
  HostAPI mApi{32, 1, &mWriter, &mException, &mMemory};
};

TEST_F(WriterModule, WritesTimeCodesAndEveryKindOfNode) {
  ASSERT_NO_FATAL_FAILURE(Run("WriterModuleTimeCodes"));
  EXPECT_EQ(
      mFolder.Read(mPath),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
      R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false},"videoSyncTimeList":)"
      R"([{"fileName":"a.mov","frameNumber":7},{"fileName":"b.mov","timeString":"01:00:00:00"}]},)"
      R"("dataDynamicSamples":[{"sampleSetID":"numbers","samples":[{"time":"00:00:00:00","value":"+01.5"},)"
      R"({"time":"00:00:00:01","value":"-10.0"}]},{"sampleSetID":"arrays","samples":[{"time":"00:00:00:02",)"
      R"("value":["01.0","22.5"]}]},{"sampleSetID":"texts","samples":[{"time":"00:00:00:03",)"
      R"("value":{"length":"2","str":"ab"}}]}],"creator":"a \"module\"","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"outer","displayName":"Outer","children":[)"
      R"({"objectType":"dataGroup","matchName":"skeleton","displayName":"Skeleton","children":[)"
      R"({"objectType":"dataStatic","matchName":"height","displayName":"Height","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":1,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":-2.5,"max":-2.5},"legal":{"min":-2.5,"max":-2.5}}}},"value":-2.5},)"
      R"({"objectType":"dataStatic","matchName":"origin","displayName":"Origin","dataType":{"type":"numberArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":1,"digitsInteger":3},)"
      R"("arrayRanges":{"ranges":[{"occurring":{"min":0,"max":5},"legal":{"min":-1,"max":9}},)"
      R"({"occurring":{"min":0,"max":25},"legal":{"min":-1,"max":99}}]},"arraySize":2,)"
      R"("arrayDisplayNames":["x","y"],"isPoint":true}},"value":[1,20]},)"
      R"({"objectType":"dataStatic","matchName":"note","displayName":"Note","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":4,"eventMarkerB":false}},"value":"a\nb"},)"
      R"({"objectType":"dataStatic","matchName":"flag","displayName":"Flag","dataType":{"type":"boolean"},)"
      R"("value":true},)"
      R"({"objectType":"dataDynamic","matchName":"numbers","displayName":"Numbers","sampleSetID":"numbers",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,"dataType":{"type":"numberString",)"
      R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":1,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":-10,"max":1.5},"legal":{"min":-10,"max":1.5}}}}},)"
      R"({"objectType":"dataDynamic","matchName":"arrays","displayName":"Arrays","sampleSetID":"arrays",)"
      R"("interpolation":"hold","hasExpectedFrequencyB":true,"sampleCount":1,)"
      R"("expectedMaxInterSampleDuration":"00:00:00:01","dataType":{"type":"numberStringArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":1,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}},)"
      R"({"occurring":{"min":22.5,"max":22.5},"legal":{"min":22.5,"max":22.5}}]},"arraySize":2,)"
      R"("arrayDisplayNames":["u","v"]}}},)"
      R"({"objectType":"dataDynamic","matchName":"texts","displayName":"Texts","sampleSetID":"texts",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"paddedString",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":2,"eventMarkerB":true}}}]}]}]})");
}

TEST_F(WriterModule, WritesCalendarTimes) {
  ASSERT_NO_FATAL_FAILURE(Run("WriterModuleCalendarTimes"));
  EXPECT_EQ(
      mFolder.Read(mPath),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
      R"("utcInfo":{"precisionLength":3,"isGMT":true}},"dataDynamicSamples":[)"
      R"({"sampleSetID":"numbers","samples":[{"time":"2020-01-02T03:04:05.007Z","value":"4"}]},)"
      R"({"sampleSetID":"arrays","samples":[{"time":"2020-01-02T03:04:05.008Z","value":["5"]}]},)"
      R"({"sampleSetID":"texts","samples":[{"time":"2020-01-02T03:04:05.009Z",)"
      R"("value":{"length":"1","str":"c"}}]}],"dataOutline":[)"
      R"({"objectType":"dataDynamic","matchName":"numbers","displayName":"Numbers","sampleSetID":"numbers",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"numberString",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":0,"max":9},"legal":{"min":0,"max":9}}}}},)"
      R"({"objectType":"dataDynamic","matchName":"arrays","displayName":"Arrays","sampleSetID":"arrays",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,)"
      R"("dataType":{"type":"numberStringArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("arrayRanges":{"ranges":[{"occurring":{"min":0,"max":9},"legal":{"min":0,"max":9}}]},"arraySize":1,)"
      R"("arrayDisplayNames":["Arrays_0"]}}},)"
      R"({"objectType":"dataDynamic","matchName":"texts","displayName":"Texts","sampleSetID":"texts",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"paddedString",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}}}]})");
}

TEST_F(WriterModule, HearsOfEveryFailureByItsRecord) {
  ASSERT_NO_FATAL_FAILURE(Run("WriterModuleFailures"));
  EXPECT_EQ(mFolder.Read(mPath), "");
}

}  // namespace
}  // namespace senmark_test
