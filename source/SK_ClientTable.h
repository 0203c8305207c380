/// The host's table of procs, one for the process.
#pragma once

#include "senmark/SK_ClientProcs.h"

namespace SK_NAMESPACE_INT {

/// The table, null until a host has given one. Never changed after that, so it is read without a lock.
extern ns_sensor::SK_ClientProcs* gClientProcs;

/// Keeps the table of the first call in the process; later ones change nothing. Safe from any thread.
void InitializeClientProcs(void* clientProcs);

}  // namespace SK_NAMESPACE_INT
