// Groups: what they take as children, in which order they keep it, and how they let go of it.
#include "TdjsonGroupImpl.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "FailingMemory.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "WriterErrors.h"
#include "Writer_Wrapper.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::eDataValueType;
using senmark_test::CodeOf;
using senmark_test::ExpectWriterError;
using senmark_test::FailingMemory;

constexpr auto kUnknownType = static_cast<eDataValueType>(9);

/// A group that is counted while it lives.
class CountedGroup : public TdjsonGroupImpl {
 public:
  static int gLiving;

  explicit CountedGroup(void* key) : TdjsonGroupImpl(key, "a group", "group") { ++gLiving; }
  ~CountedGroup() override { --gLiving; }
};
int CountedGroup::gLiving = 0;

class CountedBool : public TdjsonStaticDataBoolImpl {
 public:
  explicit CountedBool(int& deleted)
      : TdjsonStaticDataImpl("a flag", "flag"),
        TdjsonStaticDataBoolImpl(nullptr, "a flag", "flag", true),
        mDeleted(deleted) {}
  ~CountedBool() override { ++mDeleted; }

 private:
  int& mDeleted;
};

class DirtyNumber : public TdjsonDynamicDataNumImpl {
 public:
  DirtyNumber(void* key, int& deleted) : TdjsonDynamicDataImpl(key), TdjsonDynamicDataNumImpl(key), mDeleted(deleted) {}
  ~DirtyNumber() override { ++mDeleted; }
  bool isDirty() override { return true; }

 private:
  int& mDeleted;
};

/// Objects of a module's own making, which say of themselves what a test wants.
struct ForeignStatic : ITdjsonStaticData_v1 {
  eDataValueType GetType() const override {
    if (mThrows) {
      throw 5;
    }
    return mType;
  }
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return mActual; }

  eDataValueType mType = ns_sensor::kNumberValue;
  ITdjsonStaticData_v1* mActual = this;
  bool mThrows = false;
};

struct ForeignDynamic : ITdjsonDynamicData_v1 {
  eDataValueType GetType() const override {
    if (mThrows) {
      throw 5;
    }
    return mType;
  }
  bool Commit() override { return true; }
  void SetSampleCount(unsigned long long) override {}
  unsigned long long GetSampleCount() const override { return 0; }
  ITdjsonDynamicData_v1* GetActualITdjsonDynamicData() override { return mActual; }
  void commit(void*) override {}
  void setDynamicDataInfo(char const*, char const*, char const*, unsigned long long, unsigned, unsigned char,
                          char const*, void*) override {}

  eDataValueType mType = ns_sensor::kNumberValue;
  ITdjsonDynamicData_v1* mActual = this;
  bool mThrows = false;
};

struct ForeignGroup : SharedObjectImpl, ITdjsonGroup_v1 {
  void AddDynamicData(std::shared_ptr<ITdjsonDynamicData_v1> const&) override {}
  void AddStaticData(std::shared_ptr<ITdjsonStaticData_v1> const&) override {}
  void AddGroup(std::shared_ptr<ITdjsonGroup_v1> const&) override {}
  ITdjsonGroup_v1* GetActualITdjsonGroup() override {
    if (mThrows) {
      throw 5;
    }
    return mActual;
  }
  void addDynamicData(ITdjsonDynamicData_v1*, void*) override {}
  void addStaticData(ITdjsonStaticData_v1*, void*) override {}
  void addGroup(ITdjsonGroup_v1*, void*) override {}

  ITdjsonGroup_v1* mActual = this;
  bool mThrows = false;
};

template <typename Object>
std::shared_ptr<Object> NotOwned(Object& object) {
  return std::shared_ptr<Object>(std::shared_ptr<void>(), &object);
}

class Group : public testing::Test {
 protected:
  Group() {
    mRoot->SetUTCTimeInfo(3, true);
    TdjsonRootImpl::RegisterInstance(this, mRoot);
  }
  ~Group() override {
    TdjsonRootImpl::RemoveInstance(this);
    EXPECT_EQ(CountedGroup::gLiving, 0);
  }

  std::shared_ptr<TdjsonGroupImpl> MakeGroup(std::string const& name) {
    return OwnNewObject(new TdjsonGroupImpl(this, name, name));
  }
  template <typename Impl, typename... Arguments>
  std::shared_ptr<Impl> Make(Arguments const&... arguments) {
    return OwnNewObject(new Impl(this, arguments...));
  }

