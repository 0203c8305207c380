/// Streams of timed samples.
#pragma once

#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "senmark/ITdjsonDynamicDataNumArr_v1.h"
#include "senmark/ITdjsonDynamicDataNum_v1.h"
#include "senmark/ITdjsonDynamicDataString_v1.h"
#include "senmark/module/Names.h"
#include "senmark/module/Number.h"
#include "senmark/module/SampleSorter.h"
#include "senmark/module/Time.h"
#include "senmark/module/WriterCall.h"

namespace senmark::kit {

enum class eOrder : std::uint8_t {
  kSorted,   ///< samples come as they like and are put in order; those that do not fit in memory go to the disk
  kAsGiven,  ///< samples come in order and go straight to the writer; one that is earlier ends the conversion
};

/// How a converter states the samples of a stream.
struct StreamFormat : NumberFormat {
  eOrder order = eOrder::kSorted;
  bool holds = false;        ///< a value stays until the next one; else values in between are interpolated
  bool isPoint = false;      ///< the numbers of an array are the coordinates of one point
  bool marksEvents = false;  ///< each text marks an event
};

namespace detail {

/// What all streams of one file share.
struct StreamRoom {
  SK_PLUGIN::HostAPI const* api;
  void* key;  ///< of the conversion
  SortRoom sort;
  std::optional<TimeBase> timeBase;
};

/// A moment in the resolution of a file with moments in GMT.
inline SampleKey KeyOf(Instant const& instant, TimeBase const& base) {
  constexpr std::int64_t kSecond = 1000000000;
  std::int64_t const unit = base.fractionUnit();
  std::int64_t const rounded = instant.nanoseconds + unit / 2;
  // A second is whole units. 32 bits are divided in half the time.
  return rounded < kSecond
             ? SampleKey{instant.seconds, static_cast<std::int32_t>(rounded) / static_cast<std::int32_t>(unit)}
             : SampleKey{instant.seconds + 1, 0};
}

/// Years have four digits.
inline bool CanBeWritten(SampleKey const& key) {
  return key.major >= kFirstWrittenSecond && key.major <= kLastSecond;
}

/// The time of a sample in the arguments of the writer.
struct ClockTime {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int fraction;
};

/// Turns keys into times of the writer. Samples of one day follow each other, so the date is kept.
class Clock {
 public:
  ClockTime at(SampleKey const& key) {
    if (key.major < mDayStart || key.major >= mDayStart + kDaySeconds) {
      CivilTime const date = MakeCivilTime(Instant{key.major, 0});
      mDayStart = key.major - (date.hour * 3600 + date.minute * 60 + date.second);
      mDate = {date.year, date.month, date.day, 0, 0, 0, 0};
    }
    auto const second = static_cast<unsigned>(key.major - mDayStart);
    unsigned const minute = second / 60;
    unsigned const hour = minute / 60;
    ClockTime time = mDate;
    time.hour = static_cast<int>(hour);
    time.minute = static_cast<int>(minute - hour * 60);
    time.second = static_cast<int>(second - minute * 60);
    time.fraction = key.minor;
    return time;
  }

 private:
  std::int64_t mDayStart = std::numeric_limits<std::int64_t>::max() - kDaySeconds;
  ClockTime mDate{};
};

}  // namespace detail

/// A moment as one file has it, from `Output::moment`: worked out once for the samples that many streams have at it.
class Moment {
 private:
  friend class Output;
  friend class Stream;

  friend class NumberStream;
  friend class TextStream;

  Moment(detail::SampleKey const& key, detail::ClockTime const& time) : mKey(key), mClockTime(time) {}

  detail::ClockTime const& clockTime() const { return mClockTime; }

  detail::SampleKey mKey;
  detail::ClockTime mClockTime;
};

/// One stream of samples. It belongs to the `Output`.
class Stream {
 public:
  virtual ~Stream() = default;
  Stream(Stream const&) = delete;
  Stream& operator=(Stream const&) = delete;

  /// Samples that were added, without gaps.
  std::uint64_t count() const { return mCount; }

  /// Writes the samples to the file now, which else happens when the converter has returned, and gives their memory
  /// free; for files with very many streams. No further sample can be added.
  void finish() {
    if (mIsFinished) {
      return;
    }
    mIsFinished = true;
    mPassesOn = false;
    mSorter.drain([this](detail::SampleKey const& key, std::string_view payload) { Pass(key, payload); });
    if (mCount != 0) {
      detail::CallWriter("write samples", [this](void* result) { Node()->commit(result); });
    }
  }

 protected:
  Stream(detail::StreamRoom& room, StreamFormat format, std::string const& displayName)
      : mFormat(std::move(format)),
        mName(displayName),
        mBase(*room.timeBase),
        mSorter(room.sort),
        mTimeCodes(mBase),
        mPassesOn(mFormat.order == eOrder::kAsGiven) {}

