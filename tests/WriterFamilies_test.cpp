// What holds for all nine families of the writer's objects.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
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
#include "TempFolder.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::CodeOf;
using senmark_test::FailingMemory;
using senmark_test::TempFolder;

constexpr unsigned long long kMark = 18446744073709551615ull;
/// Longer than what a string holds without memory of its own.
constexpr char kLongText[] = "a text that is too long for a short string, with a \"quote\"";
constexpr char kLongName[] = "aMatchNameThatIsTooLongForAShortString";

/// One border form and arguments for it, and what is done before it, if anything.
template <typename Interface>
struct BorderForm {
  using Call = std::function<void(Interface&, void*)>;
  using Step = std::function<void(Interface&)>;

  BorderForm() = default;
  BorderForm(char const* itsName, Call itsCall, Step before = Step())
      : name(itsName), call(std::move(itsCall)), prepare(std::move(before)) {}

  char const* name = nullptr;
  Call call;
  Step prepare;
};

/// A family: its interface, an object of it that tells when it goes, its border forms, and one of them in which
/// something unknown is thrown, if there is a way to that.
struct RootFamily {
  using Interface = ITdjsonRoot_v1;
  struct Object : TdjsonRootImpl {
    Object(void* key, std::string const& path, int& living)
        : TdjsonGroupImpl(key, "root", "root"), TdjsonRootImpl(key, path.c_str()), mKey(key), mLiving(living) {
      ++mLiving;
    }
    ~Object() override { --mLiving; }
    bool Commit() override { return mThrows ? throw 5 : TdjsonRootImpl::Commit(); }
    void* mKey;
    int& mLiving;
    bool mThrows = false;
  };
  static std::vector<BorderForm<Interface>> Forms() {
    // Its own serializer, in place of that of the fixture's root. The registry does not own it.
    auto const prepare = [](Interface& root) {
      auto& object = dynamic_cast<Object&>(root);
      TdjsonRootImpl::RemoveInstance(object.mKey);
      TdjsonRootImpl::RegisterInstance(object.mKey, std::shared_ptr<TdjsonRootImpl>(std::shared_ptr<void>(), &object));
      root.AddStaticData(OwnNewObject(new TdjsonStaticDataBoolImpl(nullptr, "b", "b", true)));
    };
    return {
        {"commit", [](Interface& root, void* result) { root.commit(result); }, prepare},
        {"setCreator", [](Interface& root, void* result) { root.setCreator(kLongText, result); }},
        {"setSMPTETimeInfo", [](Interface& root, void* result) { root.setSMPTETimeInfo(0, 25, 1, result); }},
        {"setUTCTimeInfo", [](Interface& root, void* result) { root.setUTCTimeInfo(3, 1, result); }},
        {"addSyncTimeFrameNum", [](Interface& root, void* result) { root.addSyncTimeFrameNum(kLongText, 1, result); }},
        {"addSyncTimeStr",
         [](Interface& root, void* result) { root.addSyncTimeStr(kLongText, kLongText, 20, result); }},
        {"writeVersionToFile", [](Interface& root, void* result) { root.writeVersionToFile(result); }, prepare},
    };
  }
  static BorderForm<Interface> UnknownForm() {
    return {"commit", [](Interface& root, void* result) {
              dynamic_cast<Object&>(root).mThrows = true;
              root.commit(result);
            }};
  }
};

struct GroupFamily {
  using Interface = ITdjsonGroup_v1;
  struct Object : TdjsonGroupImpl {
    Object(void* key, std::string const&, int& living) : TdjsonGroupImpl(key, "g", "g"), mLiving(living) { ++mLiving; }
    ~Object() override { --mLiving; }
    int& mLiving;
  };
  struct ThrowingNode : ITdjsonStaticData_v1 {
    ns_sensor::eDataValueType GetType() const override { throw 5; }
    ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
  };
  static std::vector<BorderForm<Interface>> Forms() {
    static auto const group = OwnNewObject(new TdjsonGroupImpl(nullptr, "g", "g"));
    static auto const flag = OwnNewObject(new TdjsonStaticDataBoolImpl(nullptr, "b", "b", true));
    // The owners above are not counted: their own reference stands for them.
    static bool const counted = (group->Acquire(), flag->Acquire(), true);
    static_cast<void>(counted);
    return {
        {"addGroup", [](Interface& object, void* result) { object.addGroup(group.get(), result); }},
        {"addStaticData", [](Interface& object, void* result) { object.addStaticData(flag.get(), result); }},
    };
  }
  static BorderForm<Interface> UnknownForm() {
    return {"addStaticData", [](Interface& object, void* result) {
              ThrowingNode node;
              object.addStaticData(&node, result);
            }};
  }
};

