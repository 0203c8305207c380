// The wrapper in a program that is not linked with the library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "NumberSetFile.h"
#include "TempFolder.h"
#include "senmark/Host.h"

namespace {

using senmark_test::NumberSetFile;
using senmark_test::TempFolder;

std::string const kRecording = std::string(SENMARK_TEST_DATA) + "/dab_30hz_v2.tdjson";

int CodeOf(std::function<void()> const& work) {
  senmark::Result<void> const result = senmark::attempt([&] { work(); });
  return result ? 0 : result.error().code();
}

/// The module with a copy of the wrapper of its own.
class Module {
 public:
  Module() : mHandle(dlopen(SENMARK_HOST_MODULE, RTLD_NOW | RTLD_LOCAL)) { EXPECT_NE(mHandle, nullptr) << dlerror(); }
  ~Module() { dlclose(mHandle); }
  Module(Module const&) = delete;
  Module& operator=(Module const&) = delete;

  template <class Function>
  Function* Find(char const* name) const {
    return reinterpret_cast<Function*>(dlsym(mHandle, name));
  }

 private:
  void* mHandle;
};

TEST(HostLoaded, OpensAFile) {
  TempFolder const folder;
  senmark::Senmark const manager(senmark::Library::Load(SENMARK_LIBRARY));
  senmark::File const file = manager.open(kRecording);
  EXPECT_EQ(file.info().version, "tdjson2.0.0");
  EXPECT_FALSE(file.children().empty());
}

TEST(HostLoaded, WhatIsNoLibraryOfThisKindIsRefused) {
  EXPECT_EQ(CodeOf([] { senmark::Library::Load("/nowhere/libsenmark.so"); }), ns_sensor::kCannotOpenFile);
  EXPECT_EQ(CodeOf([] { senmark::Library::Load(kRecording); }), ns_sensor::kCannotOpenFile);
  senmark::Result<senmark::Library> const other =
      senmark::attempt([] { return senmark::Library::Load(SENMARK_HOST_MODULE); });
  ASSERT_FALSE(other);
  EXPECT_EQ(other.error().code(), ns_sensor::kCannotOpenFile);
  EXPECT_NE(other.error().message().find("CreateSenmark_1"), std::string::npos);
}

/// Whichever copy comes first, the answers of each arrive at it. The raw border would send all of them to
/// the procs of the first table.
void BothCopiesGetTheirAnswers(bool moduleFirst) {
  TempFolder const folder;
  std::string const path = folder.Write("file.tdjson", NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text());
  Module const module;
  auto* const count = module.Find<long(char const*, char const*)>("HostModuleCountSamples");
  ASSERT_NE(count, nullptr);
  if (moduleFirst) {
    EXPECT_EQ(count(SENMARK_LIBRARY, path.c_str()), 3);
  }
  senmark::Senmark const manager(senmark::Library::Load(SENMARK_LIBRARY));
  EXPECT_EQ(manager.open(path).samples("s").all().collect().size(), 3u);
  EXPECT_EQ(count(SENMARK_LIBRARY, path.c_str()), 3);
  EXPECT_EQ(count(SENMARK_LIBRARY, "/nowhere/file.tdjson"), -ns_sensor::kFileNotFound);
  EXPECT_EQ(CodeOf([&] { manager.open("/nowhere/file.tdjson"); }), ns_sensor::kFileNotFound);
}

TEST(HostLoaded, TwoCopiesWithTheProgramFirst) {
  BothCopiesGetTheirAnswers(false);
}

TEST(HostLoaded, TwoCopiesWithTheModuleFirst) {
  BothCopiesGetTheirAnswers(true);
}

TEST(HostLoaded, AllCopiesShareOneLock) {
  TempFolder const folder;
  senmark::detail::Session const session(senmark::Library::Load(SENMARK_LIBRARY), nullptr, nullptr, nullptr);
  Module const module;
  auto* const shared = module.Find<void const*(char const*)>("HostModuleSharedState");
  auto* const own = module.Find<void const*()>("HostModuleOwnState");
  ASSERT_NE(shared, nullptr);
  ASSERT_NE(own, nullptr);
  EXPECT_NE(own(), senmark::detail::OwnSharedState()) << "the module does not hide its copy";
  EXPECT_EQ(shared(SENMARK_LIBRARY), session.shared());
}

/// When the copy whose table the library has taken goes, its code must stay.
TEST(HostLoaded, ModuleWithTheTableMayBeClosed) {
  TempFolder const folder;
  std::string const path = folder.Write("file.tdjson", NumberSetFile::Smpte(30).Add("s", {0, 1}).Text());
  {
    Module const module;
    auto* const count = module.Find<long(char const*, char const*)>("HostModuleCountSamples");
    ASSERT_NE(count, nullptr);
    EXPECT_EQ(count(SENMARK_LIBRARY, path.c_str()), 2);
  }
  senmark::Senmark const manager(senmark::Library::Load(SENMARK_LIBRARY));
  EXPECT_EQ(manager.open(path).samples("s").all().collect().size(), 2u);
}

TEST(HostLoaded, ThreadsOpenAndStreamAtOnce) {
  TempFolder const folder;
  std::string const path = folder.Write("file.tdjson", NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text());
  senmark::Senmark const manager(senmark::Library::Load(SENMARK_LIBRARY));
  std::atomic<int> wrong{0};
  auto const work = [&](bool streams) {
    for (int i = 0; i != 50; ++i) {
      if (streams) {
        wrong += manager.stream(path).size() == 0 ? 1 : 0;
      } else {
        wrong += manager.open(path).samples("s").all().collect().size() != 3 ? 1 : 0;
      }
    }
  };
  std::thread first(work, true), second(work, false), third(work, true);
  first.join();
  second.join();
  third.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
