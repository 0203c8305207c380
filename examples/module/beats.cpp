// A converter for a small text format: what a chest strap counts. Each line is a moment, beats per minute, and perhaps
// a note:
//
//   BEATS 1
//   device Strap 7
//   2024-05-01T12:30:00.250+02:00 71
//   2024-05-01T12:30:01.100+02:00 72 start of the run
#include <cstdlib>

#include "senmark/Module.h"

namespace kit = senmark::kit;

class Beats : public kit::Converter {
 public:
  bool accepts(kit::Input const& input) override { return input.head(7) == "BEATS 1"; }

  void convert(kit::Input const& input, kit::Output& output) override {
    output.setTimeBase(kit::TimeBase::gmt(3));
    kit::StreamFormat format;
    format.unit = "1/min";
    format.decimals = 1;
    kit::NumberStream& rate = output.top().numberStream("Heart rate", format);
    kit::StreamFormat events;
    events.marksEvents = true;
    kit::TextStream& notes = output.top().textStream("Notes", events);

    kit::Lines lines(input);
    std::string_view line;
    while (lines.next(line)) {
      if (lines.number() == 1 || line.empty()) {
        continue;
      }
      std::size_t const blank = line.find(' ');
      std::string const rest(line.substr(blank == std::string_view::npos ? line.size() : blank + 1));
      if (line.substr(0, blank) == "device") {
        output.top().text("Device", rest);
        continue;
      }
      auto const time = kit::ParseInstant(line.substr(0, blank));
      char* end = nullptr;
      double const value = std::strtod(rest.c_str(), &end);
      if (!time || end == rest.c_str()) {
        throw lines.failure("no time, or no number behind it");
      }
      rate.add(*time, value);
      if (*end == ' ') {
        notes.add(*time, end + 1);
      }
    }
  }
};

SENMARK_MODULE(Beats)