template <typename Impl>
struct DynamicObject : Impl {
  DynamicObject(void* key, std::string const&, int& living) : TdjsonDynamicDataImpl(key), Impl(key), mLiving(living) {
    ++mLiving;
  }
  ~DynamicObject() override { --mLiving; }
  bool Commit() override { return mThrows ? throw 5 : Impl::Commit(); }
  int& mLiving;
  bool mThrows = false;
};

template <typename InterfaceOfFamily, typename Impl>
struct DynamicFamily {
  using Interface = InterfaceOfFamily;
  using Object = DynamicObject<Impl>;

  static std::vector<BorderForm<Interface>> SharedForms(std::function<void(Interface&)> const& addSample) {
    return {
        {"setDynamicDataInfo",
         [](Interface& node, void* result) {
           node.setDynamicDataInfo(kLongText, kLongName, kLongText, 0, 1, 1, kLongText, result);
         }},
        {"commit", [](Interface& node, void* result) { node.commit(result); }, addSample},
    };
  }
  static BorderForm<Interface> UnknownForm() {
    return {"commit", [](Interface& node, void* result) {
              dynamic_cast<Object&>(node).mThrows = true;
              node.commit(result);
            }};
  }
};

struct DynamicNumFamily : DynamicFamily<ITdjsonDynamicDataNum_v1, TdjsonDynamicDataNumImpl> {
  static std::vector<BorderForm<Interface>> Forms() {
    auto forms = SharedForms([](Interface& node) {
      node.setNumberPattern(1, 0, 0, nullptr);
      EXPECT_TRUE(node.AddSample(ns_sensor::SK_DateTimeSMPTE{0, 0, 0, 1}, 5));
    });
    forms.push_back(
        {"setNumberPattern", [](Interface& node, void* result) { node.setNumberPattern(kMark, kMark, 0, result); }});
    forms.push_back({"setNumberRange", [](Interface& node, void* result) { node.setNumberRange(0, 1, 0, 1, result); }});
    forms.push_back({"addSampleSMPTE",
                     [](Interface& node, void* result) { node.addSampleSMPTE(0, 0, 0, 1, 123456.789012345, result); }});
    return forms;
  }
};

struct DynamicNumArrFamily : DynamicFamily<ITdjsonDynamicDataNumArr_v1, TdjsonDynamicDataNumArrImpl> {
  static std::vector<BorderForm<Interface>> Forms() {
    auto const prepare = [](Interface& node) {
      EXPECT_EQ(CodeOf([&](void* result) { node.setArrCount(2, result); }), 0);
      EXPECT_TRUE(node.addElement(1, nullptr));
      EXPECT_TRUE(node.addElement(2, nullptr));
    };
    auto forms = SharedForms([prepare](Interface& node) {
      prepare(node);
      node.setNumberPattern(1, 0, 0, nullptr);
      EXPECT_TRUE(node.addTimeSMPTE(0, 0, 0, 1, nullptr));
    });
    forms.push_back(
        {"setNumberPattern", [](Interface& node, void* result) { node.setNumberPattern(kMark, kMark, 0, result); }});
    forms.push_back({"setNumberRange", [](Interface& node, void* result) { node.setNumberRange(0, 1, 0, 1, result); }});
    forms.push_back({"setArrCount", [](Interface& node, void* result) { node.setArrCount(3, result); }});
    forms.push_back({"setIsPoint", [](Interface& node, void* result) { node.setIsPoint(1, result); }});
    forms.push_back({"setDisplayName", [](Interface& node, void* result) { node.setDisplayName(kLongText, result); }});
    forms.push_back({"addElement", [](Interface& node, void* result) { node.addElement(1, result); }});
    forms.push_back(
        {"addTimeSMPTE", [](Interface& node, void* result) { node.addTimeSMPTE(0, 0, 0, 1, result); }, prepare});
    return forms;
  }
};

