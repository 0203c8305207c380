/// The one object behind `ISenmark`. It opens files, shares one handler among all who opened the same
/// path, hands out streams, and lives as long as somebody has created it and not destroyed it.
#pragma once

#include <atomic>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "ISenmark_I.h"

namespace ns_sensor {

class SenmarkImpl : public ISenmark_I {
 public:
  /// Counts one creation and gives the instance; the first one sets the library up with its arguments.
  static SenmarkImpl* Initialize(char const* pluginFolder, char const* wantedModules, char const* locale);
  /// Counts one destruction; the last one shuts the library down. True then.
  static bool Terminate();

  void OpenFile(ISensorFileHandler** handler, char const* path, char const* outputPath) override;
  void CloseFile(ISensorFileHandler** handler) override;
  void CreateTdjsonStream(ITdjsonStream** stream, char const* path, bool validate) override;
  void DestroyTdjsonStream(ITdjsonStream** stream) override;

  SenmarkImpl(SenmarkImpl const&) = delete;
  SenmarkImpl& operator=(SenmarkImpl const&) = delete;

 private:
  SenmarkImpl() = default;
  ~SenmarkImpl() override;

  /// Undoes what the first creation set up. The lock is held.
  static void ShutDown();

  /// Opens `path`, or counts one more opening of it. The lock is held.
  void OpenLocked(ISensorFileHandler** handler, char const* path, char const* outputPath);

  /// Brings a file to the place that the client asked for: a temporary one by moving it, or by swapping
  /// it with what stands there; another one by copying it.
  static void CopyTdjsonAtPath(char const* destination, char const* source, bool isTemporary);

  /// False for null, and for a handler that is not the system's own, which is left alone.
  static bool DestroyHandler(ISensorFileHandler* handler);

  // From the path as the client gave it to the handler and how often it is open. Paths are compared byte
  // for byte: two spellings of one file have two handlers.
  std::map<std::string, std::pair<ISensorFileHandler*, unsigned short>> mFileHandlerMap;
  std::atomic<std::size_t> mOpenPathCount{0};  // entries of the map, for a close that does not hold the lock yet

  static SenmarkImpl* mSKInstance;
  static std::atomic<unsigned short> mInitializationCount;
};

}  // namespace ns_sensor
