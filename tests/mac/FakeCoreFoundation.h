/// A small CoreFoundation over folders on the disk, for tests of what uses the real one. It holds its callers to the
/// rules of ownership: an object that is used or released after its end stops the process, and those that were never
/// released can be counted.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <vector>

namespace fake_mac {

/// Objects that somebody still has to release.
std::size_t LiveObjects();

/// Makes one call that can fail do so, the first one behind `passed` others, for as long as it lives. At most one at
/// a time.
class FailingCoreFoundation {
 public:
  explicit FailingCoreFoundation(int passed);
  ~FailingCoreFoundation();
  FailingCoreFoundation(FailingCoreFoundation const&) = delete;
  FailingCoreFoundation& operator=(FailingCoreFoundation const&) = delete;

  /// Whether it has come to that.
  bool HasFailed() const;
};

/// What executables are said to be made for, in place of what their heads tell, for as long as it lives.
class Architectures {
 public:
  explicit Architectures(std::vector<CFIndex> const& architectures);
  ~Architectures();
  Architectures(Architectures const&) = delete;
  Architectures& operator=(Architectures const&) = delete;
};

}  // namespace fake_mac
