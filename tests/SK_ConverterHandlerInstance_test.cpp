#include "SK_ConverterHandlerInstance.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "ModuleFolders.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterRegistry.h"
#include "SK_Module.h"
#include "SK_ModuleCall.h"
#include "SK_PluginException.h"
#include "SK_PluginManager.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::ModuleFolders;
using senmark_test::TempFolder;
using SK_NAMESPACE_INT::SK_PathInfo;

class Instance : public testing::Test {
 protected:
  Instance() : mModules(mFolder), mOpen(CountOpenDescriptors()) { SK_PluginManager::initialize("", ""); }
  ~Instance() override {
    SK_PluginManager::terminate();
    EXPECT_EQ(CountOpenDescriptors(), mOpen);
  }

  /// Makes a converter of a module of its own known under "ext".
  std::shared_ptr<SK_ConverterHandler> Add(std::string const& uid, char const* identifier = "good",
                                           char const* code = senmark_test::kTestModule) {
    auto const handler = std::make_shared<SK_ConverterHandler>(
        uid, false, std::make_shared<SK_Module>(mModules.Add("M.tdx", nullptr, identifier, code)));
    handler->setName("Name");
    SK_PluginManager::addConverterHandler("ext", handler);
    return handler;
  }

  bool Check(std::string const& content) {
    std::string uid = "ext";
    return Plugin_CheckFileFormat(uid, SK_PathInfo(mFolder.Write("input.ext", content), "ext"));
  }

  std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> Construct(std::string uid = "ext") {
    SK_PathInfo info(mFolder.Write("input.ext", "\1\2"), "ext");
    info.outputPath = mFolder.Write("output.tdjson", "");
    return Plugin_ConverterHandlerCTor(uid, info);
  }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::size_t mOpen;
};

