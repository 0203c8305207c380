/// Drives the writer as a module does, through the tables that it is handed and the interfaces of what it makes,
/// by a script of bytes. The script keeps the rules that a module must keep (it uses no object without a reference,
/// gives no null record, and puts no group below itself), and no other. Each call reports one failure or none, and
/// every file whose root was committed is handed to the reader.
#include <algorithm>
#include <limits>
#include <list>
#include <map>
#include <set>
#include <vector>

#include "ByteScript.h"
#include "FuzzFolder.h"
#include "FuzzHost.h"
#include "HostTables.h"
#include "senmark/HostAPI.h"
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
using senmark_fuzz::ByteScript;
using senmark_fuzz::FuzzFolder;
using senmark_fuzz::Require;

constexpr std::size_t kLargestScript = 8 * 1024;
constexpr std::size_t kMostObjects = 48;
/// Nodes that an outline may have, a group counted as often as it stands there: groups that hold the same
/// groups several times multiply.
constexpr std::uint64_t kLargestOutline = 3000;
constexpr char const* kFiles[] = {"first.tdjson", "second.tdjson"};

HostAPI const& Tables() {
  static senmark_test::HostTables const tables;
  return tables.Get();
}

/// Failures that were reported through a procedure of the module's own.
int gReports = 0;

void ReportToModule(void* result, eErrorCode code, long long offset, long long line) {
  ++gReports;
  Tables().mHandleExceptionAPI->Static_SetPluginErrorObj(result, code, offset, line);
}

enum eKind {
  kRoot,
  kGroup,
  kDynamicNumber,
  kDynamicArray,
  kDynamicText,
  kStaticNumber,
  kStaticArray,
  kStaticText,
  kStaticFlag,
  kKinds
};

/// An object as the module knows it: by the interface that it was given.
struct Object {
  eKind kind;
  void* interface;
  std::size_t references;  ///< that the module holds; 0: the one taken in advance, not yet claimed
  std::size_t node;        ///< in the module's own picture of the outlines
  std::string path;        ///< of a root
};

template <typename Interface>
Interface& As(Object const& object) {
  return *static_cast<Interface*>(object.interface);
}

ISharedObject& Counts(Object const& object) {
  switch (object.kind) {
    case kRoot:
      return As<ITdjsonRoot_v1>(object);
    case kGroup:
      return As<ITdjsonGroup_v1>(object);
    case kDynamicNumber:
      return As<ITdjsonDynamicDataNum_v1>(object);
    case kDynamicArray:
      return As<ITdjsonDynamicDataNumArr_v1>(object);
    case kDynamicText:
      return As<ITdjsonDynamicDataString_v1>(object);
    case kStaticNumber:
      return As<ITdjsonStaticDataNum_v1>(object);
    case kStaticArray:
      return As<ITdjsonStaticDataNumArr_v1>(object);
    case kStaticText:
      return As<ITdjsonStaticDataString_v1>(object);
    default:
      return As<ITdjsonStaticDataBool_v1>(object);
  }
}

bool IsDynamic(Object const& object) {
  return object.kind >= kDynamicNumber && object.kind <= kDynamicText;
}

ITdjsonDynamicData_v1& AsDynamic(Object const& object) {
  switch (object.kind) {
    case kDynamicNumber:
      return As<ITdjsonDynamicDataNum_v1>(object);
    case kDynamicArray:
      return As<ITdjsonDynamicDataNumArr_v1>(object);
    default:
      return As<ITdjsonDynamicDataString_v1>(object);
  }
}

ITdjsonStaticData_v1& AsStatic(Object const& object) {
  switch (object.kind) {
    case kStaticNumber:
      return As<ITdjsonStaticDataNum_v1>(object);
    case kStaticArray:
      return As<ITdjsonStaticDataNumArr_v1>(object);
    case kStaticText:
      return As<ITdjsonStaticDataString_v1>(object);
    default:
      return As<ITdjsonStaticDataBool_v1>(object);
  }
}

ITdjsonGroup_v1& AsGroup(Object const& object) {
  if (object.kind == kRoot) {
    return As<ITdjsonRoot_v1>(object);
  }
  return As<ITdjsonGroup_v1>(object);
}

