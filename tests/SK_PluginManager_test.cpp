#include "SK_PluginManager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "ExpectError.h"
#include "ModuleFolders.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterHandlerInstance.h"
#include "SK_ConverterManager.h"
#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_HostAPIImpl.h"
#include "SK_Module.h"

namespace SK_PLUGIN {
namespace {

namespace fs = std::filesystem;
using ns_sensor::SK_ConverterRegistry;
using senmark_test::Manifest;
using senmark_test::ModuleFolders;
using senmark_test::TempFolder;

class PluginManager : public testing::Test {
 protected:
  PluginManager() : mModules(mFolder) {}
  ~PluginManager() override {
    SK_PluginManager::terminate();
    SK_ConverterRegistry::terminate();
    EXPECT_EQ(mModules.TakeNotes(), "") << "a module's code has run";
  }

  void Initialize(std::string const& wanted = "") {
    SK_ConverterRegistry::terminate();
    SK_PluginManager::initialize(mModules.Path(), wanted);
  }

  void Add(std::string const& name, std::string const& manifest) { mModules.Add(name, manifest.c_str()); }

  /// The uid of the converter of an extension, or "none".
  static std::string Uid(std::string const& extension) {
    std::shared_ptr<SK_ConverterHandler> const handler = SK_PluginManager::getConverterHandler(extension);
    EXPECT_EQ(handler != nullptr, SK_ConverterRegistry::getInstance()->getConverterHandlerInfo(extension) != nullptr);
    return handler == nullptr ? "none" : handler->getUID();
  }

  static std::string Uids(std::vector<std::string> const& extensions) {
    std::string uids;
    for (std::string const& extension : extensions) {
      uids += Uid(extension) + ' ';
    }
    return uids;
  }

