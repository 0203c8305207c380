#include "SerializerOutline.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "SK_NumberAnalysis.h"
#include "SK_NumberPropertyRules.h"
#include "SK_WriterCast.h"
#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "SerializerText.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonGroupImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"

namespace SK_PLUGIN {

namespace {

template <typename Node>
Node& NotNull(std::shared_ptr<Node> const& node, eErrorCode code) {
  if (!node) {
    ThrowWriterError(code);
  }
  return *node;
}

/// Text whose longest form is known: room for that is made once, and what is left of it goes back in the end.
class BoundedText {
 public:
  BoundedText(SerializerBuffer& text, std::size_t longest)
      : mText(text), mSizeBefore(text.Size()), mStart(text.Grow(longest)), mNext(mStart) {}
  ~BoundedText() { mText.Truncate(mSizeBefore + static_cast<std::size_t>(mNext - mStart)); }
  BoundedText(BoundedText const&) = delete;
  BoundedText& operator=(BoundedText const&) = delete;

  template <std::size_t N>
  void Put(char const (&literal)[N]) {
    std::memcpy(mNext, literal, N - 1);
    mNext += N - 1;
  }
  void Put(std::string_view text) {
    std::memcpy(mNext, text.data(), text.size());
    mNext += text.size();
  }
  void Put(SK_WriterNumberText const& number) { mNext = number.CopyTo(mNext); }
  void PutCount(std::uint64_t count) { mNext = CopyCount(mNext, count); }