/// The module's picture of what holds what. Nothing leaves it, so it may have more than there is.
class Picture {
 public:
  std::size_t Add() {
    mChildren.emplace_back();
    return mChildren.size() - 1;
  }

  /// False if the child would come to stand above itself, or an outline would grow beyond all measure.
  bool Hang(std::size_t parent, std::size_t child) {
    mChildren[parent].push_back(child);
    mSizes.assign(mChildren.size(), 0);
    if (Reaches(child, parent) || SizeOfLargest() > kLargestOutline) {
      mChildren[parent].pop_back();
      return false;
    }
    return true;
  }

 private:
  bool Reaches(std::size_t from, std::size_t to) const {
    std::vector<std::size_t> waiting = {from};
    std::set<std::size_t> seen;
    while (!waiting.empty()) {
      std::size_t const next = waiting.back();
      waiting.pop_back();
      if (next == to) {
        return true;
      }
      if (seen.insert(next).second) {
        waiting.insert(waiting.end(), mChildren[next].begin(), mChildren[next].end());
      }
    }
    return false;
  }

  std::uint64_t SizeOf(std::size_t node) {
    if (mSizes[node] == 0) {
      std::uint64_t size = 1;
      for (std::size_t const child : mChildren[node]) {
        size = std::min(size + SizeOf(child), kLargestOutline + 1);
      }
      mSizes[node] = size;
    }
    return mSizes[node];
  }

  std::uint64_t SizeOfLargest() {
    std::uint64_t largest = 0;
    for (std::size_t node = 0; node != mChildren.size(); ++node) {
      largest = std::max(largest, SizeOf(node));
    }
    return largest;
  }

  std::vector<std::vector<std::size_t>> mChildren;
  std::vector<std::uint64_t> mSizes;
};

class Module {
 public:
  Module(ByteScript& script, FuzzFolder const& folder) : mScript(script), mFolder(folder) {}

  void Run() {
    while (mScript.HasMore()) {
      Step();
    }
    while (!mObjects.empty()) {
      Drop(mObjects.size() - 1);
    }
    for (char& key : mKeys) {
      RemoveRoot(&key);
    }
  }

  std::set<std::string> const& Committed() const { return mCommitted; }

 private:
  void Step() {
    std::size_t const step = mScript.Below(kKinds + 5);
    if (step < kKinds) {
      Create(static_cast<eKind>(step));
    } else if (step == kKinds + 3) {
      RemoveRoot(Key());
    } else if (!mObjects.empty()) {
      std::size_t const index = mScript.Below(mObjects.size());
      if (step == kKinds + 4) {
        Drop(index);
      } else if (step == kKinds) {
        AddTo(index);
      } else {
        Use(mObjects[index]);
      }
    }
  }

  void* Key() { return &mKeys[mScript.Below(std::size(mKeys))]; }

  char const* Text() {
    mTexts.emplace_back();
    return mScript.Text(mTexts.back());
  }

  /// Makes one call, which must report one failure or none, and gives the code.
  template <typename CallFunction>
  int Call(CallFunction call) {
    SK_PluginResult result;
    gReports = 0;
    call(&result);
    int const code = result.mErrorCode;
    Require(code == 0 || code == 48 || code == 53 || (code > 1000 && code <= 2030));
    Require(!mReportsToModule || gReports == (code == 0 ? 0 : 1));
    Require(code != 0 || (result.mFileOffset == -1 && result.mFileLineNo == -1));
    mTexts.clear();
    return code;
  }

