// A converter module that was compiled apart: it knows the public headers and nothing else of the library, and
// reaches every object through the slots of its interface.
#include "WriterModule.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "senmark/ITdjsonDynamicDataNumArr_v1.h"
#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/ITdjsonDynamicDataString_v1.h"
#include "senmark/ITdjsonRoot_v1.h"
#include "senmark/ITdjsonStaticDataBool_v1.h"
#include "senmark/ITdjsonStaticDataNumArr_v1.h"
#include "senmark/ITdjsonStaticDataNum_v1.h"
#include "senmark/ITdjsonStaticDataString_v1.h"
#include "senmark/SK_PluginResult.h"

namespace {

using namespace SK_PLUGIN;

constexpr unsigned long long kAutomatic = std::numeric_limits<unsigned long long>::max();
constexpr double kMinMark = std::numeric_limits<double>::max();
constexpr double kMaxMark = std::numeric_limits<double>::lowest();

/// An object of the writer, acquired for as long as it is held.
template <typename Interface>
class Held {
 public:
  explicit Held(void* object) : mObject(static_cast<Interface*>(object)) { mObject->Acquire(); }
  ~Held() { mObject->Release(); }
  Held(Held const&) = delete;
  Held& operator=(Held const&) = delete;

  Interface* Get() const { return mObject; }
  Interface* operator->() const { return mObject; }

 private:
  Interface* mObject;
};

class Conversion {
 public:
  Conversion(HostAPI const* api, void* key, char const* path, void (*complain)(char const*))
      : mApi(*api->mTdjsonWriterAPI), mHostApi(*api), mKey(key), mComplain(complain), mRoot(Make([&](void** out) {
          unsigned char existed = 9;
          mApi.Static_CreateRoot(mKey, path, mHostApi.mHandleExceptionAPI->Static_SetPluginErrorObj, out, &existed, 1,
                                 &mResult);
          Check("a new root", existed == 0);
        })) {}

  /// Time codes, and one node of each kind with all that can be set.
  void WriteTimeCodes() {
    mRoot->setSMPTETimeInfo(0, 25, 1, &mResult);
    mRoot->addSyncTimeFrameNum("a.mov", 7, &mResult);
    mRoot->addSyncTimeStr("b.mov", "01:00:00:00", 11, &mResult);
    mRoot->writeVersionToFile(&mResult);
    Done("head");

    Held<ITdjsonGroup_v1> const outer(MakeGroup("outer", "Outer"));
    Held<ITdjsonGroup_v1> const skeleton(MakeGroup("skeleton", "Skeleton"));
    AddStaticNodes(*skeleton.Get());
    AddNumbers(*skeleton.Get());
    AddArrays(*skeleton.Get());
    AddTexts(*skeleton.Get());
    outer->addGroup(skeleton.Get(), &mResult);
    mRoot->addGroup(outer.Get(), &mResult);
    Done("groups");
    Check("the group itself", skeleton->GetActualITdjsonGroup() == skeleton.Get());
    Check("the root itself", mRoot->GetActualITdjsonRoot() == mRoot.Get());

    mRoot->setCreator("a \"module\"", &mResult);
    mRoot->commit(&mResult);
    Done("root");
    Check("one commit of the root", !mRoot->Commit());
    End();
  }