  void ExpectNoChildren() const {
    EXPECT_TRUE(mGroup->GetDynamicDataList().empty());
    EXPECT_TRUE(mGroup->GetStaticDataList().empty());
    EXPECT_TRUE(mGroup->GetGroupList().empty());
    EXPECT_TRUE(mGroup->GetNodeInfoList().empty());
  }

  std::shared_ptr<TdjsonRootImpl> const mRoot = OwnNewObject(new TdjsonRootImpl(this, "never written"));
  std::shared_ptr<TdjsonGroupImpl> const mGroup = MakeGroup("group");
};

TEST_F(Group, KeepsItsNamesAndEscapesOnlyTheOneForPeople) {
  TdjsonGroupImpl const group(nullptr, "a \"name\"\n", "1 match_name \"\n");
  EXPECT_EQ(group.GetDisplayName(), R"(a \"name\"\n)");
  EXPECT_EQ(group.GetMatchName(), "1 match_name \"\n");
  std::string const whole("a\0b", 3);
  TdjsonGroupImpl const withNul(nullptr, whole, whole);
  EXPECT_EQ(withNul.GetDisplayName(), whole);
  EXPECT_EQ(withNul.GetMatchName(), whole);
}

struct Name {
  char const* name;
  char const* matchName;
  bool valid;
};

class NameOfGroup : public testing::TestWithParam<Name> {};

TEST_P(NameOfGroup, IsLookedAtByOneOfTheWaysToMakeIt) {
  Name const& row = GetParam();
  int key = 0;
  if (row.valid) {
    std::shared_ptr<ITdjsonGroup_v1> const group = ITdjsonGroup_v1::CreateGroup(&key, row.matchName, "a \"name\"");
    auto const impl = std::dynamic_pointer_cast<TdjsonGroupImpl>(group);
    ASSERT_NE(impl, nullptr);
    EXPECT_EQ(impl->GetMatchName(), row.matchName);
    EXPECT_EQ(impl->GetDisplayName(), R"(a \"name\")");
  } else {
    ExpectWriterError([&] { ITdjsonGroup_v1::CreateGroup(&key, row.matchName, "a name"); }, 2022);
  }
  auto const wrapped =
      std::dynamic_pointer_cast<TdjsonGroupImpl>(Writer_Wrapper::CreateGroup_Wrapper(&key, row.matchName, "a name"));
  ASSERT_NE(wrapped, nullptr);
  EXPECT_EQ(wrapped->GetMatchName(), row.matchName);
}

Name const kNames[] = {
    {"LettersAndDigits", "arm2", true},   {"OneLetter", "a", true},           {"Empty", "", false},
    {"StartsWithADigit", "2arm", false},  {"Underscore", "left_arm", false},  {"Blank", "left arm", false},
    {"NotAscii", "\xC3\xA9tat", false},   {"NotAsciiLast", "caf\xE9", false}, {"OneDigit", "0", false},
    {"UnderscoreInFront", "_arm", false},
};

