// The procs of the tables that a module gets: their checks and the order of these, what they make, and who hears of
// a failure.
#include "SK_HostAPIImpl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <typeinfo>
#include <vector>

#include "FailingMemory.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "SharedCounts.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "TempFolder.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::CodeOf;
using senmark_test::ExpectCounts;
using senmark_test::FailingMemory;
using senmark_test::TempFolder;

constexpr char kLongText[] = "a text that is too long for a short string, with a \"quote\"";

/// One of the creating procs with arguments of no interest, but for those that all of them share.
struct Creation {
  char const* name;
  void (*create)(void* key, void** out, unsigned version, void* result);
  /// The object behind `out` if that points to the interface of its family; else null.
  SharedObjectImpl* (*object)(void* out);
  bool needsTimeBase;
};

void PrintTo(Creation const& row, std::ostream* out) {
  *out << row.name;
}

template <typename Interface, typename Impl>
SharedObjectImpl* ObjectBehind(void* out) {
  auto* const object = static_cast<Interface*>(out);
  auto* const impl = dynamic_cast<Impl*>(object);
  return impl != nullptr && typeid(*object) == typeid(Impl) && static_cast<Interface*>(impl) == out ? impl : nullptr;
}

Creation const kCreations[] = {
    {"Root",
     [](void* key, void** out, unsigned version, void* result) {
       unsigned char existed = 9;
       Static_CreateRoot(key, "never written, and too long for a short string", Static_SetPluginErrorObj, out, &existed,
                         version, result);
     },
     ObjectBehind<ITdjsonRoot_v1, TdjsonRootImpl>, false},
    {"Group",
     [](void* key, void** out, unsigned version, void* result) {
       Static_CreateGroup(key, out, kLongText, kLongText, version, result);
     },
     ObjectBehind<ITdjsonGroup_v1, TdjsonGroupImpl>, false},
    {"DynamicDataNumArr", Static_CreateDynamicDataNumArr,
     ObjectBehind<ITdjsonDynamicDataNumArr_v1, TdjsonDynamicDataNumArrImpl>, true},
    {"DynamicDataNum", Static_CreateDynamicDataNum, ObjectBehind<ITdjsonDynamicDataNum_v1, TdjsonDynamicDataNumImpl>,
     true},
    {"DynamicDataString", Static_CreateDynamicDataString,
     ObjectBehind<ITdjsonDynamicDataString_v1, TdjsonDynamicDataStringImpl>, true},
    {"StaticDataNum",
     [](void* key, void** out, unsigned version, void* result) {
       Static_CreateStaticDataNum(key, out, kLongText, kLongText, 1, version, result);
     },
     ObjectBehind<ITdjsonStaticDataNum_v1, TdjsonStaticDataNumImpl>, false},
    {"StaticDataNumArr",
     [](void* key, void** out, unsigned version, void* result) {
       Static_CreateStaticDataNumArr(key, out, kLongText, kLongText, version, result);
     },
     ObjectBehind<ITdjsonStaticDataNumArr_v1, TdjsonStaticDataNumArrImpl>, false},
    {"StaticDataString",
     [](void* key, void** out, unsigned version, void* result) {
       Static_CreateStaticDataString(key, out, kLongText, kLongText, kLongText, version, result);
     },
     ObjectBehind<ITdjsonStaticDataString_v1, TdjsonStaticDataStringImpl>, false},
    {"StaticDataBool",
     [](void* key, void** out, unsigned version, void* result) {
       Static_CreateStaticDataBool(key, out, kLongText, kLongText, 1, version, result);
     },
     ObjectBehind<ITdjsonStaticDataBool_v1, TdjsonStaticDataBoolImpl>, false},
};

/// What a procedure of a module's own heard.
struct Report {
  void* result;
  int code;
  long long offset;
  long long line;
};
std::vector<Report> gReports;
int gOtherReports = 0;

void RecordReport(void* result, eErrorCode code, long long offset, long long line) {
  gReports.push_back({result, code, offset, line});
}
void CountReport(void*, eErrorCode, long long, long long) {
  ++gOtherReports;
}

void ExpectUntouched(SK_PluginResult const& result) {
  EXPECT_EQ(result.mReserved, 0);
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_EQ(result.mFileOffset, -1);
  EXPECT_EQ(result.mFileLineNo, -1);
}

