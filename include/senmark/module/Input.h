/// The file that a converter reads.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "senmark/module/Failure.h"

namespace senmark::kit {

/// A file by its name; nothing is open between the calls.
class Input {
 public:
  /// extension  in lower case, without its point; may be empty.
  Input(std::string path, std::string extension, std::string uid)
      : mPath(std::move(path)), mExtension(std::move(extension)), mUid(std::move(uid)) {}

  std::string const& path() const { return mPath; }
  std::string const& extension() const { return mExtension; }
  /// The "identifier" of the converter in the manifest: a module with several tells them apart by it.
  std::string const& uid() const { return mUid; }

  /// Bytes. Errors: `Failure` with code 5 or 6 for what is no file that can be read.
  std::uint64_t size() const;
  /// The first bytes, fewer than `count` of a short file.
  std::string head(std::size_t count) const;

 private:
  std::string mPath;
  std::string mExtension;
  std::string mUid;
};

/// The bytes of a file, in pieces: memory does not grow with the file.
class Bytes {
 public:
  /// Errors: `Failure` with code 6 for a file that cannot be opened.
  explicit Bytes(Input const& input, std::size_t pieceSize = kPieceSize)
      : mBuffer(pieceSize), mDescriptor(::open(input.path().c_str(), O_RDONLY | O_CLOEXEC)) {
    if (mDescriptor < 0) {
      throw Failure("cannot open " + input.path() + ": " + std::strerror(errno), -1, -1, ns_sensor::kCannotOpenFile);
    }
  }
  ~Bytes() { ::close(mDescriptor); }
  Bytes(Bytes const&) = delete;
  Bytes& operator=(Bytes const&) = delete;

  /// The next piece, empty at the end of the file; valid until the next call. Errors: `Failure` with code 11.
  std::string_view next() {
    mOffset += static_cast<std::int64_t>(mPieceSize);
    mPieceSize = 0;
    ssize_t count = 0;
    do {
      count = ::read(mDescriptor, mBuffer.data(), mBuffer.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
      throw Failure(std::string("cannot read: ") + std::strerror(errno), mOffset, -1, ns_sensor::kReadFailed);
    }
    mPieceSize = static_cast<std::size_t>(count);
    return {mBuffer.data(), mPieceSize};
  }

  /// Bytes of the file before the piece that `next` gave last.
  std::int64_t offset() const { return mOffset; }

  int descriptor() const { return mDescriptor; }

 private:
  static constexpr std::size_t kPieceSize = std::size_t{256} << 10;

  std::vector<char> mBuffer;
  int mDescriptor;  ///< behind the buffer: opened last, for what fails here closes nothing
  std::size_t mPieceSize = 0;
  std::int64_t mOffset = 0;
};

/// The lines of a file, whatever ends them: LF, CR LF or CR. An end of line that is missing at the end of the file
/// makes no difference. Memory grows with the longest line alone.
class Lines {
 public:
  /// longest  bytes that a line may have; a longer one is a `Failure`.
  explicit Lines(Input const& input, std::size_t longest = std::size_t{64} << 20) : mBytes(input), mLongest(longest) {}

  /// False at the end. `line` is valid until the next call; it holds no end of line, and no mark of UTF-8 at the
  /// start of the file.
  bool next(std::string_view& line) {
    mLineOffset = mBytes.offset() + static_cast<std::int64_t>(mPosition);
    ++mNumber;
    mCarried.clear();
    for (;;) {
      char const* const start = mPiece.data() + mPosition;
      std::size_t const left = mPiece.size() - mPosition;
      std::size_t const length = LengthOfLine(start, left);
      if (mCarried.size() + length > mLongest) {
        throw Failure("a line is longer than " + std::to_string(mLongest) + " bytes", mLineOffset, mNumber);
      }
      if (length != left) {
        Finish(std::string_view(start, length), line);
        return true;
      }
      mCarried.append(mPiece.substr(mPosition));
      if (!Refill()) {
        line = mCarried;
        SkipMark(line);
        return !mCarried.empty();
      }
    }
  }

  /// Of the line that `next` gave last; the first one is 1.
  std::int64_t number() const { return mNumber; }
  /// Bytes of the file before that line.
  std::int64_t offset() const { return mLineOffset; }

  /// A failure at that line. position: bytes of the line before the place.
  Failure failure(std::string const& message, std::size_t position = 0) const {
    return Failure(message, mLineOffset + static_cast<std::int64_t>(position), mNumber);
  }

 private:
  /// Bytes up to the next end of a line, or up to the end of the piece.
  std::size_t LengthOfLine(char const* start, std::size_t left) {
    if (left == 0) {
      return 0;
    }
    // Looked up once for many lines that end with CR alone.
    if (!mHasFeed || mNextFeed < mPosition) {
      auto const* const feed = static_cast<char const*>(std::memchr(start, '\n', left));
      mNextFeed = feed == nullptr ? mPiece.size() : mPosition + static_cast<std::size_t>(feed - start);
      mHasFeed = true;
    }
    std::size_t const before = mNextFeed - mPosition;
    auto const* const carriage = before == 0 ? nullptr : static_cast<char const*>(std::memchr(start, '\r', before));
    return carriage != nullptr ? static_cast<std::size_t>(carriage - start) : before;
  }

  bool Refill() {
    mPiece = mBytes.next();
    mPosition = 0;
    mHasFeed = false;
    return !mPiece.empty();
  }

  void SkipMark(std::string_view& line) const {
    if (mLineOffset == 0 && line.substr(0, 3) == "\xEF\xBB\xBF") {
      line.remove_prefix(3);
    }
  }

  /// Steps over the end of the line, which may go on in the next piece.
  void Finish(std::string_view rest, std::string_view& line) {
    bool const isCarriage = mPiece[mPosition + rest.size()] == '\r';
    mPosition += rest.size() + 1;
    if (isCarriage && mPosition == mPiece.size()) {
      // The piece goes: what is in it of the line has to be kept.
      mCarried.append(rest);
      rest = std::string_view();
      Refill();
    }
    if (isCarriage && mPosition < mPiece.size() && mPiece[mPosition] == '\n') {
      ++mPosition;
    }
    if (!mCarried.empty()) {
      mCarried.append(rest);
      rest = mCarried;
    }
    line = rest;
    SkipMark(line);
  }

  Bytes mBytes;
  std::size_t mLongest;
  std::string_view mPiece;
  std::size_t mPosition = 0;  ///< in the piece
  std::size_t mNextFeed = 0;  ///< in the piece: of the next line feed, or its end
  bool mHasFeed = false;      ///< whether it has been looked up in this piece
  std::string mCarried;       ///< what pieces before held of the line
  std::int64_t mLineOffset = 0;
  std::int64_t mNumber = 0;
};

inline std::uint64_t Input::size() const {
  Bytes const bytes(*this, 1);
  struct stat status {};
  if (::fstat(bytes.descriptor(), &status) != 0 || !S_ISREG(status.st_mode)) {
    throw Failure(mPath + " is no file", -1, -1, ns_sensor::kFileSizeUnknown);
  }
  return static_cast<std::uint64_t>(status.st_size);
}

inline std::string Input::head(std::size_t count) const {
  std::string head;
  Bytes bytes(*this, count);
  while (head.size() < count) {
    std::string_view const piece = bytes.next();
    if (piece.empty()) {
      break;
    }
    head.append(piece.substr(0, count - head.size()));
  }
  return head;
}

}  // namespace senmark::kit
