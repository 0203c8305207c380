// The operations on bundles, with every object of CoreFoundation counted.
#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <filesystem>
#include <functional>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "FakeCoreFoundation.h"
#include "ModuleFolders.h"
#include "SK_OSUtils.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;
using fake_mac::Architectures;
using fake_mac::FailingCoreFoundation;
using SK_OSUtils::ModuleRef;

constexpr CFIndex kIntel = 0x01000007;
constexpr CFIndex kArm = 0x0100000c;
constexpr CFIndex kPowerPC = 0x12;

class OSUtilsMac : public testing::Test {
 protected:
  OSUtilsMac() : mModules(mFolder), mOpen(CountOpenDescriptors()) {}
  ~OSUtilsMac() override {
    EXPECT_EQ(fake_mac::LiveObjects(), 0u);
    EXPECT_EQ(CountOpenDescriptors(), mOpen);
  }

  void AddProperties(std::string const& name, std::string const& identifier) {
    mFolder.Write("modules/" + name + "/Contents/Info.plist",
                  "<plist><dict><key>CFBundleIdentifier</key><string>" + identifier + "</string></dict></plist>");
  }

  std::string Resource(ModuleRef module, std::string const& name, std::string const& type) {
    std::string data = "before";
    bool const found = SK_OSUtils::GetResourceDataFromModule(module, name, type, data);
    EXPECT_TRUE(found || data == "before");
    return found ? "found " + data : "none";
  }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::size_t mOpen;
};

TEST_F(OSUtilsMac, BundleWithCodeForThisMachineIsValidAndNotLoaded) {
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(mModules.Add("Good.tdx", nullptr)));
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(mModules.Add("G\xc3\xbct \xf0\x9f\x9a\xb2.tdx", nullptr)));
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(OSUtilsMac, OneOfSeveralArchitecturesIsEnough) {
  std::string const path = mModules.Add("Good.tdx", nullptr);
  CFIndex const own = [] { return Machine() == "x86_64" ? kIntel : kArm; }();
  CFIndex const other = own == kIntel ? kArm : kIntel;
  struct Row {
    std::vector<CFIndex> architectures;
    bool expected;
  };
  for (Row const& row : {Row{{own}, true}, Row{{other, own}, true}, Row{{kPowerPC, other, own}, true},
                         Row{{own, other}, true}, Row{{other}, false}, Row{{kPowerPC, other}, false}, Row{{}, false}}) {
    Architectures const said(row.architectures);
    EXPECT_EQ(SK_OSUtils::IsValidLibrary(path), row.expected) << row.architectures.size();
  }
}

TEST_F(OSUtilsMac, WhatHasNoCodeForThisMachineIsNotValid) {
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(mFolder.Path("nothing.tdx")));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(std::string()));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(mFolder.Write("file.tdx", "")));
  std::string const path = mModules.Add("Empty.tdx", nullptr, nullptr, nullptr);
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path));
  std::string code = CodeBytes(kTestModule);
  code[offsetof(Elf64_Ehdr, e_machine)] ^= 0x55;
  for (std::string const& bad : {std::string(), std::string("text"), code}) {
    mModules.SetCode("Empty.tdx", bad);
    EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path)) << bad.size();
  }
}

TEST_F(OSUtilsMac, OpenedForResourcesRunsNothing) {
  ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  ASSERT_NE(module, nullptr);
  // Looking for a function would load the code.
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(module, "InitializePlugin"), nullptr);
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "txt"), "found text");
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "json"), "none");
  EXPECT_EQ(Resource(module, "NoSuchName", "txt"), "none");
  EXPECT_EQ(Resource(module, "\xff", "txt"), "none");
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "\xff"), "none");
  SK_OSUtils::UnloadModule(module, true);
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(OSUtilsMac, CodeIsLoadedOnceAndGoesWithTheLastHandle) {
  std::string const path = mModules.Add("Good.tdx", nullptr, "text\n");
  ModuleRef const first = SK_OSUtils::LoadModule(path, false);
  ModuleRef const second = SK_OSUtils::LoadModule(path, false);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(mModules.TakeNotes(), "loaded\n");
  void* const entry = SK_OSUtils::GetFunctionPointerFromModuleImpl(first, "InitializePlugin");
  EXPECT_NE(entry, nullptr);
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(second, "InitializePlugin"), entry);
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(first, "NoSuchName"), nullptr);
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(first, "\xff"), nullptr);
  EXPECT_EQ(Resource(first, "MODULE_IDENTIFIER", "txt"), "found text\n");
  SK_OSUtils::UnloadModule(first, false);
  EXPECT_EQ(mModules.TakeNotes(), "");
  SK_OSUtils::UnloadModule(second, false);
  EXPECT_EQ(mModules.TakeNotes(), "unloaded\n");
}

TEST_F(OSUtilsMac, CodeThatCannotBeLoadedIsAnError) {
  std::string const needy = mModules.Add("Needy.tdx", nullptr, nullptr, kNeedyModule);
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(needy));
  ExpectError([&] { SK_OSUtils::LoadModule(needy, false); }, 1021, "Failed to load module.");
  std::string const none = mModules.Add("None.tdx", nullptr, nullptr, nullptr);
  ExpectError([&] { SK_OSUtils::LoadModule(none, false); }, 1021, "Failed to load module.");
}

TEST_F(OSUtilsMac, WhatIsNoFolderIsNoModule) {
  for (bool const resourcesOnly : {false, true}) {
    EXPECT_EQ(SK_OSUtils::LoadModule(mFolder.Write("file.tdx", ""), resourcesOnly), nullptr);
    EXPECT_EQ(SK_OSUtils::LoadModule(mFolder.Path("nothing.tdx"), resourcesOnly), nullptr);
    SK_OSUtils::UnloadModule(nullptr, resourcesOnly);
  }
  EXPECT_EQ(Resource(nullptr, "SKPLUGINUIDS", "txt"), "none");
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(nullptr, "InitializePlugin"), nullptr);
}