  void Create(eKind kind) {
    static char sUntouched;
    if (mObjects.size() == kMostObjects) {
      return;
    }
    std::uint8_t const request = mScript.Byte();
    unsigned const version = request % 16 == 1 ? 0 : request % 16 == 2 ? 2 : 1;
    void* made = &sUntouched;
    void** const out = request % 16 == 3 ? nullptr : &made;
    Object object{kind, nullptr, 0, 0, ""};
    int const code = kind == kRoot ? CreateRoot(object, out, version) : CreateNode(kind, out, version);
    if (out == nullptr || version != 1) {
      Require(code == (out == nullptr ? 2027 : version > 1 ? 2029 : 2030));
    }
    Require((code == 0) == (made != &sUntouched));
    if (code != 0) {
      return;
    }
    object.interface = made;
    // A root that was there already is known by its place.
    std::size_t const fresh = mPicture.Add();
    object.node = kind == kRoot ? mRoots.emplace(made, fresh).first->second : fresh;
    // Who adds an object without having claimed it has given it away.
    if (kind == kRoot || request % 4 != 0) {
      Counts(object).Acquire();
      object.references = 1;
    }
    mObjects.push_back(object);
  }

  int CreateRoot(Object& object, void** out, unsigned version) {
    char const* const names[] = {kFiles[0], kFiles[1], "no/such/folder", ""};
    void* const key = Key();
    std::size_t const choice = mScript.Below(std::size(names) + 2);
    object.path = choice < std::size(names) ? mFolder.Path(names[choice]) : "";
    char const* const path = choice == std::size(names) ? nullptr : object.path.c_str();
    std::size_t const proc = mScript.Below(3);
    SetErrorProc const procs[] = {ReportToModule, Tables().mHandleExceptionAPI->Static_SetPluginErrorObj, nullptr};
    if (out != nullptr && version == 1) {
      mReportsToModule = proc == 0;
    }
    unsigned char existed = 2;
    int const code = Call([&](void* result) {
      Tables().mTdjsonWriterAPI->Static_CreateRoot(key, path, procs[proc], out, &existed, version, result);
    });
    Require(code != 0 || existed <= 1);
    Require(existed != 1 || code == 0 || code == 1034 || object.path.empty());
    return code;
  }

  int CreateNode(eKind kind, void** out, unsigned version) {
    TDJSONWriter_API const& table = *Tables().mTdjsonWriterAPI;
    void* const key = Key();
    if (kind >= kDynamicNumber && kind <= kDynamicText) {
      auto const create = kind == kDynamicNumber  ? table.Static_CreateDynamicDataNum
                          : kind == kDynamicArray ? table.Static_CreateDynamicDataNumArr
                                                  : table.Static_CreateDynamicDataString;
      return Call([&](void* result) { create(key, out, version, result); });
    }
    char const* const matchName = Text();
    char const* const displayName = Text();
    switch (kind) {
      case kGroup:
        return Call([&](void* r) { table.Static_CreateGroup(key, out, matchName, displayName, version, r); });
      case kStaticNumber: {
        double const value = mScript.Number();
        return Call(
            [&](void* r) { table.Static_CreateStaticDataNum(key, out, matchName, displayName, value, version, r); });
      }
      case kStaticArray:
        return Call(
            [&](void* r) { table.Static_CreateStaticDataNumArr(key, out, matchName, displayName, version, r); });
      case kStaticText: {
        char const* const value = Text();
        return Call(
            [&](void* r) { table.Static_CreateStaticDataString(key, out, matchName, displayName, value, version, r); });
      }
      default: {
        unsigned char const value = mScript.Byte();
        return Call(
            [&](void* r) { table.Static_CreateStaticDataBool(key, out, matchName, displayName, value, version, r); });
      }
    }
  }

  /// Gives back all references of the module.
  void Drop(std::size_t index) {
    Object const object = mObjects[index];
    mObjects.erase(mObjects.begin() + static_cast<std::ptrdiff_t>(index));
    if (object.references == 0) {
      Counts(object).Acquire();
    }
    for (std::size_t left = std::max<std::size_t>(object.references, 1); left != 0; --left) {
      Counts(object).Release();
    }
  }

  void RemoveRoot(void* key) {
    Call([&](void* result) { Tables().mHandleMemoryAPI->Static_RemoveConverterFromMap(key, result); });
  }

