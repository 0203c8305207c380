/// The system's own header and what macOS adds: there the function behind the macro has another name, which is hidden
/// in a build without assertions. May be included again, like the header that it stands for.
#pragma GCC system_header
#include_next <assert.h>

#ifndef NDEBUG
extern "C" __attribute__((noreturn)) void __assert_rtn(char const* function, char const* file, int line,
                                                       char const* expression);
#endif