  /// Calendar times, and nothing but samples.
  void WriteCalendarTimes() {
    mRoot->setUTCTimeInfo(3, 1, &mResult);
    mRoot->writeVersionToFile(&mResult);
    Held<ITdjsonDynamicDataNum_v1> const numbers(MakeNode(mApi.Static_CreateDynamicDataNum));
    numbers->setDynamicDataInfo("Numbers", "numbers", "numbers", 0, 1, 0, "", &mResult);
    numbers->setNumberPattern(1, 0, 0, &mResult);
    numbers->setNumberRange(0, 9, 0, 9, &mResult);
    Check("number", numbers->addSampleUTC(2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7, 4, &mResult));
    Check("no time code here", !numbers->addSampleSMPTE(0, 0, 0, 0, 4, &mResult));
    Held<ITdjsonDynamicDataNumArr_v1> const arrays(MakeNode(mApi.Static_CreateDynamicDataNumArr));
    arrays->setDynamicDataInfo("Arrays", "arrays", "arrays", 0, 1, 0, "", &mResult);
    arrays->setNumberPattern(1, 0, 0, &mResult);
    arrays->setArrCount(1, &mResult);
    arrays->setNumberRange(0, 9, 0, 9, &mResult);
    Check("element", arrays->addElement(5, &mResult));
    Check("array", arrays->addTimeUTC(2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 8, &mResult));
    Held<ITdjsonDynamicDataString_v1> const texts(MakeNode(mApi.Static_CreateDynamicDataString));
    texts->setDynamicDataInfo("Texts", "texts", "texts", 0, 1, 0, "", &mResult);
    texts->setStringProperties(0, 0, 0, &mResult);
    Check("text", texts->addSampleUTC(2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 9, "c", &mResult));
    Commit("numbers", *numbers.Get());
    Commit("arrays", *arrays.Get());
    Commit("texts", *texts.Get());
    mRoot->addDynamicData(numbers.Get(), &mResult);
    mRoot->addDynamicData(arrays.Get(), &mResult);
    mRoot->addDynamicData(texts.Get(), &mResult);
    mRoot->commit(&mResult);
    Done("root");
    End();
  }

  /// One failure of each family that has one, told through the record.
  void Fail() {
    mRoot->setUTCTimeInfo(0, 1, &mResult);
    Held<ITdjsonGroup_v1> const group(MakeGroup("group", "Group"));
    group->addGroup(nullptr, &mResult);
    Failed("group", 2003);
    group->addStaticData(nullptr, &mResult);
    Failed("static child", 2002);
    group->addDynamicData(nullptr, &mResult);
    Failed("dynamic child", 2001);
    Held<ITdjsonStaticDataNum_v1> const number(MakeNumber());
    number->setNumberPattern(kAutomatic, 1, 0, &mResult);
    Failed("static number", 2006);
    Held<ITdjsonStaticDataNumArr_v1> const array(MakeStaticArray());
    array->setNumberRange(0, 9, kMinMark, 9, &mResult);
    Failed("static array", 2007);
    array->setNumberRange(kMinMark, 9, 0, 9, &mResult);
    Failed("static array", 2008);
    Held<ITdjsonDynamicDataNum_v1> const numbers(MakeNode(mApi.Static_CreateDynamicDataNum));
    numbers->setNumberPattern(1, kAutomatic, 0, &mResult);
    Failed("numbers", 2006);
    numbers->setDynamicDataInfo("Numbers", "1numbers", "numbers", 0, 1, 0, "", &mResult);
    Failed("match name", 2022);
    Held<ITdjsonDynamicDataNumArr_v1> const arrays(MakeNode(mApi.Static_CreateDynamicDataNumArr));
    arrays->setNumberRange(0, kMaxMark, 0, 9, &mResult);
    Failed("arrays", 2008);
    Held<ITdjsonDynamicDataString_v1> const texts(MakeNode(mApi.Static_CreateDynamicDataString));
    texts->setDynamicDataInfo("Texts", "texts", "texts", 0, 3, 0, "", &mResult);
    Failed("interpolation", 53);
    mRoot->commit(&mResult);
    Failed("root", 2021);
    End();
  }

 private:
  void Check(std::string const& what, bool holds) {
    if (!holds) {
      mComplain(what.c_str());
    }
  }
  void Done(std::string const& what) {
    if (mResult.mErrorCode != 0) {
      mComplain((what + " failed with " + std::to_string(mResult.mErrorCode)).c_str());
      mResult = SK_PluginResult();
    }
  }
  void Failed(std::string const& what, int code) {
    if (mResult.mErrorCode != code || mResult.mFileOffset != -1 || mResult.mFileLineNo != -1) {
      mComplain((what + " failed with " + std::to_string(mResult.mErrorCode) + " and not with " + std::to_string(code))
                    .c_str());
    }
    mResult = SK_PluginResult();
  }

