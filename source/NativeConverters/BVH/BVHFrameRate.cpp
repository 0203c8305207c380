#include "BVHFrameRate.h"

#include <cmath>
#include <cstdint>

namespace ns_sensor {
namespace {

constexpr double kNtscRate = 29.97;
constexpr double kDoubleNtscRate = 59.94;

struct NamedRate {
  double hundredths;  ///< whole hundredths of frames per second
  double rate;
};

constexpr NamedRate kNamedRates[] = {
    {2400, 24}, {2500, 25}, {2997, kNtscRate}, {3000, 30}, {5000, 50}, {5994, kDoubleNtscRate}, {6000, 60},
};

/// Frame numbers that a minute leaves out.
std::int32_t DroppedFrames(double rate) {
  if (rate == kNtscRate) {
    return 2;
  }
  return rate == kDoubleNtscRate ? 4 : 0;
}

}  // namespace

double GetFrameRate(double frameTime) {
  double const hundredths = std::trunc(100.0 / frameTime);
  for (NamedRate const& named : kNamedRates) {
    if (named.hundredths == hundredths) {
      return named.rate;
    }
  }
  return std::trunc(hundredths / 100.0);
}

SK_TimeCodeInfo CalculateTimeCode(double rate) {
  if (rate == kNtscRate) {
    return SK_TimeCodeInfo(SK_Time{30000, 1001}, 1);
  }
  if (rate == kDoubleNtscRate) {
    return SK_TimeCodeInfo(SK_Time{60000, 1001}, 1);
  }
  return SK_TimeCodeInfo(SK_Time{static_cast<std::int32_t>(rate), 1}, 0);
}

void IncrementSmpteTime(SK_DateTimeSMPTE& time, double rate) {
  if (time.frames < rate - 1.0) {
    ++time.frames;
    return;
  }
  time.frames = 0;
  if (time.seconds < 59) {
    ++time.seconds;
    return;
  }
  time.seconds = 0;
  if (time.minutes >= 59) {
    ++time.hours;
    time.minutes = 0;
    return;
  }
  ++time.minutes;
  if (time.minutes % 10 != 0) {
    time.frames = DroppedFrames(rate);
  }
}

}  // namespace ns_sensor
