// What holds for all nine families of the writer's objects.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
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
  char const* name = nullptr;
  std::function<void(Interface&, void*)> call = nullptr;
  std::function<void(Interface&)> prepare = nullptr;
};

/// A family: its interface, an object of it that tells when it goes, its border forms, and one of them that
/// something unknown is thrown in, if there is a way to that.
struct RootFamily {
  using Interface = ITdjsonRoot_v1;
  struct Object : TdjsonRootImpl {
    Object(void* key, std::string const& path, int& living)
        : TdjsonGroupImpl(key, "root", "root"), TdjsonRootImpl(key, path.c_str()), mLiving(living) {
      ++mLiving;
    }
    ~Object() override { --mLiving; }
    bool Commit() override { return mThrows ? throw 5 : TdjsonRootImpl::Commit(); }
    int& mLiving;
    bool mThrows = false;
  };
  static std::vector<BorderForm<Interface>> Forms() {
    auto const addChild = [](Interface& root) {
      root.AddStaticData(OwnNewObject(new TdjsonStaticDataBoolImpl(nullptr, "b", "b", true)));
    };
    return {
        {"commit", [](Interface& root, void* result) { root.commit(result); }, addChild},
        {"setCreator", [](Interface& root, void* result) { root.setCreator(kLongText, result); }},
        {"setSMPTETimeInfo", [](Interface& root, void* result) { root.setSMPTETimeInfo(0, 25, 1, result); }},
        {"setUTCTimeInfo", [](Interface& root, void* result) { root.setUTCTimeInfo(3, 1, result); }},
        {"addSyncTimeFrameNum", [](Interface& root, void* result) { root.addSyncTimeFrameNum(kLongText, 1, result); }},
        {"addSyncTimeStr",
         [](Interface& root, void* result) { root.addSyncTimeStr(kLongText, kLongText, 20, result); }},
        {"writeVersionToFile", [](Interface& root, void* result) { root.writeVersionToFile(result); }},
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
  static BorderForm<Interface> UnknownForm() { return {}; }
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
  static BorderForm<Interface> UnknownForm() { return {}; }
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
  static BorderForm<Interface> UnknownForm() { return {}; }
};

struct StaticBoolFamily {
  using Interface = ITdjsonStaticDataBool_v1;
  struct Object : StaticObject<TdjsonStaticDataBoolImpl> {
    Object(void* key, std::string const&, int& living)
        : TdjsonStaticDataImpl("d", "m"), StaticObject(key, living, true) {}
  };
  static std::vector<BorderForm<Interface>> Forms() { return {}; }
  static BorderForm<Interface> UnknownForm() { return {}; }
};

using Families = testing::Types<RootFamily, GroupFamily, DynamicNumFamily, DynamicNumArrFamily, DynamicStringFamily,
                                StaticNumFamily, StaticNumArrFamily, StaticStringFamily, StaticBoolFamily>;

template <typename Family>
class WriterFamilies : public testing::Test {
 protected:
  using Object = typename Family::Object;
  using Interface = typename Family::Interface;

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

// Each border form without its first allocation, without its second, and so on until it needs no more.
TYPED_TEST(WriterFamilies, MissingMemoryIsCode1034) {
  using Interface = typename TypeParam::Interface;
  for (BorderForm<Interface> const& form : TypeParam::Forms()) {
    SCOPED_TRACE(form.name);
    std::uint64_t first = 1;
    for (bool failed = true; failed; ++first) {
      auto const object = OwnNewObject(this->Make());
      if (form.prepare) {
        form.prepare(*object);
      }
      SK_PluginResult result;
      {
        FailingMemory const failing(first);
        form.call(*object, &result);
        failed = failing.HasFailed();
      }
      ASSERT_EQ(result.mErrorCode, failed ? 1034 : 0) << first;
      EXPECT_EQ(result.mReserved, 0);
      EXPECT_EQ(result.mFileOffset, -1);
      EXPECT_EQ(result.mFileLineNo, -1);
    }
  }
}

TYPED_TEST(WriterFamilies, WhateverElseIsThrownIsCode1023) {
  using Interface = typename TypeParam::Interface;
  BorderForm<Interface> const form = TypeParam::UnknownForm();
  if (form.name == nullptr) {
    GTEST_SKIP() << "nothing unknown can be thrown in this family";
  }
  auto const object = OwnNewObject(this->Make());
  EXPECT_EQ(CodeOf([&](void* result) { form.call(*object, result); }), 1023);
}

}  // namespace
}  // namespace SK_PLUGIN
