#include "SK_OSUtils.h"

#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "ModuleFolders.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

class OSUtils : public testing::Test {
 protected:
  OSUtils() : mModules(mFolder), mOpen(CountOpenDescriptors()) {}
  ~OSUtils() override { EXPECT_EQ(CountOpenDescriptors(), mOpen); }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::size_t mOpen;
};

TEST_F(OSUtils, CodeForThisMachineIsValidAndNotLoaded) {
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(mModules.Add("Good.tdx", nullptr)));
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(mModules.Add("Two.Points.tdx", nullptr)));
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(OSUtils, FolderWithoutCodeIsNotValid) {
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(mFolder.Path("nothing.tdx")));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(mModules.Add("Empty.tdx", nullptr, nullptr, nullptr)));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(mFolder.Write("file.tdx", "")));
  // The name of the code is that of the folder, in the same case.
  std::string const other = mModules.Add("Other.tdx", nullptr);
  fs::rename(mModules.CodePath("Other.tdx"), fs::path(mModules.CodePath("Other.tdx")).replace_filename("other.so"));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(other));
  // A folder for another machine only.
  std::string const foreign = mModules.Add("Foreign.tdx", nullptr);
  fs::rename(foreign + "/Contents/" + Machine() + "-linux", foreign + "/Contents/abacus-linux");
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(foreign));
}

struct HeadRow {
  char const* name;
  std::size_t offset;
  int change;
};
HeadRow const kHeads[] = {
    {"Mark", 1, 1},
    {"WidthOfAddresses", EI_CLASS, 3},
    {"OrderOfBytes", EI_DATA, 3},
    {"KindIsProgram", offsetof(Elf64_Ehdr, e_type), ET_DYN ^ ET_EXEC},
    {"KindIsObject", offsetof(Elf64_Ehdr, e_type), ET_DYN ^ ET_REL},
    {"Machine", offsetof(Elf64_Ehdr, e_machine), 0x55},
    {"MachineHighByte", offsetof(Elf64_Ehdr, e_machine) + 1, 0x55},
};

TEST_F(OSUtils, CodeThatTheHeadRulesOutIsNotValid) {
  std::string const path = mModules.Add("Bad.tdx", nullptr);
  std::string const good = CodeBytes(kTestModule);
  for (HeadRow const& row : kHeads) {
    std::string bad = good;
    bad[row.offset] = static_cast<char>(bad[row.offset] ^ row.change);
    mModules.SetCode("Bad.tdx", bad);
    EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path)) << row.name;
  }
  for (std::string const& bad : {std::string(), std::string("text"), good.substr(0, sizeof(Elf64_Ehdr) - 1)}) {
    mModules.SetCode("Bad.tdx", bad);
    EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path)) << bad.size();
  }
  // The head is all that is looked at.
  mModules.SetCode("Bad.tdx", good.substr(0, sizeof(Elf64_Ehdr)));
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(path));
}

TEST_F(OSUtils, CodeThatCannotBeReadIsNotValid) {
  std::string const path = mModules.Add("Good.tdx", nullptr);
  {
    FailingCall const failing(kOpen, EACCES);
    EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path));
  }
  fs::remove(mModules.CodePath("Good.tdx"));
  ASSERT_EQ(mkfifo(mModules.CodePath("Good.tdx").c_str(), 0600), 0);
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path));
  fs::remove(mModules.CodePath("Good.tdx"));
  fs::create_directory(mModules.CodePath("Good.tdx"));
  EXPECT_FALSE(SK_OSUtils::IsValidLibrary(path));
}

TEST_F(OSUtils, OpenedForResourcesRunsNothing) {
  SK_OSUtils::ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(module, "InitializePlugin"), nullptr);
  std::string data = "before";
  EXPECT_TRUE(SK_OSUtils::GetResourceDataFromModule(module, "SKPLUGINUIDS", "txt", data));
  EXPECT_EQ(data, "text");
  SK_OSUtils::UnloadModule(module, true);
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(OSUtils, LoadedCodeIsFoundByName) {
  SK_OSUtils::ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", nullptr, "text\n"), false);
  ASSERT_NE(module, nullptr);
  EXPECT_EQ(mModules.TakeNotes(), "loaded\n");
  void* const entry = SK_OSUtils::GetFunctionPointerFromModuleImpl(module, "InitializePlugin");
  EXPECT_NE(entry, nullptr);
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(module, "NoSuchName"), nullptr);
  // Only there: the names of one module do not stand for those of another.
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "InitializePlugin"), nullptr);
  EXPECT_NE(SK_OSUtils::GetImage(entry), nullptr);
  EXPECT_NE(SK_OSUtils::GetImage(entry), SK_OSUtils::GetImage(reinterpret_cast<void*>(&CodeBytes)));
  std::string data;
  EXPECT_TRUE(SK_OSUtils::GetResourceDataFromModule(module, "MODULE_IDENTIFIER", "txt", data));
  EXPECT_EQ(data, "text\n");
  SK_OSUtils::UnloadModule(module, false);
  EXPECT_EQ(mModules.TakeNotes(), "unloaded\n");
  EXPECT_EQ(SK_OSUtils::GetImage(entry), nullptr);
}