  /// Hangs an object below a group or a root: the same one again and below several is allowed. Or nothing.
  void AddTo(std::size_t childIndex) {
    Object const child = mObjects[childIndex];
    std::size_t const parentIndex = mScript.Below(mObjects.size());
    Object const& parent = mObjects[parentIndex];
    if (parent.kind > kGroup || parentIndex == childIndex) {
      return;
    }
    ITdjsonGroup_v1& group = AsGroup(parent);
    if (mScript.Below(16) == 1) {
      int const code = Call([&](void* result) {
        IsDynamic(child)       ? group.addDynamicData(nullptr, result)
        : child.kind <= kGroup ? group.addGroup(nullptr, result)
                               : group.addStaticData(nullptr, result);
      });
      Require(code == (IsDynamic(child) ? 2001 : child.kind <= kGroup ? 2003 : 2002));
      return;
    }
    if (!mPicture.Hang(parent.node, child.node)) {
      return;
    }
    int const code = Call([&](void* result) {
      if (IsDynamic(child)) {
        group.addDynamicData(&AsDynamic(child), result);
      } else if (child.kind <= kGroup) {
        group.addGroup(&AsGroup(child), result);
      } else {
        group.addStaticData(&AsStatic(child), result);
      }
    });
    Require(code == 0 || (code == 2001 && IsDynamic(child)));
    if (child.references == 0) {
      mObjects.erase(mObjects.begin() + static_cast<std::ptrdiff_t>(childIndex));
    }
  }

  void Use(Object& object) {
    switch (object.kind) {
      case kRoot:
        return UseRoot(object);
      case kGroup:
        return Hold(object);
      case kDynamicNumber:
      case kDynamicArray:
      case kDynamicText:
        return UseDynamic(object);
      case kStaticNumber:
        return UseNumber(As<ITdjsonStaticDataNum_v1>(object), mScript.Below(2));
      case kStaticArray:
        return UseStaticArray(As<ITdjsonStaticDataNumArr_v1>(object));
      case kStaticText: {
        std::uint64_t const counts = Count();
        unsigned char const marks = mScript.Byte();
        Call([&](void* r) { As<ITdjsonStaticDataString_v1>(object).setStringProperties(counts, counts, marks, r); });
        return;
      }
      default:
        return Hold(object);
    }
  }

  /// Takes one more reference.
  void Hold(Object& object) {
    if (object.references < 5) {
      Counts(object).Acquire();
      ++object.references;
    }
  }

  void UseRoot(Object& object) {
    ITdjsonRoot_v1& root = As<ITdjsonRoot_v1>(object);
    switch (mScript.Below(9)) {
      case 0: {
        unsigned char const drop = mScript.Byte();
        unsigned const value = Rate();
        unsigned const scale = Rate();
        Call([&](void* r) { root.setSMPTETimeInfo(drop, value, scale, r); });
        return;
      }
      case 1: {
        unsigned const precision = mScript.Below(4) == 0 ? mScript.Word() % 70000 : mScript.Byte() % 10u;
        unsigned char const isGMT = mScript.Byte();
        Call([&](void* r) { root.setUTCTimeInfo(precision, isGMT, r); });
        return;
      }
      case 2: {
        char const* const name = Text();
        int const frame = static_cast<int>(mScript.Word());
        Call([&](void* r) { root.addSyncTimeFrameNum(name, frame, r); });
        return;
      }
      case 3: {
        char const* const name = Text();
        char const* const time = Text();
        std::size_t const length = time == nullptr ? 0 : std::strlen(time);
        Call([&](void* r) { root.addSyncTimeStr(name, time, length, r); });
        return;
      }
      case 4: {
        char const* const creator = Text();
        Call([&](void* r) { root.setCreator(creator, r); });
        return;
      }
      case 5:
        Call([&](void* r) { root.writeVersionToFile(r); });
        return;
      case 6:
        return Hold(object);
      default:
        if (Call([&](void* r) { root.commit(r); }) == 0) {
          mCommitted.insert(object.path);
        }
        return;
    }
  }

