/// Inside of the wrapper: the one table of client procs, and the objects that it sends answers to.
///
/// The library keeps the first table of client procs that a process gives it and ignores all others, so
/// a table cannot belong to one user of the wrapper. The wrapper's table therefore does nothing but look
/// at the client object: its first word points to the procs that its owner wants called. Any two copies
/// of this header agree on that, also when they were compiled into shared objects that hide their
/// symbols from each other, whichever of their tables came first.
#pragma once

#include <dlfcn.h>

#include <cstdint>
#include <exception>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "senmark/SK_ClientProcs.h"
#include "senmark/host/Values.h"

namespace senmark::detail {

/// What all users of the wrapper in a process share. Plain functions, so that copies of this header from
/// different compilers can use it. It belongs to the copy whose table the library took.
struct SharedState {
  /// Opening, closing, and making and destroying streams happen one at a time: the library's own lock
  /// leaves the streams out.
  void (*lock)();
  void (*unlock)();
};

/// Begin of every object that the wrapper gives to the library as client or client error object. The
/// layout is fixed.
struct ClientHead {
  ns_sensor::SK_ClientProcs const* procs = nullptr;
  /// Set by the `string` entry of the table that the library calls; null: another kind of table.
  SharedState const* shared = nullptr;
};

/// Calls the same entry of the client's own procs.
template <auto Entry>
struct Forward;
template <class... Args, void (*ns_sensor::SK_ClientProcs::*Entry)(void*, Args...)>
struct Forward<Entry> {
  static void Call(void* client, Args... args) { (static_cast<ClientHead*>(client)->procs->*Entry)(client, args...); }
};

/// The same for a proc of one of the two inner tables.
template <auto Table, auto Entry>
struct ForwardInner;
template <class Inner, class... Args, Inner* ns_sensor::SK_ClientProcs::*Table, void (*Inner::*Entry)(void*, Args...)>
struct ForwardInner<Table, Entry> {
  static void Call(void* client, Args... args) {
    Inner const* const inner = static_cast<ClientHead*>(client)->procs->*Table;
    (inner->*Entry)(client, args...);
  }
};

inline std::mutex& BorderMutex() {
  static std::mutex mutex;
  return mutex;
}

inline SharedState const* OwnSharedState() {
  static SharedState const state{[] { BorderMutex().lock(); }, [] { BorderMutex().unlock(); }};
  return &state;
}

/// Keeps the program or shared object that holds this copy of the header in memory for good: the library
/// keeps the table by its address and calls it as long as the process lives.
inline bool StayLoaded() {
  static char const anchor = 0;
  Dl_info place{};
  if (dladdr(&anchor, &place) == 0 || place.dli_fname == nullptr) {
    return false;
  }
  void* const handle = dlopen(place.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
  if (handle != nullptr) {
    dlclose(handle);
  }
  return handle != nullptr;
}

/// The table for the library. It only forwards.
inline ns_sensor::SK_ClientProcs* ForwardingTable() {
  using Procs = ns_sensor::SK_ClientProcs;
  using Path = ns_sensor::SK_PathProcs;
  using Property = ns_sensor::SK_PropertyProcs;
  static Path path{&ForwardInner<&Procs::path, &Path::pathSegment>::Call};
  static Property property{&ForwardInner<&Procs::property, &Property::number>::Call,
                           &ForwardInner<&Procs::property, &Property::string>::Call,
                           &ForwardInner<&Procs::property, &Property::numberArray>::Call,
                           &ForwardInner<&Procs::property, &Property::numberArrayDisplayName>::Call,
                           &ForwardInner<&Procs::property, &Property::numberArrayRange>::Call};
  static Procs table{&path,
                     &property,
                     &Forward<&Procs::staticDataInfo>::Call,
                     &Forward<&Procs::dynamicDataInfo>::Call,
                     &Forward<&Procs::groupChildInfo>::Call,
                     &Forward<&Procs::sample>::Call,
                     &Forward<&Procs::fileInfo>::Call,
                     &Forward<&Procs::videoSyncTime>::Call,
                     &Forward<&Procs::supportedFormat>::Call,
                     &Forward<&Procs::sampleCount>::Call,
                     [](void* client, char const* text, std::uint64_t length) {
                       ClientHead* const head = static_cast<ClientHead*>(client);
                       head->shared = OwnSharedState();
                       head->procs->string(client, text, length);
                     },
                     &Forward<&Procs::error>::Call};
  static bool const stays = StayLoaded();
  static_cast<void>(stays);
  return &table;
}

/// Where the samples of one answer go. The buffer's elements are used again, so that a long pass over a
/// set does not allocate for every sample.
struct SampleSink {
  std::uint64_t expected = 0;   ///< samples that the answer must have
  std::uint64_t skip = 0;       ///< samples at its begin that are not wanted
  bool countIsRight = false;    ///< out: whether it had `expected`
  std::vector<Sample>* buffer;  ///< grows as needed
  std::size_t used = 0;         ///< out: elements of `buffer` that are filled
};

/// Takes what one call of the library sends. A destination that is null is not wanted.
struct Receiver : ClientHead {
  Receiver() { procs = OwnProcs(); }
  Receiver(Receiver const&) = delete;
  Receiver& operator=(Receiver const&) = delete;

  /// First argument of the procs, and the client error object.
  void* Client() { return static_cast<ClientHead*>(this); }
  /// Throws what the call has left behind. Call it behind every call of the library.
  void Raise() {
    if (thrown) {
      std::rethrow_exception(std::exchange(thrown, nullptr));
    }
    if (error) {
      throw Error(*error);
    }
  }

  std::optional<Error> error;
  std::exception_ptr thrown;  ///< from a proc, which must not let it through

  ns_sensor::SK_HostPropertyAPI const* propertyApi = nullptr;
  std::vector<ChildPath>* children = nullptr;
  Node* node = nullptr;
  Properties* properties = nullptr;
  SampleSink* samples = nullptr;
  FileInfo* fileInfo = nullptr;
  std::vector<VideoSyncTime>* syncTimes = nullptr;
  std::vector<Format>* formats = nullptr;
  std::string* answer = nullptr;

  /// The procs that serve a `Receiver`.
  static ns_sensor::SK_ClientProcs const* OwnProcs();
};

/// Runs the body of a proc. Nothing may leave a proc, so an exception waits in the receiver.
template <class Body>
void Receive(void* client, Body&& body) noexcept {
  Receiver& receiver = *static_cast<Receiver*>(static_cast<ClientHead*>(client));
  try {
    body(receiver);
  } catch (...) {
    if (!receiver.thrown) {
      receiver.thrown = std::current_exception();
    }
  }
}

inline std::optional<std::uint64_t> DigitsOf(std::uint64_t digits) {
  return digits == ~std::uint64_t{0} ? std::nullopt : std::optional<std::uint64_t>(digits);
}

/// Inverted limits mean that there are none.
inline std::optional<MinMax> LimitsOf(double min, double max) {
  return min <= max ? std::optional<MinMax>(MinMax{min, max}) : std::nullopt;
}

inline std::string TextOf(char const* text) {
  return text == nullptr ? std::string() : std::string(text);
}

/// Writes a value that the library lends into `out`, whose memory is used again where it fits.
inline void StoreValue(std::uint8_t type, void const* value, std::uint64_t size, Value& out) {
  switch (static_cast<eValueType>(type)) {
    case eValueType::kNumber:
      out = *static_cast<double const*>(value);
      return;
    case eValueType::kString: {
      if (!std::holds_alternative<std::string>(out)) {
        out.emplace<std::string>();
      }
      std::get<std::string>(out).assign(static_cast<char const*>(value), static_cast<std::size_t>(size));
      return;
    }
    case eValueType::kNumberArray: {
      if (!std::holds_alternative<std::vector<double>>(out)) {
        out.emplace<std::vector<double>>();
      }
      double const* const numbers = static_cast<double const*>(value);
      std::get<std::vector<double>>(out).assign(numbers, numbers + size);
      return;
    }
    case eValueType::kBoolean:
      out = *static_cast<bool const*>(value);
      return;
    case eValueType::kInvalid:
      break;
  }
  out = 0.0;
}

/// Fetches the properties of the node that is being told. Only from inside the proc that tells it.
inline Properties PropertiesOf(Receiver& receiver, std::uint8_t type, void* handle) {
  Properties properties;
  receiver.properties = &properties;
  switch (static_cast<eValueType>(type)) {
    case eValueType::kNumber:
      receiver.propertyApi->pushNumber(handle, receiver.Client());
      break;
    case eValueType::kNumberArray:
      receiver.propertyApi->pushNumberArray(handle, receiver.Client());
      break;
    case eValueType::kString:
      receiver.propertyApi->pushString(handle, receiver.Client());
      break;
    case eValueType::kBoolean:
    case eValueType::kInvalid:
      break;
  }
  receiver.properties = nullptr;
  return properties;
}

inline void StoreSample(SampleSink& sink, Time time, std::uint8_t type, void const* value, std::uint64_t size) {
  if (sink.skip != 0) {
    --sink.skip;
    return;
  }
  if (sink.used == sink.buffer->size()) {
    sink.buffer->emplace_back();
  }
  Sample& sample = (*sink.buffer)[sink.used];
  sample.time = time;
  StoreValue(type, value, size, sample.value);
  ++sink.used;
}

inline ns_sensor::SK_PathProcs* OwnPathProcs() {
  static ns_sensor::SK_PathProcs procs{
      [](void* client, char const* matchName, std::int32_t index, std::uint64_t, std::uint8_t isLast) {
        Receive(client, [&](Receiver& receiver) {
          if (receiver.children != nullptr && isLast != 0) {
            receiver.children->push_back(ChildPath{std::string(), TextOf(matchName), index});
          }
        });
      }};
  return &procs;
}

inline ns_sensor::SK_PropertyProcs* OwnPropertyProcs() {
  static ns_sensor::SK_PropertyProcs procs{
      [](void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal, bool const* isSigned,
         double const* occurringMin, double const* occurringMax, double const* legalMin, double const* legalMax) {
        Receive(client, [&](Receiver& receiver) {
          NumberProperties number;
          number.pattern = {DigitsOf(*digitsInteger), DigitsOf(*digitsDecimal), *isSigned};
          number.range = {LimitsOf(*occurringMin, *occurringMax), LimitsOf(*legalMin, *legalMax)};
          *receiver.properties = number;
        });
      },
      [](void* client, std::uint64_t const* maxLen, std::uint64_t const* maxDigits, bool const* eventMarkerB) {
        Receive(client, [&](Receiver& receiver) {
          *receiver.properties = StringProperties{*maxLen, *maxDigits, *eventMarkerB};
        });
      },
      [](void* client, std::uint64_t const* digitsInteger, std::uint64_t const* digitsDecimal, bool const* isSigned,
         std::uint64_t const* arraySize, bool const* isPoint) {
        Receive(client, [&](Receiver& receiver) {
          NumberArrayProperties array;
          array.pattern = {DigitsOf(*digitsInteger), DigitsOf(*digitsDecimal), *isSigned};
          array.arraySize = *arraySize;
          array.isPoint = *isPoint;
          *receiver.properties = std::move(array);
        });
      },
      [](void* client, char const* name, std::uint64_t length) {
        Receive(client, [&](Receiver& receiver) {
          std::get<NumberArrayProperties>(*receiver.properties)
              .displayNames.emplace_back(name, static_cast<std::size_t>(length));
        });
      },
      [](void* client, double const* occurringMin, double const* occurringMax, double const* legalMin,
         double const* legalMax) {
        Receive(client, [&](Receiver& receiver) {
          std::get<NumberArrayProperties>(*receiver.properties)
              .ranges.push_back({LimitsOf(*occurringMin, *occurringMax), LimitsOf(*legalMin, *legalMax)});
        });
      }};
  return &procs;
}

inline void ReceiveStaticData(void* client, char const* displayName, char const* matchName, void* properties,
                              std::uint8_t dataType, void const* value, std::uint64_t valueSize) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.node == nullptr) {
      return;
    }
    receiver.node->displayName = TextOf(displayName);
    receiver.node->matchName = TextOf(matchName);
    StaticData& data = receiver.node->fixed.emplace();
    data.type = static_cast<eValueType>(dataType);
    StoreValue(dataType, value, valueSize, data.value);
    data.properties = PropertiesOf(receiver, dataType, properties);
  });
}

