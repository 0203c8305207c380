/// Tracks, routes and waypoints of receivers of satellite navigation, in the GPS Exchange Format 1.0 and 1.1.
#pragma once

#include "senmark/Module.h"

namespace senmark_gpx {

class GpxConverter : public senmark::kit::Converter {
 public:
  /// Files with the extension gpx whose root element is a gpx, well-formed or not.
  bool accepts(senmark::kit::Input const& input) override;
  /// Reads the file twice: first its times, then all of it.
  void convert(senmark::kit::Input const& input, senmark::kit::Output& output) override;
  void explain(senmark::kit::Input const& input, senmark::kit::Explanation& explanation) override;
};

}  // namespace senmark_gpx
