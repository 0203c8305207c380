// A converter for files with the extension "@EXTENSION@". It reads lines of a time and a number:
//
//   1714559400.25 1.5
//
// The time is in seconds since 1970-01-01T00:00:00Z. Put your own format in the place of this one.
#include <cstdlib>

#include "senmark/Module.h"

namespace kit = senmark::kit;

class @CLASS@ : public kit::Converter {
 public:
  // Asked for files of all kinds: look at the extension, or at the first bytes (`input.head`).
  bool accepts(kit::Input const& input) override { return input.extension() == "@EXTENSION@"; }

  void convert(kit::Input const& input, kit::Output& output) override {
    output.setTimeBase(kit::TimeBase::gmt(3));
    kit::StreamFormat format;
    format.decimals = 3;
    kit::NumberStream& values = output.top().numberStream("Value", format);

    kit::Lines lines(input);
    std::string_view line;
    while (lines.next(line)) {
      if (line.empty()) {
        continue;
      }
      std::string const text(line);
      char* behindTime = nullptr;
      char* behindValue = nullptr;
      auto const time = kit::InstantOfSeconds(std::strtod(text.c_str(), &behindTime));
      double const value = std::strtod(behindTime, &behindValue);
      if (!time || behindTime == text.c_str() || behindValue == behindTime) {
        throw lines.failure("no time, or no number behind it");
      }
      values.add(*time, value);
    }
  }
};

SENMARK_MODULE(@CLASS@)
