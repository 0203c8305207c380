/// The platform's way to stop on a contradiction inside the library, in every kind of build.
#pragma once

namespace SK_NAMESPACE_INT {

/// expression  what should have held; function and source: where, as the report names them.
[[noreturn]] void SK_AssertFailed(char const* expression, char const* function, char const* source, unsigned line);

}  // namespace SK_NAMESPACE_INT
