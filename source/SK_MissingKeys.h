#pragma once

#include <string>

#include "SK_Error.h"

namespace SK_NAMESPACE_INT {

/// Keys that a file lacks, as messages list them: each in double quotes, separated by commas.
class SK_MissingKeys {
 public:
  void AddIf(bool isMissing, char const* key) {
    if (isMissing) {
      mText += (mText.empty() ? "" : ",") + Quoted(key);
    }
  }

  std::string const& GetText() const { return mText; }  ///< empty for none

 private:
  std::string mText;
};

}  // namespace SK_NAMESPACE_INT
