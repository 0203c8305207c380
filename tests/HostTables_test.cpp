// The tables that modules get: when they are there, what is in them, and that a module that knows nothing but their
// offsets can work with them.
#include "SK_PluginManager.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "FailingMemory.h"
#include "SK_ConverterManager.h"
#include "SK_HostAPIImpl.h"
#include "TdjsonRootImpl.h"
#include "TempFolder.h"
#include "WriterModule.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_ConverterManager;
using senmark_test::FailingMemory;
using senmark_test::TempFolder;
using senmark_test::WriterModuleRun;

class HostTables : public testing::Test {
 protected:
  ~HostTables() override { SK_PluginManager::terminate(); }
};

void ExpectTables(HostAPI const& api) {
  ASSERT_NE(api.mTdjsonWriterAPI, nullptr);
  ASSERT_NE(api.mHandleExceptionAPI, nullptr);
  ASSERT_NE(api.mHandleMemoryAPI, nullptr);
  EXPECT_EQ(api.mTdjsonWriterAPI->mReserved, 0u);
  EXPECT_EQ(api.mTdjsonWriterAPI->Static_CreateRoot, &Static_CreateRoot);
  EXPECT_EQ(api.mTdjsonWriterAPI->Static_CreateStaticDataBool, &Static_CreateStaticDataBool);
  EXPECT_EQ(api.mHandleExceptionAPI->mReserved, 0u);
  EXPECT_EQ(api.mHandleExceptionAPI->Static_SetPluginErrorObj, &Static_SetPluginErrorObj);
  EXPECT_EQ(api.mHandleMemoryAPI->mReserved, 0u);
  EXPECT_EQ(api.mHandleMemoryAPI->Static_RemoveConverterFromMap, &Static_RemoveConverterFromMap);
}

TEST_F(HostTables, ThereAreNoTablesWithoutIt) {
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_PluginManager::terminate();
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
}

TEST_F(HostTables, ItsTableIsOfVersion1AndStaysUntilItGoes) {
  SK_PluginManager::initialize("none", "");
  HostAPI* const api = SK_PluginManager::getHostAPI();
  ASSERT_NE(api, nullptr);
  EXPECT_EQ(api->mSize, 32u);
  EXPECT_EQ(api->mVersion, 1u);
  ExpectTables(*api);
  EXPECT_EQ(SK_PluginManager::getHostAPI(), api);
  SK_PluginManager::terminate();
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_PluginManager::initialize("none", "");
  ASSERT_NE(SK_PluginManager::getHostAPI(), nullptr);
  ExpectTables(*SK_PluginManager::getHostAPI());
}

TEST_F(HostTables, SetupHostAPIMakesThreeTablesAndNothingElse) {
  HostAPI api{};
  SK_PluginManager::SetupHostAPI(&api);
  std::unique_ptr<TDJSONWriter_API> const writer(api.mTdjsonWriterAPI);
  std::unique_ptr<HandleException_API> const exception(api.mHandleExceptionAPI);
  std::unique_ptr<HandleMemory_API> const memory(api.mHandleMemoryAPI);
  ExpectTables(api);
  EXPECT_EQ(api.mSize, 0u);
  EXPECT_EQ(api.mVersion, 0u);
}

TEST_F(HostTables, WithoutMemoryThereAreNoTablesRatherThanHalfOfThem) {
  std::uint64_t first = 1;
  for (bool failed = true; failed; ++first) {
    SCOPED_TRACE(first);
    {
      FailingMemory const failing(first);
      SK_PluginManager::initialize("none", "");
      failed = failing.HasFailed();
    }
    EXPECT_EQ(SK_PluginManager::getHostAPI() == nullptr, failed);
    SK_PluginManager::terminate();
  }
  EXPECT_GT(first, 5u);
}

TEST_F(HostTables, AFolderOfModulesStartsItAndTheEndOfTheConvertersEndsIt) {
  SK_ConverterManager::Initialize(nullptr, nullptr);
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  // The first call decides.
  SK_ConverterManager::Initialize("a folder", nullptr);
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_ConverterManager::Terminate();
  SK_ConverterManager::Initialize("a folder", nullptr);
  HostAPI* const api = SK_PluginManager::getHostAPI();
  EXPECT_NE(api, nullptr);
  SK_ConverterManager::Initialize("another folder", nullptr);
  EXPECT_EQ(SK_PluginManager::getHostAPI(), api);
  SK_ConverterManager::Terminate();
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
}

std::string gComplaints;

TEST_F(HostTables, AModuleFindsEveryFunctionAtItsOffset) {
  void* const module = dlopen(SENMARK_WRITER_MODULE, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(module, nullptr) << dlerror();
  auto const run = reinterpret_cast<WriterModuleRun>(dlsym(module, "WriterModuleByOffsets"));
  ASSERT_NE(run, nullptr);
  SK_PluginManager::initialize("none", "");
  TempFolder const folder;
  std::string const path = folder.Path("out.tdjson");
  gComplaints.clear();
  run(SK_PluginManager::getHostAPI(), this, path.c_str(), [](char const* line) { gComplaints += line; });
  EXPECT_EQ(gComplaints, "");
  EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
  EXPECT_EQ(folder.Read(path),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"dataOutline":[{"objectType":"dataGroup",)"
            R"("matchName":"group","displayName":"Group","children":[{"objectType":"dataStatic","matchName":"number",)"
            R"("displayName":"Number","dataType":{"type":"number","numberStringProperties":{"pattern":{)"
            R"("isSigned":true,"digitsDecimal":1,"digitsInteger":1},"range":{"occurring":{"min":-3,"max":3},)"
            R"("legal":{"min":-9,"max":9}}}},"value":-2.5},{"objectType":"dataStatic","matchName":"text",)"
            R"("displayName":"Text","dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":1,)"
            R"("maxLen":5,"eventMarkerB":false}},"value":"value"},{"objectType":"dataStatic","matchName":"flag",)"
            R"("displayName":"Flag","dataType":{"type":"boolean"},"value":true}]}]})");
  dlclose(module);
}

TEST(HostTablesDeathTest, SetupHostAPINeedsARecord) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(SK_PluginManager::SetupHostAPI(nullptr),
               "plugin/source/SK_PluginManager:[0-9]+: SetupHostAPI: Assertion `hostAPI != 0' failed");
}

}  // namespace
}  // namespace SK_PLUGIN
