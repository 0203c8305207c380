// Prints the duration of a data file and the samples of one set, through the raw border.
//
//   raw_host FILE SAMPLE_SET_ID
#include <cstdint>
#include <cstdio>
#include <string>

#include "senmark/Senmark.h"

using namespace ns_sensor;

namespace {

// What this host gives as client object and as client error object of every call.
struct Call {
  bool failed = false;
};

double Seconds(std::int32_t value, std::uint32_t scale) {
  return static_cast<double>(value) / scale;
}

void OnError(void* client, std::int32_t code, char const* message, std::int64_t offset, std::int64_t) {
  static_cast<Call*>(client)->failed = true;
  std::fprintf(stderr, "error %d at byte %lld: %s\n", code, static_cast<long long>(offset), message);
}

void OnFileInfo(void*, std::int32_t value, std::uint32_t scale, char const*, std::uint64_t, char const* creator,
                std::uint64_t) {
  std::printf("%g s by \"%s\"\n", Seconds(value, scale), creator);
}

void OnSampleCount(void*, std::uint64_t* count) {
  std::printf("%llu samples\n", static_cast<unsigned long long>(*count));
}

void OnSample(void*, std::int32_t timeValue, std::uint32_t timeScale, void const* value, std::uint64_t size,
              std::uint8_t type) {
  std::printf("%g s:", Seconds(timeValue, timeScale));
  if (type == kStringValue) {
    std::printf(" %.*s", static_cast<int>(size), static_cast<char const*>(value));
  } else {
    std::uint64_t const count = type == kNumberArrayValue ? size : 1;
    for (std::uint64_t i = 0; i < count; ++i) {
      std::printf(" %g", static_cast<double const*>(value)[i]);
    }
  }
  std::printf("\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: raw_host FILE SAMPLE_SET_ID\n");
    return 2;
  }
  std::string const id = argv[2];

  // The library keeps this address: the table lives as long as the library is used. Entries that belong to
  // calls which this host never makes stay null.
  static SK_ClientProcs procs{};
  procs.fileInfo = OnFileInfo;
  procs.sampleCount = OnSampleCount;
  procs.sample = OnSample;
  procs.error = OnError;

  Call call;
  ISenmark* manager = nullptr;
  void* propertyAPI = nullptr;
  CreateSenmark_1(&manager, nullptr, nullptr, nullptr, &call, &procs, &propertyAPI);
  if (call.failed) {
    return 1;
  }

  ISensorFileHandler* file = nullptr;
  manager->openFile(&file, argv[1], nullptr, &call);
  if (file != nullptr) {
    SK_FileInfo info;
    file->getFileInfo(&info, &call, &call);
    // The first hour, in seconds as value and scale.
    file->getDynamicSamples(id.c_str(), id.size(), 0, 1, 3600, 1, &call, &call);
    manager->closeFile(&file, &call);
  }
  DestroySenmark_1(&manager, &call);
  return call.failed ? 1 : 0;
}