  StreamFormat const& Format() const { return mFormat; }
  std::string const& Name() const { return mName; }

  /// The key of a time of the file's kind, in the file's resolution.
  detail::SampleKey KeyOf(Frame frame) const {
    Require(!mBase.isGmt(), "a frame in a file with moments in GMT");
    return {frame.number, 0};
  }
  detail::SampleKey KeyOf(Instant const& instant) const {
    Require(mBase.isGmt(), "a moment in GMT in a file with time codes");
    detail::SampleKey const key = detail::KeyOf(instant, mBase);
    Require(detail::CanBeWritten(key), "a year that has not four digits");
    return key;
  }
  static detail::SampleKey const& KeyOf(Moment const& moment) { return moment.mKey; }

  /// Takes a sample that has been checked.
  void Add(detail::SampleKey const& key, std::string_view payload) {
    Add(key, payload, [&] { Pass(key, payload); });
  }
  /// pass: hands the sample to the writer, if that is to be done at once.
  template <typename PassNow>
  void Add(detail::SampleKey const& key, std::string_view payload, PassNow&& pass) {
    if (mPassesOn) {
      Require(!(key < mLast) || mCount == 0, "a sample that is earlier than the one before it");
      mLast = key;
      pass();
    } else {
      Require(!mIsFinished, "a sample behind the end of the stream");
      mSorter.add(key, payload);
    }
    ++mCount;
  }

  /// Hands a sample to the writer, in the arguments of a time code or of a moment.
  template <typename AddFrame, typename AddInstant>
  void PassTime(detail::SampleKey const& key, AddFrame&& addFrame, AddInstant&& addInstant) {
    Write([&](void* result) {
      return mBase.isGmt() ? addInstant(mClock.at(key), result) : addFrame(mTimeCodes.at({key.major}), result);
    });
  }
  /// call: the call of the writer, with the address of a result; gives whether the sample was taken.
  template <typename Call>
  void Write(Call&& call) {
    bool const isTaken = call(static_cast<void*>(&mResult));
    if (mResult.mErrorCode != ns_sensor::kNoError) {
      detail::ThrowReport("take a sample", std::exchange(mResult, {}));
    }
    Require(isTaken, "a sample that the writer does not take");
  }

  void Require(bool holds, char const* otherwise) const {
    if (!holds) {
      Refuse(otherwise);
    }
  }

 private:
  friend class Output;
  friend class Group;

  [[noreturn]] void Refuse(char const* reason) const { throw Refused(mName + ": " + reason); }
  virtual void Pass(detail::SampleKey const& key, std::string_view payload) = 0;
  virtual SK_PLUGIN::ITdjsonDynamicData_v1* Node() const = 0;

  StreamFormat mFormat;
  std::string mName;
  TimeBase mBase;
  detail::SampleSorter mSorter;
  detail::SampleKey mLast;
  detail::Clock mClock;
  detail::TimeCodes mTimeCodes;
  SK_PLUGIN::SK_PluginResult mResult;  ///< without an error between the calls, so that none has to begin it anew
  std::uint64_t mCount = 0;
  bool mIsFinished = false;
  bool mPassesOn;  ///< samples go straight to the writer, as long as they come
};

namespace detail {

constexpr unsigned long long kCountAutomatic = std::numeric_limits<unsigned long long>::max();
constexpr double kMinimumAutomatic = std::numeric_limits<double>::max();
constexpr double kMaximumAutomatic = std::numeric_limits<double>::lowest();

/// Digits, sign and ranges as the numbers have them.
template <typename Node>
void SetAutomaticNumbers(Node& node, std::size_t elements) {
  CallWriter("set digits", [&](void* result) { node.setNumberPattern(kCountAutomatic, kCountAutomatic, 0, result); });
  for (std::size_t element = 0; element != elements; ++element) {
    CallWriter("set a range", [&](void* result) {
      node.setNumberRange(kMinimumAutomatic, kMaximumAutomatic, kMinimumAutomatic, kMaximumAutomatic, result);
    });
  }
}

template <typename Node>
void SetInfo(Node& node, StreamFormat const& format, std::string const& displayName, std::string const& matchName) {
  CallWriter("name a stream", [&](void* result) {
    node.setDynamicDataInfo(displayName.c_str(), matchName.c_str(), matchName.c_str(), 0, format.holds ? 2 : 1, 0, "",
                            result);
  });
}

inline std::string_view BytesOf(double const* numbers, std::size_t count) {
  return {reinterpret_cast<char const*>(numbers), count * sizeof(double)};
}

}  // namespace detail

/// A stream of numbers.
class NumberStream : public Stream {
 public:
  /// `time` is a `Frame` or an `Instant`, as the file has them. Errors: `Failure` with code 1507 for what cannot be
  /// read back (see `Rounded`; a gap if the format keeps gaps), a time of the other kind, or one out of order.
  template <typename Time>
  void add(Time const& time, double value) {
    if (!std::isfinite(value) && Format().keepsGaps) {
      return;
    }
    AddRounded(time, Rounded(value, Format().decimals));
  }
  /// The same of a number whose digits are at hand.
  template <typename Time>
  void add(Time const& time, Decimal const& number) {
    AddRounded(time, Rounded(number, Format().decimals));
  }

