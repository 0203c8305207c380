#include "OpeningHost.h"

#include <malloc.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace {

void CountError(void* count, std::int32_t code, char const* message, std::int64_t, std::int64_t) {
  std::fprintf(stderr, "error %d: %s\n", code, message);
  ++*static_cast<int*>(count);
}

/// Bytes of memory of this process that no file stands behind, as the system counts them page by page.
std::uint64_t AnonymousMemory() {
  std::ifstream file("/proc/self/smaps_rollup");
  for (std::string word; file >> word;) {
    std::uint64_t kilobytes = 0;
    if (word == "Anonymous:" && file >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

}  // namespace

OpeningHost::OpeningHost(char const* modules) {
  static ns_sensor::SK_ClientProcs procs = {};
  procs.error = CountError;
  void* api = nullptr;
  CreateSenmark_1(&mManager, modules, nullptr, nullptr, &mErrors, &procs, &api);
}

OpeningHost::~OpeningHost() {
  DestroySenmark_1(&mManager, &mErrors);
}

ns_sensor::ISensorFileHandler* OpeningHost::Open(std::string const& path, char const* output) {
  ns_sensor::ISensorFileHandler* handler = nullptr;
  mManager->openFile(&handler, path.c_str(), output, &mErrors);
  return handler;
}

double OpeningHost::SecondsToOpen(std::string const& path, char const* output) {
  Stopwatch const watch;
  ns_sensor::ISensorFileHandler* const handler = Open(path, output);
  double const seconds = watch.Seconds();
  Close(handler);
  return seconds;
}

std::string TempFolder() {
  for (char const* name : {"TEMP", "TMP", "TMPDIR"}) {
    if (char const* const value = std::getenv(name)) return value;
  }
  return "/tmp/";
}

std::uint64_t PeakMemoryOf(std::function<void()> const& work) {
  std::atomic<bool> isRunning{false};
  std::atomic<bool> isWorking{true};
  std::uint64_t peak = 0;
  std::thread watcher([&] {
    AnonymousMemory();  // what the watching itself takes is there from now on
    isRunning = true;
    while (isWorking) peak = std::max(peak, AnonymousMemory());
  });
  while (!isRunning) std::this_thread::yield();
  malloc_trim(0);  // free memory of earlier rounds would be taken again unseen
  std::uint64_t const before = AnonymousMemory();
  work();
  isWorking = false;
  watcher.join();
  return peak > before ? peak - before : 0;
}
