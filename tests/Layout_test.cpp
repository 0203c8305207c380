// The binary interface of the border: sizes and offsets of its records, order of its tables, and the slots
// of its abstract classes. Hosts and modules that were compiled years ago rely on each number here.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "senmark/ExplainingPluginAPI.h"
#include "senmark/SK_Records.h"
#include "senmark/Senmark.h"

namespace {

using namespace ns_sensor;

static_assert(sizeof(SK_Time) == 8 && offsetof(SK_Time, value) == 0 && offsetof(SK_Time, scale) == 4);
static_assert(std::is_same_v<decltype(SK_Time::value), std::int32_t>);
static_assert(std::is_same_v<decltype(SK_Time::scale), std::uint32_t>);
static_assert(sizeof(SK_TemporalExtent) == 16 && offsetof(SK_TemporalExtent, duration) == 8);

static_assert(sizeof(eGroupChildType) == 1 && kInvalidChild == 3);
static_assert(sizeof(eDataValueType) == 1 && kInvalidValue == 4);
static_assert(sizeof(eInterpolationType) == 1 && kHoldInterpolation == 2);
static_assert(sizeof(eErrorCode) == 4 && kNoError == 0);

static_assert(offsetof(SK_DynamicSampleInfo, valueType) == 8 && sizeof(SK_DynamicSampleInfo) == 16);
static_assert(sizeof(SK_TimeCodeInfo) == 12 && offsetof(SK_TimeCodeInfo, dropFrame) == 8);
static_assert(sizeof(SK_UTCInfo) == 4 && offsetof(SK_UTCInfo, isGMT) == 2);
static_assert(sizeof(SK_DateTimeSMPTE) == 16 && offsetof(SK_DateTimeSMPTE, frames) == 12);
static_assert(offsetof(SK_DateTimeUTC, second) == 20 && offsetof(SK_DateTimeUTC, offsetSign) == 24);
static_assert(offsetof(SK_DateTimeUTC, offsetHour) == 28 && offsetof(SK_DateTimeUTC, fraction) == 36);
static_assert(sizeof(SK_DateTimeUTC) == 40);
static_assert(sizeof(SK_NumberPattern) == 24 && offsetof(SK_NumberPattern, isSigned) == 16);
static_assert(sizeof(SK_NumberRange) == 32 && offsetof(SK_NumberRange, legal) == 16);

// Records with standard strings: a string of the standard library takes 32 bytes here.
constexpr std::size_t kString = 32;
static_assert(sizeof(std::string) == kString);
static_assert(offsetof(SK_PathSegment, index) == kString && sizeof(SK_PathSegment) == kString + 8);
static_assert(offsetof(SK_GroupChildInfo, displayName) == 8 && offsetof(SK_GroupChildInfo, matchName) == 8 + kString);
static_assert(offsetof(SK_FileInfo, version) == 8 && offsetof(SK_FileInfo, creator) == 8 + kString);
static_assert(sizeof(SK_FileInfo) == 8 + 2 * kString);
static_assert(offsetof(SK_VideoSyncTime, kind) == kString && offsetof(SK_VideoSyncTime, value) == kString + 8);

constexpr std::size_t kPointer = sizeof(void*);
static_assert(sizeof(SK_PathProcs) == kPointer);
static_assert(offsetof(SK_PropertyProcs, number) == 0 * kPointer);
static_assert(offsetof(SK_PropertyProcs, string) == 1 * kPointer);
static_assert(offsetof(SK_PropertyProcs, numberArray) == 2 * kPointer);
static_assert(offsetof(SK_PropertyProcs, numberArrayDisplayName) == 3 * kPointer);
static_assert(offsetof(SK_PropertyProcs, numberArrayRange) == 4 * kPointer);
static_assert(sizeof(SK_PropertyProcs) == 5 * kPointer);

static_assert(offsetof(SK_ClientProcs, path) == 0 * kPointer);
static_assert(offsetof(SK_ClientProcs, property) == 1 * kPointer);
static_assert(offsetof(SK_ClientProcs, staticDataInfo) == 2 * kPointer);
static_assert(offsetof(SK_ClientProcs, dynamicDataInfo) == 3 * kPointer);
static_assert(offsetof(SK_ClientProcs, groupChildInfo) == 4 * kPointer);
static_assert(offsetof(SK_ClientProcs, sample) == 5 * kPointer);
static_assert(offsetof(SK_ClientProcs, fileInfo) == 6 * kPointer);
static_assert(offsetof(SK_ClientProcs, videoSyncTime) == 7 * kPointer);
static_assert(offsetof(SK_ClientProcs, supportedFormat) == 8 * kPointer);
static_assert(offsetof(SK_ClientProcs, sampleCount) == 9 * kPointer);
static_assert(offsetof(SK_ClientProcs, string) == 10 * kPointer);
static_assert(offsetof(SK_ClientProcs, error) == 11 * kPointer);
static_assert(sizeof(SK_ClientProcs) == 12 * kPointer);

static_assert(offsetof(SK_HostPropertyAPI, pushNumber) == 0 * kPointer);
static_assert(offsetof(SK_HostPropertyAPI, pushNumberArray) == 1 * kPointer);
static_assert(offsetof(SK_HostPropertyAPI, pushString) == 2 * kPointer);
static_assert(sizeof(SK_HostPropertyAPI) == 3 * kPointer);

// The longer table of a module is the plain one with one field more.
static_assert(sizeof(SK_PLUGIN::PluginAPI) == 48 && sizeof(SK_PLUGIN::ExplainingPluginAPI) == 56);
static_assert(offsetof(SK_PLUGIN::ExplainingPluginAPI, base) == 0);
static_assert(offsetof(SK_PLUGIN::ExplainingPluginAPI, explainFile) == 48);
static_assert(std::is_same_v<decltype(SK_PLUGIN::ExplainingPluginAPI::explainFile),
                             void (*)(char const*, char const*, void (*)(void*, char const*), void*,
                                      SK_PLUGIN::SK_PluginResult*)>);

static_assert(std::is_same_v<decltype(&CreateSenmark_1),
                             void (*)(ISenmark**, char const*, char const*, char const*, void*, void*, void**)>);
static_assert(std::is_same_v<decltype(&DestroySenmark_1), void (*)(ISenmark**, void*)>);
static_assert(
    std::is_same_v<decltype(&GetLastException_1),
                   void (*)(void*, void (*)(void*, std::int32_t, char const*, std::int64_t, std::int64_t), bool)>);
static_assert(std::is_same_v<decltype(&GetSupportedFormats_1), void (*)(void*, void*, void*)>);
static_assert(std::is_same_v<decltype(&GetLocalizedErrorMsg_1),
                             void (*)(char const*, char const*, char const*, char const*, char const*, void*)>);

// Calls an object as a host does that knows nothing but the numbers of the slots: the first word of the
// object leads to its table of functions, each of which takes the object as first argument.
template <typename Result, typename... Arguments>
Result CallSlot(void* object, std::size_t slot, Arguments... arguments) {
  void* const* const table = *static_cast<void* const* const*>(object);
  return reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot])(object, arguments...);
}