INSTANTIATE_TEST_SUITE_P(Group, NameOfGroup, testing::ValuesIn(kNames),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(Group, KeepsChildrenByKindAndInTheOrderOfTheirArrival) {
  auto const inner = MakeGroup("inner");
  auto const second = MakeGroup("second");
  auto const number = Make<TdjsonStaticDataNumImpl>("n", "n", 1.0);
  auto const text = Make<TdjsonStaticDataStringImpl>("s", "s", "text");
  auto const array = Make<TdjsonStaticDataNumArrImpl>("a", "a");
  auto const flag = Make<TdjsonStaticDataBoolImpl>("b", "b", true);
  auto const numbers = Make<TdjsonDynamicDataNumImpl>();
  auto const texts = Make<TdjsonDynamicDataStringImpl>();
  auto const arrays = Make<TdjsonDynamicDataNumArrImpl>();

  auto const expectAll = [&] {
    std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> const dynamicData = {texts, numbers, arrays};
    std::vector<std::shared_ptr<TdjsonStaticDataImpl>> const staticData = {number, text, array, flag};
    std::vector<std::shared_ptr<TdjsonGroupImpl>> const groups = {inner, second};
    EXPECT_EQ(mGroup->GetDynamicDataList(), dynamicData);
    EXPECT_EQ(mGroup->GetStaticDataList(), staticData);
    EXPECT_EQ(mGroup->GetGroupList(), groups);
    struct {
      int type;
      std::uint64_t index;
    } const expected[] = {{2, 1}, {0, 1}, {1, 1}, {2, 2}, {2, 3}, {1, 2}, {0, 2}, {2, 4}, {1, 3}};
    std::vector<NodeInfo> const& order = mGroup->GetNodeInfoList();
    ASSERT_EQ(order.size(), 9u);
    for (std::size_t at = 0; at < order.size(); ++at) {
      EXPECT_EQ(order[at].type, expected[at].type) << at;
      EXPECT_EQ(order[at].index, expected[at].index) << at;
    }
  };

  mGroup->AddStaticData(number);
  mGroup->AddGroup(inner);
  mGroup->AddDynamicData(texts);
  mGroup->AddStaticData(text);
  mGroup->AddStaticData(array);
  mGroup->AddDynamicData(numbers);
  mGroup->AddGroup(second);
  mGroup->AddStaticData(flag);
  mGroup->AddDynamicData(arrays);
  expectAll();

  mGroup->ResetGroup();
  ExpectNoChildren();
  EXPECT_EQ(mGroup->GetMatchName(), "group");
  EXPECT_EQ(mGroup->GetDisplayName(), "group");

  // The same from a module, which owns the objects by their counts.
  std::vector<ISharedObject const*> const counted = {inner.get(), second.get(),  number.get(), text.get(),  array.get(),
                                                     flag.get(),  numbers.get(), texts.get(),  arrays.get()};
  for (ISharedObject const* object : counted) {
    object->Acquire();
  }
  SK_PluginResult result;
  mGroup->addStaticData(number.get(), &result);
  mGroup->addGroup(inner.get(), &result);
  mGroup->addDynamicData(texts.get(), &result);
  mGroup->addStaticData(text.get(), &result);
  mGroup->addStaticData(array.get(), &result);
  mGroup->addDynamicData(numbers.get(), &result);
  mGroup->addGroup(second.get(), &result);
  mGroup->addStaticData(flag.get(), &result);
  mGroup->addDynamicData(arrays.get(), &result);
  EXPECT_EQ(result.mErrorCode, 0);
  // Shared pointers are equal by what they point to, whoever counts.
  expectAll();
  mGroup->ResetGroup();
}

TEST_F(Group, NothingIsNoChild) {
  ExpectWriterError([&] { mGroup->AddDynamicData(nullptr); }, 2001);
  ExpectWriterError([&] { mGroup->AddStaticData(nullptr); }, 2002);
  ExpectWriterError([&] { mGroup->AddGroup(nullptr); }, 2003);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(nullptr, result); }), 2001);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(nullptr, result); }), 2002);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addGroup(nullptr, result); }), 2003);
  ExpectNoChildren();
}

/// What an object says of itself, and what a group says to it.
struct Claim {
  eDataValueType type;
  int codeOfStatic;
  int codeOfDynamic;
};
constexpr Claim kClaims[] = {
    {ns_sensor::kNumberValue, 2016, 2016},      {ns_sensor::kStringValue, 2016, 2016},
    {ns_sensor::kNumberArrayValue, 2016, 2016}, {ns_sensor::kBooleanValue, 2016, 2026},
    {ns_sensor::kInvalidValue, 2026, 2026},     {kUnknownType, 2026, 2026},
};

TEST_F(Group, ForeignNodesAreRefusedByTheirType) {
  ForeignStatic foreignStatic;
  ForeignDynamic foreignDynamic;
  for (Claim const& claim : kClaims) {
    SCOPED_TRACE(claim.type);
    foreignStatic.mType = claim.type;
    foreignDynamic.mType = claim.type;
    ExpectWriterError([&] { mGroup->AddStaticData(NotOwned(foreignStatic)); }, claim.codeOfStatic);
    ExpectWriterError([&] { mGroup->AddDynamicData(NotOwned(foreignDynamic)); }, claim.codeOfDynamic);
    EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(&foreignStatic, result); }), claim.codeOfStatic);
    EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(&foreignDynamic, result); }), claim.codeOfDynamic);
  }
  ExpectNoChildren();
}

TEST_F(Group, ANodeOfAnotherClassThanItsTypeIsRefused) {
  /// Says that it is a number.
  struct LyingBool : TdjsonStaticDataBoolImpl {
    LyingBool() : TdjsonStaticDataImpl("b", "b"), TdjsonStaticDataBoolImpl(nullptr, "b", "b", true) {}
    eDataValueType GetType() const override { return ns_sensor::kNumberValue; }
  };
  auto const flag = OwnNewObject(new LyingBool);
  ExpectWriterError([&] { mGroup->AddStaticData(flag); }, 2016);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(flag.get(), result); }), 2016);
  ExpectNoChildren();
}

