/// A module that is linked into a fuzz target, so that its code is compiled for the fuzzer as the library's is.
#pragma once

namespace senmark_fuzz {

/// Has the linked module's `InitializePlugin` fill in its table and makes its converter known to the library, which
/// must have been started. extension: in lower case, what files are claimed by. identifier: of the converter, as the
/// manifest has it. The module stays until the process ends.
void RegisterModule(char const* extension, char const* identifier);

}  // namespace senmark_fuzz
