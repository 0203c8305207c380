#include "InputFile.h"

#include <filesystem>
#include <fstream>

#include "TimeHeader.h"

namespace senmark_tool {

InputFile::InputFile(senmark::Senmark const& manager, std::string const& path, eText text) {
  // Only what bears the format's own name is sure to be read as it stands. All else comes from the library, in
  // the opening that is made anyway.
  bool const isOwnFormat = std::filesystem::path(path).extension() == ".tdjson";
  if (text == eText::kNotNeeded || isOwnFormat) {
    mTextPath = text == eText::kKept ? path : std::string();
    mFile = manager.open(path);
    return;
  }
  mScratch = std::make_unique<ScratchFolder>();
  mTextPath = mScratch->Path("text");
  mFile = manager.open(path, mTextPath);
}

std::optional<TimeBase> InputFile::FindTimeBase() const {
  std::ifstream text(mTextPath, std::ios::binary);
  TimeHeader const header = ReadTimeHeader([&](char* buffer, std::size_t capacity) -> std::size_t {
    text.read(buffer, static_cast<std::streamsize>(capacity));
    return static_cast<std::size_t>(text.gcount());
  });
  if (header.firstTime.empty()) {
    return std::nullopt;
  }
  senmark::Result<std::optional<TimeBase>> base = senmark::attempt([&]() -> std::optional<TimeBase> {
    std::optional<senmark::Extent> const extent = mFile->samples(header.firstSetId).data().extent;
    return extent ? TimeBase::Make(header, extent->start) : std::nullopt;
  });
  return base ? base.value() : std::nullopt;
}

}  // namespace senmark_tool