TEST_F(Group, AForeignGroupIsRefused) {
  ForeignGroup foreign;
  ExpectWriterError([&] { mGroup->AddGroup(NotOwned(foreign)); }, 2016);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addGroup(&foreign, result); }), 2016);
  ExpectNoChildren();
}

TEST_F(Group, AnObjectWithoutARealOneBehindItIsRefused) {
  ForeignStatic foreignStatic;
  ForeignDynamic foreignDynamic;
  ForeignGroup foreignGroup;
  foreignStatic.mActual = nullptr;
  foreignDynamic.mActual = nullptr;
  foreignGroup.mActual = nullptr;
  ExpectWriterError([&] { mGroup->AddStaticData(NotOwned(foreignStatic)); }, 2016);
  ExpectWriterError([&] { mGroup->AddDynamicData(NotOwned(foreignDynamic)); }, 2016);
  ExpectWriterError([&] { mGroup->AddGroup(NotOwned(foreignGroup)); }, 2016);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(&foreignStatic, result); }), 2016);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(&foreignDynamic, result); }), 2016);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addGroup(&foreignGroup, result); }), 2016);
  ExpectNoChildren();
}

TEST_F(Group, TheRealObjectBehindAForeignOneIsTheChild) {
  auto const flag = Make<TdjsonStaticDataBoolImpl>("b", "b", true);
  flag->Acquire();
  ForeignStatic foreign;
  foreign.mActual = flag.get();
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(&foreign, result); }), 0);
  ASSERT_EQ(mGroup->GetStaticDataList().size(), 1u);
  EXPECT_EQ(mGroup->GetStaticDataList()[0].get(), flag.get());
  mGroup->ResetGroup();
}

TEST_F(Group, WhateverAForeignObjectThrowsIsReported) {
  ForeignStatic foreignStatic;
  ForeignDynamic foreignDynamic;
  ForeignGroup foreignGroup;
  foreignStatic.mThrows = foreignDynamic.mThrows = foreignGroup.mThrows = true;
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(&foreignStatic, result); }), 1023);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(&foreignDynamic, result); }), 1023);
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addGroup(&foreignGroup, result); }), 1023);
  ExpectNoChildren();
}

TEST_F(Group, ADirtyNodeIsRefused) {
  int deleted = 0;
  auto const shared = OwnNewObject(new DirtyNumber(this, deleted));
  ExpectWriterError([&] { mGroup->AddDynamicData(shared); }, 2001);
  shared->Acquire();
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(shared.get(), result); }), 2001);
  EXPECT_EQ(deleted, 0);
  ExpectNoChildren();
}

// The group has taken the only reference by then.
TEST_F(Group, ADirtyNodeThatNobodyHasAcquiredEndsWithTheRefusal) {
  int deleted = 0;
  auto* const node = new DirtyNumber(this, deleted);
  node->AcquireInternal();
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addDynamicData(node, result); }), 2001);
  EXPECT_EQ(deleted, 1);
}

TEST_F(Group, TakesTheReferenceThatAModuleHasNotClaimed) {
  int deleted = 0;
  auto* const flag = new CountedBool(deleted);
  flag->AcquireInternal();
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(flag, result); }), 0);
  EXPECT_EQ(deleted, 0);
  mGroup->ResetGroup();
  EXPECT_EQ(deleted, 1);
}

TEST_F(Group, SharesAChildWithAModuleThatHasAcquiredIt) {
  int deleted = 0;
  auto* const flag = new CountedBool(deleted);
  flag->AcquireInternal();
  flag->Acquire();
  EXPECT_EQ(CodeOf([&](void* result) { mGroup->addStaticData(flag, result); }), 0);
  flag->Release();
  EXPECT_EQ(deleted, 0);
  mGroup->ResetGroup();
  EXPECT_EQ(deleted, 1);
}

TEST_F(Group, SharesAChildWithItsCaller) {
  int deleted = 0;
  auto flag = OwnNewObject(new CountedBool(deleted));
  mGroup->AddStaticData(flag);
  flag.reset();
  EXPECT_EQ(deleted, 0);
  mGroup->ResetGroup();
  EXPECT_EQ(deleted, 1);
}

