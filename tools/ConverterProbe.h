/// Asks the converter of a module about a file, by running its code in a process of its own.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ModuleDiscovery.h"
#include "ModuleProcess.h"

namespace senmark_tool {

struct ProbeAnswer {
  bool takes = false;              ///< what its check function says
  std::string checkError;          ///< why that says nothing; empty: it was asked, or not wanted
  std::vector<std::string> lines;  ///< its own explanation; empty if it has none to give
  std::string explanationError;    ///< why the explanation is missing or broken off; empty: it is whole
  std::string loadError;           ///< why its code does not run at all; empty: it does
};

enum class eProbe : std::uint8_t {
  kCheck = 1,    ///< call the check function
  kExplain = 2,  ///< let it explain the file, if it can
  kBoth = kCheck | kExplain,
};

/// Errors: `std::system_error` if no process can be made.
ProbeAnswer ProbeConverter(ServingConverter const& serving, std::string const& file, eProbe probe,
                           Limits const& limits = Limits());

}  // namespace senmark_tool
