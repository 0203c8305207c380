/// Brings records of the host back to the state of new ones, so that a query that fails leaves nothing
/// of an earlier answer in them.
#pragma once

#include <vector>

#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

void ResetGroupChildInfo(ns_sensor::SK_GroupChildInfo& info);
void ResetStaticDataInfo(ns_sensor::SK_StaticDataInfo& info);
void ResetDynamicDataInfo(ns_sensor::SK_DynamicDataInfo& info);
void ResetFileInfo(ns_sensor::SK_FileInfo& info);
void ResetVideoSyncTimeList(std::vector<ns_sensor::SK_VideoSyncTime>& list);

}  // namespace SK_NAMESPACE_INT