  template <typename Create>
  void* Make(Create&& create) {
    void* object = nullptr;
    create(&object);
    Done("creation");
    return object;
  }
  void* MakeNode(void (*create)(void*, void**, unsigned, void*)) {
    return Make([&](void** out) { create(mKey, out, 1, &mResult); });
  }
  void* MakeGroup(char const* matchName, char const* displayName) {
    return Make([&](void** out) { mApi.Static_CreateGroup(mKey, out, matchName, displayName, 1, &mResult); });
  }
  void* MakeNumber() {
    return Make([&](void** out) { mApi.Static_CreateStaticDataNum(mKey, out, "height", "Height", -2.5, 1, &mResult); });
  }
  void* MakeStaticArray() {
    return Make([&](void** out) { mApi.Static_CreateStaticDataNumArr(mKey, out, "origin", "Origin", 1, &mResult); });
  }

  void AddStaticNodes(ITdjsonGroup_v1& group) {
    Held<ITdjsonStaticDataNum_v1> const number(MakeNumber());
    number->setNumberPattern(kAutomatic, kAutomatic, 0, &mResult);
    number->setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
    group.addStaticData(number.Get(), &mResult);

    Held<ITdjsonStaticDataNumArr_v1> const array(MakeStaticArray());
    Check("first element", array->addElement(1, &mResult));
    Check("second element", array->addElement(20, &mResult));
    array->setNumberRange(-1, 9, 0, 5, &mResult);
    array->setNumberRange(-1, 99, 0, 25, &mResult);
    array->addDisplayName("x", &mResult);
    array->addDisplayName("y", &mResult);
    array->setIsPoint(1, &mResult);
    array->setNumberPattern(3, 1, 0, &mResult);
    array->setArrCount(2, &mResult);
    group.addStaticData(array.Get(), &mResult);

    Held<ITdjsonStaticDataString_v1> const text(
        Make([&](void** out) { mApi.Static_CreateStaticDataString(mKey, out, "note", "Note", "a\nb", 1, &mResult); }));
    text->setStringProperties(0, 0, 0, &mResult);
    group.addStaticData(text.Get(), &mResult);

    Held<ITdjsonStaticDataBool_v1> const flag(
        Make([&](void** out) { mApi.Static_CreateStaticDataBool(mKey, out, "flag", "Flag", 1, 1, &mResult); }));
    group.addStaticData(flag.Get(), &mResult);
    Done("static nodes");

    Check("type of number", number->GetType() == ns_sensor::kNumberValue);
    Check("type of array", array->GetType() == ns_sensor::kNumberArrayValue);
    Check("type of text", text->GetType() == ns_sensor::kStringValue);
    Check("type of flag", flag->GetType() == ns_sensor::kBooleanValue);
    Check("the number itself", number->GetActualITdjsonStaticData() == number.Get());
    Check("the flag itself", flag->GetActualITdjsonStaticData() == flag.Get());
    Check("what is shared", flag->GetISharedObject_I() == flag.Get());
  }

  void AddNumbers(ITdjsonGroup_v1& group) {
    Held<ITdjsonDynamicDataNum_v1> const node(MakeNode(mApi.Static_CreateDynamicDataNum));
    node->setDynamicDataInfo("Numbers", "numbers", "numbers", 0, 1, 0, "", &mResult);
    node->setNumberPattern(kAutomatic, kAutomatic, 0, &mResult);
    node->setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
    Check("first number", node->addSampleSMPTE(0, 0, 0, 0, 1.5, &mResult));
    Check("second number", node->addSampleSMPTE(0, 0, 0, 1, -10, &mResult));
    Check("no calendar time here", !node->addSampleUTC(2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 0, 1, &mResult));
    Check("type of numbers", node->GetType() == ns_sensor::kNumberValue);
    Check("the numbers themselves", node->GetActualITdjsonDynamicData() == node.Get());
    node->SetSampleCount(9);
    Check("stated count", node->GetSampleCount() == 9);
    node->SetSampleCount(0);
    Commit("numbers", *node.Get());
    Check("count of samples", node->GetSampleCount() == 2);
    Check("one commit of numbers", !node->Commit());
    group.addDynamicData(node.Get(), &mResult);
    Done("numbers");
  }