struct DynamicStringFamily : DynamicFamily<ITdjsonDynamicDataString_v1, TdjsonDynamicDataStringImpl> {
  static std::vector<BorderForm<Interface>> Forms() {
    auto forms = SharedForms([](Interface& node) {
      EXPECT_TRUE(node.AddSample(ns_sensor::SK_DateTimeSMPTE{0, 0, 0, 1}, kLongText));
    });
    forms.push_back(
        {"setStringProperties", [](Interface& node, void* result) { node.setStringProperties(1, 1, 1, result); }});
    forms.push_back(
        {"addSampleSMPTE", [](Interface& node, void* result) { node.addSampleSMPTE(0, 0, 0, 1, kLongText, result); }});
    return forms;
  }
};

/// A static node; `Arguments` are those of its value.
template <typename Impl>
struct StaticObject : Impl {
  template <typename... Arguments>
  StaticObject(void* key, int& living, Arguments const&... value)
      : TdjsonStaticDataImpl("d", "m"), Impl(key, "d", "m", value...), mLiving(living) {
    ++mLiving;
  }
  ~StaticObject() override { --mLiving; }
  int& mLiving;
};

struct StaticNumFamily {
  using Interface = ITdjsonStaticDataNum_v1;
  struct Object : StaticObject<TdjsonStaticDataNumImpl> {
    Object(void* key, std::string const&, int& living)
        : TdjsonStaticDataImpl("d", "m"), StaticObject(key, living, 123456.789012345) {}
  };
  static std::vector<BorderForm<Interface>> Forms() {
    return {
        {"setNumberPattern", [](Interface& node, void* result) { node.setNumberPattern(kMark, kMark, 0, result); }},
        {"setNumberRange", [](Interface& node, void* result) { node.setNumberRange(0, 1, 0, 1, result); }},
    };
  }
};

struct StaticNumArrFamily {
  using Interface = ITdjsonStaticDataNumArr_v1;
  struct Object : StaticObject<TdjsonStaticDataNumArrImpl> {
    Object(void* key, std::string const&, int& living) : TdjsonStaticDataImpl("d", "m"), StaticObject(key, living) {}
  };
  static std::vector<BorderForm<Interface>> Forms() {
    return {
        {"addElement", [](Interface& node, void* result) { node.addElement(1, result); }},
        {"addDisplayName", [](Interface& node, void* result) { node.addDisplayName(kLongText, result); }},
        {"setNumberPattern", [](Interface& node, void* result) { node.setNumberPattern(kMark, kMark, 0, result); },
         [](Interface& node) { EXPECT_TRUE(node.addElement(123456.789012345, nullptr)); }},
        {"setNumberRange", [](Interface& node, void* result) { node.setNumberRange(0, 1, 0, 1, result); }},
        {"setArrCount", [](Interface& node, void* result) { node.setArrCount(3, result); }},
        {"setIsPoint", [](Interface& node, void* result) { node.setIsPoint(1, result); }},
    };
  }
};

struct StaticStringFamily {
  using Interface = ITdjsonStaticDataString_v1;
  struct Object : StaticObject<TdjsonStaticDataStringImpl> {
    Object(void* key, std::string const&, int& living)
        : TdjsonStaticDataImpl("d", "m"), StaticObject(key, living, kLongText) {}
  };
  static std::vector<BorderForm<Interface>> Forms() {
    return {{"setStringProperties", [](Interface& node, void* result) { node.setStringProperties(1, 1, 1, result); }}};
  }
};

struct StaticBoolFamily {
  using Interface = ITdjsonStaticDataBool_v1;
  struct Object : StaticObject<TdjsonStaticDataBoolImpl> {
    Object(void* key, std::string const&, int& living)
        : TdjsonStaticDataImpl("d", "m"), StaticObject(key, living, true) {}
  };
  static std::vector<BorderForm<Interface>> Forms() { return {}; }
};

