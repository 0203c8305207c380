/// Decides whether a file is in the system's own format, has it converted if it is not, and keeps the
/// streams that hosts hold.
///
/// The single instance takes no lock: opening files is serialised by the manager, making and destroying
/// streams by the host.
#pragma once

#include <atomic>
#include <memory>
#include <set>

#include "SK_FormatVersion.h"

namespace SK_NAMESPACE_INT {
struct SK_ConversionInfo;
struct SK_PathInfo;
}  // namespace SK_NAMESPACE_INT

namespace ns_sensor {

class ITdjsonStream;
class TdjsonStreamImpl;

class SK_ConverterManager {
 public:
  /// Makes the converters known; only the first call until `Terminate` does anything. Always true.
  static bool Initialize(char const* pluginFolder, char const* wantedModules);
  /// Forgets the converters and destroys every stream that is left. Always true.
  static bool Terminate();
  /// Made on first use, with the system's own converters if nothing has been initialised.
  static SK_ConverterManager* GetInstance();

  /// The file to read for `path`: itself, or a temporary file that goes with the result. The temporary
  /// file stands beside `outputPath` if that is given.
  /// Codes 25 (no converter), 58 (no output folder), 15, and those of the converter.
  std::shared_ptr<SK_NAMESPACE_INT::SK_ConversionInfo> ConvertNative(char const* path, char const* outputPath);

  /// A new stream, which this object owns until `RemoveStreamFromSet`. `validate`: the file is parsed once,
  /// and its errors pass to the caller.
  TdjsonStreamImpl* ConvertNative(char const* path, bool validate);

  /// Whether the file is in the system's format, and in which version: version 2 is told by its content,
  /// version 1 by its extension.
  bool checkTDJSONFormat(SK_NAMESPACE_INT::SK_PathInfo& pathInfo, SK_NAMESPACE_INT::eTDJSONVersion& version);

  /// The stream behind an interface that a host holds; null for a foreign one, which is not touched.
  TdjsonStreamImpl* FindStream(ITdjsonStream* stream) const;
  /// Gives the stream up to the caller. Codes 56 (there is no stream), 57 (not one of these).
  void RemoveStreamFromSet(TdjsonStreamImpl* stream);

  ~SK_ConverterManager();
  SK_ConverterManager(SK_ConverterManager const&) = delete;
  SK_ConverterManager& operator=(SK_ConverterManager const&) = delete;

 private:
  SK_ConverterManager();

  std::set<TdjsonStreamImpl*> mStreams;

  static SK_ConverterManager* mCMInstance;
  static std::atomic<bool> mIsInitialized;
};

}  // namespace ns_sensor
