/// The names of a static node.
#pragma once

#include <string>

#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

class TdjsonStaticDataImpl : public virtual ITdjsonStaticData_v1 {
 public:
  /// The display name is escaped here; the match name is not looked at.
  TdjsonStaticDataImpl(std::string displayName, std::string matchName);

  virtual std::string const& GetDisplayName() const;  ///< escaped
  virtual std::string const& GetMatchName() const;

 private:
  std::string mDisplayName;
  std::string mMatchName;
};

}  // namespace SK_PLUGIN