// What the mocks below saw: the operation and its arguments, as text.
class Journal {
 public:
  template <typename... Arguments>
  void Note(char const* operation, Arguments const&... arguments) {
    std::ostringstream text;
    text << operation;
    (Put(text, arguments), ...);
    mLast = text.str();
  }

  std::string Take() {
    std::string last;
    last.swap(mLast);
    return last;
  }

 private:
  template <typename Value>
  static void Put(std::ostream& text, Value const& value) {
    if constexpr (std::is_pointer_v<Value> && !std::is_same_v<Value, char const*>) {
      text << " @" << reinterpret_cast<std::uintptr_t>(value);
    } else if constexpr (std::is_same_v<Value, SK_Time>) {
      text << ' ' << value.value << '/' << value.scale;
    } else {
      text << ' ' << +value;
    }
  }
  static void Put(std::ostream& text, std::string const& value) { text << ' ' << value; }

  std::string mLast;
};

Journal gJournal;

// A pointer that is passed on and never followed; the journal shows it as @number.
template <typename Pointer>
Pointer Fake(std::uintptr_t number) {
  return reinterpret_cast<Pointer>(number);
}

class MockManager : public ISenmark {
 public:
  void OpenFile(ISensorFileHandler** handler, char const* path, char const* outputPath) override {
    gJournal.Note("OpenFile", handler, path, outputPath);
  }
  void CloseFile(ISensorFileHandler** handler) override { gJournal.Note("CloseFile", handler); }
  void CreateTdjsonStream(ITdjsonStream** stream, char const* path, bool validate) override {
    gJournal.Note("CreateTdjsonStream", stream, path, validate);
  }
  void DestroyTdjsonStream(ITdjsonStream** stream) override { gJournal.Note("DestroyTdjsonStream", stream); }
  ~MockManager() override { gJournal.Note("~"); }
  void openFile(ISensorFileHandler** handler, char const* path, char const* outputPath, void* error) override {
    gJournal.Note("openFile", handler, path, outputPath, error);
  }
  void closeFile(ISensorFileHandler** handler, void* error) override { gJournal.Note("closeFile", handler, error); }
  void createTdjsonStream(ITdjsonStream** stream, char const* path, unsigned char validate, void* error) override {
    gJournal.Note("createTdjsonStream", stream, path, validate, error);
  }
  void destroyTdjsonStream(ITdjsonStream** stream, void* error) override {
    gJournal.Note("destroyTdjsonStream", stream, error);
  }
};