 private:
  SerializerBuffer& mText;
  std::size_t mSizeBefore;
  char* mStart;
  char* mNext;
};

/// Room for a pattern and for a range: constant text and two or four numbers.
constexpr std::size_t kLongestPattern = 80 + 2 * SK_WriterNumberText::kLongest;
constexpr std::size_t kLongestRange = 80 + 4 * SK_WriterNumberText::kLongest;

/// The largest power of two that is not above `value`, which is not 0.
std::size_t PowerOfTwoIn(std::size_t value) {
  while ((value & (value - 1)) != 0) {
    value &= value - 1;
  }
  return value;
}

}  // namespace

SerializerOutline::SerializerOutline(SerializerBuffer& text, TakePiece takePiece)
    : mText(text), mTakePiece(std::move(takePiece)) {}

void SerializerOutline::serialize_Outline(TdjsonGroupImpl const& root) {
  if (root.GetNodeInfoList().empty()) {
    ThrowWriterError(kNoChildren);
  }
  Enter(root);
  while (!mLevels.empty()) {
    if (mLevels.back().nextChild < mLevels.back().group->GetNodeInfoList().size()) {
      VisitNextChild();
    } else {
      Leave();
    }
  }
}

void SerializerOutline::Enter(TdjsonGroupImpl const& group) {
  // Below a group inside itself the same way repeats without an end, and so does the group at any depth that is
  // far enough. To look at one level is therefore enough to find it, and costs nothing.
  if (!mLevels.empty() && mLevels[PowerOfTwoIn(mLevels.size()) - 1].group == &group) {
    ThrowWriterError(kWriterNoMemory);
  }
  mLevels.push_back({&group, 0, SK_StaticRecords::Reader(group.GetStaticRecords())});
}

void SerializerOutline::Leave() {
  bool const isOpen = mOpenLevels == mLevels.size();
  mLevels.pop_back();
  if (mLevels.empty()) {
    if (!isOpen) {
      ThrowWriterError(kOutlineEmpty);
    }
    mText.Put(']');
  } else if (isOpen) {
    mText.Put("]}");
  }
  if (isOpen) {
    --mOpenLevels;
  }
}

void SerializerOutline::VisitNextChild() {
  Level& level = mLevels.back();
  NodeInfo const& child = level.group->GetNodeInfoList()[level.nextChild++];
  switch (child.type) {
    case ns_sensor::kDynamicChild: {
      TdjsonDynamicDataImpl& node = NotNull(level.group->GetDynamicDataList()[child.index - 1], kDynamicNodeUnusable);
      if (!node.isDirty() && node.GetSampleCount() != 0) {
        OpenLevels();
        serialize_DynamicDataNode(node);
        EndNode();
      }
      break;
    }
    case ns_sensor::kStaticChild: {
      if (child.IsOfRecords()) {
        VisitRecords(level.records, child.CountRecords());
        break;
      }
      TdjsonStaticDataImpl const& node = NotNull(level.group->GetStaticDataList()[child.index - 1], kStaticNodeMissing);
      OpenLevels();
      serialize_StaticDataNode(node);
      EndNode();
      break;
    }
    case ns_sensor::kGroupChild:
      Enter(NotNull(level.group->GetGroupList()[child.index - 1], kGroupMissing));
      break;
    default:
      ThrowWriterError(kUnknownChildKind);
  }
}

// All of them are written: a group is among records only if something is in it.
void SerializerOutline::VisitRecords(SK_StaticRecords::Reader& records, std::uint64_t count) {
  OpenLevels();
  bool isFirst = true;
  std::uint64_t openGroups = 0;
  while (count != 0 || openGroups != 0) {
    SK_StaticRecords::Record const record = records.Next();
    if (record.kind == SK_StaticRecords::kEndOfGroup) {
      mText.Put("]}");
      --openGroups;
      isFirst = false;
      continue;
    }
    if (openGroups == 0) {
      --count;
    }
    if (!isFirst) {
      mText.Put(',');
    }
    isFirst = record.kind == SK_StaticRecords::kGroup;
    if (isFirst) {
      AppendGroupHead(record.matchName, record.displayName);
      ++openGroups;
    } else {
      serialize_StaticDataNode(record);
      EndNode();
    }
  }
}

// Writes what stands in front of the child that is being visited: the groups around it that have no text yet, and
// the comma of each of them and of the child itself.
void SerializerOutline::OpenLevels() {
  for (; mOpenLevels < mLevels.size(); ++mOpenLevels) {
    if (mOpenLevels == 0) {
      mText.Put(R"("dataOutline":[)");
      continue;
    }
    if (mLevels[mOpenLevels - 1].nextChild != 1) {
      mText.Put(',');
    }
    serialize_GroupNode(*mLevels[mOpenLevels].group);
  }
  if (mLevels.back().nextChild != 1) {
    mText.Put(',');
  }
}

void SerializerOutline::EndNode() {
  mText.Put('}');
  if (mText.Size() >= kPieceSize) {
    mTakePiece(mText);
  }
}

// Constant stretches of text are one literal each, here and below: nodes come by the million.

void SerializerOutline::serialize_GroupNode(TdjsonGroupImpl const& group) {
  AppendGroupHead(group.GetMatchName(), group.GetDisplayName());
}

void SerializerOutline::AppendGroupHead(std::string_view matchName, std::string_view displayName) {
  AppendHead(R"({"objectType":"dataGroup","matchName":")", matchName, displayName, R"(","children":[)");
}

void SerializerOutline::serialize_StaticDataNode(TdjsonStaticDataImpl const& node) {
  ns_sensor::eDataValueType const type = node.GetType();
  AppendStaticHead(node.GetMatchName(), node.GetDisplayName(), type);
  switch (type) {
    case ns_sensor::kNumberValue: {
      auto const* const number = CastOrThrow<TdjsonStaticDataNumImpl>(&node);
      AppendStaticNumber(number->GetNumberProperties(), number->GetDataValue());
      break;
    }
    case ns_sensor::kStringValue: {
      auto const* const string = CastOrThrow<TdjsonStaticDataStringImpl>(&node);
      AppendStaticString(string->GetStringProperties(), string->GetDataValue());
      break;
    }
    case ns_sensor::kNumberArrayValue: {
      auto const* const array = CastOrThrow<TdjsonStaticDataNumArrImpl>(&node);
      mText.Put(R"(",)");
      serialize_NumberArrayProp(array->GetNumArrayProperties());
      mText.Put(R"(},"value":[)");
      std::vector<double> const& values = array->GetDataValue();
      for (std::size_t i = 0; i != values.size(); ++i) {
        if (i != 0) {
          mText.Put(',');
        }
        AppendNumber(values[i]);
      }
      mText.Put(']');
      break;
    }
    case ns_sensor::kBooleanValue:
      AppendStaticBool(CastOrThrow<TdjsonStaticDataBoolImpl>(&node)->GetDataValue());
      break;
    default:
      ThrowWriterError(kUnknownNodeType);
  }
}

// Properties as a node gets them that is made with those of a default record.
void SerializerOutline::serialize_StaticDataNode(SK_StaticRecords::Record const& record) {
  switch (record.kind) {
    case SK_StaticRecords::kNumber: {
      ns_sensor::SK_NumberProperties properties;
      ns_sensor::SK_NumberPattern& pattern = properties.pattern;
      StorePatternOfValue(pattern, pattern.digitsInteger, pattern.digitsDecimal, 0, record.number,
                          TextOf(record.number).View());
      FillRangeOfValue(properties.range, record.number);
      AppendStaticHead(record.matchName, record.displayName, ns_sensor::kNumberValue);
      AppendStaticNumber(properties, record.number);
      break;
    }
    case SK_StaticRecords::kString: {
      unsigned long long length = 0;
      unsigned long long digits = 0;
      calcPaddedStringProperties(record.text, length, digits);
      ns_sensor::SK_StringProperties properties;
      properties.maxLen = length;
      properties.maxDigitsInStrLength = digits;
      AppendStaticHead(record.matchName, record.displayName, ns_sensor::kStringValue);
      AppendStaticString(properties, record.text);
      break;
    }
    default:
      AppendStaticHead(record.matchName, record.displayName, ns_sensor::kBooleanValue);
      AppendStaticBool(record.flag);
  }
}

void SerializerOutline::AppendStaticHead(std::string_view matchName, std::string_view displayName,
                                         ns_sensor::eDataValueType type) {
  AppendHead(R"({"objectType":"dataStatic","matchName":")", matchName, displayName, R"(","dataType":{"type":")");
  mText.Put(GetStaticType(type));
}

void SerializerOutline::AppendStaticNumber(ns_sensor::SK_NumberProperties const& properties, double value) {
  mText.Put(R"(",)");
  serialize_NumberProp(properties);
  mText.Put(R"(},"value":)");
  AppendNumber(value);
}

void SerializerOutline::AppendStaticString(ns_sensor::SK_StringProperties const& properties, std::string_view value) {
  mText.Put(R"(",)");
  serialize_PaddedStringProp(properties);
  mText.Put(R"(},"value":")");
  mText.Put(value);
  mText.Put('"');
}

void SerializerOutline::AppendStaticBool(bool value) {
  mText.Put(R"("},)");
  JSON_BoolObj(mText, "value", value);
}