TEST_F(OSUtils, CodeThatCannotBeLoadedIsAnError) {
  std::string const needy = mModules.Add("Needy.tdx", nullptr, nullptr, kNeedyModule);
  EXPECT_TRUE(SK_OSUtils::IsValidLibrary(needy));
  ExpectError([&] { SK_OSUtils::LoadModule(needy, false); }, 1021, "Failed to load module.");
  std::string const none = mModules.Add("None.tdx", nullptr, nullptr, nullptr);
  ExpectError([&] { SK_OSUtils::LoadModule(none, false); }, 1021, "Failed to load module.");
}

/// The end of what is loaded of a shared object.
std::size_t EndOfSegments(std::string const& code) {
  auto const& head = *reinterpret_cast<Elf64_Ehdr const*>(code.data());
  auto const* const segments = reinterpret_cast<Elf64_Phdr const*>(code.data() + head.e_phoff);
  std::size_t end = 0;
  for (int i = 0; i < head.e_phnum; ++i) {
    end = std::max(end, segments[i].p_type == PT_LOAD ? segments[i].p_offset + segments[i].p_filesz : 0);
  }
  return end;
}

TEST_F(OSUtils, CodeThatWasCopiedHalfIsAnError) {
  std::string const cut = mModules.Add("Cut.tdx", nullptr, nullptr, nullptr);
  std::string const whole = CodeBytes(kTestModule);
  for (std::size_t const size : {sizeof(Elf64_Ehdr) - 1, sizeof(Elf64_Ehdr), std::size_t{200}, std::size_t{1000},
                                 std::size_t{5000}, whole.size() / 2, EndOfSegments(whole) - 1}) {
    mModules.SetCode("Cut.tdx", whole.substr(0, size));
    ExpectError([&] { SK_OSUtils::LoadModule(cut, false); }, 1021, "Failed to load module.");
  }
  mModules.SetCode("Cut.tdx", whole);
  SK_OSUtils::UnloadModule(SK_OSUtils::LoadModule(cut, false), false);
  EXPECT_EQ(mModules.TakeNotes(), "loaded\nunloaded\n");
}

TEST_F(OSUtils, WhatIsNoFolderIsNoModule) {
  for (bool const resourcesOnly : {false, true}) {
    EXPECT_EQ(SK_OSUtils::LoadModule(mFolder.Write("file.tdx", ""), resourcesOnly), nullptr);
    EXPECT_EQ(SK_OSUtils::LoadModule(mFolder.Path("nothing.tdx"), resourcesOnly), nullptr);
    SK_OSUtils::UnloadModule(nullptr, resourcesOnly);
  }
  std::string data = "before";
  EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(nullptr, "SKPLUGINUIDS", "txt", data));
  EXPECT_EQ(SK_OSUtils::GetFunctionPointerFromModuleImpl(nullptr, "InitializePlugin"), nullptr);
  EXPECT_EQ(data, "before");
}

TEST_F(OSUtils, ResourcesAreReadWhole) {
  std::string const path = mModules.Add("Good.tdx", nullptr, nullptr);
  SK_OSUtils::ModuleRef const module = SK_OSUtils::LoadModule(path, true);
  for (std::size_t const size : {std::size_t{0}, std::size_t{1}, std::size_t{65535}, std::size_t{65536},
                                 std::size_t{65537}, std::size_t{200000}}) {
    std::string const content = std::string(size, 'x') + std::string("\0y", size > 2 ? 2 : 0);
    mFolder.Write("modules/Good.tdx/Contents/Resources/Name.type", content);
    std::string data = "before";
    EXPECT_TRUE(SK_OSUtils::GetResourceDataFromModule(module, "Name", "type", data));
    EXPECT_EQ(data, content);
  }
  SK_OSUtils::UnloadModule(module, true);
}

TEST_F(OSUtils, ResourceThatIsNotThereOrCannotBeReadIsNone) {
  SK_OSUtils::ModuleRef const module = SK_OSUtils::LoadModule(mModules.Add("Good.tdx", "text"), true);
  std::string data = "before";
  EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(module, "NoSuchName", "txt", data));
  EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(module, "SKPLUGINUIDS", "json", data));
  {
    FailingCall const failing(kOpen, EACCES);
    EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(module, "SKPLUGINUIDS", "txt", data));
  }
  std::string const manifest = mModules.ResourcePath("Good.tdx", "SKPLUGINUIDS");
  fs::remove(manifest);
  ASSERT_EQ(mkfifo(manifest.c_str(), 0600), 0);
  EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(module, "SKPLUGINUIDS", "txt", data));
  EXPECT_EQ(data, "before");
  SK_OSUtils::UnloadModule(module, true);
}

TEST_F(OSUtils, OwnFolderIsOpenForItsResources) {
  SK_OSUtils::ModuleRef const module = SK_OSUtils::GetModuleRef("");
  ASSERT_NE(module, nullptr);
  std::string data;
  EXPECT_FALSE(SK_OSUtils::GetResourceDataFromModule(module, "NoSuchName", "txt", data));
  SK_OSUtils::UnloadModule(module, true);
}

}  // namespace
}  // namespace senmark_test