 private:
  friend class Group;

  NumberStream(detail::StreamRoom& room, StreamFormat const& format, std::string const& displayName,
               std::string const& matchName)
      : Stream(room, format, displayName),
        mNode(detail::Make<SK_PLUGIN::ITdjsonDynamicDataNum_v1>("make a stream", [&](void** node, void* result) {
          room.api->mTdjsonWriterAPI->Static_CreateDynamicDataNum(room.key, node, 1, result);
        })) {
    detail::SetInfo(*mNode.get(), Format(), displayName, matchName);
    detail::SetAutomaticNumbers(*mNode.get(), 1);
  }

  template <typename Time>
  void AddRounded(Time const& time, double value) {
    detail::SampleKey const& key = KeyOf(time);
    std::string_view const payload = detail::BytesOf(&value, 1);
    if constexpr (std::is_same_v<Time, Moment>) {
      Add(key, payload, [&] { Write([&](void* result) { return AddTo(time.clockTime(), value, result); }); });
    } else {
      Add(key, payload);
    }
  }

  void Pass(detail::SampleKey const& key, std::string_view payload) override {
    double value = 0;
    std::memcpy(&value, payload.data(), sizeof(value));
    PassTime(
        key,
        [&](TimeCode const& time, void* result) {
          return mNode->addSampleSMPTE(time.hours, time.minutes, time.seconds, time.frames, value, result);
        },
        [&](detail::ClockTime const& time, void* result) { return AddTo(time, value, result); });
  }
  bool AddTo(detail::ClockTime const& time, double value, void* result) const {
    return mNode->addSampleUTC(time.year, time.month, time.day, time.hour, time.minute, time.second, 'Z', 0, 0,
                               time.fraction, value, result);
  }
  SK_PLUGIN::ITdjsonDynamicData_v1* Node() const override { return mNode.get(); }

  detail::Held<SK_PLUGIN::ITdjsonDynamicDataNum_v1> mNode;
};

/// A stream of arrays of one to three numbers.
class ArrayStream : public Stream {
 public:
  /// values  as many as the stream has elements. Otherwise as `NumberStream::add`; one element that is no number makes
  ///         a gap of the whole array.
  template <typename Time>
  void add(Time const& time, std::vector<double> const& values) {
    add(time, values.data(), values.size());
  }
  template <typename Time>
  void add(Time const& time, double const* values, std::size_t count) {
    Require(count == mElements, "another number of elements than the stream has");
    std::array<double, 3> rounded{};
    for (std::size_t i = 0; i != count; ++i) {
      if (!std::isfinite(values[i]) && Format().keepsGaps) {
        return;
      }
      rounded[i] = Rounded(values[i], Format().decimals);
    }
    detail::SampleKey const key = KeyOf(time);
    Add(key, detail::BytesOf(rounded.data(), count), [&] { PassRounded(key, rounded); });
  }

 private:
  friend class Group;

  ArrayStream(detail::StreamRoom& room, StreamFormat const& format, std::string const& displayName,
              std::string const& matchName, std::vector<std::string> const& elementNames)
      : Stream(room, format, displayName),
        mNode(detail::Make<SK_PLUGIN::ITdjsonDynamicDataNumArr_v1>(
            "make a stream",
            [&](void** node, void* result) {
              room.api->mTdjsonWriterAPI->Static_CreateDynamicDataNumArr(room.key, node, 1, result);
            })),
        mElements(elementNames.size()) {
    detail::SetInfo(*mNode.get(), Format(), displayName, matchName);
    detail::CallWriter("set elements", [&](void* result) { mNode->setArrCount(mElements, result); });
    detail::CallWriter("set elements", [&](void* result) { mNode->setIsPoint(format.isPoint ? 1 : 0, result); });
    for (std::string const& name : elementNames) {
      detail::CallWriter("name an element", [&](void* result) { mNode->setDisplayName(name.c_str(), result); });
    }
    detail::SetAutomaticNumbers(*mNode.get(), mElements);
  }

