/// Motion capture of the kind Biovision Hierarchy, as a module.
#include "Conversion.h"
#include "senmark/Module.h"

namespace {

namespace kit = senmark::kit;

class Motion : public kit::Converter {
 public:
  bool accepts(kit::Input const& input) override { return senmark_motion::Accepts(input); }
  void convert(kit::Input const& input, kit::Output& output) override { senmark_motion::Convert(input, output); }
  void explain(kit::Input const& input, kit::Explanation& explanation) override {
    senmark_motion::Explain(input, [&](std::string const& line) { explanation.add(line); });
  }
};

}  // namespace

SENMARK_MODULE(Motion)
