/// Opens a file through the exported functions, as a host does, walks all of its outline and asks for samples of
/// every set. Each call must end in an answer or in exactly one error, and nothing may stay behind.
#include <cstddef>
#include <cstdint>

#include "FuzzFolder.h"
#include "FuzzHost.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static senmark_fuzz::FuzzFolder folder;
  folder.StartInput();
  std::string const name = folder.Write("input.tdjson", data, size);
  senmark_fuzz::FuzzHost host;
  if (ns_sensor::ISensorFileHandler* const file = senmark_fuzz::Open(host, name)) {
    senmark_fuzz::WalkAndClose(host, file);
  }
  folder.RequireNothingLeft({"input.tdjson"});
  return 0;
}