inline void ReceiveDynamicData(void* client, char const* displayName, char const* matchName, std::uint8_t dataType,
                               void* properties, char const* sampleSetID, std::uint64_t sampleCount,
                               std::uint8_t interpolation, bool hasExpectedFrequency, std::int32_t startValue,
                               std::uint32_t startScale, std::int32_t endValue, std::uint32_t endScale,
                               char const* expectedMaxInterSampleDuration) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.node == nullptr) {
      return;
    }
    receiver.node->displayName = TextOf(displayName);
    receiver.node->matchName = TextOf(matchName);
    DynamicData& data = receiver.node->dynamic.emplace();
    data.type = static_cast<eValueType>(dataType);
    data.sampleSetId = TextOf(sampleSetID);
    data.sampleCount = sampleCount;
    data.interpolation = static_cast<eInterpolation>(interpolation);
    data.hasExpectedFrequency = hasExpectedFrequency;
    if (sampleCount != 0) {
      data.extent = Extent{Time{startValue, startScale}, Time{endValue, endScale}};
    }
    data.expectedMaxInterSampleDuration = TextOf(expectedMaxInterSampleDuration);
    data.properties = PropertiesOf(receiver, dataType, properties);
  });
}

inline void ReceiveGroupChild(void* client, std::uint8_t childType, char const* displayName, char const* matchName) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.node != nullptr) {
      receiver.node->kind = static_cast<eNodeKind>(childType);
      receiver.node->displayName = TextOf(displayName);
      receiver.node->matchName = TextOf(matchName);
    }
  });
}

