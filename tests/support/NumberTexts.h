/// The writer's texts of numbers, made as they are defined and not as the writer makes them.
#pragma once

#include <cstdint>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>

#include "senmark/SK_Records.h"

namespace senmark_test {

inline ns_sensor::SK_NumberPattern Pattern(std::uint64_t digitsInteger, std::uint64_t digitsDecimal, bool isSigned) {
  ns_sensor::SK_NumberPattern pattern;
  pattern.digitsInteger = digitsInteger;
  pattern.digitsDecimal = digitsDecimal;
  pattern.isSigned = isSigned;
  return pattern;
}

/// The text of a number as it is defined: by a stream, and then the zeroes off.
class StreamText {
 public:
  StreamText() {
    mStream.imbue(std::locale::classic());
    mStream << std::setprecision(16);
  }

  std::string Of(double value) {
    mStream.str(std::string());
    mStream << value;
    std::string text = mStream.str();
    std::size_t const point = text.find('.');
    if (point == std::string::npos) {
      return text;
    }
    while (text.size() > point && (text.back() == '0' || text.back() == '.')) {
      text.pop_back();
    }
    return text;
  }

 private:
  std::ostringstream mStream;
};

/// The steps of padding, one after the other, on a text of its own.
inline std::string PaddedStepByStep(std::string text, ns_sensor::SK_NumberPattern const& pattern) {
  std::size_t const signs = text.substr(0, 1) == "-" ? 1 : 0;
  std::size_t const point = text.find('.');
  std::size_t decimals = 0;
  std::size_t integers = text.size() - signs;
  if (point != std::string::npos) {
    decimals = text.size() - point - 1;
    integers = text.size() - decimals - signs - 1;
  } else if (pattern.digitsDecimal != 0) {
    text += '.';
  }
  for (; integers < pattern.digitsInteger; ++integers) {
    text.insert(signs, "0");
  }
  for (; decimals < pattern.digitsDecimal; ++decimals) {
    text += '0';
  }
  return pattern.isSigned && signs == 0 ? '+' + text : text;
}

}  // namespace senmark_test