TEST_F(Group, AChildThatIsAddedTwiceIsThereTwice) {
  auto const inner = MakeGroup("inner");
  mGroup->AddGroup(inner);
  mGroup->AddGroup(inner);
  ASSERT_EQ(mGroup->GetGroupList().size(), 2u);
  EXPECT_EQ(mGroup->GetGroupList()[0], inner);
  EXPECT_EQ(mGroup->GetGroupList()[1], inner);
  EXPECT_EQ(mGroup->GetNodeInfoList()[1].index, 2u);
}

TEST_F(Group, NodesWithoutAnObjectStandInTheOrderOfTheirArrival) {
  mGroup->AddStaticNumber("n", "a \"number\"", 1.5);
  mGroup->AddStaticString("s", "S", "a\n");
  mGroup->AddGroup(MakeGroup("inner"));
  mGroup->AddStaticData(Make<TdjsonStaticDataNumImpl>("N", "n2", 2.0));
  mGroup->AddStaticBool("b", "B", true);
  std::vector<NodeInfo> const& order = mGroup->GetNodeInfoList();
  ASSERT_EQ(order.size(), 4u);
  EXPECT_EQ(order[0].type, ns_sensor::kStaticChild);
  EXPECT_TRUE(order[0].IsOfRecords());
  EXPECT_EQ(order[0].CountRecords(), 2u);
  EXPECT_EQ(order[1].type, ns_sensor::kGroupChild);
  EXPECT_FALSE(order[1].IsOfRecords());
  EXPECT_EQ(order[2].type, ns_sensor::kStaticChild);
  EXPECT_FALSE(order[2].IsOfRecords());
  EXPECT_EQ(order[2].index, 1u);
  EXPECT_TRUE(order[3].IsOfRecords());
  EXPECT_EQ(order[3].CountRecords(), 1u);
  EXPECT_EQ(mGroup->GetStaticDataList().size(), 1u);
  SK_StaticRecords::Reader reader(mGroup->GetStaticRecords());
  EXPECT_EQ(reader.Next().displayName, R"(a \"number\")");
  EXPECT_EQ(reader.Next().text, R"(a\n)");
  EXPECT_EQ(reader.Next().matchName, "b");

  mGroup->ResetGroup();
  ExpectNoChildren();
  mGroup->AddStaticBool("first", "F", false);
  SK_StaticRecords::Reader again(mGroup->GetStaticRecords());
  EXPECT_EQ(again.Next().matchName, "first");
}

TEST_F(Group, WithoutMemoryANodeWithoutAnObjectIsNotAddedByHalf) {
  std::string const text(100, '"');
  for (bool const isFirst : {true, false}) {
    int failures = 0;
    for (bool again = true; again;) {
      mGroup->ResetGroup();
      if (!isFirst) {
        mGroup->AddStaticBool("b", "B", true);
      }
      FailingMemory const failing(static_cast<std::uint64_t>(failures) + 1);
      try {
        mGroup->AddStaticString(text, text, text);
        again = false;
      } catch (std::bad_alloc const&) {
        ++failures;
        ASSERT_EQ(mGroup->GetNodeInfoList().size(), isFirst ? 0u : 1u);
        if (!isFirst) {
          EXPECT_EQ(mGroup->GetNodeInfoList()[0].CountRecords(), 1u);
        }
      }
    }
    EXPECT_GE(failures, 3);
    EXPECT_EQ(mGroup->GetNodeInfoList()[0].CountRecords(), isFirst ? 1u : 2u);
  }
}

