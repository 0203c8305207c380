// A part of a host that was built apart: it has a copy of the wrapper of its own, and nothing of it can be
// seen from outside.
#include "senmark/Host.h"

namespace {

/// Counts the samples of all sets of a file.
long CountSamples(char const* library, char const* path) {
  senmark::Senmark const manager(senmark::Library::Load(library));
  senmark::File const file = manager.open(path);
  long count = 0;
  file.walk([&](senmark::Node const& node, int) {
    if (node.dynamic) {
      for (senmark::Sample const& sample : file.samples(node.dynamic->sampleSetId).all()) {
        static_cast<void>(sample);
        ++count;
      }
    }
  });
  return count;
}

}  // namespace

#define MODULE_EXPORT extern "C" __attribute__((visibility("default")))

/// -1 and the code, negative, after an error.
MODULE_EXPORT long HostModuleCountSamples(char const* library, char const* path) {
  senmark::Result<long> const count = senmark::attempt([&] { return CountSamples(library, path); });
  return count ? count.value() : -static_cast<long>(count.error().code());
}

/// The state that this copy shares with the others, and the one that it would have had.
MODULE_EXPORT void const* HostModuleSharedState(char const* library) {
  senmark::detail::Session const session(senmark::Library::Load(library), nullptr, nullptr, nullptr);
  return session.shared();
}
MODULE_EXPORT void const* HostModuleOwnState() {
  return senmark::detail::OwnSharedState();
}
