#include "Serializer.h"

#include <algorithm>
#include <new>
#include <utility>

#include "SK_DumpSamplesUtils.h"
#include "SK_FileIO.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "SerializerArraySample.h"
#include "SerializerBuffer.h"
#include "SerializerFile.h"
#include "SerializerOutline.h"
#include "SerializerSample.h"
#include "SerializerText.h"
#include "SerializerTextSample.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

namespace {

/// Samples go to the file in pieces that begin and end at multiples of this, but for the first and the last: whole
/// pages, and few enough bytes to stay in the processor's cache until the system has taken them.
constexpr std::size_t kPieceSize = std::size_t{256} << 10;

/// Blocks are set aside for so many bytes at once: so many that it does not happen often, and few enough to be missed
/// by nobody if they turn out not to be needed.
constexpr std::int64_t kReserveStep = std::int64_t{64} << 20;

void serialize_TimeCodeInfo(SerializerBuffer& text, ns_sensor::SK_TimeCodeInfo const& info) {
  JSON_BoolObj(text, "useTimecodeB", true);
  text.Put(R"(,"timecodeInfo":{"frameRate":{)");
  JSON_NumObj(text, "value", info.frameRate.value);
  text.Put(',');
  JSON_NumObj(text, "scale", info.frameRate.scale);
  text.Put("},");
  JSON_BoolObj(text, "dropFrame", info.dropFrame != 0);
  text.Put('}');
}

void serialize_UTCInfo(SerializerBuffer& text, ns_sensor::SK_UTCInfo const& info) {
  JSON_BoolObj(text, "useTimecodeB", false);
  text.Put(R"(,"utcInfo":{)");
  JSON_NumObj(text, "precisionLength", info.precisionLength);
  text.Put(',');
  JSON_BoolObj(text, "isGMT", info.isGMT);
  text.Put('}');
}

void serialize_SyncTime(SerializerBuffer& text, ns_sensor::SK_VideoSyncTime const& syncTime) {
  text.Put('{');
  JSON_StrObj(text, "fileName", syncTime.fileName);
  text.Put(',');
  if (auto const* const time = boost::get<std::string>(&syncTime.value.value)) {
    JSON_StrObj(text, "timeString", *time);
  } else if (auto const* const frame = boost::get<int>(&syncTime.value.value)) {
    JSON_NumObj(text, "frameNumber", *frame);
  } else {
    ThrowWriterError(kEmptySyncTime);
  }
  text.Put('}');
}

}  // namespace

Serializer::Serializer(std::shared_ptr<TdjsonRootImpl> root)
    : mRoot(std::move(root)), mFilePath(mRoot ? mRoot->GetTDJSONPath() : std::string()) {}

void Serializer::serializeVersionToFile() {
  RequireRoot();
  SerializerBuffer text;
  text.Put('{');
  serialize_version(text);
  if (mHeaderEndOffset == -1) {
    mHeaderEndOffset = static_cast<std::int64_t>(text.Size());
  }
  text.Put(',');
  JSON_BoolObj(text, "dynamicSamplesPresentB", mRoot->IsDynamicSamplesPresent());
  if (mRoot->IsDynamicSamplesPresent()) {
    text.Put(',');
    serialize_DynamicInfo(text);
  }
  CreateEmptyFile(mFilePath);
  SerializerTail file(mFilePath);
  file.Append(text);
  file.Finish();
  mVersionWritten = true;
}

void Serializer::serialize_NumDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump,
                                             std::uint64_t sampleCount,
                                             ns_sensor::SK_NumberProperties const& properties) {
  NumberField const field(properties.pattern);
  serializeSet(
      sampleSetID, dump, sampleCount,
      [&](SerializerBuffer& text, std::string_view time, std::string_view value) {
        AppendNumberSample(text, time, value, field);
      },
      [&](SerializerBuffer& text, std::size_t room, std::uint64_t most) {
        return AppendPackedSamples(text, dump, field, room, most);
      });
}

void Serializer::serialize_NumArrDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump,
                                                std::uint64_t sampleCount,
                                                ns_sensor::SK_NumberArrayProperties const& properties) {
  NumberField const field(properties.pattern);
  serializeSet(
      sampleSetID, dump, sampleCount,
      [&](SerializerBuffer& text, std::string_view time, std::string_view value) {
        AppendNumberArraySample(text, time, value, field);
      },
      [&](SerializerBuffer& text, std::size_t room, std::uint64_t most) {
        return AppendPackedArrays(text, dump, field, room, most);
      });
}

