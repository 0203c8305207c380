/// Removing a folder from within a signal handler.
#pragma once

namespace senmark_tool {

/// Removes a folder with all that is in it, as far as that can be done; links are not followed. Takes no memory and
/// calls nothing but what a signal handler may call. `errno` is lost.
void RemoveFolder(char const* path);

}  // namespace senmark_tool
