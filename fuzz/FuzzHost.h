/// A host as the fuzz targets need it: it holds every call to its promise, an answer or exactly one error, and
/// touches every byte that it is given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FuzzCheck.h"
#include "senmark/Senmark.h"

namespace senmark_fuzz {

/// What the procs received since the last call.
struct FuzzHost {
  int errors = 0;
  int answers = 0;
  std::uint64_t announced = 0;
  std::uint64_t samples = 0;
  std::vector<std::string> leaves;
  std::uint8_t childType = ns_sensor::kInvalidChild;
  std::string sampleSetID;
  ns_sensor::SK_HostPropertyAPI* api = nullptr;
};

/// The manager lives as long as the process.
ns_sensor::ISenmark& Manager(FuzzHost& host);

/// Forgets what the last call brought, makes the next one, and holds it to one error or an answer.
template <typename Call>
bool Ask(FuzzHost& host, Call call) {
  host.errors = 0;
  host.answers = 0;
  host.announced = 0;
  host.samples = 0;
  host.leaves.clear();
  call();
  Require(host.errors == 0 ? host.samples == host.announced : host.errors == 1 && host.answers == 0);
  return host.errors == 0;
}

/// Opens a file, null for a refused one. outputPath: where its converted form is wanted, or null.
ns_sensor::ISensorFileHandler* Open(FuzzHost& host, std::string const& path, char const* outputPath = nullptr);

/// Asks for everything that can be asked of an open file, and closes it.
void WalkAndClose(FuzzHost& host, ns_sensor::ISensorFileHandler* file);

}  // namespace senmark_fuzz
