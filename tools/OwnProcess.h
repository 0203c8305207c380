/// What only the system knows of this process.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace senmark_tool {

/// Full path of the program's own file, with links followed; empty if it cannot be found.
std::string OwnPath();

/// Bytes of the address space that are in use; 0 if the system sets no limit to them.
std::uint64_t AddressSpaceInUse();

/// Called in a child: it is ended when `parent` ends, however that comes about.
void EndWithParent(pid_t parent);

}  // namespace senmark_tool
