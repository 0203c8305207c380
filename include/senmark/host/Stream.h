/// A file as bytes in the Timed Data JSON format.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "senmark/host/Library.h"

namespace senmark {

namespace detail {

/// Made absolute: the library finds no extension in a name without a folder. An empty path stays empty,
/// so that the library can refuse it, and links stay what they are.
inline std::string AbsolutePath(std::string const& path) {
  if (path.empty()) {
    return path;
  }
  std::error_code failure;
  std::filesystem::path const absolute = std::filesystem::absolute(path, failure);
  return failure ? path : absolute.string();
}

}  // namespace detail

/// Moves, but does not copy. Not to be shared between threads.
class Stream {
 public:
  Stream(Stream&& other) noexcept
      : mSession(std::move(other.mSession)),
        mPath(std::move(other.mPath)),
        mValidate(other.mValidate),
        mStream(std::exchange(other.mStream, nullptr)) {}
  Stream& operator=(Stream&& other) noexcept {
    if (this != &other) {
      Close();
      mSession = std::move(other.mSession);
      mPath = std::move(other.mPath);
      mValidate = other.mValidate;
      mStream = std::exchange(other.mStream, nullptr);
    }
    return *this;
  }
  ~Stream() { Close(); }

  /// Bytes of the whole stream, cut to 32 bits by the library: of 4 GiB or more, only that many can be
  /// read here. `save` writes all of them.
  unsigned size() const { return mStream->GetStreamSize(); }
  /// Bytes still to be read.
  unsigned remaining() const { return mStream->GetRemainingStreamSize(); }

  /// Reads on. All `capacity` bytes of `buffer` are set to 0 first.
  ///
  /// Result: bytes read; 0 at the end.
  /// Errors: 1 null buffer; 11 the file cannot be read.
  unsigned read(char* buffer, unsigned capacity) {
    detail::Receiver receiver;
    unsigned const count = mStream->readStream(buffer, capacity, receiver.Client());
    receiver.Raise();
    return count;
  }

  /// Goes back to the first byte, with everything to be read again. This makes the library's stream anew,
  /// because its own reset leaves the count of what remains as it was.
  ///
  /// Errors: as `Senmark::stream`; the stream is as before then.
  void rewind() {
    Stream fresh(mSession, mPath, mValidate);
    *this = std::move(fresh);
  }

  /// Writes the whole stream to a file, whatever has been read of it. A failure leaves no new file, and
  /// an existing one empty.
  ///
  /// Errors: 2, 3 a bad path; 6, 7, 13 the file cannot be made; 11 the source cannot be read; 55 the file
  ///         cannot be written.
  void save(std::string const& path) const {
    detail::Receiver receiver;
    mStream->saveStream(detail::AbsolutePath(path).c_str(), receiver.Client());
    receiver.Raise();
  }

  /// The path that the stream was made from, absolute.
  std::string path() const {
    detail::Receiver receiver;
    std::string text;
    receiver.answer = &text;
    mStream->getNativeFilePath(receiver.Client(), receiver.Client());
    receiver.Raise();
    return text;
  }

 private:
  friend class Senmark;

  Stream(std::shared_ptr<detail::Session> session, std::string absolutePath, bool validate)
      : mSession(std::move(session)), mPath(std::move(absolutePath)), mValidate(validate) {
    detail::Receiver receiver;
    {
      detail::BorderLock const lock(mSession->shared());
      mSession->manager().createTdjsonStream(&mStream, mPath.c_str(), mValidate ? 1 : 0, receiver.Client());
    }
    receiver.Raise();
  }

  void Close() noexcept {
    if (mStream != nullptr) {
      detail::Receiver receiver;  // nothing can be done about an error here
      detail::BorderLock const lock(mSession->shared());
      mSession->manager().destroyTdjsonStream(&mStream, receiver.Client());
      mStream = nullptr;
    }
  }

  std::shared_ptr<detail::Session> mSession;
  std::string mPath;
  bool mValidate = false;
  ns_sensor::ITdjsonStream* mStream = nullptr;
};

}  // namespace senmark
