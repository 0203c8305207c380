#include "Series.h"

namespace {

class SeriesConverter : public senmark::kit::Converter {
 public:
  bool accepts(senmark::kit::Input const& input) override { return senmark_series::Accepts(input); }
  void convert(senmark::kit::Input const& input, senmark::kit::Output& output) override {
    senmark_series::Convert(input, output);
  }
  void explain(senmark::kit::Input const& input, senmark::kit::Explanation& explanation) override {
    senmark_series::Explain(input, explanation);
  }
};

}  // namespace

SENMARK_MODULE(SeriesConverter)
