#include "Writer_Wrapper.h"

#include <boost/variant.hpp>
#include <utility>

#include "SK_Error.h"
#include "SK_WriterCast.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"

namespace SK_PLUGIN {

using ns_sensor::SK_DynamicDataFields;
using ns_sensor::SK_DynamicFileInfo;
using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_NumberRange;
using ns_sensor::SK_StringProperties;
using ns_sensor::SK_TimeCodeInfo;
using ns_sensor::SK_UTCInfo;
using ns_sensor::SK_VideoSyncTime;

namespace {

constexpr std::uint64_t kMaxArraySize = 3;

void CheckKey(void* key) {
  if (key == nullptr) {
    SK_NAMESPACE_INT::ThrowInvalidPointer("Native converter");
  }
}

void Check(bool holds, eErrorCode code) {
  if (!holds) {
    SK_NAMESPACE_INT::ThrowError({code, SK_Message::kWriterFailure, -1, -1});
  }
}

TdjsonGroupImpl& ImplOf(ITdjsonGroup_v1& group) {
  return *CastOrThrow<TdjsonGroupImpl>(group.GetActualITdjsonGroup());
}

/// As many ranges as there are numbers; those that were not given are found out from the numbers.
std::vector<SK_NumberRange> RangesFor(std::vector<SK_NumberRange> const& given, std::size_t count) {
  return given.empty() ? std::vector<SK_NumberRange>(count) : given;
}

class TimeBaseSetter : public boost::static_visitor<> {
 public:
  explicit TimeBaseSetter(TdjsonRootImpl& root) : mRoot(root) {}

  void operator()(SK_TimeCodeInfo const& info) const {
    mRoot.SetSMPTETimeInfo(info.dropFrame != 0, static_cast<std::uint32_t>(info.frameRate.value), info.frameRate.scale);
  }
  void operator()(SK_UTCInfo const& info) const { mRoot.SetUTCTimeInfo(info.precisionLength, info.isGMT); }

 private:
  TdjsonRootImpl& mRoot;
};

class SyncTimeAdder : public boost::static_visitor<> {
 public:
  SyncTimeAdder(TdjsonRootImpl& root, std::string const& fileName) : mRoot(root), mFileName(fileName) {}

  void operator()(std::string const& timeString) const { mRoot.AddSyncTimeStr(mFileName, timeString); }
  void operator()(int frameNumber) const { mRoot.AddSyncTimeFrameNum(mFileName, frameNumber); }