using Families = testing::Types<RootFamily, GroupFamily, DynamicNumFamily, DynamicNumArrFamily, DynamicStringFamily,
                                StaticNumFamily, StaticNumArrFamily, StaticStringFamily, StaticBoolFamily>;

template <typename Family>
class WriterFamilies : public testing::Test {
 protected:
  using Object = typename Family::Object;

  WriterFamilies() {
    mRoot->SetSMPTETimeInfo(false, 25, 1);
    TdjsonRootImpl::RegisterInstance(this, mRoot);
  }
  ~WriterFamilies() override {
    TdjsonRootImpl::RemoveInstance(this);
    EXPECT_EQ(mLiving, 0);
  }

  /// Held by nobody.
  Object* Make() { return new Object(this, mPath, mLiving); }

  /// Runs the form on a new object; tells whether memory was short.
  template <typename Form>
  bool RunWithFailures(Form const& form, std::uint64_t first, std::uint64_t count, SK_PluginResult& result) {
    auto const object = OwnNewObject(Make());
    if (form.prepare) {
      form.prepare(*object);
    }
    FailingMemory const failing(first, count);
    form.call(*object, &result);
    return failing.HasFailed();
  }

  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  std::shared_ptr<TdjsonRootImpl> mRoot = OwnNewObject(new TdjsonRootImpl(this, mPath.c_str()));
  int mLiving = 0;
};

TYPED_TEST_SUITE(WriterFamilies, Families);

TYPED_TEST(WriterFamilies, TheVersionOfTheInterfaceIs1) {
  EXPECT_EQ(TypeParam::Interface::GetInterfaceVersion(), 1u);
}

TYPED_TEST(WriterFamilies, AReleaseWithoutOwnersDeletes) {
  typename TypeParam::Interface* const object = this->Make();
  EXPECT_EQ(this->mLiving, 1);
  object->Release();
  EXPECT_EQ(this->mLiving, 0);
}

TYPED_TEST(WriterFamilies, AnObjectForAModuleGoesWithTheReleaseBehindItsFirstAcquire) {
  auto* const made = this->Make();
  {
    auto const shared = MakeSharedPointer(made);
    shared->GetISharedObject_I()->AcquireInternal();
  }
  typename TypeParam::Interface* const object = made;
  object->Acquire();
  EXPECT_EQ(this->mLiving, 1);
  object->Release();
  EXPECT_EQ(this->mLiving, 0);
}

TYPED_TEST(WriterFamilies, AnObjectOfANativeConverterGoesWithItsLastOwner) {
  std::shared_ptr<typename TypeParam::Interface> owner = OwnNewObject(this->Make());
  std::shared_ptr<typename TypeParam::Interface> second = owner;
  owner.reset();
  EXPECT_EQ(this->mLiving, 1);
  second.reset();
  EXPECT_EQ(this->mLiving, 0);
}

TYPED_TEST(WriterFamilies, ThereIsOneOfWhatIsShared) {
  auto* const made = this->Make();
  typename TypeParam::Interface* const object = made;
  ISharedObject* const shared = object->GetISharedObject_I();
  EXPECT_EQ(shared, static_cast<ISharedObject*>(object));
  EXPECT_EQ(shared, static_cast<ISharedObject*>(static_cast<SharedObjectImpl*>(made)));
  object->Release();
}

// Each border form with memory for no allocation, for one, for two and so on until it needs no more.
TYPED_TEST(WriterFamilies, MissingMemoryIsCode1034) {
  for (BorderForm<typename TypeParam::Interface> const& form : TypeParam::Forms()) {
    SCOPED_TRACE(form.name);
    std::uint64_t first = 1;
    for (bool failed = true; failed; ++first) {
      SK_PluginResult result;
      failed = this->RunWithFailures(form, first, FailingMemory::kAll, result);
      ASSERT_EQ(result.mErrorCode, failed ? 1034 : 0) << first;
      EXPECT_EQ(result.mReserved, 0);
      EXPECT_EQ(result.mFileOffset, -1);
      EXPECT_EQ(result.mFileLineNo, -1);
    }
  }
}

