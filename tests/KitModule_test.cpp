// A module made with the kit as a host meets it, and what of it no host sees: the log and the explanation.
#include <dlfcn.h>

#include <filesystem>

#include "FailingCalls.h"
#include "FailingMemory.h"
#include "KitFile.h"
#include "SK_Utils.h"
#include "senmark/ExplainingPluginAPI.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;
using SK_PLUGIN::ExplainingPluginAPI;
using SK_PLUGIN::SK_PluginResult;

constexpr char kLog[] = "SENMARK_MODULE_LOG";
constexpr char kConstructor[] = "SENMARK_KIT_MODULE_CONSTRUCTOR";

senmark::Senmark Start() {
  senmark::Options options;
  options.pluginFolder = SENMARK_KIT_MODULES;
  return senmark::Senmark(senmark::Library::Linked(), options);
}

class KitModule : public KitFile {
 protected:
  std::string Input(std::string const& content) const { return mFolder.Write("input.kit", content); }

  // Code, offset and line of the error with which a file is opened; 0 without one.
  static std::string ErrorOf(senmark::Senmark const& manager, std::string const& path) {
    try {
      manager.open(path);
    } catch (senmark::Error const& error) {
      return std::to_string(error.code()) + ' ' + std::to_string(error.offset()) + ' ' + std::to_string(error.line());
    }
    return "0";
  }
};

// The node of a stream of two samples that are all the same.
std::string Numbers(std::string const& name, std::string const& value) {
  return R"({"objectType":"dataDynamic","matchName":")" + name + R"(","displayName":")" + name +
         R"(","sampleSetID":")" + name +
         R"(","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,"dataType":{"type":"numberString",)"
         R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
         R"("range":{"occurring":{"min":)" +
         value + R"(,"max":)" + value + R"(},"legal":{"min":)" + value + R"(,"max":)" + value + "}}}}}";
}

// The module loaded by hand, as a program does that looks into it.
class LoadedModule {
 public:
  explicit LoadedModule(SK_PLUGIN::HostAPI const& tables, std::uint32_t size = sizeof(ExplainingPluginAPI))
      : mCode(::dlopen(SENMARK_KIT_MODULE, RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(mCode, nullptr) << ::dlerror();
    auto const initialize = reinterpret_cast<SK_PLUGIN::InitializePluginProc>(::dlsym(mCode, "InitializePlugin"));
    table.base.size = size;
    table.base.version = 1;
    SK_PluginResult result;
    initialize("identifier", const_cast<SK_PLUGIN::HostAPI*>(&tables), &table.base, &result);
    EXPECT_EQ(result.mErrorCode, 0);
  }
  ~LoadedModule() {
    SK_PluginResult result;
    table.base.terminate(&result);
    ::dlclose(mCode);
  }
  LoadedModule(LoadedModule const&) = delete;
  LoadedModule& operator=(LoadedModule const&) = delete;

  std::string Explain(std::string const& path) const {
    std::string told;
    SK_PluginResult result;
    table.explainFile(
        path.c_str(), "kit",
        [](void* to, char const* line) {
          *static_cast<std::string*>(to) += line;
          *static_cast<std::string*>(to) += '|';
        },
        &told, &result);
    return told + std::to_string(result.mErrorCode) + ' ' + std::to_string(result.mFileOffset);
  }

  ExplainingPluginAPI table{};

 private:
  void* mCode;
};

TEST_F(KitModule, ConvertsInOrder) {
  senmark::Senmark const manager = Start();
  manager.open(Input("KIT\x20\nlonger\nshort"), mPath);
  EXPECT_EQ(
      mFolder.Read(mPath),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
      R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}},"dataDynamicSamples":[)"
      R"({"sampleSetID":"Numbers","samples":[{"time":"00:00:03:22","value":"5"},{"time":"00:00:03:23","value":"6"}]},)"
      R"({"sampleSetID":"a","samples":[{"time":"00:00:03:22","value":"1"},{"time":"00:00:03:23","value":"1"}]},)"
      R"({"sampleSetID":"b","samples":[{"time":"00:00:03:22","value":"2"},{"time":"00:00:03:23","value":"2"}]},)"
      R"({"sampleSetID":"c","samples":[{"time":"00:00:03:22","value":"3"},{"time":"00:00:03:23","value":"3"}]},)"
      R"({"sampleSetID":"d","samples":[{"time":"00:00:03:22","value":"4"},{"time":"00:00:03:23","value":"4"}]},)"
      R"({"sampleSetID":"Texts","samples":[{"time":"00:00:03:22","value":{"length":"5","str":"short "}},)"
      R"({"time":"00:00:03:23","value":{"length":"6","str":"longer"}}]}],"dataOutline":[)"
      R"({"objectType":"dataStatic","matchName":"Extension","displayName":"Extension","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,"eventMarkerB":false}},"value":"kit"},)"
      R"({"objectType":"dataStatic","matchName":"Uid","displayName":"Uid","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,"eventMarkerB":false}},"value":"kit"},)"
      R"({"objectType":"dataDynamic","matchName":"Numbers","displayName":"Numbers","sampleSetID":"Numbers",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,"dataType":{"type":"numberString",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":5,"max":6},"legal":{"min":5,"max":6}}}}},)"
      R"({"objectType":"dataGroup","matchName":"Many","displayName":"Many","children":[)" +
          Numbers("a", "1") + ',' + Numbers("b", "2") + ',' + Numbers("c", "3") + ',' + Numbers("d", "4") +
          R"(]},{"objectType":"dataGroup","matchName":"Group","displayName":"Group","children":[)"
          R"({"objectType":"dataDynamic","matchName":"Texts","displayName":"Texts","sampleSetID":"Texts",)"
          R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,"dataType":{"type":"paddedString",)"
          R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":6,"eventMarkerB":false}}}]}]})");
}

