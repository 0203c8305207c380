#include "NodeCounts.h"

namespace senmark_tool {

NodeCounts CountNodes(senmark::File const& file) {
  NodeCounts counts;
  file.walk([&](senmark::Node const& node, int) {
    counts.groups += node.kind == senmark::eNodeKind::kGroup ? 1u : 0u;
    counts.statics += node.fixed ? 1u : 0u;
    counts.dynamics += node.dynamic ? 1u : 0u;
    counts.samples += node.dynamic && node.dynamic->extent ? node.dynamic->sampleCount : 0u;
  });
  return counts;
}

}  // namespace senmark_tool
