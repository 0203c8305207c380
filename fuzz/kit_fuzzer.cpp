/// Drives the kit for module writers as a converter does, by a script of bytes, over the tables that the library hands
/// to modules. What the kit refuses is what a plain reading of its promises says, and nothing else; a file that it
/// finished opens, and each sample comes back, in order and within the resolution that was stated. What was written
/// before a conversion began anew does not.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "ByteScript.h"
#include "FuzzCheck.h"
#include "FuzzFolder.h"
#include "HostTables.h"
#include "senmark/Host.h"
#include "senmark/Module.h"

namespace {

namespace kit = senmark::kit;
using senmark_fuzz::ByteScript;
using senmark_fuzz::Require;

constexpr std::size_t kLargestScript = 8 * 1024;
constexpr std::size_t kMostGroups = 96;
constexpr std::size_t kMostStreams = 16;
constexpr std::size_t kMostValues = 64;
constexpr char kFile[] = "kit.tdjson";

/// Whether the kit refuses the call.
template <typename Call>
bool IsRefused(Call&& call) {
  try {
    call();
    return false;
  } catch (kit::Failure const& failure) {
    Require(failure.code() == kit::Failure::kRefused);
    return true;
  }
}

bool CanStand(double number) {
  return std::isfinite(number) && std::fabs(number) < kit::kNumberLimit;
}

/// Whether a number read from the file is the given one, as far as the format says.
bool Agree(double given, double read, unsigned decimals) {
  double allowed = 0.5 * std::pow(10.0, -static_cast<double>(std::min(decimals, 15U)));
  if (std::fabs(given) < kit::kSmallestNumber) {
    allowed = std::max(allowed, kit::kSmallestNumber / 2);
  }
  double const sixteenth = given == 0 ? 0 : std::pow(10.0, std::floor(std::log10(std::fabs(given))) - 15);
  // Both ends of the way are doubles.
  double const asDoubles = std::fabs(given) * 2 * std::numeric_limits<double>::epsilon();
  return std::fabs(given - read) <= std::max(allowed, sixteenth) + asDoubles;
}

/// A time for both kinds of files; one of the two is what the file has.
struct Time {
  kit::Frame frame;
  kit::Instant instant;
  bool isFrame;
};

/// Where the time of a sample lies, in frames or in units of the last digit.
using Place = std::pair<std::int64_t, std::int64_t>;

struct Expected {
  Place place;
  std::vector<double> numbers;
  std::string text;
};

enum eKind { kNumbers, kArrays, kTexts };

struct StreamCase {
  eKind kind = kNumbers;
  kit::StreamFormat format;
  std::size_t elements = 1;
  kit::NumberStream* number = nullptr;
  kit::ArrayStream* array = nullptr;
  kit::TextStream* text = nullptr;
  bool isFinished = false;
  std::vector<Expected> samples;

  kit::Stream& Stream() const {
    return kind == kNumbers  ? static_cast<kit::Stream&>(*number)
           : kind == kArrays ? static_cast<kit::Stream&>(*array)
                             : static_cast<kit::Stream&>(*text);
  }
};

struct ValueCase {
  double number;
  unsigned decimals;
};

/// A run of one script.
class Conversion {
 public:
  Conversion(ByteScript& script, SK_PLUGIN::HostAPI const& tables, std::string const& path)
      : mScript(script), mOutput(tables, path, MemoryOf(script)) {
    mGroups.push_back({&mOutput.top(), 0});
  }

  /// Whether a file was finished. Not after a refusal, which ends a conversion or has it begin anew.
  bool Run() {
    if (!ChooseTimeBase()) {
      return false;
    }
    while (mScript.HasMore()) {
      if (!Step() && (!mScript.HasMore() || mScript.Below(2) == 0 || !BeginAnew())) {
        return false;
      }
    }
    bool const isRefused = IsRefused([&] { mOutput.finish(); });
    Require(isRefused == (!mHasContent || mHasBadFrame));
    return !isRefused;
  }

  /// Whether a reader's arithmetic is exact for all times of the file.
  bool HasExactTimes() const { return mHasExactTimes; }
  std::map<std::string, StreamCase> const& Streams() const { return mStreams; }
  std::map<std::string, ValueCase> const& Values() const { return mValues; }

 private:
  struct GroupCase {
    kit::Group* group;
    unsigned depth;
  };