class HostAPIImpl : public testing::Test {
 protected:
  HostAPIImpl() {
    gReports.clear();
    gOtherReports = 0;
  }
  ~HostAPIImpl() override {
    TdjsonRootImpl::RemoveInstance(this);
    gSetWriterErrorObjectProc = Static_SetPluginErrorObj;
  }

  /// A root under the key of the fixture, with a time base.
  void RegisterRoot() {
    auto const root = OwnNewObject(new TdjsonRootImpl(this, mPath.c_str()));
    root->SetSMPTETimeInfo(false, 25, 1);
    TdjsonRootImpl::RegisterInstance(this, root);
  }

  ITdjsonRoot_v1* CreateRoot(SetErrorProc proc, unsigned char* existed) {
    void* out = nullptr;
    SK_PluginResult result;
    Static_CreateRoot(this, mPath.c_str(), proc, &out, existed, 1, &result);
    ExpectUntouched(result);
    return static_cast<ITdjsonRoot_v1*>(out);
  }

  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  int mUntouched = 0;
};

class EveryCreation : public HostAPIImpl, public testing::WithParamInterface<Creation> {
 protected:
  void SetUp() override {
    if (GetParam().needsTimeBase) {
      RegisterRoot();
    }
  }
};

TEST_P(EveryCreation, GivesTheInterfaceOfTheFamilyAndLeavesTheRecordAlone) {
  void* out = nullptr;
  SK_PluginResult result;
  GetParam().create(this, &out, 1, &result);
  ExpectUntouched(result);
  ASSERT_NE(out, nullptr);
  SharedObjectImpl* const object = GetParam().object(out);
  ASSERT_NE(object, nullptr);
  object->Acquire();
  object->Release();
}

// Counts 1 and 1; of a root the registry holds one more.
TEST_P(EveryCreation, TakesOneReferenceInAdvance) {
  void* out = nullptr;
  SK_PluginResult result;
  GetParam().create(this, &out, 1, &result);
  SharedObjectImpl* const object = GetParam().object(out);
  ASSERT_NE(object, nullptr);
  bool const isRoot = dynamic_cast<TdjsonRootImpl*>(object) != nullptr;
  std::uint64_t const others = isRoot ? 1 : 0;
  ExpectCounts(*object, others + 1, 1);
  object->Acquire();
  ExpectCounts(*object, others + 1, 0);
  object->Acquire();
  ExpectCounts(*object, others + 2, 0);
  object->Release();
  object->Release();
}

// Neither a place nor a version that would do: the place is looked at first.
TEST_P(EveryCreation, ANullPlaceComesBeforeAWrongVersion) {
  for (unsigned const version : {0u, 1u, 2u}) {
    SCOPED_TRACE(version);
    EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, nullptr, version, result); }), 2027);
  }
}

TEST_P(EveryCreation, AVersionOtherThan1IsRefusedAndThePlaceKeepsWhatItHeld) {
  struct {
    unsigned version;
    int code;
  } const rows[] = {{0, 2030}, {2, 2029}, {3, 2029}, {0x80000001u, 2029}, {0xFFFFFFFFu, 2029}};
  for (auto const& row : rows) {
    SCOPED_TRACE(row.version);
    void* out = &mUntouched;
    EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, &out, row.version, result); }), row.code);
    EXPECT_EQ(out, &mUntouched);
  }
}

// The checks come before the object is made: with no root at all, and with one that has no time base.
TEST_P(EveryCreation, ADynamicNodeNeedsARootWithATimeBase) {
  TdjsonRootImpl::RemoveInstance(this);
  void* out = &mUntouched;
  EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, &out, 2, result); }), 2029);
  if (GetParam().needsTimeBase) {
    EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, &out, 1, result); }), 2005);
    TdjsonRootImpl::RegisterInstance(this, OwnNewObject(new TdjsonRootImpl(this, mPath.c_str())));
    EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, &out, 0, result); }), 2030);
    EXPECT_EQ(CodeOf([&](void* result) { GetParam().create(this, &out, 1, result); }), 2028);
  }
  EXPECT_EQ(out, &mUntouched);
}

TEST_P(EveryCreation, WithoutMemoryThereIsNoObject) {
  for (std::uint64_t first = 1;; ++first) {
    SCOPED_TRACE(first);
    void* out = &mUntouched;
    SK_PluginResult result;
    bool failed = false;
    {
      FailingMemory const failing(first);
      GetParam().create(this, &out, 1, &result);
      failed = failing.HasFailed();
    }
    if (!failed) {
      ASSERT_EQ(result.mErrorCode, 0);
      SharedObjectImpl* const object = GetParam().object(out);
      ASSERT_NE(object, nullptr);
      object->Acquire();
      object->Release();
      EXPECT_GT(first, 1u);
      break;
    }
    EXPECT_EQ(result.mErrorCode, 1034);
    EXPECT_EQ(result.mFileOffset, -1);
    EXPECT_EQ(result.mFileLineNo, -1);
    EXPECT_EQ(out, &mUntouched);
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this) != nullptr, GetParam().needsTimeBase);
  }
}

