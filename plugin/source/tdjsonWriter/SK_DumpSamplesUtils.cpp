#include "SK_DumpSamplesUtils.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

#include "SK_EightBytes.h"
#include "SK_FileIO.h"
#include "SK_FileMapper.h"
#include "SK_WriterFailure.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

namespace {

// A skeleton has many nodes that all collect at once: each could hold a mebibyte, and together they would hold more
// than the converted file. So the buffers of the process share a bound. A buffer that would pass it by growing goes
// to its file first, but not while it is so small that the write would cost more than the memory is worth.
constexpr std::size_t kProcessLimit = std::size_t{8} << 20;
constexpr std::size_t kSmallestEarlySpill = 65536;

// Bytes of one write. Systems keep what is written in pieces of its size, and have large ones less at hand.
constexpr std::size_t kPieceSize = std::size_t{256} << 10;

// Buffers grow by powers of two, from here, and so end at the limit exactly.
constexpr std::size_t kFirstCapacity = 256;

// What the buffers of all objects hold. Only a bound hangs on it and no memory, so no order is needed.
std::atomic<std::size_t> gBufferedBytes{0};

// What may be written behind a record.
constexpr std::size_t kBehind = SK_TimeWindow::kRoom;

// What stands where a shortened time would begin, in front of the first record that is whole again.
constexpr char kWholeFollow = '\x7E';

// Of that record, as the length loses bits.
constexpr std::size_t kLongLength = 65536;

std::size_t CapacityFor(std::size_t size, std::size_t least, std::size_t limit) {
  if (size > limit) {
    return size;
  }
  std::size_t capacity = least;
  while (capacity < size) {
    capacity *= 2;
  }
  return capacity;
}

}  // namespace

SK_DumpSamplesUtils::SK_DumpSamplesUtils() = default;

SK_DumpSamplesUtils::~SK_DumpSamplesUtils() {
  ClearDump();
  // Still there if a step of that failed.
  DeleteTempFile();
}

void SK_DumpSamplesUtils::SetTimeLength(unsigned short length, eTimes times) {
  mTimeLength = length;
  mTimes = SK_TimeWindow::AreFor(length) ? times : eTimes::kWhole;
  BeginAnew();
}

void SK_DumpSamplesUtils::BeginAnew() noexcept {
  mShortensTimes = mTimes != eTimes::kWhole;
  mReadsShortened = mShortensTimes;
  mBufferIsShortened = mShortensTimes;
  mCountedSize = 0;
  mBaseID = 0;
  mReadTimes.Reset(mTimeLength);
}

void SK_DumpSamplesUtils::WriteSampleNum(std::string const& time, double const& value) {
  mValueText = SK_WriterNumberText(value).View();
  WriteAlone(time, mValueText);
}

void SK_DumpSamplesUtils::WriteSampleNumArr(std::string const& time, std::vector<double> const& values) {
  mValueText.clear();
  for (double const value : values) {
    if (!mValueText.empty()) {
      mValueText += ',';
    }
    mValueText += SK_WriterNumberText(value).View();
  }
  WriteAlone(time, mValueText);
}

void SK_DumpSamplesUtils::WriteSampleString(std::string const& time, std::string const& value) {
  WriteAlone(time, value);
}

// Of a time whose window nobody has made.
void SK_DumpSamplesUtils::WriteAlone(std::string const& time, std::string_view value) {
  SK_TimeWindow window;
  if (mShortensTimes) {
    char padded[SK_TimeWindow::kLongest] = {};
    time.copy(padded, sizeof(padded));
    window.Set(padded, mTimeLength);
  }
  WriteAnySample({time, &window}, value);
}

void SK_DumpSamplesUtils::WriteAnySample(SK_WaitingTime const& time, std::string_view value) {
  std::size_t const recordLength =
      (mShortensTimes ? SK_TimeWindow::kRoom : time.text.size()) + sizeof(ValueLength) + value.size();
  MakeRoomFor(recordLength, PassesLimit(time, value, recordLength));
  AddToBuffer(time, value);
}

void SK_DumpSamplesUtils::ReadSample(std::string& time, std::string& value) {
  std::string_view timeText;
  std::string_view valueText;
  if (ReadSample(timeText, valueText)) {
    time.assign(timeText);
    value.assign(valueText);
  }
}

bool SK_DumpSamplesUtils::ReadAnySample(std::string_view& time, std::string_view& value) {
  if (mReadDone) {
    return false;
  }
  // What lies in the file is older.
  if (mHasFileData) {
    ExecBeforeRead();
    if (mRead < mReadEnd) {
      return TakeRecord(time, value);
    }
    // Only now: the texts of the call before lay in the mapping.
    mHasFileData = false;
    DropMapping();
  }
  if (mHasBufferData && !mReadsBuffer) {
    mReadsBuffer = true;
    mReadsShortened = mBufferIsShortened;
    mRead = mBuffer.get();
    mReadEnd = mRead + mBufferSize;
  }
  if (mRead < mReadEnd) {
    return TakeRecord(time, value);
  }
  mReadDone = true;
  return false;
}