TEST(Layout, ManagerSlotsKeepTheirOrder) {
  MockManager mock;
  void* const object = static_cast<ISenmark*>(&mock);
  auto const handler = Fake<ISensorFileHandler**>(1);
  auto const stream = Fake<ITdjsonStream**>(2);
  auto const error = Fake<void*>(3);

  CallSlot<void>(object, 0, handler, "in", "out");
  EXPECT_EQ(gJournal.Take(), "OpenFile @1 in out");
  CallSlot<void>(object, 1, handler);
  EXPECT_EQ(gJournal.Take(), "CloseFile @1");
  CallSlot<void>(object, 2, stream, "in", true);
  EXPECT_EQ(gJournal.Take(), "CreateTdjsonStream @2 in 1");
  CallSlot<void>(object, 3, stream);
  EXPECT_EQ(gJournal.Take(), "DestroyTdjsonStream @2");
  CallSlot<void>(object, 6, handler, "in", "out", error);
  EXPECT_EQ(gJournal.Take(), "openFile @1 in out @3");
  CallSlot<void>(object, 7, handler, error);
  EXPECT_EQ(gJournal.Take(), "closeFile @1 @3");
  CallSlot<void>(object, 8, stream, "in", static_cast<unsigned char>(7), error);
  EXPECT_EQ(gJournal.Take(), "createTdjsonStream @2 in 7 @3");
  CallSlot<void>(object, 9, stream, error);
  EXPECT_EQ(gJournal.Take(), "destroyTdjsonStream @2 @3");
}

