/// The file that a command looks into.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ScratchFolder.h"
#include "TimeText.h"
#include "senmark/Host.h"

namespace senmark_tool {

/// A file that is open, with the text that the library reads in its place where that is wanted.
///
/// A file of another kind is converted once: the text of the conversion is kept in a scratch folder until this
/// object goes.
class InputFile {
 public:
  enum class eText : std::uint8_t { kNotNeeded, kKept };

  /// Errors: as `senmark::Senmark::open`; `std::system_error` when there is no room for the text.
  InputFile(senmark::Senmark const& manager, std::string const& path, eText text);

  senmark::File const& File() const { return *mFile; }

  /// How the file writes its times. None: it has no samples, or its text was not kept.
  std::optional<TimeBase> FindTimeBase() const;

 private:
  std::unique_ptr<ScratchFolder> mScratch;
  std::string mTextPath;               ///< empty: not kept
  std::optional<senmark::File> mFile;  ///< always there
};

}  // namespace senmark_tool