TEST_F(Group, AFinishedGroupThatNobodyHoldsGoesIfItIsSmall) {
  auto const small = [&] {
    std::shared_ptr<TdjsonGroupImpl> group = OwnNewObject(new CountedGroup(this));
    group->AddStaticBool("b", "B", true);
    return group;
  };
  mGroup->AddFinishedGroup(small());
  EXPECT_EQ(CountedGroup::gLiving, 0);
  ASSERT_EQ(mGroup->GetNodeInfoList().size(), 1u);
  EXPECT_EQ(mGroup->GetNodeInfoList()[0].CountRecords(), 1u);
  SK_StaticRecords::Reader reader(mGroup->GetStaticRecords());
  SK_StaticRecords::Record const record = reader.Next();
  EXPECT_EQ(record.kind, SK_StaticRecords::kGroup);
  EXPECT_EQ(record.matchName, "group");
  EXPECT_EQ(record.displayName, "a group");

  struct {
    char const* name;
    std::function<void(std::shared_ptr<TdjsonGroupImpl>&)> change;
  } const others[] = {
      {"large", [](auto& group) { group->AddStaticString("s", "S", std::string(5000, 's')); }},
      {"empty", [](auto& group) { group->ResetGroup(); }},
      {"with an object", [&](auto& group) { group->AddStaticData(Make<TdjsonStaticDataNumImpl>("N", "n", 1.0)); }},
      {"with a group", [&](auto& group) { group->AddGroup(MakeGroup("inner")); }},
  };
  for (auto const& other : others) {
    SCOPED_TRACE(other.name);
    mGroup->ResetGroup();
    auto group = small();
    other.change(group);
    TdjsonGroupImpl* const itself = group.get();
    mGroup->AddFinishedGroup(std::move(group));
    ASSERT_EQ(mGroup->GetNodeInfoList().size(), 1u);
    EXPECT_FALSE(mGroup->GetNodeInfoList()[0].IsOfRecords());
    EXPECT_EQ(mGroup->GetGroupList().at(0).get(), itself);
  }
  mGroup->ResetGroup();
  auto const held = small();
  mGroup->AddFinishedGroup(held);
  EXPECT_EQ(mGroup->GetGroupList().at(0), held);
  mGroup->ResetGroup();
  ExpectWriterError([&] { mGroup->AddFinishedGroup(nullptr); }, 2003);
}

TEST_F(Group, WithoutMemoryAFinishedGroupIsNotAddedByHalf) {
  int failures = 0;
  for (bool again = true; again;) {
    mGroup->ResetGroup();
    auto inner = MakeGroup("inner");
    inner->AddStaticString("s", "S", std::string(200, 's'));
    FailingMemory const failing(static_cast<std::uint64_t>(failures) + 1);
    try {
      mGroup->AddFinishedGroup(std::move(inner));
      again = false;
    } catch (std::bad_alloc const&) {
      ++failures;
      ExpectNoChildren();
    }
  }
  EXPECT_EQ(failures, 3) << "the place in the order, the piece and its place";
  EXPECT_EQ(mGroup->GetNodeInfoList()[0].CountRecords(), 1u);
}

TEST_F(Group, TwoGroupsMayHaveOneChild) {
  auto outer = OwnNewObject(new CountedGroup(this));
  auto inner = OwnNewObject(new CountedGroup(this));
  outer->AddGroup(inner);
  mGroup->AddGroup(inner);
  inner.reset();
  outer.reset();
  EXPECT_EQ(CountedGroup::gLiving, 1);
  mGroup->ResetGroup();
  EXPECT_EQ(CountedGroup::gLiving, 0);
}

TEST_F(Group, ARootIsAGroup) {
  mGroup->AddGroup(mRoot);
  ASSERT_EQ(mGroup->GetGroupList().size(), 1u);
  EXPECT_EQ(mGroup->GetGroupList()[0].get(), mRoot.get());
}

// Nobody but itself owns it at the end, so the reset is what ends it.
TEST_F(Group, AGroupInItselfGoesWithItsReset) {
  auto group = OwnNewObject(new CountedGroup(this));
  group->AddGroup(group);
  CountedGroup* const itself = group.get();
  group.reset();
  ASSERT_EQ(CountedGroup::gLiving, 1);
  itself->ResetGroup();
  EXPECT_EQ(CountedGroup::gLiving, 0);
}