  static std::size_t MemoryOf(ByteScript& script) {
    static constexpr std::size_t kSizes[] = {0, 100, 1000, 20000, kit::Output::kSortMemory};
    return kSizes[script.Below(std::size(kSizes))];
  }

  std::string Text() {
    std::string storage;
    char const* const text = mScript.Text(storage);
    return text == nullptr ? std::string() : std::string(text);
  }

  /// A name that no other node of the file shows.
  std::string Name() { return Text() + " #" + std::to_string(++mNames); }

  kit::NumberFormat Format() {
    kit::NumberFormat format;
    format.decimals = static_cast<unsigned>(mScript.Below(18));
    format.keepsGaps = mScript.Below(2) != 0;
    format.unit = mScript.Below(4) == 0 ? "m/s" : "";
    return format;
  }

  /// Nothing of what was said so far counts any more, names included. False when the new begin was refused.
  bool BeginAnew() {
    mOutput.restart();
    mGroups = {{&mOutput.top(), 0}};
    mOrder.clear();
    mStreams.clear();
    mValues.clear();
    mBase.reset();
    mHasExactTimes = true;
    mHasContent = false;
    mHasBadFrame = false;
    mNames = 0;
    return ChooseTimeBase();
  }

  bool ChooseTimeBase() {
    if (mScript.Below(2) == 0) {
      auto const digits = static_cast<unsigned>(mScript.Below(11));
      bool const isRefused = IsRefused([&] { mBase = kit::TimeBase::gmt(digits); });
      Require(isRefused == (digits < 1 || digits > 9));
      mHasExactTimes = digits <= 4;
    } else {
      static constexpr unsigned kRates[][2] = {
          {25, 1}, {30000, 1001}, {60000, 1001}, {24000, 1001}, {1000, 1}, {1, 2},       {50, 2},
          {1, 3},  {1001, 1},     {0, 1},        {25, 0},       {119, 1},  {12345, 100}, {4294967295U, 4294967295U}};
      auto const& rate = kRates[mScript.Below(std::size(kRates))];
      bool const drops = mScript.Below(4) == 0;
      double const perSecond = rate[1] == 0 ? 0 : static_cast<double>(rate[0]) / rate[1];
      bool const mayDrop = rate[1] == 1001 && rate[0] != 24000;
      bool const isRefused = IsRefused([&] { mBase = kit::TimeBase::frames(rate[0], rate[1], drops); });
      Require(isRefused == (perSecond < 0.5 || perSecond > 1000 || (drops && !mayDrop)));
    }
    if (!mBase) {
      return false;
    }
    // Without a time base there are no streams.
    mHasBase = mScript.Below(16) != 0;
    if (mHasBase) {
      mOutput.setTimeBase(*mBase);
    }
    mStart = static_cast<std::int64_t>(mScript.Word()) - 1000000000;
    return true;
  }

  /// False when the conversion was refused.
  bool Step() {
    switch (mScript.Below(12)) {
      case 0:
        return AddGroup();
      case 1:
        return AddNumber();
      case 2:
        return AddNumbers();
      case 3: {
        std::string const text = Text();
        AnyGroup().group->text(Name(), text);
        mHasContent = mHasContent || !text.empty();
        return true;
      }
      case 4:
        AnyGroup().group->flag(Name(), mScript.Below(2) != 0);
        mHasContent = true;
        return true;
      case 5:
        return AddStream();
      case 6:
        return FinishStream();
      default:
        return AddSample();
    }
  }

  GroupCase& AnyGroup() { return mGroups[mScript.Below(mGroups.size())]; }

  bool AddGroup() {
    if (mGroups.size() == kMostGroups) {
      return true;
    }
    // The last one more often, so that some are deep.
    GroupCase const parent = mScript.Below(2) == 0 ? AnyGroup() : mGroups.back();
    kit::Group* made = nullptr;
    bool const isRefused = IsRefused([&] { made = &parent.group->group(Name()); });
    Require(isRefused == (parent.depth == kit::Group::kDeepest));
    if (!isRefused) {
      mGroups.push_back({made, parent.depth + 1});
    }
    return !isRefused;
  }

  bool AddNumber() {
    if (mValues.size() == kMostValues) {
      return true;
    }
    kit::Group& group = *AnyGroup().group;
    kit::NumberFormat const format = Format();
    std::string const name = Name();
    double const number = mScript.Number();
    bool const isGap = format.keepsGaps && !std::isfinite(number);
    bool const isRefused = IsRefused([&] { group.number(name, number, format); });
    Require(isRefused == (!isGap && !CanStand(number)));
    if (!isRefused && !isGap) {
      mHasContent = true;
      mValues[kit::WithUnit(name, format.unit)] = {number, format.decimals};
    }
    return !isRefused;
  }

