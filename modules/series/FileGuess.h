/// The layout of a file, guessed from its start.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Layout.h"
#include "senmark/module/Input.h"

namespace senmark_series {

/// None if the file is no table with times; `whyNot` then has the reasons.
/// Errors: `Failure` as reading has them, and for a sidecar that does not fit.
std::optional<Layout> GuessFile(kit::Input const& input, Sidecar const& sidecar, std::vector<std::string>& whyNot);

/// Whether rows in the middle and at the end of a file tell times as the layout has them: a table may end long before
/// its file does.
bool HoldsFurtherOn(kit::Input const& input, Layout const& layout);

}  // namespace senmark_series
