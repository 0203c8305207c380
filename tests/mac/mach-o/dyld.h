/// The one declaration of the system's loader that the program uses. Nothing here has a body, and nothing is linked.
#pragma once

#include <cstdint>

extern "C" int _NSGetExecutablePath(char* path, std::uint32_t* size);