  bool AddNumbers() {
    kit::Group& group = *AnyGroup().group;
    unsigned const depth = mGroups[0].group == &group ? 0 : DepthOf(group);
    kit::NumberFormat const format = Format();
    std::vector<double> numbers(mScript.Below(6));
    for (double& number : numbers) {
      number = mScript.Number();
    }
    std::vector<std::string> names(mScript.Below(2) == 0 ? 0 : mScript.Below(6));
    for (std::string& name : names) {
      name = Text();
    }
    bool const keepsGaps = format.keepsGaps;
    auto const isBad = [&](double number) { return !CanStand(number) && !(keepsGaps && !std::isfinite(number)); };
    auto const isGap = [&](double number) { return keepsGaps && !std::isfinite(number); };
    bool const isOfWrongSize = numbers.empty() || (!names.empty() && names.size() != numbers.size());
    bool const isGroup = numbers.size() > 3;
    // The first that is a gap ends the array, whatever comes behind it.
    auto const firstGap = isGroup ? numbers.end() : std::find_if(numbers.begin(), numbers.end(), isGap);
    bool const wanted =
        isOfWrongSize || (isGroup && depth == kit::Group::kDeepest) || std::any_of(numbers.begin(), firstGap, isBad);
    bool const isRefused = IsRefused([&] { group.numbers(Name(), numbers, format, names, mScript.Below(2) != 0); });
    Require(isRefused == wanted);
    bool const isThere = isGroup ? !std::all_of(numbers.begin(), numbers.end(), isGap) : firstGap == numbers.end();
    mHasContent = mHasContent || isThere;
    return !isRefused;
  }

  unsigned DepthOf(kit::Group const& group) const {
    return std::find_if(mGroups.begin(), mGroups.end(), [&](GroupCase const& other) { return other.group == &group; })
        ->depth;
  }

  bool AddStream() {
    if (mStreams.size() == kMostStreams) {
      return true;
    }
    kit::Group& group = *AnyGroup().group;
    StreamCase made;
    static_cast<kit::NumberFormat&>(made.format) = Format();
    made.format.order = mScript.Below(3) == 0 ? kit::eOrder::kAsGiven : kit::eOrder::kSorted;
    made.format.holds = mScript.Below(2) != 0;
    made.format.isPoint = mScript.Below(2) != 0;
    made.format.marksEvents = mScript.Below(2) != 0;
    made.kind = static_cast<eKind>(mScript.Below(3));
    std::string const name = Name();
    std::vector<std::string> elements(made.kind == kArrays ? mScript.Below(5) : 1);
    for (std::string& element : elements) {
      element = Text();
    }
    made.elements = elements.size();
    bool const isRefused = IsRefused([&] {
      if (made.kind == kNumbers) {
        made.number = &group.numberStream(name, made.format);
      } else if (made.kind == kArrays) {
        made.array = &group.arrayStream(name, elements, made.format);
      } else {
        made.text = &group.textStream(name, made.format);
      }
    });
    Require(isRefused == (!mHasBase || elements.empty() || elements.size() > 3));
    if (!isRefused) {
      mOrder.push_back(kit::WithUnit(name, made.format.unit));
      mStreams[mOrder.back()] = made;
    }
    return !isRefused;
  }

  bool FinishStream() {
    if (mOrder.empty()) {
      return true;
    }
    StreamCase& stream = mStreams[mOrder[mScript.Below(mOrder.size())]];
    if (stream.isFinished && mScript.Below(2) == 0) {
      return BeginAnew();
    }
    bool const isBad =
        !stream.isFinished && std::any_of(stream.samples.begin(), stream.samples.end(),
                                          [&](Expected const& sample) { return IsBadFrame(sample.place); });
    stream.isFinished = true;
    bool const isRefused = IsRefused([&] { stream.Stream().finish(); });
    Require(isRefused == isBad);
    return !isRefused;
  }

  /// Frames within a day.
  bool IsBadFrame(Place const& place) const {
    if (mBase->isGmt()) {
      return false;
    }
    std::int64_t const rate = mBase->nominalRate();
    // Of each hour, 54 minutes leave numbers out.
    std::int64_t const leftOut = mBase->dropsFrames() ? rate / 15 * 54 * 24 : 0;
    return place.first < 0 || place.first >= rate * 86400 - leftOut;
  }