INSTANTIATE_TEST_SUITE_P(HostAPIImpl, EveryCreation, testing::ValuesIn(kCreations),
                         [](auto const& row) { return std::string(row.param.name); });

/// An object that a creating proc gave through its interface, held as the class that it is.
template <typename Interface, typename Impl>
class Held {
 public:
  explicit Held(void* out) : mObject(dynamic_cast<Impl*>(static_cast<Interface*>(out))) { mObject->Acquire(); }
  ~Held() { mObject->Release(); }
  Held(Held const&) = delete;
  Held& operator=(Held const&) = delete;

  Impl* operator->() const { return mObject; }
  Impl& operator*() const { return *mObject; }

 private:
  Impl* mObject;
};
using HeldGroup = Held<ITdjsonGroup_v1, TdjsonGroupImpl>;
using HeldRoot = Held<ITdjsonRoot_v1, TdjsonRootImpl>;

// The procs take the match name first. No name is looked at.
TEST_F(HostAPIImpl, NamesAndValuesArriveWhereTheyBelong) {
  void* out = nullptr;
  SK_PluginResult result;
  Static_CreateGroup(this, &out, "1 match", "a \"name\"", 1, &result);
  HeldGroup const group(out);
  EXPECT_EQ(group->GetMatchName(), "1 match");
  EXPECT_EQ(group->GetDisplayName(), R"(a \"name\")");

  Static_CreateStaticDataNum(this, &out, "2 match", "number\n", -2.5, 1, &result);
  Held<ITdjsonStaticDataNum_v1, TdjsonStaticDataNumImpl> const number(out);
  EXPECT_EQ(number->GetMatchName(), "2 match");
  EXPECT_EQ(number->GetDisplayName(), R"(number\n)");
  EXPECT_EQ(number->GetDataValue(), -2.5);

  Static_CreateStaticDataNumArr(this, &out, "3 match", "array\t", 1, &result);
  Held<ITdjsonStaticDataNumArr_v1, TdjsonStaticDataNumArrImpl> const array(out);
  EXPECT_EQ(array->GetMatchName(), "3 match");
  EXPECT_EQ(array->GetDisplayName(), R"(array\t)");
  EXPECT_TRUE(array->GetDataValue().empty());

  Static_CreateStaticDataString(this, &out, "4 match", "text\\", "a\nvalue", 1, &result);
  Held<ITdjsonStaticDataString_v1, TdjsonStaticDataStringImpl> const text(out);
  EXPECT_EQ(text->GetMatchName(), "4 match");
  EXPECT_EQ(text->GetDisplayName(), R"(text\\)");
  EXPECT_EQ(text->GetDataValue(), R"(a\nvalue)");

  struct {
    unsigned char passed;
    bool value;
  } const flags[] = {{0, false}, {1, true}, {2, true}, {255, true}};
  for (auto const& row : flags) {
    Static_CreateStaticDataBool(this, &out, "5 match", "flag\b", row.passed, 1, &result);
    Held<ITdjsonStaticDataBool_v1, TdjsonStaticDataBoolImpl> const flag(out);
    EXPECT_EQ(flag->GetMatchName(), "5 match");
    EXPECT_EQ(flag->GetDisplayName(), R"(flag\b)");
    EXPECT_EQ(flag->GetDataValue(), row.value);
  }
  ExpectUntouched(result);
}

TEST_F(HostAPIImpl, ADynamicNodeBelongsToTheRootUnderItsKey) {
  RegisterRoot();
  void* out = nullptr;
  SK_PluginResult result;
  Static_CreateDynamicDataNum(this, &out, 1, &result);
  Held<ITdjsonDynamicDataNum_v1, TdjsonDynamicDataNumImpl> const node(out);
  node->setDynamicDataInfo("Arm", "arm", "arm", 0, 1, 0, "", &result);
  node->setNumberPattern(1, 0, 0, &result);
  EXPECT_TRUE(node->addSampleSMPTE(0, 0, 0, 1, 5, &result));
  node->commit(&result);
  ExpectUntouched(result);
  EXPECT_EQ(mFolder.Read(mPath),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
            R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}},"dataDynamicSamples":[)"
            R"({"sampleSetID":"arm","samples":[{"time":"00:00:00:01","value":"5"}]})");
}