inline void ReceiveSample(void* client, std::int32_t timeValue, std::uint32_t timeScale, void const* value,
                          std::uint64_t valueSize, std::uint8_t valueType) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.samples != nullptr && !receiver.thrown) {
      StoreSample(*receiver.samples, Time{timeValue, timeScale}, valueType, value, valueSize);
    }
  });
}

inline void ReceiveFileInfo(void* client, std::int32_t durationValue, std::uint32_t durationScale, char const* version,
                            std::uint64_t versionLength, char const* creator, std::uint64_t creatorLength) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.fileInfo != nullptr) {
      *receiver.fileInfo =
          FileInfo{Time{durationValue, durationScale}, std::string(version, static_cast<std::size_t>(versionLength)),
                   std::string(creator, static_cast<std::size_t>(creatorLength))};
    }
  });
}

inline void ReceiveVideoSyncTime(void* client, char const* fileName, std::uint8_t kind, void const* value,
                                 std::uint64_t valueSize, std::uint8_t valueKind) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.syncTimes == nullptr) {
      return;
    }
    VideoSyncTime time;
    time.fileName = TextOf(fileName);
    time.kind = kind;
    if (valueKind == 0) {
      time.at = static_cast<std::int32_t>(*static_cast<int const*>(value));
    } else {
      time.at = std::string(static_cast<char const*>(value), static_cast<std::size_t>(valueSize));
    }
    receiver.syncTimes->push_back(std::move(time));
  });
}