TEST_F(KitModule, GivesEveryErrorWithItsPlace) {
  struct Row {
    char const* how;
    char const* accepting;
    char const* converting;
    char const* logged;
  };
  // Who throws a `Failure` while it is asked does not take the file, which then is one more text file.
  Row const rows[] = {
      {"failure", "0", "1777 12 3", " 1777 at byte 12, line 3: text of the failure\n"},
      {"plain failure", "0", "1506 -1 -1", " 1506: text of the failure\n"},
      {"no memory", "1034 -1 -1", "1034 -1 -1", " 1034: no memory\n"},
      {"exception", "1023 -1 -1", "1023 -1 -1", " 1023: text of the exception\n"},
      {"number", "1023 -1 -1", "1023 -1 -1", " 1023: something that is no std::exception was thrown\n"},
  };
  KeptVariable const log(kLog);
  log.Set(mFolder.Path("log.txt"));
  KeptVariable const constructor(kConstructor);
  senmark::Senmark const manager = Start();
  EXPECT_EQ(ErrorOf(manager, Input("KIT \na")), "0");
  std::size_t const open = CountOpenDescriptors();
  auto const takeLog = [this] {
    std::string const text = mFolder.Read(mFolder.Path("log.txt"));
    fs::remove(mFolder.Path("log.txt"));
    return text;
  };
  for (Row const& row : rows) {
    std::string const how = row.how;
    EXPECT_EQ(ErrorOf(manager, Input("KIT accepts: " + how + "\na")), row.accepting) << how;
    bool const isFailure = std::string(row.accepting) == "0";
    std::string const line = (isFailure ? "not accepted" : "error") + std::string(row.logged);
    // Asked twice: for the extension, and once more with all others.
    EXPECT_EQ(takeLog(), isFailure ? line + line : line);
    for (char const* when : {"before", "behind"}) {
      EXPECT_EQ(ErrorOf(manager, Input(std::string("KIT ") + when + ": " + how + "\na")), row.converting) << how;
      EXPECT_EQ(takeLog(), "error" + std::string(row.logged));
    }
    constructor.Set(how);
    EXPECT_EQ(ErrorOf(manager, Input("KIT \na")), row.accepting) << how;
    takeLog();
    constructor.Unset();
    EXPECT_EQ(CountOpenDescriptors(), open);
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(ErrorOf(manager, Input("KIT \na")), "0") << "behind " << how;
  }
  EXPECT_FALSE(fs::exists(mFolder.Path("log.txt")));
  // What the kit itself refuses.
  EXPECT_EQ(ErrorOf(manager, Input("KIT \n\n")), "1507 -1 -1");
  EXPECT_EQ(takeLog(), "error 1507: Texts: an empty text\n");
  // A log that cannot be written is none.
  log.Set(mFolder.Path("no/such/folder"));
  EXPECT_EQ(ErrorOf(manager, Input("KIT \n\n")), "1507 -1 -1");
}

TEST_F(KitModule, MemoryMayEndAtEveryAllocation) {
  senmark::Senmark const manager = Start();
  std::string const path = Input("KIT \nlonger than a short string\nb");
  EXPECT_EQ(ErrorOf(manager, path), "0");
  LoadedModule const module(mTables.Get());
  std::size_t const open = CountOpenDescriptors();
  int failures = 0;
  for (std::uint64_t allocation = 1;; ++allocation) {
    SK_PluginResult result;
    void* session = nullptr;
    bool succeeded = false;
    bool accepted = false;
    bool hasFailed = false;
    {
      FailingMemory const failing(allocation);
      module.table.base.checkFileFormat(path.c_str(), "kit", &accepted, &result);
      if (result.mErrorCode == 0) {
        module.table.base.initializeSession("kit", "kit", path.c_str(), mPath.c_str(), &session, &result);
      }
      if (result.mErrorCode == 0) {
        module.table.base.convertToTDJSON(session, &succeeded, &result);
      }
      hasFailed = failing.HasFailed();
    }
    SK_PluginResult ending;
    module.table.base.terminateSession(session, &ending);
    ASSERT_EQ(ending.mErrorCode, 0);
    ASSERT_EQ(CountOpenDescriptors(), open) << allocation;
    if (!hasFailed) {
      EXPECT_TRUE(succeeded);
      break;
    }
    ++failures;
    // The writer may have found a way without that memory.
    ASSERT_TRUE(succeeded ? result.mErrorCode == 0 : result.mErrorCode == 1034 || result.mErrorCode == 1023)
        << allocation << ' ' << result.mErrorCode;
  }
  EXPECT_GT(failures, 100);
  EXPECT_EQ(ErrorOf(manager, path), "0");
}