TEST_F(HostAPIImpl, ANullTextIsCode1023) {
  struct {
    char const* name;
    std::function<void(void** out, void* result)> create;
  } const rows[] = {
      {"GroupMatchName", [](void** out, void* r) { Static_CreateGroup(nullptr, out, nullptr, "d", 1, r); }},
      {"GroupDisplayName", [](void** out, void* r) { Static_CreateGroup(nullptr, out, "m", nullptr, 1, r); }},
      {"NumMatchName", [](void** out, void* r) { Static_CreateStaticDataNum(nullptr, out, nullptr, "d", 1, 1, r); }},
      {"NumDisplayName", [](void** out, void* r) { Static_CreateStaticDataNum(nullptr, out, "m", nullptr, 1, 1, r); }},
      {"ArrMatchName", [](void** out, void* r) { Static_CreateStaticDataNumArr(nullptr, out, nullptr, "d", 1, r); }},
      {"ArrDisplayName", [](void** out, void* r) { Static_CreateStaticDataNumArr(nullptr, out, "m", nullptr, 1, r); }},
      {"StringMatchName",
       [](void** out, void* r) { Static_CreateStaticDataString(nullptr, out, nullptr, "d", "v", 1, r); }},
      {"StringDisplayName",
       [](void** out, void* r) { Static_CreateStaticDataString(nullptr, out, "m", nullptr, "v", 1, r); }},
      {"StringValue",
       [](void** out, void* r) { Static_CreateStaticDataString(nullptr, out, "m", "d", nullptr, 1, r); }},
      {"BoolMatchName", [](void** out, void* r) { Static_CreateStaticDataBool(nullptr, out, nullptr, "d", 1, 1, r); }},
      {"BoolDisplayName",
       [](void** out, void* r) { Static_CreateStaticDataBool(nullptr, out, "m", nullptr, 1, 1, r); }},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    void* out = &mUntouched;
    EXPECT_EQ(CodeOf([&](void* result) { row.create(&out, result); }), 1023);
    EXPECT_EQ(out, &mUntouched);
  }
}

TEST_F(HostAPIImpl, ANewRootIsRegisteredAndHasNoFileYet) {
  unsigned char existed = 9;
  HeldRoot const root(CreateRoot(Static_SetPluginErrorObj, &existed));
  EXPECT_EQ(existed, 0);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(this).get(), &*root);
  EXPECT_EQ(root->GetTDJSONPath(), mPath);
  EXPECT_FALSE(root->IsDynamicSamplesPresent());
  EXPECT_FALSE(std::filesystem::exists(mPath));
}

// The path is not even looked at then.
TEST_F(HostAPIImpl, ARootThatIsThereIsGivenAgainWithOneMoreReferenceInAdvance) {
  unsigned char existed = 9;
  void* const first = CreateRoot(Static_SetPluginErrorObj, &existed);
  auto* const root = dynamic_cast<TdjsonRootImpl*>(static_cast<ITdjsonRoot_v1*>(first));
  ASSERT_NE(root, nullptr);
  ExpectCounts(*root, 2, 1);
  std::uint64_t times = 1;
  for (char const* const path : {mPath.c_str(), "another path", "", static_cast<char const*>(nullptr)}) {
    ++times;
    void* again = nullptr;
    existed = 9;
    EXPECT_EQ(CodeOf([&](void* result) {
                Static_CreateRoot(this, path, Static_SetPluginErrorObj, &again, &existed, 1, result);
              }),
              0);
    EXPECT_EQ(existed, 1);
    EXPECT_EQ(again, first);
    ExpectCounts(*root, times + 1, times);
    EXPECT_EQ(root->GetTDJSONPath(), mPath);
  }
  for (std::uint64_t claimed = 0; claimed < times; ++claimed) {
    root->Acquire();
  }
  for (std::uint64_t given = 0; given < times; ++given) {
    root->Release();
  }
  ExpectCounts(*root, 1, 0);
}

