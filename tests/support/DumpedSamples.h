/// Samples that wait in a dump, and what comes back of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SK_DumpSamplesUtils.h"

namespace senmark_test {

using Random = std::mt19937;
using Sample = std::pair<std::string, std::string>;
using Samples = std::vector<Sample>;

/// The next time: now and then all of it is new, mostly its end, and sometimes nothing.
inline std::string NextTime(std::string time, Random& random) {
  if (!time.empty()) {
    std::size_t const changed = random() % 20 == 0 ? time.size() : random() % std::min<std::size_t>(time.size() + 1, 4);
    for (std::size_t i = 0; i != changed; ++i) {
      time[time.size() - 1 - i] = static_cast<char>('0' + random() % 10);
    }
  }
  return time;
}

inline Samples ReadAll(SK_PLUGIN::SK_DumpSamplesUtils& dump) {
  Samples samples;
  std::string_view time;
  std::string_view value;
  while (dump.ReadSample(time, value)) {
    samples.emplace_back(time, value);
  }
  return samples;
}

/// Records as they are told, one after the other, without any short way.
class PlainDump {
 public:
  explicit PlainDump(std::size_t timeLength) : mTimeLength(timeLength) {}

  void Write(Sample const& sample) {
    auto const length = static_cast<std::uint16_t>(sample.second.size());
    std::string lengthBytes(sizeof(length), '\0');
    std::memcpy(&lengthBytes[0], &length, sizeof(length));
    std::string const record = sample.first + lengthBytes + sample.second;
    if (mBuffer.size() + record.size() > kLimit) {
      Flush();
    }
    mBuffer += record;
  }
  /// Also done when there is too much for the buffer.
  void Flush() {
    mFile += mBuffer;
    mBuffer.clear();
  }
  /// A record that is cut ends all reading.
  Samples ReadAll() const {
    Samples samples;
    if (Read(mFile, samples)) {
      Read(mBuffer, samples);
    }
    return samples;
  }
  bool HasFile() const { return !mFile.empty(); }

 private:
  bool Read(std::string_view records, Samples& samples) const {
    std::size_t const head = mTimeLength + sizeof(std::uint16_t);
    while (!records.empty()) {
      std::uint16_t length = 0;
      if (records.size() >= head) {
        std::memcpy(&length, records.data() + mTimeLength, sizeof(length));
      }
      if (records.size() < head + length) {
        return false;
      }
      samples.emplace_back(records.substr(0, mTimeLength), records.substr(head, length));
      records.remove_prefix(head + length);
    }
    return true;
  }

  static constexpr std::size_t kLimit = 1048576;

  std::size_t mTimeLength;
  std::string mFile;
  std::string mBuffer;
};

}  // namespace senmark_test
