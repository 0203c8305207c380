/// What the library hands to a module, for a module's converter in the process of the benchmark.
#pragma once

#include "SK_PluginManager.h"

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

 private:
  SK_PLUGIN::HostAPI mTables{};
};
