/// What a Timed Data JSON text says about its times.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace senmark_tool {

/// As the file has it; nothing is judged here.
struct TimeHeader {
  std::optional<bool> usesTimecode;
  double rateValue = 0;  ///< frames per second are rateValue / rateScale
  double rateScale = 0;
  bool dropsFrames = false;
  bool hasTimecodeInfo = false;
  double precisionLength = 0;  ///< digits of the fraction of a second
  bool isGmt = false;
  bool hasUtcInfo = false;
  std::string firstSetId;  ///< of the first set, in the order of the text, that has a sample
  std::string firstTime;   ///< time text of that sample; empty: there is none
};

/// Reads on: fills up to `capacity` bytes and returns how many; 0 at the end.
using ReadBytes = std::function<std::size_t(char* buffer, std::size_t capacity)>;

/// Reads a text, which the library has found valid, until all of this is known or the text ends. Values
/// in between are stepped over, in memory that does not depend on them. A text that is not as expected
/// ends the reading early and leaves what was found so far.
TimeHeader ReadTimeHeader(ReadBytes const& read);

}  // namespace senmark_tool
