#include "TdjsonRootImpl.h"

#include "SK_NumberAnalysis.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

using ns_sensor::SK_Time;
using ns_sensor::SK_TimeCodeInfo;
using ns_sensor::SK_UTCInfo;
using ns_sensor::SK_VideoSyncTime;

namespace {

/// hh:mm:ss:ff, and one more with frame numbers of three digits.
constexpr unsigned short kTimeCodeLength = 11;
/// The highest rate with frame numbers of two digits.
constexpr unsigned kHighestRateOfTwoDigits = 99;
/// yyyy-mm-ddThh:mm:ss with a zone letter, and with an offset like +hh:mm. A fraction comes on top.
constexpr unsigned short kLetterZoneTimeLength = 20;
constexpr unsigned short kOffsetTimeLength = 25;

void CheckPath(char const* path) {
  if (path == nullptr || *path == '\0') {
    ThrowWriterError(kRootPathMissing);
  }
}

/// For frame 0 as yet.
SK_VideoSyncTime MakeSyncTime(char const* fileName) {
  SK_VideoSyncTime syncTime;
  syncTime.fileName = RequireText(fileName);
  return syncTime;
}

}  // namespace

std::map<void*, std::pair<std::shared_ptr<TdjsonRootImpl>, Serializer>> TdjsonRootImpl::mRootMap;

std::shared_ptr<ITdjsonRoot_v1> ITdjsonRoot_v1::CreateRoot(void* key, char const* path,
                                                           ns_sensor::SK_DynamicFileInfo const* /*info*/) {
  CheckPath(path);
  if (std::shared_ptr<TdjsonRootImpl> existing = TdjsonRootImpl::GetRoot(key)) {
    return existing;
  }
  std::shared_ptr<TdjsonRootImpl> root = OwnNewObject(new TdjsonRootImpl(key, path));
  TdjsonRootImpl::RegisterInstance(key, root);
  return root;
}

TdjsonRootImpl::TdjsonRootImpl(void* key, char const* path) : TdjsonGroupImpl(key, "root", "root"), mConverterKey(key) {
  CheckPath(path);
  mTdjsonPath = path;
}

bool TdjsonRootImpl::Commit() {
  if (mCommitted) {
    return false;
  }
  try {
    GetSerializer(mConverterKey).serializeRootToFile();
  } catch (...) {
    try {
      GetSerializer(mConverterKey).clearFile();
    } catch (...) {
      // The first failure is the one that the caller must see.
    }
    throw;
  }
  mCommitted = true;
  return true;
}

void TdjsonRootImpl::SetCreator(std::string const& creator) {
  mCreator = escapeHandling(creator);
}

void TdjsonRootImpl::setSMPTETimeInfo(unsigned char dropFrame, unsigned value, unsigned scale, void* result) {
  RunAtWriterBorder(result, [&] {
    mTimeInfo = SK_TimeCodeInfo(SK_Time{static_cast<std::int32_t>(value), scale}, dropFrame);
    mDynamicSamplesPresent = true;
    mTimeCodeUsed = true;
    bool const threeDigits = scale != 0 && value / scale > kHighestRateOfTwoDigits;
    mTimeLength = static_cast<unsigned short>(kTimeCodeLength + (threeDigits ? 1 : 0));
  });
}

void TdjsonRootImpl::setUTCTimeInfo(unsigned precision, unsigned char isGMT, void* result) {
  RunAtWriterBorder(result, [&] {
    SK_UTCInfo info;
    info.precisionLength = static_cast<std::uint16_t>(precision);
    info.isGMT = isGMT != 0;
    mTimeInfo = info;
    mDynamicSamplesPresent = true;
    mTimeCodeUsed = false;
    mUTCPrecision = info.precisionLength;
    int const fraction = mUTCPrecision == 0 ? 0 : mUTCPrecision + 1;
    mTimeLength = static_cast<unsigned short>((info.isGMT ? kLetterZoneTimeLength : kOffsetTimeLength) + fraction);
  });
}

void TdjsonRootImpl::addSyncTimeFrameNum(char const* fileName, int frameNumber, void* result) {
  RunAtWriterBorder(result, [&] {
    SK_VideoSyncTime syncTime = MakeSyncTime(fileName);
    boost::get<int>(syncTime.value.value) = frameNumber;
    mVideoSyncTimeList.push_back(std::move(syncTime));
  });
}