void SerializerOutline::serialize_DynamicDataNode(TdjsonDynamicDataImpl const& node) {
  ns_sensor::SK_DynamicDataFields const& fields = node.GetDynamicDataFields();
  AppendHead(R"({"objectType":"dataDynamic","matchName":")", fields.matchName, fields.displayName, R"(",)");
  JSON_StrObj(mText, "sampleSetID", fields.sampleSetID);
  mText.Put(',');
  JSON_StrObj(mText, "interpolation", GetInterpolationStr(fields.interpolation));
  mText.Put(',');
  JSON_BoolObj(mText, "hasExpectedFrequencyB", fields.hasExpectedFrequencyB);
  mText.Put(R"(,"sampleCount":)");
  AppendCount(mText, fields.sampleCount);
  if (!fields.expectedMaxInterSampleDuration.empty()) {
    mText.Put(',');
    JSON_StrObj(mText, "expectedMaxInterSampleDuration", fields.expectedMaxInterSampleDuration);
  }
  ns_sensor::eDataValueType const type = node.GetType();
  mText.Put(R"(,"dataType":{)");
  JSON_StrObj(mText, "type", GetDynamicType(type));
  mText.Put(',');
  switch (type) {
    case ns_sensor::kNumberValue:
      serialize_NumberProp(CastOrThrow<TdjsonDynamicDataNumImpl>(&node)->GetNumStringProperties());
      break;
    case ns_sensor::kStringValue:
      serialize_PaddedStringProp(CastOrThrow<TdjsonDynamicDataStringImpl>(&node)->GetPaddedStringProperties());
      break;
    case ns_sensor::kNumberArrayValue:
      serialize_NumberArrayProp(CastOrThrow<TdjsonDynamicDataNumArrImpl>(&node)->GetNumArrayProperties());
      break;
    default:
      ThrowWriterError(kUnknownNodeType);
  }
  mText.Put('}');
}

