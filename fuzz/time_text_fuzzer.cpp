// Time texts in a format of the input's choice. The input is: a letter for the notation (s for time codes, u for
// dates, any other for neither), the frame rate's value or the precision in four bytes and its scale in four more,
// the lowest byte first, and one for drop frame counting or GMT; then one line each for the text of the base time,
// a text, and another text. What lies behind is a sample.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "FuzzCheck.h"
#include "SK_DynamicSampleInfo.h"
#include "SK_RelativeTimeReader.h"
#include "SK_TimeUtils.h"
#include "SK_Utils.h"

namespace {

using namespace SK_NAMESPACE_INT;
using senmark_fuzz::Require;

/// Bytes that are taken off the front of the input, 0 behind its end.
class Input {
 public:
  Input(std::uint8_t const* data, std::size_t size) : mBytes(reinterpret_cast<char const*>(data), size) {}

  std::uint32_t TakeNumber(std::size_t bytes) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < bytes && !mBytes.empty(); ++i, mBytes.remove_prefix(1)) {
      number |= std::uint32_t{static_cast<unsigned char>(mBytes[0])} << (8 * i);
    }
    return number;
  }

  /// A line in storage of exactly its size.
  std::vector<char> TakeLine() {
    std::string_view const line = mBytes.substr(0, mBytes.find('\n'));
    mBytes.remove_prefix(std::min(mBytes.size(), line.size() + 1));
    return {line.begin(), line.end()};
  }

  std::vector<char> TakeRest() const { return {mBytes.begin(), mBytes.end()}; }

 private:
  std::string_view mBytes;
};

std::string_view View(std::vector<char> const& text) {
  return {text.data(), text.size()};
}

/// What a step led to: 0, or which of the exceptions that texts may raise.
template <typename Step>
int Outcome(Step step) {
  try {
    step();
  } catch (std::invalid_argument const&) {
    return 1;
  } catch (std::out_of_range const&) {
    return 2;
  }
  return 0;
}

/// The base time becomes that of a text, as it does when a file is opened.
SK_TimeFormat TakeFormat(Input& input) {
  SK_TimeFormat format;
  std::uint32_t const notation = input.TakeNumber(1);
  std::uint32_t const value = input.TakeNumber(4);
  std::uint32_t const scale = input.TakeNumber(4);
  auto const flag = static_cast<std::uint8_t>(input.TakeNumber(1));
  std::vector<char> const base = input.TakeLine();
  Outcome([&] {
    if (notation == 's') {
      format.SetSMPTEInfo(SK_Time{static_cast<std::int32_t>(value), scale}, flag);
      SK_Time time;
      SK_TimeUtils::ConvertSMPTETimeToSKTime(View(base), format.GetSMPTEInfo(), time);
      format.SetSMPTEBaseTime(time);
    } else if (notation == 'u') {
      format.SetUTCInfo(static_cast<std::uint16_t>(value), flag);
      SK_DateTime date;
      SK_TimeUtils::ParseUTCDateTime(View(base), format.GetUTCInfo().precisionLength, date);
      format.SetUTCBaseTime(date);
    }
  });
  return format;
}

/// The quick way and the general one agree, and the time can be written again.
void CheckConversion(SK_RelativeTimeReader& reader, std::string_view text, SK_TimeFormat const& format) {
  SK_Time expected;
  SK_Time actual;
  int const general = Outcome([&] { SK_Utils::ConvertTimeStrToRelativeSKTime(text, expected, format); });
  int const quick = Outcome([&] { reader.Read(text, actual); });
  Require(quick == general);
  if (general != 0) return;
  Require(actual.value == expected.value && actual.scale == expected.scale);
  std::string written;
  SK_Utils::ConvertSKTimeToRelativeStr(expected, written, format);
  if (format.IsTimeFormatSMPTE()) Require(written.size() <= 12 && written.empty() == (expected.value < 0));
  Outcome([&] { reader.Read(written, actual); });
}

void CheckOrder(std::string_view left, std::string_view right, SK_TimeFormat const& format) {
  int order = 0;
  int reverse = 0;
  int const there = Outcome([&] { order = SK_Utils::CompareTimeStrings(left, right, format); });
  int const back = Outcome([&] { reverse = SK_Utils::CompareTimeStrings(right, left, format); });
  Require((there == 0) == (back == 0));
  Require((order < 0) == (reverse > 0) && (order > 0) == (reverse < 0));
  Outcome([&] { Require(SK_Utils::CompareTimeStrings(left, left, format) == 0); });
}

void CheckSample(std::vector<char> const& sample, std::uint64_t width) {
  char const* const begin = sample.data();
  char const* const end = begin + sample.size();
  for (std::uint8_t kind = 0; kind <= kNoSampleSet; ++kind) {
    SK_DynamicSampleInfo info(nullptr);
    info.mValueKind = kind;
    info.mNumberLength = info.mMaxLength = width;
    info.mArraySize = info.mMaxDigits = sample.size() % 4;
    char const* const time = SK_Utils::GetTimeValueOffset(info, begin, end);
    if (time != nullptr) Require(time >= begin && time < end && *time >= '0' && *time <= '9');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  Input input(data, size);
  SK_TimeFormat const format = TakeFormat(input);
  std::array<std::vector<char>, 2> const texts = {input.TakeLine(), input.TakeLine()};
  SK_RelativeTimeReader reader(format);
  for (std::vector<char> const& text : texts) CheckConversion(reader, View(text), format);
  CheckOrder(View(texts[0]), View(texts[1]), format);
  CheckSample(input.TakeRest(), texts[0].size());
  return 0;
}
