/// One file as a stream of bytes in the Timed Data JSON format.
///
/// Hosts call the operations with a lower-case initial, which never throw, and the two sizes, which
/// cannot fail. A stream has one position and is not to be shared between threads.
#pragma once

#include <string>

namespace ns_sensor {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonStream {
 public:
  virtual unsigned ReadStream(char* buffer, unsigned const& size) = 0;
  virtual void SaveStream(char const* path) const = 0;
  virtual void GetNativeFilePath(std::string& path) const = 0;

  /// Bytes of the whole stream, cut to 32 bits: a file of 4 GiB or more tells a wrong size and can be
  /// read only up to that size.
  virtual unsigned GetStreamSize() const = 0;
  /// Bytes that `readStream` has not delivered yet. A reset does not bring it back.
  virtual unsigned GetRemainingStreamSize() const = 0;
  virtual void ResetStream() = 0;

  /// Never called by a host: `ISenmark::destroyTdjsonStream` ends a stream.
  virtual ~ITdjsonStream() = default;

  /// Reads on. All `size` bytes of `buffer` are set to 0 first.
  ///
  /// Result: bytes read, up to `size`; 0 at the end, and after a failure.
  /// Errors: 1 null buffer; 11 the file cannot be read.
  virtual unsigned readStream(char* buffer, unsigned const& size, void* error) = 0;

  /// Writes the whole file to `path`, whatever has been read of it.
  ///
  /// A failure leaves no new file, and an existing one empty. Saving onto the very file that the stream reads leaves
  /// it as it is.
  /// Errors: 2, 3 a bad path; 6, 7, 13 the file cannot be made; 11 it cannot be read; 55 it cannot be
  ///         written.
  virtual void saveStream(char const* path, void* error) const = 0;

  /// Sends the path that the stream was made from through entry 10.
  virtual void getNativeFilePath(void* client, void* error) const = 0;

  /// Goes back to the first byte. What remains to be read stays as it is, so a second full reading
  /// needs a second stream.
  ///
  /// Errors: 10 no such position.
  virtual void resetStream(void* error) = 0;
};

}  // namespace ns_sensor