void SerializerOutline::serialize_NumberProp(ns_sensor::SK_NumberProperties const& properties) {
  mText.Put(R"("numberStringProperties":{)");
  serialize_Pattern(properties.pattern);
  mText.Put(R"(,"range":)");
  serialize_RangeElem(properties.range);
  mText.Put('}');
}

void SerializerOutline::serialize_PaddedStringProp(ns_sensor::SK_StringProperties const& properties) {
  mText.Put(R"("paddedStringProperties":{"maxDigitsInStrLength":)");
  AppendCount(mText, properties.maxDigitsInStrLength);
  mText.Put(R"(,"maxLen":)");
  AppendCount(mText, properties.maxLen);
  mText.Put(',');
  JSON_BoolObj(mText, "eventMarkerB", properties.eventMarkerB);
  mText.Put('}');
}

void SerializerOutline::serialize_NumberArrayProp(ns_sensor::SK_NumberArrayProperties const& properties) {
  mText.Put(R"("numberArrayProperties":{)");
  serialize_Pattern(properties.pattern);
  mText.Put(R"(,"arrayRanges":{"ranges":[)");
  for (ns_sensor::SK_NumberRange const& range : properties.arrayRanges) {
    if (&range != &properties.arrayRanges.front()) {
      mText.Put(',');
    }
    serialize_RangeElem(range);
  }
  mText.Put(R"(]},"arraySize":)");
  AppendCount(mText, properties.arraySize);
  mText.Put(',');
  JSON_StrArrObj(mText, "arrayDisplayNames", properties.arrayDisplayNames);
  if (properties.isPoint) {
    mText.Put(R"(,"isPoint":true)");
  }
  mText.Put('}');
}

void SerializerOutline::serialize_Pattern(ns_sensor::SK_NumberPattern const& pattern) {
  BoundedText text(mText, kLongestPattern);
  if (pattern.isSigned) {
    text.Put(R"("pattern":{"isSigned":true,"digitsDecimal":)");
  } else {
    text.Put(R"("pattern":{"isSigned":false,"digitsDecimal":)");
  }
  text.PutCount(pattern.digitsDecimal);
  text.Put(R"(,"digitsInteger":)");
  text.PutCount(pattern.digitsInteger);
  text.Put("}");
}

void SerializerOutline::serialize_RangeElem(ns_sensor::SK_NumberRange const& range) {
  BoundedText text(mText, kLongestRange);
  text.Put(R"({"occurring":{"min":)");
  text.Put(TextOf(range.occurring.min));
  text.Put(R"(,"max":)");
  text.Put(TextOf(range.occurring.max));
  text.Put(R"(},"legal":{"min":)");
  text.Put(TextOf(range.legal.min));
  text.Put(R"(,"max":)");
  text.Put(TextOf(range.legal.max));
  text.Put("}}");
}

void SerializerOutline::AppendHead(std::string_view kind, std::string_view matchName, std::string_view displayName,
                                   std::string_view next) {
  constexpr std::string_view kBetween = R"(","displayName":")";
  BoundedText text(mText, kind.size() + matchName.size() + kBetween.size() + displayName.size() + next.size());
  text.Put(kind);
  text.Put(matchName);
  text.Put(kBetween);
  text.Put(displayName);
  text.Put(next);
}

void SerializerOutline::AppendNumber(double value) {
  BoundedText(mText, SK_WriterNumberText::kLongest).Put(TextOf(value));
}

SK_WriterNumberText const& SerializerOutline::TextOf(double value) {
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): zeroes of both signs are equal, but have two texts
  if (std::memcmp(&value, &mLastNumber, sizeof value) != 0) {
    mLastText = SK_WriterNumberText(value);
    mLastNumber = value;
  }
  return mLastText;
}

}  // namespace SK_PLUGIN
