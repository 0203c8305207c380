#include "SK_DataQuery.h"

#include <algorithm>
#include <string_view>

#include "SK_Error.h"
#include "SK_OutlineReader.h"
#include "SK_SampleBlock.h"
#include "SK_SampleDataProcessor.h"
#include "SK_TdjsonParser.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::eGroupChildType;
using ns_sensor::SK_DynamicDataFields;
using ns_sensor::SK_DynamicDataInfo;
using ns_sensor::SK_GroupChildInfo;
using ns_sensor::SK_PathSegment;
using ns_sensor::SK_StaticDataInfo;

namespace {

constexpr char kRootMatchName[] = "dataOutline";

template <typename... Values>
[[noreturn]] void ThrowPathError(char const* literal, Values const&... values) {
  ThrowError({ns_sensor::kPathMismatch, literal, -1, -1}, values...);
}

std::string StringOf(JValue const& node, char const* key) {
  std::string text;
  SK_OutlineReader::GetStringValue(node, key, text);
  return text;
}

/// An index of -1 counts as one behind all children.
bool IsBehind(std::int32_t index, JValue const& children) {
  return static_cast<std::uint32_t>(index) >= children.Size();
}

JValue const& ChildAt(JValue const& children, std::int32_t index) {
  return children[static_cast<rapidjson::SizeType>(index)];
}

std::string_view MatchNameOf(JValue const& node) {
  JValue const* const name = SK_OutlineReader::Find(node, "matchName");
  return name != nullptr && name->IsString() ? std::string_view(name->GetString(), name->GetStringLength())
                                             : std::string_view();
}

/// The child of a name, as there is only one in a file. Who walks over a wide group asks for each child a few times
/// and then for the next, so these two are looked at before all others.
std::uint32_t FindByName(JValue const& children, std::string const& name, std::atomic<std::uint32_t>& lastFound) {
  std::uint32_t const last = lastFound.load(std::memory_order_relaxed);
  std::uint32_t const nearby[] = {last, last + 1};
  for (std::uint32_t const index : nearby) {
    if (index < children.Size() && MatchNameOf(children[index]) == name) {
      lastFound.store(index, std::memory_order_relaxed);
      return index;
    }
  }
  for (std::uint32_t index = 0; index != children.Size(); ++index) {
    if (MatchNameOf(children[index]) == name) {
      lastFound.store(index, std::memory_order_relaxed);
      return index;
    }
  }
  ThrowPathError(SK_Message::kMatchNameNotFound, Quoted(name));
}

/// Finds the index of one segment that has none, and proves one that has. `item` counts the segments behind
/// the root.
void ValidateAndFillSegment(JValue const& children, std::size_t item, SK_PathSegment& segment,
                            std::atomic<std::uint32_t>& lastFound) {
  bool const hasName = !segment.matchName.empty();
  if (segment.index < 0) {
    if (!hasName) {
      ThrowPathError(SK_Message::kMissingBothIndexAndMatchName, static_cast<unsigned long long>(item));
    }
    segment.index = static_cast<std::int32_t>(FindByName(children, segment.matchName, lastFound));
    return;
  }
  if (IsBehind(segment.index, children)) {
    ThrowPathError(SK_Message::kInvalidIndex, children.Size(), static_cast<unsigned long long>(item), segment.index);
  }
  std::string_view const childName = MatchNameOf(ChildAt(children, segment.index));
  if (hasName && childName != segment.matchName) {
    ThrowPathError(SK_Message::kMatchNameNotMatching, Quoted(std::string(childName)), segment.index,
                   static_cast<unsigned long long>(item), Quoted(segment.matchName));
  }
}

void CheckScale(SK_Time const& time, char const* parameter) {
  if (time.scale == 0) {
    ThrowError({ns_sensor::kInvalidArgument, SK_Message::kZeroScaleValue, -1, -1}, Quoted(parameter));
  }
}

[[noreturn]] void ThrowNothingFetched(std::string const& id) {
  ThrowError({ns_sensor::kInternalFailure, SK_Message::kFetchDynamicSampleFailure, -1, -1}, Quoted(id));
}

std::vector<SK_DynamicDataSample> SamplesOf(SK_SampleBlock const& block, std::string const& id) {
  if (block.Count() == 0) {
    ThrowNothingFetched(id);
  }
  std::vector<SK_DynamicDataSample> samples(block.Count());
  for (std::uint64_t i = 0; i < block.Count(); ++i) {
    block.CopyTo(i, samples[i]);
  }
  return samples;
}

}  // namespace

SK_DataQuery::SK_DataQuery(std::shared_ptr<SK_TdjsonParser> const& parser) : mParser(parser) {}

JValue const& SK_DataQuery::Outline() const {
  return mParser->GetDataOutline();
}