  /// Names of the folder in its own order.
  std::vector<std::string> NamesInOrder() const {
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mModules.Path())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  TempFolder mFolder;
  ModuleFolders mModules;
};

TEST_F(PluginManager, OffersWhatManifestsTell) {
  Add("Foo.tdx", Manifest("foo", R"("fo1","FO2")"));
  Add("Bar.tdx", Manifest("bar", R"("br1")"));
  Initialize();
  EXPECT_EQ(Uids({"fo1", "fo2", "br1"}), "foo foo bar ");
  EXPECT_EQ(SK_PluginManager::getConverterHandler("FO2"), nullptr);
  EXPECT_EQ(SK_PluginManager::getConverterHandler("fo1")->getModule()->getPath(), mModules.Path() + "/Foo.tdx");
  std::map<std::string, std::string> const expected = {
      {"br1", "Name of bar"}, {"fo1", "Name of foo"}, {"fo2", "Name of foo"}};
  EXPECT_EQ(*SK_ConverterRegistry::getInstance()->getConvertersInfo(), expected);
  ns_sensor::SK_ConverterHandlerInfo const* const info =
      SK_ConverterRegistry::getInstance()->getConverterHandlerInfo("fo1");
  ASSERT_NE(info, nullptr);
  EXPECT_EQ(info->uid, "fo1");
  EXPECT_EQ(info->check, &Plugin_CheckFileFormat);
  EXPECT_EQ(info->construct, &Plugin_ConverterHandlerCTor);
}

TEST_F(PluginManager, FolderThatIsNoneHasNoModules) {
  for (std::string const& folder : {std::string("/no/such/folder"), std::string(), mFolder.Write("file", "text")}) {
    SK_NAMESPACE_INT::gLastException = ns_sensor::SK_Exception();
    SK_PluginManager::initialize(folder, "Foo");
    EXPECT_EQ(SK_NAMESPACE_INT::gLastException.GetErrorCode(), 0) << folder;
    EXPECT_NE(SK_PluginManager::getHostAPI(), nullptr) << folder;
    EXPECT_TRUE(SK_ConverterRegistry::getInstance()->getConvertersInfo()->empty()) << folder;
  }
}

TEST_F(PluginManager, BackslashesInTheFolderAreSlashes) {
  Add("Foo.tdx", Manifest("foo", R"("fo1")"));
  std::string folder = mModules.Path();
  std::replace(folder.begin(), folder.end(), '/', '\\');
  SK_PluginManager::initialize(folder, "");
  EXPECT_EQ(Uid("fo1"), "foo");
}

TEST_F(PluginManager, OnlyModulesAreLookedAt) {
  Add("~old.tdx", Manifest("old", R"("old")"));
  Add(".hidden.tdx", Manifest("hidden", R"("hid")"));
  Add("Other.txt", Manifest("other", R"("oth")"));
  Add("NoPoint", Manifest("nopoint", R"("nop")"));
  Add("tdx", Manifest("tdx", R"("tdx")"));
  Add("Upper.TDX", Manifest("upper", R"("upp")"));
  Add("Two.Points.tdx", Manifest("two", R"("two")"));
  Add("NoCode.tdx", Manifest("nocode", R"("noc")"));
  fs::remove(mModules.CodePath("NoCode.tdx"));
  fs::create_directory(mModules.Path() + "/deeper");
  fs::rename(mModules.Add("Deep.tdx", Manifest("deep", R"("dee")").c_str()), mModules.Path() + "/deeper/Deep.tdx");
  mModules.Add("NoManifest.tdx", nullptr);
  mFolder.Write("modules/a.tdx", Manifest("plain", R"("pla")"));
  fs::create_symlink("/no/such/file", mModules.Path() + "/link.tdx");
  Initialize();
  EXPECT_EQ(Uids({"old", "hid", "oth", "nop", "tdx", "noc", "dee", "pla"}), "none none none none none none none none ");
  EXPECT_EQ(Uids({"upp", "two"}), "upper two ");
  EXPECT_EQ(SK_ConverterRegistry::getInstance()->getConvertersInfo()->size(), 2u);
}

TEST_F(PluginManager, PlainFileIsNoFault) {
  mFolder.Write("modules/a.tdx", "text");
  SK_PluginManager::terminate();
  SK_NAMESPACE_INT::gLastException = ns_sensor::SK_Exception();
  Initialize();
  EXPECT_EQ(SK_NAMESPACE_INT::gLastException.GetErrorCode(), 0);
}

struct WantedRow {
  char const* list;
  char const* expected;  // uids of the three modules
};
WantedRow const kWanted[] = {
    {"", "foo bar foobar "},
    {"Foo.tdx, Bar", "foo bar none "},
    {"foo", "foo none none "},
    {"FOOBAR", "none none foobar "},
    {"Foo,", "foo none none "},
    {",Foo", "foo none none "},
    {"  Foo  , Bar x", "foo bar none "},
    {"Foo.anything.else", "foo none none "},
    {"nothing", "none none none "},
    {"fo", "none none none "},
    {" ", "none none none "},
    {",", "none none none "},
    {"Foo;Bar", "none none none "},
    {"\tFoo", "none none none "},
    {"foo .tdx,BAR.", "foo bar none "},
};

TEST_F(PluginManager, OnlyWantedModulesAreUsed) {
  Add("Foo.tdx", Manifest("foo", R"("fo1")"));
  Add("Bar.tdx", Manifest("bar", R"("br1")"));
  Add("FooBar.tdx", Manifest("foobar", R"("fb1")"));
  for (WantedRow const& row : kWanted) {
    Initialize(row.list);
    EXPECT_EQ(Uids({"fo1", "br1", "fb1"}), row.expected) << '"' << row.list << '"';
  }
}

TEST_F(PluginManager, UnwantedFaultIsNoFault) {
  Add("Bad.tdx", "{");
  Add("Foo.tdx", Manifest("foo", R"("fo1")"));
  Initialize("Foo");
  EXPECT_EQ(Uid("fo1"), "foo");
}

TEST_F(PluginManager, FirstOfTwoModulesKeepsTheExtension) {
  Add("One.tdx", Manifest("One.tdx", R"("x")", R"(,"force_converter":true)"));
  Add("Two.tdx", Manifest("Two.tdx", R"("x")", R"(,"force_converter":true)"));
  Add("Three.tdx", Manifest("Three.tdx", R"("x")", R"(,"force_converter":true)"));
  Initialize();
  EXPECT_EQ(Uid("x"), NamesInOrder().front());
}

/// One manifest, broken in one way, with a good converter behind the fault.
char const* const kBadManifests[] = {
    "",
    "{",
    "text",
    "\xef\xbb\xbf{}",
    "5",
    "[]",
    "{}",
    R"({"converter":{}})",
    R"({"converter":[{"version":1,"extensions":["bad"]},{"identifier":"b","version":1,"extensions":["bad"]}]})",
    R"({"converter":[{"identifier":"b","extensions":["bad"]},{"identifier":"b","version":1,"extensions":["bad"]}]})",
    R"({"converter":[{"identifier":"b","version":1},{"identifier":"b","version":1,"extensions":["bad"]}]})",
};

TEST_F(PluginManager, FaultyManifestCostsNoModuleBeforeIt) {
  for (char const* const name : {"a.tdx", "b.tdx", "c.tdx", "d.tdx"}) {
    Add(name, Manifest(name, std::string("\"") + name + '"'));
  }
  for (char const* const manifest : kBadManifests) {
    SCOPED_TRACE(manifest);
    mModules.Add("Bad.tdx", manifest);
    Initialize();
    EXPECT_EQ(Uid("bad"), "none");
    bool reached = true;
    for (std::string const& name : NamesInOrder()) {
      reached = reached && name != "Bad.tdx";
      if (name != "Bad.tdx") {
        EXPECT_EQ(Uid(name), reached ? name : "none");
      }
    }
    fs::remove_all(mModules.Path() + "/Bad.tdx");
  }
}

TEST_F(PluginManager, ConvertersBeforeAFaultStay) {
  Add("Bad.tdx",
      R"({"converter":[{"identifier":"a","version":1,"extensions":["x"]},{"identifier":"b","extensions":["y"]}]})");
  Initialize();
  EXPECT_EQ(Uids({"x", "y"}), "a none ");
}

TEST_F(PluginManager, ManifestCanBeNestedAsDeepAsItLikes) {
  std::string const deep = std::string(2000000, '[') + std::string(2000000, ']');
  Add("Deep.tdx", R"({"nested":)" + deep + R"(,"converter":[{"identifier":"deep","version":1,"extensions":["dee"]}]})");
  Initialize();
  EXPECT_EQ(Uid("dee"), "deep");
}

TEST_F(PluginManager, TextBehindAZeroByteIsNoPartOfTheManifest) {
  Add("Foo.tdx", Manifest("foo", R"("fo1")") + std::string("\0{", 2));
  Initialize();
  EXPECT_EQ(Uid("fo1"), "foo");
}

TEST_F(PluginManager, NestingWithoutEndIsAFaultAndNoEndOfTheProcess) {
  Add("Deep.tdx", std::string(10000000, '['));
  Initialize();
  EXPECT_TRUE(SK_ConverterRegistry::getInstance()->getConvertersInfo()->empty());
}

struct FaultRow {
  char const* manifest;
  int code;
  char const* message;
};
FaultRow const kFaults[] = {
    {"{", 1503, "Manifest Parsing Failed."},
    {"{}", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
    {R"([{"converter":[]}])", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
};

TEST_F(PluginManager, LastErrorOfTheThreadTellsTheFault) {
  for (FaultRow const& row : kFaults) {
    mModules.Add("Bad.tdx", row.manifest);
    Initialize();
    EXPECT_EQ(SK_NAMESPACE_INT::gLastException.GetErrorCode(), row.code) << row.manifest;
    EXPECT_STREQ(SK_NAMESPACE_INT::gLastException.GetLocalizedErrMsg(), row.message);
    fs::remove_all(mModules.Path() + "/Bad.tdx");
  }
}

TEST_F(PluginManager, MembersBesideTheConvertersAreIgnored) {
  Add("Foo.tdx", R"({"version":7,"converter":[{"identifier":"foo","version":1,"extensions":["fo1"]}],"x":{}})");
  Initialize();
  EXPECT_EQ(Uid("fo1"), "foo");
}

struct Claim {
  char const* uid;
  double version;
  bool force;
};
struct ConflictRow {
  char const* name;
  Claim stored;
  Claim added;
  bool replaced;
};
ConflictRow const kConflicts[] = {
    {"OtherUid", {"a", 1, false}, {"b", 2, false}, false},
    {"OtherUidThatForces", {"a", 1, false}, {"b", 2, true}, false},
    {"HigherVersion", {"a", 1, false}, {"a", 1.5, false}, true},
    {"SameVersion", {"a", 1, false}, {"a", 1, false}, false},
    {"LowerVersion", {"a", 2, false}, {"a", 1, false}, false},
    {"ForceConverterWithHigherVersion", {"a", 1, false}, {"a", 2, true}, true},
    {"ForceConverterWithLowerVersion", {"a", 2, false}, {"a", 1, true}, true},
    {"StoredForceConverter", {"a", 1, true}, {"a", 2, false}, false},
    {"TwoForceConverters", {"a", 1, true}, {"a", 2, true}, false},
};

std::shared_ptr<SK_ConverterHandler> Handler(Claim const& claim) {
  auto handler = std::make_shared<SK_ConverterHandler>(claim.uid, claim.force, nullptr);
  handler->setVersion(claim.version);
  return handler;
}

TEST_F(PluginManager, DecidesBetweenTwoConvertersOfOneExtension) {
  for (ConflictRow const& row : kConflicts) {
    Initialize();
    std::shared_ptr<SK_ConverterHandler> const stored = Handler(row.stored);
    std::shared_ptr<SK_ConverterHandler> const added = Handler(row.added);
    SK_PluginManager::addConverterHandler("x", stored);
    SK_PluginManager::addConverterHandler("x", added);
    EXPECT_EQ(SK_PluginManager::getConverterHandler("x"), row.replaced ? added : stored) << row.name;
    EXPECT_EQ(SK_PluginManager::getConverterHandler("y"), nullptr);
  }
}

TEST_F(PluginManager, HigherVersionWinsInEitherOrder) {
  Add("Old.tdx", R"({"converter":[{"identifier":"a","version":1,"extensions":["x"]}]})");
  Add("New.tdx", R"({"converter":[{"identifier":"a","version":2,"extensions":["x"]}]})");
  Add("Mid.tdx", R"({"converter":[{"identifier":"a","version":1.5,"extensions":["x"]}]})");
  Initialize();
  EXPECT_EQ(SK_PluginManager::getConverterHandler("x")->getVersion(), 2);
}

TEST_F(PluginManager, EmptyEntryIsAssigned) {
  Initialize();
  SK_PluginManager::addConverterHandler("x", nullptr);
  std::shared_ptr<SK_ConverterHandler> const handler = Handler({"a", 1, false});
  SK_PluginManager::addConverterHandler("x", handler);
  EXPECT_EQ(SK_PluginManager::getConverterHandler("x"), handler);
}

TEST_F(PluginManager, ThereIsNothingWithoutOne) {
  SK_PluginManager::terminate();
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_PluginManager::addConverterHandler("x", Handler({"a", 1, false}));
  EXPECT_EQ(SK_PluginManager::getConverterHandler("x"), nullptr);
}

TEST_F(PluginManager, TableOfTheHostIsComplete) {
  Initialize();
  HostAPI const* const api = SK_PluginManager::getHostAPI();
  ASSERT_NE(api, nullptr);
  EXPECT_EQ(api->mSize, 32u);
  EXPECT_EQ(api->mVersion, 1u);
  EXPECT_EQ(api->mTdjsonWriterAPI->mReserved, 0u);
  EXPECT_EQ(api->mTdjsonWriterAPI->Static_CreateRoot, &Static_CreateRoot);
  EXPECT_EQ(api->mTdjsonWriterAPI->Static_CreateStaticDataBool, &Static_CreateStaticDataBool);
  EXPECT_EQ(api->mHandleExceptionAPI->Static_SetPluginErrorObj, &Static_SetPluginErrorObj);
  EXPECT_EQ(api->mHandleMemoryAPI->Static_RemoveConverterFromMap, &Static_RemoveConverterFromMap);
}

TEST_F(PluginManager, ConverterManagerStartsItWithFolderAndWantedList) {
  using ns_sensor::SK_ConverterManager;
  Add("Foo.tdx", Manifest("foo", R"("fo1","csv")"));
  Add("Bar.tdx", Manifest("bar", R"("br1")"));
  SK_ConverterManager::Terminate();
  SK_ConverterManager::Initialize(mModules.Path().c_str(), nullptr);
  EXPECT_EQ(Uids({"fo1", "br1"}), "foo bar ");
  // A module comes before the library's own converter, whose display name stays.
  EXPECT_EQ(SK_ConverterRegistry::getInstance()->getConverterHandlerInfo("csv")->check, &Plugin_CheckFileFormat);
  EXPECT_EQ(SK_ConverterRegistry::getInstance()->getConvertersInfo()->at("csv"), "Comma Seperated Value");
  SK_ConverterManager::Terminate();
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_ConverterManager::Initialize(mModules.Path().c_str(), "bar");
  EXPECT_EQ(Uids({"fo1", "br1"}), "none bar ");
  SK_ConverterManager::Terminate();
  SK_ConverterManager::Initialize(nullptr, "bar");
  EXPECT_EQ(SK_PluginManager::getHostAPI(), nullptr);
  SK_ConverterManager::Terminate();
}

TEST_F(PluginManager, ModulesAreUnloadedBeforeTheTableGoes) {
  // This one reports a failure at its end, through the table.
  mModules.Add("Foo.tdx", Manifest("foo", R"("fo1")").c_str(), "fail-terminate");
  Initialize();
  EXPECT_TRUE(SK_PluginManager::getConverterHandler("fo1")->load());
  SK_PluginManager::terminate();
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize fail-terminate\nterminate\nunloaded\n");
}

}  // namespace
}  // namespace SK_PLUGIN
