/// What code may change of the process that it runs in.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace senmark_tool {

struct ProcessTraces {
  std::map<int, std::string> descriptors;  ///< that are open, with what they lead to
  std::size_t threads = 0;
  std::string folder;  ///< the current one
  std::string locale;
  std::map<std::string, std::set<std::string>> files;  ///< names in each of some folders

  /// Those of this process. `folders`: where files may be left behind.
  static ProcessTraces Now(std::vector<std::string> const& folders);
};

/// Something that was changed and not put back.
struct Trace {
  std::string text;    ///< in words
  std::string detail;  ///< what may differ from time to time, to be put behind the text; may be empty
};

/// Compares this process with what it was. Threads that end need a moment, so it is looked at several times before
/// one counts as left.
std::vector<Trace> WhatIsLeft(ProcessTraces const& before);

}  // namespace senmark_tool