// When just one allocation fails a form may find another way.
TYPED_TEST(WriterFamilies, ALackOfMemoryThatPassesIsCode1034OrNothing) {
  for (BorderForm<typename TypeParam::Interface> const& form : TypeParam::Forms()) {
    SCOPED_TRACE(form.name);
    std::uint64_t first = 1;
    for (bool failed = true; failed; ++first) {
      SK_PluginResult result;
      failed = this->RunWithFailures(form, first, 1, result);
      ASSERT_TRUE(result.mErrorCode == 0 || (failed && result.mErrorCode == 1034)) << first;
    }
  }
}

/// Those in which something unknown can be thrown.
using FamiliesThatThrow =
    testing::Types<RootFamily, GroupFamily, DynamicNumFamily, DynamicNumArrFamily, DynamicStringFamily>;

template <typename Family>
class WriterFamiliesThatThrow : public WriterFamilies<Family> {};

TYPED_TEST_SUITE(WriterFamiliesThatThrow, FamiliesThatThrow);

TYPED_TEST(WriterFamiliesThatThrow, WhateverElseIsThrownIsCode1023) {
  auto const form = TypeParam::UnknownForm();
  auto const object = OwnNewObject(this->Make());
  EXPECT_EQ(CodeOf([&](void* result) { form.call(*object, result); }), 1023);
}

// Whatever the C++ library makes of a null.
TEST(WriterFamiliesTexts, ANullTextIsCode1023) {
  int key = 0;
  auto const root = OwnNewObject(new TdjsonRootImpl(&key, "never written"));
  root->SetSMPTETimeInfo(false, 25, 1);
  TdjsonRootImpl::RegisterInstance(&key, root);
  auto const stream = OwnNewObject(new TdjsonDynamicDataNumArrImpl(&key));
  auto const array = OwnNewObject(new TdjsonStaticDataNumArrImpl(&key, "d", "m"));
  struct {
    char const* name;
    std::function<void(void*)> call;
  } const rows[] = {
      {"setCreator", [&](void* result) { root->setCreator(nullptr, result); }},
      {"addSyncTimeFrameNum", [&](void* result) { root->addSyncTimeFrameNum(nullptr, 1, result); }},
      {"addSyncTimeStr, file", [&](void* result) { root->addSyncTimeStr(nullptr, "t", 1, result); }},
      {"addSyncTimeStr, time", [&](void* result) { root->addSyncTimeStr("f", nullptr, 1, result); }},
      {"setDynamicDataInfo, displayName",
       [&](void* result) { stream->setDynamicDataInfo(nullptr, "m", "s", 0, 1, 0, "", result); }},
      {"setDynamicDataInfo, sampleSetID",
       [&](void* result) { stream->setDynamicDataInfo("d", "m", nullptr, 0, 1, 0, "", result); }},
      {"setDynamicDataInfo, duration",
       [&](void* result) { stream->setDynamicDataInfo("d", "m", "s", 0, 1, 0, nullptr, result); }},
      {"setDisplayName", [&](void* result) { stream->setDisplayName(nullptr, result); }},
      {"addDisplayName", [&](void* result) { array->addDisplayName(nullptr, result); }},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(CodeOf(row.call), 1023);
  }
  EXPECT_EQ(root->GetCreator(), "");
  EXPECT_TRUE(root->GetVideoSyncTimeList().empty());
  EXPECT_TRUE(stream->GetNumArrayProperties().arrayDisplayNames.empty());
  EXPECT_TRUE(array->GetNumArrayProperties().arrayDisplayNames.empty());
  // A text without bytes needs no place.
  EXPECT_EQ(CodeOf([&](void* result) { root->addSyncTimeStr("f", nullptr, 0, result); }), 0);
  ASSERT_EQ(root->GetVideoSyncTimeList().size(), 1u);
  EXPECT_EQ(boost::get<std::string>(root->GetVideoSyncTimeList()[0].value.value), "");
  TdjsonRootImpl::RemoveInstance(&key);
}

}  // namespace
}  // namespace SK_PLUGIN
