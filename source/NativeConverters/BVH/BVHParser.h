/// Reads the hierarchy at the head of a motion capture file. What is wrong with it is an exception (`eBVHError`).
///
/// An end that hangs on an end has a longer name than that. Every name of the skeleton is counted: `std::bad_alloc`
/// when there are too many long ones.
#pragma once

#include <memory>
#include <string>

#include "BVHInput.h"
#include "SK_LongNames.h"
#include "SkeletonNode.h"

namespace ns_sensor {

/// The root joint with all that hangs on it. The input is left behind the root's closing brace.
std::shared_ptr<SkeletonNode> ParseSkeleton(BVHInput& input, SK_LongNames& names);

/// The body of one joint, from the line with its opening brace to the one with its closing brace, or to a last
/// line without line end.
///
/// isEndSite  nothing but an offset is looked for; further ends may hang on it all the same.
std::shared_ptr<SkeletonNode> IterativeNodeBuilder(BVHInput& input, std::string const& name, bool isEndSite,
                                                   SK_LongNames& names);

}  // namespace ns_sensor