void TdjsonRootImpl::addSyncTimeStr(char const* fileName, char const* timeString, unsigned long long length,
                                    void* result) {
  RunAtWriterBorder(result, [&] {
    SK_VideoSyncTime syncTime = MakeSyncTime(fileName);
    // No bytes need no place.
    syncTime.value.value = length == 0 ? std::string() : std::string(RequireText(timeString), length);
    mVideoSyncTimeList.push_back(std::move(syncTime));
  });
}

void TdjsonRootImpl::writeVersionToFile(void* result) {
  RunAtWriterBorder(
      result, [&] { GetSerializer(mConverterKey).serializeVersionToFile(); },
      [&] { GetSerializer(mConverterKey).clearFile(); });
}

std::string const& TdjsonRootImpl::GetTDJSONPath() const {
  return mTdjsonPath;
}

boost::variant<SK_UTCInfo, SK_TimeCodeInfo> const& TdjsonRootImpl::GetTimeInfo() const {
  return mTimeInfo;
}

std::vector<SK_VideoSyncTime> const& TdjsonRootImpl::GetVideoSyncTimeList() const {
  return mVideoSyncTimeList;
}

bool TdjsonRootImpl::IsTimeCodeUsed() const {
  return mTimeCodeUsed;
}

bool TdjsonRootImpl::IsDynamicSamplesPresent() const {
  return mDynamicSamplesPresent;
}

std::string const& TdjsonRootImpl::GetCreator() const {
  return mCreator;
}

bool TdjsonRootImpl::SetHasFirstSetArrived() {
  return !std::exchange(mHasFirstSetArrived, true);
}

void TdjsonRootImpl::ResetRoot() {
  mHasFirstSetArrived = false;
  mCommitted = false;
  ResetGroup();
}

unsigned short TdjsonRootImpl::GetTimeLength() const {
  return mTimeLength;
}

unsigned short TdjsonRootImpl::GetUTCPrecision() const {
  return mUTCPrecision;
}

void TdjsonRootImpl::SetSMPTETimeInfo(bool dropFrame, std::uint32_t value, std::uint32_t scale) {
  ThrowOnFailure([&](void* result) { setSMPTETimeInfo(dropFrame ? 1 : 0, value, scale, result); });
}

void TdjsonRootImpl::SetUTCTimeInfo(std::uint16_t precision, bool isGMT) {
  ThrowOnFailure([&](void* result) { setUTCTimeInfo(precision, isGMT ? 1 : 0, result); });
}

void TdjsonRootImpl::AddSyncTimeFrameNum(std::string const& fileName, int frameNumber) {
  ThrowOnFailure([&](void* result) { addSyncTimeFrameNum(fileName.c_str(), frameNumber, result); });
}

void TdjsonRootImpl::AddSyncTimeStr(std::string const& fileName, std::string const& timeString) {
  ThrowOnFailure(
      [&](void* result) { addSyncTimeStr(fileName.c_str(), timeString.c_str(), timeString.size(), result); });
}

void TdjsonRootImpl::WriteVersionToFile() {
  ThrowOnFailure([&](void* result) { writeVersionToFile(result); });
}

std::shared_ptr<TdjsonRootImpl> TdjsonRootImpl::GetRoot(void* key) {
  auto const found = mRootMap.find(key);
  return found == mRootMap.end() ? nullptr : found->second.first;
}

void TdjsonRootImpl::RegisterInstance(void* key, std::shared_ptr<TdjsonRootImpl> const& root) {
  mRootMap.try_emplace(key, root, Serializer(root));
}

Serializer& TdjsonRootImpl::GetSerializer(void* key) {
  return mRootMap[key].second;
}

void TdjsonRootImpl::RemoveInstance(void* key) {
  // Out of the registry before its objects are deleted.
  auto const removed = mRootMap.extract(key);
}

void TdjsonRootImpl::RemoveInstancesOf(std::string const& path) {
  for (auto next = mRootMap.begin(); next != mRootMap.end();) {
    auto const entry = next++;
    std::shared_ptr<TdjsonRootImpl> const& root = entry->second.first;
    if (!root || root->mTdjsonPath == path) {
      auto const removed = mRootMap.extract(entry);
    }
  }
}

}  // namespace SK_PLUGIN
