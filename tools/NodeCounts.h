/// How many nodes and samples a file has.
#pragma once

#include <cstdint>

#include "senmark/Host.h"

namespace senmark_tool {

struct NodeCounts {
  std::uint64_t groups = 0;
  std::uint64_t statics = 0;
  std::uint64_t dynamics = 0;
  std::uint64_t samples = 0;  ///< as the outline states them, of nodes that have any
};

NodeCounts CountNodes(senmark::File const& file);

}  // namespace senmark_tool