TEST_F(KitModule, SessionsDoNotMeet) {
  LoadedModule const module(mTables.Get());
  std::string const inputs[] = {mFolder.Write("one.kit", "KIT \na"), mFolder.Write("two.kit", "KIT \na\nbb\nccc")};
  std::string const outputs[] = {mFolder.Path("one.tdjson"), mFolder.Path("two.tdjson")};
  void* sessions[] = {nullptr, nullptr};
  SK_PluginResult result;
  for (int i = 0; i != 2; ++i) {
    module.table.base.initializeSession("kit", "ext", inputs[i].c_str(), outputs[i].c_str(), &sessions[i], &result);
  }
  for (int const i : {1, 0}) {
    bool succeeded = false;
    module.table.base.convertToTDJSON(sessions[i], &succeeded, &result);
    EXPECT_TRUE(succeeded);
  }
  for (void* const session : sessions) {
    module.table.base.terminateSession(session, &result);
  }
  EXPECT_EQ(result.mErrorCode, 0);
  senmark::Senmark const manager(senmark::Library::Linked());
  EXPECT_EQ(manager.open(outputs[0]).samples("Numbers").all().collect().size(), 1U);
  EXPECT_EQ(manager.open(outputs[1]).samples("Numbers").all().collect().size(), 3U);
}

TEST_F(KitModule, IsUnloadedAndLoadedAgain) {
  auto const isLoaded = [] {
    void* const code = ::dlopen(SENMARK_KIT_MODULE, RTLD_NOW | RTLD_NOLOAD);
    if (code != nullptr) {
      ::dlclose(code);
    }
    return code != nullptr;
  };
  for (int i = 0; i != 3; ++i) {
    EXPECT_FALSE(isLoaded());
    {
      senmark::Senmark const manager = Start();
      EXPECT_FALSE(isLoaded());
      EXPECT_EQ(ErrorOf(manager, Input("KIT \na")), "0");
      EXPECT_TRUE(isLoaded());
    }
    EXPECT_FALSE(isLoaded());
  }
}

TEST_F(KitModule, ExplainsItselfToThoseWhoAsk) {
  LoadedModule const module(mTables.Get());
  EXPECT_EQ(module.Explain(Input("KIT \na")), "the extension is kit|it takes the file|0 -1");
  EXPECT_EQ(module.Explain(mFolder.Write("other.TXT", "else")), "the extension is txt|it does not take the file|0 -1");
  EXPECT_EQ(module.Explain(Input("KIT explain: failure\n")), "the extension is kit|1777 12");
  EXPECT_EQ(module.Explain(Input("KIT explain: number\n")), "the extension is kit|1023 -1");
  EXPECT_EQ(module.Explain(mFolder.Path("none.kit")), "the extension is kit|6 -1");
}

TEST_F(KitModule, TouchesNothingBehindAShorterTable) {
  LoadedModule const shorter(mTables.Get(), sizeof(SK_PLUGIN::PluginAPI));
  EXPECT_EQ(shorter.table.explainFile, nullptr);
  EXPECT_NE(shorter.table.base.convertToTDJSON, nullptr);
}

TEST_F(KitModule, ExtensionsAreTheLibrarys) {
  for (char const* path : {"/a/b.kit", "/a/b.KIT", "/a.b/c", "/a/b.c.Kit", "/a/.kit", "/a/b.", "b.kit", "b", "", "/",
                           ".", "/a\\b.kit", "a\\b.kit", "/a.kit\\b", "/a/b.\xC3\x9C", "/a/b.k t", "./b.kit"}) {
    std::string library;
    SK_NAMESPACE_INT::SK_Utils::GetFileExtension(path, library);
    EXPECT_EQ(kit::detail::ExtensionOf(path), library) << path;
  }
}

TEST_F(KitModule, TablesOfAnotherVersionAreNotFilledIn) {
  SK_PluginResult result;
  SK_PLUGIN::PluginAPI table{sizeof(SK_PLUGIN::PluginAPI), 0, nullptr, nullptr, nullptr, nullptr, nullptr};
  struct Nothing : kit::Converter {
    bool accepts(kit::Input const&) override { return false; }
    void convert(kit::Input const&, kit::Output&) override {}
  };
  using Entry = kit::detail::Entry<Nothing>;
  Entry::fillIn(&mTables.Get(), &table, &result);
  EXPECT_EQ(result.mErrorCode, ns_sensor::kModuleInitFailed);
  EXPECT_EQ(table.terminate, nullptr);
  table.version = 1;
  result = SK_PluginResult();
  Entry::fillIn(nullptr, &table, &result);
  EXPECT_EQ(result.mErrorCode, ns_sensor::kModuleInitFailed);
  result = SK_PluginResult();
  Entry::fillIn(&mTables.Get(), &table, &result);
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_NE(table.terminate, nullptr);
}

}  // namespace
}  // namespace senmark_test