void SK_DataQuery::ValidateAndFillPath(SK_DataPath& path) const {
  if (path.empty() || path[0].index != -1 || (!path[0].matchName.empty() && path[0].matchName != kRootMatchName)) {
    ThrowPathError(SK_Message::kMissingRootInfo);
  }
  path[0].matchName = kRootMatchName;
  JValue const* children = &Outline();
  for (std::size_t segment = 1; segment < path.size(); ++segment) {
    std::size_t const item = segment - 1;
    ValidateAndFillSegment(*children, item, path[segment], mLastFound[segment % mLastFound.size()]);
    children = SK_OutlineReader::Find(ChildAt(*children, path[segment].index), "children");
    if (children == nullptr && segment + 1 < path.size()) {
      ThrowPathError(SK_Message::kIntermediateNodeNotGroupNode, static_cast<unsigned long long>(item));
    }
  }
}

/// The children of a group, or a leaf itself.
JValue const& SK_DataQuery::ParsePath(SK_DataPath const& path) const {
  JValue const* value = &Outline();
  for (std::size_t segment = 1; segment < path.size() && !IsBehind(path[segment].index, *value); ++segment) {
    JValue const& child = ChildAt(*value, path[segment].index);
    JValue const* const children = SK_OutlineReader::Find(child, "children");
    if (children == nullptr) {
      return child;
    }
    value = children;
  }
  return *value;
}

/// The node that a path leads to, group or leaf.
JValue const& SK_DataQuery::FindChild(SK_DataPath path) const {
  ValidateAndFillPath(path);
  std::int32_t const index = path.back().index;
  path.pop_back();
  JValue const& siblings = ParsePath(path);
  if (IsBehind(index, siblings)) {
    ThrowPathError(SK_Message::kInvalidIndex, siblings.Size(), static_cast<unsigned long long>(path.size()), index);
  }
  return ChildAt(siblings, index);
}

void SK_DataQuery::GetArrayChildren(JValue const& array, SK_DataPath const& base, std::vector<SK_DataPath>* out) {
  for (rapidjson::SizeType i = 0; i < array.Size(); ++i) {
    out->push_back(base);
    out->back().push_back({StringOf(array[i], "matchName"), static_cast<std::int32_t>(i)});
  }
}

void SK_DataQuery::GetRootChildren(std::vector<SK_DataPath>* out) const {
  out->clear();
  GetArrayChildren(Outline(), SK_DataPath(1), out);
}

void SK_DataQuery::GetGroupChildren(SK_DataPath const& path, std::vector<SK_DataPath>* out) const {
  SK_DataPath filled = path;
  ValidateAndFillPath(filled);
  JValue const& children = ParsePath(filled);
  if (!children.IsArray()) {
    ThrowPathError(SK_Message::kLastNodeNotGroupNode);
  }
  GetArrayChildren(children, filled, out);
}

void SK_DataQuery::GetGroupChildInfo(SK_DataPath const& path, SK_GroupChildInfo* out) const {
  JValue const& node = FindChild(path);
  out->type = SK_OutlineReader::GetGroupType(StringOf(node, "objectType"));
  out->displayName = StringOf(node, "displayName");
  out->matchName = StringOf(node, "matchName");
}

/// The node that a path leads to, which must be of the kind that is asked for.
JValue const& SK_DataQuery::FindNode(SK_DataPath const& path, eGroupChildType expected) const {
  JValue const& node = FindChild(path);
  eGroupChildType const type = SK_OutlineReader::GetGroupType(StringOf(node, "objectType"));
  if (type != expected) {
    ThrowPathError(SK_Message::kInvalidNodeType, std::string(SK_OutlineReader::GetNodeTypeStr(expected)),
                   std::string(SK_OutlineReader::GetNodeTypeStr(type)));
  }
  return node;
}

void SK_DataQuery::GetStaticDataInfo(SK_DataPath const& path, SK_StaticDataInfo* out) const {
  JValue const& node = FindNode(path, ns_sensor::kStaticChild);
  SK_OutlineReader const reader(mParser->GetTDJSONVersion());
  out->displayName = StringOf(node, "displayName");
  out->matchName = StringOf(node, "matchName");
  reader.GetDataType(node, out->dataType, false);
  reader.GetValue(node, out->dataType.type, out->value);
}

