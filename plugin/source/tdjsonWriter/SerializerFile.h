/// The steps on the output file, each with its failures as the writer tells them: an `SK_PluginException` with
/// the code of the file operation plus 1000.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

#include "SerializerBuffer.h"

namespace SK_PLUGIN {

/// A descriptor that appends. The file must exist.
int OpenForAppending(std::string const& path);
/// One write of the whole text. A full disk is 1034, anything else 1055, also a text that is too long for one write.
void AppendText(int descriptor, std::string_view text);
/// Sets blocks aside for the next `size` bytes of a file that ends at `end`: a system that has them finds a place for
/// what is written much faster.
void ReserveForAppending(int descriptor, std::int64_t end, std::uint64_t size);
/// Gives back what is set aside behind the end of the file, at `end`. No errors: there is no more wrong than that the
/// file has blocks that it does not need.
void DropReserve(int descriptor, std::int64_t end) noexcept;
/// -1 before the attempt, so that none is closed twice; -1 is left alone.
void CloseDescriptor(std::int32_t& descriptor);
/// Opens the file, cuts it to `length` bytes and closes it.
void CutFile(std::string const& path, std::int64_t length);
/// Makes the file, or empties it.
void CreateEmptyFile(std::string const& path);

/// The end of the file, which arrives in pieces although it counts as one step: it is cut off again unless all of
/// it could be written.
///
/// The file is opened with the first piece, and a failure is kept until `Finish`. Whoever makes the text goes on to
/// its end, and so a fault of the text is told in preference to one of the disk, as if all of it had been made first.
class SerializerTail {
 public:
  explicit SerializerTail(std::string const& path) : mPath(path) {}
  /// Cuts the file back to where the tail began. No errors: the failure that led here is the one to be told.
  ~SerializerTail();
  SerializerTail(SerializerTail const&) = delete;
  SerializerTail& operator=(SerializerTail const&) = delete;

  /// Takes what the buffer holds and empties it.
  void Append(SerializerBuffer& text);
  /// Closes the file, and throws the first failure.
  void Finish();

 private:
  void Write(std::string_view text);

  std::string const& mPath;
  std::int32_t mDescriptor = -1;
  std::int64_t mStartOffset = -1;  ///< length of the file without the tail; -1 for what has no length
  std::exception_ptr mFailure;
};

}  // namespace SK_PLUGIN
