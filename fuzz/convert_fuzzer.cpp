/// Opens a file with the extension that the target is compiled for, has the converted file put over one that is
/// there, walks it, and reads it as a stream. Whatever the bytes are: both ways take the file or refuse it, give
/// the same bytes, and leave nothing behind; after a refusal the output is what it was.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzFolder.h"
#include "FuzzHost.h"

namespace {

using senmark_fuzz::Ask;
using senmark_fuzz::FuzzHost;
using senmark_fuzz::Manager;
using senmark_fuzz::Require;

/// Names grow with the depth at which they stand, so that the work grows faster than the input.
constexpr std::size_t kLargestInput = 16 * 1024;

constexpr char kInput[] = "input." SENMARK_FUZZ_EXTENSION;
constexpr char kOutput[] = "output.tdjson";
constexpr char kCopy[] = "copy.tdjson";
constexpr char kOld[] = "what was there";

std::string ReadAll(FuzzHost& host, ns_sensor::ITdjsonStream& stream) {
  std::string bytes;
  char buffer[1000];
  unsigned count = 0;
  do {
    Require(Ask(host, [&] { count = stream.readStream(buffer, sizeof buffer, &host); }));
    bytes.append(buffer, count);
  } while (count != 0);
  Require(stream.GetRemainingStreamSize() == 0 && stream.GetStreamSize() == bytes.size());
  return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static senmark_fuzz::FuzzFolder folder;
  folder.StartInput();
  if (size > kLargestInput) {
    return 0;
  }
  std::string const input = folder.Write(kInput, data, size);
  folder.Write(kOutput, reinterpret_cast<std::uint8_t const*>(kOld), sizeof kOld - 1);

  FuzzHost host;
  ns_sensor::ISensorFileHandler* const file = senmark_fuzz::Open(host, input, folder.Path(kOutput).c_str());
  if (file != nullptr) {
    senmark_fuzz::WalkAndClose(host, file);
  }
  std::string const output = folder.Read(kOutput);
  Require(file != nullptr || output == kOld);

  ns_sensor::ITdjsonStream* stream = nullptr;
  bool const streams = Ask(host, [&] { Manager(host).createTdjsonStream(&stream, input.c_str(), 1, &host); });
  Require(streams == (file != nullptr) && streams == (stream != nullptr));
  if (streams) {
    Require(ReadAll(host, *stream) == output);
    Require(Ask(host, [&] { stream->saveStream(folder.Path(kCopy).c_str(), &host); }));
    Require(folder.Read(kCopy) == output);
    Require(Ask(host, [&] { Manager(host).destroyTdjsonStream(&stream, &host); }) && stream == nullptr);
    // What came out of a conversion is a file of the library's own format.
    ns_sensor::ISensorFileHandler* const again = senmark_fuzz::Open(host, folder.Path(kCopy));
    Require(again != nullptr);
    senmark_fuzz::WalkAndClose(host, again);
    folder.Remove(kCopy);
  }
  folder.RequireNothingLeft({kInput, kOutput});
  return 0;
}