  Time AnyTime() {
    Time time{};
    time.isFrame = mBase->isGmt() == (mScript.Below(64) == 0);
    std::size_t const choice = mScript.Below(8);
    if (choice == 0) {
      mHasExactTimes = false;
      time.frame.number = static_cast<std::int64_t>(std::uint64_t{mScript.Word()} << 32U | mScript.Word());
      time.instant.seconds = time.frame.number >> mScript.Below(64);
      time.instant.nanoseconds = static_cast<std::int32_t>(mScript.Word() % 1000000000);
    } else {
      // Near enough to each other that a reader is exact.
      std::int64_t const step = choice < 6 ? mScript.Byte() : static_cast<std::int64_t>(mScript.Word() % 100000);
      time.frame.number = step;
      time.instant.seconds = mStart + step / 10;
      time.instant.nanoseconds = static_cast<std::int32_t>(step % 10 * 100000000 + (choice == 1 ? mScript.Byte() : 0));
    }
    return time;
  }

  /// Where the file has a time; none if it cannot have it.
  std::optional<Place> PlaceOf(Time const& time) const {
    if (time.isFrame == mBase->isGmt()) {
      return std::nullopt;
    }
    if (time.isFrame) {
      return Place(time.frame.number, 0);
    }
    std::int64_t perSecond = 1;
    for (unsigned digit = 0; digit != mBase->digits(); ++digit) {
      perSecond *= 10;
    }
    std::int64_t const unit = 1000000000 / perSecond;
    std::int64_t const fraction = (time.instant.nanoseconds + unit / 2) / unit;
    Place const place(time.instant.seconds + fraction / perSecond, fraction % perSecond);
    // The years 1000 to 9999.
    return place.first >= -30610224000 && place.first <= 253402300799 ? std::optional(place) : std::nullopt;
  }

  bool AddSample() {
    if (mOrder.empty()) {
      return AddStream();
    }
    StreamCase& stream = mStreams[mOrder[mScript.Below(mOrder.size())]];
    Time const time = AnyTime();
    std::optional<Place> const place = PlaceOf(time);
    Expected sample;
    bool isGap = false;
    bool isBad = false;
    if (stream.kind == kTexts) {
      std::string const text = Text();
      isGap = text.empty() && stream.format.keepsGaps;
      sample.text = kit::SampleText(text);
      std::size_t size = sample.text.size();
      for (char const character : sample.text) {
        size += character == '\\' || static_cast<unsigned char>(character) < 0x20 ? 1 : 0;
      }
      isBad = text.empty() || size > 65535;
      mGiven = text;
    } else {
      // Now and then another number of elements than the stream has.
      bool const isOfWrongSize = stream.kind == kArrays && mScript.Below(64) == 0;
      sample.numbers.resize(stream.elements + (isOfWrongSize ? 1 : 0));
      for (double& number : sample.numbers) {
        number = mScript.Number();
      }
      auto const end = sample.numbers.end();
      auto const firstGap = std::find_if(sample.numbers.begin(), end, [&](double number) {
        return stream.format.keepsGaps && !std::isfinite(number);
      });
      isBad = isOfWrongSize ||
              std::any_of(sample.numbers.begin(), firstGap, [](double number) { return !CanStand(number); });
      isGap = !isBad && firstGap != end;
    }
    bool const isEarlier = stream.format.order == kit::eOrder::kAsGiven && place && !stream.samples.empty() &&
                           *place < stream.samples.back().place;
    bool const isGivenBadFrame = stream.format.order == kit::eOrder::kAsGiven && place && IsBadFrame(*place);
    // Worked out for all streams, a moment is looked at before what it is for.
    bool const isMoment = !time.isFrame && mBase->isGmt() && mScript.Below(2) != 0;
    bool const isRefused = IsRefused([&] { Add(stream, time, isMoment, sample); });
    bool const isBadSample = isBad || !place || stream.isFinished || isEarlier || isGivenBadFrame;
    Require(isRefused == ((isMoment && !place) || (!isGap && isBadSample)));
    if (!isRefused && !isGap) {
      sample.place = *place;
      mHasBadFrame = mHasBadFrame || IsBadFrame(*place);
      mHasContent = true;
      stream.samples.push_back(sample);
    }
    return !isRefused;
  }