  void UseDynamic(Object& object) {
    ITdjsonDynamicData_v1& node = AsDynamic(object);
    switch (mScript.Below(8)) {
      case 0:
        Call([&](void* r) { node.commit(r); });
        return;
      case 1: {
        char const* const displayName = Text();
        char const* const matchName = Text();
        char const* const id = Text();
        std::uint64_t const count = mScript.Below(2) == 0 ? 0 : Count();
        unsigned const interpolation = mScript.Below(8) == 1 ? mScript.Word() : 1 + mScript.Byte() % 2u;
        unsigned char const hasFrequency = mScript.Byte();
        char const* const duration = Text();
        Call([&](void* r) {
          node.setDynamicDataInfo(displayName, matchName, id, count, interpolation, hasFrequency, duration, r);
        });
        return;
      }
      case 2:
        node.SetSampleCount(Count());
        node.GetSampleCount();
        return;
      case 3:
        Require(node.GetActualITdjsonDynamicData() == &node || node.GetType() <= ns_sensor::kNumberArrayValue);
        return Hold(object);
      default:
        break;
    }
    if (object.kind == kDynamicNumber) {
      return UseDynamicNumber(As<ITdjsonDynamicDataNum_v1>(object));
    }
    if (object.kind == kDynamicArray) {
      return UseDynamicArray(As<ITdjsonDynamicDataNumArr_v1>(object));
    }
    UseDynamicText(As<ITdjsonDynamicDataString_v1>(object));
  }

  /// Pattern and range, which the nodes with numbers have in common.
  template <typename Node>
  void UseNumber(Node& node, std::size_t step) {
    if (step == 0) {
      std::uint64_t const integer = Count();
      std::uint64_t const decimal = mScript.Below(2) == 0 ? integer : Count();
      unsigned char const isSigned = mScript.Byte();
      Call([&](void* r) { node.setNumberPattern(integer, decimal, isSigned, r); });
      return;
    }
    double bounds[4];
    bool const areMarks = mScript.Below(2) == 0;
    for (double& bound : bounds) {
      bool const isMinimum = &bound == &bounds[0] || &bound == &bounds[2];
      double const mark = isMinimum ? std::numeric_limits<double>::max() : std::numeric_limits<double>::lowest();
      bound = areMarks ? mark : mScript.Number();
    }
    Call([&](void* r) { node.setNumberRange(bounds[0], bounds[1], bounds[2], bounds[3], r); });
  }

  void UseStaticArray(ITdjsonStaticDataNumArr_v1& node) {
    switch (mScript.Below(6)) {
      case 0: {
        std::uint64_t const count = Count();
        Call([&](void* r) { node.setArrCount(count, r); });
        return;
      }
      case 1: {
        unsigned char const isPoint = mScript.Byte();
        Call([&](void* r) { node.setIsPoint(isPoint, r); });
        return;
      }
      case 2: {
        char const* const name = Text();
        Call([&](void* r) { node.addDisplayName(name, r); });
        return;
      }
      case 3: {
        double const value = mScript.Number();
        Call([&](void* r) { node.addElement(value, r); });
        return;
      }
      default:
        UseNumber(node, mScript.Below(2));
    }
  }

  struct Times {
    int clock[4];
    int calendar[10];
  };

  /// Mostly a time that has the width of its kind, else any.
  int Part(int ordinary) { return mScript.Below(8) == 1 ? static_cast<int>(mScript.Word()) : ordinary; }

  template <typename AddTimeCode, typename AddCalendarTime>
  void AddSample(AddTimeCode addTimeCode, AddCalendarTime addCalendarTime) {
    bool const isTimeCode = mScript.Below(2) == 0;
    int const place = mScript.Byte() % 60;
    if (isTimeCode) {
      int const hours = Part(1);
      int const minutes = Part(2);
      int const seconds = Part(place);
      int const frames = Part(3);
      Call([&](void* r) { addTimeCode(hours, minutes, seconds, frames, r); });
    } else {
      int const year = Part(2026);
      int const second = Part(place);
      signed char const zone = static_cast<signed char>(mScript.Below(2) == 0 ? 'Z' : mScript.Byte());
      int const zoneHours = Part(5);
      int const fraction = Part(0);
      Call([&](void* r) { addCalendarTime(year, second, zone, zoneHours, fraction, r); });
    }
  }

