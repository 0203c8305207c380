/// Tells people how a file is read.
#pragma once

#include "Survey.h"
#include "senmark/Module.h"

namespace senmark_series {

/// How the rows are cut, and which column tells the time.
void ReportLayout(Layout const& layout, kit::Explanation& explanation);
/// That, what was counted, and a line for each column.
void ReportSurvey(Survey const& survey, kit::Explanation& explanation);

}  // namespace senmark_series
