/// Where the samples of one dynamic node wait for its commit: their final width is known only after the last.
///
/// First all writing, then all reading, then `ClearDump`, which makes the object as new. Records stay in memory up to
/// one mebibyte and go to a temporary file beyond it, or earlier when the buffers of all objects together grow large.
#pragma once

#include <cstddef>
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

  /// Codes of file operations plus 1000. `std::bad_alloc` when there is no memory even after a spill.
  void WriteSampleNum(std::string const& time, double const& value);
  /// The texts of the numbers, joined by commas.
  void WriteSampleNumArr(std::string const& time, std::vector<double> const& values);
  /// A text of more than 65,535 bytes loses the high bits of its length, and the samples behind it are lost.
  void WriteSampleString(std::string const& time, std::string const& value);
  /// One record from its finished texts; `time` has the length that was set.
  void WriteSample(std::string_view time, std::string_view value);

  /// The next sample in the order of writing. Behind the last one both texts stay as they were. Codes 1005, 1006,
  /// 1008, 1021, 1054, after which nothing more is delivered.
  void ReadSample(std::string& time, std::string& value);
  /// The same without a copy: the texts are good until the next call. False behind the last sample.
  bool ReadSample(std::string_view& time, std::string_view& value);

  /// Drops everything and deletes the temporary file. No errors.
  void ClearDump() noexcept;

 private:
  void AddToBuffer(std::size_t recordLength, std::string_view time, std::string_view value, bool mayFlush);
  void FlushBufferToFile();
  void ExecBeforeRead();

  void ReserveFor(std::size_t recordLength);
  bool WouldPassShare(std::size_t recordLength) const;
  void SpillEarly();
  void FreeBuffer() noexcept;
  void MakeTempFile();
  void AppendBufferToFile();
  void CloseTempFile();
  void CutFileBack() noexcept;
  void DeleteTempFile() noexcept;
  void DropMapping() noexcept;
  bool TakeRecord(char const*& read, char const* end, std::string_view& time, std::string_view& value);

  std::unique_ptr<char[]> mBuffer;  // not cleared
  std::size_t mBufferSize = 0;      // of the records in it
  std::size_t mBufferCapacity = 0;  // also part of the count of the process
  std::size_t mBufferReadOffset = 0;
  unsigned short mTimeLength = 0;
  bool mHasFileData = false;
  bool mHasBufferData = false;
  int mFileDescriptor = -1;
  std::string mTempFilePath;
  long long mFileBytes = 0;  // of whole records in the temporary file
  bool mFileIsWhole = true;  // nothing lies behind them
  bool mReadPrepared = false;
  std::unique_ptr<SK_NAMESPACE_INT::SK_FileMapper> mFileMapper;
  char const* mMappedEnd = nullptr;
  char const* mMappedRead = nullptr;
  bool mReadDone = false;
  std::string mArrayText;  // of the sample being written; kept for its memory
};

}  // namespace SK_PLUGIN
