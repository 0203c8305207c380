/// The manager: opens files for a host and hands out streams.
///
/// One object serves the whole process. Hosts call the operations with a lower-case initial, which
/// never throw; those with a capital throw `SK_Exception` and are for callers inside the library.
#pragma once

#include <vector>

namespace ns_sensor {

class ISensorFileHandler;
class ITdjsonStream;
struct SK_SupportedFormats;

/// Binary interface: the order of the virtual functions is fixed.
class ISenmark {
 public:
  virtual void OpenFile(ISensorFileHandler** handler, char const* path, char const* outputPath) = 0;
  virtual void CloseFile(ISensorFileHandler** handler) = 0;
  virtual void CreateTdjsonStream(ITdjsonStream** stream, char const* path, bool validate) = 0;
  virtual void DestroyTdjsonStream(ITdjsonStream** stream) = 0;

  virtual ~ISenmark() = default;

  /// Opens a file, or gives the handler of a file that is open already.
  ///
  /// handler    receives the handler, null after most failures. Hosts that open one path several times
  ///            share one handler and close it as often.
  /// path       of the file, below 65,535 bytes, UTF-8. Paths are compared byte for byte. A path without
  ///            any folder has no extension for the library, so absolute paths are best.
  /// outputPath null or empty, or where a copy of the file in the Timed Data JSON format shall stand.
  ///            Its folder must exist and be named in it.
  ///
  /// Errors:   1 null handler; 2 no path; 3 a path too long; 4 no such file; 25 no converter takes the
  ///           file; 58 no such output folder; and all errors of reading: 5, 6, 14, 15, 19, 21, 28 to
  ///           49, 54. When only the copy to `outputPath` fails, the handler is there all the same and
  ///           must be closed.
  /// Lifetime: the handler lives until its last `closeFile`, or until the manager goes.
  /// Threads:  one open or close at a time, by a lock of the library; not beside `createTdjsonStream`.
  virtual void openFile(ISensorFileHandler** handler, char const* path, char const* outputPath,
                        void* clientErrorObject) = 0;

  /// Gives back one opening of a file. `*handler` becomes null when it was the last one.
  ///
  /// Errors: 1 null pointer; 26 no file is open; 27 not a handler of this manager.
  virtual void closeFile(ISensorFileHandler** handler, void* clientErrorObject) = 0;

  /// Gives a file as bytes in the Timed Data JSON format, converted first if need be.
  ///
  /// validate 0: any file of the format is taken as it is; otherwise it is parsed once, and its errors
  ///          are those of `openFile`.
  ///
  /// Errors:   as `openFile`.
  /// Lifetime: until `destroyTdjsonStream`, or until the manager goes.
  /// Threads:  takes no lock: streams must be made and destroyed one at a time, and not beside
  ///           `openFile` or `closeFile`.
  virtual void createTdjsonStream(ITdjsonStream** stream, char const* path, unsigned char validate,
                                  void* clientErrorObject) = 0;

  /// Destroys a stream and sets `*stream` to null.
  ///
  /// Errors: 1 null pointer; 56 there is no stream; 57 not a stream of this manager.
  virtual void destroyTdjsonStream(ITdjsonStream** stream, void* clientErrorObject) = 0;

  /// What stands behind the exported functions, inside the library only.
  static void CreateSenmark(ISenmark** manager, char const* pluginFolder, char const* wantedModules,
                            char const* locale);
  static void DestroySenmark(ISenmark** manager);
  static void GetSupportedFormats(std::vector<SK_SupportedFormats>* formats);
};

}  // namespace ns_sensor
