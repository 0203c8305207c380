/// Where the samples of one dynamic node wait for its commit: their final width is known only after the last.
///
/// First all writing, then all reading, then `ClearDump`, which makes the object as new. Records stay in memory up to
/// one mebibyte and go to a temporary file beyond it, or earlier when the buffers of all objects together grow large.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SK_EightBytes.h"
#include "SK_TimeWindow.h"
#include "SK_TimeWindowReader.h"

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

  enum class eTimes : unsigned char {
    kWhole,
    /// A record holds what is new in its time, if times of this length have windows. From the first value whose length
    /// loses bits on records are whole, so that what is read behind it is what it is with whole times.
    kShortened,
    /// The same for texts, written with `WriteText`: also the ends of files lie where they do with whole times.
    kShortenedUntilLong,
  };
  /// The length of every time text, in bytes. Called once, before the first sample.
  void SetTimeLength(unsigned short length, eTimes times = eTimes::kWhole);

  /// Bytes of the place that `PutSample` gives.
  static constexpr std::size_t kPutRoom = 192;

  /// Codes of file operations plus 1000. `std::bad_alloc` when there is no memory even after a spill.
  void WriteSampleNum(std::string const& time, double const& value);
  /// The texts of the numbers, joined by commas.
  void WriteSampleNumArr(std::string const& time, std::vector<double> const& values);
  /// A text of more than 65,535 bytes loses the high bits of its length, and the samples behind it are lost.
  void WriteSampleString(std::string const& time, std::string const& value);
  /// One record from its finished texts; `time` has the length that was set, and its window if that length has one.
  void WriteSample(SK_WaitingTime const& time, std::string_view value) {
    // Where there is room the buffer is below its limit: one that is beyond it holds one record and is full.
    if (mTimes != eTimes::kWhole || mBufferCapacity - mBufferSize < WholeSize(time, value)) {
      WriteAnySample(time, value);
      return;
    }
    AppendWhole(time.text, value);
  }
  /// The same of a text.
  void WriteText(SK_WaitingTime const& time, std::string_view value) {
    std::size_t const countedSize = mCountedSize + WholeSize(time, value);
    if (!mShortensTimes || value.size() > kPutRoom || countedSize > kBufferLimit ||
        mBufferCapacity - mBufferSize < kShortenedRoom) {
      WriteSample(time, value);
      return;
    }
    mCountedSize = countedSize;
    AppendShortened(*time.window, value);
  }
  /// The same of a value that `put` stores: it gets the place for it, with `kPutRoom` bytes, and gives its end there.
  template <typename Put>
  void PutSample(SK_WaitingTime const& time, Put&& put) {
    if (mShortensTimes) {
      if (mBufferCapacity - mBufferSize < kShortenedRoom) {
        MakeRoomFor(kShortenedRoom, mBufferSize + kShortenedRoom > kBufferLimit);
      }
      char* const value = PutTime(mBuffer.get() + mBufferSize, *time.window) + sizeof(ValueLength);
      char* const end = put(value);
      StoreLength(value, static_cast<std::size_t>(end - value));
      mBufferSize = static_cast<std::size_t>(end - mBuffer.get());
      mHasBufferData = true;
      return;
    }
    char value[kPutRoom];
    char const* const end = put(value);
    WriteSample(time, std::string_view(value, static_cast<std::size_t>(end - value)));
  }

  /// The next sample in the order of writing. Behind the last one both texts stay as they were. Codes 1005, 1006,
  /// 1008, 1021, 1054, after which nothing more is delivered.
  void ReadSample(std::string& time, std::string& value);
  /// The same without a copy: the texts are good until the next call. False behind the last sample.
  bool ReadSample(std::string_view& time, std::string_view& value) {
    return ReadShortSample(time, value) || TakeWhole(time, value) || ReadAnySample(time, value);
  }
  /// Reads samples behind the first one for as long as they are short, there are no more than `most`, and `use` takes
  /// them. Gives the number of those that it took; short ones may be left also then.
  /// useBase  gets an `SK_TimeWindowReader const&`, whose base is that of the windows that follow.
  /// use      gets the window of a time as it is stored, and the value, both good until it returns and the value in
  ///          memory of `kPutRoom` bytes, and gives false for a sample that it leaves.
  template <typename UseBase, typename Use>
  std::uint64_t ReadShortSamples(std::uint64_t most, UseBase&& useBase, Use&& use) {
    if (!mReadsShortened) {
      return 0;
    }
    // In variables, as whatever `use` stores could be one of the object's members.
    char const* next = mRead;
    char const* const end = mReadEnd;
    std::uint64_t count = 0;
    useBase(mReadTimes);
    for (ShortRecord record; count != most && FindShort(next, end, record, useBase); ++count) {
      if (!use(record.window, record.value)) {
        break;
      }
      next = record.end;
    }
    mRead = next;
    return count;
  }

  /// Drops everything and deletes the temporary file. No errors.
  void ClearDump() noexcept;

 private:
  using ValueLength = std::uint16_t;
  /// Bytes of one buffer, at most, unless a single record has more. Of texts they are counted with whole times.
  static constexpr std::size_t kBufferLimit = 1048576;
  /// For a shortened time with its length and a value with its own.
  static constexpr std::size_t kShortenedRoom = SK_TimeWindow::kRoom + sizeof(ValueLength) + kPutRoom;

  /// Stores a shortened time, and gives its end.
  char* PutTime(char* out, SK_TimeWindow const& time) {
    if (time.BaseID() != mBaseID) {
      out = time.PutBase(out);
      mBaseID = time.BaseID();
    }
    return time.Put(out);
  }

  static void StoreLength(char* value, std::size_t length) {
    auto const stored = static_cast<ValueLength>(length);
    std::memcpy(value - sizeof(stored), &stored, sizeof(stored));
  }

  static std::size_t WholeSize(SK_WaitingTime const& time, std::string_view value) {
    return time.text.size() + sizeof(ValueLength) + value.size();
  }

  struct ShortRecord {
    char const* window;
    std::string_view value;
    char const* end;
  };
  /// A record with a shortened time and a short value that is none of the last in its buffer or file. Takes a base that
  /// it begins with; taken again, that is the same.
  template <typename UseBase>
  bool FindShort(char const* next, char const* end, ShortRecord& record, UseBase&& useBase) {
    if (static_cast<std::size_t>(end - next) < kShortenedRoom) {
      return false;
    }
    record.window = next;
    if (!mReadTimes.IsWindow(next)) {
      record.window = mReadTimes.TakeBase(next);
      if (record.window == nullptr) {
        return false;
      }
      useBase(mReadTimes);
    }
    ValueLength length = 0;
    char const* const value = record.window + SK_TimeWindow::kStoredSize + sizeof(length);
    std::memcpy(&length, value - sizeof(length), sizeof(length));
    record.value = std::string_view(value, length);
    record.end = value + length;
    return length <= kPutRoom;
  }
  bool ReadShortSample(std::string_view& time, std::string_view& value) {
    ShortRecord record;
    if (!mReadsShortened || !FindShort(mRead, mReadEnd, record, [](SK_TimeWindowReader const&) {})) {
      return false;
    }
    time = MakeTime(record.window);
    value = record.value;
    mRead = record.end;
    return true;
  }
  /// Good until the next one is made.
  std::string_view MakeTime(char const* window) {
    mReadTimes.CopyBaseTo(mTimeText);
    SK_TimeWindowReader::CopyWindowTo(mTimeText, window);
    return std::string_view(mTimeText, mTimeLength);
  }
  /// A record with a whole time, if that is the next one and all of it is there.
  bool TakeWhole(std::string_view& time, std::string_view& value) {
    std::size_t const left = static_cast<std::size_t>(mReadEnd - mRead);
    std::size_t const head = mTimeLength + sizeof(ValueLength);
    if (mReadsShortened || left < head) {
      return false;
    }
    ValueLength length = 0;
    char const* const start = mRead + head;
    std::memcpy(&length, start - sizeof(length), sizeof(length));
    if (left - head < length) {
      return false;
    }
    time = std::string_view(mRead, mTimeLength);
    value = std::string_view(start, length);
    mRead = start + length;
    return true;
  }
  /// A record with a whole time, for which there is room.
  void AppendWhole(std::string_view time, std::string_view value) {
    using SK_NAMESPACE_INT::CopyShortText;
    char* const start = CopyShortText(mBuffer.get() + mBufferSize, time) + sizeof(ValueLength);
    StoreLength(start, value.size());
    mBufferSize = static_cast<std::size_t>(CopyShortText(start, value) - mBuffer.get());
    mHasBufferData = true;
  }

  /// One with a shortened time, for which there is room.
  void AppendShortened(SK_TimeWindow const& time, std::string_view value) {
    char* const start = PutTime(mBuffer.get() + mBufferSize, time) + sizeof(ValueLength);
    StoreLength(start, value.size());
    mBufferSize = static_cast<std::size_t>(SK_NAMESPACE_INT::CopyShortText(start, value) - mBuffer.get());
    mHasBufferData = true;
  }

  void BeginAnew() noexcept;
  void WriteAlone(std::string const& time, std::string_view value);
  void WriteAnySample(SK_WaitingTime const& time, std::string_view value);
  bool ReadAnySample(std::string_view& time, std::string_view& value);
  bool PassesLimit(SK_WaitingTime const& time, std::string_view value, std::size_t recordLength) const;
  void AddToBuffer(SK_WaitingTime const& time, std::string_view value);
  void MakeRoomFor(std::size_t recordLength, bool passesLimit);
  void FlushBufferToFile();
  void ExecBeforeRead();

  void ReserveFor(std::size_t recordLength);
  bool ShouldSpillEarly(std::size_t recordLength) const;
  void SpillEarly();
  void FreeBuffer() noexcept;
  void MakeTempFile();
  void AppendBufferToFile();
  void CloseTempFile();
  void CutFileBack() noexcept;
  void DeleteTempFile() noexcept;
  void DropMapping() noexcept;
  bool TakeRecord(std::string_view& time, std::string_view& value);
  bool TakeAnyShortened(std::string_view& time, std::string_view& value);

  std::unique_ptr<char[]> mBuffer;  // not cleared
  std::size_t mBufferSize = 0;      // of the records in it
  std::size_t mBufferCapacity = 0;  // also part of the count of the process
  unsigned short mTimeLength = 0;
  eTimes mTimes = eTimes::kWhole;
  bool mShortensTimes = false;      // of the records that are written
  bool mReadsShortened = false;     // the same of reading
  bool mBufferIsShortened = false;  // the same of what the buffer begins with
  std::size_t mCountedSize = 0;     // of texts, with whole times, since the limit was reached
  std::uint64_t mBaseID = 0;        // of the time that was written last; 0: none
  SK_TimeWindowReader mReadTimes;
  char mTimeText[SK_TimeWindow::kLongest];  // that was read last, of shortened ones
  bool mHasFileData = false;
  bool mHasBufferData = false;
  int mFileDescriptor = -1;
  std::string mTempFilePath;
  long long mFileBytes = 0;  // of whole records in the temporary file
  bool mFileIsWhole = true;  // nothing lies behind them
  bool mReadPrepared = false;
  std::unique_ptr<SK_NAMESPACE_INT::SK_FileMapper> mFileMapper;
  char const* mRead = nullptr;  // the next record, in the mapping or in the buffer
  char const* mReadEnd = nullptr;
  bool mReadsBuffer = false;
  bool mReadDone = false;
  std::string mValueText;  // of the sample being written; kept for its memory
};

}  // namespace SK_PLUGIN