void SK_DumpSamplesUtils::ClearDump() noexcept {
  FreeBuffer();
  mHasFileData = false;
  mHasBufferData = false;
  mFileBytes = 0;
  mFileIsWhole = true;
  mReadPrepared = false;
  mRead = nullptr;
  mReadEnd = nullptr;
  mReadsBuffer = false;
  mReadDone = false;
  BeginAnew();
  try {
    File_IO::Close(std::exchange(mFileDescriptor, -1));
    mFileMapper.reset();
    if (!mTempFilePath.empty()) {
      File_IO::Delete(mTempFilePath.c_str());
      mTempFilePath.clear();
    }
  } catch (...) {
    // The caller has a failure of its own to report, or none. What is left goes with the object.
  }
}

// What is read astray behind a long text ends where the file does, so the ends of texts in files lie where they do with
// whole times. In front of such a text they may also lie elsewhere.
bool SK_DumpSamplesUtils::PassesLimit(SK_WaitingTime const& time, std::string_view value,
                                      std::size_t recordLength) const {
  return mTimes == eTimes::kShortenedUntilLong ? mCountedSize + WholeSize(time, value) > kBufferLimit
                                               : mBufferSize + recordLength > kBufferLimit;
}

// There is room for it.
void SK_DumpSamplesUtils::AddToBuffer(SK_WaitingTime const& time, std::string_view value) {
  mCountedSize += WholeSize(time, value);
  if (mShortensTimes && value.size() >= kLongLength) {
    mBuffer[mBufferSize++] = kWholeFollow;
    mShortensTimes = false;
  }
  mShortensTimes ? AppendShortened(*time.window, value) : AppendWhole(time.text, value);
}

// For one more record: memory, and before it has to be more than there may be, the file.
void SK_DumpSamplesUtils::MakeRoomFor(std::size_t recordLength, bool passesLimit) {
  if (passesLimit) {
    FlushBufferToFile();
    mCountedSize = 0;
    ReserveFor(recordLength);
    return;
  }
  if (ShouldSpillEarly(recordLength)) {
    SpillEarly();
  }
  try {
    ReserveFor(recordLength);
  } catch (...) {
    FlushBufferToFile();
    ReserveFor(recordLength);
  }
}

void SK_DumpSamplesUtils::FlushBufferToFile() {
  if (mBufferSize == 0) {
    return;
  }
  RunFileStep([this] {
    if (mFileDescriptor == -1) {
      if (!mHasFileData) {
        MakeTempFile();
      }
      mFileDescriptor = File_IO::Open(mTempFilePath.c_str(), false, true);
    }
    AppendBufferToFile();
  });
  mHasBufferData = false;
  mHasFileData = true;
  mBufferSize = 0;
  // The memory too: the node may get no further sample, while others need theirs. Not what goes on in small pieces.
  if (!mShortensTimes || mBufferCapacity > kPieceSize) {
    FreeBuffer();
  }
  // The next buffer begins with a base, so that it can be read also if the file lost its end.
  mBaseID = 0;
  mBufferIsShortened = mShortensTimes;
  // Before the limit is reached the count goes on as if nothing had been written, for as long as that may be.
  mCountedSize = mShortensTimes ? mCountedSize : 0;
}

void SK_DumpSamplesUtils::ExecBeforeRead() {
  if (mReadPrepared) {
    return;
  }
  mReadPrepared = true;
  // Stays if a step fails: what lies in the buffer must not pass for all samples.
  mReadDone = true;
  CloseTempFile();
  RunFileStep([this] {
    mFileMapper = std::make_unique<SK_NAMESPACE_INT::SK_FileMapper>(mTempFilePath);
    mRead = mFileMapper->GetFilePointer();
    mReadEnd = mRead + mFileMapper->GetFileSize();
  });
  mReadDone = false;
}

// Gives memory for one more record.
void SK_DumpSamplesUtils::ReserveFor(std::size_t recordLength) {
  std::size_t const size = mBufferSize + recordLength;
  if (size <= mBufferCapacity) {
    return;
  }
  // Texts may pass the limit a little, each by what stands around its base, and not each of them moves all.
  std::size_t const spare = mTimes == eTimes::kShortenedUntilLong && size > kBufferLimit ? kPieceSize : 0;
  // A node with a file fills its next buffer too, most likely.
  std::size_t const least = mHasFileData ? kSmallestEarlySpill : kFirstCapacity;
  std::size_t const capacity = CapacityFor(size + spare, least, kBufferLimit);
  std::unique_ptr<char[]> buffer(new char[capacity + kBehind]);
  if (mBufferSize != 0) {
    std::memcpy(buffer.get(), mBuffer.get(), mBufferSize);
  }
  mBuffer = std::move(buffer);
  gBufferedBytes.fetch_add(capacity - mBufferCapacity, std::memory_order_relaxed);
  mBufferCapacity = capacity;
}