class MockHandler : public ISensorFileHandler {
 public:
  void GetRootChildren(std::vector<SK_DataPath>* children) override { gJournal.Note("GetRootChildren", children); }
  void GetGroupChildren(std::string const& path, std::vector<SK_DataPath>* children) override {
    gJournal.Note("GetGroupChildren", path, children);
  }
  void GetGroupChildInfo(std::string const& path, SK_GroupChildInfo* info) override {
    gJournal.Note("GetGroupChildInfo", path, info);
  }
  void GetStaticDataInfo(std::string const& path, SK_StaticDataInfo* info) override {
    gJournal.Note("GetStaticDataInfo", path, info);
  }
  void GetDynamicDataInfo(std::string const& path, SK_DynamicDataInfo* info) override {
    gJournal.Note("GetDynamicDataInfo", path, info);
  }
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         std::vector<SK_DynamicDataSample>* samples) override {
    gJournal.Note("GetDynamicSamples", id, start, end, samples);
  }
  void GetAdjacentSamples(std::string const& id, SK_Time const& time,
                          std::vector<SK_DynamicDataSample>* samples) override {
    gJournal.Note("GetAdjacentSamples", id, time, samples);
  }
  void GetFileInfo(SK_FileInfo* info) override { gJournal.Note("GetFileInfo", info); }
  void GetVideoSyncTime(std::vector<SK_VideoSyncTime>* list) override { gJournal.Note("GetVideoSyncTime", list); }
  void GetSampleInfo(std::string const& id, SK_Time const& start, SK_Time const& end, SK_DynamicSampleInfo* info,
                     bool adjacent) override {
    gJournal.Note("GetSampleInfo", id, start, end, info, adjacent);
  }
  ~MockHandler() override { gJournal.Note("~"); }

  void getRootChildren(void* client, void* error) override { gJournal.Note("getRootChildren", client, error); }
  void getGroupChildren(char const* path, std::uint64_t length, void* client, void* error) override {
    gJournal.Note("getGroupChildren", path, length, client, error);
  }
  void getGroupChildInfo(char const* path, std::uint64_t length, void* client, void* error) override {
    gJournal.Note("getGroupChildInfo", path, length, client, error);
  }
  void getStaticDataInfo(char const* path, std::uint64_t length, void* client, void* error) override {
    gJournal.Note("getStaticDataInfo", path, length, client, error);
  }
  void getDynamicDataInfo(char const* path, std::uint64_t length, void* client, void* error) override {
    gJournal.Note("getDynamicDataInfo", path, length, client, error);
  }
  void getDynamicSamples(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                         std::int32_t endValue, std::uint32_t endScale, void* client, void* error) override {
    gJournal.Note("getDynamicSamples", id, length, startValue, startScale, endValue, endScale, client, error);
  }
  void getAdjacentSamples(char const* id, std::uint64_t length, std::int32_t timeValue, std::uint32_t timeScale,
                          void* client, void* error) override {
    gJournal.Note("getAdjacentSamples", id, length, timeValue, timeScale, client, error);
  }
  void getFileInfo(SK_FileInfo* info, void* client, void* error) override {
    gJournal.Note("getFileInfo", info, client, error);
  }
  void getVideoSyncTime(std::vector<SK_VideoSyncTime>* list, void* client, void* error) override {
    gJournal.Note("getVideoSyncTime", list, client, error);
  }
  void getSampleInfo(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                     std::int32_t endValue, std::uint32_t endScale, SK_DynamicSampleInfo* info, unsigned char adjacent,
                     void* client, void* error) override {
    gJournal.Note("getSampleInfo", id, length, startValue, startScale, endValue, endScale, info, adjacent, client,
                  error);
  }

  void GetDynamicSamples_I(std::string const& id, SK_Time const& start, SK_Time const& end,
                           SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed) override {
    gJournal.Note("GetDynamicSamples_I", id, start, end, samples, count, reversed);
  }
  void GetAdjacentSamples_I(std::string const& id, SK_Time const& time, SK_DynamicDataSample*& samples,
                            unsigned long long& count) override {
    gJournal.Note("GetAdjacentSamples_I", id, time, samples, count);
  }
};

class LayoutOfHandler : public testing::Test {
 protected:
  MockHandler mMock;
  void* const mObject = static_cast<ISensorFileHandler*>(&mMock);
  std::string const mText = "text";
  SK_Time const mStart{-1, 2};
  SK_Time const mEnd{3, 4};
};

