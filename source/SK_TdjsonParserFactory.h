#pragma once

#include <memory>

namespace SK_NAMESPACE_INT {

class SK_TdjsonParser;

/// Chooses the parser by the version that the file's first key tells.
class SK_TdjsonParserFactory {
 public:
  /// Errors of mapping and scanning the file pass to the caller.
  static std::shared_ptr<SK_TdjsonParser> GetParser(char const* path);
};

}  // namespace SK_NAMESPACE_INT
