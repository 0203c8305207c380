#include "SK_ConversionInfo.h"

#include "SK_FileIO.h"

namespace SK_NAMESPACE_INT {

SK_ConversionInfo::~SK_ConversionInfo() {
  if (!isTemporary || filePath.empty()) {
    return;
  }
  try {
    File_IO::Delete(filePath.c_str());
  } catch (...) {
    // The file has been moved to the place that the host wanted, or cannot be deleted. Neither is a
    // reason to fail here.
  }
}

}  // namespace SK_NAMESPACE_INT