  void Pass(detail::SampleKey const& key, std::string_view payload) override {
    std::array<double, 3> rounded{};
    std::memcpy(rounded.data(), payload.data(), payload.size());
    PassRounded(key, rounded);
  }
  void PassRounded(detail::SampleKey const& key, std::array<double, 3> const& rounded) {
    for (std::size_t i = 0; i != mElements; ++i) {
      Require(
          detail::CallWriter("take an element", [&](void* result) { return mNode->addElement(rounded[i], result); }),
          "an element that the writer does not take");
    }
    PassTime(
        key,
        [&](TimeCode const& time, void* result) {
          return mNode->addTimeSMPTE(time.hours, time.minutes, time.seconds, time.frames, result);
        },
        [&](detail::ClockTime const& time, void* result) {
          return mNode->addTimeUTC(time.year, time.month, time.day, time.hour, time.minute, time.second, 'Z', 0, 0,
                                   time.fraction, result);
        });
  }
  SK_PLUGIN::ITdjsonDynamicData_v1* Node() const override { return mNode.get(); }

  detail::Held<SK_PLUGIN::ITdjsonDynamicDataNumArr_v1> mNode;
  std::size_t mElements;
};

/// A stream of texts.
class TextStream : public Stream {
 public:
  /// text  UTF-8; it is kept as `SampleText` gives it. Otherwise as `NumberStream::add`; an empty text is
  ///       what NaN is there. Errors: also `Failure` with code 1507 for more than 65,535 bytes as the file holds them,
  ///       where backslashes and ends of lines take two each.
  template <typename Time>
  void add(Time const& time, std::string_view text) {
    if (text.empty() && Format().keepsGaps) {
      return;
    }
    Require(!text.empty(), "an empty text");
    char plain[detail::kShortText + sizeof(std::uint64_t)];
    std::string_view clean;
    if (text.size() <= detail::kShortText && detail::CopyPlain(text, plain)) {
      plain[text.size()] = '\0';
      clean = std::string_view(plain, text.size());
    } else {
      // Kept from text to text, so that its memory is.
      mClean.clear();
      detail::AppendSampleText(text, mClean);
      Require(mClean.size() <= kLongest / 2 || EscapedSize(mClean) <= kLongest, "a text of more than 65535 bytes");
      clean = mClean;
    }
    detail::SampleKey const key = KeyOf(time);
    if constexpr (std::is_same_v<Time, Moment>) {
      // The writer wants a NUL behind it, which both have.
      Add(key, clean, [&] { Write([&](void* result) { return AddTo(time.clockTime(), clean.data(), result); }); });
    } else {
      Add(key, clean);
    }
  }

 private:
  friend class Group;

  /// The writer keeps the length of a text in 16 bits.
  static constexpr std::size_t kLongest = 65535;

  TextStream(detail::StreamRoom& room, StreamFormat const& format, std::string const& displayName,
             std::string const& matchName)
      : Stream(room, format, displayName),
        mNode(detail::Make<SK_PLUGIN::ITdjsonDynamicDataString_v1>("make a stream", [&](void** node, void* result) {
          room.api->mTdjsonWriterAPI->Static_CreateDynamicDataString(room.key, node, 1, result);
        })) {
    detail::SetInfo(*mNode.get(), Format(), displayName, matchName);
    detail::CallWriter("set lengths",
                       [&](void* result) { mNode->setStringProperties(0, 0, format.marksEvents ? 1 : 0, result); });
  }

  /// Bytes of a clean text as the file holds it: with a backslash before backslashes and what controls.
  static std::size_t EscapedSize(std::string_view text) {
    std::size_t size = text.size();
    for (char const character : text) {
      size += character == '\\' || static_cast<unsigned char>(character) < 0x20 ? 1 : 0;
    }
    return size;
  }

  void Pass(detail::SampleKey const& key, std::string_view payload) override {
    // The writer wants a NUL behind it.
    mPassed.assign(payload);
    PassTime(
        key,
        [&](TimeCode const& time, void* result) {
          return mNode->addSampleSMPTE(time.hours, time.minutes, time.seconds, time.frames, mPassed.c_str(), result);
        },
        [&](detail::ClockTime const& time, void* result) { return AddTo(time, mPassed.c_str(), result); });
  }
  bool AddTo(detail::ClockTime const& time, char const* text, void* result) const {
    return mNode->addSampleUTC(time.year, time.month, time.day, time.hour, time.minute, time.second, 'Z', 0, 0,
                               time.fraction, text, result);
  }
  SK_PLUGIN::ITdjsonDynamicData_v1* Node() const override { return mNode.get(); }

  detail::Held<SK_PLUGIN::ITdjsonDynamicDataString_v1> mNode;
  std::string mClean;
  std::string mPassed;
};

}  // namespace senmark::kit