bool SK_DumpSamplesUtils::ShouldSpillEarly(std::size_t recordLength) const {
  std::size_t const size = mBufferSize + recordLength;
  if (size <= mBufferCapacity || mBufferSize < kSmallestEarlySpill) {
    return false;
  }
  // Where there is a file, nothing is gained by more than is written at once.
  if (mShortensTimes && mHasFileData && mBufferCapacity >= kPieceSize) {
    return true;
  }
  std::size_t const growth = CapacityFor(size, kSmallestEarlySpill, kBufferLimit) - mBufferCapacity;
  return gBufferedBytes.load(std::memory_order_relaxed) + growth > kProcessLimit;
}

// A file that cannot be made or written is no failure here: the buffer has not reached its own limit, and a
// conversion for which memory is enough does not depend on the disk. It does not stay open either: a file of a
// thousand streams would have no descriptor left for its output.
void SK_DumpSamplesUtils::SpillEarly() {
  try {
    FlushBufferToFile();
  } catch (...) {
    if (!mFileIsWhole) {
      throw;
    }
  }
  CloseTempFile();
}

void SK_DumpSamplesUtils::FreeBuffer() noexcept {
  mBuffer.reset();
  mBufferSize = 0;
  gBufferedBytes.fetch_sub(std::exchange(mBufferCapacity, 0), std::memory_order_relaxed);
}

void SK_DumpSamplesUtils::MakeTempFile() {
  DeleteTempFile();  // of an attempt that failed
  File_IO::GetTempFile(mTempFilePath, std::string());
  File_IO::Create(mTempFilePath.c_str(), true, false);
}

void SK_DumpSamplesUtils::AppendBufferToFile() {
  for (std::size_t at = 0; at < mBufferSize; at += kPieceSize) {
    std::size_t const size = std::min(kPieceSize, mBufferSize - at);
    if (!File_IO::AppendToTempFile(mFileDescriptor, mBuffer.get() + at, size, false)) {
      int const reason = errno;
      CutFileBack();
      File_IO::ThrowWriteFailed(reason);
    }
  }
  mFileBytes += static_cast<long long>(mBufferSize);
}

void SK_DumpSamplesUtils::CloseTempFile() {
  RunFileStep([this] { File_IO::Close(std::exchange(mFileDescriptor, -1)); });
}

// A write may have stopped in the middle of a record, behind which no other may come.
void SK_DumpSamplesUtils::CutFileBack() noexcept {
  try {
    File_IO::SetEOF(mFileDescriptor, mFileBytes);
  } catch (...) {
    mFileIsWhole = false;
  }
}

void SK_DumpSamplesUtils::DeleteTempFile() noexcept {
  if (mTempFilePath.empty()) {
    return;
  }
  try {
    File_IO::Delete(mTempFilePath.c_str());
  } catch (...) {
    // Nobody can be told from here.
  }
  mTempFilePath.clear();
}

void SK_DumpSamplesUtils::DropMapping() noexcept {
  mRead = nullptr;
  mReadEnd = nullptr;
  mFileMapper.reset();
}

// One record, if all of it is there. A length that lost its high bits sends the reading astray, so nothing says that
// the next bytes are a record.
bool SK_DumpSamplesUtils::TakeRecord(std::string_view& time, std::string_view& value) {
  // Where nothing was written whole, the file is damaged.
  if (mReadsShortened && !mShortensTimes && *mRead == kWholeFollow) {
    ++mRead;
    mReadsShortened = false;
  }
  if (mReadsShortened ? TakeAnyShortened(time, value) : TakeWhole(time, value)) {
    return true;
  }
  mReadDone = true;
  mRead = mReadEnd;
  return false;
}

bool SK_DumpSamplesUtils::TakeAnyShortened(std::string_view& time, std::string_view& value) {
  std::size_t const left = static_cast<std::size_t>(mReadEnd - mRead);
  // Behind the last record there may be no byte to read.
  char stored[SK_TimeWindow::kRoom] = {};
  std::memcpy(stored, mRead, std::min(left, sizeof(stored)));
  char const* const window = mReadTimes.IsWindow(stored) ? stored : mReadTimes.TakeBase(stored);
  if (window == nullptr) {
    return false;
  }
  std::size_t const head = static_cast<std::size_t>(window - stored) + SK_TimeWindow::kStoredSize + sizeof(ValueLength);
  if (left < head) {
    return false;
  }
  ValueLength valueLength = 0;
  std::memcpy(&valueLength, mRead + head - sizeof(valueLength), sizeof(valueLength));
  if (left - head < valueLength) {
    return false;
  }
  time = MakeTime(window);
  value = std::string_view(mRead + head, valueLength);
  mRead += head + valueLength;
  return true;
}

}  // namespace SK_PLUGIN
