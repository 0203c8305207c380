#include "ISensorFileHandler_I.h"

#include <algorithm>

#include "SK_ClientTable.h"
#include "SK_Error.h"
#include "SK_Ladder.h"
#include "SK_SampleBlock.h"
#include "senmark/SK_Records.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::gClientProcs;
using SK_NAMESPACE_INT::Quoted;
using SK_NAMESPACE_INT::RunAtBorder;
using SK_NAMESPACE_INT::SK_SampleBlock;
using SK_NAMESPACE_INT::ThrowError;

namespace {

/// A value as the procs take it.
struct BorderValue {
  std::uint8_t kind;
  void const* pointer;
  std::uint64_t size;  // bytes of a text, elements of an array, else 0
};

class SK_ValueVisitor : public boost::static_visitor<BorderValue> {
 public:
  BorderValue operator()(double const& number) const { return {kNumberValue, &number, 0}; }
  BorderValue operator()(std::string const& text) const { return {kStringValue, text.c_str(), text.size()}; }
  BorderValue operator()(std::vector<double> const& array) const {
    return {kNumberArrayValue, array.data(), array.size()};
  }
  BorderValue operator()(bool const& flag) const { return {kBooleanValue, &flag, 0}; }
};

/// The properties handle: where the alternative lies. It is read only, by the functions of the host API
/// table; the host's side of the table knows no constant pointers.
class SK_PropertyVisitor : public boost::static_visitor<void*> {
 public:
  template <typename Properties>
  void* operator()(Properties& properties) const {
    return &properties;
  }
};

class SK_SyncTimeVisitor : public boost::static_visitor<BorderValue> {
 public:
  BorderValue operator()(int const& frameNumber) const { return {0, &frameNumber, 0}; }
  BorderValue operator()(std::string const& timeText) const { return {1, timeText.c_str(), timeText.size()}; }
};

void CheckClientProcs() {
  if (gClientProcs == nullptr) {
    ThrowError({kInternalFailure, SK_Message::kClientAPIsNotSet, -1, -1});
  }
}

std::string TextOf(char const* text, std::uint64_t length) {
  std::string result;
  result.assign(text, length);
  return result;
}

/// The way that all siblings share, once, then the last segment of each. It relies on all of them having
/// one parent.
void pushGroupPath(std::vector<SK_DataPath> const& siblings, void* client) {
  CheckClientProcs();
  auto const push = [&](SK_PathSegment const& segment, std::uint8_t isLast) {
    gClientProcs->path->pathSegment(client, segment.matchName.c_str(), segment.index, siblings.size(), isLast);
  };
  if (siblings.empty()) {
    return;
  }
  std::for_each(siblings.front().begin(), siblings.front().end() - 1,
                [&](SK_PathSegment const& segment) { push(segment, 0); });
  for (SK_DataPath const& path : siblings) {
    push(path.back(), 1);
  }
}

/// Tells the host how many samples there are, then sends as many as it wants.
void PushSamples(SK_SampleBlock const& samples, bool reversed, std::string const& id, void* client) {
  if (samples.Count() == 0) {
    ThrowError({kInternalFailure, SK_Message::kFetchDynamicSampleFailure, -1, -1}, Quoted(id));
  }
  CheckClientProcs();
  std::uint64_t wanted = samples.Count();
  gClientProcs->sampleCount(client, &wanted);
  std::uint64_t const count = std::min<std::uint64_t>(wanted, samples.Count());
  auto const push = [&](std::uint64_t i) {
    SK_Time const time = samples.Time(i);
    gClientProcs->sample(client, time.value, time.scale, samples.ValuePointer(i), samples.ValueSize(i),
                         samples.ValueType(i));
  };
  if (reversed) {
    for (std::uint64_t i = count; i != 0; --i) {
      push(i - 1);
    }
  } else {
    for (std::uint64_t i = 0; i != count; ++i) {
      push(i);
    }
  }
}

}  // namespace

void ISensorFileHandler_I::getRootChildren(void* client, void* error) {
  RunAtBorder(error, [&] {
    std::vector<SK_DataPath> children;
    GetRootChildren(&children);
    pushGroupPath(children, client);
  });
}

void ISensorFileHandler_I::getGroupChildren(char const* path, std::uint64_t length, void* client, void* error) {
  RunAtBorder(error, [&] {
    std::vector<SK_DataPath> children;
    GetGroupChildren(TextOf(path, length), &children);
    pushGroupPath(children, client);
  });
}