 private:
  TdjsonRootImpl& mRoot;
  std::string const& mFileName;
};

void SetTimes(TdjsonRootImpl& root, SK_DynamicFileInfo const& info) {
  boost::apply_visitor(TimeBaseSetter(root), info.timeInfo);
  for (SK_VideoSyncTime const& sync : info.videoSyncTimes) {
    boost::apply_visitor(SyncTimeAdder(root, sync.fileName), sync.value.value);
  }
}

}  // namespace

std::shared_ptr<ITdjsonRoot_v1> Writer_Wrapper::CreateRoot_Wrapper(void* key, char const* path,
                                                                   SK_DynamicFileInfo const* info) {
  CheckKey(key);
  if (std::shared_ptr<TdjsonRootImpl> existing = TdjsonRootImpl::GetRoot(key)) {
    return existing;
  }
  std::shared_ptr<TdjsonRootImpl> root = OwnNewObject(new TdjsonRootImpl(key, path));
  TdjsonRootImpl::RegisterInstance(key, root);
  if (info != nullptr) {
    SetTimes(*root, *info);
  }
  root->WriteVersionToFile();
  return root;
}

std::shared_ptr<ITdjsonGroup_v1> Writer_Wrapper::CreateGroup_Wrapper(void* key, std::string const& matchName,
                                                                     std::string const& displayName) {
  CheckKey(key);
  return OwnNewObject(new TdjsonGroupImpl(key, displayName, matchName));
}

std::shared_ptr<ITdjsonDynamicDataNum_v1> Writer_Wrapper::CreateDynamicDataNum_Wrapper(
    void* key, SK_DynamicDataFields const& fields, SK_NumberProperties const& properties) {
  CheckKey(key);
  std::shared_ptr<TdjsonDynamicDataNumImpl> node = OwnNewObject(new TdjsonDynamicDataNumImpl(key));
  node->SetDynamicDataInfo(fields);
  node->SetNumberPattern(properties.pattern);
  node->SetNumberRange(properties.range);
  return node;
}

std::shared_ptr<ITdjsonDynamicDataNumArr_v1> Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(
    void* key, SK_DynamicDataFields const& fields, SK_NumberArrayProperties const& properties) {
  CheckKey(key);
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> node = OwnNewObject(new TdjsonDynamicDataNumArrImpl(key));
  node->SetDynamicDataInfo(fields);
  Check(properties.arraySize != 0 && properties.arraySize <= kMaxArraySize, kBadArrayCount);
  node->SetArrCount(properties.arraySize);
  node->SetIsPoint(properties.isPoint);
  node->SetNumberPattern(properties.pattern);
  Check(properties.arrayRanges.empty() || properties.arrayRanges.size() == properties.arraySize,
        kDynamicRangesMismatch);
  for (SK_NumberRange const& range : RangesFor(properties.arrayRanges, properties.arraySize)) {
    node->SetNumberRange(range);
  }
  if (!properties.arrayDisplayNames.empty() && properties.arrayDisplayNames.size() != properties.arraySize) {
    // The one check on this side of the writer that keeps the writer's own exception.
    ThrowWriterError(kDynamicNamesMismatch);
  }
  for (std::string const& name : properties.arrayDisplayNames) {
    node->SetDisplayName(name);
  }
  return node;
}

std::shared_ptr<ITdjsonDynamicDataString_v1> Writer_Wrapper::CreateDynamicDataString_Wrapper(
    void* key, SK_DynamicDataFields const& fields, SK_StringProperties const& properties) {
  CheckKey(key);
  std::shared_ptr<TdjsonDynamicDataStringImpl> node = OwnNewObject(new TdjsonDynamicDataStringImpl(key));
  node->SetDynamicDataInfo(fields);
  node->SetStringProperties(properties);
  return node;
}

std::shared_ptr<ITdjsonStaticDataBool_v1> Writer_Wrapper::CreateStaticDataBool_Wrapper(void* key,
                                                                                       std::string const& matchName,
                                                                                       std::string const& displayName,
                                                                                       bool const& value) {
  CheckKey(key);
  return OwnNewObject(new TdjsonStaticDataBoolImpl(key, displayName, matchName, value));
}

std::shared_ptr<ITdjsonStaticDataNum_v1> Writer_Wrapper::CreateStaticDataNum_Wrapper(
    void* key, std::string const& matchName, std::string const& displayName, double const& value,
    SK_NumberProperties const& properties) {
  CheckKey(key);
  std::shared_ptr<TdjsonStaticDataNumImpl> node =
      OwnNewObject(new TdjsonStaticDataNumImpl(key, displayName, matchName, value));
  node->SetNumberPattern(properties.pattern);
  node->SetNumberRange(properties.range);
  return node;
}

std::shared_ptr<ITdjsonStaticDataNumArr_v1> Writer_Wrapper::CreateStaticDataNumArr_Wrapper(
    void* key, std::string const& matchName, std::string const& displayName, std::vector<double> const& values,
    SK_NumberArrayProperties const& properties) {
  CheckKey(key);
  std::size_t const count = values.size();
  Check(properties.arraySize == 0 || (properties.arraySize <= kMaxArraySize && properties.arraySize == count),
        kBadArrayCount);
  Check(count <= kMaxArraySize, kTooManyValues);
  Check(properties.arrayDisplayNames.empty() || properties.arrayDisplayNames.size() == count, kStaticNamesMismatch);
  Check(properties.arrayRanges.empty() || properties.arrayRanges.size() == count, kStaticRangesMismatch);

  std::shared_ptr<TdjsonStaticDataNumArrImpl> node =
      OwnNewObject(new TdjsonStaticDataNumArrImpl(key, displayName, matchName));
  for (double const value : values) {
    node->AddElement(value);
  }
  for (SK_NumberRange const& range : RangesFor(properties.arrayRanges, count)) {
    node->SetNumberRange(range);
  }
  for (std::string const& name : properties.arrayDisplayNames) {
    node->AddDisplayName(name);
  }
  node->SetIsPoint(properties.isPoint);
  node->SetNumberPattern(properties.pattern);
  // Last: it finishes the node from all that stands by then.
  node->SetArrCount(count);
  return node;
}

std::shared_ptr<ITdjsonStaticDataString_v1> Writer_Wrapper::CreateStaticDataString_Wrapper(
    void* key, std::string const& matchName, std::string const& displayName, std::string const& value,
    SK_StringProperties const& properties) {
  CheckKey(key);
  std::shared_ptr<TdjsonStaticDataStringImpl> node =
      OwnNewObject(new TdjsonStaticDataStringImpl(key, displayName, matchName, value));
  node->SetStringProperties(properties);
  return node;
}

void Writer_Wrapper::AddGroup_Wrapper(void* key, ITdjsonGroup_v1& parent, std::shared_ptr<ITdjsonGroup_v1> group) {
  CheckKey(key);
  ImplOf(parent).AddFinishedGroup(std::move(group));
}

void Writer_Wrapper::AddStaticDataBool_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                               std::string_view displayName, bool value) {
  CheckKey(key);
  ImplOf(group).AddStaticBool(matchName, displayName, value);
}

void Writer_Wrapper::AddStaticDataNum_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                              std::string_view displayName, double value) {
  CheckKey(key);
  ImplOf(group).AddStaticNumber(matchName, displayName, value);
}

void Writer_Wrapper::AddStaticDataString_Wrapper(void* key, ITdjsonGroup_v1& group, std::string_view matchName,
                                                 std::string_view displayName, std::string_view value) {
  CheckKey(key);
  ImplOf(group).AddStaticString(matchName, displayName, value);
}

void Writer_Wrapper::RemoveRoot_Wrapper(void* key) {
  TdjsonRootImpl::RemoveInstance(key);
}

}  // namespace SK_PLUGIN