TEST_F(HostAPIImpl, ANewRootNeedsAPath) {
  for (char const* const path : {"", static_cast<char const*>(nullptr)}) {
    void* out = &mUntouched;
    unsigned char existed = 9;
    gSetWriterErrorObjectProc = nullptr;
    EXPECT_EQ(CodeOf([&](void* result) {
                Static_CreateRoot(this, path, Static_SetPluginErrorObj, &out, &existed, 1, result);
              }),
              1505);
    EXPECT_EQ(out, &mUntouched);
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
    // Both have been set by then.
    EXPECT_EQ(existed, 1);
    EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
  }
}

TEST_F(HostAPIImpl, ARootThatIsRefusedSetsNothing) {
  struct {
    char const* name;
    bool hasPlace;
    bool hasFlag;
    unsigned version;
    int code;
  } const rows[] = {
      {"NoPlace", false, true, 1, 2027},
      {"NoPlaceForTheFlag", true, false, 1, 2027},
      {"VersionBeforeTheFlag", true, false, 2, 2029},
      {"Version2", true, true, 2, 2029},
      {"Version0", true, true, 0, 2030},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    void* out = &mUntouched;
    unsigned char existed = 9;
    EXPECT_EQ(CodeOf([&](void* result) {
                Static_CreateRoot(this, mPath.c_str(), RecordReport, row.hasPlace ? &out : nullptr,
                                  row.hasFlag ? &existed : nullptr, row.version, result);
              }),
              row.code);
    EXPECT_EQ(out, &mUntouched);
    EXPECT_EQ(existed, 9);
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
    EXPECT_EQ(gSetWriterErrorObjectProc, &Static_SetPluginErrorObj);
    EXPECT_TRUE(gReports.empty());
  }
}

TEST_F(HostAPIImpl, TheProcedureOfTheRootHearsOfEveryFailure) {
  unsigned char existed = 9;
  HeldRoot const root(CreateRoot(RecordReport, &existed));
  EXPECT_EQ(gSetWriterErrorObjectProc, &RecordReport);
  SK_PluginResult result;
  root->addGroup(nullptr, &result);
  void* out = &mUntouched;
  Static_CreateGroup(nullptr, &out, "m", "d", 2, &result);
  // Its own failure too, as far as it has come to that.
  int other = 0;
  Static_CreateRoot(&other, "", RecordReport, &out, &existed, 1, &result);
  ASSERT_EQ(gReports.size(), 3u);
  int const codes[] = {2003, 2029, 1505};
  for (std::size_t at = 0; at < gReports.size(); ++at) {
    EXPECT_EQ(gReports[at].result, &result);
    EXPECT_EQ(gReports[at].code, codes[at]);
    EXPECT_EQ(gReports[at].offset, -1);
    EXPECT_EQ(gReports[at].line, -1);
  }
  ExpectUntouched(result);
}

// One procedure for the whole process: the last one, also for what was made before.
TEST_F(HostAPIImpl, TheLastProcedureHolds) {
  unsigned char existed = 9;
  HeldRoot const first(CreateRoot(RecordReport, &existed));
  int other = 0;
  void* out = nullptr;
  SK_PluginResult result;
  Static_CreateRoot(&other, "never written", CountReport, &out, &existed, 1, &result);
  HeldRoot const second(out);
  first->addGroup(nullptr, &result);
  second->addGroup(nullptr, &result);
  EXPECT_EQ(gOtherReports, 2);
  EXPECT_TRUE(gReports.empty());
  // A root that is there already stores it too.
  HeldRoot const again(CreateRoot(RecordReport, &existed));
  EXPECT_EQ(existed, 1);
  second->addGroup(nullptr, &result);
  EXPECT_EQ(gOtherReports, 2);
  EXPECT_EQ(gReports.size(), 1u);
  Static_RemoveConverterFromMap(&other, &result);
}

TEST_F(HostAPIImpl, ANullProcedureLeavesTheRecord) {
  unsigned char existed = 9;
  gSetWriterErrorObjectProc = CountReport;
  HeldRoot const root(CreateRoot(nullptr, &existed));
  EXPECT_EQ(gSetWriterErrorObjectProc, nullptr);
  EXPECT_EQ(CodeOf([&](void* result) { root->addGroup(nullptr, result); }), 2003);
  EXPECT_EQ(gOtherReports, 0);
}

TEST_F(HostAPIImpl, SetPluginErrorObjWritesThreeFields) {
  SK_PluginResult result;
  result.mReserved = 77;
  Static_SetPluginErrorObj(&result, kBadArrayCount, 0x123456789ALL, -7);
  EXPECT_EQ(result.mReserved, 77);
  EXPECT_EQ(result.mErrorCode, 2017);
  EXPECT_EQ(result.mFileOffset, 0x123456789ALL);
  EXPECT_EQ(result.mFileLineNo, -7);
}

