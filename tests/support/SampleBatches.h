/// Samples that go from their dump to their text many at a time.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "SK_DumpSamplesUtils.h"
#include "SerializerBuffer.h"
#include "TempFolder.h"

namespace senmark_test {

class SampleBatches : public testing::Test {
 protected:
  explicit SampleBatches(SK_PLUGIN::SK_DumpSamplesUtils::eTimes times) : mTimes(times) {}

  void Begin(std::size_t timeLength) {
    mDump.ClearDump();
    mDump.SetTimeLength(static_cast<unsigned short>(timeLength), mTimes);
  }
  /// Reads all samples: many at a time where that goes, and the next one by itself. Gives how many came that way.
  ///
  /// appendMany  gets the room and the number of samples that are left, and gives how many it has appended.
  /// appendOne   gets time and value.
  template <typename AppendMany, typename AppendOne>
  std::uint64_t AppendAll(std::uint64_t count, std::size_t mostRoom, AppendMany&& appendMany, AppendOne&& appendOne) {
    std::uint64_t many = 0;
    std::string_view time;
    std::string_view value;
    for (std::uint64_t i = 0; i != count;) {
      std::uint64_t const appended = appendMany(std::min(mBuffer.Free(), mostRoom), count - i);
      many += appended;
      i += appended;
      if (i != count) {
        EXPECT_TRUE(mDump.ReadSample(time, value));
        mBuffer.Put(',');
        appendOne(time, value);
        ++i;
      }
    }
    EXPECT_FALSE(mDump.ReadSample(time, value));
    return many;
  }
  /// Reads one sample, as has to be done with the first one.
  std::pair<std::string, std::string> ReadOne() {
    std::string_view time;
    std::string_view value;
    EXPECT_TRUE(mDump.ReadSample(time, value));
    return {std::string(time), std::string(value)};
  }
  std::string ReadTime() { return ReadOne().first; }
  void GrowTo(std::size_t size) {
    mBuffer.Grow(size);
    mBuffer.Clear();
  }

  TempFolder mFolder;
  SK_PLUGIN::SK_DumpSamplesUtils mDump;
  SK_PLUGIN::SerializerBuffer mBuffer;

 private:
  SK_PLUGIN::SK_DumpSamplesUtils::eTimes mTimes;
};

}  // namespace senmark_test
