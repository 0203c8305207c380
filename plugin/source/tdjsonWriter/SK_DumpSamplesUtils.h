/// Where the samples of one dynamic node wait for its commit: their final width is known only after the last.
///
/// First all writing, then all reading, then `ClearDump`. Records stay in memory up to one mebibyte and go to a
/// temporary file beyond it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace SK_NAMESPACE_INT {
class SK_FileMapper;
}

namespace SK_PLUGIN {

class SK_DumpSamplesUtils {
 public:
  SK_DumpSamplesUtils();
  /// Deletes the temporary file if `ClearDump` was never called.
  ~SK_DumpSamplesUtils();
  SK_DumpSamplesUtils(SK_DumpSamplesUtils const&) = delete;
  SK_DumpSamplesUtils& operator=(SK_DumpSamplesUtils const&) = delete;

  /// The length of every time text, in bytes. Called once, before the first sample.
  void SetTimeLength(unsigned short length) { mTimeLength = length; }

  /// Codes of file operations plus 1000, 1034 no memory.
  void WriteSampleNum(std::string const& time, double const& value);
  /// The texts of the numbers, joined by commas.
  void WriteSampleNumArr(std::string const& time, std::vector<double> const& values);
  /// A text of more than 65,535 bytes loses the high bits of its length, and the samples behind it are lost.
  void WriteSampleString(std::string const& time, std::string const& value);
  /// One record from its finished texts; `time` has the length that was set.
  void WriteSample(std::string_view time, std::string_view value);

  /// The next sample in the order of writing. Behind the last one both texts stay as they were.
  void ReadSample(std::string& time, std::string& value);
  /// The same without a copy: the texts are good until the next call. False behind the last sample.
  bool ReadSample(std::string_view& time, std::string_view& value);

  /// Drops everything and deletes the temporary file. No errors.
  void ClearDump() noexcept;

 private:
  std::string mBuffer;
  std::int32_t mBufferReadOffset = 0;
  unsigned short mTimeLength = 0;
  bool mHasFileData = false;
  bool mHasBufferData = false;
  std::int32_t mFileDescriptor = -1;
  std::string mTempFilePath;
  bool mReadPrepared = false;
  std::unique_ptr<SK_NAMESPACE_INT::SK_FileMapper> mFileMapper;
  char const* mMappedStart = nullptr;
  char const* mMappedEnd = nullptr;
  char const* mMappedRead = nullptr;
  bool mReadDone = false;
};

}  // namespace SK_PLUGIN
