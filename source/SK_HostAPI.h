/// The table that the library gives to a host: how it has the properties of a node sent to it.
#pragma once

namespace SK_NAMESPACE_INT {

/// The process's one `SK_HostPropertyAPI`.
void* GetHostAPI();

/// Each takes the properties handle of a data info proc, which is good until that proc returns, and
/// sends what it finds there through the host's property procs.
void PushNumberProperties(void* properties, void* client);
void PushNumberArrayProperties(void* properties, void* client);
void PushStringProperties(void* properties, void* client);

}  // namespace SK_NAMESPACE_INT