TEST_F(Instance, SignaturesDecideWithoutTheModule) {
  Add("a")->addCheckFormat({0, 2, "0x4D5A"});
  EXPECT_TRUE(Check("MZ rest"));
  EXPECT_FALSE(Check("XZ rest"));
  EXPECT_FALSE(Check("M"));
  EXPECT_FALSE(Check(""));
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(Instance, EverySignatureMustMatch) {
  std::shared_ptr<SK_ConverterHandler> const handler = Add("a");
  handler->addCheckFormat({0, 2, "MZ"});
  handler->addCheckFormat({4, 2, "0x4142"});
  EXPECT_TRUE(Check("MZ..AB"));
  EXPECT_FALSE(Check("MZ..AC"));
  EXPECT_FALSE(Check("NZ..AB"));
  handler->addCheckFormat({0, 0, ""});
  EXPECT_FALSE(Check("MZ..AB"));
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(Instance, ModuleIsAskedWithoutSignatures) {
  Add("taker");
  EXPECT_TRUE(Check("any"));
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\ncheck taker\n");
  EXPECT_TRUE(Check("any"));
  EXPECT_EQ(mModules.TakeNotes(), "check taker\n");
}

TEST_F(Instance, ModuleMayRefuseOrSayNothing) {
  Add("refuse");
  EXPECT_FALSE(Check("any"));
  SK_PluginManager::initialize("", "");
  std::filesystem::remove_all(mModules.Path() + "/M.tdx");
  Add("silent-check");
  EXPECT_FALSE(Check("any"));
  EXPECT_EQ(mModules.TakeNotes(),
            "loaded\ninitialize good\ncheck refuse\nterminate\nunloaded\n"
            "loaded\ninitialize good\ncheck silent-check\n");
}

struct FailureRow {
  char const* uid;
  char const* identifier;
  int code;
  std::string message;
  long long offset;
  long long line;
};

TEST_F(Instance, FailuresOfTheCheckAreNamed) {
  FailureRow const rows[] = {
      {"fail-check", "good", 1705, "Error in Plugin Check File Format of converter Name with id fail-check.", 12, 3},
      {"throw-check", "good", 1034, "Error in Plugin Check File Format of converter Name with id throw-check.", -1, -1},
      {"a", "empty-table", 1500, "Error in Plugin Check File Format of converter Name with id a.", -1, -1},
      {"a", "fail-init", 1500, "Initialization of plugin with id fail-init failed.", -1, -1},
  };
  for (FailureRow const& row : rows) {
    SCOPED_TRACE(row.uid);
    SK_PluginManager::initialize("", "");
    std::filesystem::remove_all(mModules.Path() + "/M.tdx");
    Add(row.uid, row.identifier);
    ExpectError([&] { Check("any"); }, row.code, row.message, row.offset, row.line);
    EXPECT_EQ(CountOpenDescriptors(), mOpen);
  }
}

TEST_F(Instance, UnknownExtensionTakesNoFile) {
  EXPECT_FALSE(Check("any"));
  SK_PluginManager::terminate();
  EXPECT_FALSE(Check("any"));
}

TEST_F(Instance, FileThatCannotBeOpenedIsAnError) {
  Add("a");
  std::string uid = "ext";
  ExpectError([&] { Plugin_CheckFileFormat(uid, SK_PathInfo(mFolder.Path("nothing"), "ext")); }, 6,
              "File_IO::Open, failure.");
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(Instance, FileThatCannotBeReadIsAnError) {
  Add("a")->addCheckFormat({0, 1, "a"});
  std::string uid = "ext";
  ExpectError([&] { Plugin_CheckFileFormat(uid, SK_PathInfo(mFolder.TempPath(), "ext")); }, 11,
              "File_IO::Read, read failure.");
}

TEST_F(Instance, ConversionIsASessionOfTheModule) {
  Add("writer")->addCheckFormat({0, 1, "a"});
  {
    std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> const converter = Construct();
    ASSERT_NE(converter, nullptr);
    EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\nsession writer ext onto an existing file\n");
    EXPECT_TRUE(converter->convertToTDJSON());
    EXPECT_EQ(mModules.TakeNotes(), "convert writer\n");
  }
  EXPECT_EQ(mModules.TakeNotes(), "end of session\n");
  EXPECT_EQ(mFolder.Read(mFolder.Path("output.tdjson")),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
            R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}},"dataDynamicSamples":[)"
            R"({"sampleSetID":"bytes","samples":[{"time":"00:00:00:00","value":"001"},)"
            R"({"time":"00:00:00:01","value":"002"}]}],"dataOutline":[)"
            R"({"objectType":"dataDynamic","matchName":"bytes","displayName":"Bytes","sampleSetID":"bytes",)"
            R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
            R"("dataType":{"type":"numberString","numberStringProperties":{)"
            R"("pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":3},)"
            R"("range":{"occurring":{"min":0,"max":255},"legal":{"min":0,"max":255}}}}}]})");
}

TEST_F(Instance, SessionMayBeNull) {
  Add("null-session");
  std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> converter = Construct();
  ExpectError([&] { converter->convertToTDJSON(); }, 1506,
              "Conversion to TDJSON using converter Name with id null-session failed.");
  converter.reset();
  EXPECT_EQ(mModules.TakeNotes(),
            "loaded\ninitialize good\nsession null-session ext onto an existing file\nend of null session\n");
}

TEST_F(Instance, SessionThatDoesNotOpenIsNotClosed) {
  FailureRow const rows[] = {
      {"fail-session", "good", 1703, "Initialize Session Failed of converter Name with id fail-session.", 12, 3},
      {"throw-session", "good", 1023, "Initialize Session Failed of converter Name with id throw-session.", -1, -1},
      {"a", "empty-table", 1500, "Initialize Session Failed of converter Name with id a.", -1, -1},
      {"a", "fail-init", 1500, "Initialization of plugin with id fail-init failed.", -1, -1},
  };
  for (FailureRow const& row : rows) {
    SCOPED_TRACE(row.uid);
    SK_PluginManager::initialize("", "");
    std::filesystem::remove_all(mModules.Path() + "/M.tdx");
    Add(row.uid, row.identifier);
    ExpectError([&] { Construct(); }, row.code, row.message, row.offset, row.line);
    EXPECT_EQ(mModules.TakeNotes().find("end of"), std::string::npos);
  }
}

TEST_F(Instance, ModuleThatCannotBeLoadedIsNamedOnce) {
  Add("a", "bare", senmark_test::kBareModule);
  ExpectError([&] { Construct(); }, 1021, "Can't load module.");
  ExpectError([&] { Construct(); }, 1021, "Plugin not loaded.");
  ExpectError([&] { Check("any"); }, 1021, "Plugin " + mModules.Path() + "/M.tdx not loaded.");
}

TEST_F(Instance, UnknownExtensionHasNoConverter) {
  ExpectError([&] { Construct("other"); }, 1021, "Plugin not loaded.");
}

TEST_F(Instance, FailuresOfTheConversionAreNamed) {
  FailureRow const rows[] = {
      {"fail-convert", "good", 1706, "Conversion to TDJSON using converter Name with id fail-convert failed.", 12, 3},
      {"throw-convert", "good", 1023, "Conversion to TDJSON using converter Name with id throw-convert failed.", -1,
       -1},
      {"silent-convert", "good", 1506, "Conversion to TDJSON using converter Name with id silent-convert failed.", -1,
       -1},
  };
  for (FailureRow const& row : rows) {
    SCOPED_TRACE(row.uid);
    SK_PluginManager::initialize("", "");
    std::filesystem::remove_all(mModules.Path() + "/M.tdx");
    Add(row.uid, row.identifier);
    mModules.TakeNotes();
    std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> converter = Construct();
    ExpectError([&] { converter->convertToTDJSON(); }, row.code, row.message, row.offset, row.line);
    converter.reset();
    EXPECT_EQ(mModules.TakeNotes(), std::string("loaded\ninitialize good\nsession ") + row.uid +
                                        " ext onto an existing file\nconvert " + row.uid + "\nend of session\n");
  }
}

TEST_F(Instance, FailureToCloseASessionIsNotTold) {
  Add("fail-end");
  {
    std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> const converter = Construct();
    EXPECT_TRUE(converter->convertToTDJSON());
  }
  EXPECT_NE(mModules.TakeNotes().find("end of session\n"), std::string::npos);
}

TEST_F(Instance, KeepsItsModuleWhenTheManagerEnds) {
  Add("writer");
  std::shared_ptr<ns_sensor::SK_ConverterHandlerBase> converter = Construct();
  SK_PluginManager::terminate();
  EXPECT_EQ(mModules.TakeNotes().find("terminate"), std::string::npos);
  converter.reset();
  EXPECT_EQ(mModules.TakeNotes(), "end of session\nterminate\nunloaded\n");
}

TEST(ModuleCall, GivesTheRecordOfTheFunction) {
  void (*const success)(int, SK_PluginResult*) = [](int, SK_PluginResult*) {};
  EXPECT_FALSE(HasFailed(CallModule(success, 7)));
  void (*const failure)(int, SK_PluginResult*) = [](int code, SK_PluginResult* result) {
    result->mErrorCode = static_cast<eErrorCode>(code);
    result->mFileOffset = 5;
  };
  EXPECT_EQ(CallModule(failure, 1800).mErrorCode, 1800);
  EXPECT_EQ(CallModule(failure, 1800).mFileOffset, 5);
  EXPECT_TRUE(HasFailed(CallModule(failure, -1)));
}

TEST(ModuleCall, LetsNoExceptionOut) {
  constexpr auto kTestCode = static_cast<eErrorCode>(1999);
  void (*const noMemory)(SK_PluginResult*) = [](SK_PluginResult*) { throw std::bad_alloc(); };
  EXPECT_EQ(CallModule(noMemory).mErrorCode, 1034);
  void (*const anything)(SK_PluginResult*) = [](SK_PluginResult* result) {
    result->mErrorCode = static_cast<eErrorCode>(5);
    throw 1;
  };
  EXPECT_EQ(CallModule(anything).mErrorCode, 1023);
  EXPECT_EQ(CallModule(anything).mFileOffset, -1);
  void (*const withPlace)(SK_PluginResult*) = [](SK_PluginResult*) { throw SK_PluginException(kTestCode, 5, 6); };
  EXPECT_EQ(CallModule(withPlace).mErrorCode, kTestCode);
  EXPECT_EQ(CallModule(withPlace).mFileOffset, 5);
  EXPECT_EQ(CallModule(withPlace).mFileLineNo, 6);
}

TEST(ModuleCall, MissingFunctionHasFailed) {
  void (*const none)(SK_PluginResult*) = nullptr;
  EXPECT_EQ(CallModule(none).mErrorCode, 1500);
}

}  // namespace
}  // namespace SK_PLUGIN