void SK_DataQuery::GetDynamicDataInfo(SK_DataPath const& path, SK_DynamicDataInfo* out) const {
  JValue const& node = FindNode(path, ns_sensor::kDynamicChild);
  SK_DynamicDataFields& fields = out->fields;
  fields.displayName = StringOf(node, "displayName");
  fields.matchName = StringOf(node, "matchName");
  fields.sampleSetID = StringOf(node, "sampleSetID");
  SK_OutlineReader(mParser->GetTDJSONVersion()).GetDataType(node, out->dataType, true);
  fields.interpolation = SK_OutlineReader::GetInterPolationType(StringOf(node, "interpolation"));
  if (SK_OutlineReader::GetBoolValue(node, "hasExpectedFrequencyB", fields.hasExpectedFrequencyB) !=
      ns_sensor::kNoError) {
    SK_OutlineReader::GetBoolValue(node, "hasExpectedFrequecyB", fields.hasExpectedFrequencyB);
  }
  SK_OutlineReader::GetIntValue(node, "sampleCount", fields.sampleCount);
  SK_OutlineReader::GetStringValue(node, "expectedMaxInterSampleDuration", fields.expectedMaxInterSampleDuration);

  auto const entry = mParser->GetDataCache().find(fields.sampleSetID);
  if (entry == mParser->GetDataCache().end()) {
    return;
  }
  TemporalRange const& range = entry->second.mTemporalRange;
  if (range.mStartTime.empty() || range.mEndTime.empty()) {
    fields.temporalExtent.startTime.scale = 1;
    fields.temporalExtent.duration.scale = 1;
  }
  SK_TimeFormat const& format = mParser->GetTimeInfo();
  SK_Utils::ConvertTimeStrToRelativeSKTime(range.mStartTime, fields.temporalExtent.startTime, format);
  SK_Utils::ConvertTimeStrToRelativeSKTime(range.mEndTime, fields.temporalExtent.duration, format);
}

/// The reader of samples. A file without a sample section has none.
SK_SampleDataProcessor const& SK_DataQuery::SamplesFor(std::string const& id) const {
  if (SK_SampleDataProcessor const* const processor = mParser->GetSampleDataProcessor().get()) {
    return *processor;
  }
  if (mParser->GetDataCache().count(id) == 0) {
    ThrowError({ns_sensor::kUnknownSampleId, SK_Message::kSampleIdNotFound, -1, -1}, Quoted(id));
  }
  ThrowError({ns_sensor::kNoSamples, SK_Message::kSamplesNotFound, -1, -1}, Quoted(id));
}

/// A negative time has an empty text, which sorts before all others.
std::string SK_DataQuery::TextOfTime(SK_Time const& time) const {
  std::string text;
  SK_Utils::ConvertSKTimeToRelativeStr(time, text, mParser->GetTimeInfo());
  return text;
}

SK_DataQuery::TextRange SK_DataQuery::TextsOf(SK_Time const& start, SK_Time const& end) const {
  TextRange range;
  range.start = TextOfTime(start);
  if (start.value == end.value && start.scale == end.scale) {
    return range;
  }
  range.end = TextOfTime(end);
  int const order = SK_Utils::CompareTimeStrings(std::string_view(range.start), range.end, mParser->GetTimeInfo());
  if (order == 0) {
    range.end.clear();
  } else if (order > 0) {
    range.start.swap(range.end);
    range.reversed = true;
  }
  return range;
}

void SK_DataQuery::GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                     std::vector<SK_DynamicDataSample>* out) const {
  SK_SampleBlock block;
  bool reversed = false;
  ReadDynamicSamples(id, start, end, block, reversed);
  *out = SamplesOf(block, id);
  if (reversed) {
    std::reverse(out->begin(), out->end());
  }
}

void SK_DataQuery::GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                     SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed,
                                     bool countOnly) const {
  CheckScale(start, "startTime");
  CheckScale(end, "endTime");
  SK_SampleDataProcessor const& processor = SamplesFor(id);
  TextRange const range = TextsOf(start, end);
  reversed = range.reversed;
  count = processor.GetSamplesData(id, range.start, range.end, samples, countOnly);
}

void SK_DataQuery::ReadDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                                      SK_SampleBlock& block, bool& reversed) const {
  CheckScale(start, "startTime");
  CheckScale(end, "endTime");
  SK_SampleDataProcessor const& processor = SamplesFor(id);
  TextRange const range = TextsOf(start, end);
  reversed = range.reversed;
  processor.ReadSamples(id, range.start, range.end, block);
}

void SK_DataQuery::GetAdjacentSamples(std::string const& id, SK_Time const& time,
                                      std::vector<SK_DynamicDataSample>* out) const {
  SK_SampleBlock block;
  ReadAdjacentSamples(id, time, block);
  *out = SamplesOf(block, id);
}

void SK_DataQuery::GetAdjacentSamples(std::string const& id, SK_Time const& time, SK_DynamicDataSample*& samples,
                                      unsigned long long& count, bool countOnly) const {
  CheckScale(time, "time");
  SK_SampleDataProcessor const& processor = SamplesFor(id);
  std::string const text = TextOfTime(time);
  count = time.value < 0 ? processor.GetSamplesData(id, text, "", samples, countOnly)
                         : processor.GetAdjacentSamples(id, text, samples, countOnly);
}

void SK_DataQuery::ReadAdjacentSamples(std::string const& id, SK_Time const& time, SK_SampleBlock& block) const {
  CheckScale(time, "time");
  SK_SampleDataProcessor const& processor = SamplesFor(id);
  std::string const text = TextOfTime(time);
  if (time.value < 0) {
    processor.ReadSamples(id, text, "", block);
  } else {
    processor.ReadAdjacentSamples(id, text, block);
  }
}

}  // namespace SK_NAMESPACE_INT
