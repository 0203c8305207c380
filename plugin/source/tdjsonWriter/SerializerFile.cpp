#include "SerializerFile.h"

#include <cerrno>
#include <utility>

#include "SK_Exception.h"
#include "SK_FileIO.h"
#include "SK_OSFile.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

int OpenForAppending(std::string const& path) {
  return RunFileStep([&] { return File_IO::Open(path.c_str(), false, true); });
}

void AppendText(int descriptor, std::string_view text) {
  RunFileStep([&] {
    if (!File_IO::AppendToTempFile(descriptor, text.data(), text.size(), false)) {
      File_IO::ThrowWriteFailed(errno);
    }
  });
}

void ReserveForAppending(int descriptor, std::int64_t end, std::uint64_t size) {
  SK_NAMESPACE_INT::ReserveFileBlocks(descriptor, static_cast<std::uint64_t>(end), size);
}

void DropReserve(int descriptor, std::int64_t end) noexcept {
  try {
    File_IO::SetEOF(descriptor, end);
  } catch (...) {
    // All that was written is there.
  }
}

void CloseDescriptor(std::int32_t& descriptor) {
  RunFileStep([&] { File_IO::Close(std::exchange(descriptor, -1)); });
}

void CutFile(std::string const& path, std::int64_t length) {
  std::int32_t descriptor = RunFileStep([&] { return File_IO::Open(path.c_str(), false, false); });
  try {
    RunFileStep([&] { File_IO::SetEOF(descriptor, length); });
  } catch (...) {
    try {
      CloseDescriptor(descriptor);
    } catch (...) {
      // That the file could not be cut is what counts.
    }
    throw;
  }
  CloseDescriptor(descriptor);
}

void CreateEmptyFile(std::string const& path) {
  RunFileStep([&] { File_IO::Create(path.c_str(), true, true); });
}

SerializerTail::~SerializerTail() {
  if (mDescriptor == -1) {
    return;
  }
  try {
    if (mStartOffset != -1) {
      File_IO::SetEOF(mDescriptor, mStartOffset);
    }
  } catch (...) {
    // The one who hears of the failure empties the file.
  }
  try {
    CloseDescriptor(mDescriptor);
  } catch (...) {
    // As above.
  }
}

void SerializerTail::Append(SerializerBuffer& text) {
  if (!mFailure) {
    try {
      Write(text.View());
    } catch (...) {
      mFailure = std::current_exception();
    }
  }
  text.Clear();
}

void SerializerTail::Finish() {
  if (mFailure) {
    std::rethrow_exception(mFailure);
  }
  CloseDescriptor(mDescriptor);
}

void SerializerTail::Write(std::string_view text) {
  if (mDescriptor == -1) {
    mDescriptor = OpenForAppending(mPath);
    try {
      mStartOffset = File_IO::Seek(mDescriptor, 0, File_IO::kSeekFromEnd);
    } catch (ns_sensor::SK_Exception const&) {
      // Good enough to be written to. It stays as it is after a failure.
    }
  }
  AppendText(mDescriptor, text);
}

}  // namespace SK_PLUGIN