TEST_F(OSUtilsMac, ResourcesAreReadWhole) {
  ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", nullptr, nullptr), true);
  for (std::size_t const size : {std::size_t{0}, std::size_t{1}, std::size_t{65535}, std::size_t{65536},
                                 std::size_t{65537}, std::size_t{200000}}) {
    std::string const content = std::string(size, 'x') + std::string("\0y", size > 2 ? 2 : 0);
    mFolder.Write("modules/Good.tdx/Contents/Resources/N\xc3\xa4me.type", content);
    EXPECT_EQ(Resource(module, "N\xc3\xa4me", "type"), "found " + content);
  }
  SK_OSUtils::UnloadModule(module, true);
}

TEST_F(OSUtilsMac, ResourceThatIsNoFileIsNone) {
  ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  std::string const manifest = mModules.ResourcePath("Good.tdx", "SKPLUGINUIDS");
  // A link is what it leads to.
  fs::rename(manifest, manifest + ".real");
  fs::create_symlink(manifest + ".real", manifest);
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "txt"), "found text");
  fs::remove(manifest);
  fs::create_directory(manifest);
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "txt"), "none");
  fs::remove(manifest);
  // Nobody writes to this pipe: a read would not end.
  ASSERT_EQ(mkfifo(manifest.c_str(), 0600), 0);
  EXPECT_EQ(Resource(module, "SKPLUGINUIDS", "txt"), "none");
  SK_OSUtils::UnloadModule(module, true);
}

TEST_F(OSUtilsMac, OwnBundleIsFoundByItsIdentifier) {
  EXPECT_EQ(SK_OSUtils::GetModuleRef("org.example.good"), nullptr);
  EXPECT_EQ(SK_OSUtils::GetModuleRef("\xff"), nullptr);
  ModuleRef const loaded = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  AddProperties("Good.tdx", "org.example.good");
  ModuleRef const found = SK_OSUtils::GetModuleRef("org.example.good");
  ASSERT_NE(found, nullptr);
  // It has a reference of its own.
  SK_OSUtils::UnloadModule(loaded, true);
  EXPECT_EQ(Resource(found, "SKPLUGINUIDS", "txt"), "found text");
  SK_OSUtils::UnloadModule(found, true);
  EXPECT_EQ(SK_OSUtils::GetModuleRef("org.example.good"), nullptr);
}

/// Repeats `use` with each of its calls of CoreFoundation failing in turn, until none is left that could. `use` gives
/// what its result was.
void FailEachCall(std::function<std::string()> const& use, std::string const& failure, std::string const& success,
                  int expectedCalls) {
  std::size_t const before = fake_mac::LiveObjects();
  for (int passed = 0; passed <= expectedCalls; ++passed) {
    FailingCoreFoundation const failing(passed);
    std::string const result = use();
    EXPECT_EQ(failing.HasFailed(), passed < expectedCalls) << passed;
    EXPECT_EQ(result, failing.HasFailed() ? failure : success) << passed;
    EXPECT_EQ(fake_mac::LiveObjects(), before) << passed;
  }
}

TEST_F(OSUtilsMac, EveryFailureOfTheSystemIsTakenAndNothingLeaks) {
  std::string const path = mModules.Add("Good.tdx", "text");
  auto const answer = [](bool yes) { return yes ? "yes" : "no"; };
  FailEachCall([&] { return answer(SK_OSUtils::IsValidLibrary(path)); }, "no", "yes", 4);
  auto const load = [&](bool resourcesOnly) {
    try {
      ModuleRef const module = SK_OSUtils::LoadModule(path, resourcesOnly);
      SK_OSUtils::UnloadModule(module, resourcesOnly);
      return answer(module != nullptr);
    } catch (ns_sensor::SK_Exception const&) {
      return answer(false);
    }
  };
  FailEachCall([&] { return load(true); }, "no", "yes", 2);
  FailEachCall([&] { return load(false); }, "no", "yes", 3);
  AddProperties("Good.tdx", "org.example.good");
  ModuleRef const module = SK_OSUtils::LoadModule(path, false);
  auto const function = [&] {
    return answer(SK_OSUtils::GetFunctionPointerFromModuleImpl(module, "InitializePlugin") != nullptr);
  };
  FailEachCall(function, "no", "yes", 2);
  auto const find = [&] {
    ModuleRef const found = SK_OSUtils::GetModuleRef("org.example.good");
    SK_OSUtils::UnloadModule(found, true);
    return answer(found != nullptr);
  };
  FailEachCall(find, "no", "yes", 2);
  SK_OSUtils::UnloadModule(module, false);
}

TEST_F(OSUtilsMac, FailuresWhileAResourceIsReadAreTakenAndNothingLeaks) {
  ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  std::size_t const before = fake_mac::LiveObjects();
  std::string results;
  bool failed = true;
  for (int passed = 0; failed; ++passed) {
    FailingCoreFoundation const failing(passed);
    results += Resource(module, "SKPLUGINUIDS", "txt") + '\n';
    failed = failing.HasFailed();
    EXPECT_EQ(fake_mac::LiveObjects(), before) << passed;
    EXPECT_EQ(CountOpenDescriptors(), mOpen) << passed;
  }
  // Names, place, path, stream and its opening; its size, which is a help and no more, in two steps; two reads.
  EXPECT_EQ(results, "none\nnone\nnone\nnone\nnone\nnone\nfound text\nfound text\nnone\nnone\nfound text\n");
  SK_OSUtils::UnloadModule(module, true);
}

}  // namespace
}  // namespace senmark_test
