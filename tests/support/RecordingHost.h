/// A host that keeps every call of its procs as a line of text.
///
/// One table serves all objects: the client object and the client error object of every call are the
/// object itself.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "senmark/Senmark.h"

namespace senmark_test {

struct ReportedError {
  std::int32_t code;
  std::string message;
  std::int64_t offset;
  std::int64_t line;

  bool operator==(ReportedError const& other) const {
    return code == other.code && message == other.message && offset == other.offset && line == other.line;
  }
};

std::ostream& operator<<(std::ostream& out, ReportedError const& error);

class RecordingHost {
 public:
  static constexpr std::uint64_t kAllSamples = ~std::uint64_t{0};

  /// The process's one table.
  static ns_sensor::SK_ClientProcs* Procs();

  /// Creates the manager with the table; it is destroyed with the object.
  RecordingHost();
  ~RecordingHost();
  RecordingHost(RecordingHost const&) = delete;
  RecordingHost& operator=(RecordingHost const&) = delete;

  ns_sensor::ISenmark& Manager() { return *mManager; }
  ns_sensor::SK_HostPropertyAPI const& PropertyAPI() const { return *mPropertyAPI; }

  /// Opens a file; null after an error.
  ns_sensor::ISensorFileHandler* Open(std::string const& path, char const* outputPath = nullptr);
  /// Closes one opening; the handler as the library leaves it.
  ns_sensor::ISensorFileHandler* Close(ns_sensor::ISensorFileHandler* handler);

  /// What was sent since the last call, a line each.
  std::string TakeCalls();
  /// What was reported since the last call.
  std::vector<ReportedError> TakeErrors();
  /// The only error since the last call; fails the test if there is none or more than one.
  ReportedError TakeError();

  /// Lowers the count that entry 9 offers.
  std::uint64_t wantedSamples = kAllSamples;
  /// Has the properties pushed from inside the data info procs.
  bool fetchProperties = true;

  /// Run before each call is kept; what it throws passes into the library.
  std::function<void()> onCall = [] {};

  void AddCall(std::string const& line) {
    onCall();
    mCalls += line + '\n';
  }
  void AddError(ReportedError const& error) { mErrors.push_back(error); }

 private:
  ns_sensor::ISenmark* mManager = nullptr;
  ns_sensor::SK_HostPropertyAPI* mPropertyAPI = nullptr;
  std::string mCalls;
  std::vector<ReportedError> mErrors;
};

/// The calling thread's last error, through the export.
ReportedError LastError(bool clear);

/// A value of a static node or a sample, as text.
std::string ValueText(std::uint8_t kind, void const* value, std::uint64_t size);

}  // namespace senmark_test
