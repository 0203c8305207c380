#include "SK_Module.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <type_traits>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "ModuleFolders.h"
#include "SK_HostAPIImpl.h"
#include "SK_PluginManager.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using senmark_test::ModuleFolders;
using senmark_test::TempFolder;

static_assert(std::is_same_v<decltype(&InitializePlugin), InitializePluginProc>);

class Module : public testing::Test {
 protected:
  Module() : mModules(mFolder), mOpen(CountOpenDescriptors()) { SK_PluginManager::initialize("", ""); }
  ~Module() override {
    SK_PluginManager::terminate();
    EXPECT_EQ(CountOpenDescriptors(), mOpen);
  }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::size_t mOpen;
};

TEST_F(Module, LoadsOnceAndUnloadsAtItsEnd) {
  {
    SK_Module module(mModules.Add("Good.tdx", nullptr, "good one"));
    EXPECT_EQ(module.getPath(), mModules.Path() + "/Good.tdx");
    EXPECT_EQ(mModules.TakeNotes(), "");
    EXPECT_TRUE(module.load());
    EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good one\n");
    EXPECT_TRUE(module.load());
    PluginAPI const* const api = module.getPluginAPIs();
    ASSERT_NE(api, nullptr);
    EXPECT_EQ(api->size, 48u);
    EXPECT_EQ(api->version, 1u);
    EXPECT_NE(api->terminate, nullptr);
    EXPECT_EQ(mModules.TakeNotes(), "");
  }
  EXPECT_EQ(mModules.TakeNotes(), "terminate\nunloaded\n");
}

TEST_F(Module, AskingForItsFunctionsLoadsIt) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  EXPECT_NE(module.getPluginAPIs(), nullptr);
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\n");
}

TEST_F(Module, NothingHappensToOneThatWasNeverLoaded) {
  {
    SK_Module module(mModules.Add("Good.tdx", nullptr));
    module.unload();
  }
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(Module, CanBeUnloadedAndLoadedAgain) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  module.load();
  module.unload();
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\nterminate\nunloaded\n");
  EXPECT_TRUE(module.load());
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\n");
}

TEST_F(Module, WithoutIdentifierGetsAnEmptyOne) {
  SK_Module module(mModules.Add("Good.tdx", nullptr, nullptr));
  EXPECT_TRUE(module.load());
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize \n");
}

TEST_F(Module, WithoutEntryIsNotTriedAgain) {
  SK_Module module(mModules.Add("Bare.tdx", nullptr, "bare", senmark_test::kBareModule));
  ExpectError([&] { module.load(); }, 1021, "Can't load module.");
  EXPECT_FALSE(module.load());
  ExpectError([&] { module.getPluginAPIs(); }, 1021, "Plugin " + module.getPath() + " not loaded.");
}

TEST_F(Module, WhoseCodeCannotBeLoadedIsNotTriedAgain) {
  SK_Module module(mModules.Add("Needy.tdx", nullptr, "needy", senmark_test::kNeedyModule));
  ExpectError([&] { module.getPluginAPIs(); }, 1021, "Failed to load module.");
  EXPECT_FALSE(module.load());
  ExpectError([&] { module.getPluginAPIs(); }, 1021, "Plugin " + module.getPath() + " not loaded.");
}

TEST_F(Module, ThatIsNoFolderCannotBeLoaded) {
  SK_Module module(mFolder.Write("file.tdx", "text"));
  ExpectError([&] { module.load(); }, 1021, "Can't load module.");
  EXPECT_FALSE(module.load());
}

TEST_F(Module, WhoseInitialisationFailsIsUnloadedAndTriedAgain) {
  for (char const* const identifier : {"fail-init", "throw-init", "fail-init fail-terminate"}) {
    SCOPED_TRACE(identifier);
    SK_Module module(mModules.Add("Bad.tdx", nullptr, identifier));
    for (int i = 0; i < 2; ++i) {
      ExpectError([&] { module.load(); }, 1500,
                  std::string("Initialization of plugin with id ") + identifier + " failed.");
      EXPECT_EQ(mModules.TakeNotes(), std::string("loaded\ninitialize ") + identifier + "\nterminate\nunloaded\n");
    }
    std::filesystem::remove_all(module.getPath());
  }
}

TEST_F(Module, TableThatWasNotFilledInEndsQuietly) {
  {
    SK_Module module(mModules.Add("Empty.tdx", nullptr, "empty-table"));
    EXPECT_TRUE(module.load());
  }
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize empty-table\nunloaded\n");
}

TEST_F(Module, FailureToEndIsToldAfterItIsUnloaded) {
  SK_Module failing(mModules.Add("Failing.tdx", nullptr, "fail-terminate"));
  failing.load();
  mModules.TakeNotes();
  ExpectError([&] { failing.unload(); }, 1702, "Terminate of Plugin with id fail-terminate failed", 12, 3);
  EXPECT_EQ(mModules.TakeNotes(), "terminate\nunloaded\n");
  SK_Module throwing(mModules.Add("Throwing.tdx", nullptr, "throw-terminate"));
  throwing.load();
  mModules.TakeNotes();
  ExpectError([&] { throwing.unload(); }, 1023, "Terminate of Plugin with id throw-terminate failed");
  EXPECT_EQ(mModules.TakeNotes(), "terminate\nunloaded\n");
}

TEST_F(Module, FailureToEndIsNotToldByItsDestructor) {
  {
    SK_Module failing(mModules.Add("Failing.tdx", nullptr, "fail-terminate"));
    failing.load();
  }
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize fail-terminate\nterminate\nunloaded\n");
}

TEST_F(Module, WriterReportsByItselfOnceTheModuleIsGone) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  SK_Module other(mModules.Add("Other.tdx", nullptr));
  other.load();
  // Any address in the module stands for a procedure of its own.
  auto const inside = reinterpret_cast<SetErrorProc>(reinterpret_cast<void*>(module.getPluginAPIs()->terminate));
  gSetWriterErrorObjectProc = inside;
  other.unload();
  EXPECT_EQ(gSetWriterErrorObjectProc, inside);
  module.unload();
  EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
}

TEST_F(Module, ItsProcedureIsNotUsedThoughSomebodyElseKeepsTheCode) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  gSetWriterErrorObjectProc =
      reinterpret_cast<SetErrorProc>(reinterpret_cast<void*>(module.getPluginAPIs()->terminate));
  void* const kept = dlopen(mModules.CodePath("Good.tdx").c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(kept, nullptr);
  module.unload();
  EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
  dlclose(kept);
}

TEST_F(Module, ProcedureOfCodeThatWentWithItIsNotUsed) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  module.load();
  mModules.Add("Other.tdx", nullptr, nullptr, senmark_test::kBareModule);
  void* const other = dlopen(mModules.CodePath("Other.tdx").c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(other, nullptr);
  gSetWriterErrorObjectProc = reinterpret_cast<SetErrorProc>(dlsym(other, "SomethingElse"));
  ASSERT_NE(gSetWriterErrorObjectProc, nullptr);
  dlclose(other);
  module.unload();
  EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
}

TEST_F(Module, ProcedureOfTheHostStaysWhenAModuleGoes) {
  SK_Module module(mModules.Add("Good.tdx", nullptr));
  module.load();
  SetErrorProc const own = [](void*, eErrorCode, long long, long long) {};
  gSetWriterErrorObjectProc = own;
  module.unload();
  EXPECT_EQ(gSetWriterErrorObjectProc, own);
  gSetWriterErrorObjectProc = Static_SetPluginErrorObj;
}

}  // namespace
}  // namespace SK_PLUGIN
