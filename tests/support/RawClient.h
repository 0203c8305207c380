/// A host of the raw border, for tests that show what it does without the wrapper.
///
/// Its answers go through the table of the wrapper, which is the one that the library knows in a process
/// with both: the client object begins as the wrapper's objects do, and everything else is plain.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "senmark/Host.h"

namespace senmark_test {

struct RawClient : senmark::detail::ClientHead {
  RawClient() { procs = Procs(); }

  void* Object() { return static_cast<senmark::detail::ClientHead*>(this); }

  std::vector<std::int32_t> errors;  ///< codes, in the order of the reports
  std::vector<double> values;        ///< of the samples
  std::uint64_t count = 0;           ///< as entry 9 told it
  std::string text;

 private:
  static RawClient& Of(void* client) {
    return *static_cast<RawClient*>(static_cast<senmark::detail::ClientHead*>(client));
  }

  static ns_sensor::SK_ClientProcs const* Procs() {
    static ns_sensor::SK_PathProcs path{[](void*, char const*, std::int32_t, std::uint64_t, std::uint8_t) {}};
    static ns_sensor::SK_ClientProcs const procs = [] {
      ns_sensor::SK_ClientProcs table{};
      table.path = &path;
      table.groupChildInfo = [](void*, std::uint8_t, char const*, char const*) {};
      table.sample = [](void* client, std::int32_t, std::uint32_t, void const* value, std::uint64_t,
                        std::uint8_t type) {
        if (type == ns_sensor::kNumberValue) {
          Of(client).values.push_back(*static_cast<double const*>(value));
        }
      };
      table.fileInfo = [](void*, std::int32_t, std::uint32_t, char const*, std::uint64_t, char const*, std::uint64_t) {
      };
      table.sampleCount = [](void* client, std::uint64_t* count) { Of(client).count = *count; };
      table.string = [](void* client, char const* text, std::uint64_t length) { Of(client).text.assign(text, length); };
      table.error = [](void* client, std::int32_t code, char const*, std::int64_t, std::int64_t) {
        Of(client).errors.push_back(code);
      };
      return table;
    }();
    return &procs;
  }
};

/// A manager and one file of the raw border.
class RawFile {
 public:
  explicit RawFile(std::string const& path, char const* outputPath = nullptr) {
    void* api = nullptr;
    CreateSenmark_1(&mManager, nullptr, nullptr, nullptr, client.Object(), senmark::detail::ForwardingTable(), &api);
    mManager->openFile(&handler, path.c_str(), outputPath, client.Object());
  }
  RawFile(RawFile const&) = delete;
  RawFile& operator=(RawFile const&) = delete;
  ~RawFile() {
    if (handler != nullptr) {
      mManager->closeFile(&handler, client.Object());
    }
    DestroySenmark_1(&mManager, client.Object());
  }

  ns_sensor::ISenmark& Manager() { return *mManager; }

  /// The values of the samples between two times.
  std::vector<double> Range(std::string const& id, senmark::Time start, senmark::Time end) {
    client.values.clear();
    handler->getDynamicSamples(id.data(), id.size(), start.value, start.scale, end.value, end.scale, client.Object(),
                               client.Object());
    return client.values;
  }

  std::vector<double> Adjacent(std::string const& id, senmark::Time time) {
    client.values.clear();
    handler->getAdjacentSamples(id.data(), id.size(), time.value, time.scale, client.Object(), client.Object());
    return client.values;
  }

  RawClient client;
  ns_sensor::ISensorFileHandler* handler = nullptr;

 private:
  ns_sensor::ISenmark* mManager = nullptr;
};

}  // namespace senmark_test