  void Add(StreamCase& stream, Time const& time, bool isMoment, Expected const& sample) {
    if (time.isFrame) {
      AddAt(stream, time.frame, sample);
    } else if (isMoment) {
      AddAt(stream, mOutput.moment(time.instant), sample);
    } else {
      AddAt(stream, time.instant, sample);
    }
  }

  template <typename When>
  void AddAt(StreamCase& stream, When const& time, Expected const& sample) {
    if (stream.kind == kNumbers) {
      stream.number->add(time, sample.numbers[0]);
    } else if (stream.kind == kArrays) {
      stream.array->add(time, sample.numbers);
    } else {
      stream.text->add(time, mGiven);
    }
  }

  ByteScript& mScript;
  kit::Output mOutput;
  std::optional<kit::TimeBase> mBase;
  bool mHasBase = false;
  bool mHasExactTimes = true;
  bool mHasContent = false;
  bool mHasBadFrame = false;
  std::int64_t mStart = 0;  ///< seconds near which most moments lie
  unsigned mNames = 0;
  std::string mGiven;  ///< text of the sample
  std::vector<GroupCase> mGroups;
  std::vector<std::string> mOrder;             ///< names of the streams as they were made
  std::map<std::string, StreamCase> mStreams;  ///< by what they show
  std::map<std::string, ValueCase> mValues;    ///< by what they show
};

void CheckSample(StreamCase const& stream, Expected const& wanted, senmark::Value const& read) {
  if (stream.kind == kTexts) {
    Require(std::get<std::string>(read) == wanted.text);
  } else if (stream.kind == kNumbers) {
    Require(Agree(wanted.numbers[0], std::get<double>(read), stream.format.decimals));
  } else {
    auto const& numbers = std::get<std::vector<double>>(read);
    Require(numbers.size() == wanted.numbers.size());
    for (std::size_t i = 0; i != numbers.size(); ++i) {
      Require(Agree(wanted.numbers[i], numbers[i], stream.format.decimals));
    }
  }
}

void CheckStream(senmark::File const& file, senmark::Node const& node, StreamCase const& stream, bool hasExactTimes) {
  Require(node.dynamic->sampleCount == stream.samples.size());
  if (!hasExactTimes) {
    return;
  }
  std::vector<Expected> wanted = stream.samples;
  std::stable_sort(wanted.begin(), wanted.end(),
                   [](Expected const& left, Expected const& right) { return left.place < right.place; });
  std::vector<senmark::Sample> const samples = file.samples(node.dynamic->sampleSetId).all().collect();
  Require(samples.size() == wanted.size());
  for (std::size_t i = 0; i != samples.size(); ++i) {
    Require(i == 0 || samples[i - 1].time.seconds() <= samples[i].time.seconds());
    CheckSample(stream, wanted[i], samples[i].value);
  }
}

void CheckFile(std::string const& path, Conversion const& conversion) {
  static senmark::Senmark const library(senmark::Library::Linked());
  senmark::File const file = library.open(path);
  std::size_t streams = 0;
  std::size_t values = 0;
  file.walk([&](senmark::Node const& node, int) {
    auto const stream = conversion.Streams().find(node.displayName);
    auto const value = conversion.Values().find(node.displayName);
    if (node.dynamic) {
      Require(stream != conversion.Streams().end());
      CheckStream(file, node, stream->second, conversion.HasExactTimes());
      ++streams;
    } else if (value != conversion.Values().end()) {
      Require(Agree(value->second.number, std::get<double>(node.fixed->value), value->second.decimals));
      ++values;
    }
  });
  auto const hasSamples = [](auto const& entry) { return !entry.second.samples.empty(); };
  Require(streams == static_cast<std::size_t>(
                         std::count_if(conversion.Streams().begin(), conversion.Streams().end(), hasSamples)));
  Require(values == conversion.Values().size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static senmark_fuzz::FuzzFolder folder;
  static senmark_test::HostTables const tables;
  folder.StartInput();
  if (size > kLargestScript) {
    return 0;
  }
  ByteScript script(data, size);
  std::string const path = folder.Path(kFile);
  {
    Conversion conversion(script, tables.Get(), path);
    if (conversion.Run()) {
      CheckFile(path, conversion);
    }
  }
  folder.Remove(kFile);
  folder.RequireNothingLeft({});
  return 0;
}