inline void ReceiveSampleCount(void* client, std::uint64_t* count) {
  Receive(client, [&](Receiver& receiver) {
    if (receiver.samples == nullptr) {
      return;
    }
    SampleSink& sink = *receiver.samples;
    sink.countIsRight = *count == sink.expected;
    if (!sink.countIsRight) {
      *count = 0;  // nothing of a wrong answer is to be sent
    }
  });
}

inline ns_sensor::SK_ClientProcs const* Receiver::OwnProcs() {
  static ns_sensor::SK_ClientProcs const procs{
      OwnPathProcs(),
      OwnPropertyProcs(),
      &ReceiveStaticData,
      &ReceiveDynamicData,
      &ReceiveGroupChild,
      &ReceiveSample,
      &ReceiveFileInfo,
      &ReceiveVideoSyncTime,
      [](void* client, char const* extension, char const* description) {
        Receive(client, [&](Receiver& receiver) {
          if (receiver.formats != nullptr) {
            receiver.formats->push_back(Format{TextOf(extension), TextOf(description)});
          }
        });
      },
      &ReceiveSampleCount,
      [](void* client, char const* text, std::uint64_t length) {
        Receive(client, [&](Receiver& receiver) {
          if (receiver.answer != nullptr) {
            receiver.answer->assign(text, static_cast<std::size_t>(length));
          }
        });
      },
      [](void* client, std::int32_t code, char const* message, std::int64_t offset, std::int64_t line) {
        Receive(client, [&](Receiver& receiver) {
          if (!receiver.error) {
            receiver.error.emplace(code, TextOf(message), offset, line);
          }
        });
      }};
  return &procs;
}

}  // namespace senmark::detail
