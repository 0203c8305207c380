#include "SK_RecordReset.h"

namespace SK_NAMESPACE_INT {

void ResetGroupChildInfo(ns_sensor::SK_GroupChildInfo& info) {
  info = ns_sensor::SK_GroupChildInfo();
}

void ResetStaticDataInfo(ns_sensor::SK_StaticDataInfo& info) {
  info = ns_sensor::SK_StaticDataInfo();
}

void ResetDynamicDataInfo(ns_sensor::SK_DynamicDataInfo& info) {
  info = ns_sensor::SK_DynamicDataInfo();
}

void ResetFileInfo(ns_sensor::SK_FileInfo& info) {
  info = ns_sensor::SK_FileInfo();
}

void ResetVideoSyncTimeList(std::vector<ns_sensor::SK_VideoSyncTime>& list) {
  list.clear();
}

}  // namespace SK_NAMESPACE_INT
