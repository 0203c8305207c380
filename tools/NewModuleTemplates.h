/// The files of a new module, with @NAME@, @CLASS@ and @EXTENSION@ in the places to be filled in. The texts are those
/// of the files in `new_module`.
#pragma once

namespace senmark_tool {

struct NewModuleTemplate {
  char const* name;  ///< of the file, with the same places
  char const* text;
};

extern NewModuleTemplate const kNewModuleTemplates[5];

}  // namespace senmark_tool