TEST_F(LayoutOfHandler, ThrowingFormsComeFirst) {
  auto const result = Fake<void*>(5);
  CallSlot<void>(mObject, 0, result);
  EXPECT_EQ(gJournal.Take(), "GetRootChildren @5");
  CallSlot<void>(mObject, 1, &mText, result);
  EXPECT_EQ(gJournal.Take(), "GetGroupChildren text @5");
  CallSlot<void>(mObject, 2, &mText, result);
  EXPECT_EQ(gJournal.Take(), "GetGroupChildInfo text @5");
  CallSlot<void>(mObject, 3, &mText, result);
  EXPECT_EQ(gJournal.Take(), "GetStaticDataInfo text @5");
  CallSlot<void>(mObject, 4, &mText, result);
  EXPECT_EQ(gJournal.Take(), "GetDynamicDataInfo text @5");
  CallSlot<void>(mObject, 5, &mText, &mStart, &mEnd, result);
  EXPECT_EQ(gJournal.Take(), "GetDynamicSamples text -1/2 3/4 @5");
  CallSlot<void>(mObject, 6, &mText, &mStart, result);
  EXPECT_EQ(gJournal.Take(), "GetAdjacentSamples text -1/2 @5");
  CallSlot<void>(mObject, 7, result);
  EXPECT_EQ(gJournal.Take(), "GetFileInfo @5");
  CallSlot<void>(mObject, 8, result);
  EXPECT_EQ(gJournal.Take(), "GetVideoSyncTime @5");
  CallSlot<void>(mObject, 9, &mText, &mStart, &mEnd, result, true);
  EXPECT_EQ(gJournal.Take(), "GetSampleInfo text -1/2 3/4 @5 1");
}

TEST_F(LayoutOfHandler, BorderFormsFollowTheDestructor) {
  auto const info = Fake<void*>(5);
  auto const client = Fake<void*>(6);
  auto const error = Fake<void*>(7);
  std::uint64_t const length = 4;
  std::int32_t const startValue = -1;
  std::int32_t const endValue = 3;
  std::uint32_t const startScale = 2;
  std::uint32_t const endScale = 4'000'000'000;
  char const* const text = "text";

  CallSlot<void>(mObject, 12, client, error);
  EXPECT_EQ(gJournal.Take(), "getRootChildren @6 @7");
  CallSlot<void>(mObject, 13, text, length, client, error);
  EXPECT_EQ(gJournal.Take(), "getGroupChildren text 4 @6 @7");
  CallSlot<void>(mObject, 14, text, length, client, error);
  EXPECT_EQ(gJournal.Take(), "getGroupChildInfo text 4 @6 @7");
  CallSlot<void>(mObject, 15, text, length, client, error);
  EXPECT_EQ(gJournal.Take(), "getStaticDataInfo text 4 @6 @7");
  CallSlot<void>(mObject, 16, text, length, client, error);
  EXPECT_EQ(gJournal.Take(), "getDynamicDataInfo text 4 @6 @7");
  CallSlot<void>(mObject, 17, text, length, startValue, startScale, endValue, endScale, client, error);
  EXPECT_EQ(gJournal.Take(), "getDynamicSamples text 4 -1 2 3 4000000000 @6 @7");
  CallSlot<void>(mObject, 18, text, length, startValue, startScale, client, error);
  EXPECT_EQ(gJournal.Take(), "getAdjacentSamples text 4 -1 2 @6 @7");
  CallSlot<void>(mObject, 19, info, client, error);
  EXPECT_EQ(gJournal.Take(), "getFileInfo @5 @6 @7");
  CallSlot<void>(mObject, 20, info, client, error);
  EXPECT_EQ(gJournal.Take(), "getVideoSyncTime @5 @6 @7");
  CallSlot<void>(mObject, 21, text, length, startValue, startScale, endValue, endScale, info,
                 static_cast<unsigned char>(255), client, error);
  EXPECT_EQ(gJournal.Take(), "getSampleInfo text 4 -1 2 3 4000000000 @5 255 @6 @7");
}