void ISensorFileHandler_I::getGroupChildInfo(char const* path, std::uint64_t length, void* client, void* error) {
  RunAtBorder(error, [&] {
    SK_GroupChildInfo info;
    GetGroupChildInfo(TextOf(path, length), &info);
    CheckClientProcs();
    gClientProcs->groupChildInfo(client, info.type, info.displayName.c_str(), info.matchName.c_str());
  });
}

void ISensorFileHandler_I::getStaticDataInfo(char const* path, std::uint64_t length, void* client, void* error) {
  RunAtBorder(error, [&] {
    SK_StaticDataInfo info;
    GetStaticDataInfo(TextOf(path, length), &info);
    CheckClientProcs();
    void* const properties = boost::apply_visitor(SK_PropertyVisitor(), info.dataType.properties.value);
    BorderValue const value = boost::apply_visitor(SK_ValueVisitor(), info.value.value);
    gClientProcs->staticDataInfo(client, info.displayName.c_str(), info.matchName.c_str(), properties,
                                 info.dataType.type, value.pointer, value.size);
  });
}

void ISensorFileHandler_I::getDynamicDataInfo(char const* path, std::uint64_t length, void* client, void* error) {
  RunAtBorder(error, [&] {
    SK_DynamicDataInfo info;
    GetDynamicDataInfo(TextOf(path, length), &info);
    CheckClientProcs();
    SK_DynamicDataFields const& fields = info.fields;
    void* const properties = boost::apply_visitor(SK_PropertyVisitor(), info.dataType.properties.value);
    gClientProcs->dynamicDataInfo(client, fields.displayName.c_str(), fields.matchName.c_str(), info.dataType.type,
                                  properties, fields.sampleSetID.c_str(), fields.sampleCount, fields.interpolation,
                                  fields.hasExpectedFrequencyB, fields.temporalExtent.startTime.value,
                                  fields.temporalExtent.startTime.scale, fields.temporalExtent.duration.value,
                                  fields.temporalExtent.duration.scale, fields.expectedMaxInterSampleDuration.c_str());
  });
}

void ISensorFileHandler_I::getDynamicSamples(char const* id, std::uint64_t length, std::int32_t startValue,
                                             std::uint32_t startScale, std::int32_t endValue, std::uint32_t endScale,
                                             void* client, void* error) {
  RunAtBorder(error, [&] {
    std::string const sampleId = TextOf(id, length);
    SK_SampleBlock samples;
    bool reversed = false;
    ReadDynamicSamples(sampleId, {startValue, startScale}, {endValue, endScale}, samples, reversed);
    PushSamples(samples, reversed, sampleId, client);
  });
}

void ISensorFileHandler_I::getAdjacentSamples(char const* id, std::uint64_t length, std::int32_t timeValue,
                                              std::uint32_t timeScale, void* client, void* error) {
  RunAtBorder(error, [&] {
    std::string const sampleId = TextOf(id, length);
    SK_SampleBlock samples;
    ReadAdjacentSamples(sampleId, {timeValue, timeScale}, samples);
    PushSamples(samples, false, sampleId, client);
  });
}

void ISensorFileHandler_I::getFileInfo(SK_FileInfo* info, void* client, void* error) {
  RunAtBorder(error, [&] {
    GetFileInfo(info);
    CheckClientProcs();
    gClientProcs->fileInfo(client, info->duration.value, info->duration.scale, info->version.c_str(),
                           info->version.size(), info->creator.c_str(), info->creator.size());
  });
}

void ISensorFileHandler_I::getVideoSyncTime(std::vector<SK_VideoSyncTime>* list, void* client, void* error) {
  RunAtBorder(error, [&] {
    GetVideoSyncTime(list);
    CheckClientProcs();
    for (SK_VideoSyncTime const& entry : *list) {
      BorderValue const value = boost::apply_visitor(SK_SyncTimeVisitor(), entry.value.value);
      gClientProcs->videoSyncTime(client, entry.fileName.c_str(), entry.kind, value.pointer, value.size, value.kind);
    }
  });
}

void ISensorFileHandler_I::getSampleInfo(char const* id, std::uint64_t length, std::int32_t startValue,
                                         std::uint32_t startScale, std::int32_t endValue, std::uint32_t endScale,
                                         SK_DynamicSampleInfo* info, unsigned char adjacent, void* /*client*/,
                                         void* error) {
  RunAtBorder(error, [&] {
    GetSampleInfo(TextOf(id, length), {startValue, startScale}, {endValue, endScale}, info, adjacent != 0);
  });
}

}  // namespace ns_sensor