TEST_F(Group, WithoutMemoryAChildIsNotAddedByHalf) {
  int deleted = 0;
  auto const flag = OwnNewObject(new CountedBool(deleted));
  flag->Acquire();
  auto const numbers = Make<TdjsonDynamicDataNumImpl>();
  numbers->Acquire();
  auto const inner = MakeGroup("inner");
  inner->Acquire();
  struct {
    char const* name;
    std::function<void(TdjsonGroupImpl&, void*)> add;
    std::function<void(TdjsonGroupImpl&)> addNative;
  } const ways[] = {
      {"static", [&](TdjsonGroupImpl& group, void* result) { group.addStaticData(flag.get(), result); },
       [&](TdjsonGroupImpl& group) { group.AddStaticData(flag); }},
      {"dynamic", [&](TdjsonGroupImpl& group, void* result) { group.addDynamicData(numbers.get(), result); },
       [&](TdjsonGroupImpl& group) { group.AddDynamicData(numbers); }},
      {"group", [&](TdjsonGroupImpl& group, void* result) { group.addGroup(inner.get(), result); },
       [&](TdjsonGroupImpl& group) { group.AddGroup(inner); }},
  };
  for (auto const& way : ways) {
    SCOPED_TRACE(way.name);
    int failures = 0;
    for (bool again = true; again;) {
      mGroup->ResetGroup();
      SK_PluginResult result;
      {
        FailingMemory const failing(static_cast<std::uint64_t>(failures) + 1);
        way.add(*mGroup, &result);
        again = failing.HasFailed();
      }
      EXPECT_EQ(result.mErrorCode, again ? 1034 : 0);
      if (again) {
        ExpectNoChildren();
        ++failures;
      }
    }
    EXPECT_EQ(mGroup->GetNodeInfoList().size(), 1u);
    EXPECT_EQ(failures, 3) << "the owner, the place in the list, the place in the order";

    failures = 0;
    for (bool again = true; again;) {
      mGroup->ResetGroup();
      FailingMemory const failing(static_cast<std::uint64_t>(failures) + 1);
      try {
        way.addNative(*mGroup);
        again = false;
      } catch (std::bad_alloc const&) {
        ++failures;
        ExpectNoChildren();
      }
    }
    EXPECT_EQ(failures, 2);
  }
  EXPECT_EQ(deleted, 0);
}

constexpr int kDepth = 1000000;

TEST_F(Group, AMillionNestedGroupsGoWithoutDeepeningTheStack) {
  auto outermost = OwnNewObject(new CountedGroup(this));
  std::shared_ptr<TdjsonGroupImpl> innermost = outermost;
  for (int depth = 1; depth < kDepth; ++depth) {
    auto const next = OwnNewObject(new CountedGroup(this));
    innermost->AddGroup(next);
    innermost = next;
  }
  innermost.reset();
  EXPECT_EQ(CountedGroup::gLiving, kDepth);
  outermost.reset();
  EXPECT_EQ(CountedGroup::gLiving, 0);
}

TEST_F(Group, AMillionNestedGroupsGoWithTheResetOfTheirRoot) {
  std::shared_ptr<TdjsonGroupImpl> innermost = mRoot;
  for (int depth = 0; depth < kDepth; ++depth) {
    auto* const next = new CountedGroup(this);
    next->AcquireInternal();
    SK_PluginResult result;
    innermost->addGroup(next, &result);
    ASSERT_EQ(result.mErrorCode, 0);
    innermost = innermost->GetGroupList().back();
  }
  innermost.reset();
  mRoot->ResetRoot();
  EXPECT_EQ(CountedGroup::gLiving, 0);
}

// Siblings at every level, so that what waits to be let go of grows.
void Grow(TdjsonGroupImpl& group, int depth) {
  for (int sibling = 0; depth > 0 && sibling < 3; ++sibling) {
    auto const child = OwnNewObject(new CountedGroup(nullptr));
    Grow(*child, depth - 1);
    group.AddGroup(child);
  }
}

TEST_F(Group, ATreeGoesAlsoWhenThereIsNoMemory) {
  constexpr int kTree = 1 + 3 + 9 + 27 + 81 + 243;
  for (std::uint64_t const failures : {FailingMemory::kAll, std::uint64_t{1}}) {
    auto tree = OwnNewObject(new CountedGroup(this));
    Grow(*tree, 5);
    ASSERT_EQ(CountedGroup::gLiving, kTree);
    FailingMemory const failing(1, failures);
    tree.reset();
    EXPECT_TRUE(failing.HasFailed());
    EXPECT_EQ(CountedGroup::gLiving, 0);
  }
}

TEST_F(Group, AChainNeedsNoMemoryToGo) {
  auto chain = OwnNewObject(new CountedGroup(this));
  std::shared_ptr<TdjsonGroupImpl> innermost = chain;
  for (int depth = 0; depth < 1000; ++depth) {
    auto const next = OwnNewObject(new CountedGroup(this));
    innermost->AddGroup(next);
    innermost = next;
  }
  innermost.reset();
  FailingMemory const failing(1, FailingMemory::kAll);
  chain.reset();
  EXPECT_FALSE(failing.HasFailed());
  EXPECT_EQ(CountedGroup::gLiving, 0);
}

}  // namespace
}  // namespace SK_PLUGIN
