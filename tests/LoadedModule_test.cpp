#include "LoadedModule.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleFolders.h"
#include "StubHostAPI.h"

namespace senmark_test {
namespace {

using senmark_tool::CallEnd;
using senmark_tool::CallModule;
using senmark_tool::LoadedModule;
using senmark_tool::LoadFault;
using senmark_tool::StubHostAPI;
using eTable = LoadedModule::eTable;

class LoadedModules : public testing::Test {
 protected:
  std::string Add(char const* identifier, char const* code = kExplainingModule) const {
    return mModules.Add("A.tdx", "{}", identifier, code);
  }

  /// The fault of loading a module; empty if there is none.
  static std::string FaultOf(std::string const& folder) {
    try {
      LoadedModule const module(folder, StubHostAPI());
    } catch (LoadFault const& fault) {
      return fault.what();
    }
    return std::string();
  }

  TempFolder mFolder;
  ModuleFolders mModules{mFolder};
};

TEST_F(LoadedModules, LongTableIsFilledIn) {
  LoadedModule const module(Add("a"), StubHostAPI());
  EXPECT_EQ(module.Api().base.size, 56u);
  EXPECT_EQ(module.Api().base.version, 1u);
  EXPECT_NE(module.Api().base.checkFileFormat, nullptr);
  EXPECT_NE(module.Api().explainFile, nullptr);
}

TEST_F(LoadedModules, PlainTableIsThatOfTheLibrary) {
  LoadedModule const module(Add("writes-behind-the-table"), StubHostAPI(), eTable::kPlain);
  EXPECT_EQ(module.Api().base.size, 48u);
  EXPECT_EQ(module.Api().explainFile, nullptr);
}

TEST_F(LoadedModules, ModuleThatRefusesTheLongTableGetsThePlainOne) {
  LoadedModule const module(Add("only-48"), StubHostAPI());
  EXPECT_EQ(module.Api().base.size, 48u);
  EXPECT_NE(module.Api().base.checkFileFormat, nullptr);
  EXPECT_EQ(module.Api().explainFile, nullptr);
}

TEST_F(LoadedModules, ModuleOfAnotherMakeHasNoExplanation) {
  {
    LoadedModule const module(Add("good", kTestModule), StubHostAPI());
    EXPECT_EQ(module.Api().explainFile, nullptr);
    EXPECT_NE(module.Api().base.convertToTDJSON, nullptr);
  }
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good with tables that are wrong\nterminate\nunloaded\n");
}

TEST_F(LoadedModules, TableOfTheLibraryIsAsModulesKnowIt) {
  { LoadedModule const module(Add("good", kTestModule), StubHostAPI(), eTable::kPlain); }
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\nterminate\nunloaded\n");
}

TEST_F(LoadedModules, IsTerminatedOnce) {
  LoadedModule module(Add("fail-terminate", kTestModule), StubHostAPI(), eTable::kPlain);
  EXPECT_EQ(module.Terminate().result.mErrorCode, 1702);
  EXPECT_FALSE(module.Terminate().HasFailed());
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize fail-terminate\nterminate\nunloaded\n");
}

TEST_F(LoadedModules, FaultsAreNamed) {
  EXPECT_EQ(FaultOf(Add("fail-init")), "its initialisation failed with code 1701 at byte 12, line 3");
  std::filesystem::remove_all(mModules.Path() + "/A.tdx");
  EXPECT_EQ(FaultOf(Add("a", kBareModule)), "its code does not export InitializePlugin");
  std::filesystem::remove_all(mModules.Path() + "/A.tdx");
  EXPECT_NE(FaultOf(Add("a", kNeedyModule)).find("undefined symbol: NobodyProvidesThis"), std::string::npos);
  std::string const isCut = "its code is cut short: the file ends before what it says it holds";
  std::string const bytes = CodeBytes(kTestModule);
  for (std::size_t const size : {std::size_t{0}, std::size_t{64}, std::size_t{300}, bytes.size() / 2}) {
    mModules.SetCode("A.tdx", bytes.substr(0, size));
    EXPECT_EQ(FaultOf(mModules.Path() + "/A.tdx"), isCut) << size;
  }
}

TEST_F(LoadedModules, FailedInitialisationIsTerminated) {
  EXPECT_EQ(FaultOf(Add("throw-init", kTestModule)),
            "its initialisation threw an exception: something that is no std::exception");
  // Once with each table.
  EXPECT_EQ(mModules.TakeNotes(),
            "loaded\ninitialize throw-init with tables that are wrong\nterminate\nunloaded\n"
            "loaded\ninitialize throw-init\nterminate\nunloaded\n");
}

TEST_F(LoadedModules, CallsTellHowTheyEnded) {
  LoadedModule const module(Add("good", kTestModule), StubHostAPI(), eTable::kPlain);
  auto const check = [&](char const* uid, bool& accepted) {
    return CallModule(module.Api().base.checkFileFormat, "/", uid, &accepted);
  };
  bool accepted = false;
  CallEnd const good = check("a", accepted);
  EXPECT_FALSE(good.HasFailed());
  EXPECT_EQ(good.Text(), "");
  EXPECT_TRUE(accepted);
  EXPECT_EQ(check("fail-check", accepted).Text(), "failed with code 1705 at byte 12, line 3");
  CallEnd const thrown = check("throw-check", accepted);
  EXPECT_TRUE(thrown.HasFailed());
  EXPECT_EQ(thrown.Text(), "threw an exception: std::bad_alloc");
  CallEnd const missing = CallModule(static_cast<decltype(module.Api().base.terminate)>(nullptr));
  EXPECT_TRUE(missing.HasFailed());
  EXPECT_EQ(missing.Text(), "is missing from the module's table (code 1500)");
}

TEST_F(LoadedModules, PlaceOfAnErrorIsToldAsFarAsItIsKnown) {
  CallEnd end;
  end.result.mErrorCode = ns_sensor::kConversionFailed;
  EXPECT_EQ(end.Text(), "failed with code 1506");
  end.result.mFileLineNo = 7;
  EXPECT_EQ(end.Text(), "failed with code 1506 at line 7");
  end.result.mFileOffset = 0;
  EXPECT_EQ(end.Text(), "failed with code 1506 at byte 0, line 7");
}

TEST(StubHost, RefusesToMakeAnything) {
  SK_PLUGIN::HostAPI const& host = *StubHostAPI();
  EXPECT_EQ(host.mSize, 32u);
  EXPECT_EQ(host.mVersion, 1u);
  SK_PLUGIN::TDJSONWriter_API const& writer = *host.mTdjsonWriterAPI;
  void* key = &key;
  void* out = nullptr;
  unsigned char existed = 2;
  auto const refuses = [&](auto&& call) {
    SK_PLUGIN::SK_PluginResult result;
    call(&result);
    return result.mErrorCode == ns_sensor::kInternalFailure && out == nullptr;
  };
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateRoot(key, "a", nullptr, &out, &existed, 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateGroup(key, &out, "a", "a", 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateDynamicDataNumArr(key, &out, 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateDynamicDataNum(key, &out, 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateDynamicDataString(key, &out, 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateStaticDataNum(key, &out, "a", "a", 1.5, 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateStaticDataNumArr(key, &out, "a", "a", 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateStaticDataString(key, &out, "a", "a", "b", 1, r); }));
  EXPECT_TRUE(refuses([&](void* r) { writer.Static_CreateStaticDataBool(key, &out, "a", "a", 1, 1, r); }));
  SK_PLUGIN::SK_PluginResult result;
  host.mHandleMemoryAPI->Static_RemoveConverterFromMap(key, &result);
  EXPECT_EQ(result.mErrorCode, ns_sensor::kNoError);
  host.mHandleExceptionAPI->Static_SetPluginErrorObj(&result, ns_sensor::kReadFailed, 5, 6);
  EXPECT_EQ(result.mErrorCode, ns_sensor::kReadFailed);
  EXPECT_EQ(result.mFileOffset, 5);
  EXPECT_EQ(result.mFileLineNo, 6);
}

}  // namespace
}  // namespace senmark_test