  void AddArrays(ITdjsonGroup_v1& group) {
    Held<ITdjsonDynamicDataNumArr_v1> const node(MakeNode(mApi.Static_CreateDynamicDataNumArr));
    node->setDynamicDataInfo("Arrays", "arrays", "arrays", 0, 2, 1, "00:00:00:01", &mResult);
    node->setArrCount(2, &mResult);
    node->setIsPoint(0, &mResult);
    node->setNumberPattern(kAutomatic, kAutomatic, 0, &mResult);
    for (char const* const name : {"u", "v"}) {
      node->setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
      node->setDisplayName(name, &mResult);
    }
    Check("lonely element", node->addElement(7, &mResult));
    Check("one element is too few", !node->addTimeSMPTE(0, 0, 0, 1, &mResult));
    Check("element", node->addElement(1, &mResult) && node->addElement(22.5, &mResult));
    Check("array", node->addTimeSMPTE(0, 0, 0, 2, &mResult));
    Check("type of arrays", node->GetType() == ns_sensor::kNumberArrayValue);
    Commit("arrays", *node.Get());
    group.addDynamicData(node.Get(), &mResult);
    Done("arrays");
  }

  void AddTexts(ITdjsonGroup_v1& group) {
    Held<ITdjsonDynamicDataString_v1> const node(MakeNode(mApi.Static_CreateDynamicDataString));
    node->setDynamicDataInfo("Texts", "texts", "texts", 0, 1, 0, "", &mResult);
    node->setStringProperties(0, 0, 1, &mResult);
    Check("text", node->addSampleSMPTE(0, 0, 0, 3, "ab", &mResult));
    Check("type of texts", node->GetType() == ns_sensor::kStringValue);
    Commit("texts", *node.Get());
    group.addDynamicData(node.Get(), &mResult);
    Done("texts");
  }

  void Commit(char const* what, ITdjsonDynamicData_v1& node) {
    node.commit(&mResult);
    Done(what);
  }

  void End() {
    mHostApi.mHandleMemoryAPI->Static_RemoveConverterFromMap(mKey, &mResult);
    Done("end");
  }

  TDJSONWriter_API const& mApi;
  HostAPI const& mHostApi;
  void* mKey;
  void (*mComplain)(char const*);
  SK_PluginResult mResult;
  Held<ITdjsonRoot_v1> mRoot;
};

/// What stands at an offset of a table, as a module sees it that has no declaration of the table.
template <typename Field>
Field At(void const* table, std::size_t offset) {
  Field field;
  std::memcpy(&field, static_cast<char const*>(table) + offset, sizeof field);
  return field;
}

/// Every function by the offset of its entry, with arguments as plain as they come.
class CallsByOffset {
 public:
  CallsByOffset(void const* api, void* key, void (*complain)(char const*))
      : mWriter(At<void const*>(api, 8)), mKey(key), mComplain(complain) {
    Check("size", At<std::uint32_t>(api, 0) == 32);
    Check("version", At<std::uint32_t>(api, 4) == 1);
    Check("reserved words", At<std::uint64_t>(mWriter, 0) == 0 && At<std::uint64_t>(At<void const*>(api, 16), 0) == 0 &&
                                At<std::uint64_t>(At<void const*>(api, 24), 0) == 0);
  }