TEST_F(HostAPIImpl, RemoveConverterFromMapLetsGoOfOneRoot) {
  unsigned char existed = 9;
  HeldRoot const root(CreateRoot(Static_SetPluginErrorObj, &existed));
  int other = 0;
  TdjsonRootImpl::RegisterInstance(&other, OwnNewObject(new TdjsonRootImpl(&other, "never written")));
  ExpectCounts(*root, 2, 0);
  SK_PluginResult result;
  Static_RemoveConverterFromMap(&result, &result);
  EXPECT_NE(TdjsonRootImpl::GetRoot(this), nullptr);
  Static_RemoveConverterFromMap(this, &result);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
  EXPECT_NE(TdjsonRootImpl::GetRoot(&other), nullptr);
  Static_RemoveConverterFromMap(this, &result);
  ExpectUntouched(result);
  // The module's own reference keeps the object, which has no file any more.
  ExpectCounts(*root, 1, 0);
  root->writeVersionToFile(&result);
  EXPECT_EQ(result.mErrorCode, 2005);
  EXPECT_FALSE(std::filesystem::exists(mPath));
  Static_RemoveConverterFromMap(&other, &result);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&other), nullptr);
}

TEST(HostAPITables, EveryEntryIsFilledIn) {
  TDJSONWriter_API writer{};
  GetTDJSONWriterAPI(&writer);
  EXPECT_EQ(writer.mReserved, 0u);
  EXPECT_EQ(writer.Static_CreateRoot, &Static_CreateRoot);
  EXPECT_EQ(writer.Static_CreateGroup, &Static_CreateGroup);
  EXPECT_EQ(writer.Static_CreateDynamicDataNumArr, &Static_CreateDynamicDataNumArr);
  EXPECT_EQ(writer.Static_CreateDynamicDataNum, &Static_CreateDynamicDataNum);
  EXPECT_EQ(writer.Static_CreateDynamicDataString, &Static_CreateDynamicDataString);
  EXPECT_EQ(writer.Static_CreateStaticDataNum, &Static_CreateStaticDataNum);
  EXPECT_EQ(writer.Static_CreateStaticDataNumArr, &Static_CreateStaticDataNumArr);
  EXPECT_EQ(writer.Static_CreateStaticDataString, &Static_CreateStaticDataString);
  EXPECT_EQ(writer.Static_CreateStaticDataBool, &Static_CreateStaticDataBool);
  HandleException_API exception{};
  GetHandleExceptionAPI(&exception);
  EXPECT_EQ(exception.mReserved, 0u);
  EXPECT_EQ(exception.Static_SetPluginErrorObj, &Static_SetPluginErrorObj);
  HandleMemory_API memory{};
  GetHandleMemoryAPI(&memory);
  EXPECT_EQ(memory.mReserved, 0u);
  EXPECT_EQ(memory.Static_RemoveConverterFromMap, &Static_RemoveConverterFromMap);
}

TEST(HostAPITables, NoTableIsNoMistake) {
  GetTDJSONWriterAPI(nullptr);
  GetHandleExceptionAPI(nullptr);
  GetHandleMemoryAPI(nullptr);
}

class WithoutRecord : public testing::TestWithParam<Creation> {};

// Whatever else is wrong with the call.
TEST_P(WithoutRecord, ACreationStopsTheProcess) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  std::string const assertion = "plugin/source/SK_HostAPIImpl:[0-9]+: Static_Create" + std::string(GetParam().name) +
                                ": Assertion `errResultP != 0' failed";
  EXPECT_DEATH(GetParam().create(nullptr, nullptr, 2, nullptr), assertion);
}

INSTANTIATE_TEST_SUITE_P(HostAPIImplDeathTest, WithoutRecord, testing::ValuesIn(kCreations),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(HostAPIImplDeathTest, TheOtherProcsNeedARecordToo) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_DEATH(
      Static_RemoveConverterFromMap(nullptr, nullptr),
      "plugin/source/SK_HostAPIImpl:[0-9]+: Static_RemoveConverterFromMap: Assertion `errResultP != 0' failed");
  EXPECT_DEATH(Static_SetPluginErrorObj(nullptr, kBadArrayCount, -1, -1),
               "plugin/source/SK_HostAPIImpl:[0-9]+: Static_SetPluginErrorObj: Assertion `result != 0' failed");
}

}  // namespace
}  // namespace SK_PLUGIN