  void UseDynamicNumber(ITdjsonDynamicDataNum_v1& node) {
    std::size_t const step = mScript.Below(4);
    if (step < 2) {
      return UseNumber(node, step);
    }
    double const value = mScript.Number();
    AddSample([&](int hours, int minutes, int seconds, int frames,
                  void* r) { node.addSampleSMPTE(hours, minutes, seconds, frames, value, r); },
              [&](int year, int second, signed char zone, int zoneHours, int fraction, void* r) {
                node.addSampleUTC(year, 2, 3, 4, 5, second, zone, zoneHours, 30, fraction, value, r);
              });
  }

  void UseDynamicArray(ITdjsonDynamicDataNumArr_v1& node) {
    switch (mScript.Below(8)) {
      case 0:
      case 1:
        return UseNumber(node, mScript.Below(2));
      case 2: {
        std::uint64_t const count = mScript.Below(4) == 0 ? Count() : 1 + mScript.Below(3);
        Call([&](void* r) { node.setArrCount(count, r); });
        return;
      }
      case 3: {
        unsigned char const isPoint = mScript.Byte();
        Call([&](void* r) { node.setIsPoint(isPoint, r); });
        return;
      }
      case 4: {
        char const* const name = Text();
        Call([&](void* r) { node.setDisplayName(name, r); });
        return;
      }
      default:
        break;
    }
    for (std::size_t left = mScript.Below(4); left != 0; --left) {
      double const value = mScript.Number();
      Call([&](void* r) { node.addElement(value, r); });
    }
    AddSample([&](int hours, int minutes, int seconds, int frames,
                  void* r) { node.addTimeSMPTE(hours, minutes, seconds, frames, r); },
              [&](int year, int second, signed char zone, int zoneHours, int fraction, void* r) {
                node.addTimeUTC(year, 2, 3, 4, 5, second, zone, zoneHours, 30, fraction, r);
              });
  }

  void UseDynamicText(ITdjsonDynamicDataString_v1& node) {
    if (mScript.Below(4) == 0) {
      std::uint64_t const counts = Count();
      unsigned char const marks = mScript.Byte();
      Call([&](void* r) { node.setStringProperties(counts, counts, marks, r); });
      return;
    }
    // Lives until the call: it is the only text of it.
    char const* const value = Text();
    AddSample([&](int hours, int minutes, int seconds, int frames,
                  void* r) { node.addSampleSMPTE(hours, minutes, seconds, frames, value, r); },
              [&](int year, int second, signed char zone, int zoneHours, int fraction, void* r) {
                node.addSampleUTC(year, 2, 3, 4, 5, second, zone, zoneHours, 30, fraction, value, r);
              });
  }

  /// A count of digits, elements or samples: a small one, the automatic mark, or one beyond all memory. What lies
  /// between takes the memory that it asks for.
  std::uint64_t Count() {
    static constexpr std::uint64_t kCounts[] = {
        0, 1, 2, 3, 4, 20, 300, ~std::uint64_t{0}, ~std::uint64_t{0} - 1, std::uint64_t{1} << 63U};
    return kCounts[mScript.Below(std::size(kCounts))];
  }

  unsigned Rate() {
    static constexpr unsigned kRates[] = {1, 0, 24, 30, 100, 1001, 30000, 60000, ~0U};
    std::size_t const choice = mScript.Below(std::size(kRates) + 1);
    return choice == std::size(kRates) ? mScript.Word() : kRates[choice];
  }

  ByteScript& mScript;
  FuzzFolder const& mFolder;
  char mKeys[2] = {};
  std::vector<Object> mObjects;
  Picture mPicture;
  std::map<void*, std::size_t> mRoots;
  std::list<std::string> mTexts;
  std::set<std::string> mCommitted;
  bool mReportsToModule = false;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static FuzzFolder folder;
  folder.StartInput();
  if (size > kLargestScript) {
    return 0;
  }
  ByteScript script(data, size);
  Module module(script, folder);
  module.Run();
  senmark_fuzz::FuzzHost host;
  for (std::string const& path : module.Committed()) {
    if (ns_sensor::ISensorFileHandler* const file = senmark_fuzz::Open(host, path)) {
      senmark_fuzz::WalkAndClose(host, file);
    }
  }
  for (char const* const name : kFiles) {
    folder.Remove(name);
  }
  folder.RequireNothingLeft({});
  return 0;
}