  void Run(void const* api, char const* path) {
    auto const setError = At<void (*)(void*, int, long long, long long)>(At<void const*>(api, 16), 8);
    auto const remove = At<void (*)(void*, void*)>(At<void const*>(api, 24), 8);

    std::uint8_t record[24];
    std::memset(record, 0xEE, sizeof record);
    setError(record, 7, -3, 0x1122334455667788);
    Check("record", At<std::uint32_t>(record, 0) == 0xEEEEEEEEu && At<std::int32_t>(record, 4) == 7 &&
                        At<std::int64_t>(record, 8) == -3 && At<std::int64_t>(record, 16) == 0x1122334455667788);

    void* object = nullptr;
    unsigned char existed = 9;
    At<void (*)(void*, char const*, void (*)(void*, int, long long, long long), void**, unsigned char*, unsigned,
                void*)>(mWriter, 8)(mKey, path, setError, &object, &existed, 1, mRecord);
    Check("new root", object != nullptr && existed == 0);
    Held<ITdjsonRoot_v1> const root(object);
    root->setUTCTimeInfo(0, 1, mRecord);
    using Create = void (*)(void*, void**, unsigned, void*);
    using CreateNamed = void (*)(void*, void**, char const*, char const*, unsigned, void*);
    using CreateNumber = void (*)(void*, void**, char const*, char const*, double, unsigned, void*);
    using CreateText = void (*)(void*, void**, char const*, char const*, char const*, unsigned, void*);
    using CreateFlag = void (*)(void*, void**, char const*, char const*, unsigned char, unsigned, void*);
    At<CreateNamed>(mWriter, 16)(mKey, &object, "group", "Group", 1, mRecord);
    Held<ITdjsonGroup_v1> const group(object);
    CheckType<ITdjsonDynamicDataNumArr_v1>("stream of arrays", 2, [&] {
      At<Create>(mWriter, 24)(mKey, &object, 1, mRecord);
      return object;
    });
    CheckType<ITdjsonDynamicDataNum_v1>("stream of numbers", 0, [&] {
      At<Create>(mWriter, 32)(mKey, &object, 1, mRecord);
      return object;
    });
    CheckType<ITdjsonDynamicDataString_v1>("stream of texts", 1, [&] {
      At<Create>(mWriter, 40)(mKey, &object, 1, mRecord);
      return object;
    });
    At<CreateNumber>(mWriter, 48)(mKey, &object, "number", "Number", -2.5, 1, mRecord);
    Held<ITdjsonStaticDataNum_v1> const number(object);
    number->setNumberPattern(1, 1, 1, mRecord);
    number->setNumberRange(-9, 9, -3, 3, mRecord);
    group->addStaticData(number.Get(), mRecord);
    CheckType<ITdjsonStaticDataNumArr_v1>("array", 2, [&] {
      At<CreateNamed>(mWriter, 56)(mKey, &object, "array", "Array", 1, mRecord);
      return object;
    });
    At<CreateText>(mWriter, 64)(mKey, &object, "text", "Text", "value", 1, mRecord);
    Held<ITdjsonStaticDataString_v1> const text(object);
    text->setStringProperties(0, 0, 0, mRecord);
    group->addStaticData(text.Get(), mRecord);
    At<CreateFlag>(mWriter, 72)(mKey, &object, "flag", "Flag", 1, 1, mRecord);
    Held<ITdjsonStaticDataBool_v1> const flag(object);
    group->addStaticData(flag.Get(), mRecord);
    root->addGroup(group.Get(), mRecord);
    root->commit(mRecord);
    Check("success throughout", At<std::int32_t>(mRecord, 4) == 0);

    At<Create>(mWriter, 24)(mKey, &object, 2, mRecord);
    Check("version 2", At<std::int32_t>(mRecord, 4) == 2029);
    remove(mKey, mRecord);
    At<Create>(mWriter, 24)(mKey, &object, 1, mRecord);
    Check("no root any more", At<std::int32_t>(mRecord, 4) == 2005);
  }

 private:
  void Check(char const* what, bool holds) {
    if (!holds) {
      mComplain(what);
    }
  }
  template <typename Interface, typename Make>
  void CheckType(char const* what, int type, Make&& make) {
    Held<Interface> const object(make());
    Check(what, object->GetType() == type);
  }

  void const* mWriter;
  void* mKey;
  void (*mComplain)(char const*);
  alignas(8) std::uint8_t mRecord[24] = {};
};

}  // namespace

#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))

MODULE_EXPORT void WriterModuleTimeCodes(HostAPI const* api, void* key, char const* path,
                                         void (*complain)(char const*)) {
  Conversion(api, key, path, complain).WriteTimeCodes();
}

MODULE_EXPORT void WriterModuleCalendarTimes(HostAPI const* api, void* key, char const* path,
                                             void (*complain)(char const*)) {
  Conversion(api, key, path, complain).WriteCalendarTimes();
}

MODULE_EXPORT void WriterModuleFailures(HostAPI const* api, void* key, char const* path,
                                        void (*complain)(char const*)) {
  Conversion(api, key, path, complain).Fail();
}

MODULE_EXPORT void WriterModuleByOffsets(HostAPI const* api, void* key, char const* path,
                                         void (*complain)(char const*)) {
  CallsByOffset(api, key, complain).Run(api, path);
}