void Serializer::serialize_PaddedStrDynamicSamples(std::string const& sampleSetID, SK_DumpSamplesUtils& dump,
                                                   std::uint64_t sampleCount,
                                                   ns_sensor::SK_StringProperties const& properties) {
  StringField const field(properties);
  serializeSet(
      sampleSetID, dump, sampleCount,
      [&](SerializerBuffer& text, std::string_view time, std::string_view value) {
        AppendStringSample(text, time, value, field);
      },
      [&](SerializerBuffer& text, std::size_t room, std::uint64_t most) {
        return AppendShortTextSamples(text, dump, field, room, most);
      });
}

// The outline goes to the file while it is made. Nobody sees that: what is wrong with it is found later than a
// full disk, but told before it, and in both cases the file is cut back before the root empties it.
void Serializer::serializeRootToFile() {
  RequireRoot();
  if (!mVersionWritten) {
    serializeVersionToFile();
  }
  SerializerBuffer text;
  if (mRoot->IsDynamicSamplesPresent()) {
    if (mSamplesStarted) {
      text.Put(']');
    } else {
      DropPromiseOfSamples();
      text.Put(',');
      JSON_BoolObj(text, "dynamicSamplesPresentB", false);
    }
  }
  if (!mRoot->GetCreator().empty()) {
    text.Put(',');
    JSON_StrObj(text, "creator", mRoot->GetCreator());
  }
  text.Put(',');
  SerializerTail file(mFilePath);
  SerializerOutline outline(text, [&](SerializerBuffer& piece) { file.Append(piece); });
  outline.serialize_Outline(*mRoot);
  text.Put('}');
  file.Append(text);
  file.Finish();
}

void Serializer::clearDynamicSamples() {
  try {
    CloseDescriptor(mFileDescriptor);
    if (mSetStartOffset != -1) {
      CutFile(mFilePath, mSetStartOffset);
      mSetStartOffset = -1;
    }
    return;
  } catch (...) {
    // Nothing is known of the file any more.
  }
  try {
    clearFile();
  } catch (...) {
    // There is one code for a failed way back, however far it failed.
  }
  ThrowWriterError(kRollBackFailed);
}

void Serializer::clearFile() {
  mVersionWritten = false;
  mSamplesStarted = false;
  mSetStartOffset = -1;
  if (!mRoot) {
    return;
  }
  mRoot->ResetRoot();
  try {
    CloseDescriptor(mFileDescriptor);
  } catch (SK_PluginException const&) {
    // What may be missing in the file goes away now in any case.
  }
  CreateEmptyFile(mFilePath);
}

void Serializer::RequireRoot() const {
  if (!mRoot) {
    ThrowWriterError(kNoRoot);
  }
}

void Serializer::serialize_version(SerializerBuffer& text) const {
  JSON_StrObj(text, "version", "tdjson2.0.0");
}

void Serializer::serialize_DynamicInfo(SerializerBuffer& text) const {
  text.Put(R"("dynamicDataInfo":{)");
  if (auto const* const timeCode = boost::get<ns_sensor::SK_TimeCodeInfo>(&mRoot->GetTimeInfo())) {
    serialize_TimeCodeInfo(text, *timeCode);
  } else if (auto const* const utc = boost::get<ns_sensor::SK_UTCInfo>(&mRoot->GetTimeInfo())) {
    serialize_UTCInfo(text, *utc);
  } else {
    ThrowWriterError(kNoTimeInfo);
  }
  std::vector<ns_sensor::SK_VideoSyncTime> const& syncTimes = mRoot->GetVideoSyncTimeList();
  if (!syncTimes.empty()) {
    text.Put(R"(,"videoSyncTimeList":[)");
    for (ns_sensor::SK_VideoSyncTime const& syncTime : syncTimes) {
      if (&syncTime != &syncTimes.front()) {
        text.Put(',');
      }
      serialize_SyncTime(text, syncTime);
    }
    text.Put(']');
  }
  text.Put('}');
}

// Takes back the head's word that there are samples, and the time base with it.
void Serializer::DropPromiseOfSamples() {
  if (mHeaderEndOffset != -1) {
    CutFile(mFilePath, mHeaderEndOffset);
    mHeaderEndOffset = -1;
  }
}