TEST_F(LayoutOfHandler, ArrayFormsComeLast) {
  auto* samples = Fake<SK_DynamicDataSample*>(8);
  unsigned long long count = 9;
  bool reversed = true;
  CallSlot<void>(mObject, 22, &mText, &mStart, &mEnd, &samples, &count, &reversed);
  EXPECT_EQ(gJournal.Take(), "GetDynamicSamples_I text -1/2 3/4 @8 9 1");
  CallSlot<void>(mObject, 23, &mText, &mStart, &samples, &count);
  EXPECT_EQ(gJournal.Take(), "GetAdjacentSamples_I text -1/2 @8 9");
}

class MockStream : public ITdjsonStream {
 public:
  unsigned ReadStream(char* buffer, unsigned const& size) override {
    gJournal.Note("ReadStream", static_cast<void*>(buffer), size);
    return 11;
  }
  void SaveStream(char const* path) const override { gJournal.Note("SaveStream", path); }
  void GetNativeFilePath(std::string& path) const override { gJournal.Note("GetNativeFilePath", path); }
  unsigned GetStreamSize() const override { return 12; }
  unsigned GetRemainingStreamSize() const override { return 13; }
  void ResetStream() override { gJournal.Note("ResetStream"); }
  ~MockStream() override { gJournal.Note("~"); }
  unsigned readStream(char* buffer, unsigned const& size, void* error) override {
    gJournal.Note("readStream", static_cast<void*>(buffer), size, error);
    return 14;
  }
  void saveStream(char const* path, void* error) const override { gJournal.Note("saveStream", path, error); }
  void getNativeFilePath(void* client, void* error) const override {
    gJournal.Note("getNativeFilePath", client, error);
  }
  void resetStream(void* error) override { gJournal.Note("resetStream", error); }
};

TEST(Layout, StreamSlotsKeepTheirOrder) {
  MockStream mock;
  void* const object = static_cast<ITdjsonStream*>(&mock);
  auto const buffer = Fake<char*>(1);
  auto const client = Fake<void*>(2);
  auto const error = Fake<void*>(3);
  unsigned size = 4;
  std::string text = "text";

  EXPECT_EQ(CallSlot<unsigned>(object, 0, buffer, &size), 11U);
  EXPECT_EQ(gJournal.Take(), "ReadStream @1 4");
  CallSlot<void>(object, 1, "out");
  EXPECT_EQ(gJournal.Take(), "SaveStream out");
  CallSlot<void>(object, 2, &text);
  EXPECT_EQ(gJournal.Take(), "GetNativeFilePath text");
  EXPECT_EQ(CallSlot<unsigned>(object, 3), 12U);
  EXPECT_EQ(CallSlot<unsigned>(object, 4), 13U);
  CallSlot<void>(object, 5);
  EXPECT_EQ(gJournal.Take(), "ResetStream");
  EXPECT_EQ(CallSlot<unsigned>(object, 8, buffer, &size, error), 14U);
  EXPECT_EQ(gJournal.Take(), "readStream @1 4 @3");
  CallSlot<void>(object, 9, "out", error);
  EXPECT_EQ(gJournal.Take(), "saveStream out @3");
  CallSlot<void>(object, 10, client, error);
  EXPECT_EQ(gJournal.Take(), "getNativeFilePath @2 @3");
  CallSlot<void>(object, 11, error);
  EXPECT_EQ(gJournal.Take(), "resetStream @3");
}

// A virtual destructor takes two slots: the first destroys, the second also gives the memory back.
template <typename Mock>
void ExpectDestructorAt(std::size_t slot) {
  alignas(Mock) unsigned char memory[sizeof(Mock)];
  CallSlot<void>(new (memory) Mock, slot);
  EXPECT_EQ(gJournal.Take(), "~");
  CallSlot<void>(new Mock, slot + 1);
  EXPECT_EQ(gJournal.Take(), "~");
}

TEST(Layout, DestructorsStandWhereTheyAreListed) {
  ExpectDestructorAt<MockManager>(4);
  ExpectDestructorAt<MockHandler>(10);
  ExpectDestructorAt<MockStream>(6);
}

}  // namespace
