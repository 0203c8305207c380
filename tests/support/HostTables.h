/// What the library hands to a module, for code of modules and the kit in a process that links the library's inside:
/// tests, fuzz targets, benchmarks.
#pragma once

#include "SK_PluginManager.h"

namespace senmark_test {

class HostTables {
 public:
  HostTables() {
    mTables.mSize = sizeof(mTables);
    mTables.mVersion = 1;
    SK_PLUGIN::SK_PluginManager::SetupHostAPI(&mTables);
  }
  ~HostTables() {
    delete mTables.mTdjsonWriterAPI;
    delete mTables.mHandleExceptionAPI;
    delete mTables.mHandleMemoryAPI;
  }
  HostTables(HostTables const&) = delete;
  HostTables& operator=(HostTables const&) = delete;

  SK_PLUGIN::HostAPI const& Get() const { return mTables; }
  SK_PLUGIN::HostAPI& Get() { return mTables; }

 private:
  SK_PLUGIN::HostAPI mTables{};
};

}  // namespace senmark_test