// One sample at a time, and behind it as many as `appendMany` takes by itself: none of what goes wrong can happen
// there.
template <typename AppendSample, typename AppendMany>
void Serializer::serializeSet(std::string const& sampleSetID, SK_DumpSamplesUtils& dump, std::uint64_t sampleCount,
                              AppendSample const& appendSample, AppendMany const& appendMany) {
  if (sampleCount == 0) {
    return;
  }
  RequireRoot();
  if (!mVersionWritten) {
    serializeVersionToFile();
  }
  // Where the file ends is known only once there is something to write.
  mBytesToPieceEnd = kPieceSize;
  mReservedLength = 0;
  mLikelySetSize = 0;
  SerializerBuffer buffer;
  if (!mSamplesStarted) {
    buffer.Put(R"(,"dataDynamicSamples":[)");
  }
  // The root remembers a first set also when that was cut off again. The array is opened anew then, and the comma
  // comes all the same.
  if (!mRoot->SetHasFirstSetArrived()) {
    buffer.Put(',');
  }
  buffer.Put('{');
  JSON_StrObj(buffer, "sampleSetID", sampleSetID);
  buffer.Put(R"(,"samples":[)");
  for (std::uint64_t i = 0; i != sampleCount;) {
    std::string_view time;
    std::string_view value;
    if (!dump.ReadSample(time, value) || (time.empty() && value.empty())) {
      break;
    }
    if (time.empty() || value.empty()) {
      ThrowWriterError(kHalfEmptySample);
    }
    addToBuffer(buffer, [&] {
      std::size_t const before = buffer.Size();
      if (i != 0) {
        buffer.Put(',');
      }
      appendSample(buffer, time, value);
      // All samples of a set are equally wide, nearly always.
      mLikelySetSize = (buffer.Size() - before) * sampleCount;
    });
    ++i;
    i += appendMany(buffer, std::min(buffer.Free(), mBytesToPieceEnd - buffer.Size()), sampleCount - i);
  }
  buffer.Put("]}");
  serializeSamplesToFile(buffer.View(), true);
  mSamplesStarted = true;
}

// A sample for which there is no memory beside what the buffer holds goes into the empty buffer.
template <typename AppendSample>
void Serializer::addToBuffer(SerializerBuffer& buffer, AppendSample const& appendSample) {
  std::size_t const before = buffer.Size();
  try {
    appendSample();
  } catch (std::bad_alloc const&) {
    buffer.Truncate(before);
    serializeSamplesToFile(buffer.View(), false);
    buffer.Clear();
    appendSample();
  }
  if (buffer.Size() >= mBytesToPieceEnd) {
    std::size_t const size = buffer.Size() - (buffer.Size() - mBytesToPieceEnd) % kPieceSize;
    serializeSamplesToFile(buffer.View().substr(0, size), false);
    buffer.DropFront(size);
  }
}

void Serializer::serializeSamplesToFile(std::string_view text, bool last) {
  if (mFileDescriptor == -1) {
    mFileDescriptor = OpenForAppending(mFilePath);
    if (mSetStartOffset == -1) {
      mSetStartOffset = RunFileStep([&] { return File_IO::Seek(mFileDescriptor, 0, File_IO::kSeekFromEnd); });
      mLength = mSetStartOffset;
    }
  }
  if (!last) {
    reserveBlocks(text.size());
  }
  AppendText(mFileDescriptor, text);
  mLength += static_cast<std::int64_t>(text.size());
  mBytesToPieceEnd = kPieceSize - static_cast<std::size_t>(mLength) % kPieceSize;
  if (last) {
    if (mReservedLength > mLength) {
      DropReserve(mFileDescriptor, mLength);
    }
    CloseDescriptor(mFileDescriptor);
    mSetStartOffset = -1;
  }
}

void Serializer::reserveBlocks(std::size_t size) {
  auto const left = static_cast<std::int64_t>(mLikelySetSize) - (mLength - mSetStartOffset);
  if (mLength + static_cast<std::int64_t>(size) > mReservedLength && left > 0) {
    std::int64_t const step = std::min(left, kReserveStep);
    ReserveForAppending(mFileDescriptor, mLength, static_cast<std::uint64_t>(step));
    mReservedLength = mLength + step;
  }
}

}  // namespace SK_PLUGIN
